#include <gtest/gtest.h>

#include <random>

#include "blit_harness.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"
#include "test_picture.h"

namespace
{

constexpr uint16_t kUnwritten = 0x8000; // the smoothing only ever writes source pixels

// Neighbours read the way the scaler reads them: unclamped, through the source slot.
struct Around {
    uint16_t a, b, c, d, e, f, g, h, i;
};
Around Neighbours(BlitHarness &s, int x, int y)
{
    const uint16_t *p = s.source() + (ptrdiff_t)y * s.width + x;
    const ptrdiff_t w = s.width;
    return {p[-w - 1], p[-w], p[-w + 1], p[-1], p[0], p[1], p[w - 1], p[w], p[w + 1]};
}

// Scale2x in the two-condition form that defines the size 2 member.
void Expected2x(const Around &n, uint16_t out[4])
{
    if ((n.f == n.b && (n.b == n.h || n.b == n.d)) || (n.d == n.h && (n.h == n.b || n.h == n.f))) {
        out[0] = out[1] = out[2] = out[3] = n.e;
        return;
    }
    out[0] = n.d == n.b ? n.b : n.e;
    out[1] = n.b == n.f ? n.f : n.e;
    out[2] = n.d == n.h ? n.d : n.e;
    out[3] = n.h == n.f ? n.h : n.e;
}

void Expected3x(const Around &n, uint16_t out[9])
{
    for (int k = 0; k < 9; k++)
        out[k] = n.e;
    if (n.b == n.h || n.d == n.f) return;
    const uint16_t a = n.a, b = n.b, c = n.c, d = n.d, e = n.e, f = n.f, g = n.g, h = n.h, i = n.i;
    if (d == b) out[0] = d;
    if ((d == b && e != c) || (b == f && e != a)) out[1] = b;
    if (b == f) out[2] = f;
    if (d == b && (e != g || e != a)) out[3] = d;
    if ((b == f && e != i) || (h == f && e != c)) out[5] = f;
    if (d == h) out[6] = d;
    if ((d == h && e != i) || (h == f && e != g)) out[7] = h;
    if (h == f) out[8] = f;
}

void FillFromPalette(BlitHarness &h, unsigned seed, int colours)
{
    const uint16_t palette[4] = {0x7C00, 0x03E0, 0x001F, 0x4210};
    std::mt19937 rng(seed);
    for (int y = 0; y < h.height; y++)
        for (int x = 0; x < h.width; x++)
            h.src(x, y) = palette[rng() % colours];
}

BlitterFunc Member(int size)
{
    return size == 2 ? BlitSimpleSmoothing_2x : BlitSimpleSmoothing_3x;
}

} // namespace

TEST(SimpleSmoothing, OneColourGivesThatColourEverywhere)
{
    for (int size : {2, 3}) {
        for (uint16_t colour : {(uint16_t)0x7FFF, (uint16_t)0x0421, (uint16_t)0x1234}) {
            BlitHarness h(11, 7, size);
            std::fill(h.raw.begin(), h.raw.end(), colour);
            h.run(Member(size));
            for (int y = 0; y < 7 * size; y++)
                for (int x = 0; x < 11 * size; x++)
                    ASSERT_EQ(h.dst(x, y), colour) << size << "x " << x << "," << y;
        }
    }
}

TEST(SimpleSmoothing, Size2IsTheScale2xRule)
{
    for (unsigned seed = 1; seed <= 6; seed++) {
        BlitHarness h(40, 12, 2);
        FillFromPalette(h, seed, 2 + seed % 3);
        h.run(BlitSimpleSmoothing_2x);
        for (int y = 0; y < 12; y++)
            for (int x = 0; x < 40; x++) {
                uint16_t want[4];
                Expected2x(Neighbours(h, x, y), want);
                ASSERT_EQ(h.dst(2 * x, 2 * y), want[0]) << x << "," << y;
                ASSERT_EQ(h.dst(2 * x + 1, 2 * y), want[1]) << x << "," << y;
                ASSERT_EQ(h.dst(2 * x, 2 * y + 1), want[2]) << x << "," << y;
                ASSERT_EQ(h.dst(2 * x + 1, 2 * y + 1), want[3]) << x << "," << y;
            }
    }
}

TEST(SimpleSmoothing, Size3FollowsItsNineRules)
{
    for (unsigned seed = 1; seed <= 6; seed++) {
        BlitHarness h(40, 12, 3);
        FillFromPalette(h, seed, 2 + seed % 3);
        h.run(BlitSimpleSmoothing_3x);
        for (int y = 0; y < 12; y++)
            for (int x = 0; x < 40; x++) {
                uint16_t want[9];
                Expected3x(Neighbours(h, x, y), want);
                for (int k = 0; k < 9; k++)
                    ASSERT_EQ(h.dst(3 * x + k % 3, 3 * y + k / 3), want[k]) << x << "," << y << " pixel " << k;
            }
    }
}

