// "Interpolated": each pixel blended with its right neighbour along the row, with
// the scanlines of "Horizontal": the dark output rows are left black (never
// written) or, for the 25%, 50% and 75% members, hold the dimmed blended line.
// Which output rows are lit follows the parity of the output row in the image.
// A row's last pixel has no right neighbour and blends with itself.
#include <cstring>

#include "blitters/blit_engine.h"
#include "blitters/ks_blitter_list.h"

using namespace lvblit;

namespace
{

// 2x: pixel pairs (width / 4 steps of two), a pair redrawn when it or the next
// pair changed. 4x: single pixels, redrawn when they or their right neighbour
// changed. 3x and 5x: groups of four (width % 4 tail undrawn), each pixel's part
// redrawn when it or the pixel after it changed.
template <int N> struct InterpolatedWalk;
template <> struct InterpolatedWalk<2> {
    static constexpr TrackKind kTrack = kTrackUnitsAndNext;
    static constexpr int kUnit = 2, kLead = 4;
    static int Covered(int width) { return width / 4 * 4; }
};
template <> struct InterpolatedWalk<4> {
    static constexpr TrackKind kTrack = kTrackUnitsAndNext;
    static constexpr int kUnit = 1, kLead = 2;
    static int Covered(int width) { return width; }
};
template <int N> struct InterpolatedWalk {
    static constexpr TrackKind kTrack = kTrackUnitsAndNext;
    static constexpr int kUnit = 1, kLead = 0;
    static int Covered(int width) { return width / 4 * 4; }
};

template <int N, int D> struct InterpolatedKind : InterpolatedWalk<N> {
    static constexpr int kSize = N;
    uint16_t *lit, *dark, *row, *blend;
    int width;
    InterpolatedKind(Scratch &sc, int w)
        : lit(sc.Line(0)), dark(sc.Line(1)), row(sc.Line(2)), blend(sc.Line(3)), width(w)
    {
    }
    LV_ROW_INLINE void Build(const uint16_t *src, const uint16_t *, int, int covered)
    {
        ExtendRow(src, width, row);
        const uint16_t *s = row;
#if defined(LV_LANES_VECTORS)
        if constexpr (N == 2) {
            // Sixteen pairs (a, avg(a, b)) at a time, and their dimmed copies,
            // interleaved in registers.
            int x = 0;
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const lv_lanes::Lanes a = lv_lanes::LoadLanes(s + x);
                const lv_lanes::Lanes m = Average(a, lv_lanes::LoadLanes(s + x + 1));
                lv_lanes::StoreInterleaved(lit + 2 * x, a, m);
                if constexpr (D != kDimBlack) lv_lanes::StoreInterleaved(dark + 2 * x, Dim<D>(a), Dim<D>(m));
            }
            for (int k = x; k < covered; k++)
                blend[k] = Average(s[k], s[k + 1]);
            ReplicateWithLast<2>(s + x, blend + x, lit + 2 * x, covered - x);
            if constexpr (D != kDimBlack) DimLine<D>(lit + 2 * x, dark + 2 * x, (covered - x) * 2);
            return;
        }
#endif
        for (int x = 0; x < covered; x++)
            blend[x] = Average(s[x], s[x + 1]);
        if constexpr (N == 4) {
            // a, avg(a, m), m, avg(m, b) with m = avg(a, b).
            int x = 0;
#if defined(LV_LANES_VECTORS)
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const lv_lanes::Lanes a = lv_lanes::LoadLanes(s + x), b = lv_lanes::LoadLanes(s + x + 1);
                const lv_lanes::Lanes m = lv_lanes::LoadLanes(blend + x);
                lv_lanes::StoreInterleaved4(lit + 4 * x, a, Average(a, m), m, Average(m, b));
            }
#endif
            for (; x < covered; x++) {
                const uint64_t a = s[x], m = blend[x];
                const uint64_t am = Average(s[x], blend[x]), mb = Average(blend[x], s[x + 1]);
                const uint64_t w = a | am << 16 | m << 32 | mb << 48;
                memcpy(lit + 4 * x, &w, 8);
            }
        } else {
            // a repeated N - 1 times, then avg(a, b): at 2x a pair (a, b) followed
            // by c gives a, avg(a, b), b, avg(b, c).
            ReplicateWithLast<N>(s, blend, lit, covered);
        }
        if constexpr (D != kDimBlack) DimLine<D>(lit, dark, covered * N);
    }
    const uint16_t *Line(int y, int r) const
    {
        if (((N * y + r) & 1) == 0) return lit;
        return D == kDimBlack ? nullptr : dark;
    }

    // A whole block row: the blended line made once in registers and stored into
    // every lit output row, dimmed into every dark one.
    LV_ROW_INLINE void BuildInto(const uint16_t *src, const uint16_t *below, int y, int covered,
                                 uint16_t *const *out)
    {
        const RowsByParity<N> rows(y, out);
        int x = 0;
#if defined(LV_LANES_VECTORS)
        if constexpr (N <= 4) {
            using lv_lanes::Lanes;
            const uint16_t *s = src;
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                // The right neighbours; the row's last pixel is its own (the load
                // past the row stays inside the frame slot, its last lane replaced).
                const Lanes a = lv_lanes::LoadLanes(s + x);
                Lanes b = lv_lanes::LoadLanes(s + x + 1);
                if (x + lv_lanes::kLanes == width) b[lv_lanes::kLanes - 1] = s[width - 1];
                const Lanes m = Average(a, b);
                Lanes v[N];
                if constexpr (N == 2)
                    lv_lanes::Interleave(a, m, v[0], v[1]);
                else if constexpr (N == 3)
                    lv_lanes::TripleWithLast(a, m, v);
                else
                    lv_lanes::Interleave4(a, Average(a, m), m, Average(m, b), v);
                StoreLitAndDark<N, D>(rows, N * x, v);
            }
        }
