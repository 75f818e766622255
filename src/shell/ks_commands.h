// Menu commands: what each item does, and when it is enabled. No Qt here: the
// desktop's own parts (the About panel, links, hiding, page setup) go through
// LVDesktopCommands, which the Qt side implements and tests fake.
#pragma once

#include <cstdint>
#include <string>

#include "prefs/ks_menus.h"

class LVDesktopCommands
{
  public:
    virtual ~LVDesktopCommands() = default;
    // The standard About panel: application name, version and centred credits.
    virtual void showAboutPanel(const std::string &name, const std::string &version, const std::string &credits) = 0;
    virtual void openURL(const std::string &url) = 0;
    virtual void hideApplication() = 0;
    virtual void hideOtherApplications() = 0;
    virtual void showAllApplications() = 0;
    virtual void runPageSetup() = 0;
};

// Null restores the default, which only writes a debug line.
void KSSetDesktopCommands(LVDesktopCommands *commands);
LVDesktopCommands *KSDesktopCommands();
// True when commands other than the default were set.
bool KSDesktopCommandsSet();

// Commands of features that arrive with other modules: print, copy to clipboard,
// save screenshot, make icon, network host, network join and preferences. Until a
// module sets its handler the command only writes a debug line. Null clears it.
using KSMenuFeatureHandler = void (*)(uint32_t tag);
void KSSetMenuFeatureHandler(KSMenuAction action, KSMenuFeatureHandler handler);

struct KSAboutTexts {
    std::string name;    // "%s (with Lumivex)" of emulator_name
    std::string version; // version
    std::string credits; // "Original version by %s\nMacintosh version by %s"
};
KSAboutTexts KSAboutPanelTexts();

// Carries out a menu command (main thread).
void KSPerformMenuAction(KSMenuAction action, uint32_t tag);

// The facts the enabling rule depends on.
struct KSMenuEnablingState {
    bool modal = false;          // a modal dialog of the shell runs
    bool windowExists = false;   // the session's main window exists
    bool networkActive = false;  // a network game runs
    bool networkHosting = false; // ... and this side hosts it
};
KSMenuEnablingState KSCurrentMenuEnablingState();

// Whether an item is enabled in the given state; may call the host's
// handle_menuupdate (a fatal assertion when it is required and missing).
bool KSMenuItemEnabled(KSMenuAction action, uint32_t tag, const KSMenuEnablingState &state);
// The same in the current state.
bool KSValidateMenuItem(KSMenuAction action, uint32_t tag);

// Forgets the desktop commands and the feature handlers (tests, shutdown).
void KSResetMenuCommands();
