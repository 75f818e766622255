#include <gtest/gtest.h>

#include "blitters/ks_blitter_list.h"
#include "simple_reference.h"

namespace
{

const BlitterFunc kRGB[6] = {nullptr, nullptr, BlitRGBMode_2x, BlitRGBMode_3x, BlitRGBMode_4x, BlitRGBMode_5x};

uint16_t Dm(uint16_t p)
{
    return ref::Scale(p, 89, 89, 89);
}
// The stripe mask by output column modulo 4.
uint16_t Stripe(uint16_t p, int column)
{
    switch (column & 3) {
    case 0:
        return ref::Scale(p, 89, 89, 89);
    case 1:
        return ref::Scale(p, 128, 74, 111);
    case 2:
        return ref::Scale(p, 74, 111, 128);
    default:
        return ref::Scale(p, 111, 128, 74);
    }
}

int Walked(int width, int size)
{
    return size == 2 ? width / 4 * 4 : size == 3 ? width / 2 * 2 : width;
}

} // namespace

TEST(RGBMode, TwoTimesDrawsTheDimmedAndStripedPatterns)
{
    BlitHarness h(8, 4, 2);
    ref::Randomise(h, 17);
    ref::Mark(h);
    h.run(BlitRGBMode_2x);
    for (int y = 0; y < 4; y++)
        for (int g = 0; g < 2; g++) {
            const uint16_t p[4] = {h.src(4 * g, y), h.src(4 * g + 1, y), h.src(4 * g + 2, y), h.src(4 * g + 3, y)};
            for (int pair = 0; pair < 2; pair++) {
                const uint16_t a = p[2 * pair], b = p[2 * pair + 1];
                const uint16_t st[4] = {ref::Scale(a, 89, 89, 89), ref::Scale(a, 128, 74, 111),
                                        ref::Scale(b, 74, 111, 128), ref::Scale(b, 111, 128, 74)};
                const uint16_t dm[4] = {Dm(a), Dm(a), Dm(b), Dm(b)};
                const bool dimmedFirst = (y % 2 == 0) ? pair == 0 : pair == 1;
                for (int k = 0; k < 4; k++) {
                    const int c = 8 * g + 4 * pair + k;
                    EXPECT_EQ(h.dst(c, 2 * y), dimmedFirst ? dm[k] : st[k]) << c << "," << 2 * y;
                    EXPECT_EQ(h.dst(c, 2 * y + 1), st[k]) << c << "," << 2 * y + 1;
                }
            }
        }
}

TEST(RGBMode, ScaleTruncatesEachComponent)
{
    BlitHarness h(4, 2, 2);
    h.fill(0x7FFF); // 31 * 89 >> 7 = 21, 31 * 74 >> 7 = 17, 31 * 111 >> 7 = 26
    h.run(BlitRGBMode_2x);
    EXPECT_EQ(h.dst(0, 0), ref::Pack(21, 21, 21));
    EXPECT_EQ(h.dst(5, 1), ref::Pack(31, 17, 26));
    EXPECT_EQ(h.dst(6, 1), ref::Pack(17, 26, 31));
    EXPECT_EQ(h.dst(7, 1), ref::Pack(26, 31, 17));
}

TEST(RGBMode, LargerSizesUseTheSameMaskOnLargerBlocks)
{
    for (int size = 3; size <= 5; size++)
        for (int width : {8, 7}) {
            BlitHarness h(width, 4, size);
            ref::Randomise(h, 60 + size + width);
            ref::Mark(h);
            h.run(kRGB[size]);
            const int walked = Walked(width, size);
            for (int r = 0; r < 4 * size; r++)
                for (int c = 0; c < width * size; c++) {
                    const int x = c / size, y = r / size;
                    uint16_t want = ref::kMark;
                    if (x < walked) {
                        const bool dimmed = r % size == 0 && ((x / 2 + y) % 2 == 0);
                        want = dimmed ? Dm(h.src(x, y)) : Stripe(h.src(x, y), c);
                    }
                    ASSERT_EQ(h.dst(c, r), want) << size << "x width " << width << " at " << c << "," << r;
                }
        }
}

TEST(RGBMode, OddWidthAtTwoTimesLeavesTheTailUndrawn)
{
    BlitHarness h(6, 2, 2);
    h.fill(0x7FFF);
    ref::Mark(h);
    h.run(BlitRGBMode_2x);
    for (int r = 0; r < 4; r++) {
        EXPECT_NE(h.dst(7, r), ref::kMark);
        for (int c = 8; c < 12; c++)
            EXPECT_EQ(h.dst(c, r), ref::kMark);
    }
}

TEST(RGBMode, StillFrameRewritesNothingAndOnePixelRedrawsItsUnit)
{
    for (int size = 2; size <= 5; size++) {
        BlitHarness h(16, 4, size);
        ref::Randomise(h, 3 * size);
        h.clear();
        h.run(kRGB[size]);
        ref::Mark(h);
        h.run(kRGB[size]);
        EXPECT_EQ(ref::Rewritten(h), 0) << size;
        h.src(9, 1) ^= 0x1111;
        h.run(kRGB[size]);
        const int unit = size <= 3 ? 2 : 1;
        EXPECT_EQ(ref::Rewritten(h), unit * size * size) << size;
        EXPECT_NE(h.dst(9 * size, size), ref::kMark);
    }
}

TEST(RGBMode, OneByOneAndHeightZero)
{
    for (int size = 2; size <= 5; size++) {
        BlitHarness h(1, 1, size);
        h.src(0, 0) = 0x7FFF;
        ref::Mark(h);
        h.run(kRGB[size]);
        // Pair-wise walks (2x, 3x) have no whole pair in a one-pixel row.
        EXPECT_EQ(h.dst(0, 0) == ref::kMark, size <= 3) << size;
        BlitHarness e(8, 0, size);
        std::fill(e.raw.begin(), e.raw.end(), 0x7FFF);
        e.run(kRGB[size]);
        for (uint16_t p : e.front)
            ASSERT_EQ(p, 0);
    }
}
