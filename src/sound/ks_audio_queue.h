// A queue of output buffers played in order, as an audio queue keeps them: the
// device pulls bytes from the head; a buffer played to its end goes back to the
// owner's callback, which refills it and enqueues it again at the tail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

constexpr int32_t noErr = 0;
constexpr int32_t kAudioQueueErrInvalidBuffer = -66687;
constexpr int32_t kAudioQueueErrDeviceFailed = -66681;

// The stream description: linear PCM, signed, packed, little-endian, interleaved.
struct KSAudioFormat {
    double mSampleRate;
    uint32_t mFormatFlags; // 12: signed integer and packed
    uint32_t mBitsPerChannel;
    uint32_t mChannelsPerFrame;
    uint32_t mBytesPerFrame;
    uint32_t mFramesPerPacket;
    uint32_t mBytesPerPacket;
};

constexpr uint32_t kAudioFormatFlagsSignedPacked = 12;

struct KSQueueBuffer {
    void *mAudioData;
    uint32_t mAudioDataBytesCapacity;
    uint32_t mAudioDataByteSize;
};

class LVAudioQueue;
typedef void (*KSAudioQueueOutputCallback)(void *userData, LVAudioQueue *queue, KSQueueBuffer *buffer);

// The device seam. The real side is an SDL2 audio device; without one, a clocked
// null device; tests use an inert one and finish buffers by hand.
class LVAudioDevice
{
  public:
    virtual ~LVAudioDevice() = default;
    // Prepares output in this format; false when there is no device to play on.
    virtual bool open(const KSAudioFormat &format, uint32_t blockBytes) = 0;
    // From now on the device pulls its bytes with queue->render, on any thread.
    virtual void start(LVAudioQueue *queue) = 0;
    // Stops pulling: once it returns, no render call runs or will run.
    virtual void close() = 0;
};

class LVAudioQueue
{
  public:
    LVAudioQueue(const KSAudioFormat &format, KSAudioQueueOutputCallback callback, void *userData,
                 std::unique_ptr<LVAudioDevice> device);
    ~LVAudioQueue();
    LVAudioQueue(const LVAudioQueue &) = delete;
    LVAudioQueue &operator=(const LVAudioQueue &) = delete;

    const KSAudioFormat &format() const { return pFormat; }
    LVAudioDevice *device() const { return pDevice.get(); }

    int32_t allocateBuffer(uint32_t bytes, KSQueueBuffer **buffer);
    int32_t enqueueBuffer(KSQueueBuffer *buffer);
    int32_t start();
    // Immediate: the device stops pulling and everything queued is dropped.
    int32_t stop();

    // Device side: fills out with the next bytes in play order, silence when
    // nothing is queued. Finished buffers go to the callback on this thread.
    void render(uint8_t *out, size_t bytes);
    // Device side, a whole buffer at a time: the head buffer counts as played
    // and goes to the callback. Returns it, or null when nothing is queued.
    KSQueueBuffer *finishHeadBuffer();
    size_t queuedBuffers();

  private:
    KSAudioFormat pFormat;
    KSAudioQueueOutputCallback pCallback;
    void *pUserData;
    std::unique_ptr<LVAudioDevice> pDevice;
    bool pStarted = false;
    std::mutex pLock; // the device thread plays while the owner enqueues and stops
    std::deque<KSQueueBuffer *> pQueued;
    size_t pHeadOffset = 0;
    std::vector<std::unique_ptr<KSQueueBuffer>> pBuffers;
    std::vector<std::unique_ptr<uint8_t[]>> pStorage;
};
