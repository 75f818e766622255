// The measured frame rate and its overlay of green digits at the top right.
#include "shell/ks_framerate.h"

#include <cstddef>

#include "shell/ks_assert.h"
#include "video/ks_render.h"

uint32_t gFrameRateDisplayed;
uint32_t gFrameRateStored;

namespace
{

const uint16_t kInk = 0x37E1; // red 13, green 31, blue 1

// Six columns by seven rows per digit; bit 5 is the leftmost column.
const uint8_t kDigitGlyphs[10][7] = {
    {0x0C, 0x12, 0x12, 0x12, 0x12, 0x12, 0x0C}, // 0
    {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x04}, // 1
    {0x0C, 0x12, 0x02, 0x04, 0x08, 0x10, 0x1E}, // 2
    {0x0C, 0x12, 0x02, 0x04, 0x02, 0x12, 0x0C}, // 3
    {0x02, 0x06, 0x0A, 0x12, 0x1E, 0x02, 0x02}, // 4
    {0x1E, 0x10, 0x1C, 0x02, 0x02, 0x12, 0x0C}, // 5
    {0x0C, 0x10, 0x1C, 0x12, 0x12, 0x12, 0x0C}, // 6
    {0x1E, 0x02, 0x04, 0x04, 0x08, 0x08, 0x08}, // 7
    {0x0C, 0x12, 0x12, 0x0C, 0x12, 0x12, 0x0C}, // 8
    {0x0C, 0x12, 0x12, 0x12, 0x0E, 0x02, 0x0C}, // 9
};

} // namespace

void KSPublishFrameRate(uint32_t value)
{
    gFrameRateDisplayed = value;
    gFrameRateStored = value;
}

void KSRestoreFrameRate()
{
    gFrameRateDisplayed = gFrameRateStored;
    KSSetClearFlags();
}

void KSDrawFrameRate(uint16_t *front, uint32_t pitch, uint32_t width)
{
    const uint32_t n = gFrameRateDisplayed;
    uint32_t digits;
    if (n < 10)
        digits = 1;
    else if (n < 100)
        digits = 2;
    else if (n < 1000)
        digits = 3;
    else if (n < 10000)
        digits = 4;
    else {
        KS_FAIL("0"); // the shell never measures such a rate
        return;
    }
    if (!front) return;

    char text[4];
    for (uint32_t i = 0, v = n; i < digits; i++, v /= 10)
        text[digits - 1 - i] = (char)(v % 10);

    const int64_t left = (int64_t)width - 6 * (int64_t)digits;
    const size_t rowPixels = pitch / 2;
    for (uint32_t row = 0; row < 9; row++) {
        uint16_t *line = front + row * rowPixels;
        for (uint32_t i = 0; i < digits; i++) {
            const uint8_t bits = (row >= 1 && row <= 7) ? kDigitGlyphs[(int)text[i]][row - 1] : 0;
            for (uint32_t c = 0; c < 6; c++) {
                const int64_t x = left + 6 * i + c;
                if (x < 0) continue; // a picture narrower than the block keeps its right part
                line[x] = (bits & (0x20 >> c)) ? kInk : 0;
            }
        }
    }
}
