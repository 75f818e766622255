// The menu model built from the record: order, positions, separators, titles, keys,
// actions, tags, marks and the fatal assertions for malformed entries.
#include <gtest/gtest.h>

#include "menu_records.h"
#include "prefs/ks_menus.h"

namespace
{

using Kind = KSMenuNode::Kind;

const uint32_t kMachineCode = KS_FOURCC('M', 'c', 'h', 'n');
const uint32_t kTurboCode = KS_FOURCC('T', 'r', 'b', 'o');

class MenuModelTest : public ::testing::Test
{
  protected:
    void TearDown() override
    {
        KSResetMenuBar();
        gConfigParameters = nullptr;
    }
    KSMenuModel Build(MenuTestRecord &host)
    {
        host.install();
        return KSBuildMenuModel();
    }
};

std::vector<Kind> Kinds(const KSMenuNode &menu)
{
    std::vector<Kind> kinds;
    for (const KSMenuNode &node : menu.children)
        kinds.push_back(node.kind);
    return kinds;
}

const KSMenuNode *Child(const KSMenuNode &menu, const std::string &title)
{
    for (const KSMenuNode &node : menu.children)
        if (node.title == title) return &node;
    return nullptr;
}

TEST_F(MenuModelTest, OnlyTheAboutEntryGivesEmptyFileEditAndOptionsMenus)
{
    MenuTestRecord host({AboutEntry()});
    const KSMenuModel model = Build(host);
    ASSERT_EQ(model.menus.size(), 4u);
    EXPECT_EQ(model.menus[KS_MENUBAR_APPLICATION].title, "Testron");
    EXPECT_EQ(model.menus[KS_MENUBAR_FILE].title, "File");
    EXPECT_EQ(model.menus[KS_MENUBAR_EDIT].title, "Edit");
    EXPECT_EQ(model.menus[KS_MENUBAR_OPTIONS].title, "Options");
    for (const KSMenuNode &menu : model.menus)
        EXPECT_EQ(menu.kind, Kind::Submenu);
    EXPECT_TRUE(model.menus[KS_MENUBAR_FILE].children.empty());
    EXPECT_TRUE(model.menus[KS_MENUBAR_EDIT].children.empty());
    EXPECT_TRUE(model.menus[KS_MENUBAR_OPTIONS].children.empty());
    ASSERT_FALSE(model.menus[KS_MENUBAR_APPLICATION].children.empty());
    EXPECT_EQ(model.menus[KS_MENUBAR_APPLICATION].children[0].title, "About Testron");
    EXPECT_EQ(model.menus[KS_MENUBAR_APPLICATION].children[0].action, KSMenuAction::About);
}

TEST_F(MenuModelTest, ApplicationMenuEndsWithLinksPreferencesHideAndQuit)
{
    MenuTestRecord host({AboutEntry()});
    const KSMenuModel model = Build(host);
    const KSMenuNode &app = model.menus[KS_MENUBAR_APPLICATION];
    const std::vector<Kind> expected = {Kind::Item, Kind::Separator, Kind::Submenu, Kind::Separator,
                                        Kind::Item, Kind::Separator, Kind::Item,    Kind::Item,
                                        Kind::Item, Kind::Separator, Kind::Item};
    EXPECT_EQ(Kinds(app), expected);
    EXPECT_EQ(app.children[2].title, "Testron on the Web");
    EXPECT_EQ(app.children[2].mark, KSMenuMark::WebLinks);
    EXPECT_TRUE(app.children[2].children.empty());
    EXPECT_EQ(app.children[4].title, "Preferences...");
    EXPECT_EQ(app.children[4].key, ",");
    EXPECT_EQ(app.children[4].action, KSMenuAction::Preferences);
    EXPECT_EQ(app.children[6].title, "Hide Testron");
    EXPECT_EQ(app.children[6].key, "h");
    EXPECT_EQ(app.children[6].action, KSMenuAction::Hide);
    EXPECT_EQ(app.children[7].title, "Hide Others");
    EXPECT_EQ(app.children[7].action, KSMenuAction::HideOthers);
    EXPECT_EQ(app.children[8].title, "Show All");
    EXPECT_EQ(app.children[8].action, KSMenuAction::ShowAll);
    EXPECT_EQ(app.children[10].title, "Quit Testron");
    EXPECT_EQ(app.children[10].key, "q");
    EXPECT_EQ(app.children[10].action, KSMenuAction::Terminate);
}

TEST_F(MenuModelTest, HideOthersHasNoKeyEquivalent)
{
    MenuTestRecord host({AboutEntry()});
    const KSMenuModel model = Build(host);
    const KSMenuNode *hideOthers = Child(model.menus[KS_MENUBAR_APPLICATION], "Hide Others");
    ASSERT_NE(hideOthers, nullptr);
    EXPECT_TRUE(hideOthers->key.empty());
    const KSMenuNode *showAll = Child(model.menus[KS_MENUBAR_APPLICATION], "Show All");
    ASSERT_NE(showAll, nullptr);
    EXPECT_TRUE(showAll->key.empty());
}

TEST_F(MenuModelTest, NoApplicationEntryStillGivesTheApplicationMenuTail)
{
    MenuTestRecord host({});
    const KSMenuModel model = Build(host);
    const KSMenuNode &app = model.menus[KS_MENUBAR_APPLICATION];
    ASSERT_FALSE(app.children.empty());
    EXPECT_EQ(app.children[0].kind, Kind::Separator);
    EXPECT_EQ(app.children.back().title, "Quit Testron");
}

TEST_F(MenuModelTest, OptionsItemIdsOneTwoFourPutASeparatorAfterTheSecondItem)
{
    MenuTestRecord host({AboutEntry(), Entry(KS_MENU_OPTIONS, 1, KS_STD_FREEZE),
                         Entry(KS_MENU_OPTIONS, 2, KS_STD_DEFROST), Entry(KS_MENU_OPTIONS, 4, KS_STD_FULL_SCREEN)});
    const KSMenuModel model = Build(host);
    const KSMenuNode &options = model.menus[KS_MENUBAR_OPTIONS];
    const std::vector<Kind> expected = {Kind::Item, Kind::Item, Kind::Separator, Kind::Item};
    EXPECT_EQ(Kinds(options), expected);
    EXPECT_EQ(options.children[0].title, "Freeze Game State...");
    EXPECT_EQ(options.children[1].title, "Defrost Game State...");
    EXPECT_EQ(options.children[3].title, "Full Screen Mode");
}

TEST_F(MenuModelTest, ConsecutiveItemIdsPutNoSeparator)
{
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, KS_STD_FREEZE), Entry(KS_MENU_OPTIONS, 2, KS_STD_DEFROST),
                         Entry(KS_MENU_OPTIONS, 3, KS_STD_SCREENSHOT)});
    const KSMenuModel model = Build(host);
    EXPECT_EQ(Kinds(model.menus[KS_MENUBAR_OPTIONS]), std::vector<Kind>(3, Kind::Item));
}

