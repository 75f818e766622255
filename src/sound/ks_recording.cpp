// Recording is not available yet.
#include "sound/ks_recording.h"

void KSToggleAudioRecording() {}
void KSQuickAudioRecording() {}
bool KSAudioRecording() { return false; }
