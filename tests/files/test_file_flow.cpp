// Opening, closing, freezing and defrosting, followed through the host's callbacks,
// the recent list, the window title, the panels and the alerts.
#include <gtest/gtest.h>

#include <cstring>

#include "files_fixture.h"
#include "input/ks_keyboard.h"
#include "video/ks_placard.h"

double FakeClock::now;
FilesTest *FilesTest::current;

namespace
{

using Events = std::vector<std::string>;

class FileFlowTest : public FilesTest
{
};

} // namespace

TEST_F(FileFlowTest, ASuccessfulOpenStampsTheFileStartsTheSessionAndTitlesTheWindow)
{
    const std::string file = writeFile("game.rom", "GAME");
    KSWriteFileTypeAndCreator(file.c_str(), 0x47414D45, 0);
    uint32_t type = 0, creator = 0;
    KSReadFileTypeAndCreator(file.c_str(), &type, &creator);
    const std::string typeText = std::to_string(type); // 0 without extended attributes

    EXPECT_TRUE(KSOpenFile(file.c_str()));
    EXPECT_EQ(events, (Events{"open " + file + " type " + typeText, "title " + file, "recent " + file, "end picker"}));
    EXPECT_TRUE(KSSessionRunning());
    EXPECT_TRUE(platform.window);
    ASSERT_NE(KSCurrentFilePath(), nullptr);
    EXPECT_EQ(std::string(KSCurrentFilePath()), file);
    if (type != 0) {
        KSReadFileTypeAndCreator(file.c_str(), &type, &creator);
        EXPECT_EQ(type, config.file_type);
        EXPECT_EQ(creator, config.file_creator);
    }
}

TEST_F(FileFlowTest, OpeningWhileAFileIsLoadedRecordsTheOldFileFirst)
{
    const std::string first = writeFile("first.rom", "1");
    const std::string second = writeFile("second.rom", "2");
    ASSERT_TRUE(KSOpenFile(first.c_str()));
    events.clear();
    ASSERT_TRUE(KSOpenFile(second.c_str()));
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events[0], "recent " + first + " with screenshot");
    EXPECT_EQ(events[1].rfind("open " + second, 0), 0u) << events[1];
    EXPECT_EQ(std::string(KSCurrentFilePath()), second);
    EXPECT_EQ(platform.windowsCreated, 1) << "the running session is kept";
}

TEST_F(FileFlowTest, AFailedOpenClosesAndRestoresThePreviousFile)
{
    const std::string first = writeFile("first.rom", "1");
    const std::string second = writeFile("refused.rom", "2");
    ASSERT_TRUE(KSOpenFile(first.c_str()));
    events.clear();
    openAnswer = false;
    EXPECT_FALSE(KSOpenFile(second.c_str()));
    EXPECT_EQ(events, (Events{"recent " + first + " with screenshot", "open " + second + " type 0", "close",
                              "recent " + second + " with screenshot"}));
    EXPECT_FALSE(KSSessionRunning()) << "a machine that needs a file stops";
    EXPECT_FALSE(platform.window);
    ASSERT_NE(KSCurrentFilePath(), nullptr);
    EXPECT_EQ(std::string(KSCurrentFilePath()), first);
}

TEST_F(FileFlowTest, AFailedOpenOfAMachineWithoutFileKeepsTheWindowUntitled)
{
    config.requires_file = 0;
    KSStartSession();
    const std::string file = writeFile("refused.rom", "x");
    openAnswer = false;
    EXPECT_FALSE(KSOpenFile(file.c_str()));
    EXPECT_EQ(events.back(), "title cleared");
    EXPECT_TRUE(KSSessionRunning());
    EXPECT_EQ(KSCurrentFilePath(), nullptr) << "there was no previous file";
}

TEST_F(FileFlowTest, AFailedFirstOpenStartsNoSession)
{
    const std::string file = writeFile("refused.rom", "x");
    openAnswer = false;
    EXPECT_FALSE(KSOpenFile(file.c_str()));
    EXPECT_FALSE(KSSessionRunning());
    EXPECT_EQ(platform.windowsCreated, 0);
    EXPECT_EQ(KSCurrentFilePath(), nullptr);
}

TEST_F(FileFlowTest, ASymbolicLinkIsOpenedAsTheFileItPointsTo)
{
    const std::string target = writeFile("real.rom", "R");
    ASSERT_TRUE(QFile::link(dir.filePath("real.rom"), dir.filePath("alias.rom")));
    ASSERT_TRUE(KSOpenFile(path("alias.rom").c_str()));
    EXPECT_EQ(events.front(), "open " + target + " type 0");
    EXPECT_EQ(std::string(KSCurrentFilePath()), target);
}

