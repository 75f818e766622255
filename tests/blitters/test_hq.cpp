// HQ2X, HQ3X and HQ4X: the colour table, the flat case, the near-equal test, the
// edges, change tracking and hand-checked patterns.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "blit_harness.h"
#include "blitters/blit_hq.h"
#include "blitters/blit_hq_rules.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace
{

const BlitterFunc kHQ[5] = {nullptr, nullptr, BlitHQ_2x, BlitHQ_3x, BlitHQ_4x};
constexpr uint16_t kWhite = 0x7FFF;
constexpr uint16_t kSentinel = 0xFFFF; // bit 15 set: never drawn by an HQ blitter

uint16_t Grey(int c)
{
    return (uint16_t)(c << 10 | c << 5 | c);
}

class HQ : public ::testing::Test
{
  protected:
    void SetUp() override { FillRGBtoYUV(); }
};

// A picture of a few colours, so that every kind of neighbourhood turns up.
void FewColours(BlitHarness &h, unsigned seed)
{
    const uint16_t palette[5] = {0x0000, 0x7FFF, 0x001F, 0x03E0, 0x5294};
    std::mt19937 rng(seed);
    for (int y = 0; y < h.height; y++)
        for (int x = 0; x < h.width; x++)
            h.src(x, y) = palette[rng() % 5];
}

std::vector<uint16_t> Output(BlitHarness &h)
{
    std::vector<uint16_t> out;
    for (int y = 0; y < h.height * h.size; y++)
        for (int x = 0; x < h.width * h.size; x++)
            out.push_back(h.dst(x, y));
    return out;
}

void PaintDestination(BlitHarness &h)
{
    for (int y = 0; y < h.height * h.size; y++)
        for (int x = 0; x < h.width * h.size; x++)
            h.dst(x, y) = kSentinel;
}

// The block of source pixel (x, y), row by row.
std::vector<uint16_t> Block(BlitHarness &h, int x, int y)
{
    std::vector<uint16_t> b;
    for (int r = 0; r < h.size; r++)
        for (int c = 0; c < h.size; c++)
            b.push_back(h.dst(x * h.size + c, y * h.size + r));
    return b;
}

} // namespace

TEST_F(HQ, ColourTableReadsTheIndexAs565)
{
    EXPECT_EQ(gRGBtoYUV[0x0000], 0x008080u);
    // 5-6-5 white: r8 248, g8 252, b8 248 -> Y 187, U 128, V 128 + 8 / 8.
    EXPECT_EQ(gRGBtoYUV[0xFFFF], (187u << 16) | (128u << 8) | 129u);
    // Red only: Y 62, U 128 + 62, V 128 - 31 (the shift of a negative value).
    EXPECT_EQ(gRGBtoYUV[0xF800], (62u << 16) | (190u << 8) | 97u);
    // Blue only: U 128 - 62, V 97.
    EXPECT_EQ(gRGBtoYUV[0x001F], (62u << 16) | (66u << 8) | 97u);
    // 5-5-5 red 1 sets bit 10, which the table reads as the top bit of green.
    EXPECT_EQ(gRGBtoYUV[0x0400], (32u << 16) | (128u << 8) | 160u);
}

TEST_F(HQ, OneColourGivesThatColourEverywhere)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(9, 7, size);
        h.fill(0x2A5D);
        h.run(kHQ[size]);
        for (int y = 0; y < 7 * size; y++)
            for (int x = 0; x < 9 * size; x++)
                ASSERT_EQ(h.dst(x, y), 0x2A5D) << size << "x at " << x << "," << y;
    }
}

TEST_F(HQ, OnePixelSourceIsItsOwnNeighbourhood)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(1, 1, size);
        h.src(0, 0) = 0x1234;
        h.run(kHQ[size]);
        for (int y = 0; y < size; y++)
            for (int x = 0; x < size; x++)
                EXPECT_EQ(h.dst(x, y), 0x1234) << size << "x at " << x << "," << y;
        for (int i = size * size; i < size * size + 16; i++)
            EXPECT_EQ(h.front[(size_t)i], 0) << "beyond the block";
    }
}

