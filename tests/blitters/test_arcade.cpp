#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "blitters/ks_blitter_list.h"
#include "simple_reference.h"

namespace
{

const int kPercents[4] = {0, 25, 50, 75};
const BlitterFunc kArcade[4][6] = {
    {nullptr, nullptr, BlitArcade_2x, BlitArcade_3x, BlitArcade_4x, BlitArcade_5x},
    {nullptr, nullptr, BlitArcade25_2x, BlitArcade25_3x, BlitArcade25_4x, BlitArcade25_5x},
    {nullptr, nullptr, BlitArcade50_2x, BlitArcade50_3x, BlitArcade50_4x, BlitArcade50_5x},
    {nullptr, nullptr, BlitArcade75_2x, BlitArcade75_3x, BlitArcade75_4x, BlitArcade50_5x},
};

const int kTile[4][4] = {{1, 0, 0, 0}, {1, 0, 1, 0}, {0, 0, 1, 0}, {1, 0, 1, 0}};

int Walked(int width, int size)
{
    return size == 2 ? width / 4 * 4 : size == 3 ? width / 2 * 2 : width;
}

} // namespace

TEST(Arcade, WhiteShowsSixOfSixteenInTheTile)
{
    for (int size = 2; size <= 5; size++) {
        BlitHarness h(8, 8, size);
        h.fill(0x7FFF);
        h.clear();
        h.run(kArcade[0][size]);
        for (int ty = 0; ty + 4 <= 8 * size; ty += 4)
            for (int tx = 0; tx + 4 <= 8 * size; tx += 4) {
                int lit = 0;
                for (int j = 0; j < 4; j++)
                    for (int i = 0; i < 4; i++) {
                        const uint16_t p = h.dst(tx + i, ty + j);
                        ASSERT_EQ(p, kTile[j][i] ? 0x7FFF : 0) << size << "x at " << tx + i << "," << ty + j;
                        lit += p != 0;
                    }
                ASSERT_EQ(lit, 6);
            }
    }
}

TEST(Arcade, TwoTimesPairsOfEvenAndOddRows)
{
    BlitHarness h(4, 2, 2);
    const uint16_t a = 0x7C00, b = 0x03E0, c = 0x001F, d = 0x4210;
    h.src(0, 0) = a;
    h.src(1, 0) = b;
    h.src(0, 1) = c;
    h.src(1, 1) = d;
    h.clear();
    h.run(BlitArcade_2x);
    const uint16_t want[4][4] = {{a, 0, 0, 0}, {a, 0, b, 0}, {0, 0, d, 0}, {c, 0, d, 0}};
    for (int r = 0; r < 4; r++)
        for (int x = 0; x < 4; x++)
            EXPECT_EQ(h.dst(x, r), want[r][x]) << x << "," << r;
    h.clear();
    h.run(BlitArcade25_2x);
    const uint16_t qa = ref::Quarter(a), qb = ref::Quarter(b);
    const uint16_t want25[2][4] = {{a, qa, qb, qb}, {a, qa, b, qb}};
    for (int r = 0; r < 2; r++)
        for (int x = 0; x < 4; x++)
            EXPECT_EQ(h.dst(x, r), want25[r][x]) << x << "," << r;
}

TEST(Arcade, FourTimesTileCoversOnePixel)
{
    BlitHarness h(1, 1, 4);
    h.src(0, 0) = 0x1234;
    h.clear();
    h.run(BlitArcade_4x);
    for (int r = 0; r < 4; r++)
        for (int x = 0; x < 4; x++)
            EXPECT_EQ(h.dst(x, r), kTile[r][x] ? 0x1234 : 0);
}

TEST(Arcade, EveryMemberAndSizeFollowsTheTile)
{
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++)
            for (int width : {8, 7}) {
                const int percent = (m == 3 && size == 5) ? 50 : kPercents[m];
                BlitHarness h(width, 5, size);
                ref::Randomise(h, 500 + m * 10 + size + width);
                ref::Mark(h);
                h.run(kArcade[m][size]);
                const int walked = Walked(width, size);
                for (int r = 0; r < 5 * size; r++)
                    for (int c = 0; c < width * size; c++) {
                        const uint16_t s = h.src(c / size, r / size);
                        const uint16_t want =
                            c / size < walked ? (kTile[r & 3][c & 3] ? s : ref::Dim(percent, s)) : ref::kMark;
                        ASSERT_EQ(h.dst(c, r), want) << percent << "% " << size << "x at " << c << "," << r;
                    }
            }
}

TEST(Arcade, SeventyFivePercentAtFiveDrawsWhatFiftyPercentDraws)
{
    BlitterRecord *table = BuildBlitterTable();
    ASSERT_NE(table, nullptr);
    const BlitterRecord *fifty = nullptr, *seventyFive = nullptr;
    for (const BlitterRecord *r = table; r->size; r++) {
        if (r->size == 5 && strcmp(r->name, "Arcade 50%") == 0) fifty = r;
        if (r->size == 5 && strcmp(r->name, "Arcade 75%") == 0) seventyFive = r;
    }
    ASSERT_TRUE(fifty && seventyFive);
    BlitHarness a(12, 6, 5), b(12, 6, 5);
    ref::Randomise(a, 1);
    ref::Randomise(b, 1);
    a.run(fifty->function);
    b.run(seventyFive->function);
    EXPECT_EQ(a.front, b.front);
    // And at 4x the two members differ, so the comparison above can fail.
    BlitHarness c(12, 6, 4), d(12, 6, 4);
    ref::Randomise(c, 1);
    ref::Randomise(d, 1);
    c.run(BlitArcade50_4x);
    d.run(BlitArcade75_4x);
    EXPECT_NE(c.front, d.front);
    free(table);
}

TEST(Arcade, StillFrameRewritesNothingAndOnePixelRedrawsItsUnit)
{
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++) {
            BlitHarness h(16, 4, size);
            ref::Randomise(h, 7 * size + m);
            h.clear();
            h.run(kArcade[m][size]);
            ref::Mark(h);
            h.run(kArcade[m][size]);
            EXPECT_EQ(ref::Rewritten(h), 0) << size;
            h.src(9, 2) ^= 0x0842;
            h.run(kArcade[m][size]);
            const int unit = size <= 3 ? 2 : 1;
            EXPECT_EQ(ref::Rewritten(h), unit * size * size) << m << " " << size;
        }
}

TEST(Arcade, HeightZeroTouchesNothing)
{
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++) {
            BlitHarness h(8, 0, size);
            std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
            h.run(kArcade[m][size]);
            for (uint16_t p : h.front)
                ASSERT_EQ(p, 0);
            for (uint8_t b : h.delta)
                ASSERT_EQ(b, 0);
        }
}
