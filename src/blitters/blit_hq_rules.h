// The HQ family's decision tables, expanded into per-quadrant programs.
//
// The published hq2x, hq3x and hq4x tables are symmetric under quarter turns: the
// top-right quarter of a block follows the top-left quarter's rule for the pattern
// turned a quarter counter-clockwise, with its neighbours turned back. So only the
// top-left quarter's rule is stored for each of the 256 patterns (blit_hq_rules.cpp),
// and the other three quarters are derived from it once, on first use.
//
// Every output pixel is a weighted sum of at most three of the nine neighbours, the
// weights adding up to 16, taken per 5-bit component and truncated. A program holds,
// for each output pixel of one quarter, four (neighbour, weight) terms; a neighbour
// is named by its byte in a 16-byte neighbourhood vector that holds one colour
// component of columns x-1, x, x+1 (and x+2, unused) as (above, own row, below, 0).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace lvhq
{

// Bits of a neighbourhood key: bits 0-7 the pattern (w1 1, w2 2, w3 4, w4 8, w6 16,
// w7 32, w8 64, w9 128); bits 8-11 the pair tests w4/w2, w2/w6, w6/w8, w8/w4.
constexpr int kKeyCount = 4096;
constexpr int kKeyDiff42 = 1 << 8;
constexpr int kKeyDiff26 = 1 << 9;
constexpr int kKeyDiff68 = 1 << 10;
constexpr int kKeyDiff84 = 1 << 11;

// Byte of neighbour wk (k = 1..9) in the neighbourhood vector.
constexpr uint8_t kNeighbourByte[10] = {0xFF, 0, 4, 8, 1, 5, 9, 2, 6, 10};
// A term that contributes nothing: the shuffle of this index yields zero.
constexpr uint8_t kNoTerm = 0x80;

struct QuarterProgram {
    std::array<uint8_t, 16> index; // output o, term t at [4 * o + t]
    std::array<int8_t, 16> weight; // sixteenths
};

struct ProgramSet {
    int size = 0;                // 2, 3 or 4
    int outputsPerQuarter = 0;   // 1, 2 or 4
    uint8_t position[4][4] = {}; // block pixel (row * size + column) of quarter q's output o
    uint32_t program[kKeyCount]; // per key: quarter q's program number in bits 8q..8q+7
    std::vector<QuarterProgram> programs[4];
    // Sizes 2 and 3: per key, the four quarters' terms side by side in the order
    // 0, 1, 3, 2 (indices, then weights), ready for one vector load each.
    int blockBytes = 0; // 2 * 4 * 4 * outputsPerQuarter
    std::vector<uint8_t> block;
};

// The expanded tables for size 2, 3 or 4. Built on first use; thread-safe.
const ProgramSet &Programs(int size);

} // namespace lvhq
