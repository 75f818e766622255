// The eight-block sound ring and its output callback.
//
// The callback runs on the device's thread (SDL's audio thread), the producer on
// the main thread, so the counters are atomics; the protocol is unchanged: the
// producer owns the write index, the callback the read index and the waiting
// flag, and the filled count is the hand-over between them.
#include "sound/ks_sound_ring.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "shell/ks_assert.h"

void *gSoundBuffer[kSoundRingBlocks];

namespace
{

std::atomic<uint16_t> pFilledCount{0};
std::atomic<uint16_t> pReadIndex{0};
std::atomic<uint16_t> pWriteIndex{kSoundRingBlocks};
std::atomic<uint8_t> pWaiting{1};
uint32_t pBufferBytes;
KSAudioFormat pFormat;
std::unique_ptr<LVAudioQueue> pQueue;
KSQueueBuffer *pQueueBuffers[kSoundRingBlocks];
std::atomic<KSSoundPlayedHook> pPlayedHook{nullptr};

// Seven, not eight: the read index trails the written blocks by one slot, so an
// eighth block would land on the slot the callback plays next.
constexpr uint16_t kRingFull = kSoundRingBlocks - 1;
constexpr uint16_t kRefillBlocks = 4;
constexpr uint16_t kHighWater = 4;

} // namespace

uint32_t KSSoundBufferBytes(uint32_t frequency, uint8_t sampleBits, bool stereo, uint32_t framerate)
{
    if (framerate == 0) return 0;
    return (uint32_t)(sampleBits >> 3) * (stereo ? 2u : 1u) * (frequency / framerate);
}

KSAudioFormat KSMakeAudioFormat(uint32_t frequency, uint8_t sampleBits, bool stereo)
{
    KSAudioFormat format{};
    format.mSampleRate = (double)frequency;
    format.mFormatFlags = kAudioFormatFlagsSignedPacked;
    format.mBitsPerChannel = sampleBits;
    format.mChannelsPerFrame = stereo ? 2 : 1;
    format.mBytesPerFrame = (uint32_t)(sampleBits >> 3) * format.mChannelsPerFrame;
    format.mFramesPerPacket = 1;
    format.mBytesPerPacket = format.mBytesPerFrame;
    return format;
}

void KSSoundRingStart(const KSAudioFormat &format, uint32_t bufferBytes, std::unique_ptr<LVAudioDevice> device)
{
    KSSoundRingStop();
    // Deliberate start values: slot 0's silence is played first, one callback
    // ahead of the first real block (slot 1).
    pReadIndex = 0;
    pWaiting = 1;
    pFilledCount = 0;
    pWriteIndex = kSoundRingBlocks;

    pBufferBytes = bufferBytes;
    for (int i = 0; i < kSoundRingBlocks; i++) {
        gSoundBuffer[i] = calloc(bufferBytes ? bufferBytes : 1, 1);
        KS_ASSERT(gSoundBuffer[i]);
    }
    pFormat = format;

    int32_t status = device ? noErr : kAudioQueueErrDeviceFailed;
    KS_ASSERT(status == noErr);
    pQueue.reset(new LVAudioQueue(format, prvSoundProcess, nullptr, std::move(device)));
    for (int i = 0; i < kSoundRingBlocks; i++) {
        status = pQueue->allocateBuffer(bufferBytes, &pQueueBuffers[i]);
        KS_ASSERT(status == noErr);
        pQueueBuffers[i]->mAudioDataByteSize = bufferBytes;
        prvSoundProcess(nullptr, pQueue.get(), pQueueBuffers[i]); // the ring is empty: silence
    }
    status = pQueue->start();
    KS_ASSERT(status == noErr);
}

void KSSoundRingStop()
{
    if (pQueue) {
        const int32_t status = pQueue->stop();
        KS_ASSERT(status == noErr);
        pQueue.reset();
        for (KSQueueBuffer *&buffer : pQueueBuffers)
            buffer = nullptr;
    }
    for (void *&block : gSoundBuffer) {
        free(block);
        block = nullptr;
    }
    pBufferBytes = 0;
}

bool KSSoundRingRunning()
{
    return pQueue != nullptr;
}

void *KSSoundRingAcquire()
{
    if (!gSoundBuffer[0]) return nullptr;
    if (pFilledCount.load(std::memory_order_acquire) >= kRingFull) return nullptr;
    const uint16_t slot = (uint16_t)((pWriteIndex.load(std::memory_order_relaxed) + 1) % kSoundRingBlocks);
    pWriteIndex.store(slot, std::memory_order_relaxed);
    return gSoundBuffer[slot];
}

void KSSoundRingCommit()
{
    if (!gSoundBuffer[0]) return;
    pFilledCount.fetch_add(1, std::memory_order_acq_rel); // publishes the block's samples
}

bool KSSoundRingAboveHighWater()
{
    return pFilledCount.load(std::memory_order_acquire) > kHighWater;
}

bool KSFrameWantsSound(bool usesSound, bool soundEnabled, bool speedUnlimited)
{
    return usesSound && soundEnabled && !(speedUnlimited && KSSoundRingAboveHighWater());
}

void prvSoundProcess(void *, LVAudioQueue *queue, KSQueueBuffer *q)
{
    if (!q || !q->mAudioData) {
        fprintf(stderr, "Assertion failed: (q), function prvSoundProcess, file %s, line %d.\n", __FILE__, __LINE__);
        abort();
    }
    const uint16_t filled = pFilledCount.load(std::memory_order_acquire);
    if (filled == 0) { // underrun
        pWaiting = 1;
        memset(q->mAudioData, 0, q->mAudioDataByteSize);
        queue->enqueueBuffer(q);
        return;
    }
    if (pWaiting) {
        // Refilling after an underrun: the block that ends the wait is itself silent.
        memset(q->mAudioData, 0, q->mAudioDataByteSize);
        if (filled >= kRefillBlocks) pWaiting = 0;
        queue->enqueueBuffer(q);
        return;
    }
    const uint16_t read = pReadIndex.load(std::memory_order_relaxed);
    const void *block = gSoundBuffer[read];
    const uint32_t bytes = q->mAudioDataByteSize < pBufferBytes ? q->mAudioDataByteSize : pBufferBytes;
    if (KSSoundPlayedHook hook = pPlayedHook.load(std::memory_order_acquire)) hook(block, bytes);
    memcpy(q->mAudioData, block, bytes);
    if (bytes < q->mAudioDataByteSize)
        memset(static_cast<uint8_t *>(q->mAudioData) + bytes, 0, q->mAudioDataByteSize - bytes);
    pReadIndex.store((uint16_t)((read + 1) % kSoundRingBlocks), std::memory_order_relaxed);
    pFilledCount.fetch_sub(1, std::memory_order_acq_rel); // hands the slot back to the producer
    queue->enqueueBuffer(q);
}

void KSSetSoundPlayedHook(KSSoundPlayedHook hook)
{
    pPlayedHook.store(hook, std::memory_order_release);
}

const KSAudioFormat *KSSoundFormat()
{
    return pQueue ? &pFormat : nullptr;
}
uint32_t KSSoundRingBufferBytes()
{
    return pBufferBytes;
}
LVAudioQueue *KSSoundQueue()
{
    return pQueue.get();
}

KSSoundRingState KSSoundRingSnapshot()
{
    return KSSoundRingState{pFilledCount.load(), pReadIndex.load(), pWriteIndex.load(), pWaiting.load()};
}
