// The queue of output buffers between the sound ring's callback and a device.
#include "sound/ks_audio_queue.h"

#include <algorithm>
#include <cstring>
#include <new>

LVAudioQueue::LVAudioQueue(const KSAudioFormat &format, KSAudioQueueOutputCallback callback, void *userData,
                           std::unique_ptr<LVAudioDevice> device)
    : pFormat(format), pCallback(callback), pUserData(userData), pDevice(std::move(device))
{
}

LVAudioQueue::~LVAudioQueue()
{
    stop();
}

int32_t LVAudioQueue::allocateBuffer(uint32_t bytes, KSQueueBuffer **buffer)
{
    if (!buffer) return kAudioQueueErrInvalidBuffer;
    *buffer = nullptr;
    std::unique_ptr<uint8_t[]> storage(new (std::nothrow) uint8_t[bytes ? bytes : 1]());
    std::unique_ptr<KSQueueBuffer> record(new (std::nothrow) KSQueueBuffer{});
    if (!storage || !record) return kAudioQueueErrInvalidBuffer;
    record->mAudioData = storage.get();
    record->mAudioDataBytesCapacity = bytes;
    record->mAudioDataByteSize = 0;
    *buffer = record.get();
    std::lock_guard<std::mutex> lock(pLock);
    pStorage.push_back(std::move(storage));
    pBuffers.push_back(std::move(record));
    return noErr;
}

int32_t LVAudioQueue::enqueueBuffer(KSQueueBuffer *buffer)
{
    if (!buffer || buffer->mAudioDataByteSize > buffer->mAudioDataBytesCapacity) return kAudioQueueErrInvalidBuffer;
    std::lock_guard<std::mutex> lock(pLock);
    pQueued.push_back(buffer);
    return noErr;
}

int32_t LVAudioQueue::start()
{
    if (!pDevice) return kAudioQueueErrDeviceFailed;
    if (!pStarted) {
        pStarted = true;
        pDevice->start(this);
    }
    return noErr;
}

int32_t LVAudioQueue::stop()
{
    if (pStarted && pDevice) pDevice->close();
    pStarted = false;
    std::lock_guard<std::mutex> lock(pLock);
    pQueued.clear();
    pHeadOffset = 0;
    return noErr;
}

void LVAudioQueue::render(uint8_t *out, size_t bytes)
{
    while (bytes > 0) {
        KSQueueBuffer *finished = nullptr;
        {
            std::lock_guard<std::mutex> lock(pLock);
            if (pQueued.empty()) break;
            KSQueueBuffer *head = pQueued.front();
            const size_t n = std::min<size_t>(head->mAudioDataByteSize - pHeadOffset, bytes);
            memcpy(out, static_cast<const uint8_t *>(head->mAudioData) + pHeadOffset, n);
            out += n;
            bytes -= n;
            pHeadOffset += n;
            if (pHeadOffset >= head->mAudioDataByteSize) {
                pQueued.pop_front();
                pHeadOffset = 0;
                finished = head;
            }
        }
        if (!finished) continue;
        pCallback(pUserData, this, finished);
        // An empty buffer plays nothing: do not spin on it within one pull.
        if (finished->mAudioDataByteSize == 0) break;
    }
    if (bytes) memset(out, 0, bytes); // signed formats: zero is silence
}

KSQueueBuffer *LVAudioQueue::finishHeadBuffer()
{
    KSQueueBuffer *finished;
    {
        std::lock_guard<std::mutex> lock(pLock);
        if (pQueued.empty()) return nullptr;
        finished = pQueued.front();
        pQueued.pop_front();
        pHeadOffset = 0;
    }
    pCallback(pUserData, this, finished);
    return finished;
}

size_t LVAudioQueue::queuedBuffers()
{
    std::lock_guard<std::mutex> lock(pLock);
    return pQueued.size();
}
