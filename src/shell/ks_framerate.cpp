// The measured frame rate; the overlay is not drawn yet.
#include "shell/ks_framerate.h"

#include "video/ks_render.h"

uint32_t gFrameRateDisplayed;
uint32_t gFrameRateStored;

void KSPublishFrameRate(uint32_t value)
{
    gFrameRateDisplayed = value;
    gFrameRateStored = value;
}

void KSRestoreFrameRate()
{
    gFrameRateDisplayed = gFrameRateStored;
    KSSetClearFlags();
}

void KSDrawFrameRate(uint16_t *, uint32_t, uint32_t) {}
