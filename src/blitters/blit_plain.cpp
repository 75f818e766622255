// Plain: each source pixel becomes a size x size block. The reference blitter.
//
// From 2x up the delta buffer holds last frame's source, row after row, and only
// changed units are redrawn. The copy of unit k sits one unit further on than the
// unit's own offset (the "lead"); 5x compares four pixels with no lead.
#include <cstring>
#include <vector>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "blitters/blit_engine.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace {

inline void Store64(void *p, uint64_t v) { memcpy(p, &v, 8); }

} // namespace

void BlitPlain_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    // Whole 64-bit words only: a row's last width % 4 pixels are left alone.
    const size_t bytes = (size_t)(width / 4) * 8;
    for (int y = 0; y < height; y++) memcpy(lvblit::RowAt(dst, dstPitch, y), lvblit::RowAt(src, srcPitch, y), bytes);
}

namespace {

// Expands n source pixels into one destination row segment, each pixel `size` times.
template <int size> inline void Expand(const uint16_t *s, uint16_t *d, int n)
{
    for (int i = 0; i < n; i++)
        for (int k = 0; k < size; k++) d[size * i + k] = s[i];
}

// Copies the first row of a block's segment into the block's other rows.
template <int size> inline void Repeat(uint16_t *d, uint32_t pitch, size_t bytes)
{
    for (int r = 1; r < size; r++) memcpy(reinterpret_cast<uint8_t *>(d) + (size_t)pitch * r, d, bytes);
}

// 3x and 4x. A row whose units (pairs at 3x, pixels at 4x) all changed is expanded
// straight into its first destination row, which is then copied to the others;
// any other row is walked unit by unit, so an unchanged unit's block is never
// rewritten.
template <int size, int unit>
LV_VECTOR_CLONES void PlainTracked(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int pixels, int width, int height)
{
    for (int y = 0; y < height; y++) {
        const uint16_t *s = lvblit::RowAt(src, srcPitch, y);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2 + 2 * unit); // lead of one unit
        uint16_t *d = lvblit::RowAt(dst, dstPitch, size * y);
        if (pixels > 0 && memcmp(s, copy, (size_t)pixels * 2) == 0) continue; // a still row
        if (pixels > 0 && lvblit::CopyIfAllDiffer<unit>(s, copy, pixels)) {
            // Expanded straight into the first destination row, then copied to the others.
            lvblit::Replicate<size>(s, d, pixels);
            Repeat<size>(d, dstPitch, (size_t)size * pixels * 2);
            continue;
        }
        for (int u = 0; u + unit <= pixels; u += unit) {
            if (memcmp(s + u, copy + u, 2 * unit) == 0) continue;
            memcpy(copy + u, s + u, 2 * unit);
            Expand<size>(s + u, d + size * u, unit);
            Repeat<size>(d + size * u, dstPitch, (size_t)size * unit * 2);
        }
    }
}

} // namespace

// 2x: width / 4 steps of two pairs; the pair (a, b) becomes (a, a, b, b) in both rows.
LV_VECTOR_CLONES void BlitPlain_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                   uint32_t dstPitch, int32_t width, int32_t height)
{
#if defined(__SSE2__)
    // Eight pixels (four pairs) at a time: skip a still group, expand a group
    // whose four pairs all changed, and leave mixed groups to the pair-wise walk.
    const int pixels = (width / 4) * 4;
    // A still picture whose rows lie one after another, as their copies do,
    // costs one comparison.
    if (pixels > 0 && pixels == width && height > 0 && srcPitch == (uint32_t)width * 2 &&
        src[0] == *reinterpret_cast<const uint16_t *>(delta + 4) &&
        memcmp(src, delta + 4, (size_t)width * (size_t)height * 2) == 0)
        return;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = lvblit::RowAt(src, srcPitch, y);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2 + 4);
        uint16_t *d0 = lvblit::RowAt(dst, dstPitch, 2 * y);
        uint16_t *d1 = lvblit::RowAt(dst, dstPitch, 2 * y + 1);
        if (pixels > 0 && s[0] == copy[0] && memcmp(s, copy, (size_t)pixels * 2) == 0) continue; // a still row
        int x = 0;
