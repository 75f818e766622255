// Frame slots, the blitting thread and the 32-bit picture for the view.
#include "video/ks_render.h"

#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "blitters/ks_blitters.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_assert.h"
#include "shell/ks_debug.h"
#include "shell/ks_framerate.h"
#include "shell/ks_main.h"
#include "shell/ks_platform.h"
#include "video/ks_placard.h"

uint16_t *gRawBackVideoBuffer[2];
uint16_t *gBackVideoBuffer[2];
uint8_t *gDeltaVideoBuffer[2];
uint16_t *gFrontVideoBuffer[2];
uint32_t *g32BitBuffer;
std::atomic<uint8_t> gBufferReady[2];
std::atomic<uint8_t> gBufferClear[2];
uint32_t gOutputVideoWidth;
uint32_t gOutputVideoHeight;
uint32_t gDisplaySkipCounter;
bool gRendererInitialised;
std::mutex gBlitThreadLock;
BlitterRecord *gBlitterTable;
std::atomic<const BlitterRecord *> gBlitterActive;
uint16_t gBlitterSize;

namespace {

// The wake-up condition: a mutex of its own and a condition variable. A signal
// that arrives while the thread blits is lost; the slot stays ready until the
// next one. Only cancellation is tested under the mutex, so stopping never hangs.
struct BlitCondition {
    std::mutex mutex;
    std::condition_variable variable;
};
BlitCondition *pBlitThreadCondition;
std::thread pBlitThread;
std::atomic<bool> pBlitThreadCancelled;
size_t pDeltaBytes; // whole delta buffer of one slot

// (height + 128) * width * bytesPerPixel, or 0 when it does not fit in size_t.
size_t PaddedBytes(uint32_t width, uint32_t height, size_t bytesPerPixel)
{
    size_t rows, pixels, bytes;
    if (__builtin_add_overflow((size_t)height, (size_t)128, &rows)) return 0;
    if (__builtin_mul_overflow(rows, (size_t)width, &pixels)) return 0;
    if (__builtin_mul_overflow(pixels, bytesPerPixel, &bytes)) return 0;
    return bytes;
}

// Zeroed and aligned on a cache line, so that the scalers' wide stores into rows
// whose pitch is a multiple of 64 bytes never straddle two lines. Freed with free().
void *ZeroedAllocation(size_t bytes)
{
    constexpr size_t kLine = 64;
    if (!bytes || bytes > SIZE_MAX - (kLine - 1)) return nullptr;
    void *p = aligned_alloc(kLine, (bytes + kLine - 1) / kLine * kLine);
    if (p) memset(p, 0, bytes);
    return p;
}

void CallBlitter()
{
    KS_ASSERT(pBlitThreadCondition != nullptr);
    if (pBlitThreadCancelled) return;
    for (;;) {
        {
            std::unique_lock<std::mutex> lock(pBlitThreadCondition->mutex);
            if (pBlitThreadCancelled) return;
            pBlitThreadCondition->variable.wait(lock);
        }
        if (pBlitThreadCancelled) return;
        KSBlitOnce();
        if (pBlitThreadCancelled) return;
    }
}

} // namespace

void KSBlitOnce()
{
    int slot;
    if (gBufferReady[0].load(std::memory_order_acquire))
        slot = 0;
    else if (gBufferReady[1].load(std::memory_order_acquire))
        slot = 1;
    else {
        KSDebugLine("Blitter called with no dirty buffer. This shouldn't happen.");
        return;
    }
    std::lock_guard<std::mutex> lock(gBlitThreadLock);
    const BlitterRecord *active = gBlitterActive.load();
    KS_ASSERT(active);
    if (gBufferClear[slot].exchange(0)) {
        memset(gDeltaVideoBuffer[slot], 0, pDeltaBytes);
        memset(gFrontVideoBuffer[slot], 0, (size_t)gOutputVideoWidth * gOutputVideoHeight * 2);
    }
    active->function(gBackVideoBuffer[slot], gBackVideoWidth * 2, gDeltaVideoBuffer[slot], gFrontVideoBuffer[slot],
                     gOutputVideoWidth * 2, (int32_t)gBackVideoWidth, (int32_t)gBackVideoHeight);
    if (KSPlacardShowing()) {
        KSDrawPlacards(gFrontVideoBuffer[slot], gOutputVideoWidth, gOutputVideoHeight);
        gBufferClear[slot] = 1;
    }
    if (KSPrefBool(kPrefDisplayFrameRate))
        KSDrawFrameRate(gFrontVideoBuffer[slot], gOutputVideoWidth * 2, gOutputVideoWidth);
    gBufferReady[slot].store(0, std::memory_order_release);
}

