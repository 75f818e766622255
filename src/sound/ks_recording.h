// WAV recording of what the sound output plays.
#pragma once

void KSToggleAudioRecording(); // menu command
void KSQuickAudioRecording();  // frame-loop key
bool KSAudioRecording();

// Where the recorder reports: null restores KSDisplayPlacard and
// KSSetAudioRecordingMenuTitle. Tests install observers.
void KSSetRecordingReporters(void (*placard)(const char *text), void (*menuTitle)(const char *title));
