#include <gtest/gtest.h>

#include "blitters/ks_blitter_list.h"
#include "simple_reference.h"

namespace
{

const int kPercents[4] = {0, 25, 50, 75};
const BlitterFunc kInterpolated[4][6] = {
    {nullptr, BlitInterpolated_1x, BlitInterpolated_2x, BlitInterpolated_3x, BlitInterpolated_4x, BlitInterpolated_5x},
    {nullptr, BlitInterpolated25_1x, BlitInterpolated25_2x, BlitInterpolated25_3x, BlitInterpolated25_4x,
     BlitInterpolated25_5x},
    {nullptr, BlitInterpolated50_1x, BlitInterpolated50_2x, BlitInterpolated50_3x, BlitInterpolated50_4x,
     BlitInterpolated50_5x},
    {nullptr, BlitInterpolated75_1x, BlitInterpolated75_2x, BlitInterpolated75_3x, BlitInterpolated75_4x,
     BlitInterpolated75_5x},
};

// Right neighbour inside the row; the last pixel is its own neighbour.
uint16_t Right(BlitHarness &h, int x, int y)
{
    return h.src(x + 1 < h.width ? x + 1 : x, y);
}

// The blended line of source row y at size n (n >= 2), over the walked columns.
std::vector<uint16_t> BlendedLine(BlitHarness &h, int y, int n)
{
    std::vector<uint16_t> line;
    const int walked = n == 4 ? h.width : h.width / 4 * 4;
    for (int x = 0; x < walked; x++) {
        const uint16_t a = h.src(x, y), b = Right(h, x, y);
        if (n == 2) {
            line.push_back(a);
            line.push_back(ref::Average(a, b));
        } else if (n == 4) {
            const uint16_t m = ref::Average(a, b);
            for (uint16_t p : {a, ref::Average(a, m), m, ref::Average(m, b)})
                line.push_back(p);
        } else {
            for (int k = 0; k < n - 1; k++)
                line.push_back(a);
            line.push_back(ref::Average(a, b));
        }
    }
    return line;
}

void CheckScaled(BlitHarness &h, int percent)
{
    const int n = h.size;
    for (int y = 0; y < h.height; y++) {
        const std::vector<uint16_t> line = BlendedLine(h, y, n);
        for (int r = n * y; r < n * y + n; r++) {
            const bool dark = r & 1;
            for (int c = 0; c < h.width * n; c++) {
                uint16_t want = ref::kMark;
                if (c < (int)line.size() && !(dark && percent == 0)) want = dark ? ref::Dim(percent, line[c]) : line[c];
                ASSERT_EQ(h.dst(c, r), want) << n << "x " << percent << "% at " << c << "," << r;
            }
        }
    }
}

} // namespace

TEST(Interpolated, EveryMemberFromTwoTimesUpBlendsAlongTheRowWithScanlines)
{
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++)
            for (int width : {16, 7}) {
                BlitHarness h(width, 4, size);
                ref::Randomise(h, 300 + 10 * m + size + width);
                ref::Mark(h);
                h.run(kInterpolated[m][size]);
                SCOPED_TRACE(testing::Message() << "width " << width);
                CheckScaled(h, kPercents[m]);
            }
}

TEST(Interpolated, OneTimeCarriesThePreviousPixelAcrossRows)
{
    // Narrow rows, and rows around the sixteen-pixel steps of the wide path.
    for (const int width : {5, 16, 17, 31, 40})
        for (int m = 0; m < 4; m++) {
            BlitHarness h(width, 4, 1);
            ref::Randomise(h, 11 + m);
            ref::Mark(h);
            h.run(kInterpolated[m][1]);
            uint16_t prev = 0;
            for (int y = 0; y < 4; y++) {
                const bool odd = y & 1;
                for (int x = 0; x < width; x++) {
                    if (odd && kPercents[m] == 0) {
                        EXPECT_EQ(h.dst(x, y), ref::kMark) << "odd rows are left as they are";
                        continue;
                    }
                    const uint16_t blended = ref::Average(prev, h.src(x, y));
                    EXPECT_EQ(h.dst(x, y), odd ? ref::Dim(kPercents[m], blended) : blended)
                        << "width " << width << ", member " << m << " at " << x << "," << y;
                    prev = h.src(x, y);
                }
            }
        }
}

