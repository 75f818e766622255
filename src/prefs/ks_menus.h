// The menu bar: a model built from the record (pure), turned into Qt menus.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What choosing an item does; one value per application-delegate action.
enum class KSMenuAction {
    About,
    Open,
    Close,
    PageSetup,
    Print,
    Reset,
    CopyToClipboard,
    AudioRecToggle,
    Defrost,
    Freeze,
    SaveScreenshot,
    MakeIcon,
    ToggleFullScreen,
    NetworkHost,
    NetworkJoin,
    Custom,
    WebLink,
    Preferences,
    Hide,
    HideOthers,
    ShowAll,
    Terminate,
    None // no action: the item is shown but nothing performs it (Undo, Cut, Paste, Clear)
};

// Items other modules change after the menu bar is built.
enum class KSMenuMark { None, OpenRecent, AudioRecording, NetworkHost, NetworkJoin, WebLinks };

struct KSMenuNode {
    enum class Kind { Item, Separator, Submenu };
    Kind kind = Kind::Item;
    std::string title;
    std::string key; // key equivalent with Ctrl/Command (one character), empty for none
    KSMenuAction action = KSMenuAction::None;
    uint32_t tag = 0; // command code, web-link index or 0 for none
    KSMenuMark mark = KSMenuMark::None;
    std::vector<KSMenuNode> children; // the submenu's items (Kind::Submenu)
};

// The four top-level menus, in menu-bar order.
enum { KS_MENUBAR_APPLICATION = 0, KS_MENUBAR_FILE = 1, KS_MENUBAR_EDIT = 2, KS_MENUBAR_OPTIONS = 3 };

struct KSMenuModel {
    std::vector<KSMenuNode> menus; // four Kind::Submenu nodes: application, "File", "Edit", "Options"
};

// Builds the model from gConfigParameters's menuitems[] and weblinks[]. A malformed
// entry is a fatal assertion.
KSMenuModel KSBuildMenuModel();

// Builds the model once at start and keeps it as the menu bar's state.
void KSBuildMenuBar();
const KSMenuModel &KSMenuBarModel();
// Forgets the model and the observer (tests, shutdown).
void KSResetMenuBar();

// The first item with a mark, anywhere in the model, or null.
KSMenuNode *KSFindMarkedMenuItem(KSMenuModel &model, KSMenuMark mark);

// Retitles a marked item in the kept model and tells the observer (the Qt menu bar).
void KSSetMarkedMenuItemTitle(KSMenuMark mark, const char *title);
// The audio-recording item's title ("Start Recording Audio..." / "Stop Recording Audio").
void KSSetAudioRecordingMenuTitle(const char *title);
void KSSetNetworkHostMenuTitle(const char *title);
void KSSetNetworkJoinMenuTitle(const char *title);

// Called after a marked item's title changed; null removes it.
using KSMenuTitleObserver = void (*)(KSMenuMark mark, const char *title);
void KSSetMenuTitleObserver(KSMenuTitleObserver observer);
