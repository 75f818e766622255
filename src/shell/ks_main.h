// The shell's central state: the host's record, the session and the frame loop.
#pragma once

#include <cstdint>

#include <lumivex/lumivex.h>

class LVPlatform;

extern KSConfigParameters *gConfigParameters;

// Requested back-buffer size (KSInit, KSSetVideoDimensions) and the current one
// (copied at session start and on a size change with a window).
extern uint32_t gRequestedVideoWidth;
extern uint32_t gRequestedVideoHeight;
extern uint32_t gBackVideoWidth;
extern uint32_t gBackVideoHeight;

extern char gQuickFreezePath[MAX_PATH_LENGTH];
extern uint32_t gHardwareCRCs[4];

// Frame-loop state shared with the window delegate, the keyboard and the picker.
extern bool gSpeedUnlimited;
extern bool gPausedInBackground;
extern bool gModalRunning;
extern uint32_t gBufferIndex;
extern int32_t gCommandCountdown[MAX_KEYS];
extern double gLastFullScreenChange;

// The platform behind the session: the Qt application in the product, a fake in tests.
void KSSetPlatform(LVPlatform *platform);
LVPlatform *KSPlatform();

void KSStartSession();
void KSStopSession();
bool KSSessionRunning();
void KSStartFrameTimer();
void KSStopFrameTimer();
void KSFrameTick();
void KSPauseOnResign();
void KSResumeOnActivate();

// Forgets every piece of module state (tests run many sessions in one process).
void KSResetShellState();
