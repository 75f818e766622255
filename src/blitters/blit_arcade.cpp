// "Arcade": each pixel drawn as lit dots on black (or on a dimmed copy of itself
// for the 25%, 50% and 75% members), staggered from row to row.
//
// The lit places follow a fixed 4 x 4 tile anchored on the output grid at every
// size: output pixel (X, Y) shows the source pixel of its block where the tile
// has a 1 and black or the dimmed pixel where it has a 0. At 3x and 5x the tile
// simply runs across block borders. "Arcade 75%" at 5x is drawn by the
// "Arcade 50%" 5x function (the table points both rows at it).
#include <cstring>

#include "blitters/blit_engine.h"
#include "blitters/ks_blitter_list.h"

using namespace lvblit;

namespace
{

// Lit columns (bit X mod 4) for each output row Y mod 4.
constexpr unsigned kTileRows[4] = {0x1, 0x5, 0x4, 0x5};

// 2x: pixel pairs, width / 4 steps of two; 3x: pixel pairs (odd last pixel
// undrawn); 4x and 5x: single pixels.
template <int N> struct ArcadeWalk {
    static constexpr TrackKind kTrack = kTrackUnits;
    static constexpr int kUnit = N == 2 || N == 3 ? 2 : 1;
    static constexpr int kLead = kUnit * 2;
    static int Covered(int width) { return N == 2 ? width / 4 * 4 : N == 3 ? width / 2 * 2 : width; }
};

template <int N, int D> struct ArcadeKind : ArcadeWalk<N> {
    static constexpr int kSize = N;
    uint16_t *lit, *dark, *rows;
    size_t stride;
    int count = 0;
    unsigned built = 0; // tile rows already built for this source row
    ArcadeKind(Scratch &sc, int) : lit(sc.Line(0)), dark(sc.Line(1)), rows(sc.Line(2))
    {
        stride = sc.stride;
    }
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int, int covered)
    {
        count = covered * N;
        built = 0;
        Replicate<N>(s, lit, covered);
        if constexpr (D != kDimBlack) {
            DimLine<D>(lit, dark, count);
        } else {
            memset(dark, 0, (size_t)count * 2);
        }
    }
    // Only the tile rows that the block's output rows use are built.
    const uint16_t *Line(int y, int r)
    {
        const int t = (N * y + r) & 3;
        uint16_t *row = rows + (size_t)t * stride;
        if (!(built & (1u << t))) {
            SelectByColumn(lit, dark, kTileRows[t], row, count);
            built |= 1u << t;
        }
        return row;
    }
#if defined(LV_LANES_VECTORS)
    // Output rows R to N - 1 of a block row in tile phase Phase (N * y mod 4):
    // sixteen output pixels start on a tile column 0, so each row's lit places
    // are a fixed blend.
    template <int Phase, int R = 0>
    LV_ROW_INLINE static void StoreTileRows(uint16_t *const *out, int at, const lv_lanes::Lanes &p,
                                            const lv_lanes::Lanes &d)
    {
        if constexpr (R < N) {
            lv_lanes::StoreLanes(out[R] + at, lv_lanes::SelectColumns<kTileRows[(Phase + R) & 3]>(p, d));
            StoreTileRows<Phase, R + 1>(out, at, p, d);
        }
    }
    template <int Phase> LV_ROW_INLINE void BuildPhase(const uint16_t *s, int covered, uint16_t *const *out)
    {
        int x = 0, X = 0; // source and output pixels done
        if constexpr (N <= 4) {
            // The enlarged pixels made in registers, sixteen source pixels at a time.
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                lv_lanes::Lanes big[N];
                Enlarge<N>(lv_lanes::LoadLanes(s + x), big);
                for (int k = 0; k < N; k++)
                    StoreTileRows<Phase>(out, N * x + lv_lanes::kLanes * k, big[k], Dim<D>(big[k]));
            }
            X = N * x;
        }
        // The rest (all of the row at 5x) enlarged in the scratch line first.
        Replicate<N>(s + x, lit + X, covered - x);
        for (; X + lv_lanes::kLanes <= count; X += lv_lanes::kLanes) {
            const lv_lanes::Lanes p = lv_lanes::LoadLanes(lit + X);
            StoreTileRows<Phase>(out, X, p, Dim<D>(p));
        }
        for (; X < count; X++)
            for (int r = 0; r < N; r++)
                out[r][X] = (kTileRows[(Phase + r) & 3] >> (X & 3)) & 1 ? lit[X] : Dim<D>(lit[X]);
    }
#endif
    // A whole block row, each output row selected straight into the destination.
    LV_ROW_INLINE void BuildInto(const uint16_t *s, const uint16_t *, int y, int covered, uint16_t *const *out)
    {
        count = covered * N;
#if defined(LV_LANES_VECTORS)
        switch ((N * y) & 3) {
        case 0: BuildPhase<0>(s, covered, out); break;
        case 1: BuildPhase<1>(s, covered, out); break;
        case 2: BuildPhase<2>(s, covered, out); break;
        default: BuildPhase<3>(s, covered, out); break;
        }
#else
        Replicate<N>(s, lit, covered);
        for (int X = 0; X < count; X++)
            for (int r = 0; r < N; r++)
                out[r][X] = (kTileRows[(N * y + r) & 3] >> (X & 3)) & 1 ? lit[X] : Dim<D>(lit[X]);
#endif
    }
};

} // namespace

#define LV_ARCADE(Suffix, N, D) LV_TRACKED_BLITTER(BlitArcade##Suffix##_##N##x, ArcadeKind<N, D>)

LV_ARCADE(, 2, kDimBlack)
LV_ARCADE(, 3, kDimBlack)
LV_ARCADE(, 4, kDimBlack)
LV_ARCADE(, 5, kDimBlack)
LV_ARCADE(25, 2, kDimQuarter)
LV_ARCADE(25, 3, kDimQuarter)
LV_ARCADE(25, 4, kDimQuarter)
LV_ARCADE(25, 5, kDimQuarter)
LV_ARCADE(50, 2, kDimHalf)
LV_ARCADE(50, 3, kDimHalf)
LV_ARCADE(50, 4, kDimHalf)
LV_ARCADE(50, 5, kDimHalf)
LV_ARCADE(75, 2, kDimThreeQuarters)
LV_ARCADE(75, 3, kDimThreeQuarters)
LV_ARCADE(75, 4, kDimThreeQuarters)
