// The menu bar: a model built from the record (pure), turned into Qt menus.
#pragma once

// The audio-recording item's title ("Start Recording Audio..." / "Stop Recording Audio").
void KSSetAudioRecordingMenuTitle(const char *title);
