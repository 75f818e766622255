// The Qt menu bar built from a record: menus, shortcuts, shared references, real
// actions reaching the host's handle_command, and enabling against a fake
// handle_menuupdate.
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include "menu_fakes.h"
#include "prefs/lv_menubar_qt.h"
#include "shell/ks_main.h"

namespace
{

const uint32_t kMachineCode = KS_FOURCC('M', 'c', 'h', 'n');
const uint32_t kTurboCode = KS_FOURCC('T', 'r', 'b', 'o');
const uint32_t kSwapCode = KS_FOURCC('S', 'w', 'a', 'p');

class MenuBarTest : public ::testing::Test
{
  protected:
    MenuTestRecord host{{AboutEntry(), Entry(KS_MENU_FILE, 1, KS_STD_OPEN), Entry(KS_MENU_FILE, 3, KS_STD_CLOSE),
                         Entry(KS_MENU_FILE, 5, KS_STD_RESET),
                         Entry(KS_MENU_FILE, 6, kMachineCode, "Machine\nPAL%1\nNTSC%2"),
                         Entry(KS_MENU_EDIT, 1, KS_STD_EDIT), Entry(KS_MENU_EDIT, 2, kTurboCode, "Turbo%t"),
                         Entry(KS_MENU_OPTIONS, 1, KS_STD_AUDIO_REC), Entry(KS_MENU_OPTIONS, 2, KS_STD_FREEZE),
                         Entry(KS_MENU_OPTIONS, 3, KS_STD_DEFROST), Entry(KS_MENU_OPTIONS, 5, KS_STD_FULL_SCREEN),
                         Entry(KS_MENU_OPTIONS, 6, KS_STD_NETWORK_HOST), Entry(KS_MENU_OPTIONS, 7, KS_STD_NETWORK_JOIN),
                         Entry(KS_MENU_OPTIONS, 8, kSwapCode, "Load & Swap")},
                        {KSWebLink{"Home Page", "https://example.org/"}, KSWebLink{"-", nullptr},
                         KSWebLink{"Forum", "https://example.org/forum"}}};
    MenuFakePlatform platform;
    RecordingDesktop desktop;
    CountingPanels panels;
    QMainWindow *window = nullptr;
    QMenuBar *bar = nullptr;

    void SetUp() override
    {
        FakeHost::reset();
        FakeHost::attach(host.record);
        host.install();
        KSSetPlatform(&platform);
        KSSetDesktopCommands(&desktop);
        KSSetPanelPresenter(&panels);
        gModalRunning = false;
        KSResetMenuBar();
        window = new QMainWindow;
        bar = KSInstallQtMenuBar(window);
    }
    void TearDown() override
    {
        KSForgetQtMenuBar();
        delete window;
        KSResetMenuBar();
        KSResetMenuCommands();
        KSSetPanelPresenter(nullptr);
        KSSetPlatform(nullptr);
        gConfigParameters = nullptr;
    }

    QAction *Find(const char *title)
    {
        QAction *action = KSFindMenuAction(QString::fromUtf8(title));
        EXPECT_NE(action, nullptr) << title;
        return action;
    }
    QMenu *TopMenu(int index) { return bar->actions().at(index)->menu(); }
    void Trigger(const char *title)
    {
        if (QAction *action = Find(title)) action->trigger();
    }
};

TEST_F(MenuBarTest, TheFourMenusStandInOrderWithTheApplicationMenuFirst)
{
    ASSERT_EQ(window->menuBar(), bar);
    const QList<QAction *> menus = bar->actions();
    ASSERT_EQ(menus.size(), 4);
    EXPECT_EQ(menus[0]->text(), "Testron");
    EXPECT_EQ(menus[1]->text(), "File");
    EXPECT_EQ(menus[2]->text(), "Edit");
    EXPECT_EQ(menus[3]->text(), "Options");
    EXPECT_EQ(TopMenu(0)->actions().first()->text(), "About Testron");
    EXPECT_EQ(TopMenu(0)->actions().last()->text(), "Quit Testron");
}

TEST_F(MenuBarTest, KeyEquivalentsAreCtrlChords)
{
    EXPECT_EQ(Find("Open...")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));
    EXPECT_EQ(Find("Close")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_W));
    EXPECT_EQ(Find("Reset")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
    EXPECT_EQ(Find("Copy")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_C));
    EXPECT_EQ(Find("Defrost Game State...")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_D));
    EXPECT_EQ(Find("Preferences...")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    EXPECT_EQ(Find("Hide Testron")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_H));
    EXPECT_EQ(Find("Quit Testron")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    EXPECT_EQ(Find("PAL")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_1));
    EXPECT_EQ(Find("Turbo")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_T));
    EXPECT_TRUE(Find("Hide Others")->shortcut().isEmpty());
    EXPECT_TRUE(Find("Full Screen Mode")->shortcut().isEmpty());
}

