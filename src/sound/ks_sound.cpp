// Sound output: starts and stops the ring on an SDL2 device and serves the frame loop.
#include "sound/ks_sound.h"

#include "prefs/ks_prefs.h"
#include "shell/ks_assert.h"
#include "shell/ks_debug.h"
#include "shell/ks_main.h"
#include "sound/ks_null_audio.h"
#include "sound/ks_recording.h"
#include "sound/ks_sound_ring.h"
#include "sound/lv_sdl_audio.h"

namespace
{

std::function<std::unique_ptr<LVAudioDevice>()> pDeviceFactory;

} // namespace

void KSSetAudioDeviceFactory(std::function<std::unique_ptr<LVAudioDevice>()> factory)
{
    pDeviceFactory = std::move(factory);
}

void KSStartSound()
{
    if (!gConfigParameters || gConfigParameters->uses_sound == 0) return;
    KSStopSound();
    KS_ASSERT(gConfigParameters->frequency != 0);
    const bool stereo = gConfigParameters->stereo != 0;
    const uint32_t bytes = KSSoundBufferBytes(gConfigParameters->frequency, gConfigParameters->sample_bits, stereo,
                                              gConfigParameters->framerate);
    if (bytes == 0) {
        KSDebugLine("A sound block of 0 bytes (%u Hz, %u-bit, %u frames a second): sound stays off.",
                    gConfigParameters->frequency, gConfigParameters->sample_bits, gConfigParameters->framerate);
        return;
    }
    const KSAudioFormat format =
        KSMakeAudioFormat(gConfigParameters->frequency, gConfigParameters->sample_bits, stereo);
    std::unique_ptr<LVAudioDevice> device =
        pDeviceFactory ? pDeviceFactory() : std::unique_ptr<LVAudioDevice>(new LVSDLAudioDevice);
    if (!device || !device->open(format, bytes)) {
        // An absent device is not a broken contract: play into the void at the real rate.
        device.reset(new LVNullAudioDevice);
        device->open(format, bytes);
    }
    KSSoundRingStart(format, bytes, std::move(device));
}

void KSStopSound()
{
    if (KSAudioRecording()) KSToggleAudioRecording();
    KSSoundRingStop();
}

void *KSAcquireSoundBuffer()
{
    return KSSoundRingAcquire();
}
void KSCommitSoundBuffer()
{
    KSSoundRingCommit();
}
bool KSSoundAboveHighWater()
{
    return KSSoundRingAboveHighWater();
}

void *KSFrameSoundBuffer()
{
    if (!gConfigParameters || gConfigParameters->uses_sound != 1) return nullptr;
    if (!KSFrameWantsSound(true, KSPrefBool(kPrefSoundEnabled), gSpeedUnlimited)) return nullptr;
    return KSAcquireSoundBuffer();
}
