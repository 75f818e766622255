// Placards and the frame-rate figure drawn into front buffers of a known picture,
// with a clock the test moves by hand and a settings file of its own.
#pragma once

#include <gtest/gtest.h>

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdint>
#include <vector>

#include <lumivex/lumivex.h>

#include "prefs/ks_prefs.h"
#include "shell/ks_clock.h"
#include "video/ks_placard.h"

struct OverlayClock {
    static double now;
    static double read() { return now; }
};

// A picture of width x height front-buffer pixels with a guard band after it, so
// that a write past the picture shows up as a changed guard word.
struct FrontPicture {
    static constexpr uint16_t kGuard = 0x5A5A;
    uint32_t width, height;
    std::vector<uint16_t> pixels;

    FrontPicture(uint32_t w, uint32_t h) : width(w), height(h), pixels((size_t)w * h + 4096, kGuard)
    {
        for (uint32_t y = 0; y < h; y++)
            for (uint32_t x = 0; x < w; x++)
                at(x, y) = background(x, y);
    }
    static uint16_t background(uint32_t x, uint32_t y) { return (uint16_t)((x * 37 + y * 1021) & 0x7FFF); }
    uint16_t &at(uint32_t x, uint32_t y) { return pixels[(size_t)y * width + x]; }
    uint16_t *data() { return pixels.data(); }
    bool guardIntact() const
    {
        for (size_t i = (size_t)width * height; i < pixels.size(); i++)
            if (pixels[i] != kGuard) return false;
        return true;
    }
};

class OverlayTest : public ::testing::Test
{
  protected:
    QTemporaryDir dir;
    QFont savedFont;

    void SetUp() override
    {
        OverlayClock::now = 1000.0;
        KSSetClock(&OverlayClock::read);
        KSPrefsOpenFile(dir.filePath("overlay.ini").toStdString());
        KSRegisterShellDefaults(false);
        KSResetPlacards();
        // One known face, so that box sizes are the same from run to run.
        savedFont = QGuiApplication::font();
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(13);
        QGuiApplication::setFont(font);
    }

    void TearDown() override
    {
        KSResetPlacards();
        QGuiApplication::setFont(savedFont);
        KSSetClock(nullptr);
        KSPrefsClose();
    }

    static bool haveTestFont() { return QFontInfo(QGuiApplication::font()).family() == QStringLiteral("DejaVu Sans"); }

    // The placard image as the module holds it.
    static std::vector<uint16_t> placardImage(int32_t *w, int32_t *h)
    {
        const uint16_t *image = KSPlacardImage(w, h);
        if (!image) return {};
        return std::vector<uint16_t>(image, image + (size_t)*w * *h);
    }
};
