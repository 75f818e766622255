// HQ2X, HQ3X and HQ4X on a 256 x 224 frame: every pixel changing between calls
// (noise, and a picture of a few flat colours) and a still frame; AVX2 and the
// baseline path. Items are source pixels.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "../tests/blitters/blit_harness.h"
#include "blitters/blit_hq.h"
#include "blitters/ks_blitter_list.h"
#include "blitters/ks_blitters.h"

namespace
{
constexpr int kWidth = 256, kHeight = 224;
const BlitterFunc kHQ[5] = {nullptr, nullptr, BlitHQ_2x, BlitHQ_3x, BlitHQ_4x};

enum Picture { kNoise, kFlat };

void Fill(BlitHarness &h, std::vector<uint16_t> &other, Picture picture)
{
    std::mt19937 rng(7);
    const uint16_t palette[4] = {0x0000, 0x7FFF, 0x03E0, 0x5294};
    for (int y = 0; y < kHeight; y++)
        for (int x = 0; x < kWidth; x++) {
            const uint16_t p = picture == kNoise ? (uint16_t)(rng() & 0x7FFF)
                                                 : palette[((x / 8) * 7 + (y / 8) * 3 + (x * y) / 97) % 4];
            h.src(x, y) = p;
            other[(size_t)(y + 16) * kWidth + x] = (uint16_t)(p ^ 0x0421);
        }
}

void HQ(benchmark::State &state, bool changing, Picture picture, bool avx2)
{
    FillRGBtoYUV();
    const int size = (int)state.range(0);
    BlitHarness h(kWidth, kHeight, size);
    std::vector<uint16_t> other(h.raw.size());
    Fill(h, other, picture);
    lvhq::AllowAvx2(avx2);
    const uint16_t *frames[2] = {h.source(), other.data() + 16 * kWidth};
    kHQ[size](frames[0], kWidth * 2, h.delta.data(), h.front.data(), kWidth * size * 2, kWidth, kHeight);
    unsigned n = 1;
    for (auto _ : state) {
        kHQ[size](frames[changing ? (n++ & 1) : 0], kWidth * 2, h.delta.data(), h.front.data(), kWidth * size * 2,
                  kWidth, kHeight);
        benchmark::ClobberMemory();
    }
    lvhq::AllowAvx2(true);
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}

void ChangingNoise(benchmark::State &s)
{
    HQ(s, true, kNoise, true);
}
void ChangingFlat(benchmark::State &s)
{
    HQ(s, true, kFlat, true);
}
void Still(benchmark::State &s)
{
    HQ(s, false, kNoise, true);
}
void ChangingNoiseBaseline(benchmark::State &s)
{
    HQ(s, true, kNoise, false);
}
} // namespace

BENCHMARK(ChangingNoise)->DenseRange(2, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChangingFlat)->DenseRange(2, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(Still)->DenseRange(2, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChangingNoiseBaseline)->DenseRange(2, 4)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
