// The run-time blitter table and the registry of names shown in the preferences.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "blitters/ks_blitters.h"
#include "shell/ks_assert.h"

const char *gBlitterNames[MAX_BLITTERS];
uint32_t gBlitterSizes[MAX_BLITTERS];
uint32_t gBlitterCount;

extern "C" BlitterRecord *BuildBlitterTable(void)
{
    FillRGBtoYUV();
    auto *table = static_cast<BlitterRecord *>(calloc(kBlitterTableRows + 1, sizeof(BlitterRecord)));
    if (!table) {
        printf("Initialisation failed due to lack of available memory.\n");
        return nullptr;
    }
    printf("Blitter Library v1.3 (Intel) - scalers for 16-bit RGB 5-5-5 pictures, 1x to 5x.\n");
    for (int i = 0; i < kBlitterTableRows; i++) {
        table[i].size = (uint16_t)kBlitterTable[i].size;
        snprintf(table[i].name, sizeof table[i].name, "%s", kBlitterTable[i].name);
        table[i].function = kBlitterTable[i].function;
    }
    return table;
}

void ClearBlitterRegistry()
{
    for (auto &name : gBlitterNames) name = nullptr;
    for (auto &mask : gBlitterSizes) mask = 0;
    gBlitterCount = 0;
}

void RegisterBlitter(const char *name, int size)
{
    // The size test is the unsigned 16-bit one of the original registry.
    if ((uint16_t)(size - 1) >= 5) KS_FAIL("(size >= 1) && (size <= 5)");
    const uint32_t bit = 1u << (size & 31);
    for (int i = 0; i < MAX_BLITTERS; i++) {
        if (gBlitterNames[i] && strcmp(gBlitterNames[i], name) == 0) {
            gBlitterSizes[i] |= bit;
            return;
        }
    }
    KS_ASSERT(gBlitterCount + 1 < MAX_BLITTERS);
    gBlitterNames[gBlitterCount] = name;
    gBlitterSizes[gBlitterCount] = bit;
    gBlitterCount++;
}

const BlitterRecord *FindBlitter(const BlitterRecord *table, const char *name, int size)
{
    if (!table || !name) return nullptr;
    for (const BlitterRecord *r = table; r->size != 0; r++) {
        if (r->size == size && strcmp(r->name, name) == 0) return r;
    }
    return nullptr;
}
