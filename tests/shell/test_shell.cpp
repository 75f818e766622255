#include <QFileInfo>
#include <thread>

#include "shell/ks_frame_schedule.h"
#include "shell_fixture.h"
#include "blitters/ks_blitters.h"
#include "sound/ks_audio_queue.h"
#include "sound/ks_sound.h"

double FakeClock::now;
ShellTest *ShellTest::current;



extern "C" size_t LayoutSizeFromC(void);
extern "C" size_t LayoutOffsetFromC(int which);

TEST(Record, LayoutIsTheSameFromC)
{
    EXPECT_EQ(LayoutSizeFromC(), 520u);
    EXPECT_EQ(LayoutOffsetFromC(0), 68u);
    EXPECT_EQ(LayoutOffsetFromC(1), 328u);
    EXPECT_EQ(LayoutOffsetFromC(2), 416u);
    EXPECT_EQ(LayoutOffsetFromC(3), 515u);
    EXPECT_EQ(LayoutOffsetFromC(4), 32u);
    EXPECT_EQ(LayoutOffsetFromC(5), 24u);
    EXPECT_EQ(LayoutOffsetFromC(6), 16u);
}

TEST_F(ShellTest, HandshakeAcceptsOnlyTheAgreedVersion)
{
    EXPECT_FALSE(LVHandshake(12543, "3.0"));
    ASSERT_EQ(alerts.alerts.size(), 1u);
    EXPECT_EQ(alerts.alerts[0].message, "Unable to load Lumivex.");
    EXPECT_NE(alerts.alerts[0].informative.find("only compatible with emulators released on or after December 1st, 2019."),
              std::string::npos);

    EXPECT_TRUE(LVHandshake(12544, "3.1"));
    EXPECT_EQ(alerts.alerts.size(), 1u);

    EXPECT_FALSE(LVHandshake(12545, "3.2"));
    ASSERT_EQ(alerts.alerts.size(), 2u);
    EXPECT_EQ(alerts.alerts[1].informative,
              "Lumivex v3.1 is installed, which is not compatible with the emulator shell v3.2. Please download and "
              "install the latest release to resolve this issue.");
}

// In the child of a death test the alert is printed between markers.
class MarkedAlerts : public LVAlertPresenter {
public:
    void present(const std::string &m, const std::string &i, const std::string &b) override
    {
        fprintf(stderr, "<%s|%s|%s>", m.c_str(), i.c_str(), b.c_str());
    }
};

TEST(Assert, FormatsTheConditionFileAndLineThenExitsWithOne)
{
    static MarkedAlerts marked;
    EXPECT_EXIT(
        {
            KSSetAlertPresenter(&marked);
            KSAssert("x > 0", "/a/b/ks_main", 12);
        },
        ::testing::ExitedWithCode(1), "<Fatal Assertion Failure\\|x > 0\nks_main, line 12\\|Quit>");
}

TEST(Assert, ANullExpressionReturns)
{
    KSAssert(nullptr, "file", 1);
    SUCCEED() << "returned";
}

TEST(Alert, ANullMessageShowsTheTitleAlone)
{
    RecordingAlerts alerts;
    KSSetAlertPresenter(&alerts);
    KSHeadsUpAlert("Title", nullptr);
    KSSetAlertPresenter(nullptr);
    ASSERT_EQ(alerts.alerts.size(), 1u);
    EXPECT_EQ(alerts.alerts[0].message, "Title");
    EXPECT_EQ(alerts.alerts[0].informative, "");
    EXPECT_EQ(alerts.alerts[0].button, "OK");
}

TEST_F(ShellTest, OutputPathCreatesItsFolder)
{
    qputenv("XDG_DATA_HOME", dir.filePath("data").toUtf8());
    static const char *folders[] = {"Screenshots", "Freezes"};
    config.output_folders = folders;
    gConfigParameters = &config;
    const std::string path = KSGetOutputPath(1, nullptr);
    EXPECT_TRUE(QFileInfo(QString::fromStdString(path)).isDir());
    EXPECT_NE(path.find("/Morrowvale/Shell Test/Freezes"), std::string::npos);
    const std::string file = KSGetOutputPath(0, "png");
    EXPECT_NE(file.find("/Screenshots/Shell Test.png"), std::string::npos);
}

