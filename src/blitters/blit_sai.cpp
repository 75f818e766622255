// 2xSaI, Super 2xSaI and Super Eagle: the Scale Advance Interpolation family.
//
// Each source pixel becomes a 2 x 2 block chosen from its 4 x 4 neighbourhood
// (rows y - 1 to y + 2, columns x - 1 to x + 2) by the published decision rules.
// No change tracking: every destination pixel is recomputed on every call.
// Neighbours outside the picture are read unclamped: the rows come from the
// source slot's margins, the columns from the adjacent memory (the neighbouring
// rows' end or start pixels), exactly as the frame slots lay them out.
//
// Size 4 is two passes of size 2, the intermediate kept in the delta buffer.
#include <cstddef>
#include <cstring>
#include <vector>

#include "blitters/blit_lanes.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

// The rules are written once, branch-free, over a lane type (blit_lanes.h): wide
// rows go 16 pixels at a time, the rest pixel by pixel, with identical results.
namespace
{

using namespace lv_lanes;

// The 4 x 4 neighbourhood, named by row (a = y - 1, b = y, c = y + 1, d = y + 2)
// and column (0 = x - 1, 1 = x, 2 = x + 1, 3 = x + 2). The pixel itself is b1;
// the 2 x 2 core that the rules look at first is b1 b2 / c1 c2.
template <class P> struct Neighbourhood {
    P a0, a1, a2, a3;
    P b0, b1, b2, b3;
    P c0, c1, c2, c3;
    P d0, d1, d2, d3;
};

// One output block: top-left, top-right, bottom-left, bottom-right.
template <class P> struct Block {
    P tl, tr, bl, br;
};

// RGB 5-5-5 arithmetic; on one pixel these are KSAverage and friends.
template <class P> LV_LANES_INLINE P Interpolate(const P &a, const P &b)
{
    // The same as (a & b & LOW_BIT_MASK) + half a + half b in fewer operations:
    // the 16-bit sum less each component's odd low bit (and bit 15 of a ^ b,
    // which drops the inputs' bit 15) halves component by component.
    const P sum = (P)(a + b - ((a ^ b) & (LOW_BIT_MASK | 0x8000)));
    return (P)(sum >> 1);
}

template <class P> LV_LANES_INLINE P Quarter(const P &p)
{
    return (P)((p >> 2) & QUARTER_MASK);
}

template <class P> LV_LANES_INLINE P QInterpolate(const P &p, const P &q, const P &r, const P &s)
{
    const P lowSum = (P)((p & LOW_2BITS_MASK) + (q & LOW_2BITS_MASK) + (r & LOW_2BITS_MASK) + (s & LOW_2BITS_MASK));
    return (P)(Quarter(p) + Quarter(q) + Quarter(r) + Quarter(s) + ((lowSum >> 2) & LOW_2BITS_MASK));
}

// Three parts b to one part a.
// Per component floor((a + 3b) / 4), which is the mean of b and the mean of a
// and b (a + b = 2m + odd part, and floor((2(m + b) + odd) / 4) = floor((m + b) / 2)).
template <class P> LV_LANES_INLINE P Blend31(const P &a, const P &b)
{
    return Interpolate(Interpolate(a, b), b);
}

// The vote of two further neighbours c and d between colours a and b: +1 when
// they side with a rather than b, -1 when with b, 0 when undecided. (A colour
// loses its say only when both neighbours match it.)
template <class P> LV_LANES_INLINE typename SignedOf<P>::type Vote(const P &a, const P &b, const P &c, const P &d)
{
    const P ac = Eq(a, c), ad = Eq(a, d);
    const P bothA = ac & ad;
    const P bothB = Eq(b, c) & ~ac & Eq(b, d) & ~ad;
    // [not bothA] - [not bothB], where Signed counts true as -1.
    return (typename SignedOf<P>::type)(Signed((P)~bothB) - Signed((P)~bothA));
}

// 2xSaI. The top-left pixel is always the source pixel.
struct Kernel2xSaI {
    template <class P> static LV_LANES_INLINE Block<P> Apply(const Neighbourhood<P> &n)
    {
        const P falling = Eq(n.b1, n.c2), rising = Eq(n.b2, n.c1);
        const P onlyFalling = falling & ~rising; // the diagonal b1-c2 is a line
        const P onlyRising = rising & ~falling;  // the diagonal b2-c1 is a line
        const P both = falling & rising;
        const P neither = (P) ~(falling | rising);

        const P b1a2 = Eq(n.b1, n.a2), b1a0 = Eq(n.b1, n.a0), b2a1 = Eq(n.b2, n.a1);
        const P b1c0 = Eq(n.b1, n.c0), b0c1 = Eq(n.b0, n.c1);

        Block<P> o;
        o.tl = n.b1;

        // Top-right: b1, b2 or their average.
        const P rightKeepsB1 = Eq(n.b1, n.c1) & b1a2 & ~b2a1 & Eq(n.b2, n.a3);
        const P rightTakesB2 = b2a1 & Eq(n.b2, n.c2) & ~b1a2 & b1a0;
        const P trB1 = (onlyFalling & ((Eq(n.b1, n.a1) & Eq(n.b2, n.c3)) | rightKeepsB1)) | (neither & rightKeepsB1);
        const P trB2 =
            (onlyRising & ((Eq(n.b2, n.a2) & b1c0) | rightTakesB2)) | (neither & ~rightKeepsB1 & rightTakesB2);
        o.tr = Select(trB1, n.b1, Select(trB2, n.b2, Interpolate(n.b1, n.b2)));

        // Bottom-left: b1, c1 or their average.
        const P belowKeepsB1 = Eq(n.b1, n.b2) & b1c0 & ~b0c1 & Eq(n.c1, n.d0);
        const P belowTakesC1 = b0c1 & Eq(n.c1, n.c2) & ~b1c0 & b1a0;
        const P blB1 = (onlyFalling & ((Eq(n.b1, n.b0) & Eq(n.c1, n.d2)) | belowKeepsB1)) | (neither & belowKeepsB1);
        const P blC1 =
            (onlyRising & ((Eq(n.c1, n.c0) & b1a2) | belowTakesC1)) | (neither & ~belowKeepsB1 & belowTakesC1);
        o.bl = Select(blB1, n.b1, Select(blC1, n.c1, Interpolate(n.b1, n.c1)));

        // Bottom-right: the line's colour, or where both diagonals are lines the
        // wider neighbourhood's vote, or the four-way average.
        const auto r = (typename SignedOf<P>::type)(Vote(n.b1, n.b2, n.b0, n.a1) - Vote(n.b2, n.b1, n.b3, n.a2) -
                                                    Vote(n.b2, n.b1, n.c0, n.d1) + Vote(n.b1, n.b2, n.c3, n.d2));
        const P brB1 = onlyFalling | (both & Positive(r));
        const P brB2 = onlyRising | (both & Negative(r));
        o.br = Select(brB1, n.b1, Select(brB2, n.b2, QInterpolate(n.b1, n.b2, n.c1, n.c2)));
        return o;
    }
};

// The four votes shared by Super 2xSaI and Super Eagle when both diagonals are lines.
template <class P> LV_LANES_INLINE typename SignedOf<P>::type CrossingVote(const Neighbourhood<P> &n)
{
    return (typename SignedOf<P>::type)(Vote(n.b2, n.b1, n.c0, n.d1) + Vote(n.b2, n.b1, n.b0, n.a1) +
                                        Vote(n.b2, n.b1, n.d2, n.c3) + Vote(n.b2, n.b1, n.a2, n.b3));
}

// Super 2xSaI.
struct KernelSuper2xSaI {
    template <class P> static LV_LANES_INLINE Block<P> Apply(const Neighbourhood<P> &n)
    {
        const P rising = Eq(n.c1, n.b2), falling = Eq(n.b1, n.c2);
        const P onlyRising = rising & ~falling, onlyFalling = falling & ~rising, both = rising & falling;
        const auto r = CrossingVote(n);
        const P crossing = Select(Positive(r), n.b2, Select(Negative(r), n.b1, Interpolate(n.b1, n.b2)));

        const P b2c2 = Eq(n.b2, n.c2), b1c1 = Eq(n.b1, n.c1);
        // Right column where neither diagonal is a line: a 3:1 blend along a line
        // that runs on past the block, else the average of the row.
        const P brTowardsC2 = b2c2 & Eq(n.c2, n.d1) & ~Eq(n.c1, n.d2) & ~Eq(n.c2, n.d0);
        const P brTowardsC1 = b1c1 & Eq(n.c1, n.d2) & ~Eq(n.d1, n.c2) & ~Eq(n.c1, n.d3);
        const P brOpen =
            Select(brTowardsC2, Blend31(n.c1, n.c2), Select(brTowardsC1, Blend31(n.c2, n.c1), Interpolate(n.c1, n.c2)));
        const P trTowardsB2 = b2c2 & Eq(n.b2, n.a1) & ~Eq(n.b1, n.a2) & ~Eq(n.b2, n.a0);
        const P trTowardsB1 = b1c1 & Eq(n.b1, n.a2) & ~Eq(n.a1, n.b2) & ~Eq(n.b1, n.a3);
        const P trOpen =
            Select(trTowardsB2, Blend31(n.b1, n.b2), Select(trTowardsB1, Blend31(n.b2, n.b1), Interpolate(n.b1, n.b2)));

        Block<P> o;
        o.br = Select(onlyRising, n.c1, Select(onlyFalling, n.b1, Select(both, crossing, brOpen)));
        o.tr = Select(onlyRising, n.c1, Select(onlyFalling, n.b1, Select(both, crossing, trOpen)));

        // Left column: the pixel itself unless a line passes the corner.
        const P c1b0 = Eq(n.b0, n.c1);
        const P blBlend = (onlyFalling & Eq(n.b0, n.b1) & ~Eq(n.b1, n.d2)) |
                          (Eq(n.b1, n.c0) & Eq(n.b2, n.b1) & ~c1b0 & ~Eq(n.b1, n.d0));
        o.bl = Select(blBlend, Interpolate(n.c1, n.b1), n.c1);
        const P tlBlend = (onlyRising & Eq(n.c0, n.c1) & ~Eq(n.c1, n.a2)) |
                          (c1b0 & Eq(n.c2, n.c1) & ~Eq(n.c0, n.b1) & ~Eq(n.c1, n.a0));
        o.tl = Select(tlBlend, Interpolate(n.c1, n.b1), n.b1);
        return o;
    }
};

// Super Eagle.
struct KernelSuperEagle {
    template <class P> static LV_LANES_INLINE Block<P> Apply(const Neighbourhood<P> &n)
    {
        const P rising = Eq(n.c1, n.b2), falling = Eq(n.b1, n.c2);
        const P onlyRising = rising & ~falling, onlyFalling = falling & ~rising, both = rising & falling;
        const P rowMean = Interpolate(n.b1, n.b2);
        const P lowerMean = Interpolate(n.c1, n.c2);

        // The rising diagonal is a line: it fills the top-right and bottom-left, and
        // pulls the other two corners towards it where it runs on past the block.
        const P tlRising = Select(Eq(n.c0, n.c1) | Eq(n.b2, n.a2), Interpolate(n.c1, Interpolate(n.c1, n.b1)), rowMean);
        const P brRising = Select(Eq(n.b2, n.b3) | Eq(n.c1, n.d1), Interpolate(n.c1, lowerMean), lowerMean);
        // The falling diagonal is a line: it fills the top-left and bottom-right.
        const P trFalling = Select(Eq(n.a1, n.b1) | Eq(n.c2, n.c3), Interpolate(n.b1, rowMean), rowMean);
        const P blFalling =
            Select(Eq(n.c2, n.d2) | Eq(n.b0, n.b1), Interpolate(n.b1, Interpolate(n.b1, n.c1)), lowerMean);
        // Both: the vote picks the diagonal that keeps its colour; the other corners average.
        const auto r = CrossingVote(n);
        const P fallingCorners = Select(Positive(r), rowMean, n.b1);
        const P risingCorners = Select(Negative(r), rowMean, n.c1);
        // Neither: each corner is 3:1 its own pixel and the other diagonal's average.
        const P risingMean = Interpolate(n.c1, n.b2), fallingMean = Interpolate(n.b1, n.c2);

        Block<P> o;
        o.tl = Select(onlyRising, tlRising,
                      Select(onlyFalling, n.b1, Select(both, fallingCorners, Blend31(risingMean, n.b1))));
        o.br = Select(onlyRising, brRising,
                      Select(onlyFalling, n.b1, Select(both, fallingCorners, Blend31(risingMean, n.c2))));
        o.tr = Select(onlyRising, n.c1,
                      Select(onlyFalling, trFalling, Select(both, risingCorners, Blend31(fallingMean, n.b2))));
        o.bl = Select(onlyRising, n.c1,
                      Select(onlyFalling, blFalling, Select(both, risingCorners, Blend31(fallingMean, n.c1))));
        return o;
    }
};

template <class Kernel>
LV_LANES_INLINE void Scale2x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch, int32_t width,
                             int32_t height)
{
    for (int32_t y = 0; y < height; y++) {
        const uint16_t *above = RowAt(src, srcPitch, y - 1);
        const uint16_t *row = RowAt(src, srcPitch, y);
        const uint16_t *below = RowAt(src, srcPitch, y + 1);
        const uint16_t *below2 = RowAt(src, srcPitch, y + 2);
        uint16_t *top = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y);
        uint16_t *bottom = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y + 1);
        int32_t x = 0;
