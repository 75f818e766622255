// The row engine shared by the simple scaler families (scanlines, Interpolated,
// Blur, RGB Mode, Arcade).
//
// A tracked blitter walks the source top to bottom. A picture equal to the delta
// copy costs one comparison. Otherwise, for each source row it compares the row
// with the copy, unit by unit, and marks the units whose destination block must be
// redrawn; a row with nothing marked costs only that comparison. A row whose every
// unit changed is drawn straight into its destination rows (sixteen pixels at a
// time where the kind can). Any other row is built whole in a small scratch line
// and, for each output row of the block, only the spans of the marked units are
// copied: drawing whole lines and copying the marked spans writes exactly the
// blocks a unit-by-unit walk would write.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "blitters/blit_lanes.h"
#include "blitters/ks_blitters.h"

// The hot loops are plain C++ for the auto-vectoriser; on x86-64 each is also
// compiled for AVX2 and picked at load time (integer operations only, so both
// versions give the same pixels).
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(LUMIVEX_NO_CLONES)
#define LV_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define LV_VECTOR_CLONES
#endif
// Row builders are forced inline so that each clone compiles them for its target.
#if defined(__GNUC__)
#define LV_ROW_INLINE __attribute__((always_inline)) inline
#define LV_ROW_LAMBDA __attribute__((always_inline))
#else
#define LV_ROW_INLINE inline
#define LV_ROW_LAMBDA
#endif

