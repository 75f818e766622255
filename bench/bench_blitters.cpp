// Every blitter of the table on a 256 x 224 frame, once with every pixel changing
// between calls and once with a still picture, next to memcpy of the same output.
// The edge-following scalers (SaI family, Simple Smoothing, HQ) also run on a
// changing picture of flat colours and edges ("changing-art"), where their rules
// take other branches than on noise.
//
// Figures: items_per_second is source pixels per second (divide by 1e6 for source
// megapixels per second, also shown as the "MPix/s" counter); bytes_per_second
// counts the destination bytes a full redraw writes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <lumivex/blitters.h>

namespace
{

constexpr int kWidth = 256;
constexpr int kHeight = 224;

// The shell allocates its frame slots on 64-byte boundaries; so do these.
template <class T> struct CacheLineAllocator {
    using value_type = T;
    CacheLineAllocator() = default;
    template <class U> CacheLineAllocator(const CacheLineAllocator<U> &) {}
    T *allocate(size_t n)
    {
        void *p = aligned_alloc(64, (n * sizeof(T) + 63) / 64 * 64);
        if (!p) throw std::bad_alloc();
        return static_cast<T *>(p);
    }
    void deallocate(T *p, size_t) { free(p); }
    template <class U> bool operator==(const CacheLineAllocator<U> &) const { return true; }
    template <class U> bool operator!=(const CacheLineAllocator<U> &) const { return false; }
};
template <class T> using Buffer = std::vector<T, CacheLineAllocator<T>>;

// Buffers laid out as the shell's frame slots (the margins above and below).
struct Frame {
    Buffer<uint16_t> rawA, rawB;
    Buffer<uint8_t> delta;
    Buffer<uint16_t> front;
    // Noise, or a picture of a few flat colours with edges in many directions
    // (as game graphics have, and what the edge-following scalers look at).
    explicit Frame(bool art = false)
        : rawA((size_t)(kHeight + 128) * kWidth), rawB(rawA.size()), delta((size_t)(kHeight + 128) * kWidth * 16),
          front((size_t)(kHeight + 128) * kWidth * 25)
    {
        // Every pixel of B differs from the same pixel of A.
        const uint16_t palette[4] = {0x0000, 0x7FFF, 0x03E0, 0x5294};
        uint32_t seed = 12345;
        for (int y = 0; y < kHeight; y++)
            for (int x = 0; x < kWidth; x++) {
                seed = seed * 1664525u + 1013904223u;
                const uint16_t p = art ? palette[((x / 8) * 7 + (y / 8) * 3 + (x * y) / 97) % 4]
                                       : (uint16_t)((seed >> 9) & 0x7FFF);
                rawA[(size_t)(y + 16) * kWidth + x] = p;
                rawB[(size_t)(y + 16) * kWidth + x] = (uint16_t)(p ^ 0x0421);
            }
    }
    const uint16_t *A() const { return rawA.data() + 16 * kWidth; }
    const uint16_t *B() const { return rawB.data() + 16 * kWidth; }
};

void Report(benchmark::State &state, int size)
{
    const int64_t pixels = (int64_t)kWidth * kHeight;
    state.SetItemsProcessed(state.iterations() * pixels);
    state.SetBytesProcessed(state.iterations() * pixels * size * size * 2);
    state.counters["MPix/s"] = benchmark::Counter((double)pixels / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void BlitChanging(benchmark::State &state, BlitterFunc f, int size, bool art)
{
    Frame fr(art);
    const uint32_t dstPitch = (uint32_t)(kWidth * size * 2);
    bool flip = false;
    for (auto _ : state) {
        f(flip ? fr.B() : fr.A(), kWidth * 2, fr.delta.data(), fr.front.data(), dstPitch, kWidth, kHeight);
        flip = !flip;
        benchmark::ClobberMemory();
    }
    Report(state, size);
}

void BlitStill(benchmark::State &state, BlitterFunc f, int size)
{
    Frame fr;
    const uint32_t dstPitch = (uint32_t)(kWidth * size * 2);
    f(fr.A(), kWidth * 2, fr.delta.data(), fr.front.data(), dstPitch, kWidth, kHeight);
    for (auto _ : state) {
        f(fr.A(), kWidth * 2, fr.delta.data(), fr.front.data(), dstPitch, kWidth, kHeight);
        benchmark::ClobberMemory();
    }
    Report(state, size);
}

void Memcpy(benchmark::State &state, int size)
{
    const size_t bytes = (size_t)kWidth * kHeight * size * size * 2;
    Buffer<uint8_t> from(bytes, 1), to(bytes);
    for (auto _ : state) {
        memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    Report(state, size);
}

int RegisterAll()
{
    for (int size = 1; size <= 5; size++)
        benchmark::RegisterBenchmark(("memcpy/" + std::to_string(size) + "x").c_str(), Memcpy, size)
            ->Unit(benchmark::kMicrosecond);
    BlitterRecord *table = BuildBlitterTable();
    if (!table) return 1;
    for (const BlitterRecord *r = table; r->size; r++) {
        const std::string base = std::string(r->name) + "/" + std::to_string(r->size) + "x";
        benchmark::RegisterBenchmark((base + "/changing").c_str(), BlitChanging, r->function, (int)r->size, false)
            ->Unit(benchmark::kMicrosecond);
        // The scalers whose work depends on the picture, also on flat colours and edges.
        const std::string name = r->name;
        if (name.find("SaI") != std::string::npos || name == "Super Eagle" || name == "Simple Smoothing" ||
            name.rfind("HQ", 0) == 0)
            benchmark::RegisterBenchmark((base + "/changing-art").c_str(), BlitChanging, r->function, (int)r->size,
                                         true)
                ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((base + "/still").c_str(), BlitStill, r->function, (int)r->size)
            ->Unit(benchmark::kMicrosecond);
    }
    free(table); // the records were copied into the registrations
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (RegisterAll() != 0) return 1;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
