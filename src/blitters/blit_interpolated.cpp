// Placeholder: draws Plain until this family is written.
#include "ks_blitters.h"
#include "ks_blitter_list.h"

void BlitInterpolated_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated25_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated25_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated25_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated25_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated25_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated50_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated50_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated50_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated50_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated50_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated75_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated75_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated75_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated75_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterpolated75_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

