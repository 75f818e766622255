// Pixel "lanes" for the edge-following scalers: one pixel (uint16_t) or, with
// GCC and Clang, a vector of 16 pixels, with the same operations on both. A
// comparison gives a mask of all ones or all zeros in the lane's bits and Select
// picks by mask, so rules written once over a lane type compute exactly the same
// on a single pixel as on each pixel of a vector.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__GNUC__)
#define LV_LANES_VECTORS 1
// The wide vectors never cross a call boundary (everything is inlined), so the
// note about their calling convention without AVX does not apply.
#pragma GCC diagnostic ignored "-Wpsabi"
#define LV_LANES_INLINE inline __attribute__((always_inline))
#else
#define LV_LANES_INLINE inline
#endif

#if defined(LV_LANES_VECTORS) && defined(__x86_64__) && !defined(__clang__) && !defined(LUMIVEX_NO_CLONES)
// The same code built twice, for AVX2 and for the baseline, picked at load time.
#define LV_LANES_CLONES __attribute__((target_clones("avx2", "default"), flatten))
#else
#define LV_LANES_CLONES
#endif

namespace lv_lanes
{

inline const uint16_t *RowAt(const uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<const uint16_t *>(reinterpret_cast<const uint8_t *>(base) + (ptrdiff_t)pitch * y);
}
inline uint16_t *RowAt(uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<uint16_t *>(reinterpret_cast<uint8_t *>(base) + (ptrdiff_t)pitch * y);
}

// Two pixels as one 32-bit word, the lower address in the lower half.
LV_LANES_INLINE void StorePair(uint16_t *d, uint16_t left, uint16_t right)
{
    const uint32_t word = (uint32_t)left | ((uint32_t)right << 16);
    memcpy(d, &word, 4);
}

// ---- one pixel
LV_LANES_INLINE uint16_t Eq(uint16_t a, uint16_t b)
{
    return a == b ? 0xFFFF : 0;
}
LV_LANES_INLINE uint16_t Select(uint16_t m, uint16_t a, uint16_t b)
{
    return (uint16_t)((m & a) | (~m & b));
}
LV_LANES_INLINE int16_t Signed(uint16_t m)
{
    return (int16_t)(m ? -1 : 0);
}
LV_LANES_INLINE uint16_t Positive(int16_t r)
{
    return r > 0 ? 0xFFFF : 0;
}
LV_LANES_INLINE uint16_t Negative(int16_t r)
{
    return r < 0 ? 0xFFFF : 0;
}

template <class P> struct SignedOf {
    using type = int16_t;
};

#if defined(LV_LANES_VECTORS)
// ---- sixteen pixels
typedef uint16_t Lanes __attribute__((vector_size(32)));
typedef int16_t SignedLanes __attribute__((vector_size(32)));
constexpr int kLanes = 16;

template <> struct SignedOf<Lanes> {
    using type = SignedLanes;
};

LV_LANES_INLINE Lanes Eq(const Lanes &a, const Lanes &b)
{
    return (Lanes)(a == b);
}
LV_LANES_INLINE Lanes Select(const Lanes &m, const Lanes &a, const Lanes &b)
{
    return (m & a) | (~m & b);
}
// Lane k from `lit` where bit (k mod 4) of Pattern is set, else from `dark`: a
// fixed blend, one instruction where the target has one.
template <unsigned Pattern> LV_LANES_INLINE Lanes SelectColumns(const Lanes &lit, const Lanes &dark)
{
#define LV_LANES_COLUMN(k) (((Pattern >> ((k) & 3)) & 1) ? (k) : 16 + (k))
#if defined(__clang__)
    return __builtin_shufflevector(lit, dark, LV_LANES_COLUMN(0), LV_LANES_COLUMN(1), LV_LANES_COLUMN(2),
                                   LV_LANES_COLUMN(3), LV_LANES_COLUMN(4), LV_LANES_COLUMN(5), LV_LANES_COLUMN(6),
                                   LV_LANES_COLUMN(7), LV_LANES_COLUMN(8), LV_LANES_COLUMN(9), LV_LANES_COLUMN(10),
                                   LV_LANES_COLUMN(11), LV_LANES_COLUMN(12), LV_LANES_COLUMN(13), LV_LANES_COLUMN(14),
                                   LV_LANES_COLUMN(15));
#else
    constexpr Lanes pick = {LV_LANES_COLUMN(0),  LV_LANES_COLUMN(1),  LV_LANES_COLUMN(2),  LV_LANES_COLUMN(3),
                            LV_LANES_COLUMN(4),  LV_LANES_COLUMN(5),  LV_LANES_COLUMN(6),  LV_LANES_COLUMN(7),
                            LV_LANES_COLUMN(8),  LV_LANES_COLUMN(9),  LV_LANES_COLUMN(10), LV_LANES_COLUMN(11),
                            LV_LANES_COLUMN(12), LV_LANES_COLUMN(13), LV_LANES_COLUMN(14), LV_LANES_COLUMN(15)};
    return __builtin_shuffle(lit, dark, pick);
#endif
#undef LV_LANES_COLUMN
}
LV_LANES_INLINE SignedLanes Signed(const Lanes &m)
{
    return (SignedLanes)m;
}
LV_LANES_INLINE Lanes Positive(const SignedLanes &r)
{
    return (Lanes)(r > SignedLanes{});
}
LV_LANES_INLINE Lanes Negative(const SignedLanes &r)
{
    return (Lanes)(r < SignedLanes{});
}

LV_LANES_INLINE Lanes LoadLanes(const void *p)
{
    Lanes v;
    memcpy(&v, p, sizeof v);
    return v;
}
LV_LANES_INLINE void StoreLanes(void *p, const Lanes &v)
{
    memcpy(p, &v, sizeof v);
}

LV_LANES_INLINE bool AnyLane(const Lanes &m)
{
    uint64_t w[4];
    memcpy(w, &m, sizeof w);
    return (w[0] | w[1] | w[2] | w[3]) != 0;
}
LV_LANES_INLINE bool AllLanes(const Lanes &m)
{
    uint64_t w[4];
    memcpy(w, &m, sizeof w);
    return (w[0] & w[1] & w[2] & w[3]) == ~(uint64_t)0;
}

// The lanes of b moved up by one (two), the top lane(s) of a shifted in below.
LV_LANES_INLINE Lanes ShiftInOne(const Lanes &a, const Lanes &b)
{
#if defined(__clang__)
    return __builtin_shufflevector(a, b, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30);
#else
    return __builtin_shuffle(a, b, Lanes{15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30});
#endif
}
LV_LANES_INLINE Lanes ShiftInTwo(const Lanes &a, const Lanes &b)
{
#if defined(__clang__)
    return __builtin_shufflevector(a, b, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29);
#else
    return __builtin_shuffle(a, b, Lanes{14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29});
#endif
}

// 16 left and 16 right pixels as 32 pixels, left and right alternating. The
// quarters of each are put in the order 0, 2, 1, 3 first, so that interleaving
// within 128-bit halves (cheap) gives the pixels in order; with the same vector
// on both sides that first step is made once.
LV_LANES_INLINE void Interleave(const Lanes &left, const Lanes &right, Lanes &lo, Lanes &hi)
{
    typedef uint64_t Quads __attribute__((vector_size(32)));
#if defined(__clang__)
    const Lanes l = (Lanes)__builtin_shufflevector((Quads)left, (Quads)left, 0, 2, 1, 3);
    const Lanes r = (Lanes)__builtin_shufflevector((Quads)right, (Quads)right, 0, 2, 1, 3);
    lo = __builtin_shufflevector(l, r, 0, 16, 1, 17, 2, 18, 3, 19, 8, 24, 9, 25, 10, 26, 11, 27);
    hi = __builtin_shufflevector(l, r, 4, 20, 5, 21, 6, 22, 7, 23, 12, 28, 13, 29, 14, 30, 15, 31);
#else
    const Lanes l = (Lanes)__builtin_shuffle((Quads)left, Quads{0, 2, 1, 3});
    const Lanes r = (Lanes)__builtin_shuffle((Quads)right, Quads{0, 2, 1, 3});
    lo = __builtin_shuffle(l, r, Lanes{0, 16, 1, 17, 2, 18, 3, 19, 8, 24, 9, 25, 10, 26, 11, 27});
    hi = __builtin_shuffle(l, r, Lanes{4, 20, 5, 21, 6, 22, 7, 23, 12, 28, 13, 29, 14, 30, 15, 31});
#endif
}
LV_LANES_INLINE void StoreInterleaved(uint16_t *d, const Lanes &left, const Lanes &right)
{
    Lanes lo, hi;
    Interleave(left, right, lo, hi);
    StoreLanes(d, lo);
    StoreLanes(d + kLanes, hi);
}
// The same, writing only the pairs whose lane of `keep` is set.
LV_LANES_INLINE void StoreInterleavedWhere(uint16_t *d, const Lanes &left, const Lanes &right, const Lanes &keep)
{
    Lanes lo, hi, keepLo, keepHi;
    Interleave(left, right, lo, hi);
    Interleave(keep, keep, keepLo, keepHi);
    StoreLanes(d, Select(keepLo, lo, LoadLanes(d)));
    StoreLanes(d + kLanes, Select(keepHi, hi, LoadLanes(d + kLanes)));
}

// 16 pixels each of four columns as 64 pixels, the columns taking turns: pairs
// (a, b) and (c, d) first, then the pairs alternating as 32-bit words.
LV_LANES_INLINE void Interleave4(const Lanes &a, const Lanes &b, const Lanes &c, const Lanes &e, Lanes out[4])
{
    typedef uint32_t Words __attribute__((vector_size(32)));
    Lanes abLo, abHi, ceLo, ceHi;
    Interleave(a, b, abLo, abHi);
    Interleave(c, e, ceLo, ceHi);
#if defined(__clang__)
#define LV_LANES_WORDS(x, y, ...) __builtin_shufflevector((Words)(x), (Words)(y), __VA_ARGS__)
#else
#define LV_LANES_WORDS(x, y, ...) __builtin_shuffle((Words)(x), (Words)(y), Words{__VA_ARGS__})
#endif
    const Words w0 = LV_LANES_WORDS(abLo, ceLo, 0, 8, 1, 9, 2, 10, 3, 11);
    const Words w1 = LV_LANES_WORDS(abLo, ceLo, 4, 12, 5, 13, 6, 14, 7, 15);
    const Words w2 = LV_LANES_WORDS(abHi, ceHi, 0, 8, 1, 9, 2, 10, 3, 11);
    const Words w3 = LV_LANES_WORDS(abHi, ceHi, 4, 12, 5, 13, 6, 14, 7, 15);
#undef LV_LANES_WORDS
    out[0] = (Lanes)w0;
    out[1] = (Lanes)w1;
    out[2] = (Lanes)w2;
    out[3] = (Lanes)w3;
}
LV_LANES_INLINE void StoreInterleaved4(uint16_t *d, const Lanes &a, const Lanes &b, const Lanes &c, const Lanes &e)
{
    Lanes out[4];
    Interleave4(a, b, c, e, out);
    // Four separate stores: as a loop the compiler would copy through the stack.
    StoreLanes(d, out[0]);
    StoreLanes(d + kLanes, out[1]);
    StoreLanes(d + 2 * kLanes, out[2]);
    StoreLanes(d + 3 * kLanes, out[3]);
}

// Sixteen pixels from `in`, each five times: 80 pixels. Reads in[0] to in[27].
LV_LANES_INLINE void StoreReplicated5(uint16_t *d, const uint16_t *in)
{
#if defined(__clang__)
#define LV_LANES_FIVE(v, k)                                                                                            \
    __builtin_shufflevector(v, v, (16 * k + 0) / 5 - 16 * k / 5, (16 * k + 1) / 5 - 16 * k / 5,                       \
                            (16 * k + 2) / 5 - 16 * k / 5, (16 * k + 3) / 5 - 16 * k / 5, (16 * k + 4) / 5 - 16 * k / 5, \
                            (16 * k + 5) / 5 - 16 * k / 5, (16 * k + 6) / 5 - 16 * k / 5, (16 * k + 7) / 5 - 16 * k / 5, \
                            (16 * k + 8) / 5 - 16 * k / 5, (16 * k + 9) / 5 - 16 * k / 5,                             \
                            (16 * k + 10) / 5 - 16 * k / 5, (16 * k + 11) / 5 - 16 * k / 5,                           \
                            (16 * k + 12) / 5 - 16 * k / 5, (16 * k + 13) / 5 - 16 * k / 5,                           \
                            (16 * k + 14) / 5 - 16 * k / 5, (16 * k + 15) / 5 - 16 * k / 5)
#else
#define LV_LANES_FIVE(v, k)                                                                                            \
    __builtin_shuffle(v, Lanes{(16 * k + 0) / 5 - 16 * k / 5, (16 * k + 1) / 5 - 16 * k / 5,                          \
                               (16 * k + 2) / 5 - 16 * k / 5, (16 * k + 3) / 5 - 16 * k / 5,                          \
                               (16 * k + 4) / 5 - 16 * k / 5, (16 * k + 5) / 5 - 16 * k / 5,                          \
                               (16 * k + 6) / 5 - 16 * k / 5, (16 * k + 7) / 5 - 16 * k / 5,                          \
                               (16 * k + 8) / 5 - 16 * k / 5, (16 * k + 9) / 5 - 16 * k / 5,                          \
                               (16 * k + 10) / 5 - 16 * k / 5, (16 * k + 11) / 5 - 16 * k / 5,                        \
                               (16 * k + 12) / 5 - 16 * k / 5, (16 * k + 13) / 5 - 16 * k / 5,                        \
                               (16 * k + 14) / 5 - 16 * k / 5, (16 * k + 15) / 5 - 16 * k / 5})
#endif
    const Lanes v0 = LoadLanes(in), v1 = LoadLanes(in + 3), v2 = LoadLanes(in + 6), v3 = LoadLanes(in + 9),
                v4 = LoadLanes(in + 12);
    StoreLanes(d, LV_LANES_FIVE(v0, 0));
    StoreLanes(d + 16, LV_LANES_FIVE(v1, 1));
    StoreLanes(d + 32, LV_LANES_FIVE(v2, 2));
    StoreLanes(d + 48, LV_LANES_FIVE(v3, 3));
    StoreLanes(d + 64, LV_LANES_FIVE(v4, 4));
#undef LV_LANES_FIVE
}

// Sixteen pixels, each three times: 48 pixels in three vectors. Output vector k
// takes its low half from one 128-bit half of p and its high half from one, so
// it is a shuffle within halves of p, or of p with one half copied into both.
#if defined(__clang__)
#define LV_LANES_QUADS(q, ...) __builtin_shufflevector(q, q, __VA_ARGS__)
#define LV_LANES_WITHIN(v, ...) __builtin_shufflevector(v, v, __VA_ARGS__)
#else
#define LV_LANES_QUADS(q, ...) __builtin_shuffle(q, Quads{__VA_ARGS__})
#define LV_LANES_WITHIN(v, ...) __builtin_shuffle(v, Lanes{__VA_ARGS__})
#endif
LV_LANES_INLINE void Triple(const Lanes &p, Lanes out[3])
{
    typedef uint64_t Quads __attribute__((vector_size(32)));
    const Lanes low = (Lanes)LV_LANES_QUADS((Quads)p, 0, 1, 0, 1), high = (Lanes)LV_LANES_QUADS((Quads)p, 2, 3, 2, 3);
    out[0] = LV_LANES_WITHIN(low, 0, 0, 0, 1, 1, 1, 2, 2, 10, 11, 11, 11, 12, 12, 12, 13);
    out[1] = LV_LANES_WITHIN(p, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
    out[2] = LV_LANES_WITHIN(high, 2, 3, 3, 3, 4, 4, 4, 5, 13, 13, 14, 14, 14, 15, 15, 15);
}
// Sixteen pixels of `body` twice and then one of `last`, in turns: the tripled
// body with every third pixel taken from the tripled `last` (a fixed blend).
LV_LANES_INLINE void TripleWithLast(const Lanes &body, const Lanes &last, Lanes out[3])
{
    Lanes b[3], l[3];
    Triple(body, b);
    Triple(last, l);
#if defined(__clang__)
    out[0] = __builtin_shufflevector(b[0], l[0], 0, 1, 18, 3, 4, 21, 6, 7, 24, 9, 10, 27, 12, 13, 30, 15);
    out[1] = __builtin_shufflevector(b[1], l[1], 0, 17, 2, 3, 20, 5, 6, 23, 8, 9, 26, 11, 12, 29, 14, 15);
    out[2] = __builtin_shufflevector(b[2], l[2], 16, 1, 2, 19, 4, 5, 22, 7, 8, 25, 10, 11, 28, 13, 14, 31);
#else
    out[0] = __builtin_shuffle(b[0], l[0], Lanes{0, 1, 18, 3, 4, 21, 6, 7, 24, 9, 10, 27, 12, 13, 30, 15});
    out[1] = __builtin_shuffle(b[1], l[1], Lanes{0, 17, 2, 3, 20, 5, 6, 23, 8, 9, 26, 11, 12, 29, 14, 15});
    out[2] = __builtin_shuffle(b[2], l[2], Lanes{16, 1, 2, 19, 4, 5, 22, 7, 8, 25, 10, 11, 28, 13, 14, 31});
#endif
}
#undef LV_LANES_QUADS
#undef LV_LANES_WITHIN

// 16 pixels each of three columns as 48 pixels, the columns taking turns. Each
// half of a vector is interleaved on its own (shuffles that stay within 128-bit
// halves are cheap): r[k] holds pixels 8k..8k+7 of the first 24 in its low half
// and of the last 24 in its high half.
LV_LANES_INLINE void Interleave3InHalves(const Lanes &p0, const Lanes &p1, const Lanes &p2, Lanes r[3])
{
#if defined(__clang__)
#define LV_LANES_PICK(a, ...) __builtin_shufflevector(a, Lanes{}, __VA_ARGS__)
#else
#define LV_LANES_PICK(a, ...) __builtin_shuffle(a, Lanes{}, Lanes{__VA_ARGS__})
#endif
    // Lane indices 16 and up pick zeros; each column fills every third pixel.
    r[0] = LV_LANES_PICK(p0, 0, 17, 18, 1, 20, 21, 2, 23, 8, 25, 26, 9, 28, 29, 10, 31) |
           LV_LANES_PICK(p1, 16, 0, 18, 19, 1, 21, 22, 2, 24, 8, 26, 27, 9, 29, 30, 10) |
           LV_LANES_PICK(p2, 16, 17, 0, 19, 20, 1, 22, 23, 24, 25, 8, 27, 28, 9, 30, 31);
    r[1] = LV_LANES_PICK(p0, 16, 3, 18, 19, 4, 21, 22, 5, 24, 11, 26, 27, 12, 29, 30, 13) |
           LV_LANES_PICK(p1, 16, 17, 3, 19, 20, 4, 22, 23, 24, 25, 11, 27, 28, 12, 30, 31) |
           LV_LANES_PICK(p2, 2, 17, 18, 3, 20, 21, 4, 23, 10, 25, 26, 11, 28, 29, 12, 31);
    r[2] = LV_LANES_PICK(p0, 16, 17, 6, 19, 20, 7, 22, 23, 24, 25, 14, 27, 28, 15, 30, 31) |
           LV_LANES_PICK(p1, 5, 17, 18, 6, 20, 21, 7, 23, 13, 25, 26, 14, 28, 29, 15, 31) |
           LV_LANES_PICK(p2, 16, 5, 18, 19, 6, 21, 22, 7, 24, 13, 26, 27, 14, 29, 30, 15);
#undef LV_LANES_PICK
}
// Three whole vectors of 16 pixels: the halves put back in order (one 128-bit
// lane move each), stored as three wide words.
LV_LANES_INLINE void Interleave3(const Lanes &p0, const Lanes &p1, const Lanes &p2, Lanes out[3])
{
    typedef uint64_t Quads __attribute__((vector_size(32)));
    Lanes r[3];
    Interleave3InHalves(p0, p1, p2, r);
    const Quads q0 = (Quads)r[0], q1 = (Quads)r[1], q2 = (Quads)r[2];
#if defined(__clang__)
    out[0] = (Lanes)__builtin_shufflevector(q0, q1, 0, 1, 4, 5); // pixels 0-7, 8-15
    out[1] = (Lanes)__builtin_shufflevector(q2, q0, 0, 1, 6, 7); // 16-23, 24-31
    out[2] = (Lanes)__builtin_shufflevector(q1, q2, 2, 3, 6, 7); // 32-39, 40-47
#else
    out[0] = (Lanes)__builtin_shuffle(q0, q1, Quads{0, 1, 4, 5});
    out[1] = (Lanes)__builtin_shuffle(q2, q0, Quads{0, 1, 6, 7});
    out[2] = (Lanes)__builtin_shuffle(q1, q2, Quads{2, 3, 6, 7});
#endif
}
LV_LANES_INLINE void StoreInterleaved3(uint16_t *d, const Lanes &p0, const Lanes &p1, const Lanes &p2)
{
    Lanes out[3];
    Interleave3(p0, p1, p2, out);
    // Three separate stores: as a loop the compiler would copy through the stack.
    StoreLanes(d, out[0]);
    StoreLanes(d + kLanes, out[1]);
    StoreLanes(d + 2 * kLanes, out[2]);
}
// The same, writing only the triples whose lane of `keep` is set.
LV_LANES_INLINE void StoreInterleaved3Where(uint16_t *d, const Lanes &p0, const Lanes &p1, const Lanes &p2,
                                            const Lanes &keep)
{
    Lanes r[3], keepR[3];
    Interleave3InHalves(p0, p1, p2, r);
    Interleave3InHalves(keep, keep, keep, keepR);
    uint16_t out[48], mask[48];
    for (int k = 0; k < 3; k++) {
        memcpy(out + 8 * k, &r[k], 16);
        memcpy(out + 24 + 8 * k, reinterpret_cast<const uint16_t *>(&r[k]) + 8, 16);
        memcpy(mask + 8 * k, &keepR[k], 16);
        memcpy(mask + 24 + 8 * k, reinterpret_cast<const uint16_t *>(&keepR[k]) + 8, 16);
    }
    for (int k = 0; k < 3; k++)
        StoreLanes(d + k * kLanes,
                   Select(LoadLanes(mask + k * kLanes), LoadLanes(out + k * kLanes), LoadLanes(d + k * kLanes)));
}
#endif

} // namespace lv_lanes
