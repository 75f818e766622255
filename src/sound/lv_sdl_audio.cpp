// SDL2 audio output for the sound ring.
#include "sound/lv_sdl_audio.h"

#include <SDL2/SDL.h>

#include <cstring>

#include "shell/ks_debug.h"

bool LVSDLAudioDevice::open(const KSAudioFormat &format, uint32_t blockBytes)
{
    close();
    SDL_AudioFormat sampleFormat;
    switch (format.mBitsPerChannel) {
    case 8:
        sampleFormat = AUDIO_S8;
        break;
    case 16:
        sampleFormat = AUDIO_S16SYS;
        break;
    case 32:
        sampleFormat = AUDIO_S32SYS;
        break;
    default:
        KSDebugLine("No audio output for %u-bit samples; sound is silent.", format.mBitsPerChannel);
        return false;
    }
    // The application, not SDL, decides what SIGINT and SIGTERM do.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
        KSDebugLine("No audio device (%s); sound is silent.", SDL_GetError());
        return false;
    }
    pSubsystemOpen = true;

    // SDL's own buffer: the largest power of two within one block, so that it adds
    // less than a block of latency on top of the queue.
    const uint32_t blockFrames = format.mBytesPerFrame ? blockBytes / format.mBytesPerFrame : 0;
    Uint16 samples = 64;
    while (samples < 4096 && (uint32_t)samples * 2 <= blockFrames)
        samples = (Uint16)(samples * 2);

    SDL_AudioSpec want{}, have{};
    want.freq = (int)format.mSampleRate;
    want.format = sampleFormat;
    want.channels = (Uint8)format.mChannelsPerFrame;
    want.samples = samples;
    want.callback = Pull;
    want.userdata = this;
    // No allowed changes: SDL converts to whatever the hardware takes.
    pDevice = SDL_OpenAudioDevice(nullptr, 0, &want, &have, 0);
    if (pDevice == 0) {
        KSDebugLine("No audio device (%s); sound is silent.", SDL_GetError());
        close();
        return false;
    }
    return true;
}

void LVSDLAudioDevice::start(LVAudioQueue *queue)
{
    if (pDevice == 0) return;
    SDL_LockAudioDevice(pDevice);
    pQueue = queue;
    SDL_UnlockAudioDevice(pDevice);
    SDL_PauseAudioDevice(pDevice, 0);
}

void LVSDLAudioDevice::close()
{
    if (pDevice != 0) SDL_CloseAudioDevice(pDevice); // waits for the audio thread to end
    pDevice = 0;
    pQueue = nullptr;
    if (pSubsystemOpen) SDL_QuitSubSystem(SDL_INIT_AUDIO);
    pSubsystemOpen = false;
}

void SDLCALL LVSDLAudioDevice::Pull(void *device, Uint8 *stream, int length)
{
    LVAudioQueue *queue = static_cast<LVSDLAudioDevice *>(device)->pQueue;
    if (queue && length > 0)
        queue->render(stream, (size_t)length);
    else if (length > 0)
        memset(stream, 0, (size_t)length);
}
