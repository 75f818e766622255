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

#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace
{

// The 4 x 4 neighbourhood, named by row (a = y - 1, b = y, c = y + 1, d = y + 2)
// and column (0 = x - 1, 1 = x, 2 = x + 1, 3 = x + 2). The pixel itself is b1;
// the 2 x 2 core that the rules look at first is b1 b2 / c1 c2.
struct Neighbourhood {
    uint16_t a0, a1, a2, a3;
    uint16_t b0, b1, b2, b3;
    uint16_t c0, c1, c2, c3;
    uint16_t d0, d1, d2, d3;
};

// One output block: top-left, top-right, bottom-left, bottom-right.
struct Block {
    uint16_t tl, tr, bl, br;
};

inline uint16_t Interpolate(uint16_t a, uint16_t b)
{
    return KSAverage(a, b);
}

inline uint16_t QInterpolate(uint16_t p, uint16_t q, uint16_t r, uint16_t s)
{
    const unsigned low =
        ((unsigned)(p & LOW_2BITS_MASK) + (q & LOW_2BITS_MASK) + (r & LOW_2BITS_MASK) + (s & LOW_2BITS_MASK)) >> 2;
    return (uint16_t)(KSQuarter(p) + KSQuarter(q) + KSQuarter(r) + KSQuarter(s) + (low & LOW_2BITS_MASK));
}

// Three parts b to one part a.
inline uint16_t Blend31(uint16_t a, uint16_t b)
{
    const unsigned low = ((unsigned)(a & LOW_2BITS_MASK) + 3u * (b & LOW_2BITS_MASK)) >> 2;
    return (uint16_t)((low & LOW_2BITS_MASK) + KSQuarter(a) + 3u * KSQuarter(b));
}

// The vote of two further neighbours c and d between colours a and b:
// +1 when they side with a rather than b, -1 when with b, 0 when undecided.
inline int Vote(uint16_t a, uint16_t b, uint16_t c, uint16_t d)
{
    int forA = 0, forB = 0;
    if (a == c)
        forA++;
    else if (b == c)
        forB++;
    if (a == d)
        forA++;
    else if (b == d)
        forB++;
    return (forA <= 1 ? 1 : 0) - (forB <= 1 ? 1 : 0);
}

// 2xSaI. The top-left pixel is always the source pixel.
struct Kernel2xSaI {
    static Block Apply(const Neighbourhood &n)
    {
        Block o;
        o.tl = n.b1;
        if (n.b1 == n.c2 && n.b2 != n.c1) {
            // The falling diagonal b1-c2 is a line.
            const bool keepRight =
                (n.b1 == n.a1 && n.b2 == n.c3) || (n.b1 == n.c1 && n.b1 == n.a2 && n.b2 != n.a1 && n.b2 == n.a3);
            o.tr = keepRight ? n.b1 : Interpolate(n.b1, n.b2);
            const bool keepBelow =
                (n.b1 == n.b0 && n.c1 == n.d2) || (n.b1 == n.b2 && n.b1 == n.c0 && n.b0 != n.c1 && n.c1 == n.d0);
            o.bl = keepBelow ? n.b1 : Interpolate(n.b1, n.c1);
            o.br = n.b1;
        } else if (n.b2 == n.c1 && n.b1 != n.c2) {
            // The rising diagonal b2-c1 is a line.
            const bool takeRight =
                (n.b2 == n.a2 && n.b1 == n.c0) || (n.b2 == n.a1 && n.b2 == n.c2 && n.b1 != n.a2 && n.b1 == n.a0);
            o.tr = takeRight ? n.b2 : Interpolate(n.b1, n.b2);
            const bool takeBelow =
                (n.c1 == n.c0 && n.b1 == n.a2) || (n.c1 == n.b0 && n.c1 == n.c2 && n.b1 != n.c0 && n.b1 == n.a0);
            o.bl = takeBelow ? n.c1 : Interpolate(n.b1, n.c1);
            o.br = n.b2;
        } else if (n.b1 == n.c2 && n.b2 == n.c1) {
            if (n.b1 == n.b2) {
                o.tr = o.bl = o.br = n.b1;
            } else {
                // Two crossing diagonals: the wider neighbourhood votes for the corner.
                o.tr = Interpolate(n.b1, n.b2);
                o.bl = Interpolate(n.b1, n.c1);
                const int r = Vote(n.b1, n.b2, n.b0, n.a1) - Vote(n.b2, n.b1, n.b3, n.a2) -
                              Vote(n.b2, n.b1, n.c0, n.d1) + Vote(n.b1, n.b2, n.c3, n.d2);
                o.br = r > 0 ? n.b1 : r < 0 ? n.b2 : QInterpolate(n.b1, n.b2, n.c1, n.c2);
            }
        } else {
            o.br = QInterpolate(n.b1, n.b2, n.c1, n.c2);
            if (n.b1 == n.c1 && n.b1 == n.a2 && n.b2 != n.a1 && n.b2 == n.a3)
                o.tr = n.b1;
            else if (n.b2 == n.a1 && n.b2 == n.c2 && n.b1 != n.a2 && n.b1 == n.a0)
                o.tr = n.b2;
            else
                o.tr = Interpolate(n.b1, n.b2);
            if (n.b1 == n.b2 && n.b1 == n.c0 && n.b0 != n.c1 && n.c1 == n.d0)
                o.bl = n.b1;
            else if (n.c1 == n.b0 && n.c1 == n.c2 && n.b1 != n.c0 && n.b1 == n.a0)
                o.bl = n.c1;
            else
                o.bl = Interpolate(n.b1, n.c1);
        }
        return o;
    }
};

// The four votes shared by Super 2xSaI and Super Eagle when both diagonals are lines.
inline int CrossingVote(const Neighbourhood &n)
{
    return Vote(n.b2, n.b1, n.c0, n.d1) + Vote(n.b2, n.b1, n.b0, n.a1) + Vote(n.b2, n.b1, n.d2, n.c3) +
           Vote(n.b2, n.b1, n.a2, n.b3);
}

// Super 2xSaI.
struct KernelSuper2xSaI {
    static Block Apply(const Neighbourhood &n)
    {
        Block o;
        // The right column first.
        if (n.c1 == n.b2 && n.b1 != n.c2) {
            o.tr = o.br = n.c1;
        } else if (n.b1 == n.c2 && n.c1 != n.b2) {
            o.tr = o.br = n.b1;
        } else if (n.b1 == n.c2 && n.c1 == n.b2) {
            const int r = CrossingVote(n);
            o.tr = o.br = r > 0 ? n.b2 : r < 0 ? n.b1 : Interpolate(n.b1, n.b2);
        } else {
            if (n.b2 == n.c2 && n.c2 == n.d1 && n.c1 != n.d2 && n.c2 != n.d0)
                o.br = Blend31(n.c1, n.c2);
            else if (n.b1 == n.c1 && n.c1 == n.d2 && n.d1 != n.c2 && n.c1 != n.d3)
                o.br = Blend31(n.c2, n.c1);
            else
                o.br = Interpolate(n.c1, n.c2);

            if (n.b2 == n.c2 && n.b2 == n.a1 && n.b1 != n.a2 && n.b2 != n.a0)
                o.tr = Blend31(n.b1, n.b2);
            else if (n.b1 == n.c1 && n.b1 == n.a2 && n.a1 != n.b2 && n.b1 != n.a3)
                o.tr = Blend31(n.b2, n.b1);
            else
                o.tr = Interpolate(n.b1, n.b2);
        }
        // Then the left column.
        if (n.b1 == n.c2 && n.c1 != n.b2 && n.b0 == n.b1 && n.b1 != n.d2)
            o.bl = Interpolate(n.c1, n.b1);
        else if (n.b1 == n.c0 && n.b2 == n.b1 && n.b0 != n.c1 && n.b1 != n.d0)
            o.bl = Interpolate(n.c1, n.b1);
        else
            o.bl = n.c1;

        if (n.c1 == n.b2 && n.b1 != n.c2 && n.c0 == n.c1 && n.c1 != n.a2)
            o.tl = Interpolate(n.c1, n.b1);
        else if (n.b0 == n.c1 && n.c2 == n.c1 && n.c0 != n.b1 && n.c1 != n.a0)
            o.tl = Interpolate(n.c1, n.b1);
        else
            o.tl = n.b1;
        return o;
    }
};

// Super Eagle.
struct KernelSuperEagle {
    static Block Apply(const Neighbourhood &n)
    {
        Block o;
        if (n.c1 == n.b2 && n.b1 != n.c2) {
            // The rising diagonal is a line: it fills the top-right and bottom-left.
            o.tr = o.bl = n.c1;
            if (n.c0 == n.c1 || n.b2 == n.a2)
                o.tl = Interpolate(n.c1, Interpolate(n.c1, n.b1));
            else
                o.tl = Interpolate(n.b1, n.b2);
            if (n.b2 == n.b3 || n.c1 == n.d1)
                o.br = Interpolate(n.c1, Interpolate(n.c1, n.c2));
            else
                o.br = Interpolate(n.c1, n.c2);
        } else if (n.b1 == n.c2 && n.c1 != n.b2) {
            // The falling diagonal is a line: it fills the top-left and bottom-right.
            o.tl = o.br = n.b1;
            if (n.a1 == n.b1 || n.c2 == n.c3)
                o.tr = Interpolate(n.b1, Interpolate(n.b1, n.b2));
            else
                o.tr = Interpolate(n.b1, n.b2);
            if (n.c2 == n.d2 || n.b0 == n.b1)
                o.bl = Interpolate(n.b1, Interpolate(n.b1, n.c1));
            else
                o.bl = Interpolate(n.c1, n.c2);
        } else if (n.b1 == n.c2 && n.c1 == n.b2) {
            const int r = CrossingVote(n);
            if (r > 0) {
                o.tr = o.bl = n.c1;
                o.tl = o.br = Interpolate(n.b1, n.b2);
            } else if (r < 0) {
                o.tl = o.br = n.b1;
                o.tr = o.bl = Interpolate(n.b1, n.b2);
            } else {
                o.tl = o.br = n.b1;
                o.tr = o.bl = n.c1;
            }
        } else {
            const uint16_t rising = Interpolate(n.c1, n.b2);
            const uint16_t falling = Interpolate(n.b1, n.c2);
            o.br = Blend31(rising, n.c2);
            o.tl = Blend31(rising, n.b1);
            o.bl = Blend31(falling, n.c1);
            o.tr = Blend31(falling, n.b2);
        }
        return o;
    }
};

inline const uint16_t *RowAt(const uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<const uint16_t *>(reinterpret_cast<const uint8_t *>(base) + (ptrdiff_t)pitch * y);
}

inline uint16_t *RowAt(uint16_t *base, uint32_t pitch, ptrdiff_t y)
{
    return reinterpret_cast<uint16_t *>(reinterpret_cast<uint8_t *>(base) + (ptrdiff_t)pitch * y);
}

inline void StorePair(uint16_t *d, uint16_t left, uint16_t right)
{
    const uint32_t word = (uint32_t)left | ((uint32_t)right << 16); // lower address in the lower half
    memcpy(d, &word, 4);
}

template <class Kernel>
void Scale2x(const uint16_t *src, uint32_t srcPitch, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    for (int32_t y = 0; y < height; y++) {
        const uint16_t *above = RowAt(src, srcPitch, y - 1);
        const uint16_t *row = RowAt(src, srcPitch, y);
        const uint16_t *below = RowAt(src, srcPitch, y + 1);
        const uint16_t *below2 = RowAt(src, srcPitch, y + 2);
        uint16_t *top = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y);
        uint16_t *bottom = RowAt(dst, dstPitch, 2 * (ptrdiff_t)y + 1);
        // The window slides right one column at a time; columns x - 1 .. x + 2.
        Neighbourhood n;
        n.a0 = above[-1], n.a1 = above[0], n.a2 = above[1];
        n.b0 = row[-1], n.b1 = row[0], n.b2 = row[1];
        n.c0 = below[-1], n.c1 = below[0], n.c2 = below[1];
        n.d0 = below2[-1], n.d1 = below2[0], n.d2 = below2[1];
        for (int32_t x = 0; x < width; x++) {
            n.a3 = above[x + 2];
            n.b3 = row[x + 2];
            n.c3 = below[x + 2];
            n.d3 = below2[x + 2];
            const Block o = Kernel::Apply(n);
            StorePair(top + 2 * x, o.tl, o.tr);
            StorePair(bottom + 2 * x, o.bl, o.br);
            n.a0 = n.a1, n.a1 = n.a2, n.a2 = n.a3;
            n.b0 = n.b1, n.b1 = n.b2, n.b2 = n.b3;
            n.c0 = n.c1, n.c1 = n.c2, n.c2 = n.c3;
            n.d0 = n.d1, n.d1 = n.d2, n.d2 = n.d3;
        }
    }
}

