// "RGB Mode": each pixel drawn through a coloured sub-pixel mask.
//
// Every output pixel is its source pixel scaled per component by a mask chosen
// by the output column modulo 4: 89/89/89, then red whole with green 74 and blue
// 111, then red 74, green 111, blue whole, then red 111, green whole, blue 74
// (out of 128): a red-blue-green stripe. The first output row of a block is
// instead dimmed to 89 in all components for half of the pixels, staggered: for
// source pixels whose pair index (x / 2) has the parity of the source row. At 2x
// this is exactly the Dm/St pattern; 3x to 5x apply the same rule to larger blocks.
#include <cstring>

#include "blitters/blit_engine.h"
#include "blitters/ks_blitter_list.h"

using namespace lvblit;

namespace
{

constexpr unsigned kStripe[4][3] = {{89, 89, 89}, {128, 74, 111}, {74, 111, 128}, {111, 128, 74}};

#if defined(LV_LANES_VECTORS)
// Sixteen pixels scaled per component by factors out of 128 (one factor vector
// per component, lane by lane), as Scale does for one pixel.
LV_ROW_INLINE lv_lanes::Lanes ScaleLanes(const lv_lanes::Lanes &p, const lv_lanes::Lanes &kr,
                                         const lv_lanes::Lanes &kg, const lv_lanes::Lanes &kb)
{
    using lv_lanes::Lanes;
    const Lanes r = (p >> 10) & 31, g = (p >> 5) & 31, b = p & 31;
    return (Lanes)(((r * kr) >> 7) << 10) | (Lanes)(((g * kg) >> 7) << 5) | (Lanes)((b * kb) >> 7);
}
// The same with one mask of the stripe for every lane; a whole (128) component
// is kept without a multiply.
template <int M> LV_ROW_INLINE lv_lanes::Lanes ScaleByMask(const lv_lanes::Lanes &p)
{
    using lv_lanes::Lanes;
    const auto part = [&p](int shift, unsigned k) LV_ROW_LAMBDA {
        const Lanes c = (p >> shift) & 31;
        return k == 128 ? c : (Lanes)((c * (uint16_t)k) >> 7);
    };
    return (Lanes)(part(10, kStripe[M][0]) << 10) | (Lanes)(part(5, kStripe[M][1]) << 5) | part(0, kStripe[M][2]);
}
#endif

// 2x: groups of four pixels, each pair compared (width % 4 tail undrawn);
// 3x: pixel pairs (an odd last pixel undrawn); 4x and 5x: single pixels.
template <int N> struct RGBWalk {
    static constexpr TrackKind kTrack = kTrackUnits;
    static constexpr int kUnit = N == 2 || N == 3 ? 2 : 1;
    static constexpr int kLead = kUnit * 2;
    static int Covered(int width) { return N == 2 ? width / 4 * 4 : N == 3 ? width / 2 * 2 : width; }
};

template <int N> struct RGBModeKind : RGBWalk<N> {
    static constexpr int kSize = N;
    uint16_t *first, *striped, *expanded, *dimmed, *scaled;
    // Further rows that take the stripe as it is made (a whole block row drawn
    // straight into the destination), besides `striped`.
    uint16_t *moreStriped[N > 2 ? N - 2 : 1] = {};
    int moreCount = 0;
#if defined(LV_LANES_VECTORS)
    // 3x and 5x, sixteen output pixels at a time: the stripe's factors (a vector
    // starts on stripe column 0), and the dimmed places of the first row by row
    // parity, which repeat every N vectors (N vectors hold 8 pixel pairs).
    lv_lanes::Lanes stripeR, stripeG, stripeB, dimPlaces[2][N];
#endif
    RGBModeKind(Scratch &sc, int)
        : first(sc.Line(0)), striped(sc.Line(1)), expanded(sc.Line(2)), dimmed(sc.Line(3)), scaled(sc.Line(4))
    {
#if defined(LV_LANES_VECTORS)
        for (int k = 0; k < lv_lanes::kLanes; k++) {
            stripeR[k] = (uint16_t)kStripe[k & 3][0], stripeG[k] = (uint16_t)kStripe[k & 3][1];
            stripeB[k] = (uint16_t)kStripe[k & 3][2];
            for (int v = 0; v < N; v++) {
                const int pairParity = ((v * lv_lanes::kLanes + k) / N >> 1) & 1;
                dimPlaces[0][v][k] = pairParity == 0 ? 0xFFFF : 0;
                dimPlaces[1][v][k] = pairParity == 1 ? 0xFFFF : 0;
            }
        }
#endif
    }
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int y, int covered)
    {
        int x = 0;
#if defined(LV_LANES_VECTORS)
        if constexpr (N == 2 || N == 4) x = BuildLanes(s, y, covered);
#endif
        if (x >= covered) return;
        BuildGeneric(s + x, y, covered - x, x);
    }

#if defined(LV_LANES_VECTORS)
    // Sixteen source pixels at a time: the four masks applied at source size, then
    // the output words assembled in registers. Returns the pixels done.
    LV_ROW_INLINE int BuildLanes(const uint16_t *s, int y, int covered)
    {
        using lv_lanes::Lanes;
        typedef uint32_t Words __attribute__((vector_size(32)));
        typedef uint64_t Quads __attribute__((vector_size(32)));
        // The pairs (x / 2) dimmed on this row: those whose parity is the row's.
        const Quads dimPairs = (y & 1) ? Quads{0, ~0ull, 0, ~0ull} : Quads{~0ull, 0, ~0ull, 0};
        // Per-lane factors for 2x: even lanes (pixel a of a pair) then odd ones (b).
        struct Factors {
            Lanes r, g, b;
        };
        Factors kEvenOdd[2];
        for (int k = 0; k < lv_lanes::kLanes; k++) {
            const unsigned *f0 = kStripe[k & 1 ? 2 : 0], *f1 = kStripe[k & 1 ? 3 : 1];
            kEvenOdd[0].r[k] = (uint16_t)f0[0], kEvenOdd[0].g[k] = (uint16_t)f0[1], kEvenOdd[0].b[k] = (uint16_t)f0[2];
            kEvenOdd[1].r[k] = (uint16_t)f1[0], kEvenOdd[1].g[k] = (uint16_t)f1[1], kEvenOdd[1].b[k] = (uint16_t)f1[2];
        }
        int x = 0;
        for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
            const Lanes p = lv_lanes::LoadLanes(s + x);
            const Lanes m0 = ScaleByMask<0>(p);
            if constexpr (N == 2) {
                // A pair (a, b) gives m0(a) m1(a) m2(b) m3(b): the stripe is the
                // interleave of (m0 on even lanes, m2 on odd) with (m1 on even, m3
                // on odd), each one multiply per component with per-lane factors.
                const Lanes first4 = ScaleLanes(p, kEvenOdd[0].r, kEvenOdd[0].g, kEvenOdd[0].b);
                const Lanes second4 = ScaleLanes(p, kEvenOdd[1].r, kEvenOdd[1].g, kEvenOdd[1].b);
                Lanes stripe[2], dim[2];
                lv_lanes::Interleave(first4, second4, stripe[0], stripe[1]);
                lv_lanes::Interleave(m0, m0, dim[0], dim[1]);
                for (int h = 0; h < 2; h++) {
                    const Words st = (Words)stripe[h];
                    const Quads fi = ((Quads)dim[h] & dimPairs) | ((Quads)st & ~dimPairs);
                    lv_lanes::StoreLanes(striped + 2 * x + 16 * h, (Lanes)st);
                    lv_lanes::StoreLanes(first + 2 * x + 16 * h, (Lanes)fi);
                }
            } else {
                // Each pixel gives m0 m1 m2 m3; a dimmed pixel m0 four times.
                const Lanes m1 = ScaleByMask<1>(p), m2 = ScaleByMask<2>(p), m3 = ScaleByMask<3>(p);
                Lanes st[4], dm[4];
                lv_lanes::Interleave4(m0, m1, m2, m3, st);
                lv_lanes::Interleave4(m0, m0, m0, m0, dm);
                // Pixel x's word is dimmed when (x / 2) has the row's parity: two
                // pixels dimmed, two not, within each vector of four words.
                const Quads dimPixels = (y & 1) ? Quads{0, 0, ~0ull, ~0ull} : Quads{~0ull, ~0ull, 0, 0};
                // Written out one by one: as a loop the compiler would copy through the stack.
                const auto put = [&](int k) LV_ROW_LAMBDA {
                    lv_lanes::StoreLanes(striped + 4 * x + 16 * k, st[k]);
                    for (int m = 0; m < moreCount; m++)
                        lv_lanes::StoreLanes(moreStriped[m] + 4 * x + 16 * k, st[k]);
                    lv_lanes::StoreLanes(first + 4 * x + 16 * k,
                                         (Lanes)(((Quads)dm[k] & dimPixels) | ((Quads)st[k] & ~dimPixels)));
                };
                put(0);
                put(1);
                put(2);
                put(3);
            }
        }
        return x;
    }
