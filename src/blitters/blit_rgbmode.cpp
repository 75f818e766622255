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
    uint16_t *first, *striped, *expanded, *dimmed, *scaled;
    RGBModeKind(Scratch &sc, int)
        : first(sc.Line(0)), striped(sc.Line(1)), expanded(sc.Line(2)), dimmed(sc.Line(3)), scaled(sc.Line(4))
    {
    }
    LV_ROW_INLINE void Build(const uint16_t *s, const uint16_t *, int y, int covered)
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
