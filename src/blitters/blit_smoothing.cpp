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
//
// Wide rows are checked 16 pixels at a time (blit_lanes.h) with the same result.
#include <cstddef>
#include <cstring>

#include "blitters/blit_lanes.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace
{

using namespace lv_lanes;

struct Target {
    uint16_t *dst;
    uint32_t pitch;
};

// Scale2x.
struct Rule2x {
    static LV_LANES_INLINE void Draw(const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x,
                                     int32_t y, const Target &t)
    {
        const uint16_t b = above[x], d = row[x - 1], e = row[x], f = row[x + 1], h = below[x];
        uint16_t *top = RowAt(t.dst, t.pitch, 2 * (ptrdiff_t)y) + 2 * (ptrdiff_t)x;
        uint16_t *bottom = RowAt(t.dst, t.pitch, 2 * (ptrdiff_t)y + 1) + 2 * (ptrdiff_t)x;
        // A corner takes the colour of its two edge neighbours when they agree,
        // unless the block sits on a straight line (B = H or D = F).
        if (b != h && d != f) {
            StorePair(top, d == b ? d : e, b == f ? f : e);
            StorePair(bottom, d == h ? d : e, h == f ? f : e);
        } else {
            StorePair(top, e, e);
            StorePair(bottom, e, e);
        }
    }
#if defined(LV_LANES_VECTORS)
    // The same rule on 16 pixels, writing the blocks whose lane of `draw` is set
    // (every block when `all`).
    static LV_LANES_INLINE void DrawLanes(const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x,
                                          int32_t y, const Target &t, const Lanes &draw, bool all, const Lanes &b,
                                          const Lanes &f, const Lanes &h)
    {
        const Lanes d = LoadLanes(row + x - 1), e = LoadLanes(row + x);
        const Lanes open = ~Eq(b, h) & ~Eq(d, f);
        const Lanes db = Eq(d, b), bf = Eq(b, f), dh = Eq(d, h), hf = Eq(h, f);
        uint16_t *top = RowAt(t.dst, t.pitch, 2 * (ptrdiff_t)y) + 2 * (ptrdiff_t)x;
        uint16_t *bottom = RowAt(t.dst, t.pitch, 2 * (ptrdiff_t)y + 1) + 2 * (ptrdiff_t)x;
        if (all && !AnyLane(open & (db | bf | dh | hf))) {
            // No open block with two equal edge neighbours: all sixteen blocks are E whole.
            Lanes lo, hi;
            Interleave(e, e, lo, hi);
            StoreLanes(top, lo), StoreLanes(top + kLanes, hi);
            StoreLanes(bottom, lo), StoreLanes(bottom + kLanes, hi);
            return;
        }
        const Lanes tl = Select(open & db, d, e), tr = Select(open & bf, f, e);
        const Lanes bl = Select(open & dh, d, e), br = Select(open & hf, f, e);
        if (all) {
            StoreInterleaved(top, tl, tr);
            StoreInterleaved(bottom, bl, br);
        } else {
            StoreInterleavedWhere(top, tl, tr, draw);
            StoreInterleavedWhere(bottom, bl, br, draw);
        }
    }
#endif
};

// Scale3x with this scaler's middle-left rule.
struct Rule3x {
    static LV_LANES_INLINE void Draw(const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x,
                                     int32_t y, const Target &t)
    {
        const uint16_t a = above[x - 1], b = above[x], c = above[x + 1];
        const uint16_t d = row[x - 1], e = row[x], f = row[x + 1];
        const uint16_t g = below[x - 1], h = below[x], i = below[x + 1];
        uint16_t *r0 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y) + 3 * (ptrdiff_t)x;
        uint16_t *r1 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y + 1) + 3 * (ptrdiff_t)x;
        uint16_t *r2 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y + 2) + 3 * (ptrdiff_t)x;
        if (b == h || d == f) {
            r0[0] = r0[1] = r0[2] = e;
            r1[0] = r1[1] = r1[2] = e;
            r2[0] = r2[1] = r2[2] = e;
            return;
        }
        r0[0] = d == b ? d : e;
        r0[1] = (d == b && e != c) || (b == f && e != a) ? b : e;
        r0[2] = b == f ? f : e;
        // Middle-left tests D = B in both terms (where Scale3x has D = H in the
        // second); this is the rule the scaler is meant to have.
        r1[0] = d == b && (e != g || e != a) ? d : e;
        r1[1] = e;
        r1[2] = (b == f && e != i) || (h == f && e != c) ? f : e;
        r2[0] = d == h ? d : e;
        r2[1] = (d == h && e != i) || (h == f && e != g) ? h : e;
        r2[2] = h == f ? f : e;
    }
