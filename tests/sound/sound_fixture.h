// A sound record and a running ring on an inert device: the test plays the part of
// the device and asks for one output callback at a time.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstdint>
#include <cstring>
#include <vector>

#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"
#include "sound/ks_recording.h"
#include "sound/ks_sound.h"
#include "sound/ks_sound_ring.h"

// Plays nothing by itself; the test finishes queue buffers by hand.
class InertAudioDevice : public LVAudioDevice
{
  public:
    bool open(const KSAudioFormat &, uint32_t) override { return true; }
    void start(LVAudioQueue *) override {}
    void close() override {}
};

class SoundTest : public ::testing::Test
{
  protected:
    QTemporaryDir dir;
    KSConfigParameters config{};

    void SetUp() override
    {
        strcpy(config.emulator_name, "Sound Test");
        config.framerate = 60;
        config.uses_sound = 1;
        config.frequency = 44100;
        config.sample_bits = 16;
        config.stereo = 1;
        gConfigParameters = &config;
        gSpeedUnlimited = false;
        KSPrefsOpenFile(dir.filePath("settings.ini").toStdString());
        KSRegisterShellDefaults(true);
        KSSetAudioDeviceFactory([] { return std::unique_ptr<LVAudioDevice>(new InertAudioDevice); });
    }

    void TearDown() override
    {
        KSStopSound();
        KSSetAudioDeviceFactory(nullptr);
        KSSetSoundPlayedHook(nullptr);
        KSSetRecordingReporters(nullptr, nullptr);
        gSpeedUnlimited = false;
        gConfigParameters = nullptr;
        KSPrefsClose();
    }

    // One output callback: the head queue buffer counts as played and comes back
    // refilled by prvSoundProcess; returns what it now holds.
    std::vector<uint8_t> callback()
    {
        KSQueueBuffer *buffer = KSSoundQueue()->finishHeadBuffer();
        EXPECT_NE(buffer, nullptr);
        if (!buffer) return {};
        const uint8_t *data = static_cast<const uint8_t *>(buffer->mAudioData);
        return std::vector<uint8_t>(data, data + buffer->mAudioDataByteSize);
    }

    // The frame loop's part for one frame whose samples all hold `value` (16-bit).
    bool produce(int16_t value)
    {
        void *block = KSAcquireSoundBuffer();
        if (!block) return false;
        int16_t *samples = static_cast<int16_t *>(block);
        for (uint32_t i = 0; i < KSSoundRingBufferBytes() / 2; i++)
            samples[i] = value;
        KSCommitSoundBuffer();
        return true;
    }

    // The one value a 16-bit block holds throughout, or -1 when it holds several.
    static int blockValue(const std::vector<uint8_t> &bytes)
    {
        if (bytes.size() < 2) return -1;
        int16_t first;
        memcpy(&first, bytes.data(), 2);
        for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
            int16_t v;
            memcpy(&v, bytes.data() + i, 2);
            if (v != first) return -1;
        }
        return first;
    }
};
