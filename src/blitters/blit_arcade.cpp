// Placeholder: draws Plain until this family is written.
#include "ks_blitters.h"
#include "ks_blitter_list.h"

void BlitArcade_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade25_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade25_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade25_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade25_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade50_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade50_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade50_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade50_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade75_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade75_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitArcade75_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

