#include <gtest/gtest.h>

#include <random>

#include "blit_harness.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"
#include "test_picture.h"

namespace
{

struct Member {
    const char *name;
    BlitterFunc size2, size4;
};
const Member kMembers[] = {
    {"2xSaI", Blit2xSaI_2x, Blit2xSaI_4x},
    {"Super 2xSaI", BlitSuper2xSaI_2x, BlitSuper2xSaI_4x},
    {"Super Eagle", BlitSuperEagle_2x, BlitSuperEagle_4x},
};

constexpr uint16_t kUnwritten = 0x8000; // no member ever writes bit 15 from 5-5-5 sources

uint16_t Grey(int v)
{
    return TestRGB(v, v, v);
}

// A 2 x 2 output block of source pixel (x, y) at size 2.
struct Block {
    uint16_t tl, tr, bl, br;
};
Block BlockAt(BlitHarness &h, int x, int y)
{
    return {h.dst(2 * x, 2 * y), h.dst(2 * x + 1, 2 * y), h.dst(2 * x, 2 * y + 1), h.dst(2 * x + 1, 2 * y + 1)};
}

void Checkerboard(BlitHarness &h, uint16_t a, uint16_t b)
{
    // The whole source slot, margins included, so the neighbourhoods at the edges follow the pattern too.
    const int w = h.width;
    for (size_t i = 0; i < h.raw.size(); i++) {
        const int x = (int)(i % w), y = (int)(i / w);
        h.raw[i] = ((x + y) % 2 == 0) ? a : b;
    }
}

} // namespace

TEST(SaiFamily, OneColourGivesThatColourEverywhereAtSize2)
{
    for (const Member &m : kMembers) {
        for (uint16_t colour : {(uint16_t)0x7FFF, (uint16_t)0x0421, (uint16_t)0x1234, (uint16_t)0x5A5A}) {
            BlitHarness h(12, 7, 2);
            std::fill(h.raw.begin(), h.raw.end(), colour); // the picture and the memory around it
            h.run(m.size2);
            for (int y = 0; y < 14; y++)
                for (int x = 0; x < 24; x++)
                    ASSERT_EQ(h.dst(x, y), colour) << m.name << " at " << x << "," << y;
        }
    }
}

TEST(SaiFamily, OneColourGivesThatColourAtSize4ExceptWhereTheIntermediateMeetsItsSpareRoom)
{
    // The second pass reads past the intermediate's right and bottom edges into the
    // zeroed spare room of the delta buffer, so only the last two output rows and
    // columns blend towards black; everything else keeps the colour.
    for (const Member &m : kMembers) {
        const uint16_t colour = 0x6B5A;
        BlitHarness h(10, 6, 4);
        std::fill(h.raw.begin(), h.raw.end(), colour);
        h.run(m.size4);
        for (int y = 0; y < 24; y++)
            for (int x = 0; x < 40; x++) {
                if (x >= 38 || y >= 22) continue;
                ASSERT_EQ(h.dst(x, y), colour) << m.name << " at " << x << "," << y;
            }
        EXPECT_NE(h.dst(39, 10), colour) << m.name;
        EXPECT_NE(h.dst(10, 23), colour) << m.name;
    }
}

TEST(SaiFamily, CheckerboardFollowsTheCrossingDiagonalVote)
{
    const uint16_t white = 0x7FFF, black = 0x0000;
    const uint16_t mid = 0x3DEF; // average of white and black, per component floor(31 / 2)
    struct Expected {
        BlitterFunc f;
        Block onWhite;
    } cases[] = {
        // 2xSaI: the four votes cancel, so the bottom-right is the four-way average.
        {Blit2xSaI_2x, {white, mid, mid, mid}},
        // Super 2xSaI: the votes cancel and the right column is the average.
        {BlitSuper2xSaI_2x, {white, mid, black, mid}},
        // Super Eagle: the votes cancel and each diagonal keeps its own colour.
        {BlitSuperEagle_2x, {white, black, black, white}},
    };
    for (const Expected &e : cases) {
        BlitHarness h(8, 6, 2);
        Checkerboard(h, white, black);
        h.run(e.f);
        const Block b = BlockAt(h, 2, 2); // a white source pixel
        EXPECT_EQ(b.tl, e.onWhite.tl);
        EXPECT_EQ(b.tr, e.onWhite.tr);
        EXPECT_EQ(b.bl, e.onWhite.bl);
        EXPECT_EQ(b.br, e.onWhite.br);
    }
}

