// What each menu command does and when it is enabled, against a fake host,
// platform and desktop.
#include <gtest/gtest.h>

#include "menu_fakes.h"
#include "shell/ks_main.h"

namespace
{

const uint32_t kTurboCode = KS_FOURCC('T', 'r', 'b', 'o');

class CommandTest : public ::testing::Test
{
  protected:
    MenuTestRecord host{{AboutEntry()},
                        {KSWebLink{"Home Page", "https://example.org/"}, KSWebLink{"-", nullptr},
                         KSWebLink{"Forum", "https://example.org/forum"}}};
    MenuFakePlatform platform;
    RecordingDesktop desktop;
    CountingPanels panels;

    void SetUp() override
    {
        KSSetPanelPresenter(&panels);
        FakeHost::reset();
        FakeHost::attach(host.record);
        host.install();
        KSSetPlatform(&platform);
        KSSetDesktopCommands(&desktop);
        gModalRunning = false;
    }
    void TearDown() override
    {
        KSResetMenuCommands();
        KSSetPanelPresenter(nullptr);
        KSSetPlatform(nullptr);
        gModalRunning = false;
        gConfigParameters = nullptr;
    }
};

struct AskedItem {
    KSMenuAction action;
    uint32_t code;
};
const AskedItem kAskedItems[] = {
    {KSMenuAction::MakeIcon, KS_CMD_MAKE_ICON},
    {KSMenuAction::Close, KS_CMD_CLOSE},
    {KSMenuAction::Freeze, KS_CMD_FREEZE},
    {KSMenuAction::Defrost, KS_CMD_DEFROST},
    {KSMenuAction::NetworkHost, KS_CMD_NETWORK_HOST},
    {KSMenuAction::NetworkJoin, KS_CMD_NETWORK_JOIN},
};

const KSMenuAction kWindowItems[] = {KSMenuAction::Reset, KSMenuAction::Print, KSMenuAction::CopyToClipboard,
                                     KSMenuAction::SaveScreenshot, KSMenuAction::AudioRecToggle};

const KSMenuAction kAlwaysItems[] = {
    KSMenuAction::About,   KSMenuAction::Open,        KSMenuAction::PageSetup, KSMenuAction::ToggleFullScreen,
    KSMenuAction::WebLink, KSMenuAction::Preferences, KSMenuAction::Hide,      KSMenuAction::HideOthers,
    KSMenuAction::ShowAll, KSMenuAction::Terminate};

// ---- Enabling ----

TEST_F(CommandTest, RequiresFileFreezeIsEnabledOnlyWhileAFileIsOpenWhateverMenuUpdateSays)
{
    host.record.requires_file = 1;
    FakeHost::answer = true;
    platform.window = false;
    EXPECT_FALSE(KSValidateMenuItem(KSMenuAction::Freeze, 0));
    FakeHost::answer = false;
    platform.window = true;
    EXPECT_TRUE(KSValidateMenuItem(KSMenuAction::Freeze, 0));
    EXPECT_TRUE(FakeHost::updates.empty());
}

TEST_F(CommandTest, RequiresFileItemsFollowTheWindow)
{
    host.record.requires_file = 1;
    for (const AskedItem &item : kAskedItems) {
        platform.window = false;
        EXPECT_FALSE(KSValidateMenuItem(item.action, 0));
        platform.window = true;
        EXPECT_TRUE(KSValidateMenuItem(item.action, 0));
    }
    EXPECT_TRUE(FakeHost::updates.empty());
}

TEST_F(CommandTest, WithoutRequiresFileMenuUpdateDecidesWithTheItemsCodeAndFlags)
{
    host.record.requires_file = 0;
    for (const AskedItem &item : kAskedItems) {
        for (bool window : {false, true}) {
            platform.window = window;
            for (bool answer : {false, true}) {
                FakeHost::answer = answer;
                FakeHost::updates.clear();
                EXPECT_EQ(KSValidateMenuItem(item.action, 0), answer);
                ASSERT_EQ(FakeHost::updates.size(), 1u);
                EXPECT_EQ(std::get<0>(FakeHost::updates[0]), item.code);
                EXPECT_EQ(std::get<1>(FakeHost::updates[0]), window);
                EXPECT_FALSE(std::get<2>(FakeHost::updates[0]));
            }
        }
    }
}

TEST_F(CommandTest, CustomItemsAskMenuUpdateWithTheirTag)
{
    for (uint8_t requiresFile : {0, 1}) {
        host.record.requires_file = requiresFile;
        platform.window = true;
        FakeHost::updates.clear();
        FakeHost::answer = false;
        EXPECT_FALSE(KSValidateMenuItem(KSMenuAction::Custom, kTurboCode));
        FakeHost::answer = true;
        EXPECT_TRUE(KSValidateMenuItem(KSMenuAction::Custom, kTurboCode));
        ASSERT_EQ(FakeHost::updates.size(), 2u);
        EXPECT_EQ(std::get<0>(FakeHost::updates[1]), kTurboCode);
        EXPECT_TRUE(std::get<1>(FakeHost::updates[1]));
    }
}

TEST_F(CommandTest, CustomItemsOfAHostThatNeedsAFileAndHasNoMenuUpdateAreEnabled)
{
    host.record.requires_file = 1;
    host.record.handle_menuupdate = nullptr;
    EXPECT_TRUE(KSValidateMenuItem(KSMenuAction::Custom, kTurboCode));
}

TEST_F(CommandTest, ResetPrintCopyScreenshotAndRecordingFollowTheWindow)
{
    for (KSMenuAction action : kWindowItems) {
        platform.window = false;
        EXPECT_FALSE(KSValidateMenuItem(action, 0));
        platform.window = true;
        EXPECT_TRUE(KSValidateMenuItem(action, 0));
    }
    EXPECT_TRUE(FakeHost::updates.empty());
}

TEST_F(CommandTest, EveryOtherItemIsEnabledWithoutAWindow)
{
    platform.window = false;
    for (KSMenuAction action : kAlwaysItems)
        EXPECT_TRUE(KSValidateMenuItem(action, 0)) << (int)action;
}

TEST_F(CommandTest, ItemsWithoutAnActionAreDisabled)
{
    platform.window = true;
    EXPECT_FALSE(KSValidateMenuItem(KSMenuAction::None, 0));
}

TEST_F(CommandTest, AModalDialogDisablesEveryItemWithoutAskingTheHost)
{
    platform.window = true;
    gModalRunning = true;
    for (int action = 0; action <= (int)KSMenuAction::None; action++)
        EXPECT_FALSE(KSValidateMenuItem((KSMenuAction)action, kTurboCode)) << action;
    EXPECT_TRUE(FakeHost::updates.empty());
}

TEST_F(CommandTest, WhileHostingOnlyHostAndTheCaptureItemsAreEnabled)
{
    KSMenuEnablingState state;
    state.windowExists = true;
    state.networkActive = true;
    state.networkHosting = true;
    EXPECT_TRUE(KSMenuItemEnabled(KSMenuAction::NetworkHost, 0, state));
    EXPECT_FALSE(KSMenuItemEnabled(KSMenuAction::NetworkJoin, 0, state));
    for (KSMenuAction action : {KSMenuAction::Print, KSMenuAction::CopyToClipboard, KSMenuAction::SaveScreenshot,
                                KSMenuAction::AudioRecToggle, KSMenuAction::MakeIcon})
        EXPECT_TRUE(KSMenuItemEnabled(action, 0, state)) << (int)action;
    for (KSMenuAction action :
         {KSMenuAction::Reset, KSMenuAction::Open, KSMenuAction::Close, KSMenuAction::Freeze, KSMenuAction::Defrost,
          KSMenuAction::Custom, KSMenuAction::Terminate, KSMenuAction::About})
        EXPECT_FALSE(KSMenuItemEnabled(action, kTurboCode, state)) << (int)action;
    EXPECT_TRUE(FakeHost::updates.empty());
}

TEST_F(CommandTest, WhenJoinedTheJoinItemIsEnabledAndTheHostItemNot)
{
    KSMenuEnablingState state;
    state.windowExists = true;
    state.networkActive = true;
    state.networkHosting = false;
    EXPECT_FALSE(KSMenuItemEnabled(KSMenuAction::NetworkHost, 0, state));
    EXPECT_TRUE(KSMenuItemEnabled(KSMenuAction::NetworkJoin, 0, state));
}

TEST_F(CommandTest, MenuUpdateHearsThatANetworkGameRunsOnlyOutsideTheNetworkRule)
{
    // The flag reaches the host as given; with no network game it is false.
    KSMenuEnablingState state;
    state.windowExists = true;
    EXPECT_TRUE(KSMenuItemEnabled(KSMenuAction::Custom, kTurboCode, state));
    ASSERT_EQ(FakeHost::updates.size(), 1u);
    EXPECT_FALSE(std::get<2>(FakeHost::updates[0]));
}

using CommandDeathTest = CommandTest;

TEST_F(CommandDeathTest, MissingMenuUpdateStopsWhenItIsRequired)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    host.record.requires_file = 0;
    host.record.handle_menuupdate = nullptr;
    EXPECT_EXIT(KSValidateMenuItem(KSMenuAction::Freeze, 0), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\n" + LiteralPattern("gConfigParameters->handle_menuupdate") +
                    "\nks_commands\\.cpp, line [0-9]+");
}

