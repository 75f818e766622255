// "Blur": each pixel blended with its right neighbour and the pixels below.
//
// From 2x up a block is the pixel a, with its last column blended toward the
// right neighbour b (average), its last row toward the pixel below c (average)
// and its last corner the four-pixel mean of a, b, c, d. At 2x that is exactly
// the four-neighbour pattern (a average(a,b) / average(a,c) blend4); 3x and 4x
// widen the plain part to 2 x 2 and 3 x 3 pixels and keep the one-pixel seam.
// (Where a equals its neighbour the blends give the pixel itself, so the
// "blend only when the pixels differ" rule needs no test.) The picture's edge is
// repeated: the last pixel of a row is its own right neighbour and the last row
// its own row below, so a flat picture stays flat up to its border.
#include "blitters/blit_engine.h"
#include "blitters/ks_blitter_list.h"

using namespace lvblit;

namespace
{

template <int N> struct BlurKind {
    static constexpr int kSize = N;
    static constexpr TrackKind kTrack = kTrackBlock;
    static constexpr int kUnit = 1, kLead = 2;
    static int Covered(int width) { return width; }

    uint16_t *top, *bottom, *row, *rowBelow, *rightward, *downward, *corner;
    int width;
    BlurKind(Scratch &sc, int w)
        : top(sc.Line(0)), bottom(sc.Line(1)), row(sc.Line(2)), rowBelow(sc.Line(3)), rightward(sc.Line(4)),
          downward(sc.Line(5)), corner(sc.Line(6)), width(w)
    {
    }
    LV_ROW_INLINE void Build(const uint16_t *src, const uint16_t *srcBelow, int, int covered)
    {
        ExtendRow(src, width, row);
        ExtendRow(srcBelow, width, rowBelow);
        int x = 0;
        uint16_t *const tops[1] = {top};
        Blocks(row, rowBelow, covered, tops, 1, bottom, x);
        Tail(x, covered);
    }
    const uint16_t *Line(int, int r) const { return r < N - 1 ? top : bottom; }

    // A whole block row straight into the destination rows.
    LV_ROW_INLINE void BuildInto(const uint16_t *src, const uint16_t *srcBelow, int, int covered,
                                 uint16_t *const *out)
    {
        int x = 0;
        Blocks(src, srcBelow, covered, out, N - 1, out[N - 1], x);
        if (x >= covered) return;
        ExtendRow(src, width, row);
        ExtendRow(srcBelow, width, rowBelow);
        const int done = x;
        Tail(done, covered);
        for (int r = 0; r < N; r++)
            memcpy(out[r] + N * done, (r < N - 1 ? top : bottom) + N * done, (size_t)(covered - done) * N * 2);
    }

    // Sixteen blocks at a time, their parts interleaved in registers: the top
    // line into each of the `topCount` rows `tops`, the bottom line into
    // `bottomRow`. Advances x past the pixels done.
    LV_ROW_INLINE void Blocks(const uint16_t *s, const uint16_t *below, int covered, uint16_t *const *tops,
                              int topCount, uint16_t *bottomRow, int &x)
    {
#if defined(LV_LANES_VECTORS)
        if constexpr (N <= 4) {
            using lv_lanes::Lanes;
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const Lanes a = lv_lanes::LoadLanes(s + x), c = lv_lanes::LoadLanes(below + x);
                Lanes b = lv_lanes::LoadLanes(s + x + 1), d = lv_lanes::LoadLanes(below + x + 1);
                if (x + lv_lanes::kLanes == width) {
                    // The last pixel is its own right neighbour (the loads past the
                    // row stay inside the frame slot; their last lanes are replaced).
                    b[lv_lanes::kLanes - 1] = s[width - 1];
                    d[lv_lanes::kLanes - 1] = below[width - 1];
                }
                // The corner's four-pixel mean from the means of the two pairs.
                const Lanes ab = a ^ b, cd = c ^ d;
                const Lanes right = AverageOf(a, b, ab), down = Average(a, c);
                const Lanes corner = MeanOfPairs(right, ab & LOW_BIT_MASK, AverageOf(c, d, cd), cd & LOW_BIT_MASK);
                Lanes up[N], low[N];
                if constexpr (N == 2) {
                    lv_lanes::Interleave(a, right, up[0], up[1]);
                    lv_lanes::Interleave(down, corner, low[0], low[1]);
                } else if constexpr (N == 3) {
                    lv_lanes::TripleWithLast(a, right, up);
                    lv_lanes::TripleWithLast(down, corner, low);
                } else {
                    lv_lanes::Interleave4(a, a, a, right, up);
                    lv_lanes::Interleave4(down, down, down, corner, low);
                }
                StoreToRows<N>(tops, N * x, up, topCount);
                StoreToRows<N>(&bottomRow, N * x, low, 1);
            }
        }
#else
        (void)s, (void)below, (void)covered, (void)tops, (void)topCount, (void)bottomRow, (void)x;
#endif
    }

    // The pixels from x on, one by one, into the scratch lines.
    LV_ROW_INLINE void Tail(int x, int covered)
    {
        if (x >= covered) return;
        const uint16_t *s = row, *below = rowBelow;
        const int done = x;
        for (; x < covered; x++) {
            rightward[x] = Average(s[x], s[x + 1]);
            downward[x] = Average(s[x], below[x]);
            corner[x] = Blend4(below[x], s[x], s[x + 1], below[x + 1]);
        }
        ReplicateWithLast<N>(s + done, rightward + done, top + N * done, covered - done);
        ReplicateWithLast<N>(downward + done, corner + done, bottom + N * done, covered - done);
    }
};

} // namespace

// Each pixel averaged with the one before it; the carried value starts at 0 for
// the whole image and runs on across rows, so a row's last pixel blends into the
// next row's first. Every pixel of every row is written.
namespace
{
LV_VECTOR_CLONES void Blur1x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch, int32_t width,
                             int32_t height)
{
    uint16_t prev = 0;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = RowAt(src, srcPitch, y);
        uint16_t *d = RowAt(dst, dstPitch, y);
        if (width <= 0) continue;
        MeanWithLeft(s, d, width, prev, [](const auto &m) LV_ROW_LAMBDA { return m; });
        prev = s[width - 1];
    }
}
} // namespace

void BlitBlur_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch, int32_t width,
                 int32_t height)
{
    Blur1x(src, srcPitch, dst, dstPitch, width, height);
}

LV_TRACKED_BLITTER(BlitBlur_2x, BlurKind<2>)
LV_TRACKED_BLITTER(BlitBlur_3x, BlurKind<3>)
LV_TRACKED_BLITTER(BlitBlur_4x, BlurKind<4>)
