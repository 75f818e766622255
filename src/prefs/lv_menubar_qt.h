// The menu bar as Qt menus, built from the menu model for the main window.
#pragma once

#include "prefs/ks_menus.h"

class QAction;
class QMainWindow;
class QMenu;
class QMenuBar;
class QString;

// Builds the model from the record when none is kept yet, turns it into a menu bar
// and gives it to the window (replacing a previous one). On Linux the application
// menu is the first menu, titled with the emulator's name; on macOS Qt's menu roles
// move About, Preferences and Quit into the system's application menu. Installs the
// Qt desktop commands unless others were set.
QMenuBar *KSInstallQtMenuBar(QMainWindow *window);

// Re-evaluates every item's enabling (also done when a menu is about to show and
// before a Ctrl/Command shortcut is looked up).
void KSRevalidateMenus();

// Shared references: the "Open Recent" submenu (null before the menu bar exists) and
// the actions of the marked items (audio recording, network host and join).
QMenu *KSOpenRecentMenu();
QAction *KSMarkedMenuAction(KSMenuMark mark);

// The first action whose model title is `title` (tests, scripting); null if none.
QAction *KSFindMenuAction(const QString &title);

// Drops the references and the title observer (tests, shutdown).
void KSForgetQtMenuBar();
