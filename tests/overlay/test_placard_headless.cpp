// A placard shown before any GUI application exists (a host calling ahead of
// KSInit): no font database, so a plain box of an estimated size, and no crash.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <lumivex/lumivex.h>

#include "prefs/ks_prefs.h"
#include "shell/ks_clock.h"
#include "video/ks_placard.h"

namespace
{
double Now()
{
    return 500.0;
}
} // namespace

TEST(PlacardWithoutApplication, ABoxWithoutTextIsDrawn)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    QTemporaryDir dir;
    KSPrefsOpenFile(dir.filePath("headless.ini").toStdString());
    KSRegisterShellDefaults(false);
    KSSetClock(&Now);
    KSDisplayPlacard("Early");
    EXPECT_TRUE(KSPlacardShowing());
    int32_t w = 0, h = 0;
    const uint16_t *image = KSPlacardImage(&w, &h);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(w, 5 * 7 + 14);
    EXPECT_EQ(h, 15 + 8);
    EXPECT_EQ(image[0], 0) << "outline";
    const uint16_t grey = image[w + 1];
    EXPECT_NE(grey, 0);
    for (int32_t y = 1; y < h - 1; y++)
        for (int32_t x = 1; x < w - 1; x++)
            ASSERT_EQ(image[(size_t)y * w + x], grey) << "no text: " << x << ", " << y;
    KSResetPlacards();
    KSSetClock(nullptr);
    KSPrefsClose();
}
