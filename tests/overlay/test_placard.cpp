// Placards: the image, its place in the picture, the two seconds of copying and the
// half second of blending, the preference switch.
#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <atomic>
#include <cmath>
#include <mutex>
#include <string>
#include <thread>

#include "overlay_fixture.h"
#include "video/ks_render.h"

namespace
{

int Channel(uint16_t p, int shift)
{
    return (p >> shift) & 31;
}

// The blend of one pixel written out from the rule: a = 2 (2.5 - elapsed), each
// channel trunc(under (1 - a) + over a).
uint16_t ExpectedBlend(uint16_t under, uint16_t over, double elapsed)
{
    const double a = 2 * (2.5 - elapsed);
    const int r = (int)(Channel(under, 10) * (1 - a) + Channel(over, 10) * a);
    const int g = (int)(Channel(under, 5) * (1 - a) + Channel(over, 5) * a);
    const int b = (int)(Channel(under, 0) * (1 - a) + Channel(over, 0) * a);
    return (uint16_t)(r << 10 | g << 5 | b);
}

using PlacardTest = OverlayTest;

// Every pixel of the picture: inside the box at (10, height - 30) it must satisfy
// `inside(x, y, placardPixel)`; outside it keeps the background.
template <typename Inside>
void ExpectPicture(FrontPicture &picture, const std::vector<uint16_t> &image, int32_t w, int32_t h, Inside inside)
{
    const int64_t top = (int64_t)picture.height - 30;
    int mismatches = 0;
    for (uint32_t y = 0; y < picture.height; y++)
        for (uint32_t x = 0; x < picture.width; x++) {
            const int64_t r = (int64_t)y - top, c = (int64_t)x - 10;
            const bool inBox = r >= 0 && r < h && c >= 0 && c < w;
            const uint16_t got = picture.at(x, y);
            const uint16_t want = inBox ? inside(x, y, image[(size_t)r * w + c]) : FrontPicture::background(x, y);
            if (got != want && mismatches++ < 5)
                ADD_FAILURE() << "pixel (" << x << ", " << y << "): " << std::hex << got << " instead of " << want;
        }
    EXPECT_EQ(mismatches, 0);
    EXPECT_TRUE(picture.guardIntact()) << "a write past the picture";
}

} // namespace

TEST_F(PlacardTest, TheImageIsAGreyBoxWithAOnePixelBlackOutline)
{
    KSDisplayPlacard("Quick Freeze");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());

    const QFontMetricsF metrics(QGuiApplication::font());
    EXPECT_EQ(w, (int32_t)std::trunc(metrics.horizontalAdvance(QStringLiteral("Quick Freeze")) + 14));
    EXPECT_EQ(h, (int32_t)std::trunc(metrics.height() + 8));

    for (int32_t x = 0; x < w; x++) {
        EXPECT_EQ(image[x], 0) << "top edge, column " << x;
        EXPECT_EQ(image[(size_t)(h - 1) * w + x], 0) << "bottom edge, column " << x;
    }
    for (int32_t y = 0; y < h; y++) {
        EXPECT_EQ(image[(size_t)y * w], 0) << "left edge, row " << y;
        EXPECT_EQ(image[(size_t)y * w + w - 1], 0) << "right edge, row " << y;
    }
    // Just inside the outline, before the text starts: the grey of 0.88.
    const uint16_t grey = image[(size_t)1 * w + 1];
    EXPECT_EQ(Channel(grey, 10), Channel(grey, 5));
    EXPECT_EQ(Channel(grey, 5), Channel(grey, 0));
    EXPECT_NEAR(Channel(grey, 0), 0.88 * 31, 1.0);
    for (int32_t y = 1; y < h - 1; y++)
        for (int32_t x = 1; x < 5; x++)
            EXPECT_EQ(image[(size_t)y * w + x], grey) << x << ", " << y;
}

TEST_F(PlacardTest, TheTextSitsOnABaselineSevenPixelsAboveTheBottomAndSixFromTheLeft)
{
    KSDisplayPlacard("HHH");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    const uint16_t grey = image[(size_t)1 * w + 1];
    int lowest = -1, leftmost = w, ink = 0;
    for (int32_t y = 1; y < h - 1; y++)
        for (int32_t x = 1; x < w - 1; x++)
            if (image[(size_t)y * w + x] != grey) {
                ink++;
                lowest = std::max(lowest, (int)y);
                leftmost = std::min(leftmost, (int)x);
            }
    ASSERT_GT(ink, 20) << "the text is drawn";
    // "H" has no descender: its ink ends on the row just above the baseline.
    EXPECT_EQ(lowest, h - 8);
    EXPECT_GE(leftmost, 6);
    EXPECT_LE(leftmost, 8);
    // Dark ink, as black text on grey.
    int darkest = 31;
    for (int32_t y = 1; y < h - 1; y++)
        for (int32_t x = 1; x < w - 1; x++)
            darkest = std::min(darkest, Channel(image[(size_t)y * w + x], 5));
    EXPECT_LE(darkest, 4);
}

