// Placards against committed pictures. Box, outline, grey margins and everything
// around the box must match pixel for pixel; only the text's own pixels, where
// font rasterisers differ, are compared by their amount of ink.
// LUMIVEX_UPDATE_GOLDEN=1 rewrites the pictures.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <cmath>
#include <cstdlib>
#include <string>

#include "overlay_fixture.h"

namespace
{

const uint32_t kWidth = 200, kHeight = 80;

QString GoldenPath(const char *name)
{
    return QStringLiteral(LUMIVEX_SOURCE_DIR "/tests/overlay/golden/") + QString::fromUtf8(name);
}

// 5-5-5 pixels as 8-bit channels (each value times 8), which a PNG keeps exactly.
QImage ToImage(FrontPicture &picture)
{
    QImage image((int)picture.width, (int)picture.height, QImage::Format_RGB32);
    for (uint32_t y = 0; y < picture.height; y++)
        for (uint32_t x = 0; x < picture.width; x++) {
            const uint16_t p = picture.at(x, y);
            image.setPixel((int)x, (int)y, qRgb(((p >> 10) & 31) << 3, ((p >> 5) & 31) << 3, (p & 31) << 3));
        }
    return image;
}

uint16_t FromImage(const QImage &image, int x, int y)
{
    const QRgb c = image.pixel(x, y);
    return (uint16_t)((qRed(c) >> 3) << 10 | (qGreen(c) >> 3) << 5 | (qBlue(c) >> 3));
}

int Darkness(uint16_t p)
{
    return 93 - (((p >> 10) & 31) + ((p >> 5) & 31) + (p & 31));
}

void CompareWithGolden(FrontPicture &picture, const char *name, int32_t boxWidth, int32_t boxHeight)
{
    const QString path = GoldenPath(name);
    if (qEnvironmentVariableIsSet("LUMIVEX_UPDATE_GOLDEN")) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        ASSERT_TRUE(ToImage(picture).save(path, "PNG"));
    }
    QImage golden(path);
    ASSERT_FALSE(golden.isNull()) << "missing " << path.toStdString();
    ASSERT_EQ(golden.width(), (int)picture.width);
    ASSERT_EQ(golden.height(), (int)picture.height);

    const int top = (int)picture.height - 30, left = 10;
    // The text's columns: from the left margin to the right one (6 and 7 pixels of
    // grey, less a pixel each for glyphs that overhang).
    const int textLeft = left + 5, textRight = left + boxWidth - 6;
    int outsideMismatches = 0;
    long goldenInk = 0, actualInk = 0, goldenDark = 0, actualDark = 0;
    const uint16_t goldenMargin = FromImage(golden, left + 2, top + 2);
    const uint16_t actualMargin = picture.at(left + 2, top + 2);
    EXPECT_EQ(actualMargin, goldenMargin) << "the grey inside the outline";
    for (int y = 0; y < (int)picture.height; y++)
        for (int x = 0; x < (int)picture.width; x++) {
            const uint16_t want = FromImage(golden, x, y), got = picture.at((uint32_t)x, (uint32_t)y);
            const bool inText = x >= textLeft && x < textRight && y > top && y < top + boxHeight - 1;
            if (!inText) {
                if (want != got && outsideMismatches++ < 5)
                    ADD_FAILURE() << name << ": pixel (" << x << ", " << y << ") " << std::hex << got << " not "
                                  << want;
                continue;
            }
            if (want != goldenMargin) goldenInk++, goldenDark += Darkness(want) - Darkness(goldenMargin);
            if (got != actualMargin) actualInk++, actualDark += Darkness(got) - Darkness(actualMargin);
        }
    EXPECT_EQ(outsideMismatches, 0) << name << ": box, outline, margins and background";
    ASSERT_GT(goldenInk, 30) << name << ": the golden picture has text";
    EXPECT_NEAR((double)actualInk, (double)goldenInk, 0.15 * goldenInk) << name << ": ink pixels of the text";
    EXPECT_NEAR((double)actualDark, (double)goldenDark, 0.15 * std::abs((double)goldenDark)) << name << ": ink amount";
}

using PlacardGoldenTest = OverlayTest;

} // namespace

TEST_F(PlacardGoldenTest, AQuickFreezePlacardMatchesTheCommittedPicture)
{
    if (!haveTestFont()) GTEST_SKIP() << "the pictures were made with DejaVu Sans, which is not installed";
    KSDisplayPlacard("Quick Freeze");
    int32_t w = 0, h = 0;
    ASSERT_NE(KSPlacardImage(&w, &h), nullptr);
    OverlayClock::now = 1000.75;
    FrontPicture picture(kWidth, kHeight);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    CompareWithGolden(picture, "placard_quick_freeze.png", w, h);
}

TEST_F(PlacardGoldenTest, TheSamePlacardHalfFadedAtTwoAndAQuarterSecondsMatchesItsPicture)
{
    if (!haveTestFont()) GTEST_SKIP() << "the pictures were made with DejaVu Sans, which is not installed";
    KSDisplayPlacard("Quick Freeze");
    int32_t w = 0, h = 0;
    ASSERT_NE(KSPlacardImage(&w, &h), nullptr);
    OverlayClock::now = 1002.25;
    FrontPicture picture(kWidth, kHeight);
    KSDrawPlacards(picture.data(), picture.width, picture.height);
    CompareWithGolden(picture, "placard_quick_freeze_fading.png", w, h);
}
