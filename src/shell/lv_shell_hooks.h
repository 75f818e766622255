// Where the Qt application meets the shell's other subsystems: menus, window
// geometry, panels and the launch sequence.
#pragma once

class LVMainWindow;

void KSInstallPlatformHooks();
void KSInstallMenuBar(LVMainWindow *window);
void KSApplyWindowGeometry(LVMainWindow *window);
// After the event loop started: files from the command line, then the recent
// picker or the open panel when nothing is running.
void KSFinishLaunching();
