#include <gtest/gtest.h>

#include <cstdlib>

#include "blitters/ks_blitter_list.h"
#include "simple_reference.h"

namespace
{

const int kPercents[4] = {0, 25, 50, 75};

// [member][size]
const BlitterFunc kHorizontal[4][6] = {
    {nullptr, BlitHorizontal_1x, BlitHorizontal_2x, BlitHorizontal_3x, BlitHorizontal_4x, BlitHorizontal_5x},
    {nullptr, BlitHorizontal25_1x, BlitHorizontal25_2x, BlitHorizontal25_3x, BlitHorizontal25_4x, BlitHorizontal25_5x},
    {nullptr, BlitHorizontal50_1x, BlitHorizontal50_2x, BlitHorizontal50_3x, BlitHorizontal50_4x, BlitHorizontal50_5x},
    {nullptr, BlitHorizontal75_1x, BlitHorizontal75_2x, BlitHorizontal75_3x, BlitHorizontal75_4x, BlitHorizontal75_5x},
};
const BlitterFunc kVertical[4][6] = {
    {nullptr, BlitVertical_1x, BlitVertical_2x, BlitVertical_3x, BlitVertical_4x, BlitVertical_5x},
    {nullptr, BlitVertical25_1x, BlitVertical25_2x, BlitVertical25_3x, BlitVertical25_4x, BlitVertical25_5x},
    {nullptr, BlitVertical50_1x, BlitVertical50_2x, BlitVertical50_3x, BlitVertical50_4x, BlitVertical50_5x},
    {nullptr, BlitVertical75_1x, BlitVertical75_2x, BlitVertical75_3x, BlitVertical75_4x, BlitVertical75_5x},
};
const BlitterFunc kInterleaved[6] = {
    nullptr, BlitInterleaved_1x, BlitInterleaved_2x, BlitInterleaved_3x, BlitInterleaved_4x, BlitInterleaved_5x};

// Source columns a walk draws: whole groups of four except at 4x (every pixel).
int WordWiseColumns(int width, int size)
{
    return size == 4 ? width : width / 4 * 4;
}

// Checks every destination pixel of a Horizontal member against the row-parity
// rule; pixels the walk leaves alone must still hold the mark.
void CheckHorizontal(BlitHarness &h, int percent)
{
    const int n = h.size;
    for (int r = 0; r < h.height * n; r++) {
        const bool dark = r & 1;
        int drawn = n == 1 ? (dark ? h.width / 2 * 2 : h.width / 4 * 4) : WordWiseColumns(h.width, n);
        if (dark && percent == 0) drawn = 0; // black rows are never written
        for (int c = 0; c < h.width * n; c++) {
            const uint16_t s = h.src(c / n, r / n);
            const uint16_t want = c < drawn * n ? (dark ? ref::Dim(percent, s) : s) : ref::kMark;
            ASSERT_EQ(h.dst(c, r), want) << n << "x " << percent << "% at " << c << "," << r;
        }
    }
}

void CheckVertical(BlitHarness &h, int percent)
{
    const int n = h.size;
    const int drawn = n == 1 ? h.width / 2 * 2 : WordWiseColumns(h.width, n);
    for (int r = 0; r < h.height * n; r++)
        for (int c = 0; c < h.width * n; c++) {
            const uint16_t s = h.src(c / n, r / n);
            const uint16_t want = c < drawn * n ? ((c & 1) ? ref::Dim(percent, s) : s) : ref::kMark;
            ASSERT_EQ(h.dst(c, r), want) << n << "x " << percent << "% at " << c << "," << r;
        }
}

} // namespace

TEST(Horizontal, EveryMemberAndSizeFollowsTheOutputRowParity)
{
    for (int m = 0; m < 4; m++)
        for (int size = 1; size <= 5; size++)
            for (int width : {16, 6, 7}) {
                BlitHarness h(width, 6, size);
                ref::Randomise(h, 100 * m + size + width);
                ref::Mark(h);
                h.run(kHorizontal[m][size]);
                SCOPED_TRACE(testing::Message() << "width " << width);
                CheckHorizontal(h, kPercents[m]);
            }
}