// Green 4 against black: far apart if the 5-5-5 green were widened to six bits, but
// the table reads it as 5-6-5 green 4 (V differs by 4, under the threshold of 6), so
// the pair counts as near-equal and the flat-area blend mixes it in.
TEST_F(HQ, NearEqual565NeighboursBlendAsAFlatArea)
{
    const uint16_t dark = 0x0000, green4 = 0x0080;
    ASSERT_NE(dark, green4);
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(3, 3, size);
        h.fill(dark);
        h.src(0, 1) = green4; // w4 of the centre
        h.run(kHQ[size]);
        // Flat case: the top-left pixel is (2 w5 + w4 + w2) / 4 for every size,
        // green (0 + 4 + 0) / 4 = 1. Had w4 counted as different, it would be w5.
        EXPECT_EQ(h.dst(size, size), 0x0020) << size << "x";
    }
    // A pair just over a threshold is drawn as an edge: blue 4 moves U by 8 > 7.
    BlitHarness h(3, 3, 2);
    h.fill(dark);
    h.src(0, 1) = 0x0004;
    h.run(BlitHQ_2x);
    // Pattern 8: the top-left pixel is (2 w5 + w1 + w2) / 4 = black.
    EXPECT_EQ(h.dst(2, 2), 0x0000);
}

// Centre white, its lower-left neighbours w4, w7, w8 black: pattern 104, and w4 and
// w8 alike, so the lower-left corner blends them.
TEST_F(HQ, DiagonalEdgeHandChecked)
{
    auto run = [](int size, uint16_t w4, uint16_t w8) {
        BlitHarness h(3, 3, size);
        h.fill(kWhite);
        h.src(0, 1) = w4;
        h.src(0, 2) = 0x0000;
        h.src(1, 2) = w8;
        h.run(kHQ[size]);
        return Block(h, 1, 1);
    };
    const uint16_t W = kWhite;
    // hq2x: (2 w5 + w8 + w4) / 4 = 15 per component at the lower left.
    EXPECT_EQ(run(2, 0, 0), (std::vector<uint16_t>{W, W, Grey(15), W}));
    // hq3x: Interp3 (7 w5 + w4) / 8 = 27, Interp4 (2 w5 + 7 w8 + 7 w4) / 16 = 3.
    EXPECT_EQ(run(3, 0, 0), (std::vector<uint16_t>{W, W, W, Grey(27), W, W, Grey(3), Grey(27), W}));
    // hq4x: halves of w4 and w5, w8 and w4, w8 and w5.
    EXPECT_EQ(run(4, 0, 0), (std::vector<uint16_t>{W, W, W, W, W, W, W, W, Grey(15), W, W, W, 0, Grey(15), W, W}));
    // w4 and w8 different from each other (black, red): the corner keeps w5.
    const uint16_t red = 0x7C00;
    EXPECT_EQ(run(2, 0, red), (std::vector<uint16_t>{W, W, W, W}));
    EXPECT_EQ(run(3, 0, red), (std::vector<uint16_t>{W, W, W, W, W, W, W, W, W}));
    EXPECT_EQ(run(4, 0, red), (std::vector<uint16_t>{W, W, W, W, W, W, W, W, W, W, W, W, W, W, W, W}));
}

// Straight edges stay sharp: black rows over white rows draw only their own colours.
TEST_F(HQ, StraightEdgeStaysSharp)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(6, 6, size);
        for (int y = 0; y < 6; y++)
            for (int x = 0; x < 6; x++)
                h.src(x, y) = y < 3 ? 0x0000 : kWhite;
        h.run(kHQ[size]);
        for (int y = 0; y < 6 * size; y++)
            for (int x = 0; x < 6 * size; x++)
                ASSERT_EQ(h.dst(x, y), h.src(x / size, y / size)) << size << "x at " << x << "," << y;
    }
}

// A white pixel among black ones: pattern 255, all pair tests alike, so every
// corner blends with the two black neighbours beside it.
TEST_F(HQ, IsolatedPixelRoundsItsCorners)
{
    const uint16_t W = kWhite;
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(3, 3, size);
        h.src(1, 1) = W;
        h.run(kHQ[size]);
        const std::vector<uint16_t> b = Block(h, 1, 1);
        if (size == 2) // Interp10: (14 w5 + w4 + w2) / 16 = 27
            EXPECT_EQ(b, std::vector<uint16_t>(4, Grey(27)));
        else if (size == 3) // Interp2: (2 w5 + w4 + w2) / 4 = 15; edges and centre w5
            EXPECT_EQ(b, (std::vector<uint16_t>{Grey(15), W, Grey(15), W, W, W, Grey(15), W, Grey(15)}));
        else // Interp2 at the four corners, w5 elsewhere
            EXPECT_EQ(
                b, (std::vector<uint16_t>{Grey(15), W, W, Grey(15), W, W, W, W, W, W, W, W, Grey(15), W, W, Grey(15)}));
    }
}