namespace lvblit
{

// Row y of a picture with the given pitch in bytes.
using lv_lanes::RowAt;

// ---- colour operations ---------------------------------------------------

enum DimKind { kDimBlack, kDimQuarter, kDimHalf, kDimThreeQuarters };

// On one pixel, or on a vector of pixels (the same operations lane by lane).
template <int D, class P> LV_ROW_INLINE P Dim(const P &p)
{
    if constexpr (D == kDimBlack) {
        return P{} & 0;
    } else if constexpr (D == kDimQuarter) {
        return (P)((p >> 2) & QUARTER_MASK);
    } else if constexpr (D == kDimHalf) {
        return (P)((p >> 1) & HALF_MASK);
    } else {
        return (P)(((p >> 2) & QUARTER_MASK) + ((p >> 1) & HALF_MASK));
    }
}

inline uint16_t Average(uint16_t a, uint16_t b)
{
    return (uint16_t)((a & b & LOW_BIT_MASK) + ((a >> 1) & HALF_MASK) + ((b >> 1) & HALF_MASK));
}
#if defined(LV_LANES_VECTORS)
// The same result in fewer operations. Take the whole 16-bit sum a + b and
// subtract the components' odd low bits (the low bit of a ^ b in each): every
// component's part of the sum is then even and below 64, so halving the whole
// sum halves each component, and the carry of the red part lands in bit 15,
// which the halving moves back into red. Subtracting bit 15 of a ^ b as well
// (mod 2^16 the same as flipping it) drops the inputs' bit 15, as above.
// Checked against the rule above for all 2^32 pairs.
LV_ROW_INLINE lv_lanes::Lanes AverageOf(const lv_lanes::Lanes &a, const lv_lanes::Lanes &b,
                                        const lv_lanes::Lanes &differing)
{
    return (lv_lanes::Lanes)((a + b - (differing & (LOW_BIT_MASK | 0x8000))) >> 1);
}
LV_ROW_INLINE lv_lanes::Lanes Average(const lv_lanes::Lanes &a, const lv_lanes::Lanes &b)
{
    return AverageOf(a, b, a ^ b);
}
// The four-pixel mean from two pairs' means u = avg(p, q) and v = avg(r, s) and
// their odd components (LOW_BIT_MASK & p ^ q, and of r ^ s): p + q + r + s is
// 2u + 2v plus the odd parts, so floor((p + q + r + s) / 4) per component is
// floor((u + v + 1) / 2) where both pairs were odd and floor((u + v) / 2)
// elsewhere, halved as in AverageOf (u and v have no bit 15).
LV_ROW_INLINE lv_lanes::Lanes MeanOfPairs(const lv_lanes::Lanes &u, const lv_lanes::Lanes &uOdd,
                                          const lv_lanes::Lanes &v, const lv_lanes::Lanes &vOdd)
{
    const lv_lanes::Lanes both = uOdd & vOdd;
    return (lv_lanes::Lanes)((u + v + both - ((u ^ v ^ both) & LOW_BIT_MASK)) >> 1);
}
#endif

// Exact floor of the four-pixel mean, per component.
inline uint16_t Blend4(uint16_t p, uint16_t q, uint16_t r, uint16_t s)
{
    // Every partial sum fits in 16 bits; keeping them 16-bit lets the vectoriser
    // use 16-bit lanes.
    const uint16_t quarters = (uint16_t)((uint16_t)((p >> 2) & QUARTER_MASK) + (uint16_t)((q >> 2) & QUARTER_MASK) +
                                         (uint16_t)((r >> 2) & QUARTER_MASK) + (uint16_t)((s >> 2) & QUARTER_MASK));
    const uint16_t low = (uint16_t)((uint16_t)(p & LOW_2BITS_MASK) + (uint16_t)(q & LOW_2BITS_MASK) +
                                    (uint16_t)(r & LOW_2BITS_MASK) + (uint16_t)(s & LOW_2BITS_MASK));
    return (uint16_t)(quarters + (uint16_t)((uint16_t)(low >> 2) & LOW_2BITS_MASK));
}

// Each 5-bit component times k / 128, truncated; k = 128 keeps the component.
inline uint16_t Scale(uint16_t p, unsigned kr, unsigned kg, unsigned kb)
{
    // component * k <= 31 * 128 fits in 16 bits.
    const uint16_t r = (uint16_t)((uint16_t)((uint16_t)((p >> 10) & 31u) * (uint16_t)kr) >> 7);
    const uint16_t g = (uint16_t)((uint16_t)((uint16_t)((p >> 5) & 31u) * (uint16_t)kg) >> 7);
    const uint16_t b = (uint16_t)((uint16_t)((uint16_t)(p & 31u) * (uint16_t)kb) >> 7);
    return (uint16_t)((uint16_t)(r << 10) | (uint16_t)(g << 5) | b);
}

// ---- line helpers ----------------------------------------------------------

// out[N * i + k] = body[i] for k < N - 1, and out[N * i + N - 1] = last[i].
template <int N>
LV_ROW_INLINE void ReplicateWithLast(const uint16_t *__restrict body, const uint16_t *__restrict last,
                                     uint16_t *__restrict out, int count)
{
    if constexpr (N == 1) {
        memcpy(out, last, (size_t)count * 2);
    } else if constexpr (N == 2) {
        int i = 0;
#if defined(LV_LANES_VECTORS)
        for (; i + lv_lanes::kLanes <= count; i += lv_lanes::kLanes)
            lv_lanes::StoreInterleaved(out + 2 * i, lv_lanes::LoadLanes(body + i), lv_lanes::LoadLanes(last + i));
#endif
        for (; i < count; i++) {
            const uint32_t w = (uint32_t)body[i] | (uint32_t)last[i] << 16;
            memcpy(out + 2 * i, &w, 4);
        }
    } else if constexpr (N == 4) {
        int i = 0;
#if defined(LV_LANES_VECTORS)
        for (; i + lv_lanes::kLanes <= count; i += lv_lanes::kLanes) {
            const lv_lanes::Lanes p = lv_lanes::LoadLanes(body + i);
            lv_lanes::StoreInterleaved4(out + 4 * i, p, p, p, lv_lanes::LoadLanes(last + i));
        }
#endif
        for (; i < count; i++) {
            const uint64_t p = body[i];
            const uint64_t w = p | p << 16 | p << 32 | (uint64_t)last[i] << 48;
            memcpy(out + 4 * i, &w, 8);
        }
    } else {
        static_assert(N == 3 || N == 5, "sizes 1 to 5");
        int i = 0;
#if defined(LV_LANES_VECTORS)
        if constexpr (N == 3)
            for (; i + lv_lanes::kLanes <= count; i += lv_lanes::kLanes) {
                lv_lanes::Lanes v[3];
                if (body == last)
                    lv_lanes::Triple(lv_lanes::LoadLanes(body + i), v);
                else
                    lv_lanes::TripleWithLast(lv_lanes::LoadLanes(body + i), lv_lanes::LoadLanes(last + i), v);
                // Three separate stores: as a loop the compiler would copy through the stack.
                lv_lanes::StoreLanes(out + 3 * i, v[0]);
                lv_lanes::StoreLanes(out + 3 * i + lv_lanes::kLanes, v[1]);
                lv_lanes::StoreLanes(out + 3 * i + 2 * lv_lanes::kLanes, v[2]);
            }
#endif
        for (; i + 4 <= count; i += 4) {
            const uint64_t p0 = body[i], p1 = body[i + 1], p2 = body[i + 2], p3 = body[i + 3];
            const uint64_t l0 = last[i], l1 = last[i + 1], l2 = last[i + 2], l3 = last[i + 3];
            uint64_t w[N];
            if constexpr (N == 3) {
                w[0] = p0 | p0 << 16 | l0 << 32 | p1 << 48;
                w[1] = p1 | l1 << 16 | p2 << 32 | p2 << 48;
                w[2] = l2 | p3 << 16 | p3 << 32 | l3 << 48;
            } else {
                w[0] = p0 * 0x0001000100010001ull;
                w[1] = l0 | p1 << 16 | p1 << 32 | p1 << 48;
                w[2] = p1 | l1 << 16 | p2 << 32 | p2 << 48;
                w[3] = p2 | p2 << 16 | l2 << 32 | p3 << 48;
                w[4] = p3 | p3 << 16 | p3 << 32 | l3 << 48;
            }
            for (int k = 0; k < N; k++)
                memcpy(out + (size_t)N * i + 4 * k, &w[k], 8);
        }
        for (; i < count; i++) {
            for (int k = 0; k < N - 1; k++)
                out[N * i + k] = body[i];
            out[N * i + N - 1] = last[i];
        }
    }
}

// out[N * i + k] = in[i] for k < N: the line with its own pixels as the last ones.
template <int N> LV_ROW_INLINE void Replicate(const uint16_t *__restrict in, uint16_t *__restrict out, int count)
{
    int i = 0;
#if defined(LV_LANES_VECTORS)
    if constexpr (N == 5)
        // Output vector k of a group of sixteen takes pixels 16k / 5 and on:
        // at most four, all in the low half of a load from there. The last
        // load of a group reads 16 pixels from pixel 12, so the group must
        // not end within 12 pixels of the input's end.
        for (; i + 2 * lv_lanes::kLanes <= count; i += lv_lanes::kLanes)
            lv_lanes::StoreReplicated5(out + 5 * i, in + i);
#endif
    ReplicateWithLast<N>(in + i, in + i, out + (size_t)N * i, count - i);
}

// out[X] = lit[X] where bit (X mod 4) of `pattern` is set, else dark[X].
LV_ROW_INLINE void SelectByColumn(const uint16_t *__restrict lit, const uint16_t *__restrict dark, unsigned pattern,
                                  uint16_t *__restrict out, int count)
{
    uint64_t mask = 0;
    for (int k = 0; k < 4; k++)
        if ((pattern >> k) & 1) mask |= 0xFFFFull << (16 * k);
    const int words = count / 4;
    for (int i = 0; i < words; i++) {
        uint64_t a, b;
        memcpy(&a, lit + 4 * i, 8);
        memcpy(&b, dark + 4 * i, 8);
        const uint64_t w = (a & mask) | (b & ~mask);
        memcpy(out + 4 * i, &w, 8);
    }
    for (int X = words * 4; X < count; X++)
        out[X] = ((pattern >> (X & 3)) & 1) ? lit[X] : dark[X];
}

#if defined(LV_LANES_VECTORS)
// The same N vectors (16 * N pixels from `at`) into each of the N output rows,
// stored one by one (as a loop the compiler would copy them through the stack).
template <int N>
LV_ROW_INLINE void StoreToRows(uint16_t *const *out, int at, const lv_lanes::Lanes (&v)[N], int rows = N)
{
    for (int r = 0; r < rows; r++) {
        uint16_t *d = out[r] + at;
        lv_lanes::StoreLanes(d, v[0]);
        if constexpr (N > 1) lv_lanes::StoreLanes(d + lv_lanes::kLanes, v[1]);
        if constexpr (N > 2) lv_lanes::StoreLanes(d + 2 * lv_lanes::kLanes, v[2]);
        if constexpr (N > 3) lv_lanes::StoreLanes(d + 3 * lv_lanes::kLanes, v[3]);
    }
}
#endif

#if defined(LV_LANES_VECTORS)
// Sixteen pixels, each N times over: N vectors, in registers.
template <int N> LV_ROW_INLINE void Enlarge(const lv_lanes::Lanes &p, lv_lanes::Lanes (&v)[N])
{
    static_assert(N >= 2 && N <= 4, "sizes 2 to 4");
    if constexpr (N == 2)
        lv_lanes::Interleave(p, p, v[0], v[1]);
    else if constexpr (N == 3)
        lv_lanes::Triple(p, v);
    else
        lv_lanes::Interleave4(p, p, p, p, v);
}
#endif

// The n output rows of block row y split by the parity of their row in the
// image: even rows lit, odd rows dark (the scanline rule).
template <int N> struct RowsByParity {
    uint16_t *lit[N] = {}, *dark[N] = {};
    int lits = 0, darks = 0;
    RowsByParity(int y, uint16_t *const *out)
    {
        for (int r = 0; r < N; r++) {
            if (((N * y + r) & 1) == 0)
                lit[lits++] = out[r];
            else
                dark[darks++] = out[r];
        }
    }
};

#if defined(LV_LANES_VECTORS)
// N vectors of a lit line into every lit row, and dimmed into every dark row.
template <int N, int D>
LV_ROW_INLINE void StoreLitAndDark(const RowsByParity<N> &rows, int at, lv_lanes::Lanes (&v)[N])
{
    StoreToRows<N>(rows.lit, at, v, rows.lits);
    if constexpr (D != kDimBlack) {
        for (int k = 0; k < N; k++)
            v[k] = Dim<D>(v[k]);
        StoreToRows<N>(rows.dark, at, v, rows.darks);
    }
}
#endif

template <int D> LV_ROW_INLINE void DimLine(const uint16_t *__restrict in, uint16_t *__restrict out, int count)
{
    for (int i = 0; i < count; i++)
        out[i] = Dim<D>(in[i]);
}

// d[x] = f(mean of s[x - 1] and s[x]) along a row, with `before` standing for
// s[-1]; f is applied to a pixel or to a vector of pixels. The first sixteen
// pixels take their left neighbours from `before` and the row in registers, so
// every later store starts at a multiple of sixteen pixels; a row that is not a
// multiple of sixteen ends with the last sixteen pixels again.
template <class F> LV_ROW_INLINE void MeanWithLeft(const uint16_t *s, uint16_t *d, int width, uint16_t before, F f)
{
    int x = 0;
#if defined(LV_LANES_VECTORS)
    using lv_lanes::Lanes;
    if (width >= lv_lanes::kLanes) {
        const Lanes first = lv_lanes::LoadLanes(s);
        Lanes carried{};
        carried[lv_lanes::kLanes - 1] = before;
        lv_lanes::StoreLanes(d, f(Average(lv_lanes::ShiftInOne(carried, first), first)));
        // The left neighbours moved in from the previous vector in registers: one
        // aligned load a step, where a load from s + x - 1 would straddle a cache
        // line every other step.
        Lanes before16 = first;
        for (x = lv_lanes::kLanes; x + lv_lanes::kLanes <= width; x += lv_lanes::kLanes) {
            const Lanes now = lv_lanes::LoadLanes(s + x);
            lv_lanes::StoreLanes(d + x, f(Average(lv_lanes::ShiftInOne(before16, now), now)));
            before16 = now;
        }
        if (x < width) {
            x = width - lv_lanes::kLanes;
            lv_lanes::StoreLanes(d + x, f(Average(lv_lanes::LoadLanes(s + x - 1), lv_lanes::LoadLanes(s + x))));
            x = width;
        }
    }
#endif
    for (; x < width; x++)
        d[x] = f(Average(x ? s[x - 1] : before, s[x]));
}

// ---- scratch -----------------------------------------------------------------

struct Scratch {
    std::vector<uint16_t> lines;
    size_t stride = 0;
    std::vector<uint8_t> flags, diff;
    uint16_t *Line(int i) { return lines.data() + (size_t)i * stride; }
};

constexpr int kScratchLines = 8;

// Per-thread buffers sized for the widest row seen so far.
inline Scratch &GetScratch(int width, int size)
{
    static thread_local Scratch sc;
    const size_t stride = ((size_t)width * size + 64 + 31) & ~(size_t)31;
    if (sc.stride < stride) {
        sc.stride = stride;
        sc.lines.assign(stride * kScratchLines, 0);
    }
    if (sc.flags.size() < (size_t)width + 16) {
        sc.flags.assign((size_t)width + 16, 0);
        sc.diff.assign((size_t)width + 16, 0);
    }
    return sc;
}

// ---- change tracking ---------------------------------------------------------

enum TrackKind {
    kTrackUnits,         // units of U pixels, each compared with its copy
    kTrackUnitsAndNext,  // as above; a unit is also redrawn when the unit after it changed
    kTrackGroupAsDouble, // four pixels compared as one double, then pixel by pixel
    kTrackBlock,         // a pixel with its right neighbour, and the same two in the row below
};

// True when every unit of U pixels of the row differs from its copy; the copy is
// then brought up to date. The rows of a changing picture usually differ
// everywhere, and this test (loads only, one verdict at the end) is much cheaper
// than the unit-by-unit walk, which runs only when it fails.
template <int U> LV_ROW_INLINE bool CopyIfAllDiffer(const uint16_t *s, uint16_t *copy, int pixels)
{
    static_assert(U == 1 || U == 2, "units of one or two pixels");
    int x = 0;
    bool same = false;
#if defined(LV_LANES_VECTORS)
    using lv_lanes::Lanes;
    Lanes anySame{};
    for (; x + lv_lanes::kLanes <= pixels; x += lv_lanes::kLanes) {
        const Lanes now = lv_lanes::LoadLanes(s + x), before = lv_lanes::LoadLanes(copy + x);
        if constexpr (U == 1) {
            anySame |= lv_lanes::Eq(now, before);
        } else {
            typedef uint32_t Words __attribute__((vector_size(32)));
            anySame |= (Lanes)((Words)now == (Words)before);
        }
    }
    same = lv_lanes::AnyLane(anySame);
#endif
    for (; x < pixels; x += U) {
        if constexpr (U == 1)
            same |= s[x] == copy[x];
        else
            same |= s[x] == copy[x] && s[x + 1] == copy[x + 1];
    }
    if (same) return false;
    memcpy(copy, s, (size_t)pixels * 2);
    return true;
}

// Marks the changed units of one row and brings the copy up to date. `pixels`
// is a multiple of U. With WithNext a unit is also marked when the unit after it
// changed; `nextPixels` (0 to U) says how much of a unit follows the walk in the
// same row (the row's tail), so the last unit depends on it too.
template <int U, bool WithNext>
LV_ROW_INLINE int TrackUnits(const uint16_t *s, uint16_t *copy, int pixels, int nextPixels, uint8_t *flags,
                             uint8_t *diff)
{
    const int units = pixels / U;
    const int compared = pixels + (WithNext ? nextPixels : 0);
    if (compared > 0 && s[0] == copy[0] && memcmp(s, copy, (size_t)compared * 2) == 0) return 0;
    if (CopyIfAllDiffer<U>(s, copy, units * U)) return units; // every unit redrawn; the flags are not read
    // The copy is brought up to date in the same pass.
    int differing = 0;
    if constexpr (U == 1) {
        for (int k = 0; k < units; k++) {
            const uint16_t now = s[k];
            const uint8_t d = now != copy[k];
            copy[k] = now;
            diff[k] = d;
            differing += d;
        }
    } else {
        for (int k = 0; k < units; k++) {
            uint32_t a, b;
            memcpy(&a, s + 2 * k, 4);
            memcpy(&b, copy + 2 * k, 4);
            const uint8_t d = a != b;
            memcpy(copy + 2 * k, &a, 4);
            diff[k] = d;
            differing += d;
        }
    }
    if (differing == units) return units; // every unit redrawn; the flags are not read
    if constexpr (WithNext) {
        uint8_t next = 0;
        for (int i = 0; i < nextPixels; i++)
            next |= s[pixels + i] != copy[pixels + i];
        diff[units] = next;
    }
    int count = 0;
    for (int k = 0; k < units; k++) {
        const uint8_t f = WithNext ? (uint8_t)(diff[k] | diff[k + 1]) : diff[k];
        flags[k] = f;
        count += f;
    }
    return count;
}

// Four pixels' 64 bits compared as a double (a NaN pattern never tests equal,
// +0 and -0 patterns do), then each pixel of a differing group by itself.
LV_ROW_INLINE int TrackGroupsAsDouble(const uint16_t *s, uint16_t *copy, int groups, uint8_t *flags)
{
    if (groups > 0 && s[0] == copy[0] && memcmp(s, copy, (size_t)groups * 8) == 0) return 0;
    // When every pixel differs no group can compare equal (only +0 and -0 do,
    // and they differ in one pixel alone), so every group is redrawn.
    if (CopyIfAllDiffer<1>(s, copy, groups * 4)) return groups * 4;
    int count = 0;
    for (int g = 0; g < groups; g++) {
        double now, before;
        memcpy(&now, s + 4 * g, 8);
        memcpy(&before, copy + 4 * g, 8);
        if (now == before) {
            memset(flags + 4 * g, 0, 4);
            continue;
        }
        for (int k = 0; k < 4; k++) {
            const uint8_t f = s[4 * g + k] != copy[4 * g + k];
            flags[4 * g + k] = f;
            count += f;
        }
        memcpy(copy + 4 * g, s + 4 * g, 8);
    }
    return count;
}

// A block depends on (a, b) in its row and (c, d) below; the copy of the row
// below still holds last frame's pixels because rows go top to bottom. The last
// pixel of a row has no right neighbour and the last row no row below: the
// kinds repeat the edge, so `below` and `copyBelow` are then the row itself.
LV_ROW_INLINE int TrackBlocks(const uint16_t *s, const uint16_t *below, uint16_t *copy, const uint16_t *copyBelow,
                              int width, uint8_t *flags, uint8_t *diff)
{
    if (width > 0 && s[0] == copy[0] && below[0] == copyBelow[0] && memcmp(s, copy, (size_t)width * 2) == 0 &&
        memcmp(below, copyBelow, (size_t)width * 2) == 0)
        return 0;
    // Where the row itself differs everywhere, so does every block.
    if (CopyIfAllDiffer<1>(s, copy, width)) return width;
    int differing = 0;
    for (int x = 0; x < width; x++) {
        const uint8_t d = (uint8_t)((s[x] != copy[x]) | (below[x] != copyBelow[x]));
        diff[x] = d;
        differing += d;
    }
    if (differing == width) {
        memcpy(copy, s, (size_t)width * 2);
        return width;
    }
    diff[width] = 0;
    int count = 0;
    for (int x = 0; x < width; x++) {
        const uint8_t f = (uint8_t)(diff[x] | diff[x + 1]);
        flags[x] = f;
        count += f;
    }
    memcpy(copy, s, (size_t)width * 2);
    return count;
}

// A row followed by a copy of its last pixel, so that "the right neighbour" of
// the last pixel is the pixel itself.
LV_ROW_INLINE void ExtendRow(const uint16_t *s, int width, uint16_t *out)
{
    memcpy(out, s, (size_t)width * 2);
    out[width] = s[width - 1];
}

// Copies the spans of the marked units from `line` to `out`.
LV_ROW_INLINE void WriteMarked(uint16_t *out, const uint16_t *line, const uint8_t *flags, int units, int unitOut,
                               bool all)
{
    if (all) {
        memcpy(out, line, (size_t)units * unitOut * 2);
        return;
    }
    int k = 0;
    while (k < units) {
        if (!flags[k]) {
            k++;
            continue;
        }
        int e = k + 1;
        while (e < units && flags[e])
            e++;
        memcpy(out + (size_t)k * unitOut, line + (size_t)k * unitOut, (size_t)(e - k) * unitOut * 2);
        k = e;
    }
}

// ---- the driver ----------------------------------------------------------------
//
// A kind K provides:
//   static constexpr int kSize;             scale factor
//   static constexpr TrackKind kTrack;      how units are compared
//   static constexpr int kUnit;             pixels per unit (1 or 2; 1 for groups and blocks)
//   static constexpr int kLead;             bytes between a unit's offset and its copy
//   static int Covered(int width);          pixels of a row the walk draws
//   K(Scratch &, int width);
//   void Build(const uint16_t *row, const uint16_t *below, int y, int covered);
//                                           (below: the next row, or the row itself for the last one)
//   const uint16_t *Line(int y, int r);     output row r of the block, or null: not written
//   void BuildInto(const uint16_t *row, const uint16_t *below, int y, int covered, uint16_t *const *out);
//                                           a row whose every unit changed, drawn straight
//                                           into the block's n destination rows

template <class K>
LV_VECTOR_CLONES void BlitTracked(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                  uint32_t dstPitch, int32_t width, int32_t height)
{
    if (width <= 0 || height <= 0) return;
    constexpr int n = K::kSize;
    constexpr int U = K::kUnit;
    const int covered = K::Covered(width);
    if (covered <= 0) return;
    const int units = covered / U;
    // A picture that equals the copy row for row (a still frame) costs one
    // comparison: the copies lie row after row, so the whole frame is compared
    // at once when the source rows do too. Otherwise rows are compared one by one.
    if (srcPitch == (uint32_t)width * 2 && src[0] == *reinterpret_cast<const uint16_t *>(delta + K::kLead) &&
        memcmp(src, delta + K::kLead, (size_t)width * (size_t)height * 2) == 0)
        return;
    Scratch &sc = GetScratch(width, n);
    K kind(sc, width);
    const int nextPixels = width - covered < U ? width - covered : U;
    for (int y = 0; y < height; y++) {
        const uint16_t *s = RowAt(src, srcPitch, y);
        const bool last = y + 1 == height;
        const uint16_t *below = last ? s : RowAt(src, srcPitch, y + 1);
        uint16_t *copy = reinterpret_cast<uint16_t *>(delta + (size_t)y * width * 2 + K::kLead);
        int changed;
        if constexpr (K::kTrack == kTrackUnits)
            changed = TrackUnits<U, false>(s, copy, covered, 0, sc.flags.data(), sc.diff.data());
        else if constexpr (K::kTrack == kTrackUnitsAndNext)
            changed = TrackUnits<U, true>(s, copy, covered, nextPixels, sc.flags.data(), sc.diff.data());
        else if constexpr (K::kTrack == kTrackGroupAsDouble)
            changed = TrackGroupsAsDouble(s, copy, covered / 4, sc.flags.data());
        else
            changed = TrackBlocks(s, below, copy, last ? copy : copy + width, covered, sc.flags.data(), sc.diff.data());
        if (!changed) continue;
        if (changed == units) {
            uint16_t *rows[n];
            for (int r = 0; r < n; r++)
                rows[r] = RowAt(dst, dstPitch, (long)n * y + r);
            kind.BuildInto(s, below, y, covered, rows);
            continue;
        }
        kind.Build(s, below, y, covered);
        for (int r = 0; r < n; r++) {
            const uint16_t *line = kind.Line(y, r);
            if (!line) continue;
            WriteMarked(RowAt(dst, dstPitch, (long)n * y + r), line, sc.flags.data(), units, U * n, changed == units);
        }
    }
}

} // namespace lvblit

// Defines the exported blitter `Name` as the tracked walk of a kind (the kind's
// template arguments may contain commas).
#define LV_TRACKED_BLITTER(Name, ...)                                                                                  \
    void Name(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, \
              int32_t height)                                                                                          \
    {                                                                                                                  \
        lvblit::BlitTracked<__VA_ARGS__>(src, srcPitch, delta, dst, dstPitch, width, height);                          \
    }