TEST_F(FileFlowTest, OpenWithoutHandleOpenIsAFatalAssertion)
{
    config.handle_open = nullptr;
    const std::string file = writeFile("game.rom", "G");
    EXPECT_EXIT(KSOpenFile(file.c_str()), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\ngConfigParameters->handle_open\nks_file\\.cpp, line");
}

TEST_F(FileFlowTest, ClosingCallsHandleCloseRecordsTheFileAndStopsAMachineThatNeedsOne)
{
    const std::string file = writeFile("game.rom", "G");
    ASSERT_TRUE(KSOpenFile(file.c_str()));
    events.clear();
    KSCloseFile();
    EXPECT_EQ(events, (Events{"close", "recent " + file + " with screenshot"}));
    EXPECT_EQ(KSCurrentFilePath(), nullptr);
    EXPECT_FALSE(KSSessionRunning());
    EXPECT_FALSE(platform.window);
}

TEST_F(FileFlowTest, WithoutHandleCloseTheCoreGetsTheCloseCommand)
{
    static std::vector<uint32_t> commands;
    commands.clear();
    config.handle_close = nullptr;
    config.handle_command = [](uint32_t command) { commands.push_back(command); };
    config.requires_file = 0;
    const std::string file = writeFile("game.rom", "G");
    ASSERT_TRUE(KSOpenFile(file.c_str()));
    events.clear();
    KSCloseFile();
    EXPECT_EQ(commands, std::vector<uint32_t>{0x4B536373u}); // "KScs"
    EXPECT_EQ(events, (Events{"recent " + file + " with screenshot", "title cleared"}));
    EXPECT_TRUE(KSSessionRunning()) << "a machine without file keeps running";
}

TEST_F(FileFlowTest, ClosingWithNothingLoadedOnlyUnloads)
{
    config.requires_file = 0;
    KSCloseFile();
    EXPECT_EQ(events, (Events{"close", "title cleared"}));
}

TEST_F(FileFlowTest, TheOpenPanelHasItsMessageAndOpensTheChosenFile)
{
    const std::string file = writeFile("chosen.rom", "C");
    panels.answer = path("chosen.rom");
    KSOpenPanel();
    ASSERT_EQ(panels.opens.size(), 1u);
    EXPECT_EQ(panels.opens[0].message, "Select a file to open");
    EXPECT_FALSE(panels.opens[0].filter) << "no handle_filter, no filter";
    EXPECT_FALSE(panels.opens[0].customise);
    EXPECT_EQ(events.at(1), "open " + file + " type 0");
    EXPECT_TRUE(KSSessionRunning());
}

TEST_F(FileFlowTest, HandlePanelSeesThePanelBeforeItRunsAndNullAfterTheOpen)
{
    static std::vector<void *> given;
    given.clear();
    config.handle_panel = [](void *panel) {
        given.push_back(panel);
        current->events.push_back(panel ? "handle_panel dialog" : "handle_panel null");
    };
    useFilter();
    const std::string file = writeFile("chosen.rom", "C");
    panels.answer = path("chosen.rom");
    KSOpenPanel();
    ASSERT_EQ(panels.opens.size(), 1u);
    EXPECT_TRUE(panels.opens[0].filter);
    EXPECT_EQ(events.at(0), "handle_panel dialog");
    EXPECT_EQ(events.at(1), "open panel");
    EXPECT_EQ(events.at(2), "open " + file + " type 0");
    EXPECT_EQ(events.back(), "handle_panel null");
    EXPECT_EQ(given, (std::vector<void *>{panels.dialogHandle, nullptr}));
    // The filter is the delegate's: it reads the file and asks the host.
    EXPECT_TRUE(panels.opens[0].filter(file));
    EXPECT_EQ(filterCalls, 1);
}

TEST_F(FileFlowTest, ACancelledOpenPanelOpensNothingButStillEndsHandlePanel)
{
    config.handle_panel = [](void *panel) { current->events.push_back(panel ? "panel" : "panel null"); };
    panels.answer.clear();
    KSOpenPanel();
    EXPECT_EQ(events, (Events{"panel", "open panel", "panel null"}));
    EXPECT_FALSE(KSSessionRunning());
}

TEST_F(FileFlowTest, FreezeAsksForAFrzFileAndWritesThroughTheHost)
{
    panels.answer = path("Game State.frz");
    KSFreezePanel();
    ASSERT_EQ(panels.saves.size(), 1u);
    EXPECT_EQ(panels.saves[0].message, "Freeze Game State");
    EXPECT_EQ(panels.saves[0].allowedType, "frz");
    EXPECT_EQ(panels.saves[0].proposedName, "Game State.frz");
    const std::string expected =
        QDir(QFileInfo(dir.path()).canonicalFilePath()).filePath("Game State.frz").toStdString();
    EXPECT_EQ(events, (Events{"save panel", "freeze " + expected}));
    EXPECT_TRUE(alerts.alerts.empty());
}

TEST_F(FileFlowTest, AFreezeIntoALinkedFolderGetsTheResolvedPath)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath("real"));
    ASSERT_TRUE(QFile::link(dir.filePath("real"), dir.filePath("linked")));
    panels.answer = path("linked/state.frz");
    KSFreezePanel();
    const std::string expected =
        QDir(QFileInfo(dir.filePath("real")).canonicalFilePath()).filePath("state.frz").toStdString();
    EXPECT_EQ(events.back(), "freeze " + expected);
}

