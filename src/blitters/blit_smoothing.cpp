// "Simple Smoothing": the Scale2x rule at size 2 and a Scale3x rule at size 3.
//
// Neighbours of the source pixel E:   A B C
//                                     D E F
//                                     G H I
// read unclamped, like the SaI family: the rows above the first and below the
// last come from the source slot's margins, the columns beside the picture from
// the adjacent memory.
//
// Change tracking: the delta buffer holds three planes of width * height pixels,
// the copies of each pixel's right (F), upper (B) and lower (H) neighbour as they
// were when its block was last drawn. A change of F restarts a counter that
// redraws this pixel and the next two along the row (the three blocks that depend
// on one source pixel along a row); a change of B or H redraws just this block.
// Diagonal neighbours are not tracked.
#include <cstddef>
#include <cstring>

#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace
{

inline const uint16_t *RowAt(const uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<const uint16_t *>(reinterpret_cast<const uint8_t *>(base) + (ptrdiff_t)pitch * y);
}
inline uint16_t *RowAt(uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<uint16_t *>(reinterpret_cast<uint8_t *>(base) + (ptrdiff_t)pitch * y);
}

// Walks the picture, redrawing the blocks whose tracked neighbours changed.
// draw(above, row, below, x, y) draws the block of pixel x of source row y.
template <class Draw>
void SmoothChanged(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, int32_t width, int32_t height, Draw draw)
{
    if (width <= 0 || height <= 0) return;
    const size_t plane = (size_t)width * (size_t)height;
    uint16_t *copyRight = reinterpret_cast<uint16_t *>(delta);
    uint16_t *copyUp = copyRight + plane;
    uint16_t *copyDown = copyUp + plane;
    for (int32_t y = 0; y < height; y++) {
        const uint16_t *above = RowAt(src, srcPitch, y - 1);
        const uint16_t *row = RowAt(src, srcPitch, y);
        const uint16_t *below = RowAt(src, srcPitch, y + 1);
        const size_t base = (size_t)y * (size_t)width;
        int redraw = 0;
        for (int32_t x = 0; x < width; x++) {
            const size_t i = base + (size_t)x;
            const uint16_t f = row[x + 1], b = above[x], h = below[x];
            if (f != copyRight[i]) redraw = 3;
            if (redraw <= 0 && b == copyUp[i] && h == copyDown[i]) continue;
            copyRight[i] = f;
            copyUp[i] = b;
            copyDown[i] = h;
            draw(above, row, below, x, y);
            redraw--;
        }
    }
}

inline void StorePair(uint16_t *d, uint16_t left, uint16_t right)
{
    const uint32_t word = (uint32_t)left | ((uint32_t)right << 16); // lower address in the lower half
    memcpy(d, &word, 4);
}

} // namespace

void BlitSimpleSmoothing_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                            int32_t width, int32_t height)
{
    SmoothChanged(src, srcPitch, delta, width, height,
                  [=](const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x, int32_t y) {
                      const uint16_t b = above[x], d = row[x - 1], e = row[x], f = row[x + 1], h = below[x];
                      uint16_t *top = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y) + 2 * (ptrdiff_t)x;
                      uint16_t *bottom = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y + 1) + 2 * (ptrdiff_t)x;
                      // Scale2x: a corner takes the colour of its two edge neighbours when
                      // they agree, unless the block sits on a straight line (B = H or D = F).
                      if (b != h && d != f) {
                          StorePair(top, d == b ? d : e, b == f ? f : e);
                          StorePair(bottom, d == h ? d : e, h == f ? f : e);
                      } else {
                          StorePair(top, e, e);
                          StorePair(bottom, e, e);
                      }
                  });
}

void BlitSimpleSmoothing_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                            int32_t width, int32_t height)
{
    SmoothChanged(src, srcPitch, delta, width, height,
                  [=](const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x, int32_t y) {
                      const uint16_t a = above[x - 1], b = above[x], c = above[x + 1];
                      const uint16_t d = row[x - 1], e = row[x], f = row[x + 1];
                      const uint16_t g = below[x - 1], h = below[x], i = below[x + 1];
                      uint16_t *r0 = RowAt(dst, dstPitch, 3 * (ptrdiff_t)y) + 3 * (ptrdiff_t)x;
                      uint16_t *r1 = RowAt(dst, dstPitch, 3 * (ptrdiff_t)y + 1) + 3 * (ptrdiff_t)x;
                      uint16_t *r2 = RowAt(dst, dstPitch, 3 * (ptrdiff_t)y + 2) + 3 * (ptrdiff_t)x;
                      if (b == h || d == f) {
                          r0[0] = r0[1] = r0[2] = e;
                          r1[0] = r1[1] = r1[2] = e;
                          r2[0] = r2[1] = r2[2] = e;
                          return;
                      }
                      r0[0] = d == b ? d : e;
                      r0[1] = (d == b && e != c) || (b == f && e != a) ? b : e;
                      r0[2] = b == f ? f : e;
                      // Middle-left tests D = B in both terms (where Scale3x has D = H in
                      // the second); this is the rule the scaler is meant to have.
                      r1[0] = d == b && (e != g || e != a) ? d : e;
                      r1[1] = e;
                      r1[2] = (b == f && e != i) || (h == f && e != c) ? f : e;
                      r2[0] = d == h ? d : e;
                      r2[1] = (d == h && e != i) || (h == f && e != g) ? h : e;
                      r2[2] = h == f ? f : e;
                  });
}
