// Scanline blitters: "Horizontal" darkens every other output row, "Vertical"
// every other output column (black, or kept at 25%, 50% or 75%), and
// "Interleaved" redraws the output rows of one parity for two frames, then those
// of the other parity, like an interlaced display.
//
// The parity is that of the output row (or column) in the whole image. Black
// dark rows of "Horizontal" are never written: they keep the zero the buffer got
// when the blitter was selected. "Vertical" writes its dark columns, 0 included.
#include <cstring>

#include "blitters/blit_engine.h"
#include "blitters/blit_lanes.h"
#include "blitters/ks_blitter_list.h"

using namespace lvblit;

namespace
{

// How each size walks a row and what it compares with the delta copy:
// 2x pixel pairs (width / 4 steps of two), 4x single pixels, 3x and 5x groups of
// four tested as a double then pixel by pixel; 2x, 3x and 5x leave the last
// width % 4 pixels undrawn.
template <int N> struct ScanlineWalk;
template <> struct ScanlineWalk<2> {
    static constexpr TrackKind kTrack = kTrackUnits;
    static constexpr int kUnit = 2, kLead = 4;
    static int Covered(int width) { return width / 4 * 4; }
};
template <> struct ScanlineWalk<4> {
    static constexpr TrackKind kTrack = kTrackUnits;
    static constexpr int kUnit = 1, kLead = 2;
    static int Covered(int width) { return width; }
};
template <int N> struct ScanlineWalk {
    static_assert(N == 3 || N == 5, "groups of four");
    static constexpr TrackKind kTrack = kTrackGroupAsDouble;
    static constexpr int kUnit = 1, kLead = 0;
    static int Covered(int width) { return width / 4 * 4; }
};

template <int N, int D> struct HorizontalKind : ScanlineWalk<N> {
    static constexpr int kSize = N;
    uint16_t *lit, *dark;
    HorizontalKind(Scratch &sc, int) : lit(sc.Line(0)), dark(sc.Line(1)) {}
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int, int covered)
    {
        Replicate<N>(s, lit, covered);
        if constexpr (D != kDimBlack) DimLine<D>(lit, dark, covered * N); // dim works per pixel
    }
    const uint16_t *Line(int y, int r) const
    {
        if (((N * y + r) & 1) == 0) return lit;
        return D == kDimBlack ? nullptr : dark;
    }

    // A whole block row: the enlarged pixels made once in registers and stored
    // into every lit output row, dimmed into every dark one.
    LV_ROW_INLINE void BuildInto(const uint16_t *s, const uint16_t *below, int y, int covered, uint16_t *const *out)
    {
        const RowsByParity<N> rows(y, out);
        int x = 0;
#if defined(LV_LANES_VECTORS)
        if constexpr (N <= 4) {
            using lv_lanes::Lanes;
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                Lanes v[N];
                Enlarge<N>(lv_lanes::LoadLanes(s + x), v);
                StoreLitAndDark<N, D>(rows, N * x, v);
            }
        }
#endif
        if (x >= covered) return;
        // The rest (all of the row at 5x) built in the first lit and dark rows
        // and copied to the others.
        uint16_t *const savedLit = lit, *const savedDark = dark;
        lit = rows.lit[0] + N * x;
        if (D != kDimBlack && rows.darks > 0) dark = rows.dark[0] + N * x;
        Build(s + x, below, y, covered - x);
        const size_t bytes = (size_t)(covered - x) * N * 2;
        for (int k = 1; k < rows.lits; k++)
            memcpy(rows.lit[k] + N * x, lit, bytes);
        if constexpr (D != kDimBlack)
            for (int k = 1; k < rows.darks; k++)
                memcpy(rows.dark[k] + N * x, dark, bytes);
        lit = savedLit, dark = savedDark;
    }
};

template <int N, int D> struct VerticalKind : ScanlineWalk<N> {
    static constexpr int kSize = N;
    uint16_t *line, *dark;
    VerticalKind(Scratch &sc, int) : line(sc.Line(0)), dark(sc.Line(1)) {}
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int, int covered)
    {
        // Even output columns lit, odd ones dimmed (0 for black, still written).
        if constexpr (N == 2) {
            int x = 0;
#if defined(LV_LANES_VECTORS)
            // Sixteen pixels and their dimmed copies, interleaved.
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const lv_lanes::Lanes p = lv_lanes::LoadLanes(s + x);
                lv_lanes::StoreInterleaved(line + 2 * x, p, Dim<D>(p));
            }
#endif
            for (; x < covered; x++) {
                const uint32_t w = (uint32_t)s[x] | (uint32_t)Dim<D>(s[x]) << 16;
                memcpy(line + 2 * x, &w, 4);
            }
            return;
        }
        DimLine<D>(s, dark, covered);
        if constexpr (N == 4) {
            int x = 0;
#if defined(LV_LANES_VECTORS)
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const lv_lanes::Lanes p = lv_lanes::LoadLanes(s + x), q = lv_lanes::LoadLanes(dark + x);
                lv_lanes::StoreInterleaved4(line + 4 * x, p, q, p, q);
            }