void KSSetupRendering()
{
    if (!gBlitterTable) gBlitterTable = BuildBlitterTable();
    KS_ASSERT(gBlitterTable);
    for (const BlitterRecord *r = gBlitterTable; r->size != 0; r++) RegisterBlitter(r->name, r->size);
}

void KSFreeBuffers()
{
    for (int i = 0; i < 2; i++) {
        free(gRawBackVideoBuffer[i]);
        free(gDeltaVideoBuffer[i]);
        free(gFrontVideoBuffer[i]);
        gRawBackVideoBuffer[i] = nullptr;
        gBackVideoBuffer[i] = nullptr;
        gDeltaVideoBuffer[i] = nullptr;
        gFrontVideoBuffer[i] = nullptr;
    }
    free(g32BitBuffer);
    g32BitBuffer = nullptr;
    pDeltaBytes = 0;
}

void KSAllocateBuffers()
{
    KSFreeBuffers();
    const uint32_t w = gBackVideoWidth, h = gBackVideoHeight;
    // A size whose byte count overflows is an allocation that cannot succeed.
    const size_t rawBytes = PaddedBytes(w, h, 2);
    const size_t deltaBytes = PaddedBytes(w, h, 16);
    const size_t frontBytes = PaddedBytes(w, h, 50);
    const size_t bytes32 = PaddedBytes(w, h, 100);
    gRawBackVideoBuffer[0] = static_cast<uint16_t *>(ZeroedAllocation(rawBytes));
    KS_ASSERT(gRawBackVideoBuffer[0]);
    gRawBackVideoBuffer[1] = static_cast<uint16_t *>(ZeroedAllocation(rawBytes));
    KS_ASSERT(gRawBackVideoBuffer[1]);
    gBackVideoBuffer[0] = gRawBackVideoBuffer[0] + 16 * (size_t)w;
    gBackVideoBuffer[1] = gRawBackVideoBuffer[1] + 16 * (size_t)w;
    gDeltaVideoBuffer[0] = static_cast<uint8_t *>(ZeroedAllocation(deltaBytes));
    KS_ASSERT(gDeltaVideoBuffer[0]);
    gDeltaVideoBuffer[1] = static_cast<uint8_t *>(ZeroedAllocation(deltaBytes));
    KS_ASSERT(gDeltaVideoBuffer[1]);
    gFrontVideoBuffer[0] = static_cast<uint16_t *>(ZeroedAllocation(frontBytes));
    KS_ASSERT(gFrontVideoBuffer[0]);
    gFrontVideoBuffer[1] = static_cast<uint16_t *>(ZeroedAllocation(frontBytes));
    KS_ASSERT(gFrontVideoBuffer[1]);
    g32BitBuffer = static_cast<uint32_t *>(ZeroedAllocation(bytes32));
    KS_ASSERT(g32BitBuffer);
    pDeltaBytes = deltaBytes;
}

void KSResetDisplayState()
{
    gBufferReady[0] = 0;
    gBufferReady[1] = 0;
    gBufferClear[0] = 1;
    gBufferClear[1] = 1;
    gRendererInitialised = true;
}

void KSStartBlittingThread()
{
    if (pBlitThread.joinable()) KSStopBlittingThread();
    pBlitThreadCondition = new BlitCondition;
    pBlitThreadCancelled = false;
    pBlitThread = std::thread(CallBlitter);
}