TEST_F(ShellTest, FreezePathOf2047CharactersIsAccepted)
{
    std::string path(2047, 'a');
    KSSetFreezePath(path.c_str());
    EXPECT_EQ(strlen(gQuickFreezePath), 2047u);
}

TEST_F(ShellTest, FreezePathOf2048CharactersIsFatal)
{
    static MarkedAlerts marked;
    std::string path(2048, 'a');
    EXPECT_EXIT(
        {
            KSSetAlertPresenter(&marked);
            KSSetFreezePath(path.c_str());
        },
        ::testing::ExitedWithCode(1), "strlen\\(path\\) < MAX_PATH_LENGTH");
}

TEST_F(ShellTest, InitStartsTheSessionOfAMachineWithoutFiles)
{
    KSInit(&config);
    EXPECT_TRUE(KSSessionRunning());
    EXPECT_EQ(platform.windowsCreated, 1);
    EXPECT_EQ(platform.contentWidth, 64u);
    EXPECT_EQ(platform.contentHeight, 48u);
    EXPECT_NEAR(platform.lastInterval, 1.0 / 60, 1e-12);
}

TEST_F(ShellTest, FourThreeAspectSetsTheFirstContentSize)
{
    KSPrefsOpenFile(dir.filePath("aspect.ini").toStdString());
    KSPrefSetInt(kPrefAspectRatio, 1);
    KSPrefSetInt(kPrefBlitterSize, 2);
    config.initial_width = 100;
    KSInit(&config);
    EXPECT_EQ(platform.contentWidth, 200u);
    EXPECT_EQ(platform.contentHeight, 150u);
}

TEST_F(ShellTest, RequiresFileWaitsForAFile)
{
    config.requires_file = 1;
    KSInit(&config);
    EXPECT_FALSE(KSSessionRunning());
}

TEST_F(ShellTest, SettingTheCurrentFrameRateRestartsNothing)
{
    KSInit(&config);
    const int starts = platform.timerStarts, stops = platform.timerStops;
    KSSetFrameRate(60);
    EXPECT_EQ(platform.timerStarts, starts);
    EXPECT_EQ(platform.timerStops, stops);
    KSSetFrameRate(50);
    EXPECT_EQ(platform.timerStarts, starts + 1);
    EXPECT_NEAR(platform.lastInterval, 1.0 / 50, 1e-12);
    EXPECT_EQ(config.framerate, 50u);
}

TEST_F(ShellTest, VideoDimensionsBeforeAWindowOnlyRecord)
{
    config.requires_file = 1;
    KSInit(&config);
    testing::internal::CaptureStdout();
    KSSetVideoDimensions(80, 60);
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_NE(out.find("KSDEBUG: KSSetVideoDimensions called without extant window."), std::string::npos);
    EXPECT_EQ(gRequestedVideoWidth, 80u);
    EXPECT_EQ(gBackVideoWidth, 0u);
    KSStartSession();
    EXPECT_EQ(gBackVideoWidth, 80u);
    EXPECT_EQ(gBackVideoHeight, 60u);
    EXPECT_EQ(gOutputVideoWidth, 80u);
}

TEST_F(ShellTest, VideoDimensionsWithAWindowReallocate)
{
    KSInit(&config);
    KSSetVideoDimensions(32, 16);
    EXPECT_EQ(gBackVideoWidth, 32u);
    EXPECT_EQ(gOutputVideoHeight, 16u);
    tick();
    EXPECT_EQ(lastBackBuffer, gBackVideoBuffer[1]);
}

TEST_F(ShellTest, MouseIsFalseWithoutASession)
{
    config.uses_mouse = 1;
    config.requires_file = 1;
    KSInit(&config);
    uint32_t x = 99, y = 99;
    uint8_t b = 9;
    EXPECT_FALSE(KSGetMouse(&x, &y, &b));
    EXPECT_EQ(x, 99u);
    KSStartSession();
    EXPECT_TRUE(KSGetMouse(&x, &y, &b));
    EXPECT_EQ(x, 3u);
}

