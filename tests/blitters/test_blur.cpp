#include <gtest/gtest.h>

#include "blitters/ks_blitter_list.h"
#include "simple_reference.h"

namespace
{

const BlitterFunc kBlur[5] = {nullptr, BlitBlur_1x, BlitBlur_2x, BlitBlur_3x, BlitBlur_4x};

// The picture's edge repeats: the last column is its own right neighbour and
// the last row its own row below.
uint16_t Clamped(BlitHarness &h, int x, int y)
{
    return h.src(x < h.width ? x : h.width - 1, y < h.height ? y : h.height - 1);
}

// Block pixel (i, j) of source pixel (x, y) at size n: a, the last column
// average(a, b), the last row average(a, c), the corner the mean of all four.
uint16_t Expected(BlitHarness &h, int x, int y, int i, int j, int n)
{
    const uint16_t a = Clamped(h, x, y), b = Clamped(h, x + 1, y), c = Clamped(h, x, y + 1),
                   d = Clamped(h, x + 1, y + 1);
    const bool right = i == n - 1, bottom = j == n - 1;
    if (right && bottom) return ref::Mean4(a, b, c, d);
    if (right) return ref::Average(a, b);
    if (bottom) return ref::Average(a, c);
    return a;
}

void CheckBlur(BlitHarness &h)
{
    const int n = h.size;
    for (int r = 0; r < h.height * n; r++)
        for (int c = 0; c < h.width * n; c++)
            ASSERT_EQ(h.dst(c, r), Expected(h, c / n, r / n, c % n, r % n, n)) << n << "x at " << c << "," << r;
}

} // namespace

TEST(Blur, OneTimeOnTwoByTwoCarriesAcrossTheRow)
{
    BlitHarness h(2, 2, 1);
    const uint16_t p = 0x7FFF, q = 0x1234, r = 0x0421, s = 0x6318;
    h.src(0, 0) = p;
    h.src(1, 0) = q;
    h.src(0, 1) = r;
    h.src(1, 1) = s;
    ref::Mark(h);
    h.run(BlitBlur_1x);
    EXPECT_EQ(h.dst(0, 0), ref::Average(0, p));
    EXPECT_EQ(h.dst(1, 0), ref::Average(p, q));
    EXPECT_EQ(h.dst(0, 1), ref::Average(q, r));
    EXPECT_EQ(h.dst(1, 1), ref::Average(r, s));
}

TEST(Blur, OneTimeWritesEveryPixelOfEveryWidth)
{
    // Odd widths, and widths around the sixteen-pixel steps of the wide path.
    for (const int width : {7, 16, 17, 31, 40}) {
        BlitHarness h(width, 3, 1);
        ref::Randomise(h, 5);
        ref::Mark(h);
        h.run(BlitBlur_1x);
        uint16_t prev = 0;
        for (int y = 0; y < 3; y++)
            for (int x = 0; x < width; x++) {
                EXPECT_EQ(h.dst(x, y), ref::Average(prev, h.src(x, y))) << "width " << width << " at " << x << "," << y;
                prev = h.src(x, y);
            }
    }
}

TEST(Blur, TwoTimesOnAFlatAreaKeepsTheColour)
{
    BlitHarness h(8, 4, 2);
    h.clear();
    h.fill(0x56B5);
    h.run(BlitBlur_2x);
    for (int r = 0; r < 8; r++)
        for (int c = 0; c < 16; c++)
            ASSERT_EQ(h.dst(c, r), 0x56B5) << c << "," << r;
}

TEST(Blur, EverySizeBlendsWithTheRightAndLowerNeighbours)
{
    for (int size = 2; size <= 4; size++)
        for (int width : {8, 5, 1}) {
            BlitHarness h(width, 5, size);
            ref::Randomise(h, 900 + size + width);
            ref::Mark(h);
            h.run(kBlur[size]);
            SCOPED_TRACE(testing::Message() << "width " << width);
            CheckBlur(h);
        }
}

TEST(Blur, TwoTimesCasesOfTheNeighbourRules)
{
    // a = b = c, c != d: the bottom-right pixel is blend31(c, d).
    BlitHarness h(2, 2, 2);
    h.clear();
    h.src(0, 0) = h.src(1, 0) = h.src(0, 1) = 0x7FFF;
    h.src(1, 1) = 0x0000;
    h.run(BlitBlur_2x);
    EXPECT_EQ(h.dst(0, 0), 0x7FFF);
    EXPECT_EQ(h.dst(1, 0), 0x7FFF);
    EXPECT_EQ(h.dst(0, 1), 0x7FFF);
    EXPECT_EQ(h.dst(1, 1), ref::Pack(23, 23, 23)); // three parts 31, one part 0
}

TEST(Blur, StillFrameRewritesNothing)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(16, 6, size);
        ref::Randomise(h, size);
        h.clear();
        h.run(kBlur[size]);
        ref::Mark(h);
        h.run(kBlur[size]);
        EXPECT_EQ(ref::Rewritten(h), 0) << size;
    }
}

TEST(Blur, OneChangedPixelRedrawsTheFourBlocksAroundIt)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(16, 6, size);
        ref::Randomise(h, 40 + size);
        h.clear();
        h.run(kBlur[size]);
        ref::Mark(h);
        h.src(6, 3) ^= 0x2108;
        h.run(kBlur[size]);
        for (int r = 0; r < 6 * size; r++)
            for (int c = 0; c < 16 * size; c++) {
                const int x = c / size, y = r / size;
                const bool around = (x == 5 || x == 6) && (y == 2 || y == 3);
                ASSERT_EQ(h.dst(c, r) != ref::kMark, around) << size << "x at " << c << "," << r;
                if (around) ASSERT_EQ(h.dst(c, r), Expected(h, x, y, c % size, r % size, size));
            }
    }
}

TEST(Blur, OneByOneSource)
{
    for (int size = 1; size <= 4; size++) {
        BlitHarness h(1, 1, size);
        h.src(0, 0) = 0x2A4A;
        h.clear();
        h.run(kBlur[size]);
        if (size == 1)
            EXPECT_EQ(h.dst(0, 0), ref::Average(0, 0x2A4A));
        else
            for (int r = 0; r < size; r++)
                for (int c = 0; c < size; c++)
                    EXPECT_EQ(h.dst(c, r), 0x2A4A) << size;
    }
}

TEST(Blur, HeightZeroTouchesNothing)
{
    for (int size = 1; size <= 4; size++) {
        BlitHarness h(8, 0, size);
        std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
        h.run(kBlur[size]);
        for (uint16_t p : h.front)
            ASSERT_EQ(p, 0);
        for (uint8_t b : h.delta)
            ASSERT_EQ(b, 0);
    }
}