#if defined(LV_LANES_VECTORS)
        for (; x + kLanes <= width; x += kLanes) {
            Neighbourhood<Lanes> n;
            n.a0 = LoadLanes(above + x - 1), n.a1 = LoadLanes(above + x);
            n.a2 = LoadLanes(above + x + 1), n.a3 = LoadLanes(above + x + 2);
            n.b0 = LoadLanes(row + x - 1), n.b1 = LoadLanes(row + x);
            n.b2 = LoadLanes(row + x + 1), n.b3 = LoadLanes(row + x + 2);
            n.c0 = LoadLanes(below + x - 1), n.c1 = LoadLanes(below + x);
            n.c2 = LoadLanes(below + x + 1), n.c3 = LoadLanes(below + x + 2);
            n.d0 = LoadLanes(below2 + x - 1), n.d1 = LoadLanes(below2 + x);
            n.d2 = LoadLanes(below2 + x + 1), n.d3 = LoadLanes(below2 + x + 2);
            const Block<Lanes> o = Kernel::Apply(n);
            StoreInterleaved(top + 2 * x, o.tl, o.tr);
            StoreInterleaved(bottom + 2 * x, o.bl, o.br);
        }
#endif
        for (; x < width; x++) {
            const Neighbourhood<uint16_t> n = {above[x - 1],  above[x],  above[x + 1],  above[x + 2],
                                               row[x - 1],    row[x],    row[x + 1],    row[x + 2],
                                               below[x - 1],  below[x],  below[x + 1],  below[x + 2],
                                               below2[x - 1], below2[x], below2[x + 1], below2[x + 2]};
            const Block<uint16_t> o = Kernel::Apply(n);
            StorePair(top + 2 * x, o.tl, o.tr);
            StorePair(bottom + 2 * x, o.bl, o.br);
        }
    }
}