#if defined(LV_LANES_VECTORS)
    static LV_LANES_INLINE void DrawLanes(const uint16_t *above, const uint16_t *row, const uint16_t *below, int32_t x,
                                          int32_t y, const Target &t, const Lanes &draw, bool all, const Lanes &b,
                                          const Lanes &f, const Lanes &h)
    {
        const Lanes a = LoadLanes(above + x - 1), c = LoadLanes(above + x + 1);
        const Lanes d = LoadLanes(row + x - 1), e = LoadLanes(row + x);
        const Lanes g = LoadLanes(below + x - 1), i = LoadLanes(below + x + 1);
        const Lanes open = ~(Eq(b, h) | Eq(d, f));
        const Lanes db = Eq(d, b), bf = Eq(b, f), dh = Eq(d, h), hf = Eq(h, f);
        uint16_t *r0 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y) + 3 * (ptrdiff_t)x;
        uint16_t *r1 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y + 1) + 3 * (ptrdiff_t)x;
        uint16_t *r2 = RowAt(t.dst, t.pitch, 3 * (ptrdiff_t)y + 2) + 3 * (ptrdiff_t)x;
        if (all && !AnyLane(open & (db | bf | dh | hf))) {
            // Every rule but the centre's needs an open block with two equal edge
            // neighbours; without one anywhere, all sixteen blocks are E whole.
            Lanes v[3];
            Triple(e, v);
            // Written out one by one: as a loop the compiler would copy through the stack.
            StoreLanes(r0, v[0]), StoreLanes(r0 + kLanes, v[1]), StoreLanes(r0 + 2 * kLanes, v[2]);
            StoreLanes(r1, v[0]), StoreLanes(r1 + kLanes, v[1]), StoreLanes(r1 + 2 * kLanes, v[2]);
            StoreLanes(r2, v[0]), StoreLanes(r2 + kLanes, v[1]), StoreLanes(r2 + 2 * kLanes, v[2]);
            return;
        }
        const Lanes ea = Eq(e, a), ec = Eq(e, c), eg = Eq(e, g), ei = Eq(e, i);
        const Lanes r00 = Select(open & db, d, e);
        const Lanes r01 = Select(open & ((db & ~ec) | (bf & ~ea)), b, e);
        const Lanes r02 = Select(open & bf, f, e);
        const Lanes r10 = Select(open & db & (~eg | ~ea), d, e);
        const Lanes r12 = Select(open & ((bf & ~ei) | (hf & ~ec)), f, e);
        const Lanes r20 = Select(open & dh, d, e);
        const Lanes r21 = Select(open & ((dh & ~ei) | (hf & ~eg)), h, e);
        const Lanes r22 = Select(open & hf, f, e);
        if (all) {
            StoreInterleaved3(r0, r00, r01, r02);
            StoreInterleaved3(r1, r10, e, r12);
            StoreInterleaved3(r2, r20, r21, r22);
        } else {
            StoreInterleaved3Where(r0, r00, r01, r02, draw);
            StoreInterleaved3Where(r1, r10, e, r12, draw);
            StoreInterleaved3Where(r2, r20, r21, r22, draw);
        }
    }
#endif
};