void KSStopBlittingThread()
{
    if (pBlitThreadCondition) {
        {
            std::lock_guard<std::mutex> lock(pBlitThreadCondition->mutex);
            pBlitThreadCancelled = true;
        }
        pBlitThreadCondition->variable.notify_all();
    }
    if (pBlitThread.joinable()) pBlitThread.join();
    // A blit in progress has ended once the lock can be taken.
    KSWaitForBlitIdle();
    delete pBlitThreadCondition;
    pBlitThreadCondition = nullptr;
}

bool KSBlittingThreadRunning() { return pBlitThread.joinable(); }

uint16_t *KSBackBuffer(uint32_t slot) { return gBackVideoBuffer[slot & 1]; }

void KSMarkReady(uint32_t slot) { gBufferReady[slot & 1].store(1, std::memory_order_release); }

void KSWakeBlitter()
{
    KSWaitForBlitIdle();
    if (pBlitThreadCondition) pBlitThreadCondition->variable.notify_one();
}

void KSWaitForBlitIdle()
{
    gBlitThreadLock.lock();
    gBlitThreadLock.unlock();
}

void KSSetClearFlags()
{
    gBufferClear[0] = 1;
    gBufferClear[1] = 1;
}

uint32_t *KSDisplayFrame()
{
    if (!gRendererInitialised) {
        fprintf(stderr, "Renderer called prior to init. This isn't supposed to happen.\n");
        return nullptr;
    }
    if (gDisplaySkipCounter) {
        gDisplaySkipCounter--;
        return nullptr;
    }
    int slot;
    if (!gBufferReady[0].load(std::memory_order_acquire))
        slot = 0;
    else if (!gBufferReady[1].load(std::memory_order_acquire))
        slot = 1;
    else {
        KSWaitForBlitIdle();
        if (gBufferReady[1].load(std::memory_order_acquire)) {
            if (gBufferReady[0].load(std::memory_order_acquire))
                slot = 0;
            else {
                KSDebugLine("No video buffer was available to render a frame.");
                slot = 1;
            }
        } else
            slot = 1;
    }
    if (!g32BitBuffer || !gFrontVideoBuffer[slot]) return g32BitBuffer;
    const uint32_t w = gOutputVideoWidth, h = gOutputVideoHeight;
    if (h == 0) return g32BitBuffer;
    const uint16_t *front = gFrontVideoBuffer[slot];
    for (uint32_t y = 0; y < h; y++) {
        const uint16_t *s = front + (size_t)(h - 1 - y) * w;
        uint32_t *d = g32BitBuffer + (size_t)y * w;
        for (uint32_t x = 0; x < w; x++) {
            const uint32_t p = s[x];
            d[x] = ((p & 31) << 3) | ((p << 6) & 0xF800) | ((p << 9) & 0xF80000);
        }
    }
    return g32BitBuffer;
}

void SelectBlitter()
{
    std::lock_guard<std::mutex> lock(gBlitThreadLock);
    const uint16_t previous = gBlitterSize;
    gBlitterActive = nullptr;
    gBlitterSize = 1;
    const std::string type = KSPrefString(kPrefBlitterType);
    const int64_t size = KSPrefInt(kPrefBlitterSize);
    const BlitterRecord *found = nullptr;
    if (size >= 1 && size <= 5) found = FindBlitter(gBlitterTable, type.c_str(), (int)size);
    if (!found) found = gBlitterTable; // silently Plain 1x
    gBlitterActive = found;
    gBlitterSize = found ? found->size : 1;
    gOutputVideoWidth = gBackVideoWidth * gBlitterSize;
    gOutputVideoHeight = gBackVideoHeight * gBlitterSize;
    if (gBlitterSize != previous && KSSessionRunning()) {
        gDisplaySkipCounter = 2;
        if (KSPlatform()) KSPlatform()->markWindowForResize();
    }
    KSSetClearFlags();
}

void KSResetRenderState()
{
    KSStopBlittingThread();
    KSFreeBuffers();
    gBufferReady[0] = gBufferReady[1] = 0;
    gBufferClear[0] = gBufferClear[1] = 0;
    gOutputVideoWidth = gOutputVideoHeight = 0;
    gDisplaySkipCounter = 0;
    gRendererInitialised = false;
    gBlitterActive = nullptr;
    gBlitterSize = 0;
}
