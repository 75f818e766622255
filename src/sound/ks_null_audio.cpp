// The clocked null device: one block's worth of bytes per block duration.
#include "sound/ks_null_audio.h"

#include <chrono>

bool LVNullAudioDevice::open(const KSAudioFormat &format, uint32_t blockBytes)
{
    pBytesPerSecond = format.mSampleRate * format.mBytesPerFrame;
    pBlockBytes = blockBytes;
    return pBytesPerSecond > 0 && blockBytes > 0;
}

void LVNullAudioDevice::start(LVAudioQueue *queue)
{
    close();
    if (pBytesPerSecond <= 0 || pBlockBytes == 0) return;
    pStopping = false;
    pThread = std::thread([this, queue] { run(queue); });
}

void LVNullAudioDevice::close()
{
    if (!pThread.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(pLock);
        pStopping = true;
    }
    pWake.notify_all();
    pThread.join();
}

void LVNullAudioDevice::run(LVAudioQueue *queue)
{
    using Clock = std::chrono::steady_clock;
    const auto period =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(pBlockBytes / pBytesPerSecond));
    std::vector<uint8_t> sink(pBlockBytes);
    auto next = Clock::now();
    std::unique_lock<std::mutex> lock(pLock);
    while (!pStopping) {
        lock.unlock();
        queue->render(sink.data(), sink.size());
        lock.lock();
        next += period;
        // After a long stall (a suspended machine) keep the rate, not the backlog.
        if (Clock::now() - next > std::chrono::seconds(1)) next = Clock::now();
        pWake.wait_until(lock, next, [this] { return pStopping; });
    }
}