// Size 4: the size 2 pass from the source into a scratch image inside the delta
// buffer (width * 8 bytes in, pitch width * 4 + 8 bytes: spare room at the end of
// each row), then the size 2 pass again from the scratch image to the destination.
template <class Kernel>
LV_LANES_INLINE void Scale4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                             int32_t width, int32_t height)
{
    if (width <= 0 || height <= 0) return;
    const size_t pitch = (size_t)width * 4 + 8;
    const size_t offset = (size_t)width * 8;
    const size_t deltaBytes = (size_t)width * ((size_t)height + 128) * 16;
    // The second pass reads one scratch row and one pixel before the image and two
    // rows and two pixels past it.
    const size_t before = pitch + 2;
    const size_t end = offset + (2 * (size_t)height + 1) * pitch + (2 * (size_t)width + 2) * 2;
    if (before <= offset && end <= deltaBytes) {
        uint16_t *scratch = reinterpret_cast<uint16_t *>(delta + offset);
        Scale2x<Kernel>(src, srcPitch, scratch, (uint32_t)pitch, width, height);
        Scale2x<Kernel>(scratch, (uint32_t)pitch, dst, dstPitch, width * 2, height * 2);
        return;
    }
    // Very narrow pictures (width 1 or 2, or width 1 and a tall picture): the reads
    // around the scratch image would leave the delta buffer. Run the passes in a
    // copy that has the delta buffer's bytes where they exist and zeros beyond, so
    // nothing outside the buffer is touched and the result stays the same wherever
    // the reads stay inside.
    const size_t lead = before > offset ? before - offset : 0;
    std::vector<uint8_t> padded(lead + (end > deltaBytes ? end : deltaBytes), 0);
    uint8_t *copy = padded.data() + lead;
    memcpy(copy, delta, deltaBytes);
    uint16_t *scratch = reinterpret_cast<uint16_t *>(copy + offset);
    Scale2x<Kernel>(src, srcPitch, scratch, (uint32_t)pitch, width, height);
    memcpy(delta, copy, deltaBytes);
    Scale2x<Kernel>(scratch, (uint32_t)pitch, dst, dstPitch, width * 2, height * 2);
}

} // namespace

