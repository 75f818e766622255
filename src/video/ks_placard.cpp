// Placards: a short message in a grey box near the lower left of the scaled picture,
// shown for two seconds and faded out over half a second.
#include "video/ks_placard.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QString>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <mutex>
#include <string>

#include <lumivex/lumivex.h>

#include "prefs/ks_prefs.h"
#include "shell/ks_assert.h"
#include "shell/ks_clock.h"
#include "video/ks_render.h"

namespace
{

std::string pPlacardText;
bool pHavePlacardText;
// Seconds on the media clock when the placard was last shown; 0.0: none shows.
// Written by the main thread and cleared by the blitting thread.
std::atomic<double> pPlacardTime{0.0};

// The image, RGB 5-5-5 rows top first. Replaced only under gBlitThreadLock, which
// the blitting thread holds while it draws, so a blit never reads a freed image.
uint16_t *pPlacardBuffer;
int32_t pPlacardBufferWidth;
int32_t pPlacardBufferHeight;

// Images beyond this many bytes count as a failed allocation (a core that sends
// megabytes of text must not make the measure overflow).
const double kMaxPlacardBytes = 256.0 * 1024 * 1024;

// Text needs the font database of a GUI application; before one exists (a host
// that shows a placard ahead of KSInit) the box is sized from a fixed advance per
// character and left without text rather than ending the process.
bool HaveFonts()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

uint16_t BlendPixel(uint16_t under, uint16_t over, double a)
{
    uint16_t result = 0;
    for (int shift = 0; shift <= 10; shift += 5) {
        const double d = (under >> shift) & 31, p = (over >> shift) & 31;
        result |= (uint16_t)((int)(d * (1.0 - a) + p * a) << shift);
    }
    return result;
}

} // namespace

extern "C" void KSDisplayPlacard(const char *message)
{
    if (!message) return;
    if (!KSPrefBool(kPrefDisplayPlacards)) return;
    if (pHavePlacardText && pPlacardText == message) {
        pPlacardTime = KSMediaTime();
        return;
    }
    pPlacardText = message;
    pHavePlacardText = true;

    const QString text = QString::fromUtf8(message);
    const bool fonts = HaveFonts();
    const QFont font = fonts ? QGuiApplication::font() : QFont();
    double textWidth = 7.0 * text.size(), textHeight = 15.0;
    if (fonts) {
        const QFontMetricsF metrics(font);
        textWidth = metrics.horizontalAdvance(text);
        textHeight = metrics.height();
    }
    double width = std::trunc(textWidth + 14), height = std::trunc(textHeight + 8);
    if (!(width > 0)) width = 0;
    if (!(height > 0)) height = 0;
    const bool tooLarge = width * height * 2 > kMaxPlacardBytes;

    std::lock_guard<std::mutex> lock(gBlitThreadLock);
    free(pPlacardBuffer);
    pPlacardBuffer = nullptr;
    pPlacardBufferWidth = tooLarge ? 1 : (int32_t)width;
    pPlacardBufferHeight = tooLarge ? 1 : (int32_t)height;
    KS_ASSERT(pPlacardBufferWidth != 0);
    KS_ASSERT(pPlacardBufferHeight != 0);

    if (!tooLarge) pPlacardBuffer = (uint16_t *)malloc((size_t)pPlacardBufferWidth * 2 * pPlacardBufferHeight);
    if (!pPlacardBuffer) KS_FAIL("pPlacardBuffer != nil");
    QImage pPlacardContext((uchar *)pPlacardBuffer, pPlacardBufferWidth, pPlacardBufferHeight, pPlacardBufferWidth * 2,
                           QImage::Format_RGB555);
    if (pPlacardContext.isNull()) KS_FAIL("pPlacardContext");

    const double w = pPlacardBufferWidth, h = pPlacardBufferHeight;
    QPainter painter(&pPlacardContext);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.fillRect(QRectF(0, 0, w, h), QColor::fromRgbF(0.88f, 0.88f, 0.88f, 1.0f));
    // A 2.0-wide line centred on the image's edge leaves one black pixel inside it.
    QPainterPath outline;
    outline.addRect(QRectF(0, 0, w, h));
    painter.strokePath(outline, QPen(Qt::black, 2.0));
    if (fonts) {
        painter.setFont(font);
        painter.setPen(Qt::black);
        // The text's baseline sits 6 pixels from the left and 7 above the bottom edge.
        painter.drawText(QPointF(6, h - 7), text);
    }
    painter.end();

    pPlacardTime = KSMediaTime();
}

bool KSPlacardShowing()
{
    return pPlacardTime.load() != 0.0;
}

const char *KSPlacardText()
{
    return pHavePlacardText ? pPlacardText.c_str() : nullptr;
}

void KSDrawPlacards(uint16_t *front, uint32_t width, uint32_t height)
{
    const double shown = pPlacardTime.load();
    if (shown == 0.0) return;
    const double elapsed = KSMediaTime() - shown;
    if (elapsed > 2.5 || !KSPrefBool(kPrefDisplayPlacards)) {
        pPlacardTime = 0.0;
        return;
    }
    if (!front || !pPlacardBuffer) return;
    const bool copy = elapsed < 2.0;
    const double a = 2 * (2.5 - elapsed);
    // The box's top edge is 30 rows above the picture's bottom and its left edge 10
    // pixels in; what falls outside the picture is left out.
    const int64_t top = (int64_t)height - 30, left = 10;
    for (int32_t r = 0; r < pPlacardBufferHeight; r++) {
        const int64_t y = top + r;
        if (y < 0 || y >= (int64_t)height) continue;
        uint16_t *dst = front + (size_t)y * width;
        const uint16_t *src = pPlacardBuffer + (size_t)r * pPlacardBufferWidth;
        for (int32_t c = 0; c < pPlacardBufferWidth; c++) {
            const int64_t x = left + c;
            if (x >= (int64_t)width) break;
            dst[x] = copy ? src[c] : BlendPixel(dst[x], src[c], a);
        }
    }
}

void KSResetPlacards()
{
    std::lock_guard<std::mutex> lock(gBlitThreadLock);
    free(pPlacardBuffer);
    pPlacardBuffer = nullptr;
    pPlacardBufferWidth = 0;
    pPlacardBufferHeight = 0;
    pPlacardText.clear();
    pHavePlacardText = false;
    pPlacardTime = 0.0;
}

const uint16_t *KSPlacardImage(int32_t *width, int32_t *height)
{
    if (width) *width = pPlacardBufferWidth;
    if (height) *height = pPlacardBufferHeight;
    return pPlacardBuffer;
}