// ---- Actions ----

TEST_F(CommandTest, AboutShowsTheNameVersionAndCredits)
{
    KSPerformMenuAction(KSMenuAction::About, 0);
    ASSERT_EQ(desktop.calls, std::vector<std::string>{"about"});
    EXPECT_EQ(desktop.aboutName, "Testron (with Lumivex)");
    EXPECT_EQ(desktop.aboutVersion, "2.5.1");
    EXPECT_EQ(desktop.aboutCredits, "Original version by Ada Original\nMacintosh version by Mac Porter");
}

TEST_F(CommandTest, AboutTextsStayInsideUnterminatedRecordFields)
{
    memset(host.record.emulator_name, 'N', sizeof host.record.emulator_name);
    memset(host.record.version, 'V', sizeof host.record.version);
    const KSAboutTexts texts = KSAboutPanelTexts();
    EXPECT_EQ(texts.name, std::string(64, 'N') + " (with Lumivex)");
    EXPECT_EQ(texts.version, std::string(128, 'V'));
}

TEST_F(CommandTest, OpenResetDefrostAndCustomReachTheHostWithTheirCodes)
{
    platform.window = true;
    KSPerformMenuAction(KSMenuAction::Open, KS_STD_OPEN);
    KSPerformMenuAction(KSMenuAction::Reset, 0);
    KSPerformMenuAction(KSMenuAction::Defrost, KS_STD_DEFROST);
    KSPerformMenuAction(KSMenuAction::Custom, kTurboCode);
    const std::vector<uint32_t> expected = {KS_STD_OPEN, KS_CMD_RESET, KS_STD_DEFROST, kTurboCode};
    EXPECT_EQ(FakeHost::commands, expected);
}

