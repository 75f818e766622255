// The menu model: a fixed skeleton, the emulator's menuitems[] and weblinks[].
#include "prefs/ks_menus.h"

#include <cstddef>
#include <cstring>

#include "shell/ks_assert.h"
#include "shell/ks_main.h"

// The record's commandID is signed and the codes are unsigned; the assertion texts
// compare them as they stand.
#pragma GCC diagnostic ignored "-Wsign-compare"

namespace
{

// Spelled as the assertion texts read.
constexpr std::nullptr_t nil = nullptr;

KSMenuModel pModel;
KSMenuTitleObserver pTitleObserver;

KSMenuNode Item(std::string title, const char *key, KSMenuAction action, uint32_t tag = 0,
                KSMenuMark mark = KSMenuMark::None)
{
    KSMenuNode node;
    node.title = std::move(title);
    node.key = key;
    node.action = action;
    node.tag = tag;
    node.mark = mark;
    return node;
}

KSMenuNode Separator()
{
    KSMenuNode node;
    node.kind = KSMenuNode::Kind::Separator;
    return node;
}

KSMenuNode Submenu(std::string title, KSMenuMark mark = KSMenuMark::None)
{
    KSMenuNode node;
    node.kind = KSMenuNode::Kind::Submenu;
    node.title = std::move(title);
    node.mark = mark;
    return node;
}

struct StandardItem {
    uint32_t menu;
    uint32_t code;
    const char *title;
    const char *key;
    KSMenuAction action;
    bool tagged; // the tag is the command code
    KSMenuMark mark;
};

const StandardItem kStandardItems[] = {
    {KS_MENU_FILE, KS_STD_OPEN, "Open...", "o", KSMenuAction::Open, true, KSMenuMark::None},
    {KS_MENU_FILE, KS_STD_CLOSE, "Close", "w", KSMenuAction::Close, false, KSMenuMark::None},
    {KS_MENU_FILE, KS_STD_PAGE_SETUP, "Page Setup...", "", KSMenuAction::PageSetup, false, KSMenuMark::None},
    {KS_MENU_FILE, KS_STD_PRINT, "Print Screen...", "p", KSMenuAction::Print, false, KSMenuMark::None},
    {KS_MENU_FILE, KS_STD_RESET, "Reset", "r", KSMenuAction::Reset, false, KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_AUDIO_REC, "Start Recording Audio...", "", KSMenuAction::AudioRecToggle, false,
     KSMenuMark::AudioRecording},
    {KS_MENU_OPTIONS, KS_STD_DEFROST, "Defrost Game State...", "d", KSMenuAction::Defrost, true, KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_FREEZE, "Freeze Game State...", "f", KSMenuAction::Freeze, false, KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_SCREENSHOT, "Save Screenshot...", "s", KSMenuAction::SaveScreenshot, true,
     KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_MAKE_ICON, "Screenshot to Custom Icon", "", KSMenuAction::MakeIcon, false,
     KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_FULL_SCREEN, "Full Screen Mode", "", KSMenuAction::ToggleFullScreen, false,
     KSMenuMark::None},
    {KS_MENU_OPTIONS, KS_STD_NETWORK_HOST, "Host Network Game...", "", KSMenuAction::NetworkHost, false,
     KSMenuMark::NetworkHost},
    {KS_MENU_OPTIONS, KS_STD_NETWORK_JOIN, "Join Network Game...", "", KSMenuAction::NetworkJoin, false,
     KSMenuMark::NetworkJoin},
};

const StandardItem *FindStandardItem(uint32_t menu, uint32_t code)
{
    for (const StandardItem &item : kStandardItems)
        if (item.menu == menu && item.code == code) return &item;
    return nullptr;
}

// "Title%k": the first "%" ends the visible text; what follows is the key equivalent.
KSMenuNode CustomItem(const char *text, uint32_t tag)
{
    const char *percent = strchr(text, '%');
    if (!percent) return Item(text, "", KSMenuAction::Custom, tag);
    KSMenuNode node = Item(std::string(text, percent - text), "", KSMenuAction::Custom, tag);
    node.key = percent + 1;
    return node;
}

// A File item whose title holds newlines: the first line titles a submenu, each
// further line is one of its items, tagged with the code plus its line number.
KSMenuNode CustomSubmenu(const char *text, uint32_t code)
{
    const char *newline = strchr(text, '\n');
    KSMenuNode submenu = Submenu(std::string(text, newline - text));
    const char *line = newline + 1;
    for (uint32_t index = 0;; index++) {
        const char *end = strchr(line, '\n');
        std::string lineText = end ? std::string(line, end - line) : std::string(line);
        submenu.children.push_back(CustomItem(lineText.c_str(), code + index));
        if (!end) break;
        line = end + 1;
    }
    return submenu;
}

void AddEditGroup(KSMenuNode &menu)
{
    menu.children.push_back(Item("Undo", "z", KSMenuAction::None));
    menu.children.push_back(Item("Cut", "x", KSMenuAction::None));
    menu.children.push_back(Item("Copy", "c", KSMenuAction::CopyToClipboard));
    menu.children.push_back(Item("Paste", "v", KSMenuAction::None));
    menu.children.push_back(Item("Clear", "", KSMenuAction::None));
}

KSMenuNode *FindMarked(std::vector<KSMenuNode> &nodes, KSMenuMark mark)
{
    for (KSMenuNode &node : nodes) {
        if (node.mark == mark) return &node;
        if (KSMenuNode *found = FindMarked(node.children, mark)) return found;
    }
    return nullptr;
}

} // namespace