TEST(Interpolated, OneTimeFirstPixelBlendsWithBlack)
{
    BlitHarness h(4, 2, 1);
    h.fill(0x7FFF);
    h.run(BlitInterpolated50_1x);
    EXPECT_EQ(h.dst(0, 0), 0x3DEF);
    EXPECT_EQ(h.dst(1, 0), 0x7FFF);
    EXPECT_EQ(h.dst(0, 1), 0x3DEF) << "the odd row continues from the even row's last pixel, then is halved";
}

TEST(Interpolated, TwoTimesOnOneColour)
{
    BlitHarness h(8, 3, 2);
    h.clear();
    h.fill(0x4A52);
    h.run(BlitInterpolated_2x);
    for (int r = 0; r < 6; r++)
        for (int c = 0; c < 16; c++)
            ASSERT_EQ(h.dst(c, r), (r & 1) ? 0 : 0x4A52) << c << "," << r;
}

TEST(Interpolated, StillFrameRewritesNothing)
{
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++) {
            BlitHarness h(16, 4, size);
            ref::Randomise(h, m * 5 + size);
            h.clear();
            h.run(kInterpolated[m][size]);
            ref::Mark(h);
            h.run(kInterpolated[m][size]);
            EXPECT_EQ(ref::Rewritten(h), 0) << m << " " << size;
        }
}

TEST(Interpolated, OneChangedPixelRedrawsItsUnitAndTheOneBefore)
{
    // x = 4 changed: at 2x pairs 1 and 2 (the pair before depends on it through
    // its last average), at 3x to 5x the parts of pixels 3 and 4.
    for (int size = 2; size <= 5; size++) {
        BlitHarness h(16, 4, size);
        ref::Randomise(h, 77 + size);
        h.clear();
        h.run(kInterpolated[2][size]);
        ref::Mark(h);
        h.src(4, 2) ^= 0x7FFF;
        h.run(kInterpolated[2][size]);
        BlitHarness full(16, 4, size);
        full.raw = h.raw;
        full.run(kInterpolated[2][size]);
        const int first = size == 2 ? 2 : 3, last = size == 2 ? 5 : 4; // source columns redrawn
        for (int r = 0; r < 4 * size; r++)
            for (int c = 0; c < 16 * size; c++) {
                const bool inside = r / size == 2 && c / size >= first && c / size <= last;
                EXPECT_EQ(h.dst(c, r) != ref::kMark, inside) << size << "x at " << c << "," << r;
                if (inside) EXPECT_EQ(h.dst(c, r), full.dst(c, r));
            }
    }
}

TEST(Interpolated, OneByOneSourceAndHeightZero)
{
    for (int m = 0; m < 4; m++)
        for (int size = 1; size <= 5; size++) {
            BlitHarness h(1, 1, size);
            h.src(0, 0) = 0x2A4A;
            ref::Mark(h);
            h.run(kInterpolated[m][size]);
            // 1x blends with the black carried value; 4x (every pixel walked) keeps
            // the colour, its right neighbour being itself; the group walks draw nothing.
            if (size == 1) EXPECT_EQ(h.dst(0, 0), ref::Average(0, 0x2A4A));
            if (size == 4)
                for (int c = 0; c < 4; c++) {
                    EXPECT_EQ(h.dst(c, 0), 0x2A4A);
                    EXPECT_EQ(h.dst(c, 1), kPercents[m] ? ref::Dim(kPercents[m], 0x2A4A) : ref::kMark);
                }
            if (size == 2 || size == 3 || size == 5) EXPECT_EQ(ref::Rewritten(h), 0);
            BlitHarness e(8, 0, size);
            std::fill(e.raw.begin(), e.raw.end(), 0x7FFF);
            e.run(kInterpolated[m][size]);
            for (uint16_t p : e.front)
                ASSERT_EQ(p, 0);
            for (uint8_t b : e.delta)
                ASSERT_EQ(b, 0);
        }
}
