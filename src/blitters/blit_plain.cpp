// Plain: each source pixel becomes a size x size block. The reference blitter.
//
// From 2x up the delta buffer holds last frame's source, row after row, and only
// changed units are redrawn. The copy of unit k sits one unit further on than the
// unit's own offset (the "lead"); 5x compares four pixels with no lead.
#include <cstring>

#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace {

inline uint64_t Load64(const void *p)
{
    uint64_t v;
    memcpy(&v, p, 8);
    return v;
}
inline void Store64(void *p, uint64_t v) { memcpy(p, &v, 8); }
inline uint32_t Load32(const void *p)
{
    uint32_t v;
    memcpy(&v, p, 4);
    return v;
}
inline void Store32(void *p, uint32_t v) { memcpy(p, &v, 4); }

inline uint16_t *Row(uint16_t *dst, uint32_t pitch, int y)
{
    return reinterpret_cast<uint16_t *>(reinterpret_cast<uint8_t *>(dst) + (size_t)pitch * y);
}
inline const uint16_t *Row(const uint16_t *src, uint32_t pitch, int y)
{
    return reinterpret_cast<const uint16_t *>(reinterpret_cast<const uint8_t *>(src) + (size_t)pitch * y);
}

} // namespace

void BlitPlain_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    // Whole 64-bit words only: a row's last width % 4 pixels are left alone.
    const size_t bytes = (size_t)(width / 4) * 8;
    for (int y = 0; y < height; y++) memcpy(Row(dst, dstPitch, y), Row(src, srcPitch, y), bytes);
}

void BlitPlain_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    const int steps = width / 4;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = Row(src, srcPitch, y);
        uint8_t *copy = delta + (size_t)y * width * 2 + 4; // lead of one pair
        uint16_t *d0 = Row(dst, dstPitch, 2 * y);
        uint16_t *d1 = Row(dst, dstPitch, 2 * y + 1);
        for (int i = 0; i < steps * 2; i++) {
            const uint32_t pair = Load32(s + 2 * i);
            if (pair == Load32(copy + 4 * i)) continue;
            Store32(copy + 4 * i, pair);
            const uint64_t a = pair & 0xFFFF, b = pair >> 16;
            const uint64_t out = a | (a << 16) | (b << 32) | (b << 48);
            Store64(d0 + 4 * i, out);
            Store64(d1 + 4 * i, out);
        }
    }
}

void BlitPlain_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    const int pairs = width / 2;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = Row(src, srcPitch, y);
        uint8_t *copy = delta + (size_t)y * width * 2 + 4;
        for (int i = 0; i < pairs; i++) {
            const uint32_t pair = Load32(s + 2 * i);
            if (pair == Load32(copy + 4 * i)) continue;
            Store32(copy + 4 * i, pair);
            const uint16_t a = (uint16_t)pair, b = (uint16_t)(pair >> 16);
            for (int r = 0; r < 3; r++) {
                uint16_t *d = Row(dst, dstPitch, 3 * y + r) + 6 * i;
                d[0] = d[1] = d[2] = a;
                d[3] = d[4] = d[5] = b;
            }
        }
    }
}

void BlitPlain_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    for (int y = 0; y < height; y++) {
        const uint16_t *s = Row(src, srcPitch, y);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2 + 2); // lead of one pixel
        for (int x = 0; x < width; x++) {
            const uint16_t p = s[x];
            if (p == copy[x]) continue;
            copy[x] = p;
            const uint64_t out = 0x0001000100010001ull * p;
            for (int r = 0; r < 4; r++) Store64(Row(dst, dstPitch, 4 * y + r) + 4 * x, out);
        }
    }
}

void BlitPlain_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    const int groups = width / 4;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = Row(src, srcPitch, y);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2);
        for (int g = 0; g < groups; g++) {
            // The group test compares the 64 bits as a double: a NaN pattern never
            // tests equal, and +0/-0 patterns test equal although their bits differ.
            double now, before;
            memcpy(&now, s + 4 * g, 8);
            memcpy(&before, copy + 4 * g, 8);
            if (now == before) continue;
            uint16_t old[4];
            memcpy(old, copy + 4 * g, 8);
            memcpy(copy + 4 * g, s + 4 * g, 8);
            for (int k = 0; k < 4; k++) {
                const uint16_t p = s[4 * g + k];
                if (p == old[k]) continue;
                const int x = 4 * g + k;
                for (int r = 0; r < 5; r++) {
                    uint16_t *d = Row(dst, dstPitch, 5 * y + r) + 5 * x;
                    d[0] = d[1] = d[2] = d[3] = d[4] = p;
                }
            }
        }
    }
}
