// Placeholder: draws Plain until this family is written.
#include "ks_blitters.h"
#include "ks_blitter_list.h"

void BlitHQ_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHQ_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHQ_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

uint32_t gRGBtoYUV[65536];

void FillRGBtoYUV()
{
}