#endif
            for (; x < covered; x++) {
                const uint64_t pair = (uint64_t)s[x] | (uint64_t)dark[x] << 16;
                const uint64_t w = pair | pair << 32;
                memcpy(line + 4 * x, &w, 8);
            }
        } else {
            // Odd sizes: the replicated line, then every odd column dimmed in place
            // (sixteen output pixels start on an even column).
            const int count = covered * N;
            int X = 0;
            Replicate<N>(s, line, covered);
#if defined(LV_LANES_VECTORS)
            lv_lanes::Lanes odd;
            for (int k = 0; k < lv_lanes::kLanes; k++)
                odd[k] = k & 1 ? 0xFFFF : 0;
            for (; X + lv_lanes::kLanes <= count; X += lv_lanes::kLanes) {
                const lv_lanes::Lanes p = lv_lanes::LoadLanes(line + X);
                lv_lanes::StoreLanes(line + X, lv_lanes::Select(odd, Dim<D>(p), p));
            }
#endif
            for (X |= 1; X < count; X += 2)
                line[X] = Dim<D>(line[X]);
        }
    }
    const uint16_t *Line(int, int) const { return line; }

    // A whole block row: every output row of the block is the same line, so the
    // vectors made for it are stored into each row at once.
    LV_ROW_INLINE void BuildInto(const uint16_t *s, const uint16_t *below, int y, int covered, uint16_t *const *out)
    {
        int x = 0;
#if defined(LV_LANES_VECTORS)
        if constexpr (N <= 4) {
            using lv_lanes::Lanes;
            Lanes odd;
            for (int k = 0; k < lv_lanes::kLanes; k++)
                odd[k] = k & 1 ? 0xFFFF : 0;
            for (; x + lv_lanes::kLanes <= covered; x += lv_lanes::kLanes) {
                const Lanes p = lv_lanes::LoadLanes(s + x), d = Dim<D>(p);
                Lanes v[N];
                if constexpr (N == 2) {
                    lv_lanes::Interleave(p, d, v[0], v[1]);
                } else if constexpr (N == 3) {
                    Enlarge<3>(p, v);
                    for (int k = 0; k < 3; k++)
                        v[k] = lv_lanes::Select(odd, Dim<D>(v[k]), v[k]);
                } else {
                    lv_lanes::Interleave4(p, d, p, d, v);
                }
                StoreToRows<N>(out, N * x, v);
            }
        }
#endif
        if (x >= covered) return;
        // The rest (all of the row at 5x) built in the first row and copied.
        uint16_t *const saved = line;
        line = out[0] + N * x;
        Build(s + x, below, y, covered - x);
        line = saved;
        for (int r = 1; r < N; r++)
            memcpy(out[r] + N * x, out[0] + N * x, (size_t)(covered - x) * N * 2);
    }
};

// Source rows two at a time: the lit row copied as whole 64-bit words (width % 4
// tail pixels dropped), the dark row dimmed as pixel pairs (an odd last pixel
// dropped) and not written at all when black. An odd height's last row is drawn
// alone, lit, as its even index says.
template <int D>
LV_VECTOR_CLONES void Horizontal1x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch,
                                   int32_t width, int32_t height)
{
    if (width <= 0) return;
    const size_t litBytes = (size_t)(width / 4) * 8;
    const int darkPixels = width / 2 * 2;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = RowAt(src, srcPitch, y);
        uint16_t *d = RowAt(dst, dstPitch, y);
        if ((y & 1) == 0)
            memcpy(d, s, litBytes);
        else if constexpr (D != kDimBlack)
            DimLine<D>(s, d, darkPixels);
    }
}