#endif
        if (x >= covered) return;
        // The rest: the whole row built (the blends look one pixel on), at 5x
        // straight into the first lit and dark rows, otherwise in scratch; then
        // the part from x copied to the other rows.
        uint16_t *const savedLit = lit, *const savedDark = dark;
        if (x == 0) {
            lit = rows.lit[0];
            if (D != kDimBlack && rows.darks > 0) dark = rows.dark[0];
        }
        Build(src, below, y, covered);
        const size_t bytes = (size_t)(covered - x) * N * 2;
        for (int k = 0; k < rows.lits; k++)
            if (rows.lit[k] != lit) memcpy(rows.lit[k] + N * x, lit + N * x, bytes);
        if constexpr (D != kDimBlack)
            for (int k = 0; k < rows.darks; k++)
                if (rows.dark[k] != dark) memcpy(rows.dark[k] + N * x, dark + N * x, bytes);
        lit = savedLit, dark = savedDark;
    }
};

// Every pixel averaged with the pixel before it; the carried value starts at 0
// and runs on from row to row. Even source rows go to even output rows; the odd
// rows are skipped by "Interpolated" (their output stays black, the carry is not
// touched) and blended then dimmed by the other members. An odd height's last
// row is an even row and is drawn.
template <int D>
LV_VECTOR_CLONES void Interpolated1x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch,
                                     int32_t width, int32_t height)
{
    if (width <= 0) return;
    uint16_t prev = 0;
    for (int y = 0; y < height; y++) {
        const bool odd = y & 1;
        if (odd && D == kDimBlack) continue;
        const uint16_t *s = RowAt(src, srcPitch, y);
        uint16_t *d = RowAt(dst, dstPitch, y);
        if (odd)
            MeanWithLeft(s, d, width, prev, [](const auto &m) LV_ROW_LAMBDA { return Dim<D>(m); });
        else
            MeanWithLeft(s, d, width, prev, [](const auto &m) LV_ROW_LAMBDA { return m; });
        prev = s[width - 1];
    }
}

} // namespace

#define LV_INTERPOLATED_FAMILY(Suffix, D)                                                                              \
    void BlitInterpolated##Suffix##_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst,               \
                                       uint32_t dstPitch, int32_t width, int32_t height)                               \
    {                                                                                                                  \
        Interpolated1x<D>(src, srcPitch, dst, dstPitch, width, height);                                                \
    }                                                                                                                  \
    LV_TRACKED_BLITTER(BlitInterpolated##Suffix##_2x, InterpolatedKind<2, D>)                                          \
    LV_TRACKED_BLITTER(BlitInterpolated##Suffix##_3x, InterpolatedKind<3, D>)                                          \
    LV_TRACKED_BLITTER(BlitInterpolated##Suffix##_4x, InterpolatedKind<4, D>)                                          \
    LV_TRACKED_BLITTER(BlitInterpolated##Suffix##_5x, InterpolatedKind<5, D>)

LV_INTERPOLATED_FAMILY(, kDimBlack)
LV_INTERPOLATED_FAMILY(25, kDimQuarter)
LV_INTERPOLATED_FAMILY(50, kDimHalf)
LV_INTERPOLATED_FAMILY(75, kDimThreeQuarters)
