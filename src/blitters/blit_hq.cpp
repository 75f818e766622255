// HQ2X, HQ3X and HQ4X: the hqx magnification filters on the 5-6-5-indexed YUV table.
//
// The decision tables live in blit_hq_rules.cpp, the per-row work in
// blit_hq_pipeline.h, which is compiled here twice: for the baseline instruction set
// and, on x86, for AVX2, picked at run time. Both give the same pixels.
//
// Delta buffer: three planes (the rows above, the row itself, the row below) of
// height x (width + 1) pixels; plane p's entry for row y and column c holds the
// pixel of column c in row y - 1, y or y + 1 as it was when row y's blocks around
// column c were last drawn. Column `width` holds the replicated last column. The
// walk of each row compares column x + 1 before block x (and column 0 before the
// row), so a changed pixel redraws the blocks whose 3 x 3 neighbourhood holds it.
#include <atomic>
#include <cstdint>
#include <cstring>
#include <vector>
#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define LV_HQ_X86 1
#else
#define LV_HQ_X86 0
#endif

#include "blitters/blit_hq.h"
#include "blitters/blit_lanes.h"
#include "blitters/blit_hq_rules.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

uint32_t gRGBtoYUV[65536];

void FillRGBtoYUV()
{
    // The index is read as 5-6-5 (red bits 11-15, green 5-10, blue 0-4), as the
    // published table is; the 5-5-5 pixels index it unconverted.
    for (int i = 0; i < 65536; i++) {
        const int r8 = (i >> 11) * 8, g8 = ((i >> 5) & 63) * 4, b8 = (i & 31) * 8;
        const int y = (r8 + g8 + b8) >> 2;
        const int u = 128 + ((r8 - b8) >> 2);
        const int v = 128 + ((2 * g8 - r8 - b8) >> 3);
        gRGBtoYUV[i] = (uint32_t)((y << 16) + (u << 8) + v);
    }
    // Expand the decision tables now rather than on the first frame.
    lvhq::Programs(2);
}

namespace
{
namespace hq_base
{
#define LV_HQ_AVX2 0
#include "blitters/blit_hq_pipeline.h"
#undef LV_HQ_AVX2
} // namespace hq_base

#if LV_HQ_X86 && defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
namespace hq_avx2
{
#define LV_HQ_AVX2 1
#include "blitters/blit_hq_pipeline.h"
#undef LV_HQ_AVX2
} // namespace hq_avx2
#pragma clang attribute pop
#define LV_HQ_HAVE_AVX2 1
#elif LV_HQ_X86 && defined(__GNUC__)
#pragma GCC push_options
#pragma GCC target("avx2")
namespace hq_avx2
{
#define LV_HQ_AVX2 1
#include "blitters/blit_hq_pipeline.h"
#undef LV_HQ_AVX2
} // namespace hq_avx2
#pragma GCC pop_options
#define LV_HQ_HAVE_AVX2 1
#else
#define LV_HQ_HAVE_AVX2 0
#endif

std::atomic<bool> pAvx2Allowed{true};

bool UseAvx2()
{
#if LV_HQ_HAVE_AVX2
    static const bool avx2 = __builtin_cpu_supports("avx2");
    return avx2 && pAvx2Allowed.load(std::memory_order_relaxed);
#else
    return false;
#endif
}

template <class WorkT> void Carve(WorkT &w, std::vector<uint32_t> &store, int width)
{
    // Every array is width + 8 entries, rounded up to whole 32-bit words.
    const size_t n = (size_t)width + 8;
    const size_t words16 = (n + 1) / 2, words8 = (n + 3) / 4;
    store.assign(3 * words16 + 3 * n + 6 * words8 + words8 + words16 + 3 * n + words8, 0);
    uint32_t *p = store.data();
    w.width = width;
    for (int k = 0; k < 3; k++, p += words16)
        w.padded[k] = reinterpret_cast<uint16_t *>(p);
    for (int k = 0; k < 3; k++, p += n)
        w.yuv[k] = p;
    for (int k = 0; k < 2; k++) {
        w.pairV[k] = reinterpret_cast<uint8_t *>(p);
        p += words8;
        w.pairDR[k] = reinterpret_cast<uint8_t *>(p);
        p += words8;
        w.pairDL[k] = reinterpret_cast<uint8_t *>(p);
        p += words8;
    }
    w.h = reinterpret_cast<uint8_t *>(p);
    p += words8;
    w.key = reinterpret_cast<uint16_t *>(p);
    p += words16;
    for (int k = 0; k < 3; k++, p += n)
        w.comp[k] = p;
    w.draw = reinterpret_cast<uint8_t *>(p);
}

template <int N>
void BlitHQ(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width,
            int32_t height)
{
    if (width <= 0 || height <= 0) return;
    std::vector<uint32_t> store;
#if LV_HQ_HAVE_AVX2
    if (UseAvx2()) {
        hq_avx2::Work w;
        Carve(w, store, width);
        hq_avx2::BlitRows<N>(src, srcPitch, delta, dst, dstPitch, width, height, w);
        return;
    }
#endif
    hq_base::Work w;
    Carve(w, store, width);
    hq_base::BlitRows<N>(src, srcPitch, delta, dst, dstPitch, width, height, w);
}

} // namespace

bool lvhq::UsesAvx2()
{
    return UseAvx2();
}
void lvhq::AllowAvx2(bool allowed)
{
    pAvx2Allowed.store(allowed, std::memory_order_relaxed);
}

void BlitHQ_2x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width,
               int32_t height)
{
    BlitHQ<2>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHQ_3x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width,
               int32_t height)
{
    BlitHQ<3>(src, srcPitch, delta, dst, dstPitch, width, height);
}

void BlitHQ_4x(const uint16_t *src, uint32_t srcPitch, uint8_t *delta, uint16_t *dst, uint32_t dstPitch, int32_t width,
               int32_t height)
{
    BlitHQ<4>(src, srcPitch, delta, dst, dstPitch, width, height);
}
