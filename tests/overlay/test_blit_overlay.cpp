// Both overlays as the blitting thread burns them into a real frame slot.
#include <gtest/gtest.h>

#include "blitters/ks_blitters.h"
#include "overlay_fixture.h"
#include "shell/ks_framerate.h"
#include "shell/ks_main.h"
#include "video/ks_render.h"

namespace
{

class BlitOverlayTest : public OverlayTest
{
  protected:
    void SetUp() override
    {
        OverlayTest::SetUp();
        KSSetupRendering();
        gBackVideoWidth = 160;
        gBackVideoHeight = 48;
        KSAllocateBuffers();
        SelectBlitter(); // Plain 1x: the front buffer is the back buffer's copy
        KSResetDisplayState();
    }
    void TearDown() override
    {
        KSResetRenderState();
        ClearBlitterRegistry();
        gBackVideoWidth = gBackVideoHeight = 0;
        OverlayTest::TearDown();
    }
    void fillBack(uint32_t slot, uint16_t colour)
    {
        uint16_t *back = KSBackBuffer(slot);
        for (uint32_t i = 0; i < gBackVideoWidth * gBackVideoHeight; i++)
            back[i] = colour;
    }
};

} // namespace

TEST_F(BlitOverlayTest, APlacardIsBurntIntoTheSlotAndMarksItForClearing)
{
    ASSERT_EQ(gOutputVideoWidth, 160u);
    fillBack(0, 0x001F);
    KSMarkReady(0);
    KSBlitOnce(); // the first blit of a slot clears it
    EXPECT_EQ(gBufferClear[0].load(), 0);

    KSDisplayPlacard("Quick Defrost");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    KSMarkReady(0);
    KSBlitOnce();
    const uint16_t *front = gFrontVideoBuffer[0];
    const uint32_t top = gOutputVideoHeight - 30;
    for (int32_t r = 0; r < h && top + r < gOutputVideoHeight; r++)
        for (int32_t c = 0; c < w && 10 + c < (int32_t)gOutputVideoWidth; c++)
            ASSERT_EQ(front[(top + r) * gOutputVideoWidth + 10 + c], image[(size_t)r * w + c]) << c << ", " << r;
    EXPECT_EQ(front[0], 0x001F) << "the picture around the box";
    EXPECT_EQ(front[(top + 1) * gOutputVideoWidth + 9], 0x001F);
    EXPECT_EQ(gBufferClear[0].load(), 1) << "the next blit starts from a cleared slot";
}

TEST_F(BlitOverlayTest, TheFrameRateIsDrawnWhenItsPreferenceIsOn)
{
    fillBack(0, 0x7C00);
    KSPublishFrameRate(60);
    KSMarkReady(0);
    KSBlitOnce();
    EXPECT_EQ(gFrontVideoBuffer[0][gOutputVideoWidth - 1], 0x7C00) << "off by default";

    KSPrefSetBool(kPrefDisplayFrameRate, true);
    KSMarkReady(0);
    KSBlitOnce();
    const uint16_t *front = gFrontVideoBuffer[0];
    const uint32_t width = gOutputVideoWidth;
    for (uint32_t x = width - 12; x < width; x++) {
        EXPECT_EQ(front[x], 0) << "row 0";
        EXPECT_EQ(front[8 * width + x], 0) << "row 8";
    }
    EXPECT_EQ(front[1 * width + width - 12 + 2], 0x37E1) << "the 6's top";
    EXPECT_EQ(front[1 * width + width - 13], 0x7C00) << "left of the figure";
    EXPECT_EQ(front[9 * width + width - 1], 0x7C00) << "below the figure";
}