TEST_F(CommandTest, OpenAndDefrostRunAnOpenPanelAfterTheHostHeardTheCode)
{
    platform.window = true;
    KSPerformMenuAction(KSMenuAction::Open, KS_STD_OPEN);
    EXPECT_EQ(panels.openPanels, 1);
    KSPerformMenuAction(KSMenuAction::Defrost, KS_STD_DEFROST);
    EXPECT_EQ(panels.openPanels, 2);
    EXPECT_EQ(panels.savePanels, 0);
}

TEST_F(CommandTest, FreezeRunsASavePanelWithoutTellingTheHostACode)
{
    platform.window = true;
    KSPerformMenuAction(KSMenuAction::Freeze, 0);
    EXPECT_EQ(panels.savePanels, 1);
    EXPECT_TRUE(FakeHost::commands.empty());
}

TEST_F(CommandTest, CommandsWithoutAHostHandlerDoNothingHarmful)
{
    host.record.handle_command = nullptr;
    KSPerformMenuAction(KSMenuAction::Reset, 0);
    KSPerformMenuAction(KSMenuAction::Custom, kTurboCode);
    EXPECT_TRUE(FakeHost::commands.empty());
}

TEST_F(CommandTest, CloseClosesTheFile)
{
    KSPerformMenuAction(KSMenuAction::Close, 0);
    EXPECT_EQ(FakeHost::closes, 1);
}