TEST(SimpleSmoothing, MiddleLeftTestsTheUpperNeighbourInBothTerms)
{
    // Neighbourhood (rows): A B C / D E F / G H I.
    auto run = [](const uint16_t n[9]) {
        BlitHarness h(3, 3, 3);
        std::fill(h.raw.begin(), h.raw.end(), 0x0001);
        for (int k = 0; k < 9; k++)
            h.src(k % 3, k / 3) = n[k];
        h.run(BlitSimpleSmoothing_3x);
        return h.dst(3, 4); // middle-left pixel of the centre block
    };
    const uint16_t X = 0x7C00, E = 0x03E0, K = 0x001F, L = 0x5294;
    // D = H and E != A but D != B: Scale3x would take D, this rule keeps E.
    const uint16_t dEqualsH[9] = {K, L, K, X, E, K, L, X, L};
    EXPECT_EQ(run(dEqualsH), E);
    // D = B, E = G but E != A: the second term still holds, so D.
    const uint16_t dEqualsB[9] = {K, X, L, X, E, K, E, L, K};
    EXPECT_EQ(run(dEqualsB), X);
    // D = B, E = G and E = A: neither term holds, so E.
    const uint16_t both[9] = {E, X, L, X, E, K, E, L, K};
    EXPECT_EQ(run(both), E);
}

TEST(SimpleSmoothing, OneChangedPixelRedrawsItsRowNeighboursAndThePixelsAboveAndBelow)
{
    struct Case {
        int w, cx;
    } cases[] = {{12, 5}, {40, 1}, {40, 14}, {40, 15}, {40, 16}, {40, 17}, {40, 31}, {40, 33}, {40, 38}};
    for (int size : {2, 3}) {
        for (const Case &c : cases) {
            const int w = c.w, hgt = 10, cx = c.cx, cy = 4;
            BlitHarness h(w, hgt, size);
            FillFromPalette(h, 11, 3);
            h.run(Member(size));
            std::fill(h.front.begin(), h.front.end(), kUnwritten);
            h.src(cx, cy) = 0x7FFF; // a colour the palette does not have
            h.run(Member(size));
            for (int y = 0; y < hgt; y++)
                for (int x = 0; x < w; x++) {
                    const bool expected =
                        (y == cy && x >= cx - 1 && x <= cx + 1) || (x == cx && (y == cy - 1 || y == cy + 1));
                    const bool redrawn = h.dst(size * x, size * y) != kUnwritten;
                    ASSERT_EQ(redrawn, expected) << size << "x, width " << w << ", block " << x << "," << y;
                    // A block is redrawn whole or not at all.
                    for (int k = 0; k < size * size; k++)
                        ASSERT_EQ(h.dst(size * x + k % size, size * y + k / size) != kUnwritten, redrawn);
                }
        }
    }
}

TEST(SimpleSmoothing, MatchesThePixelByPixelCounterWalkOverChangingFrames)
{
    // A model of the walk: one pixel at a time, the counter restarting at 3 on a
    // changed right neighbour, the three copies stored for each block drawn.
    for (int size : {2, 3}) {
        const int w = 45, hgt = 9;
        BlitHarness h(w, hgt, size);
        std::vector<uint16_t> model(h.front.size(), 0);
        const size_t plane = (size_t)w * hgt;
        std::vector<uint16_t> copies(3 * plane, 0);
        std::mt19937 rng(99 + size);
        FillFromPalette(h, 21, 3);
        for (int frame = 0; frame < 30; frame++) {
            const int changes = frame == 0 ? 0 : (int)(rng() % 6);
            for (int k = 0; k < changes; k++)
                h.src(rng() % w, rng() % hgt) = (uint16_t)(rng() % 3 ? 0x7C00 : 0x03E0);
            if (frame == 15) {
                // Many colours (few equal neighbours: whole groups of plain blocks),
                // with a corner of the three-colour picture (groups with edges).
                std::mt19937 noise(frame);
                for (int y = 0; y < hgt; y++)
                    for (int x = 0; x < w; x++)
                        if (x >= 8 || y >= 3) h.src(x, y) = (uint16_t)(noise() & 0x7FFF);
            }
            if (frame % 7 == 3 || frame % 7 == 5) {
                // Every pixel changes (rows whose every right neighbour changed),
                // or every pixel but one.
                const int keepX = (int)(rng() % w), keepY = (int)(rng() % hgt);
                const uint16_t kept = h.src(keepX, keepY);
                for (int y = -1; y <= hgt; y++)
                    for (int x = -1; x <= w; x++)
                        h.src(x, y) ^= 0x0421;
                if (frame % 7 == 5) h.src(keepX, keepY) = kept;
            }
            h.run(Member(size));
            for (int y = 0; y < hgt; y++) {
                int redraw = 0;
                for (int x = 0; x < w; x++) {
                    const Around n = Neighbours(h, x, y);
                    const size_t i = (size_t)y * w + x;
                    if (n.f != copies[i]) redraw = 3;
                    if (redraw <= 0 && n.b == copies[plane + i] && n.h == copies[2 * plane + i]) continue;
                    copies[i] = n.f, copies[plane + i] = n.b, copies[2 * plane + i] = n.h;
                    uint16_t block[9];
                    if (size == 2)
                        Expected2x(n, block);
                    else
                        Expected3x(n, block);
                    for (int k = 0; k < size * size; k++)
                        model[(size_t)(size * y + k / size) * w * size + size * x + k % size] = block[k];
                    redraw--;
                }
            }
            for (int y = 0; y < hgt * size; y++)
                for (int x = 0; x < w * size; x++)
                    ASSERT_EQ(h.dst(x, y), model[(size_t)y * w * size + x])
                        << size << "x frame " << frame << " at " << x << "," << y;
            const uint16_t *planes = reinterpret_cast<const uint16_t *>(h.delta.data());
            for (size_t i = 0; i < 3 * plane; i++)
                ASSERT_EQ(planes[i], copies[i]) << size << "x frame " << frame;
        }
    }
}

