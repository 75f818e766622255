// The real output device: an SDL2 audio device at the ring's own rate, sample
// format and channel count. Its callback runs on SDL's audio thread and pulls
// the queue's buffers in order.
#pragma once

#include <SDL2/SDL_audio.h>

#include "sound/ks_audio_queue.h"

class LVSDLAudioDevice : public LVAudioDevice
{
  public:
    ~LVSDLAudioDevice() override { close(); }
    // False, after a "KSDEBUG: " line, when SDL has no audio device to offer.
    bool open(const KSAudioFormat &format, uint32_t blockBytes) override;
    void start(LVAudioQueue *queue) override;
    void close() override;

  private:
    static void SDLCALL Pull(void *device, Uint8 *stream, int length);

    SDL_AudioDeviceID pDevice = 0;
    bool pSubsystemOpen = false;
    LVAudioQueue *pQueue = nullptr;
};
