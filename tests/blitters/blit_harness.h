// Buffers laid out as the shell's frame slots, so that a blitter may read and
// write past the picture's edges exactly as it does in the product.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include <lumivex/blitters.h>

struct BlitHarness {
    int width, height, size;
    std::vector<uint16_t> raw;   // (height + 128) * width, the source 16 rows in
    std::vector<uint8_t> delta;  // (height + 128) * width * 16
    std::vector<uint16_t> front; // (height + 128) * width * 25 pixels

    BlitHarness(int w, int h, int s)
        : width(w), height(h), size(s), raw((size_t)(h + 128) * w), delta((size_t)(h + 128) * w * 16),
          front((size_t)(h + 128) * w * 25)
    {
    }
    uint16_t *source() { return raw.data() + 16 * (size_t)width; }
    uint16_t &src(int x, int y) { return source()[(size_t)y * width + x]; }
    uint16_t &dst(int x, int y) { return front[(size_t)y * width * size + x]; }
    void fill(uint16_t p)
    {
        for (int y = 0; y < height; y++)
            for (int x = 0; x < width; x++) src(x, y) = p;
    }
    void clear()
    {
        std::fill(delta.begin(), delta.end(), 0);
        std::fill(front.begin(), front.end(), 0);
    }
    void run(BlitterFunc f)
    {
        f(source(), width * 2, delta.data(), front.data(), width * size * 2, width, height);
    }
};