// Size 4: the size 2 pass from the source into a scratch image inside the delta
// buffer (width * 8 bytes in, pitch width * 4 + 8 bytes: spare room at the end of
// each row), then the size 2 pass again from the scratch image to the destination.
template <class Kernel>
void Scale4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width,
             int32_t height)
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

void Blit2xSaI_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch, int32_t width,
                  int32_t height)
{
    Scale2x<Kernel2xSaI>(src, srcPitch, dst, dstPitch, width, height);
}

void Blit2xSaI_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                  int32_t width, int32_t height)
{
    Scale4x<Kernel2xSaI>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitSuper2xSaI_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch,
                       int32_t width, int32_t height)
{
    Scale2x<KernelSuper2xSaI>(src, srcPitch, dst, dstPitch, width, height);
}

void BlitSuper2xSaI_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                       int32_t width, int32_t height)
{
    Scale4x<KernelSuper2xSaI>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitSuperEagle_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *, uint16_t *dst, uint32_t dstPitch,
                       int32_t width, int32_t height)
{
    Scale2x<KernelSuperEagle>(src, srcPitch, dst, dstPitch, width, height);
}

void BlitSuperEagle_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch,
                       int32_t width, int32_t height)
{
    Scale4x<KernelSuperEagle>(src, srcPitch, delta, dst, dstPitch, width, height);
}