KSMenuModel KSBuildMenuModel()
{
    KS_ASSERT(gConfigParameters->menuitems);
    const char *rawName = gConfigParameters->emulator_name;
    const std::string name(rawName, strnlen(rawName, sizeof gConfigParameters->emulator_name));

    KSMenuModel model;
    model.menus.push_back(Submenu(name));
    model.menus.push_back(Submenu("File"));
    model.menus.push_back(Submenu("Edit"));
    model.menus.push_back(Submenu("Options"));
    KSMenuNode &application = model.menus[KS_MENUBAR_APPLICATION];
    KSMenuNode &file = model.menus[KS_MENUBAR_FILE];
    KSMenuNode &edit = model.menus[KS_MENUBAR_EDIT];
    KSMenuNode &options = model.menus[KS_MENUBAR_OPTIONS];
    KSMenuNode webLinks = Submenu(name + " on the Web", KSMenuMark::WebLinks);

    uint32_t k = 0;
    uint32_t previousMenu = 0;
    bool editHasCustomItem = false;
    for (size_t i = 0; gConfigParameters->menuitems[i].menu != 0; i++) {
        const KSMenuItem &entry = gConfigParameters->menuitems[i];
        k = entry.menu != previousMenu ? 1 : k + 1;
        previousMenu = entry.menu;
        const uint32_t code = (uint32_t)entry.commandID;

        if (entry.menu == KS_MENU_APPLICATION) {
            KS_ASSERT(gConfigParameters->menuitems[i].itemID == 1);
            KS_ASSERT(gConfigParameters->menuitems[i].commandID == KS_STD_ABOUT);
            application.children.push_back(Item("About " + name, "", KSMenuAction::About));
        } else if (entry.menu == KS_MENU_FILE || entry.menu == KS_MENU_OPTIONS) {
            KSMenuNode &menu = entry.menu == KS_MENU_FILE ? file : options;
            if (k != entry.itemID) {
                menu.children.push_back(Separator());
                k++;
            }
            KS_ASSERT(k == gConfigParameters->menuitems[i].itemID);
            if (const StandardItem *standard = FindStandardItem(entry.menu, code)) {
                menu.children.push_back(Item(standard->title, standard->key, standard->action,
                                             standard->tagged ? code : 0, standard->mark));
                if (code == KS_STD_OPEN) {
                    menu.children.push_back(Submenu("Open Recent", KSMenuMark::OpenRecent));
                    k++;
                }
            } else if (entry.menu == KS_MENU_FILE) {
                KS_ASSERT(gConfigParameters->menuitems[i].title != nil);
                KS_ASSERT(strlen(gConfigParameters->menuitems[i].title) < MAX_CUSTOM_MENU_LENGTH);
                char title[MAX_CUSTOM_MENU_LENGTH];
                strcpy(title, entry.title);
                menu.children.push_back(strchr(title, '\n') ? CustomSubmenu(title, code) : CustomItem(title, code));
            } else {
                KS_ASSERT(gConfigParameters->menuitems[i].title != nil);
                KS_ASSERT(strlen(gConfigParameters->menuitems[i].title) < MAX_CUSTOM_MENU_LENGTH);
                KS_ASSERT(strchr(gConfigParameters->menuitems[i].title, '\n') == nil);
                char title[MAX_CUSTOM_MENU_LENGTH];
                strcpy(title, entry.title);
                menu.children.push_back(CustomItem(title, code));
            }
        } else if (entry.menu == KS_MENU_EDIT) {
            if (code == KS_STD_EDIT) {
                AddEditGroup(edit);
            } else {
                KS_ASSERT(gConfigParameters->menuitems[i].title != nil);
                KS_ASSERT(strlen(gConfigParameters->menuitems[i].title) < MAX_CUSTOM_MENU_LENGTH);
                KS_ASSERT(strchr(gConfigParameters->menuitems[i].title, '\n') == nil);
                if (!editHasCustomItem) edit.children.push_back(Separator());
                editHasCustomItem = true;
                char title[MAX_CUSTOM_MENU_LENGTH];
                strcpy(title, entry.title);
                edit.children.push_back(CustomItem(title, code));
            }
        }
        // Entries for any other menu number are skipped.
    }

    if (gConfigParameters->weblinks) {
        for (size_t i = 0; gConfigParameters->weblinks[i].title != nullptr; i++) {
            const KSWebLink &link = gConfigParameters->weblinks[i];
            if (link.title[0] == '-') {
                webLinks.children.push_back(Separator());
                continue;
            }
            KS_ASSERT(gConfigParameters->weblinks[i].link != 0);
            webLinks.children.push_back(Item(link.title, "", KSMenuAction::WebLink, (uint32_t)i));
        }
    }

    application.children.push_back(Separator());
    application.children.push_back(std::move(webLinks));
    application.children.push_back(Separator());
    application.children.push_back(Item("Preferences...", ",", KSMenuAction::Preferences));
    application.children.push_back(Separator());
    application.children.push_back(Item("Hide " + name, "h", KSMenuAction::Hide));
    application.children.push_back(Item("Hide Others", "", KSMenuAction::HideOthers));
    application.children.push_back(Item("Show All", "", KSMenuAction::ShowAll));
    application.children.push_back(Separator());
    application.children.push_back(Item("Quit " + name, "q", KSMenuAction::Terminate));
    return model;
}