TEST_F(FileFlowTest, AFailedFreezeShowsItsAlert)
{
    panels.answer = path("x.frz");
    stateAnswer = false;
    KSFreezePanel();
    ASSERT_EQ(alerts.alerts.size(), 1u);
    EXPECT_EQ(alerts.alerts[0].message, "Unable to freeze game state.");
    EXPECT_EQ(alerts.alerts[0].informative, "");
    EXPECT_EQ(alerts.alerts[0].button, "OK");
}

TEST_F(FileFlowTest, ACancelledFreezeCallsNothing)
{
    KSFreezePanel();
    EXPECT_EQ(events, (Events{"save panel"}));
    EXPECT_TRUE(alerts.alerts.empty());
}

TEST_F(FileFlowTest, DefrostAsksForAnyFileAndReadsThroughTheHost)
{
    const std::string state = writeFile("saved.frz", "S");
    panels.answer = path("saved.frz");
    KSDefrostPanel();
    ASSERT_EQ(panels.opens.size(), 1u);
    EXPECT_EQ(panels.opens[0].message, "Defrost Game State");
    EXPECT_FALSE(panels.opens[0].filter) << "no type filter";
    EXPECT_EQ(events, (Events{"open panel", "defrost " + state}));
    EXPECT_TRUE(alerts.alerts.empty());
}

TEST_F(FileFlowTest, AFailedDefrostShowsItsAlert)
{
    writeFile("foreign.frz", "?");
    panels.answer = path("foreign.frz");
    stateAnswer = false;
    KSDefrostPanel();
    ASSERT_EQ(alerts.alerts.size(), 1u);
    EXPECT_EQ(alerts.alerts[0].message, "Unable to defrost game state.");
    EXPECT_EQ(alerts.alerts[0].informative, "");
}

TEST_F(FileFlowTest, AHostWithHandlePanelDefrostsThroughTheOrdinaryOpenPanel)
{
    config.handle_panel = [](void *panel) { current->events.push_back(panel ? "panel" : "panel null"); };
    const std::string state = writeFile("saved.frz", "S");
    panels.answer = path("saved.frz");
    KSDefrostPanel();
    ASSERT_EQ(panels.opens.size(), 1u);
    EXPECT_EQ(panels.opens[0].message, "Select a file to open");
    EXPECT_EQ(events.at(2), "open " + state + " type 0") << "the host tells state files apart itself";
    for (const std::string &e : events)
        EXPECT_EQ(e.rfind("defrost", 0), std::string::npos) << e;
}

TEST_F(FileFlowTest, FreezeOrDefrostWithoutTheirCallbacksAreFatalAssertions)
{
    config.handle_freeze = nullptr;
    EXPECT_EXIT(KSFreezePanel(), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\ngConfigParameters->handle_freeze\nks_file\\.cpp, line");
    config.handle_defrost = nullptr;
    EXPECT_EXIT(KSDefrostPanel(), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\ngConfigParameters->handle_defrost\nks_file\\.cpp, line");
}

TEST_F(FileFlowTest, QuickFreezeAndDefrostUseTheFreezePathAndSayHowItWent)
{
    static KSButton buttons[3]{};
    buttons[0] = KSButton{};
    buttons[0].title = "Quick Freeze";
    buttons[0].function = KS_FUNCTION_QUICK_FREEZE;
    buttons[0].keyCode = 96;
    buttons[1] = KSButton{};
    buttons[1].title = "Quick Defrost";
    buttons[1].function = KS_FUNCTION_QUICK_DEFROST;
    buttons[1].keyCode = 97;
    buttons[2] = KSButton{};
    config.buttons = buttons;
    const std::string quick = path("quick.frz");
    KSSetFreezePath(quick.c_str());
    ASSERT_TRUE(KSOpenFile(writeFile("game.rom", "G").c_str()));
    events.clear();

    auto press = [&](uint32_t key) {
        KSResetPlacards();
        gKeyState[key] = 1;
        KSFrameTick();
        gKeyState[key] = 0;
        KSFrameTick();
        memset(gCommandCountdown, 0, sizeof gCommandCountdown);
        const char *text = KSPlacardText();
        return std::string(text ? text : "");
    };
    EXPECT_EQ(press(96), "Quick Freeze");
    EXPECT_EQ(press(97), "Quick Defrost");
    stateAnswer = false;
    EXPECT_EQ(press(96), "Unable to Freeze");
    EXPECT_EQ(press(97), "Unable to Defrost");
    EXPECT_EQ(events, (Events{"freeze " + quick, "defrost " + quick, "freeze " + quick, "defrost " + quick}));
    EXPECT_TRUE(alerts.alerts.empty()) << "quick freezing reports through placards only";
    KSResetPlacards();
}