TEST_F(MenuModelTest, FirstFileItemAtPositionTwoGetsALeadingSeparator)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 2, KS_STD_RESET)});
    const KSMenuModel model = Build(host);
    const std::vector<Kind> expected = {Kind::Separator, Kind::Item};
    EXPECT_EQ(Kinds(model.menus[KS_MENUBAR_FILE]), expected);
}

TEST_F(MenuModelTest, OpenIsFollowedByTheOpenRecentSubmenuWhichTakesAPosition)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, KS_STD_OPEN), Entry(KS_MENU_FILE, 3, KS_STD_CLOSE),
                         Entry(KS_MENU_FILE, 5, KS_STD_RESET)});
    const KSMenuModel model = Build(host);
    const KSMenuNode &file = model.menus[KS_MENUBAR_FILE];
    const std::vector<Kind> expected = {Kind::Item, Kind::Submenu, Kind::Item, Kind::Separator, Kind::Item};
    ASSERT_EQ(Kinds(file), expected);
    EXPECT_EQ(file.children[0].title, "Open...");
    EXPECT_EQ(file.children[0].key, "o");
    EXPECT_EQ(file.children[0].action, KSMenuAction::Open);
    EXPECT_EQ(file.children[0].tag, KS_STD_OPEN);
    EXPECT_EQ(file.children[1].title, "Open Recent");
    EXPECT_EQ(file.children[1].mark, KSMenuMark::OpenRecent);
    EXPECT_TRUE(file.children[1].children.empty());
    EXPECT_EQ(file.children[2].title, "Close");
    EXPECT_EQ(file.children[4].title, "Reset");
}