TEST_F(PlacardTest, ItIsCopiedAtRowHeightMinusThirtyAndColumnTenForTwoSeconds)
{
    KSDisplayPlacard("Emulator Reset");
    EXPECT_TRUE(KSPlacardShowing());
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    for (double elapsed : {0.0, 0.5, 1.999}) {
        OverlayClock::now = 1000.0 + elapsed;
        FrontPicture picture(240, 120);
        KSDrawPlacards(picture.data(), picture.width, picture.height);
        ExpectPicture(picture, image, w, h, [](uint32_t, uint32_t, uint16_t over) { return over; });
        EXPECT_TRUE(KSPlacardShowing());
    }
}

TEST_F(PlacardTest, AtTwoAndAQuarterSecondsItIsBlendedHalfAndHalf)
{
    KSDisplayPlacard("Emulator Reset");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    OverlayClock::now = 1002.25;
    FrontPicture picture(240, 120);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    ExpectPicture(picture, image, w, h, [](uint32_t x, uint32_t y, uint16_t over) {
        return ExpectedBlend(FrontPicture::background(x, y), over, 2.25);
    });
    // One pixel worked by hand: the black outline over the background halves each channel.
    const uint16_t under = FrontPicture::background(10, 90);
    const uint16_t halved =
        (uint16_t)((Channel(under, 10) / 2) << 10 | (Channel(under, 5) / 2) << 5 | Channel(under, 0) / 2);
    EXPECT_EQ(picture.at(10, 90), halved);
}

TEST_F(PlacardTest, TheBlendRunsFromTheFullPlacardAtTwoSecondsToNothingAfterTwoAndAHalf)
{
    KSDisplayPlacard("Emulator Reset");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());

    OverlayClock::now = 1002.0;
    FrontPicture opaque(200, 80);
    KSDrawPlacards(opaque.data(), opaque.width, opaque.height);
    ExpectPicture(opaque, image, w, h, [](uint32_t, uint32_t, uint16_t over) { return over; });

    OverlayClock::now = 1002.4;
    FrontPicture faint(200, 80);
    KSDrawPlacards(faint.data(), faint.width, faint.height);
    ExpectPicture(faint, image, w, h, [](uint32_t x, uint32_t y, uint16_t over) {
        // The elapsed time as the clock gives it (1002.4 - 1000.0 is a hair under 2.4).
        return ExpectedBlend(FrontPicture::background(x, y), over, 1002.4 - 1000.0);
    });
    EXPECT_TRUE(KSPlacardShowing());

    OverlayClock::now = 1002.5001;
    FrontPicture gone(200, 80);
    KSDrawPlacards(gone.data(), gone.width, gone.height);
    ExpectPicture(gone, image, 0, 0, [](uint32_t, uint32_t, uint16_t over) { return over; });
    EXPECT_FALSE(KSPlacardShowing());
}

TEST_F(PlacardTest, TheQuickQuitPlacardSentEveryFrameStaysOpaqueWhileHeld)
{
    KSDisplayPlacard("Quick Quit");
    int32_t w = 0, h = 0;
    const uint16_t *first = KSPlacardImage(&w, &h);
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    // Four seconds of frames, each sending the placard again and blitting after it.
    for (int frame = 1; frame <= 240; frame++) {
        OverlayClock::now = 1000.0 + frame / 60.0;
        KSDisplayPlacard("Quick Quit");
        EXPECT_EQ(KSPlacardImage(nullptr, nullptr), first) << "the same text keeps its image";
        FrontPicture picture(160, 60);
        KSDrawPlacards(picture.data(), picture.width, picture.height);
        for (int32_t c = 0; c < w; c++)
            ASSERT_EQ(picture.at(10 + c, 30 + 1), image[(size_t)1 * w + c]) << "frame " << frame << ", column " << c;
    }
    // Released: two more seconds at full strength, then the fade.
    const double released = OverlayClock::now;
    OverlayClock::now = released + 1.9;
    FrontPicture held(160, 60);
    KSDrawPlacards(held.data(), held.width, held.height);
    ExpectPicture(held, image, w, h, [](uint32_t, uint32_t, uint16_t over) { return over; });
    OverlayClock::now = released + 2.6;
    FrontPicture after(160, 60);
    KSDrawPlacards(after.data(), after.width, after.height);
    EXPECT_FALSE(KSPlacardShowing());
}