TEST(SaiFamily, NoDiagonalInTheCoreBlendsWithTheExactArithmetic)
{
    // Core 3 17 / 6 30 (every component alike): no two of its pixels are equal.
    struct Expected {
        BlitterFunc f;
        int tl, tr, bl, br;
    } cases[] = {
        {Blit2xSaI_2x, 3, 10, 4, 14},      // average, average, four-way average (56 / 4)
        {BlitSuper2xSaI_2x, 3, 10, 6, 18}, // the left column keeps E and H
        {BlitSuperEagle_2x, 5, 16, 8, 25}, // 3:1 blends towards each corner's own pixel
    };
    for (const Expected &e : cases) {
        BlitHarness h(2, 2, 2);
        h.src(0, 0) = Grey(3);
        h.src(1, 0) = Grey(17);
        h.src(0, 1) = Grey(6);
        h.src(1, 1) = Grey(30);
        h.run(e.f);
        const Block b = BlockAt(h, 0, 0);
        EXPECT_EQ(b.tl, Grey(e.tl));
        EXPECT_EQ(b.tr, Grey(e.tr));
        EXPECT_EQ(b.bl, Grey(e.bl));
        EXPECT_EQ(b.br, Grey(e.br));
    }
}

TEST(SaiFamily, ARisingDiagonalThroughTheCore)
{
    // Rows of the 4 x 4 neighbourhood of the red pixel at (1, 1), on a grey ground:
    //   K K K K
    //   K R B K
    //   B B G K     blue runs on the rising diagonal through the core and on to the left
    //   K K K K
    const uint16_t K = TestRGB(4, 4, 4), R = TestRGB(31, 0, 0), B = TestRGB(0, 0, 31), G = TestRGB(0, 31, 0);
    const uint16_t halfRB = TestRGB(15, 0, 15);
    struct Expected {
        BlitterFunc f;
        Block b;
    } cases[] = {
        {Blit2xSaI_2x, {R, halfRB, halfRB, B}},
        {BlitSuper2xSaI_2x, {halfRB, B, B, B}},
        // Top-left: two averages towards the line (the line continues to the lower left),
        // bottom-right: one average (the line does not continue past the core).
        {BlitSuperEagle_2x, {TestRGB(7, 0, 23), B, B, TestRGB(0, 15, 15)}},
    };
    for (const Expected &e : cases) {
        BlitHarness h(4, 4, 2);
        std::fill(h.raw.begin(), h.raw.end(), K);
        h.src(1, 1) = R;
        h.src(2, 1) = B;
        h.src(0, 2) = B;
        h.src(1, 2) = B;
        h.src(2, 2) = G;
        h.run(e.f);
        const Block b = BlockAt(h, 1, 1);
        EXPECT_EQ(b.tl, e.b.tl);
        EXPECT_EQ(b.tr, e.b.tr);
        EXPECT_EQ(b.bl, e.b.bl);
        EXPECT_EQ(b.br, e.b.br);
    }
}

TEST(SaiFamily, Size4Of2xSaIWritesFourTimesTheSourceWithTheIntermediateInTheDeltaBuffer)
{
    const int w = 13, hgt = 9;
    BlitHarness h(w, hgt, 4);
    std::mt19937 rng(7);
    for (int y = 0; y < hgt; y++)
        for (int x = 0; x < w; x++)
            h.src(x, y) = (uint16_t)(rng() % 3 ? 0x1F : rng() & 0x7FFF);
    std::fill(h.front.begin(), h.front.end(), kUnwritten);
    h.run(Blit2xSaI_4x);
    for (size_t i = 0; i < h.front.size(); i++) {
        if (i < (size_t)16 * w * hgt)
            ASSERT_NE(h.front[i], kUnwritten) << "pixel " << i << " of the 4W x 4H image";
        else
            ASSERT_EQ(h.front[i], kUnwritten) << "pixel " << i << " past the 4W x 4H image";
    }

    // The intermediate: the size 2 image, width * 8 bytes into the delta buffer,
    // rows width * 4 + 8 bytes apart.
    BlitHarness two(w, hgt, 2);
    two.raw = h.raw;
    two.run(Blit2xSaI_2x);
    const size_t pitch = (size_t)w * 4 + 8;
    for (int y = 0; y < 2 * hgt; y++)
        for (int x = 0; x < 2 * w; x++) {
            uint16_t p;
            memcpy(&p, h.delta.data() + (size_t)w * 8 + y * pitch + 2 * x, 2);
            ASSERT_EQ(p, two.dst(x, y)) << x << "," << y;
        }
}