struct StandardCase {
    uint32_t menu;
    uint32_t code;
    const char *title;
    const char *key;
    KSMenuAction action;
    uint32_t tag;
    KSMenuMark mark;
};

TEST_F(MenuModelTest, StandardItemsHaveTheirTitlesKeysActionsTagsAndMarks)
{
    const StandardCase cases[] = {
        {KS_MENU_FILE, KS_STD_CLOSE, "Close", "w", KSMenuAction::Close, 0, KSMenuMark::None},
        {KS_MENU_FILE, KS_STD_PAGE_SETUP, "Page Setup...", "", KSMenuAction::PageSetup, 0, KSMenuMark::None},
        {KS_MENU_FILE, KS_STD_PRINT, "Print Screen...", "p", KSMenuAction::Print, 0, KSMenuMark::None},
        {KS_MENU_FILE, KS_STD_RESET, "Reset", "r", KSMenuAction::Reset, 0, KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_AUDIO_REC, "Start Recording Audio...", "", KSMenuAction::AudioRecToggle, 0,
         KSMenuMark::AudioRecording},
        {KS_MENU_OPTIONS, KS_STD_DEFROST, "Defrost Game State...", "d", KSMenuAction::Defrost, KS_STD_DEFROST,
         KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_FREEZE, "Freeze Game State...", "f", KSMenuAction::Freeze, 0, KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_SCREENSHOT, "Save Screenshot...", "s", KSMenuAction::SaveScreenshot, KS_STD_SCREENSHOT,
         KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_MAKE_ICON, "Screenshot to Custom Icon", "", KSMenuAction::MakeIcon, 0,
         KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_FULL_SCREEN, "Full Screen Mode", "", KSMenuAction::ToggleFullScreen, 0,
         KSMenuMark::None},
        {KS_MENU_OPTIONS, KS_STD_NETWORK_HOST, "Host Network Game...", "", KSMenuAction::NetworkHost, 0,
         KSMenuMark::NetworkHost},
        {KS_MENU_OPTIONS, KS_STD_NETWORK_JOIN, "Join Network Game...", "", KSMenuAction::NetworkJoin, 0,
         KSMenuMark::NetworkJoin},
    };
    std::vector<KSMenuItem> entries;
    uint32_t file = 0, options = 0;
    for (const StandardCase &c : cases)
        entries.push_back(Entry(c.menu, c.menu == KS_MENU_FILE ? ++file : ++options, c.code));
    MenuTestRecord host(entries);
    const KSMenuModel model = Build(host);
    const KSMenuNode &fileMenu = model.menus[KS_MENUBAR_FILE];
    const KSMenuNode &optionsMenu = model.menus[KS_MENUBAR_OPTIONS];
    ASSERT_EQ(fileMenu.children.size(), file);
    ASSERT_EQ(optionsMenu.children.size(), options);
    size_t f = 0, o = 0;
    for (const StandardCase &c : cases) {
        const KSMenuNode &node = c.menu == KS_MENU_FILE ? fileMenu.children[f++] : optionsMenu.children[o++];
        SCOPED_TRACE(c.title);
        EXPECT_EQ(node.kind, Kind::Item);
        EXPECT_EQ(node.title, c.title);
        EXPECT_EQ(node.key, c.key);
        EXPECT_EQ(node.action, c.action);
        EXPECT_EQ(node.tag, c.tag);
        EXPECT_EQ(node.mark, c.mark);
    }
}

TEST_F(MenuModelTest, AStandardCodeOfAnotherMenuIsAnEmulatorItem)
{
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, KS_STD_OPEN, "Load Tape%l")});
    const KSMenuModel model = Build(host);
    const KSMenuNode &item = model.menus[KS_MENUBAR_OPTIONS].children.at(0);
    EXPECT_EQ(item.title, "Load Tape");
    EXPECT_EQ(item.key, "l");
    EXPECT_EQ(item.action, KSMenuAction::Custom);
    EXPECT_EQ(item.tag, KS_STD_OPEN);
}