#if defined(LV_LANES_VECTORS)
        if (lvblit::CopyIfAllDiffer<2>(s, copy, pixels)) {
            // Every pair changed: the row doubled sixteen pixels at a time into both rows.
            for (; x + lv_lanes::kLanes <= pixels; x += lv_lanes::kLanes) {
                lv_lanes::Lanes lo, hi;
                lv_lanes::Interleave(lv_lanes::LoadLanes(s + x), lv_lanes::LoadLanes(s + x), lo, hi);
                lv_lanes::StoreLanes(d0 + 2 * x, lo), lv_lanes::StoreLanes(d0 + 2 * x + lv_lanes::kLanes, hi);
                lv_lanes::StoreLanes(d1 + 2 * x, lo), lv_lanes::StoreLanes(d1 + 2 * x + lv_lanes::kLanes, hi);
            }
            for (; x < pixels; x++)
                d0[2 * x] = d0[2 * x + 1] = d1[2 * x] = d1[2 * x + 1] = s[x];
            continue;
        }
#endif
        for (; x + 8 <= pixels; x += 8) {
            const __m128i now = _mm_loadu_si128(reinterpret_cast<const __m128i *>(s + x));
            const __m128i before = _mm_loadu_si128(reinterpret_cast<const __m128i *>(copy + x));
            const int same = _mm_movemask_epi8(_mm_cmpeq_epi32(now, before));
            if (same == 0xFFFF) continue;
            if (same == 0) {
                _mm_storeu_si128(reinterpret_cast<__m128i *>(copy + x), now);
                const __m128i lo = _mm_unpacklo_epi16(now, now), hi = _mm_unpackhi_epi16(now, now);
                _mm_storeu_si128(reinterpret_cast<__m128i *>(d0 + 2 * x), lo);
                _mm_storeu_si128(reinterpret_cast<__m128i *>(d0 + 2 * x + 8), hi);
                _mm_storeu_si128(reinterpret_cast<__m128i *>(d1 + 2 * x), lo);
                _mm_storeu_si128(reinterpret_cast<__m128i *>(d1 + 2 * x + 8), hi);
                continue;
            }
            break; // a mixed group: the pair-wise walk takes the rest of the row
        }
        for (int u = x; u + 2 <= pixels; u += 2) {
            if (memcmp(s + u, copy + u, 4) == 0) continue;
            memcpy(copy + u, s + u, 4);
            const uint64_t a = s[u], b = s[u + 1];
            const uint64_t out = a | (a << 16) | (b << 32) | (b << 48);
            Store64(d0 + 2 * u, out);
            Store64(d1 + 2 * u, out);
        }
    }
#else
    PlainTracked<2, 2>(src, srcPitch, delta, dst, dstPitch, (width / 4) * 4, width, height);
#endif
}

// 3x: pairs; an odd last pixel is not drawn.
void BlitPlain_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    PlainTracked<3, 2>(src, srcPitch, delta, dst, dstPitch, (width / 2) * 2, width, height);
}

// 4x: single pixels.
void BlitPlain_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    PlainTracked<4, 1>(src, srcPitch, delta, dst, dstPitch, width, width, height);
}

LV_VECTOR_CLONES void BlitPlain_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                   uint32_t dstPitch, int32_t width, int32_t height)
{
    const int groups = width / 4;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = lvblit::RowAt(src, srcPitch, y);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2);
        uint16_t *d = lvblit::RowAt(dst, dstPitch, 5 * y);
        // A row whose pixels all changed (then every group test fails too) is
        // expanded into its first destination row and copied to the other four.
        if (groups > 0 && memcmp(s, copy, (size_t)groups * 8) == 0) continue; // a still row
        if (groups > 0 && lvblit::CopyIfAllDiffer<1>(s, copy, 4 * groups)) {
            lvblit::Replicate<5>(s, d, 4 * groups);
            Repeat<5>(d, dstPitch, (size_t)groups * 40);
            continue;
        }
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
                const int x = 4 * g + k;
                if (s[x] == old[k]) continue;
                Expand<5>(s + x, d + 5 * x, 1);
                Repeat<5>(d + 5 * x, dstPitch, 10);
            }
        }
    }
}