TEST(SaiFamily, Size4IsSize2AppliedToTheIntermediate)
{
    const std::vector<uint16_t> picture = MakeTestPicture();
    const int w = kTestPictureWidth, hgt = kTestPictureHeight;
    for (const Member &m : kMembers) {
        BlitHarness h(w, hgt, 4);
        for (int y = 0; y < hgt; y++)
            for (int x = 0; x < w; x++)
                h.src(x, y) = picture[(size_t)y * w + x];
        h.run(m.size4);
        // Run size 2 again on the intermediate left in the delta buffer, as it lies there.
        std::vector<uint16_t> again((size_t)16 * w * hgt);
        const uint8_t *scratch = h.delta.data() + (size_t)w * 8;
        m.size2(reinterpret_cast<const uint16_t *>(scratch), w * 4 + 8, nullptr, again.data(), w * 8, 2 * w, 2 * hgt);
        for (size_t i = 0; i < again.size(); i++)
            ASSERT_EQ(h.front[i], again[i]) << m.name << " pixel " << i;
    }
}

TEST(SaiFamily, OneByOneSourceWritesOnlyItsBlock)
{
    for (const Member &m : kMembers) {
        for (int size : {2, 4}) {
            BlitHarness h(1, 1, size);
            h.src(0, 0) = 0x2A5F;
            std::fill(h.front.begin(), h.front.end(), kUnwritten);
            h.run(size == 2 ? m.size2 : m.size4);
            for (size_t i = 0; i < h.front.size(); i++) {
                if (i < (size_t)size * size)
                    ASSERT_NE(h.front[i], kUnwritten) << m.name << " " << size << "x pixel " << i;
                else
                    ASSERT_EQ(h.front[i], kUnwritten) << m.name << " " << size << "x pixel " << i;
            }
        }
    }
    // 2xSaI keeps the source pixel in the top-left corner.
    BlitHarness h(1, 1, 2);
    h.src(0, 0) = 0x2A5F;
    h.run(Blit2xSaI_2x);
    EXPECT_EQ(h.dst(0, 0), 0x2A5F);
}

TEST(SaiFamily, NarrowAndTallPicturesAtSize4StayInsideTheBuffers)
{
    for (const Member &m : kMembers) {
        for (int w : {1, 2, 3}) {
            const int hgt = 300;
            BlitHarness h(w, hgt, 4);
            for (int y = 0; y < hgt; y++)
                for (int x = 0; x < w; x++)
                    h.src(x, y) = (uint16_t)((x * 977 + y * 131) & 0x7FFF);
            std::fill(h.front.begin(), h.front.end(), kUnwritten);
            h.run(m.size4);
            const size_t image = (size_t)16 * w * hgt;
            for (size_t i = 0; i < image; i++)
                ASSERT_NE(h.front[i], kUnwritten) << m.name << " w" << w;
            EXPECT_EQ(h.front[image], kUnwritten) << m.name << " w" << w;
            // The intermediate is in the delta buffer here too.
            BlitHarness two(w, hgt, 2);
            two.raw = h.raw;
            two.run(m.size2);
            uint16_t first;
            memcpy(&first, h.delta.data() + (size_t)w * 8, 2);
            EXPECT_EQ(first, two.dst(0, 0)) << m.name << " w" << w;
        }
    }
}