TEST_F(CommandTest, WebLinkOpensTheLinkAtTheTagsIndex)
{
    KSPerformMenuAction(KSMenuAction::WebLink, 2);
    EXPECT_EQ(desktop.url, "https://example.org/forum");
    desktop.calls.clear();
    KSPerformMenuAction(KSMenuAction::WebLink, 1); // the separator
    KSPerformMenuAction(KSMenuAction::WebLink, 3); // past the end
    EXPECT_TRUE(desktop.calls.empty());
}

TEST_F(CommandTest, DesktopCommandsGoToTheDesktop)
{
    KSPerformMenuAction(KSMenuAction::Hide, 0);
    KSPerformMenuAction(KSMenuAction::HideOthers, 0);
    KSPerformMenuAction(KSMenuAction::ShowAll, 0);
    KSPerformMenuAction(KSMenuAction::PageSetup, 0);
    const std::vector<std::string> expected = {"hide", "hideOthers", "showAll", "pageSetup"};
    EXPECT_EQ(desktop.calls, expected);
}

TEST_F(CommandTest, FullScreenTogglesOnlyWithAWindow)
{
    KSPerformMenuAction(KSMenuAction::ToggleFullScreen, 0);
    EXPECT_EQ(platform.toggles, 0);
    platform.window = true;
    KSPerformMenuAction(KSMenuAction::ToggleFullScreen, 0);
    EXPECT_EQ(platform.toggles, 1);
    EXPECT_TRUE(platform.fullScreen);
}

TEST_F(CommandTest, QuitWithoutAWindowStopsTheEventLoop)
{
    KSPerformMenuAction(KSMenuAction::Terminate, 0);
    EXPECT_EQ(platform.eventLoopStops, 1);
}

TEST_F(CommandTest, QuitWithAWindowStopsTheSessionThenTheEventLoop)
{
    platform.window = true;
    KSPerformMenuAction(KSMenuAction::Terminate, 0);
    EXPECT_FALSE(platform.window);
    EXPECT_EQ(platform.eventLoopStops, 1);
}

uint32_t pFeatureTag;
int pFeatureCalls;
void RecordFeature(uint32_t tag)
{
    pFeatureTag = tag;
    pFeatureCalls++;
}

TEST_F(CommandTest, FeatureCommandsReachTheirHandlersOnceSet)
{
    pFeatureCalls = 0;
    KSPerformMenuAction(KSMenuAction::SaveScreenshot, KS_STD_SCREENSHOT); // no handler: nothing happens
    EXPECT_EQ(pFeatureCalls, 0);
    for (KSMenuAction action :
         {KSMenuAction::Print, KSMenuAction::CopyToClipboard, KSMenuAction::SaveScreenshot, KSMenuAction::MakeIcon,
          KSMenuAction::NetworkHost, KSMenuAction::NetworkJoin, KSMenuAction::Preferences}) {
        KSSetMenuFeatureHandler(action, RecordFeature);
        pFeatureTag = 0;
        KSPerformMenuAction(action, 77);
        EXPECT_EQ(pFeatureTag, 77u) << (int)action;
    }
    EXPECT_EQ(pFeatureCalls, 7);
}

TEST_F(CommandTest, OnlyFeatureCommandsTakeHandlers)
{
    pFeatureCalls = 0;
    KSSetMenuFeatureHandler(KSMenuAction::Reset, RecordFeature);
    KSPerformMenuAction(KSMenuAction::Reset, 0);
    EXPECT_EQ(pFeatureCalls, 0);
    EXPECT_EQ(FakeHost::commands, std::vector<uint32_t>{KS_CMD_RESET});
}

} // namespace