TEST_F(MenuBarTest, RolesPutAboutPreferencesAndQuitWhereTheSystemWantsThem)
{
    EXPECT_EQ(Find("About Testron")->menuRole(), QAction::AboutRole);
    EXPECT_EQ(Find("Preferences...")->menuRole(), QAction::PreferencesRole);
    EXPECT_EQ(Find("Quit Testron")->menuRole(), QAction::QuitRole);
    EXPECT_EQ(Find("Turbo")->menuRole(), QAction::NoRole);
}

TEST_F(MenuBarTest, OpenIsFollowedByTheSharedOpenRecentMenu)
{
    QMenu *recent = KSOpenRecentMenu();
    ASSERT_NE(recent, nullptr);
    EXPECT_EQ(recent->title(), "Open Recent");
    const QList<QAction *> file = TopMenu(1)->actions();
    ASSERT_GE(file.size(), 2);
    EXPECT_EQ(file[0]->text(), "Open...");
    EXPECT_EQ(file[1]->menu(), recent);
    recent->addAction("game.rom");
    EXPECT_EQ(TopMenu(1)->actions()[1]->menu()->actions().size(), 1);
}

TEST_F(MenuBarTest, MachineSubmenuHoldsItsLines)
{
    QAction *machine = Find("Machine");
    ASSERT_NE(machine->menu(), nullptr);
    const QList<QAction *> items = machine->menu()->actions();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0]->text(), "PAL");
    EXPECT_EQ(items[1]->text(), "NTSC");
}

TEST_F(MenuBarTest, AmpersandsInTitlesAreShownNotTakenAsMnemonics)
{
    QAction *swap = Find("Load & Swap");
    EXPECT_EQ(swap->text(), "Load && Swap");
}

TEST_F(MenuBarTest, TriggeringRealActionsReachesHandleCommandWithTheirCodes)
{
    platform.window = true;
    KSRevalidateMenus();
    Trigger("Open...");
    Trigger("Reset");
    Trigger("PAL");
    Trigger("NTSC");
    Trigger("Turbo");
    Trigger("Defrost Game State...");
    Trigger("Load & Swap");
    const std::vector<uint32_t> expected = {KS_STD_OPEN, KS_CMD_RESET,   kMachineCode, kMachineCode + 1,
                                            kTurboCode,  KS_STD_DEFROST, kSwapCode};
    EXPECT_EQ(FakeHost::commands, expected);
}

TEST_F(MenuBarTest, CtrlShortcutReachesTheHost)
{
    platform.window = true;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QTest::keyClick(window, Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(FakeHost::commands, std::vector<uint32_t>{KS_CMD_RESET});
}

TEST_F(MenuBarTest, ShortcutLookUpRevalidatesFirst)
{
    platform.window = false;
    KSRevalidateMenus();
    ASSERT_FALSE(Find("Reset")->isEnabled());
    platform.window = true; // the session started after the last validation
    QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_R, Qt::ControlModifier);
    QApplication::sendEvent(window, &override);
    EXPECT_TRUE(Find("Reset")->isEnabled());
}

TEST_F(MenuBarTest, DisabledActionsDoNotReachTheHost)
{
    platform.window = false;
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Reset")->isEnabled());
    Trigger("Reset");
    EXPECT_TRUE(FakeHost::commands.empty());
}

TEST_F(MenuBarTest, EnablingFollowsAFakeMenuUpdate)
{
    host.record.requires_file = 0;
    platform.window = true;
    FakeHost::answer = true;
    KSRevalidateMenus();
    EXPECT_TRUE(Find("Close")->isEnabled());
    EXPECT_TRUE(Find("Turbo")->isEnabled());
    FakeHost::answer = false;
    FakeHost::updates.clear();
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Close")->isEnabled());
    EXPECT_FALSE(Find("Freeze Game State...")->isEnabled());
    EXPECT_FALSE(Find("Turbo")->isEnabled());
    EXPECT_FALSE(Find("PAL")->isEnabled());
    EXPECT_TRUE(Find("Reset")->isEnabled()); // not the host's to decide
    std::vector<uint32_t> asked;
    for (const auto &update : FakeHost::updates) {
        asked.push_back(std::get<0>(update));
        EXPECT_TRUE(std::get<1>(update));
        EXPECT_FALSE(std::get<2>(update));
    }
    for (uint32_t code : {KS_CMD_CLOSE, KS_CMD_FREEZE, KS_CMD_DEFROST, KS_CMD_NETWORK_HOST, KS_CMD_NETWORK_JOIN,
                          kTurboCode, kMachineCode, kMachineCode + 1, kSwapCode})
        EXPECT_NE(std::find(asked.begin(), asked.end(), code), asked.end()) << code;
}

TEST_F(MenuBarTest, RequiresFileFreezeFollowsTheOpenFileNotMenuUpdate)
{
    host.record.requires_file = 1;
    FakeHost::answer = true;
    platform.window = false;
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Freeze Game State...")->isEnabled());
    FakeHost::answer = false;
    platform.window = true;
    KSRevalidateMenus();
    EXPECT_TRUE(Find("Freeze Game State...")->isEnabled());
}

