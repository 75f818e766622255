// Placards: short messages burnt into the scaled picture near the lower left.
#pragma once

#include <cstdint>

// True while a placard shows (read by the blitting thread).
bool KSPlacardShowing();
// Draws the placard into a front buffer of width x height pixels (blitting thread).
void KSDrawPlacards(uint16_t *front, uint32_t width, uint32_t height);
// Forgets the placard (tests, shutdown).
void KSResetPlacards();
