// Placeholder until the menu bar lands.
#include "prefs/ks_menus.h"

void KSSetAudioRecordingMenuTitle(const char *) {}