// In a flat area hq4x's corner is Interp2(w5, w2, w4); its two-average form
// average(w5, average(w2, w4)) truncates the same way.
TEST_F(HQ, FlatCornerOfHQ4xIsTheNestedAverage)
{
    for (int g2 = 2; g2 <= 8; g2++)
        for (int g4 = 2; g4 <= 8; g4++) {
            const uint16_t w5 = 5 << 5, w2 = (uint16_t)(g2 << 5), w4 = (uint16_t)(g4 << 5 | 1);
            BlitHarness h(3, 3, 4);
            h.fill(w5);
            h.src(1, 0) = w2;
            h.src(0, 1) = w4;
            h.run(BlitHQ_4x);
            EXPECT_EQ(h.dst(4, 4), KSAverage(w5, KSAverage(w2, w4))) << g2 << " " << g4;
        }
}

// Every border: the picture drawn alone equals the middle of the picture with its
// edges replicated by hand one pixel outwards.
TEST_F(HQ, EdgesReplicateTheNearestPixel)
{
    for (int size = 2; size <= 4; size++) {
        const int w = 7, hgt = 5;
        BlitHarness a(w, hgt, size), b(w + 2, hgt + 2, size);
        FewColours(a, 7 + size);
        for (int y = 0; y < hgt + 2; y++)
            for (int x = 0; x < w + 2; x++)
                b.src(x, y) = a.src(std::min(std::max(x - 1, 0), w - 1), std::min(std::max(y - 1, 0), hgt - 1));
        a.run(kHQ[size]);
        b.run(kHQ[size]);
        for (int y = 0; y < hgt * size; y++)
            for (int x = 0; x < w * size; x++)
                ASSERT_EQ(a.dst(x, y), b.dst(x + size, y + size)) << size << "x at " << x << "," << y;
    }
}

// The tables are symmetric under quarter turns, so turning the picture turns the output.
TEST_F(HQ, QuarterTurnOfThePictureTurnsTheOutput)
{
    for (int size = 2; size <= 4; size++) {
        const int w = 11, hgt = 8;
        BlitHarness a(w, hgt, size), b(hgt, w, size);
        FewColours(a, 100 + size);
        // b is a turned a quarter clockwise: b(x, y) = a(y, hgt - 1 - x).
        for (int y = 0; y < w; y++)
            for (int x = 0; x < hgt; x++)
                b.src(x, y) = a.src(y, hgt - 1 - x);
        a.run(kHQ[size]);
        b.run(kHQ[size]);
        const int ow = w * size, oh = hgt * size;
        for (int y = 0; y < ow; y++)
            for (int x = 0; x < oh; x++)
                ASSERT_EQ(b.dst(x, y), a.dst(y, oh - 1 - x)) << size << "x at " << x << "," << y;
    }
}

TEST_F(HQ, StillFrameRewritesNothing)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(12, 9, size);
        FewColours(h, 3);
        h.run(kHQ[size]);
        PaintDestination(h);
        h.run(kHQ[size]);
        for (int y = 0; y < 9 * size; y++)
            for (int x = 0; x < 12 * size; x++)
                ASSERT_EQ(h.dst(x, y), kSentinel) << size << "x at " << x << "," << y;
    }
}

// One changed source pixel redraws exactly the blocks of the pixels around it (its
// 3 x 3 neighbourhood, clipped to the picture), each as a full draw would.
TEST_F(HQ, SingleChangedPixelRedrawsOnlyTheBlocksAroundIt)
{
    const int w = 12, hgt = 9;
    const int spots[][2] = {{5, 4}, {0, 0}, {w - 1, hgt - 1}, {0, 5}, {w - 1, 0}, {7, hgt - 1}};
    for (int size = 2; size <= 4; size++)
        for (const auto &spot : spots) {
            const int sx = spot[0], sy = spot[1];
            BlitHarness h(w, hgt, size), fresh(w, hgt, size);
            FewColours(h, 11);
            h.run(kHQ[size]);
            PaintDestination(h);
            h.src(sx, sy) = h.src(sx, sy) == 0x1234 ? 0x4321 : 0x1234;
            h.run(kHQ[size]);
            fresh.raw = h.raw;
            fresh.run(kHQ[size]);
            for (int y = 0; y < hgt; y++)
                for (int x = 0; x < w; x++) {
                    const bool near = std::abs(x - sx) <= 1 && std::abs(y - sy) <= 1;
                    const std::vector<uint16_t> got = Block(h, x, y);
                    if (near)
                        ASSERT_EQ(got, Block(fresh, x, y)) << size << "x block " << x << "," << y;
                    else
                        ASSERT_EQ(got, std::vector<uint16_t>(size * size, kSentinel))
                            << size << "x block " << x << "," << y << " after change at " << sx << "," << sy;
                }
        }
}

