// Placards: short messages burnt into the scaled picture near the lower left.
#pragma once

#include <cstdint>

// True while a placard shows (read by the blitting thread).
bool KSPlacardShowing();
// Draws the placard into a front buffer of width x height pixels (blitting thread,
// with gBlitThreadLock held).
void KSDrawPlacards(uint16_t *front, uint32_t width, uint32_t height);
// Forgets the placard (tests, shutdown).
void KSResetPlacards();
// The text of the current placard image, or null (main thread).
const char *KSPlacardText();
// The placard image, RGB 5-5-5 rows top first, or null; its size through the pointers.
const uint16_t *KSPlacardImage(int32_t *width, int32_t *height);
