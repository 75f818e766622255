// The measured frame rate and its overlay of green digits at the top right.
#pragma once

#include <cstdint>

extern uint32_t gFrameRateDisplayed;
extern uint32_t gFrameRateStored;

void KSPublishFrameRate(uint32_t value);
void KSRestoreFrameRate();
// Blitting thread: the digits into a front buffer (pitch in bytes).
void KSDrawFrameRate(uint16_t *front, uint32_t pitch, uint32_t width);