TEST_F(PlacardTest, TheSameTextOnlyRestartsTheTwoSeconds)
{
    KSDisplayPlacard("Quick Freeze");
    const uint16_t *image = KSPlacardImage(nullptr, nullptr);
    OverlayClock::now = 1001.5;
    KSDisplayPlacard("Quick Freeze");
    EXPECT_EQ(KSPlacardImage(nullptr, nullptr), image);
    // 3.4 s after the first call but 1.9 s after the second: still fully drawn.
    OverlayClock::now = 1003.4;
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> pixels = placardImage(&w, &h);
    FrontPicture picture(160, 60);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    ExpectPicture(picture, pixels, w, h, [](uint32_t, uint32_t, uint16_t over) { return over; });
}

TEST_F(PlacardTest, ANewTextGetsANewImageOfItsOwnSize)
{
    KSDisplayPlacard("Hi");
    int32_t shortWidth = 0, h = 0;
    KSPlacardImage(&shortWidth, &h);
    KSDisplayPlacard("A somewhat longer message");
    int32_t longWidth = 0;
    KSPlacardImage(&longWidth, &h);
    EXPECT_GT(longWidth, shortWidth + 50);
    EXPECT_STREQ(KSPlacardText(), "A somewhat longer message");
}

TEST_F(PlacardTest, APlacardShownWhilePlacardsAreOffNeverAppears)
{
    KSPrefSetBool(kPrefDisplayPlacards, false);
    KSDisplayPlacard("Network Lag");
    EXPECT_FALSE(KSPlacardShowing());
    EXPECT_EQ(KSPlacardText(), nullptr);
    // Switched on within the two seconds: still nothing.
    OverlayClock::now = 1000.5;
    KSPrefSetBool(kPrefDisplayPlacards, true);
    FrontPicture picture(160, 60);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    ExpectPicture(picture, {}, 0, 0, [](uint32_t, uint32_t, uint16_t over) { return over; });
    EXPECT_FALSE(KSPlacardShowing());
}

TEST_F(PlacardTest, SwitchingPlacardsOffEndsTheOneShowing)
{
    KSDisplayPlacard("Network Lag");
    ASSERT_TRUE(KSPlacardShowing());
    KSPrefSetBool(kPrefDisplayPlacards, false);
    OverlayClock::now = 1000.5;
    FrontPicture picture(160, 60);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    ExpectPicture(picture, {}, 0, 0, [](uint32_t, uint32_t, uint16_t over) { return over; });
    EXPECT_FALSE(KSPlacardShowing());
}

TEST_F(PlacardTest, APictureSmallerThanTheBoxGetsOnlyWhatFitsInside)
{
    KSDisplayPlacard("A message wider than the picture");
    int32_t w = 0, h = 0;
    const std::vector<uint16_t> image = placardImage(&w, &h);
    ASSERT_FALSE(image.empty());
    const uint32_t sizes[][2] = {{64, 40}, {20, 12}, {5, 5}, {1, 1}, {300, 20}, {11, 31}};
    for (const auto &size : sizes) {
        FrontPicture picture(size[0], size[1]);
        KSDrawPlacards(picture.data(), picture.width, picture.height);
        SCOPED_TRACE(std::to_string(size[0]) + " x " + std::to_string(size[1]));
        ExpectPicture(picture, image, w, h, [](uint32_t, uint32_t, uint16_t over) { return over; });
    }
}

TEST_F(PlacardTest, ANullTextIsIgnored)
{
    KSDisplayPlacard(nullptr);
    EXPECT_FALSE(KSPlacardShowing());
    EXPECT_EQ(KSPlacardText(), nullptr);
}

TEST_F(PlacardTest, ReplacingTheImageWhileTheBlittingThreadDrawsKeepsEveryDrawWhole)
{
    KSDisplayPlacard("first");
    std::atomic<bool> stop{false};
    std::atomic<int> draws{0}, torn{0};
    std::thread blitter([&] {
        FrontPicture picture(320, 64);
        while (!stop) {
            std::lock_guard<std::mutex> lock(gBlitThreadLock);
            KSDrawPlacards(picture.data(), picture.width, picture.height);
            // The outline's corner is black whichever image was drawn.
            if (picture.at(10, 34) != 0) torn++;
            draws++;
        }
        if (!picture.guardIntact()) torn++;
    });
    for (int i = 0; i < 300; i++)
        KSDisplayPlacard(i % 2 ? "a short one" : "and a considerably longer placard text");
    while (draws < 50)
        std::this_thread::yield();
    stop = true;
    blitter.join();
    EXPECT_EQ(torn, 0);
}
