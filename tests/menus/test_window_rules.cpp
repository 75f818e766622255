// The window's size rules: rigid live resizing, full-screen content sizes and the
// geometry applied after a session start or a picture-size change.
#include <gtest/gtest.h>

#include "shell/ks_window_rules.h"

namespace
{

TEST(RigidResize, FourThreeWith320PixelMachineSnaps700By500To640By502)
{
    const KSSize size = KSRigidResize({700, 500}, true, KS_ASPECT_4_3, 320, 224);
    EXPECT_EQ(size.width, 640);
    EXPECT_EQ(size.height, 502);
}

TEST(RigidResize, ModeZeroResizesFreely)
{
    const KSSize size = KSRigidResize({701, 533}, true, KS_ASPECT_UNCORRECTED, 320, 224);
    EXPECT_EQ(size.width, 701);
    EXPECT_EQ(size.height, 533);
}

TEST(RigidResize, RigidOffResizesFreely)
{
    const KSSize size = KSRigidResize({701, 533}, false, KS_ASPECT_4_3, 320, 224);
    EXPECT_EQ(size.width, 701);
    EXPECT_EQ(size.height, 533);
}

TEST(RigidResize, TheLargerFactorOfWidthAndHeightWins)
{
    // Width allows 1, height allows 3 (3 x 180 = 540 <= 560).
    const KSSize size = KSRigidResize({400, 560}, true, KS_ASPECT_16_9, 320, 200);
    EXPECT_EQ(size.width, 960);
    EXPECT_EQ(size.height, 3 * 180 + 22);
}

TEST(RigidResize, NeverBelowOneMultiple)
{
    const KSSize size = KSRigidResize({100, 50}, true, KS_ASPECT_4_3, 320, 224);
    EXPECT_EQ(size.width, 320);
    EXPECT_EQ(size.height, 240 + 22);
}

TEST(RigidResize, HardwareModeUsesTheMachineHeight)
{
    const KSSize size = KSRigidResize({800, 500}, true, KS_ASPECT_HARDWARE, 256, 224);
    EXPECT_EQ(size.width, 768);
    EXPECT_EQ(size.height, 3 * 224 + 22);
}

TEST(RigidResize, CorruptModeOrEmptyMachineLeavesTheSizeAlone)
{
    EXPECT_EQ(KSRigidResize({701, 533}, true, 9, 320, 224).width, 701);
    EXPECT_EQ(KSRigidResize({701, 533}, true, -1, 320, 224).height, 533);
    EXPECT_EQ(KSRigidResize({701, 533}, true, KS_ASPECT_4_3, 0, 224).width, 701);
    EXPECT_EQ(KSRigidResize({701, 533}, true, KS_ASPECT_HARDWARE, 320, 0).height, 533);
}

TEST(FullScreenContentSize, FourThreeOnAWideScreenIsLimitedByHeight)
{
    const KSSize size = KSFullScreenContentSize({1920, 1080}, KS_ASPECT_4_3, 320, 224);
    EXPECT_EQ(size.width, 1440);
    EXPECT_EQ(size.height, 1080);
}

TEST(FullScreenContentSize, FourThreeOnATallScreenIsLimitedByWidth)
{
    const KSSize size = KSFullScreenContentSize({1024, 1280}, KS_ASPECT_4_3, 320, 224);
    EXPECT_EQ(size.width, 1024);
    EXPECT_EQ(size.height, 768);
}

TEST(FullScreenContentSize, SixteenNineOnAFourThreeScreenIsLimitedByWidth)
{
    const KSSize size = KSFullScreenContentSize({1600, 1200}, KS_ASPECT_16_9, 320, 224);
    EXPECT_EQ(size.width, 1600);
    EXPECT_EQ(size.height, 900);
}

TEST(FullScreenContentSize, SixteenNineOnAnUltraWideScreenIsLimitedByHeight)
{
    const KSSize size = KSFullScreenContentSize({3440, 1440}, KS_ASPECT_16_9, 320, 224);
    EXPECT_EQ(size.width, 2560);
    EXPECT_EQ(size.height, 1440);
}

TEST(FullScreenContentSize, HardwareModeKeepsTheMachineProportion)
{
    const KSSize wide = KSFullScreenContentSize({1920, 1080}, KS_ASPECT_HARDWARE, 256, 224);
    EXPECT_EQ(wide.height, 1080);
    EXPECT_NEAR(wide.width, 1080.0 * 256 / 224, 1e-9);
    const KSSize tall = KSFullScreenContentSize({1000, 2000}, KS_ASPECT_HARDWARE, 256, 224);
    EXPECT_EQ(tall.width, 1000);
    EXPECT_NEAR(tall.height, 1000.0 * 224 / 256, 1e-9);
}

TEST(FullScreenContentSize, UncorrectedUsesTheWholeScreen)
{
    const KSSize size = KSFullScreenContentSize({1920, 1080}, KS_ASPECT_UNCORRECTED, 256, 224);
    EXPECT_EQ(size.width, 1920);
    EXPECT_EQ(size.height, 1080);
}

TEST(WindowGeometry, UncorrectedSetsTheMinimumAndResetsIncrementsOnly)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_UNCORRECTED, 256, 224, {900, 700}, 900, 1080);
    EXPECT_EQ(g.minimum.width, 256);
    EXPECT_EQ(g.minimum.height, 246);
    EXPECT_TRUE(g.resetIncrements);
    EXPECT_FALSE(g.hasAspect);
    EXPECT_FALSE(g.resize);
}