TEST(Vertical, EveryMemberAndSizeFollowsTheOutputColumnParity)
{
    for (int m = 0; m < 4; m++)
        for (int size = 1; size <= 5; size++)
            for (int width : {16, 6, 7}) {
                BlitHarness h(width, 5, size);
                ref::Randomise(h, 200 * m + size + width);
                ref::Mark(h);
                h.run(kVertical[m][size]);
                SCOPED_TRACE(testing::Message() << "width " << width);
                CheckVertical(h, kPercents[m]);
            }
}

TEST(Horizontal, TwoTimesOnAFourByTwoSourceOfOneColour)
{
    BlitHarness h(4, 2, 2);
    h.clear();
    h.fill(0x2D6B);
    h.run(BlitHorizontal_2x);
    for (int x = 0; x < 8; x++) {
        EXPECT_EQ(h.dst(x, 0), 0x2D6B);
        EXPECT_EQ(h.dst(x, 1), 0);
        EXPECT_EQ(h.dst(x, 2), 0x2D6B);
        EXPECT_EQ(h.dst(x, 3), 0);
    }
}

TEST(Horizontal, FiftyPercentOneTimeHalvesTheOddRow)
{
    BlitHarness h(4, 2, 1);
    h.clear();
    const uint16_t row0[4] = {0x7FFF, 0x1234, 0x0421, 0x7C1F};
    const uint16_t row1[4] = {0x7FFF, 0x3DEF, 0x0421, 0x03E0};
    for (int x = 0; x < 4; x++) {
        h.src(x, 0) = row0[x];
        h.src(x, 1) = row1[x];
    }
    h.run(BlitHorizontal50_1x);
    for (int x = 0; x < 4; x++) {
        EXPECT_EQ(h.dst(x, 0), row0[x]);
        EXPECT_EQ(h.dst(x, 1), ref::Half(row1[x]));
    }
    EXPECT_EQ(h.dst(0, 1), 0x3DEF);
    EXPECT_EQ(h.dst(2, 1), 0x0000); // components of 1 round down to 0
}

TEST(Vertical, TwentyFivePercentFourTimesOfWhite)
{
    BlitHarness h(4, 1, 4);
    h.clear();
    h.fill(0x7FFF);
    h.run(BlitVertical25_4x);
    for (int r = 0; r < 4; r++) {
        EXPECT_EQ(h.dst(0, r), 0x7FFF);
        EXPECT_EQ(h.dst(1, r), 0x1CE7);
        EXPECT_EQ(h.dst(2, r), 0x7FFF);
        EXPECT_EQ(h.dst(3, r), 0x1CE7);
    }
}

TEST(Horizontal, SeventyFivePercentOfComponentsOneIsBlack)
{
    for (int size = 1; size <= 5; size++) {
        BlitHarness h(8, 2, size);
        h.fill(0x0421);
        ref::Mark(h);
        h.run(kHorizontal[3][size]);
        EXPECT_EQ(h.dst(0, 0), 0x0421) << size;
        EXPECT_EQ(h.dst(0, 1), 0x0000) << size << "x: quarter and half of 1 are both 0";
    }
}

TEST(Horizontal, OddHeightDrawsTheLastRowLit)
{
    for (int m = 0; m < 4; m++)
        for (int size : {1, 3, 5}) {
            BlitHarness h(8, 3, size);
            ref::Randomise(h, m + size);
            ref::Mark(h);
            h.run(kHorizontal[m][size]);
            CheckHorizontal(h, kPercents[m]);
        }
}

TEST(Scanlines, StillFrameRewritesNothing)
{
    std::vector<BlitterFunc> tracked;
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++) {
            tracked.push_back(kHorizontal[m][size]);
            tracked.push_back(kVertical[m][size]);
        }
    for (size_t i = 0; i < tracked.size(); i++) {
        const int size = 2 + (int)(i / 2) % 4;
        BlitHarness h(16, 6, size);
        ref::Randomise(h, (unsigned)i);
        h.clear();
        h.run(tracked[i]);
        ref::Mark(h);
        h.run(tracked[i]);
        EXPECT_EQ(ref::Rewritten(h), 0) << "function " << i;
    }
}

