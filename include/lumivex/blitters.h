/*
 * blitters.h - run any of Lumivex's scalers without a window.
 *
 * BuildBlitterTable() returns the 105 (size, name, function) records in table order,
 * ended by a record of size 0; the caller owns the block (free() it).
 *
 * Calling a blitter: source and destination are 16-bit RGB 5-5-5 pixels (bit 15
 * unused). The caller must allocate like the shell's frame slots do, because
 * blitters read past the picture's edges without bounds checks:
 *   raw source  (height + 128) * width pixels, zeroed; source = raw + 16 * width
 *   delta       (height + 128) * width * 16 bytes, zeroed before the first call
 *               and whenever the blitter or its size changes
 *   destination (height + 128) * width * 50 bytes, zeroed with the delta buffer
 * and pass source pitch = width * 2, destination pitch = width * size * 2.
 * A blitter keeps no state between calls except its delta buffer (and the
 * "Interleaved" phase counters). Not thread-safe: run one blitter at a time.
 */
#ifndef LUMIVEX_BLITTERS_H
#define LUMIVEX_BLITTERS_H

#include <lumivex/lumivex.h>

#if defined(__cplusplus)
extern "C" {
#endif

typedef void (*BlitterFunc)(const uint16_t *source, uint32_t source_pitch, uint8_t *delta, uint16_t *destination,
                            uint32_t destination_pitch, int32_t width, int32_t height);

typedef struct BlitterRecord {
    uint16_t size;      /* scale factor 1..5; 0 ends the table */
    char name[64];      /* display name, e.g. "Super 2xSaI" */
    BlitterFunc function;
} BlitterRecord;

/* Allocates and fills the run-time table (106 records, the last all zero).
   Returns null when out of memory. Also fills the HQ family's colour table. */
LUMIVEX_EXPORT BlitterRecord *BuildBlitterTable(void);

#if defined(__cplusplus)
}
#endif

#endif /* LUMIVEX_BLITTERS_H */
