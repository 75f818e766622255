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
    uint16_t *first, *striped, *expanded, *dimmed, *scaled, *masks3;
    RGBModeKind(Scratch &sc, int)
        : first(sc.Line(0)), striped(sc.Line(1)), expanded(sc.Line(2)), dimmed(sc.Line(3)), scaled(sc.Line(4)),
          masks3(sc.Line(5))
    {
    }
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int y, int covered)
    {
        if constexpr (N == 4)
            BuildFromMasks(s, y, covered);
        else
            BuildGeneric(s, y, covered);
    }

    // The source row through each mask once, then whole words (measured faster at 4x only).
    LV_ROW_INLINE void BuildFromMasks(const uint16_t *s, int y, int covered)
    {
        uint16_t *m0 = expanded, *m1 = dimmed, *m2 = scaled, *m3 = masks3;
        for (int x = 0; x < covered; x++) {
            m0[x] = Scale(s[x], kStripe[0][0], kStripe[0][1], kStripe[0][2]);
            m1[x] = Scale(s[x], kStripe[1][0], kStripe[1][1], kStripe[1][2]);
            m2[x] = Scale(s[x], kStripe[2][0], kStripe[2][1], kStripe[2][2]);
            m3[x] = Scale(s[x], kStripe[3][0], kStripe[3][1], kStripe[3][2]);
        }
        if constexpr (N == 2) {
            // A pair (a, b): columns 0 and 1 from a, 2 and 3 from b.
            const int pairs = covered / 2;
            for (int i = 0; i < pairs; i++) {
                const uint64_t st = (uint64_t)m0[2 * i] | (uint64_t)m1[2 * i] << 16 | (uint64_t)m2[2 * i + 1] << 32 |
                                    (uint64_t)m3[2 * i + 1] << 48;
                const uint64_t dm = (uint64_t)m0[2 * i] * 0x10001u | ((uint64_t)m0[2 * i + 1] * 0x10001u) << 32;
                memcpy(striped + 4 * i, &st, 8);
                memcpy(first + 4 * i, ((i ^ y) & 1) ? &st : &dm, 8);
            }
        } else {
            for (int x = 0; x < covered; x++) {
                const uint64_t st =
                    (uint64_t)m0[x] | (uint64_t)m1[x] << 16 | (uint64_t)m2[x] << 32 | (uint64_t)m3[x] << 48;
                const uint64_t dm = (uint64_t)m0[x] * 0x0001000100010001ull;
                memcpy(striped + 4 * x, &st, 8);
                memcpy(first + 4 * x, (((x >> 1) ^ y) & 1) ? &st : &dm, 8);
            }
        }
    }

    LV_ROW_INLINE void BuildGeneric(const uint16_t *s, int y, int covered)
    {
        const int count = covered * N;
        // The stripe: each output pixel through its column's mask.
        Replicate<N>(s, expanded, covered);
        const int words = count / 4;
        for (int i = 0; i < words; i++)
            for (int j = 0; j < 4; j++)
                striped[4 * i + j] = Scale(expanded[4 * i + j], kStripe[j][0], kStripe[j][1], kStripe[j][2]);
        for (int X = words * 4; X < count; X++)
            striped[X] = Scale(expanded[X], kStripe[X & 3][0], kStripe[X & 3][1], kStripe[X & 3][2]);
        // The first row: the stripe, with the dimmed pairs (x / 2 of the row's
        // parity) at 89 in all components (the mask of column 0).
        for (int x = 0; x < covered; x++)
            scaled[x] = Scale(s[x], kStripe[0][0], kStripe[0][1], kStripe[0][2]);
        Replicate<N>(scaled, dimmed, covered);
        memcpy(first, striped, (size_t)count * 2);
        for (int x = (y & 1) * 2; x < covered; x += 4) {
            const int pixels = x + 2 <= covered ? 2 : covered - x;
            memcpy(first + N * x, dimmed + N * x, (size_t)pixels * N * 2);
        }
    }
    const uint16_t *Line(int, int r) const { return r == 0 ? first : striped; }
    std::array<uint16_t **, 2> OutputSlots() { return {&first, &striped}; }
};

} // namespace

void BlitRGBMode_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                    int32_t width, int32_t height)
{
    BlitTracked<RGBModeKind<2>>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitRGBMode_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                    int32_t width, int32_t height)
{
    BlitTracked<RGBModeKind<3>>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitRGBMode_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                    int32_t width, int32_t height)
{
    BlitTracked<RGBModeKind<4>>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitRGBMode_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                    int32_t width, int32_t height)
{
    BlitTracked<RGBModeKind<5>>(src, srcPitch, delta, dst, dstPitch, width, height);
}