#endif

    LV_ROW_INLINE void BuildGeneric(const uint16_t *s, int y, int covered, int x0)
    {
        // x0: the row position of s[0], a multiple of 16 (so of 4: the stripe's
        // columns and the pairs' parity are those of the whole row).
        uint16_t *const first = this->first + N * x0, *const striped = this->striped + N * x0;
        const int count = covered * N;
        // The stripe: each output pixel through its column's mask. The first row:
        // the stripe, with the dimmed pairs (x / 2 of the row's parity) at 89 in
        // all components (the mask of column 0).
        int x = 0, X = 0; // source and output pixels done
#if defined(LV_LANES_VECTORS)
        using lv_lanes::Lanes;
        // Local copies: the stores below could otherwise alias the members.
        const Lanes fr = stripeR, fg = stripeG, fb = stripeB;
        Lanes places[N];
        for (int v = 0; v < N; v++)
            places[v] = dimPlaces[y & 1][v];
        const auto stripe = [&](const Lanes &e) LV_ROW_LAMBDA { return ScaleLanes(e, fr, fg, fb); };
        const auto put = [&](int at, const Lanes &st, const Lanes &place, const Lanes &dim) LV_ROW_LAMBDA {
            lv_lanes::StoreLanes(striped + at, st);
            for (int m = 0; m < moreCount; m++)
                lv_lanes::StoreLanes(moreStriped[m] + N * x0 + at, st);
            lv_lanes::StoreLanes(first + at, lv_lanes::Select(place, dim, st));
        };
        if constexpr (N == 3) {
            // Sixteen source pixels at a time: the pixels and their dimmed copies
            // tripled in registers (three vectors, one of each place pattern).
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const Lanes p = lv_lanes::LoadLanes(s + x);
                Lanes e[3], m[3];
                lv_lanes::Triple(p, e);
                lv_lanes::Triple(ScaleByMask<0>(p), m);
                put(3 * x, stripe(e[0]), places[0], m[0]);
                put(3 * x + lv_lanes::kLanes, stripe(e[1]), places[1], m[1]);
                put(3 * x + 2 * lv_lanes::kLanes, stripe(e[2]), places[2], m[2]);
            }
            X = 3 * x;
        }
