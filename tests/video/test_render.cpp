// Frame slots and the blitting thread. Also run under ThreadSanitizer
// (-DLUMIVEX_TSAN=ON).
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <chrono>
#include <thread>

#include "../shell/fake_platform.h"
#include "blitters/ks_blitters.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"
#include "video/ks_render.h"

double FakeClock::now;

namespace {

class RenderTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    void SetUp() override
    {
        KSPrefsOpenFile(dir.filePath("r.ini").toStdString());
        KSRegisterShellDefaults(false);
        KSSetupRendering();
        gBackVideoWidth = 8;
        gBackVideoHeight = 4;
        KSAllocateBuffers();
        SelectBlitter();
        KSResetDisplayState();
    }
    void TearDown() override
    {
        KSResetRenderState();
        ClearBlitterRegistry();
        KSPrefsClose();
        gBackVideoWidth = gBackVideoHeight = 0;
    }
    void waitUntilBlitted(int slot)
    {
        // A signal that arrives while the thread is not waiting is lost by design;
        // the next frame's signal serves the slot, so keep signalling.
        for (int i = 0; i < 2000 && gBufferReady[slot]; i++) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            KSWakeBlitter();
        }
    }
};

} // namespace

TEST(RenderBeforeStart, DisplayFrameLogsAndReturnsNull)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(KSDisplayFrame(), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Renderer called prior to init. This isn't supposed to happen."),
              std::string::npos);
}

TEST(RenderAllocation, AByteCountThatOverflowsIsAnAllocationFailure)
{
    gBackVideoWidth = 0xFFFFFFFFu;
    gBackVideoHeight = 0xFFFFFFFFu;
    EXPECT_EXIT(KSAllocateBuffers(), ::testing::ExitedWithCode(1), "gRawBackVideoBuffer\\[0\\]");
    gBackVideoWidth = gBackVideoHeight = 0;
}

TEST_F(RenderTest, TheFirst32BitRowIsTheBottomRow)
{
    uint16_t *back = KSBackBuffer(0);
    for (int x = 0; x < 8; x++) {
        back[x] = 0x7C00;          // top row red
        back[3 * 8 + x] = 0x001F;  // bottom row blue
    }
    KSMarkReady(0);
    KSBlitOnce();
    const uint32_t *picture = KSDisplayFrame();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture[0], 0x0000F8u) << "first row: the bottom row, blue";
    EXPECT_EQ(picture[3 * 8], 0xF80000u) << "last row: the top row, red";
}

TEST_F(RenderTest, ThePixelConversionDropsTheLowBitsAndTheTopBit)
{
    uint16_t *back = KSBackBuffer(0);
    back[0] = 0x8000 | (1 << 10) | (2 << 5) | 3;
    KSMarkReady(0);
    KSBlitOnce();
    const uint32_t *picture = KSDisplayFrame();
    EXPECT_EQ(picture[3 * 8], (8u << 16) | (16u << 8) | 24u);
}

TEST_F(RenderTest, ABlitterChangeDuringASessionGivesTwoNullDraws)
{
    // A running session is what makes a scale change skip draws.
    FakePlatform window;
    window.window = true;
    KSSetPlatform(&window);
    EXPECT_NE(KSDisplayFrame(), nullptr);
    KSPrefSetInt(kPrefBlitterSize, 2);
    SelectBlitter();
    EXPECT_EQ(KSDisplayFrame(), nullptr);
    EXPECT_EQ(KSDisplayFrame(), nullptr);
    EXPECT_NE(KSDisplayFrame(), nullptr);
    EXPECT_EQ(gOutputVideoWidth, 16u);
    KSSetPlatform(nullptr);
}

TEST_F(RenderTest, TheBlittingThreadScalesEachReadySlot)
{
    KSPrefSetInt(kPrefBlitterSize, 2);
    SelectBlitter();
    KSStartBlittingThread();
    for (int frame = 0; frame < 200; frame++) {
        const uint32_t slot = (frame + 1) & 1;
        uint16_t *back = KSBackBuffer(slot);
        for (int i = 0; i < 32; i++) back[i] = (uint16_t)((frame * 7 + i) & 0x7FFF);
        KSMarkReady(slot);
        KSWakeBlitter();
        KSDisplayFrame();
        waitUntilBlitted(slot);
        ASSERT_EQ(gBufferReady[slot].load(), 0) << "frame " << frame;
        ASSERT_EQ(gFrontVideoBuffer[slot][0], back[0]);
        ASSERT_EQ(gFrontVideoBuffer[slot][16 * 2 + 1], back[8]);
    }
    KSStopBlittingThread();
    EXPECT_FALSE(KSBlittingThreadRunning());
}

TEST_F(RenderTest, AClearFlagZeroesTheSlotBeforeItsNextBlit)
{
    KSPrefSetInt(kPrefBlitterSize, 2);
    SelectBlitter();
    uint16_t *back = KSBackBuffer(0);
    back[0] = 0x1234;
    KSMarkReady(0);
    KSBlitOnce();
    gFrontVideoBuffer[0][5] = 0x7777; // a placard drawn over the picture
    KSMarkReady(0);
    KSBlitOnce();
    EXPECT_EQ(gFrontVideoBuffer[0][5], 0x7777) << "unchanged source: the block is not redrawn";
    gBufferClear[0] = 1;
    KSMarkReady(0);
    KSBlitOnce();
    EXPECT_EQ(gFrontVideoBuffer[0][0], 0x1234);
    EXPECT_EQ(gFrontVideoBuffer[0][5], 0) << "the delta copy was cleared too, so every pixel was redrawn";
}

TEST_F(RenderTest, StoppingAnIdleThreadNeverHangs)
{
    for (int i = 0; i < 50; i++) {
        KSStartBlittingThread();
        KSStopBlittingThread();
    }
    SUCCEED();
}