TEST_F(ShellTest, TheFirstFrameDrawsIntoBackBufferOne)
{
    KSInit(&config);
    tick();
    EXPECT_EQ(frames, 1);
    EXPECT_EQ(lastBackBuffer, gBackVideoBuffer[1]);
    tick();
    EXPECT_EQ(lastBackBuffer, gBackVideoBuffer[0]);
    EXPECT_EQ(platform.draws, 2);
}

TEST_F(ShellTest, ModalAndPausedTicksDoNothing)
{
    KSInit(&config);
    gModalRunning = true;
    tick();
    gModalRunning = false;
    KSPauseOnResign();
    tick();
    EXPECT_EQ(frames, 0);
    gKeyState[6] = 1;
    KSResumeOnActivate();
    EXPECT_EQ(gKeyState[6], 0) << "coming back releases every key";
    tick();
    EXPECT_EQ(frames, 1);
}

TEST_F(ShellTest, ButtonStatesFollowTheKeysEachFrame)
{
    KSInit(&config);
    gKeyState[6] = 1;
    tick();
    EXPECT_EQ(buttons[3].state, 1);
    gKeyState[6] = 0;
    tick();
    EXPECT_EQ(buttons[3].state, 0);
}

TEST_F(ShellTest, QuickQuitHeldTwoSecondsStopsTheLoop)
{
    KSInit(&config);
    gKeyState[53] = 1;
    for (int frame = 1; frame <= 120; frame++) {
        tick();
        if (frame < 60)
            ASSERT_EQ(placards.back(), "Quick Quit: Hold Two Seconds") << frame;
        else if (frame < 120)
            ASSERT_EQ(placards.back(), "Quick Quit: Hold One Second") << frame;
    }
    EXPECT_TRUE(platform.eventLoopStopped);
    EXPECT_FALSE(KSSessionRunning());
}

TEST_F(ShellTest, QuickQuitReleasedEarlySaysCancelledOnce)
{
    KSInit(&config);
    gKeyState[53] = 1;
    for (int i = 0; i < 30; i++) tick();
    gKeyState[53] = 0;
    tick();
    tick();
    EXPECT_EQ(placards[30], "Quick Quit: Cancelled");
    EXPECT_EQ(placards[31], "");
    EXPECT_FALSE(platform.eventLoopStopped);
}

TEST_F(ShellTest, AHeldQuickFreezeKeyFiresEvery31Frames)
{
    KSInit(&config);
    gKeyState[96] = 1;
    std::vector<int> fired;
    for (int frame = 1; frame <= 70; frame++) {
        const int before = freezes;
        tick();
        if (freezes != before) fired.push_back(frame);
    }
    EXPECT_EQ(fired, (std::vector<int>{1, 32, 63}));
    EXPECT_EQ(placards[0], "Quick Freeze");
}

TEST_F(ShellTest, ReleasingACommandKeyLetsItFireAgainAtOnce)
{
    KSInit(&config);
    gKeyState[96] = 1;
    tick();
    KSKeyUp(96, 0);
    gKeyState[96] = 1;
    tick();
    EXPECT_EQ(freezes, 2);
}

TEST_F(ShellTest, TwoFullScreenTogglesWithinASecondTheSecondIgnored)
{
    KSInit(&config);
    gKeyState[103] = 1;
    tick();
    EXPECT_EQ(platform.toggles, 1);
    for (int i = 0; i < 30; i++) tick(); // half a second, key still held
    EXPECT_EQ(platform.toggles, 1);
    for (int i = 0; i < 40; i++) tick(); // past one second since the change
    EXPECT_EQ(platform.toggles, 2);
}

TEST_F(ShellTest, HQ3XAtSizeTwoFallsBackToPlainOne)
{
    KSPrefSetString(kPrefBlitterType, "HQ3X");
    KSPrefSetInt(kPrefBlitterSize, 2);
    KSInit(&config);
    ASSERT_NE(gBlitterActive.load(), nullptr);
    EXPECT_STREQ(gBlitterActive.load()->name, "Plain");
    EXPECT_EQ(gBlitterSize, 1);
    EXPECT_EQ(gOutputVideoWidth, 64u);
    EXPECT_EQ(gOutputVideoHeight, 48u);
}