TEST_F(MenuModelTest, EditGroupThenASeparatorBeforeTheFirstEmulatorItemOnly)
{
    const uint32_t pokeCode = KS_FOURCC('P', 'o', 'k', 'e');
    MenuTestRecord host({Entry(KS_MENU_EDIT, 1, KS_STD_EDIT), Entry(KS_MENU_EDIT, 2, kTurboCode, "Turbo%t"),
                         Entry(KS_MENU_EDIT, 9, pokeCode, "Poke Memory")});
    const KSMenuModel model = Build(host);
    const KSMenuNode &edit = model.menus[KS_MENUBAR_EDIT];
    const std::vector<Kind> expected = {Kind::Item, Kind::Item,      Kind::Item, Kind::Item,
                                        Kind::Item, Kind::Separator, Kind::Item, Kind::Item};
    ASSERT_EQ(Kinds(edit), expected);
    const char *titles[] = {"Undo", "Cut", "Copy", "Paste", "Clear"};
    const char *keys[] = {"z", "x", "c", "v", ""};
    for (int i = 0; i < 5; i++) {
        EXPECT_EQ(edit.children[i].title, titles[i]);
        EXPECT_EQ(edit.children[i].key, keys[i]);
        EXPECT_EQ(edit.children[i].action, i == 2 ? KSMenuAction::CopyToClipboard : KSMenuAction::None);
        EXPECT_EQ(edit.children[i].tag, 0u);
    }
    EXPECT_EQ(edit.children[6].title, "Turbo");
    EXPECT_EQ(edit.children[6].key, "t");
    EXPECT_EQ(edit.children[6].tag, kTurboCode);
    EXPECT_EQ(edit.children[7].title, "Poke Memory");
    EXPECT_EQ(edit.children[7].key, "");
    EXPECT_EQ(edit.children[7].tag, pokeCode);
}

TEST_F(MenuModelTest, EmulatorItemTitleSplitsAtTheFirstPercent)
{
    MenuTestRecord host(
        {Entry(KS_MENU_OPTIONS, 1, kTurboCode, "Turbo 100%5%x"), Entry(KS_MENU_OPTIONS, 2, kTurboCode + 1, "Plain")});
    const KSMenuModel model = Build(host);
    const KSMenuNode &options = model.menus[KS_MENUBAR_OPTIONS];
    EXPECT_EQ(options.children[0].title, "Turbo 100");
    EXPECT_EQ(options.children[0].key, "5%x");
    EXPECT_EQ(options.children[0].action, KSMenuAction::Custom);
    EXPECT_EQ(options.children[1].title, "Plain");
    EXPECT_EQ(options.children[1].key, "");
    EXPECT_EQ(options.children[1].tag, kTurboCode + 1);
}

TEST_F(MenuModelTest, FileTitleWithNewlinesMakesASubmenuTaggedByLine)
{
    MenuTestRecord host(
        {Entry(KS_MENU_FILE, 1, KS_STD_OPEN), Entry(KS_MENU_FILE, 3, kMachineCode, "Machine\nPAL%1\nNTSC%2")});
    const KSMenuModel model = Build(host);
    const KSMenuNode &file = model.menus[KS_MENUBAR_FILE];
    ASSERT_EQ(file.children.size(), 3u);
    const KSMenuNode &machine = file.children[2];
    EXPECT_EQ(machine.kind, Kind::Submenu);
    EXPECT_EQ(machine.title, "Machine");
    ASSERT_EQ(machine.children.size(), 2u);
    EXPECT_EQ(machine.children[0].title, "PAL");
    EXPECT_EQ(machine.children[0].key, "1");
    EXPECT_EQ(machine.children[0].tag, kMachineCode);
    EXPECT_EQ(machine.children[0].action, KSMenuAction::Custom);
    EXPECT_EQ(machine.children[1].title, "NTSC");
    EXPECT_EQ(machine.children[1].key, "2");
    EXPECT_EQ(machine.children[1].tag, kMachineCode + 1);
}