TEST(SaiFamily, AStillFrameIsRedrawnInFull)
{
    // No change tracking: every call recomputes and rewrites every pixel.
    const std::vector<uint16_t> picture = MakeTestPicture();
    const int w = kTestPictureWidth, hgt = kTestPictureHeight;
    for (const Member &m : kMembers) {
        for (int size : {2, 4}) {
            BlitHarness h(w, hgt, size);
            for (int y = 0; y < hgt; y++)
                for (int x = 0; x < w; x++)
                    h.src(x, y) = picture[(size_t)y * w + x];
            const BlitterFunc f = size == 2 ? m.size2 : m.size4;
            h.run(f);
            const std::vector<uint16_t> first(h.front.begin(), h.front.begin() + (size_t)w * hgt * size * size);
            std::fill(h.front.begin(), h.front.end(), kUnwritten); // something paints over the picture
            h.run(f);
            for (size_t i = 0; i < first.size(); i++)
                ASSERT_EQ(h.front[i], first[i]) << m.name << " " << size << "x";
        }
    }
}

TEST(SaiFamily, HeightZeroTouchesNothing)
{
    for (const Member &m : kMembers) {
        for (int size : {2, 4}) {
            BlitHarness h(8, 0, size);
            std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
            h.run(size == 2 ? m.size2 : m.size4);
            for (uint16_t p : h.front)
                ASSERT_EQ(p, 0);
            for (uint8_t b : h.delta)
                ASSERT_EQ(b, 0);
        }
    }
}

TEST(SaiFamily, HonoursTheSourcePitch)
{
    // A picture inside a wider buffer gives the same image as the picture alone,
    // when the memory around both is alike.
    const int w = 8, hgt = 6, stride = 12;
    std::vector<uint16_t> wide((size_t)(hgt + 8) * stride, 0x0C63), narrow((size_t)(hgt + 8) * w, 0x0C63);
    std::mt19937 rng(3);
    for (int y = 0; y < hgt; y++)
        for (int x = 0; x < w; x++) {
            const uint16_t p = (uint16_t)(rng() % 4 ? 0x7C00 : 0x001F);
            wide[(size_t)(y + 4) * stride + x] = narrow[(size_t)(y + 4) * w + x] = p;
        }
    // The column right of the picture: the wide buffer's own, the narrow one's next row start.
    for (int y = 0; y < hgt + 8; y++) {
        for (int k = w; k < stride; k++)
            wide[(size_t)y * stride + k] = 0x0C63;
        if (y + 1 < hgt + 8) wide[(size_t)y * stride + w] = narrow[(size_t)(y + 1) * w];
        if (y + 1 < hgt + 8) wide[(size_t)y * stride + w + 1] = narrow[(size_t)(y + 1) * w + 1];
        if (y > 0) wide[(size_t)y * stride - 1] = narrow[(size_t)y * w - 1];
    }
    for (const Member &m : kMembers) {
        std::vector<uint16_t> a((size_t)4 * w * hgt), b((size_t)4 * w * hgt);
        m.size2(wide.data() + 4 * stride, stride * 2, nullptr, a.data(), w * 4, w, hgt);
        m.size2(narrow.data() + 4 * w, w * 2, nullptr, b.data(), w * 4, w, hgt);
        EXPECT_EQ(a, b) << m.name;
    }
}

TEST(SaiFamily, EveryColumnGetsTheSameRulesWhateverTheRowWidth)
{
    // Wide rows are computed many pixels at a time, narrow ones pixel by pixel.
    // Redraw each column alone (width 1, same pitches, so the same neighbourhood)
    // and compare with the whole-row result.
    const uint16_t palette[4] = {0x7C00, 0x03E0, 0x001F, 0x7FFF};
    for (unsigned seed = 1; seed <= 8; seed++) {
        const int w = 40, hgt = 12;
        BlitHarness h(w, hgt, 2);
        std::mt19937 rng(seed);
        const int colours = 2 + seed % 3;
        for (size_t i = 0; i < h.raw.size(); i++)
            h.raw[i] = palette[rng() % colours];
        for (const Member &m : kMembers) {
            h.run(m.size2);
            std::vector<uint16_t> alone(h.front.size(), 0);
            for (int x = 0; x < w; x++)
                m.size2(h.source() + x, w * 2, nullptr, alone.data() + 2 * x, w * 4, 1, hgt);
            for (int y = 0; y < 2 * hgt; y++)
                for (int x = 0; x < 2 * w; x++)
                    ASSERT_EQ(h.dst(x, y), alone[(size_t)y * 2 * w + x])
                        << m.name << " seed " << seed << " at " << x << "," << y;
        }
    }
}
