// Placeholder: draws Plain until this family is written.
#include "ks_blitters.h"
#include "ks_blitter_list.h"

void BlitHorizontal_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal25_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal25_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal25_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal25_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal25_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal50_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal50_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal50_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal50_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal50_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal75_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal75_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal75_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal75_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHorizontal75_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical25_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical25_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical25_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical25_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical25_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical50_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical50_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical50_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical50_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical50_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical75_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical75_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical75_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical75_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitVertical75_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterleaved_1x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_1x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterleaved_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_2x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterleaved_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_3x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterleaved_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_4x(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitInterleaved_5x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width, int32_t height)
{
    BlitPlain_5x(src, srcPitch, delta, dst, dstPitch, width, height);
}