LV_LANES_CLONES void Blit2xSaI_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch,
                                  int32_t width, int32_t height)
{
    Scale2x<Kernel2xSaI>(src, srcPitch, dst, dstPitch, width, height);
}

LV_LANES_CLONES void Blit2xSaI_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                  uint32_t dstPitch, int32_t width, int32_t height)
{
    Scale4x<Kernel2xSaI>(src, srcPitch, delta, dst, dstPitch, width, height);
}

LV_LANES_CLONES void BlitSuper2xSaI_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst,
                                       uint32_t dstPitch, int32_t width, int32_t height)
{
    Scale2x<KernelSuper2xSaI>(src, srcPitch, dst, dstPitch, width, height);
}

LV_LANES_CLONES void BlitSuper2xSaI_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                       uint32_t dstPitch, int32_t width, int32_t height)
{
    Scale4x<KernelSuper2xSaI>(src, srcPitch, delta, dst, dstPitch, width, height);
}

LV_LANES_CLONES void BlitSuperEagle_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst,
                                       uint32_t dstPitch, int32_t width, int32_t height)
{
    Scale2x<KernelSuperEagle>(src, srcPitch, dst, dstPitch, width, height);
}

LV_LANES_CLONES void BlitSuperEagle_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst,
                                       uint32_t dstPitch, int32_t width, int32_t height)
{
    Scale4x<KernelSuperEagle>(src, srcPitch, delta, dst, dstPitch, width, height);
}