TEST(Scanlines, OneChangedPixelRedrawsOnlyItsUnit)
{
    // 2x redraws the pixel pair, 3x to 5x the pixel alone; Horizontal's black rows
    // stay unwritten, so only the lit rows of the block come back.
    for (int m = 0; m < 4; m++)
        for (int size = 2; size <= 5; size++) {
            for (int vertical = 0; vertical < 2; vertical++) {
                BlitterFunc f = vertical ? kVertical[m][size] : kHorizontal[m][size];
                BlitHarness h(16, 6, size);
                ref::Randomise(h, 7 * m + size);
                h.clear();
                h.run(f);
                ref::Mark(h);
                h.src(5, 3) ^= 0x0401;
                h.run(f);
                const int unitWidth = size == 2 ? 2 : 1;
                const int x0 = 5 / unitWidth * unitWidth;
                int expected = 0;
                for (int r = 3 * size; r < 4 * size; r++) {
                    const bool rowWritten = vertical || kPercents[m] != 0 || (r & 1) == 0;
                    if (rowWritten) expected += unitWidth * size;
                    for (int c = x0 * size; c < (x0 + unitWidth) * size; c++)
                        if (rowWritten) EXPECT_NE(h.dst(c, r), ref::kMark);
                }
                EXPECT_EQ(ref::Rewritten(h), expected) << m << " " << size << "x vertical " << vertical;
            }
        }
}

TEST(Horizontal, GroupsAreComparedAsDoubles)
{
    // Four pixels whose 64 bits read as -0.0 compare equal to the zeroed copy,
    // so the group (with its unused top bit set) is neither drawn nor copied.
    BlitHarness h(4, 2, 3);
    h.clear();
    h.src(3, 0) = 0x8000;
    h.run(BlitHorizontal_3x);
    EXPECT_EQ(h.dst(9, 0), 0);
    EXPECT_EQ(h.delta[6], 0);
    EXPECT_EQ(h.delta[7], 0);
}

TEST(Scanlines, HeightZeroTouchesNothing)
{
    for (int m = 0; m < 4; m++)
        for (int size = 1; size <= 5; size++)
            for (int vertical = 0; vertical < 2; vertical++) {
                BlitHarness h(8, 0, size);
                std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
                h.run(vertical ? kVertical[m][size] : kHorizontal[m][size]);
                for (uint16_t p : h.front)
                    ASSERT_EQ(p, 0);
                for (uint8_t b : h.delta)
                    ASSERT_EQ(b, 0);
            }
}

TEST(Scanlines, OneByOneSource)
{
    for (int m = 0; m < 4; m++) {
        BlitHarness h(1, 1, 4);
        h.src(0, 0) = 0x1234;
        h.clear();
        h.run(kHorizontal[m][4]);
        EXPECT_EQ(h.dst(3, 0), 0x1234);
        EXPECT_EQ(h.dst(3, 1), ref::Dim(kPercents[m], 0x1234));
        h.clear();
        h.run(kVertical[m][4]);
        EXPECT_EQ(h.dst(2, 3), 0x1234);
        EXPECT_EQ(h.dst(3, 3), ref::Dim(kPercents[m], 0x1234));
        // The word-wise walks draw nothing of a one-pixel row.
        for (int size : {1, 2, 3, 5}) {
            BlitHarness w(1, 1, size);
            w.src(0, 0) = 0x1234;
            ref::Mark(w);
            w.run(kHorizontal[m][size]);
            EXPECT_EQ(w.dst(0, 0), ref::kMark) << size;
        }
    }
}

