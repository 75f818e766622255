// Independent per-component models of the colour operations, and helpers shared
// by the tests of the simple scaler families.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>

#include "blit_harness.h"

namespace ref
{

inline int R(uint16_t p)
{
    return (p >> 10) & 31;
}
inline int G(uint16_t p)
{
    return (p >> 5) & 31;
}
inline int B(uint16_t p)
{
    return p & 31;
}
inline uint16_t Pack(int r, int g, int b)
{
    return (uint16_t)((r << 10) | (g << 5) | b);
}

template <class F> uint16_t PerComponent(uint16_t p, F f)
{
    return Pack(f(R(p)), f(G(p)), f(B(p)));
}

inline uint16_t Half(uint16_t p)
{
    return PerComponent(p, [](int c) { return c / 2; });
}
inline uint16_t Quarter(uint16_t p)
{
    return PerComponent(p, [](int c) { return c / 4; });
}
inline uint16_t ThreeQuarters(uint16_t p)
{
    return PerComponent(p, [](int c) { return c / 4 + c / 2; });
}
// dim of a member: 0 black, 25, 50 or 75 percent.
inline uint16_t Dim(int percent, uint16_t p)
{
    switch (percent) {
    case 25:
        return Quarter(p);
    case 50:
        return Half(p);
    case 75:
        return ThreeQuarters(p);
    default:
        return 0;
    }
}
inline uint16_t Average(uint16_t a, uint16_t b)
{
    return Pack((R(a) + R(b)) / 2, (G(a) + G(b)) / 2, (B(a) + B(b)) / 2);
}
inline uint16_t Mean4(uint16_t p, uint16_t q, uint16_t r, uint16_t s)
{
    return Pack((R(p) + R(q) + R(r) + R(s)) / 4, (G(p) + G(q) + G(r) + G(s)) / 4, (B(p) + B(q) + B(r) + B(s)) / 4);
}
inline uint16_t Scale(uint16_t p, int kr, int kg, int kb)
{
    return Pack(R(p) * kr / 128, G(p) * kg / 128, B(p) * kb / 128);
}

// Random non-black 15-bit pixels, so that the first call redraws every block.
inline void Randomise(BlitHarness &h, unsigned seed)
{
    std::mt19937 rng(seed);
    for (int y = 0; y < h.height; y++)
        for (int x = 0; x < h.width; x++)
            h.src(x, y) = (uint16_t)(1 + rng() % 0x7FFF);
}

// Source pixel with the harness's own out-of-row reads: past the end of a row is
// the next row's start (the source rows are contiguous), below the picture is 0.
inline uint16_t At(BlitHarness &h, int x, int y)
{
    const size_t i = (size_t)y * h.width + x;
    return h.source()[i];
}

constexpr uint16_t kMark = 0xDEAD; // bit 15 set: never a drawn pixel
inline void Mark(BlitHarness &h)
{
    std::fill(h.front.begin(), h.front.end(), kMark);
}

// Number of destination pixels of the picture that differ from the mark.
inline int Rewritten(BlitHarness &h)
{
    int n = 0;
    for (int y = 0; y < h.height * h.size; y++)
        for (int x = 0; x < h.width * h.size; x++)
            n += h.dst(x, y) != kMark;
    return n;
}

} // namespace ref