TEST_F(MenuBarTest, AMenuRevalidatesWhenAboutToShow)
{
    host.record.requires_file = 0;
    platform.window = true;
    FakeHost::answer = true;
    KSRevalidateMenus();
    ASSERT_TRUE(Find("Close")->isEnabled());
    FakeHost::answer = false;
    Q_EMIT TopMenu(1)->aboutToShow();
    EXPECT_FALSE(Find("Close")->isEnabled());
}

TEST_F(MenuBarTest, EditItemsWithoutActionsAreDisabledAndCopyFollowsTheWindow)
{
    platform.window = true;
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Undo")->isEnabled());
    EXPECT_FALSE(Find("Cut")->isEnabled());
    EXPECT_FALSE(Find("Paste")->isEnabled());
    EXPECT_FALSE(Find("Clear")->isEnabled());
    EXPECT_TRUE(Find("Copy")->isEnabled());
    platform.window = false;
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Copy")->isEnabled());
}

TEST_F(MenuBarTest, AModalDialogDisablesTheMenus)
{
    platform.window = true;
    gModalRunning = true;
    KSRevalidateMenus();
    EXPECT_FALSE(Find("Quit Testron")->isEnabled());
    EXPECT_FALSE(Find("Open...")->isEnabled());
    gModalRunning = false;
    KSRevalidateMenus();
    EXPECT_TRUE(Find("Quit Testron")->isEnabled());
}

TEST_F(MenuBarTest, SharedItemsCanBeRetitled)
{
    KSSetAudioRecordingMenuTitle("Stop Recording Audio");
    KSSetNetworkHostMenuTitle("Stop Hosting");
    KSSetNetworkJoinMenuTitle("Leave Game");
    EXPECT_EQ(KSMarkedMenuAction(KSMenuMark::AudioRecording)->text(), "Stop Recording Audio");
    EXPECT_EQ(KSMarkedMenuAction(KSMenuMark::NetworkHost)->text(), "Stop Hosting");
    EXPECT_EQ(KSMarkedMenuAction(KSMenuMark::NetworkJoin)->text(), "Leave Game");
    EXPECT_EQ(KSFindMenuAction("Stop Recording Audio"), KSMarkedMenuAction(KSMenuMark::AudioRecording));
}

TEST_F(MenuBarTest, WebLinksOpenTheirAddresses)
{
    Trigger("Forum");
    EXPECT_EQ(desktop.url, "https://example.org/forum");
    Trigger("Home Page");
    EXPECT_EQ(desktop.url, "https://example.org/");
    QAction *web = Find("Testron on the Web");
    ASSERT_NE(web->menu(), nullptr);
    EXPECT_TRUE(web->menu()->actions()[1]->isSeparator());
}

TEST_F(MenuBarTest, AboutAndQuitGoThroughTheirCommands)
{
    Trigger("About Testron");
    EXPECT_EQ(desktop.aboutName, "Testron (with Lumivex)");
    Trigger("Quit Testron");
    EXPECT_EQ(platform.eventLoopStops, 1);
}

TEST_F(MenuBarTest, ReinstallingReplacesTheMenuBar)
{
    QMenuBar *again = KSInstallQtMenuBar(window);
    EXPECT_EQ(window->menuBar(), again);
    EXPECT_EQ(again->actions().size(), 4);
    EXPECT_NE(KSOpenRecentMenu(), nullptr);
    bar = again;
    platform.window = true;
    KSRevalidateMenus();
    Trigger("Reset");
    EXPECT_EQ(FakeHost::commands, std::vector<uint32_t>{KS_CMD_RESET});
}

// Renders the window with its File menu open; with LUMIVEX_MENU_SCREENSHOT set the
// picture is kept at that path for a person to look at.
TEST_F(MenuBarTest, TheOpenFileMenuShowsItsItems)
{
    platform.window = true;
    window->resize(640, 502);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QMenu *file = TopMenu(1);
    const QRect fileTitle = bar->actionGeometry(bar->actions().at(1));
    file->popup(bar->mapToGlobal(fileTitle.bottomLeft()));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(file));
    EXPECT_TRUE(Find("Reset")->isEnabled()); // validated as the menu opened

    const QImage menu = file->grab().toImage();
    // Open..., Open Recent, Close, Reset and Machine, at least one text line each.
    EXPECT_GE(menu.height(), 5 * file->fontMetrics().height());
    QImage shot = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    QPainter painter(&shot);
    painter.drawImage(window->mapFromGlobal(file->pos()), menu);
    painter.end();
    QSet<QRgb> colours;
    for (int y = 0; y < menu.height(); y += 2)
        for (int x = 0; x < menu.width(); x += 2)
            colours.insert(menu.pixel(x, y));
    EXPECT_GT(colours.size(), 2); // text drawn on the menu's background
    if (!qEnvironmentVariableIsEmpty("LUMIVEX_MENU_SCREENSHOT"))
        EXPECT_TRUE(shot.save(qEnvironmentVariable("LUMIVEX_MENU_SCREENSHOT")));
    file->hide();
}

} // namespace
