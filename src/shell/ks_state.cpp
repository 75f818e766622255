// Shell state shared between modules, kept in the pure layer so that pure modules
// (keyboard, sound ring, menus) and their tests can reach the record.
#include "shell/ks_main.h"

KSConfigParameters *gConfigParameters;
uint32_t gRequestedVideoWidth;
uint32_t gRequestedVideoHeight;
uint32_t gBackVideoWidth;
uint32_t gBackVideoHeight;
char gQuickFreezePath[MAX_PATH_LENGTH];
uint32_t gHardwareCRCs[4];
bool gSpeedUnlimited;
bool gPausedInBackground;
bool gModalRunning;
uint32_t gBufferIndex;
int32_t gCommandCountdown[MAX_KEYS];
double gLastFullScreenChange;