TEST_F(HQ, FirstFrameLeavesBlackAreasToTheClearedDestination)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(10, 6, size);
        h.src(2, 2) = kWhite; // one white pixel; black elsewhere
        PaintDestination(h);
        h.run(kHQ[size]);
        // Blocks whose neighbourhood is all black are not drawn; the others are.
        for (int y = 0; y < 6; y++)
            for (int x = 0; x < 10; x++) {
                const bool near = std::abs(x - 2) <= 1 && std::abs(y - 2) <= 1;
                const std::vector<uint16_t> b = Block(h, x, y);
                if (near)
                    EXPECT_EQ(std::count(b.begin(), b.end(), kSentinel), 0) << size << "x " << x << "," << y;
                else
                    EXPECT_EQ(b, std::vector<uint16_t>(size * size, kSentinel)) << size << "x " << x << "," << y;
            }
    }
}

TEST_F(HQ, HeightZeroTouchesNothing)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(8, 4, size);
        FewColours(h, 5);
        PaintDestination(h);
        kHQ[size](h.source(), 16, h.delta.data(), h.front.data(), 8 * size * 2, 8, 0);
        for (uint8_t v : h.delta)
            ASSERT_EQ(v, 0);
        EXPECT_EQ(h.dst(0, 0), kSentinel);
    }
}

TEST_F(HQ, OutputsNeverSetBit15)
{
    for (int size = 2; size <= 4; size++) {
        BlitHarness h(16, 10, size);
        std::mt19937 rng(size);
        for (int y = 0; y < 10; y++)
            for (int x = 0; x < 16; x++)
                h.src(x, y) = (uint16_t)rng(); // bit 15 set at random
        h.run(kHQ[size]);
        for (uint16_t p : Output(h))
            ASSERT_EQ(p & 0x8000, 0);
    }
}

TEST_F(HQ, InstructionSetsDrawTheSamePixels)
{
    if (!lvhq::UsesAvx2()) GTEST_SKIP() << "no AVX2 on this processor";
    for (int size = 2; size <= 4; size++) {
        BlitHarness a(37, 23, size), b(37, 23, size);
        std::mt19937 rng(size * 31);
        for (int y = 0; y < 23; y++)
            for (int x = 0; x < 37; x++)
                a.src(x, y) = b.src(x, y) = (uint16_t)(rng() & 0x7FFF) & (rng() & 1 ? 0x7FFF : 0x7BDE);
        FewColours(a, 9);
        b.raw = a.raw;
        a.run(kHQ[size]);
        lvhq::AllowAvx2(false);
        b.run(kHQ[size]);
        lvhq::AllowAvx2(true);
        ASSERT_EQ(Output(a), Output(b)) << size << "x";
    }
}

TEST_F(HQ, EveryKeyHasAProgramForEveryQuarter)
{
    for (int size = 2; size <= 4; size++) {
        const lvhq::ProgramSet &set = lvhq::Programs(size);
        ASSERT_EQ(set.size, size);
        for (int key = 0; key < lvhq::kKeyCount; key++)
            for (int q = 0; q < 4; q++) {
                const size_t p = (set.program[key] >> (8 * q)) & 0xFF;
                ASSERT_LT(p, set.programs[q].size());
                // Each output's weights add up to 16.
                for (int o = 0; o < set.outputsPerQuarter; o++) {
                    int sum = 0;
                    for (int t = 0; t < 4; t++)
                        sum += set.programs[q][p].weight[4 * o + t];
                    ASSERT_EQ(sum, 16) << size << "x key " << key << " quarter " << q;
                }
            }
    }
}
