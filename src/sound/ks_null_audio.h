// Output for a machine without an audio device: nothing is heard, but the queue is
// drained at the format's real rate on a thread of its own, so the ring, the
// high-water mark and recording behave as they do with a device.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "sound/ks_audio_queue.h"

class LVNullAudioDevice : public LVAudioDevice
{
  public:
    ~LVNullAudioDevice() override { close(); }
    bool open(const KSAudioFormat &format, uint32_t blockBytes) override;
    void start(LVAudioQueue *queue) override;
    void close() override;

  private:
    void run(LVAudioQueue *queue);

    double pBytesPerSecond = 0;
    uint32_t pBlockBytes = 0;
    std::thread pThread;
    std::mutex pLock;
    std::condition_variable pWake;
    bool pStopping = false;
};
