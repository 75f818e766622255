// Blitter registry and the pixel contract shared by every scaler family.
// Pure C++: no Qt, no SDL. The blitting thread (video/ks_render) is the only caller
// of the functions at run time; tests and the preview tool call them directly.
#pragma once

#include <cstdint>

#include <lumivex/blitters.h>

// Colour masks of RGB 5-5-5 arithmetic.
constexpr uint16_t HALF_MASK = 0x3DEF;
constexpr uint16_t QUARTER_MASK = 0x1CE7;
constexpr uint16_t LOW_BIT_MASK = 0x0421;
constexpr uint16_t LOW_2BITS_MASK = 0x0C63;
constexpr uint32_t HALF_MASK_32 = 0x3DEF3DEFu;
constexpr uint32_t QUARTER_MASK_32 = 0x1CE71CE7u;
constexpr uint32_t LOW_BIT_MASK_32 = 0x04210421u;
constexpr uint32_t LOW_2BITS_MASK_32 = 0x0C630C63u;
constexpr uint64_t HALF_MASK_64 = 0x3DEF3DEF3DEF3DEFull;
constexpr uint64_t QUARTER_MASK_64 = 0x1CE71CE71CE71CE7ull;
constexpr uint64_t LOW_BIT_MASK_64 = 0x0421042104210421ull;

inline uint16_t KSHalf(uint16_t p) { return (uint16_t)((p >> 1) & HALF_MASK); }
inline uint16_t KSQuarter(uint16_t p) { return (uint16_t)((p >> 2) & QUARTER_MASK); }
inline uint16_t KSThreeQuarters(uint16_t p) { return (uint16_t)(KSQuarter(p) + KSHalf(p)); }
inline uint16_t KSAverage(uint16_t a, uint16_t b)
{
    return (uint16_t)((a & b & LOW_BIT_MASK) + KSHalf(a) + KSHalf(b));
}

// One row of the static table: size in an 8-byte field (low 16 bits used), name, function.
struct BlitterTableRow {
    uint64_t size;
    const char *name;
    BlitterFunc function;
};

constexpr int kBlitterTableRows = 105;
extern const BlitterTableRow kBlitterTable[kBlitterTableRows];

// Registered names for the preferences window, in registration order.
extern const char *gBlitterNames[MAX_BLITTERS];
extern uint32_t gBlitterSizes[MAX_BLITTERS]; // bit n set: size n exists
extern uint32_t gBlitterCount;

// Empties the name registry (preference load does this before registration).
void ClearBlitterRegistry();
// Registers one (name, size); fatal on a size outside 1..5 or a 30th name.
void RegisterBlitter(const char *name, int size);
// First record of `table` whose name and size both match, or null.
const BlitterRecord *FindBlitter(const BlitterRecord *table, const char *name, int size);

// The HQ family's colour table: a YUV triple for every 5-6-5 colour.
extern uint32_t gRGBtoYUV[65536];
void FillRGBtoYUV();