// Pixel pairs (p0, dim p1); an odd last pixel is dropped.
template <int D>
LV_VECTOR_CLONES void Vertical1x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch,
                                 int32_t width, int32_t height)
{
    const int pairs = width / 2;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = RowAt(src, srcPitch, y);
        uint16_t *d = RowAt(dst, dstPitch, y);
        int i = 0;
#if defined(LV_LANES_VECTORS)
        // Sixteen pixels at a time, the odd ones dimmed (a fixed blend of the
        // pixels and their dimmed copies), four vectors a step.
        const auto put = [&](int at) LV_ROW_LAMBDA {
            const lv_lanes::Lanes p = lv_lanes::LoadLanes(s + at);
            lv_lanes::StoreLanes(d + at, lv_lanes::SelectColumns<0x5>(p, Dim<D>(p)));
        };
        int X = 0;
        for (const int last4 = 2 * pairs - 4 * lv_lanes::kLanes; X <= last4; X += 4 * lv_lanes::kLanes) {
            put(X);
            put(X + lv_lanes::kLanes);
            put(X + 2 * lv_lanes::kLanes);
            put(X + 3 * lv_lanes::kLanes);
        }
        for (; X + lv_lanes::kLanes <= 2 * pairs; X += lv_lanes::kLanes)
            put(X);
        i = X / 2;
#endif
        for (; i < pairs; i++) {
            uint32_t w;
            memcpy(&w, s + 2 * i, 4);
            const uint32_t out = (w & 0xFFFFu) | ((uint32_t)Dim<D>((uint16_t)(w >> 16)) << 16);
            memcpy(d + 2 * i, &out, 4);
        }
    }
}

// One phase counter per size, never reset: the first call of a size has phase 1.
uint8_t sInterleavedPhase[5];

// Phases 2 and 3 draw one output row further down and track changes in the
// delta buffer's second half, so each parity keeps its own copy.
template <int N>
void Interleaved(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                 int32_t width, int32_t height)
{
    const uint8_t phase = (uint8_t)((sInterleavedPhase[N - 1] + 1) & 3);
    sInterleavedPhase[N - 1] = phase;
    if (phase >= 2) {
        dst = RowAt(dst, dstPitch, 1);
        if (width > 0 && height > 0) delta += (size_t)width * height * 2;
    }
    if constexpr (N == 1) {
        // Only the even source rows, to every other output row; the odd source
        // rows are never drawn at this size. An odd height's last row is drawn.
        if (width <= 0) return;
        const size_t bytes = (size_t)(width / 4) * 8;
        for (int y = 0; y < height; y += 2)
            memcpy(RowAt(dst, dstPitch, y), RowAt(src, srcPitch, y), bytes);
    } else {
        BlitTracked<HorizontalKind<N, kDimBlack>>(src, srcPitch, delta, dst, dstPitch, width, height);
    }
}

} // namespace

#define LV_SCANLINE_FAMILY(Suffix, D)                                                                                  \
    void BlitHorizontal##Suffix##_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst,                 \
                                     uint32_t dstPitch, int32_t width, int32_t height)                                 \
    {                                                                                                                  \
        Horizontal1x<D>(src, srcPitch, dst, dstPitch, width, height);                                                  \
    }                                                                                                                  \
    LV_TRACKED_BLITTER(BlitHorizontal##Suffix##_2x, HorizontalKind<2, D>)                                              \
    LV_TRACKED_BLITTER(BlitHorizontal##Suffix##_3x, HorizontalKind<3, D>)                                              \
    LV_TRACKED_BLITTER(BlitHorizontal##Suffix##_4x, HorizontalKind<4, D>)                                              \
    LV_TRACKED_BLITTER(BlitHorizontal##Suffix##_5x, HorizontalKind<5, D>)                                              \
    void BlitVertical##Suffix##_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst,                   \
                                   uint32_t dstPitch, int32_t width, int32_t height)                                   \
    {                                                                                                                  \
        Vertical1x<D>(src, srcPitch, dst, dstPitch, width, height);                                                    \
    }                                                                                                                  \
    LV_TRACKED_BLITTER(BlitVertical##Suffix##_2x, VerticalKind<2, D>)                                                  \
    LV_TRACKED_BLITTER(BlitVertical##Suffix##_3x, VerticalKind<3, D>)                                                  \
    LV_TRACKED_BLITTER(BlitVertical##Suffix##_4x, VerticalKind<4, D>)                                                  \
    LV_TRACKED_BLITTER(BlitVertical##Suffix##_5x, VerticalKind<5, D>)

LV_SCANLINE_FAMILY(, kDimBlack)
LV_SCANLINE_FAMILY(25, kDimQuarter)
LV_SCANLINE_FAMILY(50, kDimHalf)
LV_SCANLINE_FAMILY(75, kDimThreeQuarters)

#define LV_INTERLEAVED(N)                                                                                              \
    void BlitInterleaved_##N##x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,                 \
                                uint32_t dstPitch, int32_t width, int32_t height)                                      \
    {                                                                                                                  \
        Interleaved<N>(src, srcPitch, delta, dst, dstPitch, width, height);                                            \
    }

LV_INTERLEAVED(1)
LV_INTERLEAVED(2)
LV_INTERLEAVED(3)
LV_INTERLEAVED(4)
LV_INTERLEAVED(5)