TEST_F(ShellTest, SelectionFindsNameAndSize)
{
    KSPrefSetString(kPrefBlitterType, "Plain");
    KSPrefSetInt(kPrefBlitterSize, 3);
    KSInit(&config);
    EXPECT_EQ(gBlitterSize, 3);
    EXPECT_EQ(gOutputVideoWidth, 192u);
}

TEST_F(ShellTest, RegistrationGivesTwentySevenNamesWithTheirMasks)
{
    KSInit(&config);
    ASSERT_EQ(gBlitterCount, 27u);
    EXPECT_STREQ(gBlitterNames[0], "Plain");
    EXPECT_EQ(gBlitterSizes[0], 0x3Eu);
    auto mask = [](const char *name) {
        for (uint32_t i = 0; i < gBlitterCount; i++)
            if (strcmp(gBlitterNames[i], name) == 0) return gBlitterSizes[i];
        return 0u;
    };
    EXPECT_EQ(mask("Blur"), 0x1Eu);
    EXPECT_EQ(mask("RGB Mode"), 0x3Cu);
    EXPECT_EQ(mask("Arcade 75%"), 0x3Cu);
    EXPECT_EQ(mask("HQ3X"), 0x08u);
    EXPECT_EQ(mask("Super Eagle"), 0x14u);
    EXPECT_EQ(mask("Simple Smoothing"), 0x0Cu);
    EXPECT_STREQ(gBlitterNames[26], "Simple Smoothing");
}

TEST(FrameSchedule, TicksOnTheGridWithoutCatchUpBursts)
{
    KSFrameSchedule s;
    const double interval = 1.0 / 60;
    s.start(10.0, interval);
    EXPECT_FALSE(s.due(10.0 + interval * 0.5));
    EXPECT_TRUE(s.due(10.0 + interval));
    EXPECT_NEAR(s.next(), 10.0 + 2 * interval, 1e-9);
    // A tick that comes 3.5 intervals late runs once; the next deadline is the
    // next grid point, not three catch-up ticks.
    EXPECT_TRUE(s.due(10.0 + 5.5 * interval));
    EXPECT_NEAR(s.next(), 10.0 + 6 * interval, 1e-9);
    EXPECT_FALSE(s.due(10.0 + 5.6 * interval));
    // Over a simulated second of 1 ms polling, exactly 60 ticks come due.
    KSFrameSchedule t;
    t.start(0.0, interval);
    int ticks = 0;
    for (int ms = 1; ms <= 1000; ms++)
        if (t.due(ms / 1000.0)) ticks++;
    EXPECT_EQ(ticks, 60);
}

// A device that never plays: blocks pile up in the ring until it is full.
class InertDevice : public LVAudioDevice {
public:
    bool open(const KSAudioFormat &, uint32_t) override { return true; }
    void start(LVAudioQueue *) override {}
    void close() override {}
};

TEST_F(ShellTest, AFrameWithAFullSoundRingGivesTheCoreNoBuffer)
{
    KSSetAudioDeviceFactory([] { return std::unique_ptr<LVAudioDevice>(new InertDevice); });
    config.uses_sound = 1;
    config.frequency = 44100;
    config.sample_bits = 16;
    config.stereo = 1;
    KSInit(&config);
    std::vector<bool> gotBuffer;
    for (int i = 0; i < 9; i++) {
        tick();
        gotBuffer.push_back(lastSound != nullptr);
    }
    // Seven blocks fill the ring; from then on the core gets null and nothing is committed.
    EXPECT_EQ(gotBuffer, (std::vector<bool>{true, true, true, true, true, true, true, false, false}));
    KSStopSession();
    KSSetAudioDeviceFactory(nullptr);
}

TEST_F(ShellTest, SoundSwitchedOffGivesTheCoreNoBuffer)
{
    KSSetAudioDeviceFactory([] { return std::unique_ptr<LVAudioDevice>(new InertDevice); });
    config.uses_sound = 1;
    config.frequency = 44100;
    config.sample_bits = 16;
    KSInit(&config);
    KSPrefSetBool(kPrefSoundEnabled, false);
    tick();
    EXPECT_EQ(lastSound, nullptr);
    KSStopSession();
    KSSetAudioDeviceFactory(nullptr);
}
