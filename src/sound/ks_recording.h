// WAV recording of what the sound output plays.
#pragma once

void KSToggleAudioRecording();  // menu command
void KSQuickAudioRecording();   // frame-loop key
bool KSAudioRecording();
