// The real application on a real X display (Xvfb): the session's window, the frame
// timer, live resizing, full screen, menus and the keyboard, in one process.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <cstring>
#include <vector>

#include "input/ks_keyboard.h"
#include "prefs/ks_prefs.h"
#include "prefs/lv_menubar_qt.h"
#include "shell/ks_main.h"
#include "shell/lv_app.h"
#include "video/lv_view.h"
#include "video/ks_render.h"

namespace {

KSButton pButtons[] = {
    {"Joypad 1 Fire", 1, 0, KS_FUNCTION_INPUT}, // the A key
    {"Quick Quit", 0, 53, KS_FUNCTION_QUICK_QUIT},
    {nullptr},
};
const KSMenuItem pMenus[] = {
    {KS_MENU_APPLICATION, 1, (int32_t)KS_STD_ABOUT, nullptr},
    {KS_MENU_FILE, 1, (int32_t)KS_STD_RESET, nullptr},
    {KS_MENU_OPTIONS, 1, (int32_t)KS_STD_FREEZE, nullptr},
    {KS_MENU_OPTIONS, 2, (int32_t)KS_FOURCC('T', 's', 't', '1'), "Do Something%k"},
    {0},
};
const KSWebLink pLinks[] = {{nullptr, nullptr}};
KSPrefItem pPrefs[] = {{KS_PREF_END}};
KSConfigParameters pConfig;
int pFrames;
int pOpens;
std::vector<uint32_t> pCommands;
bool pFreezeAllowed = true;
QTemporaryDir *pDir;

void Pump(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

class Environment : public ::testing::Environment {
public:
    void SetUp() override
    {
        pDir = new QTemporaryDir;
        qputenv("XDG_CONFIG_HOME", pDir->filePath("config").toUtf8());
        qputenv("XDG_DATA_HOME", pDir->filePath("data").toUtf8());
        strcpy(pConfig.emulator_name, "Window Test");
        strcpy(pConfig.version, "2.5");
        pConfig.framerate = 60;
        pConfig.initial_width = 320;
        pConfig.initial_height = 240;
        pConfig.buttons = pButtons;
        pConfig.menuitems = pMenus;
        pConfig.weblinks = pLinks;
        pConfig.prefs = pPrefs;
        pConfig.handle_frame = [](uint16_t *back, void *) {
            pFrames++;
            for (int i = 0; i < 320 * 240; i++) back[i] = 0x03E0; // green
        };
        pConfig.handle_open = [](uint32_t, const char *) {
            pOpens++;
            return false;
        };
        pConfig.handle_command = [](uint32_t c) { pCommands.push_back(c); };
        pConfig.handle_menuupdate = [](uint32_t c, bool window, bool) {
            return c == KS_CMD_FREEZE ? pFreezeAllowed && window : true;
        };
        pConfig.handle_freeze = [](const char *) { return true; };
        pConfig.handle_defrost = [](const char *) { return true; };
        KSInit(&pConfig);
        KSPrefSetBool(kPrefPauseInBackground, false);
        Pump(300);
    }
};

LVMainWindow *Window() { return KSQtPlatform()->window(); }

} // namespace

TEST(Window, TheSessionShowsTheViewAndRunsAtTheFrameRate)
{
    ASSERT_TRUE(KSSessionRunning());
    ASSERT_TRUE(Window()->isVisible());
    const int before = pFrames;
    Pump(1000);
    const int ran = pFrames - before;
    EXPECT_GE(ran, 50);
    EXPECT_LE(ran, 66);
}

TEST(Window, TheViewShowsTheCoresPicture)
{
    Pump(100);
    const QImage picture = KSQtPlatform()->view()->grab();
    ASSERT_FALSE(picture.isNull());
    const QColor c = picture.pixelColor(picture.width() / 2, picture.height() / 2);
    EXPECT_EQ(c.red(), 0);
    EXPECT_EQ(c.green(), 248);
    EXPECT_EQ(c.blue(), 0);
}

TEST(Window, RigidResizingKeepsWholeMultiplesOfTheAspect)
{
    KSPrefSetBool(kPrefRigidResizing, true);
    KSPrefSetInt(kPrefAspectRatio, 1);
    Window()->resize(700, 500 - 22 + Window()->chromeHeight());
    Pump(200);
    EXPECT_EQ(Window()->holder()->width(), 640);
    EXPECT_EQ(Window()->holder()->height(), 480);
    KSPrefSetInt(kPrefAspectRatio, 0);
    Window()->resize(700, 500);
    Pump(200);
    EXPECT_EQ(Window()->width(), 700) << "rigid on but uncorrected: free resizing";
    KSPrefSetBool(kPrefRigidResizing, false);
}

TEST(Window, FullScreenLetterBoxesThePictureAndComesBack)
{
    KSPrefSetInt(kPrefAspectRatio, 1);
    Window()->resize(900, 400);
    Pump(200);
    KSQtPlatform()->toggleFullScreen();
    Pump(400);
    ASSERT_TRUE(KSQtPlatform()->isFullScreen());
    // Xvfb runs no window manager, so the window keeps its size; the picture sits
    // in it at 4:3, centred, as it does on a real full screen.
    const QSize area = Window()->holder()->size();
    const QRect view = Window()->container()->geometry();
    EXPECT_LE(std::abs(view.width() * 3 - view.height() * 4), 4) << view.width() << "x" << view.height();
    EXPECT_EQ(view.height(), area.height());
    EXPECT_LT(view.width(), area.width() - 100);
    EXPECT_LE(std::abs(view.center().x() - area.width() / 2), 1);
    KSQtPlatform()->toggleFullScreen();
    Pump(400);
    EXPECT_FALSE(KSQtPlatform()->isFullScreen());
    EXPECT_EQ(Window()->container()->geometry().size(), Window()->holder()->size());
    KSPrefSetInt(kPrefAspectRatio, 0);
}

TEST(Window, MenuActionsReachTheCore)
{
    pCommands.clear();
    QAction *reset = KSFindMenuAction("Reset");
    ASSERT_NE(reset, nullptr);
    reset->trigger();
    QAction *custom = KSFindMenuAction("Do Something");
    ASSERT_NE(custom, nullptr);
    custom->trigger();
    ASSERT_EQ(pCommands.size(), 2u);
    EXPECT_EQ(pCommands[0], KS_CMD_RESET);
    EXPECT_EQ(pCommands[1], KS_FOURCC('T', 's', 't', '1'));
}

TEST(Window, EnablingFollowsHandleMenuUpdate)
{
    QAction *freeze = KSFindMenuAction("Freeze Game State...");
    ASSERT_NE(freeze, nullptr);
    pFreezeAllowed = true;
    KSRevalidateMenus();
    EXPECT_TRUE(freeze->isEnabled());
    pFreezeAllowed = false;
    KSRevalidateMenus();
    EXPECT_FALSE(freeze->isEnabled());
    pFreezeAllowed = true;
}

TEST(Window, ThePhysicalAKeyPressesTheButtonBoundToIt)
{
    QWindow *view = KSQtPlatform()->view();
    // evdev code 30 (A) + 8, as X11 reports it, whatever the layout's letter.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier, 38, 0, 0, "q");
    QCoreApplication::sendEvent(view, &press);
    EXPECT_EQ(gKeyState[0], 1);
    Pump(100);
    EXPECT_EQ(pButtons[0].state, 1);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Q, Qt::NoModifier, 38, 0, 0, "q");
    QCoreApplication::sendEvent(view, &release);
    Pump(100);
    EXPECT_EQ(pButtons[0].state, 0);
}

TEST(Window, ADropOfExactlyOneFileOpensIt)
{
    const QString a = pDir->filePath("a.rom"), b = pDir->filePath("b.rom");
    for (const QString &path : {a, b}) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("rom");
    }
    auto drop = [](const QList<QUrl> &urls) { return Window()->openDroppedFiles(urls); };
    pOpens = 0;
    EXPECT_FALSE(drop({QUrl::fromLocalFile(a), QUrl::fromLocalFile(b)}));
    EXPECT_EQ(pOpens, 0) << "two files at once are refused";
    EXPECT_TRUE(drop({QUrl::fromLocalFile(a)}));
    EXPECT_EQ(pOpens, 1);
    EXPECT_TRUE(KSSessionRunning()) << "a machine that needs no file keeps running after a refused file";
}

TEST(Window, ClosingTheWindowEndsTheSession)
{
    Window()->close();
    Pump(100);
    EXPECT_FALSE(KSSessionRunning());
}

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        printf("no X display: the window tests need one (run under xvfb-run)\n");
        return 0;
    }
    ::testing::AddGlobalTestEnvironment(new Environment);
    return RUN_ALL_TESTS();
}