TEST(WindowGeometry, FourThreeTargetsTheWidthsHeightPlusAllowance)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_4_3, 320, 224, {800, 500}, 800, 1080);
    EXPECT_EQ(g.minimum.width, 320);
    EXPECT_EQ(g.minimum.height, 240 + 22);
    EXPECT_TRUE(g.hasAspect);
    EXPECT_EQ(g.aspect.width, 4);
    EXPECT_EQ(g.aspect.height, 3);
    EXPECT_TRUE(g.resize);
    EXPECT_EQ(g.size.width, 800);
    EXPECT_EQ(g.size.height, 622);
}

TEST(WindowGeometry, AWindowAlreadyAtTheTargetIsNotResized)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_4_3, 320, 224, {800, 622}, 800, 1080);
    EXPECT_FALSE(g.resize);
}

TEST(WindowGeometry, SixteenNineTargetsTheWidthsHeightPlusAllowance)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_16_9, 320, 224, {640, 480}, 640, 1080);
    EXPECT_EQ(g.minimum.height, 180 + 22);
    EXPECT_EQ(g.aspect.width, 16);
    EXPECT_EQ(g.aspect.height, 9);
    EXPECT_EQ(g.size.width, 640);
    EXPECT_EQ(g.size.height, 360 + 22);
}

TEST(WindowGeometry, HardwareModeHasNoAllowanceInItsTarget)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_HARDWARE, 256, 224, {512, 300}, 512, 1080);
    EXPECT_EQ(g.minimum.width, 256);
    EXPECT_EQ(g.minimum.height, 224 + 22);
    EXPECT_EQ(g.aspect.width, 256);
    EXPECT_EQ(g.aspect.height, 224);
    EXPECT_EQ(g.size.width, 512);
    EXPECT_EQ(g.size.height, 448);
}

TEST(WindowGeometry, TooTallForTheScreenTakesTheScreensHeightAndNarrows)
{
    const KSWindowGeometry four = KSComputeWindowGeometry(KS_ASPECT_4_3, 320, 224, {1600, 700}, 1600, 900);
    EXPECT_EQ(four.size.height, 900);
    EXPECT_NEAR(four.size.width, (900.0 - 22) / 3 * 4, 1e-9);
    const KSWindowGeometry wide = KSComputeWindowGeometry(KS_ASPECT_16_9, 320, 224, {3000, 700}, 3000, 900);
    EXPECT_EQ(wide.size.height, 900);
    EXPECT_NEAR(wide.size.width, (900.0 - 22) / 9 * 16, 1e-9);
    const KSWindowGeometry hardware = KSComputeWindowGeometry(KS_ASPECT_HARDWARE, 256, 224, {1600, 700}, 1600, 900);
    EXPECT_EQ(hardware.size.height, 900);
    EXPECT_NEAR(hardware.size.width, 900.0 * 256 / 224, 1e-9);
}

TEST(WindowGeometry, BelowTheMinimumTakesTheMinimumHeightAndWidens)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_4_3, 320, 224, {200, 172}, 200, 1080);
    EXPECT_EQ(g.size.height, 262);
    EXPECT_EQ(g.size.width, 320);
    EXPECT_TRUE(g.resize);
}

TEST(WindowGeometry, FullScreenUsesTheScreenWidth)
{
    // The caller passes the screen's width in full screen; the window's is ignored.
    const KSWindowGeometry g = KSComputeWindowGeometry(KS_ASPECT_16_9, 320, 224, {640, 382}, 1280, 1080);
    EXPECT_EQ(g.size.width, 1280);
    EXPECT_EQ(g.size.height, 720 + 22);
}

TEST(WindowGeometry, CorruptModeBehavesAsUncorrected)
{
    const KSWindowGeometry g = KSComputeWindowGeometry(42, 256, 224, {900, 700}, 900, 1080);
    EXPECT_FALSE(g.hasAspect);
    EXPECT_FALSE(g.resize);
    EXPECT_EQ(g.minimum.height, 246);
}

TEST(WindowPlacement, ResizeKeepsTheHorizontalCentreAndTheTopEdge)
{
    const KSRect frame = KSKeepCentreAndTop({100, 50, 640, 502}, {960, 742});
    EXPECT_EQ(frame.x, 100 + 320 - 480);
    EXPECT_EQ(frame.y, 50);
    EXPECT_EQ(frame.width, 960);
    EXPECT_EQ(frame.height, 742);
    const KSRect odd = KSKeepCentreAndTop({100, 50, 640, 502}, {641, 502});
    EXPECT_NEAR(odd.x + odd.width / 2, 100 + 320, 1.0);
}

TEST(WindowPlacement, FullScreenCentresOnTheScreen)
{
    const KSRect frame = KSCentreOnScreen({0, 0, 1920, 1080}, {1440, 1080});
    EXPECT_EQ(frame.x, 240);
    EXPECT_EQ(frame.y, 0);
}

} // namespace
