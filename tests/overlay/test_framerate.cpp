// The frame-rate figure: green 6 x 7 digits against the right edge of the picture's
// top rows, with a cleared row above and below.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "overlay_fixture.h"
#include "shell/ks_framerate.h"
#include "video/ks_render.h"

namespace
{

// The glyphs as drawn by hand: "#" ink, "." black, rows top first.
const char *const kGlyphRows[10][7] = {
    {"..##..", ".#..#.", ".#..#.", ".#..#.", ".#..#.", ".#..#.", "..##.."},
    {"...#..", "..##..", "...#..", "...#..", "...#..", "...#..", "...#.."},
    {"..##..", ".#..#.", "....#.", "...#..", "..#...", ".#....", ".####."},
    {"..##..", ".#..#.", "....#.", "...#..", "....#.", ".#..#.", "..##.."},
    {"....#.", "...##.", "..#.#.", ".#..#.", ".####.", "....#.", "....#."},
    {".####.", ".#....", ".###..", "....#.", "....#.", ".#..#.", "..##.."},
    {"..##..", ".#....", ".###..", ".#..#.", ".#..#.", ".#..#.", "..##.."},
    {".####.", "....#.", "...#..", "...#..", "..#...", "..#...", "..#..."},
    {"..##..", ".#..#.", ".#..#.", "..##..", ".#..#.", ".#..#.", "..##.."},
    {"..##..", ".#..#.", ".#..#.", ".#..#.", "..###.", "....#.", "..##.."},
};

const uint16_t kInk = 0x37E1;

// Draws `value` into a width x 12 picture and checks every pixel against the glyphs.
void ExpectFigure(uint32_t value, uint32_t width)
{
    const std::string digits = std::to_string(value);
    const uint32_t blockWidth = 6 * (uint32_t)digits.size();
    FrontPicture picture(width, 12);
    KSPublishFrameRate(value);
    KSDrawFrameRate(picture.data(), width * 2, width);
    SCOPED_TRACE("rate " + digits + " in a picture " + std::to_string(width) + " wide");
    int mismatches = 0;
    for (uint32_t y = 0; y < 12; y++)
        for (uint32_t x = 0; x < width; x++) {
            const int64_t column = (int64_t)x - ((int64_t)width - blockWidth);
            uint16_t want = FrontPicture::background(x, y);
            if (column >= 0 && y <= 8) {
                want = 0;
                if (y >= 1 && y <= 7) {
                    const int digit = digits[(size_t)column / 6] - '0';
                    if (kGlyphRows[digit][y - 1][column % 6] == '#') want = kInk;
                }
            }
            if (picture.at(x, y) != want && mismatches++ < 5)
                ADD_FAILURE() << "pixel (" << x << ", " << y << ") " << std::hex << picture.at(x, y) << " not " << want;
        }
    EXPECT_EQ(mismatches, 0);
    EXPECT_TRUE(picture.guardIntact());
}

} // namespace

TEST(FrameRateOverlay, SixtyFramesASecondDrawsTwoGlyphsTwelvePixelsWideAtTheTopRight)
{
    const uint32_t width = 256;
    FrontPicture picture(width, 12);
    KSPublishFrameRate(60);
    KSDrawFrameRate(picture.data(), width * 2, width);
    for (uint32_t y = 0; y < 12; y++)
        for (uint32_t x = 0; x < width - 12; x++)
            ASSERT_EQ(picture.at(x, y), FrontPicture::background(x, y));
    for (uint32_t x = width - 12; x < width; x++) {
        EXPECT_EQ(picture.at(x, 0), 0) << "row 0 cleared";
        EXPECT_EQ(picture.at(x, 8), 0) << "row 8 cleared";
    }
    // The "6": its top row is "..##.." and the "0"'s middle rows ".#..#.".
    EXPECT_EQ(picture.at(width - 12 + 2, 1), kInk);
    EXPECT_EQ(picture.at(width - 12 + 1, 1), 0);
    EXPECT_EQ(picture.at(width - 6 + 1, 4), kInk);
    EXPECT_EQ(picture.at(width - 6 + 4, 4), kInk);
    EXPECT_EQ(picture.at(width - 6 + 2, 4), 0);
    ExpectFigure(60, width);
}

TEST(FrameRateOverlay, EveryDigitMatchesItsGlyph)
{
    for (uint32_t value : {0u, 7u, 12u, 345u, 6789u, 9999u, 1000u, 10u, 99u, 100u})
        ExpectFigure(value, 64);
}

TEST(FrameRateOverlay, APictureNarrowerThanTheFigureKeepsItsRightPart)
{
    ExpectFigure(1234, 20);
    ExpectFigure(56, 4);
}

TEST(FrameRateOverlay, TheRowPitchIsHonoured)
{
    // A pitch of two picture rows: the figure's rows land on every other row.
    FrontPicture picture(32, 24);
    KSPublishFrameRate(1);
    KSDrawFrameRate(picture.data(), 32 * 2 * 2, 32);
    EXPECT_EQ(picture.at(29, 2), kInk) << "glyph row 1 on picture row 2";
    EXPECT_EQ(picture.at(29, 3), FrontPicture::background(29, 3)) << "the rows between are untouched";
    EXPECT_EQ(picture.at(29, 16), 0) << "row 8 cleared on picture row 16";
}

TEST(FrameRateOverlay, ARateOfTenThousandOrMoreIsAFatalAssertion)
{
    FrontPicture picture(64, 12);
    KSPublishFrameRate(10000);
    EXPECT_EXIT(KSDrawFrameRate(picture.data(), 128, 64), ::testing::ExitedWithCode(1),
                "Fatal Assertion Failure\n0\nks_framerate\\.cpp, line");
}

TEST(FrameRateOverlay, PublishingSetsBothValuesAndRestoringClearsBothSlots)
{
    KSPublishFrameRate(57);
    EXPECT_EQ(gFrameRateDisplayed, 57u);
    EXPECT_EQ(gFrameRateStored, 57u);
    gFrameRateDisplayed = 3000; // measured while unlimited
    gBufferClear[0] = 0;
    gBufferClear[1] = 0;
    KSRestoreFrameRate();
    EXPECT_EQ(gFrameRateDisplayed, 57u);
    EXPECT_EQ(gBufferClear[0].load(), 1);
    EXPECT_EQ(gBufferClear[1].load(), 1);
}