TEST_F(MenuModelTest, FileTitleWithoutNewlineIsAPlainEmulatorItem)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, kMachineCode, "Insert Disk%i")});
    const KSMenuModel model = Build(host);
    const KSMenuNode &item = model.menus[KS_MENUBAR_FILE].children.at(0);
    EXPECT_EQ(item.kind, Kind::Item);
    EXPECT_EQ(item.title, "Insert Disk");
    EXPECT_EQ(item.key, "i");
    EXPECT_EQ(item.tag, kMachineCode);
}

TEST_F(MenuModelTest, ALoneHyphenWebLinkIsASeparatorAndTheNextLinkGetsTheNextIndex)
{
    MenuTestRecord host({AboutEntry()}, {KSWebLink{"Home Page", "https://example.org/"}, KSWebLink{"-", nullptr},
                                         KSWebLink{"Forum", "https://example.org/forum"}});
    const KSMenuModel model = Build(host);
    const KSMenuNode *web = Child(model.menus[KS_MENUBAR_APPLICATION], "Testron on the Web");
    ASSERT_NE(web, nullptr);
    const std::vector<Kind> expected = {Kind::Item, Kind::Separator, Kind::Item};
    ASSERT_EQ(Kinds(*web), expected);
    EXPECT_EQ(web->children[0].title, "Home Page");
    EXPECT_EQ(web->children[0].tag, 0u);
    EXPECT_EQ(web->children[0].action, KSMenuAction::WebLink);
    EXPECT_TRUE(web->children[0].key.empty());
    EXPECT_EQ(web->children[2].title, "Forum");
    EXPECT_EQ(web->children[2].tag, 2u);
}

TEST_F(MenuModelTest, NoWebLinkArrayGivesAnEmptyLinksMenu)
{
    MenuTestRecord host({AboutEntry()});
    host.record.weblinks = nullptr;
    const KSMenuModel model = Build(host);
    const KSMenuNode *web = Child(model.menus[KS_MENUBAR_APPLICATION], "Testron on the Web");
    ASSERT_NE(web, nullptr);
    EXPECT_TRUE(web->children.empty());
}

TEST_F(MenuModelTest, EntriesOfOtherMenuNumbersAreSkipped)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, KS_STD_RESET), Entry(200, 7, kTurboCode, "Ghost"),
                         Entry(KS_MENU_OPTIONS, 1, KS_STD_FREEZE)});
    const KSMenuModel model = Build(host);
    EXPECT_EQ(model.menus[KS_MENUBAR_FILE].children.size(), 1u);
    EXPECT_EQ(model.menus[KS_MENUBAR_OPTIONS].children.size(), 1u);
    EXPECT_EQ(model.menus[KS_MENUBAR_EDIT].children.size(), 0u);
}

TEST_F(MenuModelTest, TitleOf127BytesIsAccepted)
{
    const std::string title(127, 'A');
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, kTurboCode, title.c_str())});
    const KSMenuModel model = Build(host);
    EXPECT_EQ(model.menus[KS_MENUBAR_OPTIONS].children.at(0).title, title);
}

TEST_F(MenuModelTest, KeptModelIsRetitledAndTheObserverTold)
{
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, KS_STD_AUDIO_REC), Entry(KS_MENU_OPTIONS, 2, KS_STD_NETWORK_HOST),
                         Entry(KS_MENU_OPTIONS, 3, KS_STD_NETWORK_JOIN)});
    host.install();
    KSBuildMenuBar();
    static std::vector<std::pair<KSMenuMark, std::string>> seen;
    seen.clear();
    KSSetMenuTitleObserver([](KSMenuMark mark, const char *title) { seen.emplace_back(mark, title); });
    KSSetAudioRecordingMenuTitle("Stop Recording Audio");
    KSSetNetworkHostMenuTitle("Stop Hosting");
    KSSetNetworkJoinMenuTitle("Leave Game");
    const KSMenuNode &options = KSMenuBarModel().menus[KS_MENUBAR_OPTIONS];
    EXPECT_EQ(options.children[0].title, "Stop Recording Audio");
    EXPECT_EQ(options.children[1].title, "Stop Hosting");
    EXPECT_EQ(options.children[2].title, "Leave Game");
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0].first, KSMenuMark::AudioRecording);
    EXPECT_EQ(seen[0].second, "Stop Recording Audio");
    EXPECT_EQ(seen[2].first, KSMenuMark::NetworkJoin);
}

