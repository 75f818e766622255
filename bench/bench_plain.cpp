// Plain 1x to 5x on a 256 x 224 frame, changing every frame and still, beside
// memcpy of the same output size; and the cost of one frame tick.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>
#include <cstring>
#include <vector>

#include "../tests/blitters/blit_harness.h"
#include "../tests/shell/fake_platform.h"
#include "blitters/ks_blitter_list.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"
#include "video/ks_render.h"

double FakeClock::now;

namespace {
constexpr int kWidth = 256, kHeight = 224;
const BlitterFunc kPlain[6] = {nullptr, BlitPlain_1x, BlitPlain_2x, BlitPlain_3x, BlitPlain_4x, BlitPlain_5x};

void Plain(benchmark::State &state, bool changing)
{
    const int size = (int)state.range(0);
    BlitHarness h(kWidth, kHeight, size);
    // Two source frames that differ at every pixel; a changing run alternates them.
    std::vector<uint16_t> other(h.raw.size());
    for (int y = 0; y < kHeight; y++)
        for (int x = 0; x < kWidth; x++) {
            h.src(x, y) = (uint16_t)((x * 31 + y * 7) & 0x7FFF);
            other[(size_t)(y + 16) * kWidth + x] = h.src(x, y) ^ 0x0421;
        }
    const uint16_t *frames[2] = {h.source(), other.data() + 16 * kWidth};
    unsigned n = 0;
    for (auto _ : state) {
        const uint16_t *src = frames[changing ? (n++ & 1) : 0];
        kPlain[size](src, kWidth * 2, h.delta.data(), h.front.data(), kWidth * size * 2, kWidth, kHeight);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kWidth * kHeight); // source pixels per second
}

void PlainChanging(benchmark::State &state) { Plain(state, true); }
void PlainStill(benchmark::State &state) { Plain(state, false); }

void MemcpyOutput(benchmark::State &state)
{
    const int size = (int)state.range(0);
    const size_t bytes = (size_t)kWidth * size * kHeight * size * 2;
    std::vector<uint8_t> a(bytes, 1), b(bytes);
    for (auto _ : state) {
        memcpy(b.data(), a.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

KSButton pButtons[] = {{"Fire", 1, 6, 0}, {"Quick Quit", 0, 53, KS_FUNCTION_QUICK_QUIT}, {nullptr}};
KSMenuItem pMenus[] = {{0}};
KSPrefItem pPrefs[] = {{KS_PREF_END}};

// One frame tick in unlimited mode with a core that does nothing: button update,
// slot hand-off to the (real) blitting thread, and the command buttons.
void FrameTickUnlimited(benchmark::State &state)
{
    QTemporaryDir dir;
    FakePlatform platform;
    KSSetPlatform(&platform);
    KSPrefsOpenFile(dir.filePath("b.ini").toStdString());
    static KSConfigParameters config{};
    strcpy(config.emulator_name, "Bench");
    config.framerate = 60;
    config.initial_width = kWidth;
    config.initial_height = kHeight;
    config.buttons = pButtons;
    config.menuitems = pMenus;
    config.prefs = pPrefs;
    config.handle_frame = [](uint16_t *, void *) {};
    config.handle_open = [](uint32_t, const char *) { return true; };
    config.handle_menuupdate = [](uint32_t, bool, bool) { return true; };
    KSInit(&config);
    gSpeedUnlimited = true;
    for (auto _ : state) KSFrameTick();
    KSStopSession();
    KSResetShellState();
    KSSetPlatform(nullptr);
    KSPrefsClose();
}

} // namespace

BENCHMARK(PlainChanging)->DenseRange(1, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainStill)->DenseRange(1, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(MemcpyOutput)->DenseRange(1, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(FrameTickUnlimited)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