void KSBuildMenuBar()
{
    pModel = KSBuildMenuModel();
}

const KSMenuModel &KSMenuBarModel()
{
    return pModel;
}

void KSResetMenuBar()
{
    pModel = KSMenuModel();
    pTitleObserver = nullptr;
}

KSMenuNode *KSFindMarkedMenuItem(KSMenuModel &model, KSMenuMark mark)
{
    if (mark == KSMenuMark::None) return nullptr;
    return FindMarked(model.menus, mark);
}

void KSSetMarkedMenuItemTitle(KSMenuMark mark, const char *title)
{
    if (!title) title = "";
    if (KSMenuNode *node = KSFindMarkedMenuItem(pModel, mark)) node->title = title;
    if (pTitleObserver) pTitleObserver(mark, title);
}

void KSSetAudioRecordingMenuTitle(const char *title)
{
    KSSetMarkedMenuItemTitle(KSMenuMark::AudioRecording, title);
}
void KSSetNetworkHostMenuTitle(const char *title)
{
    KSSetMarkedMenuItemTitle(KSMenuMark::NetworkHost, title);
}
void KSSetNetworkJoinMenuTitle(const char *title)
{
    KSSetMarkedMenuItemTitle(KSMenuMark::NetworkJoin, title);
}

void KSSetMenuTitleObserver(KSMenuTitleObserver observer)
{
    pTitleObserver = observer;
}