// The phase counters are process-wide and never reset, so the call sequences run
// in a fresh child process of their own.
namespace
{

// Which output-row parity a call drew: 0 even, 1 odd, -1 something else.
int DrawnParity(BlitHarness &h)
{
    bool even = false, odd = false;
    for (int r = 0; r < h.height * h.size; r++)
        for (int c = 0; c < h.width * h.size; c++)
            if (h.dst(c, r) != ref::kMark) ((r & 1) ? odd : even) = true;
    if (even == odd) return -1;
    return odd ? 1 : 0;
}

bool InterleavedTwoTimesSequence()
{
    const int expected[6] = {0, 1, 1, 0, 0, 1};
    BlitHarness h(8, 4, 2);
    h.clear();
    for (int call = 0; call < 6; call++) {
        // A fresh picture each call, so every block of the parity is redrawn.
        ref::Randomise(h, 50 + call);
        ref::Mark(h);
        h.run(BlitInterleaved_2x);
        const int parity = DrawnParity(h);
        if (parity != expected[call]) {
            fprintf(stderr, "call %d drew parity %d\n", call + 1, parity);
            return false;
        }
        // Drawn rows hold the source row of their block.
        for (int r = expected[call]; r < 8; r += 2)
            for (int c = 0; c < 16; c++)
                if (h.dst(c, r) != h.src(c / 2, r / 2)) return false;
    }
    return true;
}

bool InterleavedOneTimeSequence()
{
    BlitHarness h(8, 4, 1);
    ref::Randomise(h, 9);
    for (int call = 0; call < 4; call++) {
        ref::Mark(h);
        h.run(BlitInterleaved_1x);
        const int shift = (call == 1 || call == 2) ? 1 : 0; // phases 1, 2, 3, 0
        for (int r = 0; r < 5; r++)
            for (int x = 0; x < 8; x++) {
                const int y = r - shift; // the source row this output row would show
                const bool drawn = y >= 0 && y < 4 && y % 2 == 0;
                if (h.dst(x, r) != (drawn ? h.src(x, y) : ref::kMark)) {
                    fprintf(stderr, "call %d row %d col %d\n", call + 1, r, x);
                    return false;
                }
            }
    }
    return true;
}

bool InterleavedHalvesKeepSeparateCopies()
{
    // The second delta half tracks the odd parity by itself: a pixel changed while
    // the even rows were being drawn is still redrawn on the odd rows later.
    BlitHarness h(8, 4, 4);
    h.clear();
    ref::Randomise(h, 3);
    h.run(BlitInterleaved_4x); // phase 1: even rows of each block
    h.run(BlitInterleaved_4x); // phase 2: shifted by one row
    h.src(2, 1) = 0x7FFF;
    h.run(BlitInterleaved_4x); // phase 3: shifted, draws the change
    h.run(BlitInterleaved_4x); // phase 0: unshifted, draws the change from its own copy
    for (int r : {4, 5, 6, 7})
        if (h.dst(8, r) != 0x7FFF) {
            fprintf(stderr, "row %d\n", r);
            return false;
        }
    return true;
}

} // namespace

TEST(InterleavedDeathTest, TwoTimesFromAFreshStart)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exit(InterleavedTwoTimesSequence() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(InterleavedDeathTest, OneTimeDrawsOnlyEvenSourceRows)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exit(InterleavedOneTimeSequence() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(InterleavedDeathTest, EachParityTracksChangesInItsOwnHalf)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exit(InterleavedHalvesKeepSeparateCopies() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(Interleaved, EverySizeDrawsLikeHorizontalShiftedByPhase)
{
    // Whatever phase a counter stands at, a call draws the black Horizontal
    // picture either in place or one output row further down.
    for (int size = 2; size <= 5; size++) {
        BlitHarness plain(8, 4, size), inter(8, 4, size);
        ref::Randomise(plain, size);
        ref::Randomise(inter, size);
        ref::Mark(plain);
        plain.run(kHorizontal[0][size]);
        ref::Mark(inter);
        std::fill(inter.delta.begin(), inter.delta.end(), 0);
        inter.run(kInterleaved[size]);
        bool same = true, shifted = true;
        const size_t rowPixels = (size_t)8 * size;
        for (int r = 0; r < 4 * size; r++)
            for (int c = 0; c < 8 * size; c++) {
                same &= inter.dst(c, r) == plain.dst(c, r);
                shifted &= inter.front[(r + 1) * rowPixels + c] == plain.dst(c, r);
            }
        EXPECT_TRUE(same || shifted) << size;
    }
}