TEST(SimpleSmoothing, AStillFrameRedrawsNothing)
{
    const std::vector<uint16_t> picture = MakeTestPicture();
    for (int size : {2, 3}) {
        BlitHarness h(kTestPictureWidth, kTestPictureHeight, size);
        for (int y = 0; y < h.height; y++)
            for (int x = 0; x < h.width; x++)
                h.src(x, y) = picture[(size_t)y * h.width + x];
        h.run(Member(size));
        std::fill(h.front.begin(), h.front.end(), kUnwritten);
        h.run(Member(size));
        for (uint16_t p : h.front)
            ASSERT_EQ(p, kUnwritten) << size << "x";
    }
}

TEST(SimpleSmoothing, DeltaBufferHoldsRightUpperAndLowerNeighbourPlanes)
{
    const int w = 9, hgt = 5;
    BlitHarness h(w, hgt, 2);
    FillFromPalette(h, 5, 4);
    h.run(BlitSimpleSmoothing_2x);
    const uint16_t *planes = reinterpret_cast<const uint16_t *>(h.delta.data());
    const size_t plane = (size_t)w * hgt;
    for (int y = 0; y < hgt; y++)
        for (int x = 0; x < w; x++) {
            const Around n = Neighbours(h, x, y);
            const size_t i = (size_t)y * w + x;
            ASSERT_EQ(planes[i], n.f) << x << "," << y;
            ASSERT_EQ(planes[plane + i], n.b) << x << "," << y;
            ASSERT_EQ(planes[2 * plane + i], n.h) << x << "," << y;
        }
}

TEST(SimpleSmoothing, FirstFrameDrawsOnlyBlocksWhoseTrackedNeighboursDifferFromTheZeroedCopies)
{
    // A lone white pixel on black: its own right, upper and lower neighbours are
    // black like the zeroed copies, so its block is drawn only through the counter
    // that its left neighbour starts on seeing it as a changed right neighbour.
    for (int size : {2, 3}) {
        BlitHarness h(6, 3, size);
        h.src(3, 1) = 0x7FFF;
        std::fill(h.front.begin(), h.front.end(), kUnwritten);
        h.run(Member(size));
        for (int y = 0; y < 3; y++)
            for (int x = 0; x < 6; x++) {
                const bool drawn = (y == 1 && x >= 2 && x <= 4) || (x == 3 && y != 1);
                EXPECT_EQ(h.dst(size * x, size * y) != kUnwritten, drawn) << size << "x block " << x << "," << y;
            }
        for (int k = 0; k < size * size; k++)
            EXPECT_EQ(h.dst(size * 3 + k % size, size + k / size), 0x7FFF);
    }
}

TEST(SimpleSmoothing, OneByOneSource)
{
    for (int size : {2, 3}) {
        // Surrounded by its own colour: drawn whole.
        BlitHarness h(1, 1, size);
        std::fill(h.raw.begin(), h.raw.end(), 0x2345);
        std::fill(h.front.begin(), h.front.end(), kUnwritten);
        h.run(Member(size));
        for (size_t i = 0; i < h.front.size(); i++) {
            if (i < (size_t)size * size)
                ASSERT_EQ(h.front[i], 0x2345) << size << "x";
            else
                ASSERT_EQ(h.front[i], kUnwritten) << size << "x";
        }
        // Surrounded by black: its tracked neighbours equal the zeroed copies, so nothing is drawn.
        BlitHarness lone(1, 1, size);
        lone.src(0, 0) = 0x2345;
        std::fill(lone.front.begin(), lone.front.end(), kUnwritten);
        lone.run(Member(size));
        for (uint16_t p : lone.front)
            ASSERT_EQ(p, kUnwritten) << size << "x";
    }
}

TEST(SimpleSmoothing, HeightZeroTouchesNothing)
{
    for (int size : {2, 3}) {
        BlitHarness h(8, 0, size);
        std::fill(h.raw.begin(), h.raw.end(), 0x7FFF);
        h.run(Member(size));
        for (uint16_t p : h.front)
            ASSERT_EQ(p, 0);
        for (uint8_t b : h.delta)
            ASSERT_EQ(b, 0);
    }
}