TEST_F(MenuModelTest, RetitlingWithoutAMenuBarDoesNothingHarmful)
{
    KSSetAudioRecordingMenuTitle("Stop Recording Audio");
    EXPECT_TRUE(KSMenuBarModel().menus.empty());
}

// ---- Malformed records stop the program with the failed condition's text ----

using MenuModelDeathTest = MenuModelTest;

void ExpectAssertion(MenuTestRecord &host, const std::string &condition)
{
    host.install();
    EXPECT_EXIT(KSBuildMenuModel(), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\n" + LiteralPattern(condition) + "\nks_menus\\.cpp, line [0-9]+");
}

TEST_F(MenuModelDeathTest, ItemIdSkippingTwoNumbersStops)
{
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, KS_STD_FREEZE), Entry(KS_MENU_OPTIONS, 4, KS_STD_DEFROST)});
    ExpectAssertion(host, "k == gConfigParameters->menuitems[i].itemID");
}

TEST_F(MenuModelDeathTest, FileItemAfterOpenThatIgnoresOpenRecentStops)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, KS_STD_OPEN), Entry(KS_MENU_FILE, 2, KS_STD_CLOSE)});
    ExpectAssertion(host, "k == gConfigParameters->menuitems[i].itemID");
}

TEST_F(MenuModelDeathTest, TitleOf128BytesStops)
{
    const std::string title(128, 'A');
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, kTurboCode, title.c_str())});
    ExpectAssertion(host, "strlen(gConfigParameters->menuitems[i].title) < MAX_CUSTOM_MENU_LENGTH");
}

TEST_F(MenuModelDeathTest, FileTitleOf128BytesStops)
{
    const std::string title = "Machine\n" + std::string(120, 'B');
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, kMachineCode, title.c_str())});
    ExpectAssertion(host, "strlen(gConfigParameters->menuitems[i].title) < MAX_CUSTOM_MENU_LENGTH");
}

TEST_F(MenuModelDeathTest, NewlineInAnOptionsTitleStops)
{
    MenuTestRecord host({Entry(KS_MENU_OPTIONS, 1, kMachineCode, "Machine\nPAL%1")});
    ExpectAssertion(host, "strchr(gConfigParameters->menuitems[i].title, '\\n') == nil");
}

TEST_F(MenuModelDeathTest, NewlineInAnEditTitleStops)
{
    MenuTestRecord host({Entry(KS_MENU_EDIT, 1, kMachineCode, "Machine\nPAL%1")});
    ExpectAssertion(host, "strchr(gConfigParameters->menuitems[i].title, '\\n') == nil");
}

TEST_F(MenuModelDeathTest, MissingEmulatorTitleStops)
{
    MenuTestRecord host({Entry(KS_MENU_FILE, 1, kMachineCode, nullptr)});
    ExpectAssertion(host, "gConfigParameters->menuitems[i].title != nil");
}

TEST_F(MenuModelDeathTest, AboutEntryAtAnotherPositionStops)
{
    MenuTestRecord host({Entry(KS_MENU_APPLICATION, 2, KS_STD_ABOUT)});
    ExpectAssertion(host, "gConfigParameters->menuitems[i].itemID == 1");
}

TEST_F(MenuModelDeathTest, ApplicationEntryOtherThanAboutStops)
{
    MenuTestRecord host({Entry(KS_MENU_APPLICATION, 1, kTurboCode, "Turbo")});
    ExpectAssertion(host, "gConfigParameters->menuitems[i].commandID == KS_STD_ABOUT");
}

TEST_F(MenuModelDeathTest, MissingMenuItemArrayStops)
{
    MenuTestRecord host({});
    host.record.menuitems = nullptr;
    ExpectAssertion(host, "gConfigParameters->menuitems");
}

TEST_F(MenuModelDeathTest, WebLinkWithoutAddressStops)
{
    MenuTestRecord host({}, {KSWebLink{"Home", nullptr}});
    ExpectAssertion(host, "gConfigParameters->weblinks[i].link != 0");
}

} // namespace
