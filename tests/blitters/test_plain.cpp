#include <gtest/gtest.h>

#include <random>

#include "blit_harness.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace {
const BlitterFunc kPlain[6] = {nullptr, BlitPlain_1x, BlitPlain_2x, BlitPlain_3x, BlitPlain_4x, BlitPlain_5x};

void Randomise(BlitHarness &h, unsigned seed)
{
    std::mt19937 rng(seed);
    for (int y = 0; y < h.height; y++)
        for (int x = 0; x < h.width; x++) h.src(x, y) = (uint16_t)(rng() & 0x7FFF);
}
} // namespace

TEST(Plain, EverySizeReplicatesEveryPixel)
{
    for (int size = 1; size <= 5; size++) {
        BlitHarness h(16, 9, size);
        Randomise(h, 40 + size);
        h.run(kPlain[size]);
        for (int y = 0; y < 9 * size; y++)
            for (int x = 0; x < 16 * size; x++)
                ASSERT_EQ(h.dst(x, y), h.src(x / size, y / size)) << size << "x at " << x << "," << y;
    }
}

TEST(Plain, Width6At1xCopiesOnlyFourPixels)
{
    BlitHarness h(6, 2, 1);
    h.fill(0x1234);
    h.run(BlitPlain_1x);
    for (int y = 0; y < 2; y++) {
        for (int x = 0; x < 4; x++) EXPECT_EQ(h.dst(x, y), 0x1234);
        EXPECT_EQ(h.dst(4, y), 0);
        EXPECT_EQ(h.dst(5, y), 0);
    }
}

TEST(Plain, HeightZeroTouchesNothing)
{
    for (int size = 1; size <= 5; size++) {
        BlitHarness h(8, 0, size);
        std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
        h.run(kPlain[size]);
        for (uint16_t p : h.front) ASSERT_EQ(p, 0);
        for (uint8_t b : h.delta) ASSERT_EQ(b, 0);
    }
}

TEST(Plain, AnUnchangedPairAt2xIsNotRewritten)
{
    BlitHarness h(8, 2, 2);
    h.fill(0x0421);
    h.run(BlitPlain_2x);
    h.dst(0, 0) = 0x7C00; // something else paints over the block
    h.run(BlitPlain_2x);
    EXPECT_EQ(h.dst(0, 0), 0x7C00) << "unchanged source, block left alone";
    h.src(0, 0) = 0x03E0;
    h.run(BlitPlain_2x);
    EXPECT_EQ(h.dst(0, 0), 0x03E0);
    EXPECT_EQ(h.dst(1, 1), 0x03E0);
}

TEST(Plain, ChangeTrackingRedrawsOnlyChangedBlocks)
{
    for (int size = 2; size <= 5; size++) {
        BlitHarness h(8, 4, size);
        Randomise(h, size);
        h.run(kPlain[size]);
        std::fill(h.front.begin(), h.front.end(), 0x5555); // mark everything
        h.src(5, 2) ^= 0x0010;
        h.run(kPlain[size]);
        int rewritten = 0;
        for (int y = 0; y < 4 * size; y++)
            for (int x = 0; x < 8 * size; x++)
                if (h.dst(x, y) != 0x5555) rewritten++;
        // 2x and 3x redraw the pair holding the pixel; 4x and 5x the pixel alone.
        const int expected = (size <= 3) ? 2 * size * size : size * size;
        EXPECT_EQ(rewritten, expected) << size << "x";
        EXPECT_EQ(h.dst(5 * size, 2 * size), h.src(5, 2));
    }
}

TEST(Plain, FiveTimesComparesGroupsAsDoubles)
{
    // A group whose bits form a NaN never tests equal and falls through to the
    // per-pixel test, which then finds nothing changed.
    BlitHarness h(4, 1, 5);
    h.src(0, 0) = 0x0001;
    h.src(1, 0) = 0x0000;
    h.src(2, 0) = 0xFFF0;
    h.src(3, 0) = 0x7FFF; // 0x7FFFFFF00000001 little-endian: a NaN
    h.run(BlitPlain_5x);
    EXPECT_EQ(h.dst(19, 4), 0x7FFF);
    std::fill(h.front.begin(), h.front.end(), 0x1111);
    h.run(BlitPlain_5x);
    EXPECT_EQ(h.dst(0, 0), 0x1111) << "no pixel of the NaN group changed";
}

TEST(Plain, OneByOneSource)
{
    for (int size = 3; size <= 4; size++) {
        BlitHarness h(1, 1, size);
        h.src(0, 0) = 0x2222;
        h.run(kPlain[size]);
        if (size == 4) EXPECT_EQ(h.dst(3, 3), 0x2222);
    }
}