// Walks the picture, redrawing the blocks whose tracked neighbours changed.
//
// Along a row, pixel x is redrawn when its right neighbour changed, or that of
// pixel x - 1 or x - 2 (the counter of 3), or its upper or lower neighbour. A pixel
// that is not redrawn has all three copies equal already, so a group's copies
// can be stored whole whenever any of its blocks is drawn; 16 pixels go at once.
template <class Rule>
LV_LANES_INLINE void SmoothChanged(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, const Target &t,
                                   int32_t width, int32_t height)
{
    if (width <= 0 || height <= 0) return;
    const size_t plane = (size_t)width * (size_t)height;
    uint16_t *copyRight = reinterpret_cast<uint16_t *>(delta);
    uint16_t *copyUp = copyRight + plane;
    uint16_t *copyDown = copyUp + plane;
    // After every call each pixel's three copies equal its neighbours in that
    // call's source (a pixel is skipped only when they do, and a drawn one takes
    // them), and zeroed copies are the neighbours of a zeroed picture. So the
    // copies of one source row r stand three times in the planes: as the upper
    // neighbours of row r + 1, the lower ones of row r - 1 and (moved by one) the
    // right ones of row r. One comparison per source row then tells whether it
    // changed; a row whose own pixels and both neighbour rows are unchanged has
    // nothing to redraw and is passed over with exactly the per-pixel result.
    // (The first pixels are compared before the call: a changing row usually
    // differs there already.)
    const auto same = [width](const uint16_t *a, const uint16_t *b) {
        return a[0] == b[0] && memcmp(a, b, (size_t)width * 2) == 0;
    };
    const auto unchangedRow = [&](int32_t r) {
        const uint16_t *s = RowAt(src, srcPitch, r);
        if (r + 1 < height) return same(s, copyUp + (size_t)(r + 1) * width);
        if (r >= 1) return same(s, copyDown + (size_t)(r - 1) * width);
        return same(s + 1, copyRight + (size_t)r * width); // r = 0, height 1
    };
    bool aboveSame = unchangedRow(-1), rowSame = unchangedRow(0);
    for (int32_t y = 0; y < height; y++) {
        const uint16_t *above = RowAt(src, srcPitch, y - 1);
        const uint16_t *row = RowAt(src, srcPitch, y);
        const uint16_t *below = RowAt(src, srcPitch, y + 1);
        const size_t base = (size_t)y * (size_t)width;
        const bool belowSame = unchangedRow(y + 1);
        const bool still = aboveSame && rowSame && belowSame && row[width] == copyRight[base + (size_t)width - 1];
        aboveSame = rowSame;
        rowSame = belowSame;
        if (still) continue;
        int redraw = 0;
        int32_t x = 0;
#if defined(LV_LANES_VECTORS)
        if (width >= kLanes) {
            // A row whose every right neighbour changed redraws every block (a
            // changing picture usually does): one comparison pass, then the
            // blocks drawn and the copies taken without the per-pixel tests.
            Lanes sameRight = {};
            int32_t k = 0;
            for (; k + kLanes <= width; k += kLanes)
                sameRight |= Eq(LoadLanes(row + k + 1), LoadLanes(copyRight + base + (size_t)k));
            bool everyRightChanged = !AnyLane(sameRight);
            for (; everyRightChanged && k < width; k++)
                everyRightChanged = row[k + 1] != copyRight[base + (size_t)k];
            if (everyRightChanged) {
                for (; x + kLanes <= width; x += kLanes) {
                    const size_t i = base + (size_t)x;
                    const Lanes f = LoadLanes(row + x + 1), b = LoadLanes(above + x), h = LoadLanes(below + x);
                    StoreLanes(copyRight + i, f);
                    StoreLanes(copyUp + i, b);
                    StoreLanes(copyDown + i, h);
                    Rule::DrawLanes(above, row, below, x, y, t, Lanes{}, true, b, f, h);
                }
                for (; x < width; x++) {
                    const size_t i = base + (size_t)x;
                    copyRight[i] = row[x + 1];
                    copyUp[i] = above[x];
                    copyDown[i] = below[x];
                    Rule::Draw(above, row, below, x, y, t);
                }
                continue;
            }
        }
        Lanes rightChangedBefore = {};
        for (; x + kLanes <= width; x += kLanes) {
            const size_t i = base + (size_t)x;
            const Lanes f = LoadLanes(row + x + 1), b = LoadLanes(above + x), h = LoadLanes(below + x);
            const Lanes rightChanged = ~Eq(f, LoadLanes(copyRight + i));
            const Lanes draw = rightChanged | ShiftInOne(rightChangedBefore, rightChanged) |
                               ShiftInTwo(rightChangedBefore, rightChanged) | ~Eq(b, LoadLanes(copyUp + i)) |
                               ~Eq(h, LoadLanes(copyDown + i));
            rightChangedBefore = rightChanged;
            if (!AnyLane(draw)) continue; // the copies are all equal already
            StoreLanes(copyRight + i, f);
            StoreLanes(copyUp + i, b);
            StoreLanes(copyDown + i, h);
            Rule::DrawLanes(above, row, below, x, y, t, draw, AllLanes(draw), b, f, h);
        }
        // The counter as the single-pixel walk would have it here.
        if (x > 0) redraw = rightChangedBefore[kLanes - 1] ? 2 : rightChangedBefore[kLanes - 2] ? 1 : 0;
#endif
        for (; x < width; x++) {
            const size_t i = base + (size_t)x;
            const uint16_t f = row[x + 1], b = above[x], h = below[x];
            if (f != copyRight[i]) redraw = 3;
            if (redraw <= 0 && b == copyUp[i] && h == copyDown[i]) continue;
            copyRight[i] = f;
            copyUp[i] = b;
            copyDown[i] = h;
            Rule::Draw(above, row, below, x, y, t);
            redraw--;
        }
    }
}

} // namespace

LV_LANES_CLONES void BlitSimpleSmoothing_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                            uint32_t dstPitch, int32_t width, int32_t height)
{
    SmoothChanged<Rule2x>(src, srcPitch, delta, Target{dst, dstPitch}, width, height);
}

LV_LANES_CLONES void BlitSimpleSmoothing_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                            uint32_t dstPitch, int32_t width, int32_t height)
{
    SmoothChanged<Rule3x>(src, srcPitch, delta, Target{dst, dstPitch}, width, height);
}
