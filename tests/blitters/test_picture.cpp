#include "test_picture.h"

#include <cstdlib>
#include <cstring>

namespace
{

constexpr int W = kTestPictureWidth;
constexpr int H = kTestPictureHeight;

struct Canvas {
    std::vector<uint16_t> px = std::vector<uint16_t>((size_t)W * H, 0);
    void set(int x, int y, uint16_t c)
    {
        if (x >= 0 && x < W && y >= 0 && y < H) px[(size_t)y * W + x] = c;
    }
    void rect(int x0, int y0, int x1, int y1, uint16_t c)
    {
        for (int y = y0; y < y1; y++)
            for (int x = x0; x < x1; x++)
                set(x, y, c);
    }
    // A 1-pixel line, stepping along its longer axis.
    void line(int x0, int y0, int x1, int y1, uint16_t c)
    {
        const int dx = std::abs(x1 - x0), dy = std::abs(y1 - y0);
        const int steps = dx > dy ? dx : dy;
        for (int i = 0; i <= steps; i++) {
            const int x = x0 + (steps ? (x1 - x0) * i / steps : 0);
            const int y = y0 + (steps ? (y1 - y0) * i / steps : 0);
            set(x, y, c);
        }
    }
    void map(int x0, int y0, const char *const *rows, int count, uint16_t (*colour)(char))
    {
        for (int y = 0; y < count; y++)
            for (int x = 0; rows[y][x]; x++)
                if (rows[y][x] != '.') set(x0 + x, y0 + y, colour(rows[y][x]));
    }
};

uint16_t SpriteColour(char k)
{
    switch (k) {
    case 'k':
        return TestRGB(2, 2, 4);
    case 'h':
        return TestRGB(14, 7, 2);
    case 's':
        return TestRGB(31, 22, 16);
    case 'r':
        return TestRGB(28, 4, 4);
    case 'w':
        return TestRGB(31, 31, 31);
    case 'b':
        return TestRGB(4, 8, 24);
    default:
        return TestRGB(31, 0, 31);
    }
}

const char *const kSprite[] = {
    "...kkkk...", "..khhhhk..", ".khhhhhhk.", ".kskssksk.", ".kssssssk.", "..kssssk..", ".krrrrrrk.",
    "krrrwwrrrk", "ksrrrrrrsk", "kkrrrrrrkk", ".kbbbbbbk.", ".kbbkkbbk.", ".kbk..kbk.", ".kkk..kkk.",
};

// 3 x 5 letters.
struct Glyph {
    char letter;
    const char *rows[5];
};
const Glyph kFont[] = {
    {'L', {"#..", "#..", "#..", "#..", "###"}}, {'U', {"#.#", "#.#", "#.#", "#.#", "###"}},
    {'M', {"#.#", "###", "###", "#.#", "#.#"}}, {'I', {"###", ".#.", ".#.", ".#.", "###"}},
    {'V', {"#.#", "#.#", "#.#", "#.#", ".#."}}, {'E', {"###", "#..", "##.", "#..", "###"}},
    {'X', {"#.#", "#.#", ".#.", "#.#", "#.#"}},
};

void Text(Canvas &c, int x, int y, const char *text, uint16_t colour)
{
    for (; *text; text++, x += 4)
        for (const Glyph &g : kFont)
            if (g.letter == *text)
                for (int r = 0; r < 5; r++)
                    for (int k = 0; k < 3; k++)
                        if (g.rows[r][k] == '#') c.set(x + k, y + r, colour);
}

} // namespace

std::vector<uint16_t> MakeTestPicture()
{
    Canvas c;
    // Sky: a vertical gradient, one colour step every few rows.
    for (int y = 0; y < 52; y++)
        c.rect(0, y, W, y + 1, TestRGB(2 + y * 14 / 51, 4 + y * 18 / 51, 16 + y * 15 / 51));
    // Sun with a ring.
    for (int y = 0; y < 26; y++)
        for (int x = 62; x < W; x++) {
            const int d2 = (x - 80) * (x - 80) + (y - 12) * (y - 12);
            if (d2 <= 36)
                c.set(x, y, TestRGB(31, 29, 8));
            else if (d2 <= 56)
                c.set(x, y, TestRGB(31, 18, 2));
        }
    // Hills: a 1:1 slope, a 2:1 slope and a 1:2 slope, with snow above row 30.
    for (int x = 0; x < W; x++) {
        int top = 51;
        const int peaks[3] = {28 + std::abs(x - 24), 34 + std::abs(x - 52) / 2, 30 + 2 * std::abs(x - 74)};
        for (int p : peaks)
            if (p < top) top = p;
        for (int y = top; y < 52; y++)
            c.set(x, y, y < 33 ? TestRGB(30, 30, 31) : TestRGB(10, 9, 16));
    }
    // Ground with a dithered band and a path.
    c.rect(0, 52, W, H, TestRGB(7, 19, 5));
    for (int y = 56; y < 62; y++)
        for (int x = 0; x < W; x++)
            if ((x + y) % 2 == 0) c.set(x, y, TestRGB(4, 14, 3));
    for (int y = 52; y < 66; y++)
        c.rect(40 + (y - 52) / 2, y, 46 + (y - 52) * 3 / 2, y + 1, TestRGB(20, 15, 8));
    // A tree: trunk and a round, two-tone dithered crown.
    c.rect(85, 40, 88, 56, TestRGB(12, 6, 2));
    for (int y = 28; y < 46; y++)
        for (int x = 78; x < 96; x++) {
            const int d2 = (x - 86) * (x - 86) + (y - 37) * (y - 37);
            if (d2 <= 64) c.set(x, y, (x + y) % 2 ? TestRGB(3, 16, 4) : TestRGB(6, 22, 6));
        }
    // A kite on a 1-pixel string.
    c.line(58, 8, 33, 50, TestRGB(28, 28, 28));
    c.rect(56, 5, 61, 9, TestRGB(31, 4, 20));
    c.set(58, 4, TestRGB(31, 4, 20));
    c.set(58, 9, TestRGB(31, 4, 20));
    // The sprite on the grass and the lettering in the sky.
    c.map(12, 42, kSprite, (int)(sizeof kSprite / sizeof kSprite[0]), SpriteColour);
    Text(c, 4, 4, "LUMIVEX", TestRGB(0, 0, 6)); // a shadow one pixel down and right
    Text(c, 3, 3, "LUMIVEX", TestRGB(31, 31, 31));
    // A ramp of every level of each component along the bottom.
    for (int x = 0; x < W; x++) {
        const int level = x * 31 / (W - 1);
        c.set(x, H - 3, TestRGB(level, 0, 0));
        c.set(x, H - 2, TestRGB(0, level, 0));
        c.set(x, H - 1, TestRGB(0, 0, level));
    }
    return c.px;
}