#endif
        // The rest enlarged in the scratch lines first.
        Replicate<N>(s + x, expanded + X, covered - x);
        for (int k = x; k < covered; k++)
            scaled[k] = Scale(s[k], kStripe[0][0], kStripe[0][1], kStripe[0][2]);
        Replicate<N>(scaled + x, dimmed + X, covered - x);
#if defined(LV_LANES_VECTORS)
        if constexpr (N == 5)
            for (int v = 0; X + lv_lanes::kLanes <= count; X += lv_lanes::kLanes, v = v + 1 == N ? 0 : v + 1)
                put(X, stripe(lv_lanes::LoadLanes(expanded + X)), places[v], lv_lanes::LoadLanes(dimmed + X));
#endif
        const int tail = X;
        for (; X < count; X++) {
            striped[X] = Scale(expanded[X], kStripe[X & 3][0], kStripe[X & 3][1], kStripe[X & 3][2]);
            first[X] = ((X / N >> 1) & 1) == (y & 1) ? dimmed[X] : striped[X];
        }
        for (int m = 0; m < moreCount; m++)
            memcpy(moreStriped[m] + N * x0 + tail, striped + tail, (size_t)(count - tail) * 2);
    }
    const uint16_t *Line(int, int r) const { return r == 0 ? first : striped; }
    // A whole block row: the first line built straight into the first output row,
    // the stripe into all the others.
    LV_ROW_INLINE void BuildInto(const uint16_t *s, const uint16_t *below, int y, int covered, uint16_t *const *out)
    {
        uint16_t *const savedFirst = first, *const savedStriped = striped;
        first = out[0], striped = out[1];
        if constexpr (N > 2) {
            for (int r = 2; r < N; r++)
                moreStriped[r - 2] = out[r];
            moreCount = N - 2;
        }
        Build(s, below, y, covered);
        moreCount = 0;
        first = savedFirst, striped = savedStriped;
    }
};

} // namespace

LV_TRACKED_BLITTER(BlitRGBMode_2x, RGBModeKind<2>)
LV_TRACKED_BLITTER(BlitRGBMode_3x, RGBModeKind<3>)
LV_TRACKED_BLITTER(BlitRGBMode_4x, RGBModeKind<4>)
LV_TRACKED_BLITTER(BlitRGBMode_5x, RGBModeKind<5>)
