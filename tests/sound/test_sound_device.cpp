// Sound on real SDL2 drivers: the disk driver writes what it is given to a file, so
// the samples leaving the ring can be compared with the core's; a driver that does
// not exist stands for a machine without audio.
#include "sound_fixture.h"

#include <QFile>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <sndfile.h>
#include <thread>

#include "shell/ks_panels.h"
#include "sound/ks_null_audio.h"
#include "sound/lv_sdl_audio.h"

namespace
{

class SoundDeviceTest : public SoundTest
{
  protected:
    std::string savedDriver;
    bool hadDriver = false;

    void SetUp() override
    {
        SoundTest::SetUp();
        KSSetAudioDeviceFactory(nullptr); // the product's device
        if (const char *driver = getenv("SDL_AUDIODRIVER")) hadDriver = true, savedDriver = driver;
    }
    void TearDown() override
    {
        SoundTest::TearDown();
        if (hadDriver)
            setenv("SDL_AUDIODRIVER", savedDriver.c_str(), 1);
        else
            unsetenv("SDL_AUDIODRIVER");
        unsetenv("SDL_DISKAUDIOFILE");
    }

    // The test card's kind of tone: 440 Hz, stereo, never a zero sample.
    static void tone(int16_t *out, uint32_t frames, uint64_t &phase)
    {
        for (uint32_t i = 0; i < frames; i++, phase++) {
            const int16_t v = (int16_t)(1000 + 8000 * sin(2 * M_PI * 440.0 * (double)phase / 44100));
            out[2 * i] = v;
            out[2 * i + 1] = (int16_t)-v;
        }
    }
};

TEST_F(SoundDeviceTest, TheSamplesLeavingTheRingOnSDLAreTheCores)
{
    const std::string rawPath = dir.filePath("played.raw").toStdString();
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", rawPath.c_str(), 1);
    KSStartSound();
    ASSERT_TRUE(KSSoundRingRunning());
    ASSERT_NE(dynamic_cast<LVSDLAudioDevice *>(KSSoundQueue()->device()), nullptr) << "no SDL disk device";

    const uint32_t bytes = KSSoundRingBufferBytes();
    ASSERT_EQ(bytes, 2940u);
    std::vector<std::vector<uint8_t>> committed;
    uint64_t phase = 0;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (committed.size() < 60 && std::chrono::steady_clock::now() < deadline) {
        void *block = KSAcquireSoundBuffer(); // the frame loop never waits: a full ring says null
        if (!block) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            continue;
        }
        tone(static_cast<int16_t *>(block), bytes / 4, phase);
        const uint8_t *data = static_cast<const uint8_t *>(block);
        committed.emplace_back(data, data + bytes);
        KSCommitSoundBuffer();
    }
    ASSERT_EQ(committed.size(), 60u);
    // Let the ring and the eight queue buffers play out (about 70 blocks of 1/60 s).
    std::this_thread::sleep_for(std::chrono::milliseconds(600));
    KSStopSound();

    QFile raw(QString::fromStdString(rawPath));
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray played = raw.readAll();
    // SDL writes whole buffers of silence until the device is unpaused, so the
    // ring's blocks begin at the first frame of the tone (no tone frame is zero).
    int start = 0;
    while (start + 4 <= played.size() && memcmp(played.constData() + start, "\0\0\0\0", 4) == 0)
        start += 4;
    std::vector<std::vector<uint8_t>> heard; // the non-silent blocks, in play order
    for (int at = start; at + (int)bytes <= played.size(); at += (int)bytes) {
        std::vector<uint8_t> block(played.begin() + at, played.begin() + at + bytes);
        bool silent = true;
        for (uint8_t b : block)
            silent = silent && b == 0;
        if (!silent) heard.push_back(block);
    }
    // All but the last committed block (the read index trails by one) came out, unchanged.
    ASSERT_GE(heard.size(), committed.size() - 1);
    for (size_t i = 0; i < committed.size() - 1; i++)
        ASSERT_EQ(heard[i], committed[i]) << "block " << i;
}

TEST_F(SoundDeviceTest, WithoutAnAudioDeviceSoundRunsSilentlyAtTheRealRate)
{
    setenv("SDL_AUDIODRIVER", "no-such-driver", 1);
    testing::internal::CaptureStdout();
    KSStartSound();
    const std::string said = testing::internal::GetCapturedStdout();
    EXPECT_NE(said.find("KSDEBUG: No audio device"), std::string::npos) << said;
    ASSERT_TRUE(KSSoundRingRunning());
    EXPECT_NE(dynamic_cast<LVNullAudioDevice *>(KSSoundQueue()->device()), nullptr);
    for (int16_t k = 1; k <= 7; k++)
        ASSERT_TRUE(produce(k));
    EXPECT_EQ(KSAcquireSoundBuffer(), nullptr);
    // Drained at 60 blocks a second: after the eight primed buffers, the ring empties.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (KSSoundRingSnapshot().filled > 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(KSSoundRingSnapshot().filled, 0);
    EXPECT_NE(KSAcquireSoundBuffer(), nullptr);
}

class SavePanelAnswer : public LVPanelPresenter
{
  public:
    std::string path;
    std::string runSavePanel(const KSSavePanelRequest &) override { return path; }
    std::string runOpenPanel(const KSOpenPanelRequest &) override { return ""; }
};

TEST_F(SoundTest, ARecordingWrittenOnTheAudioThreadHoldsWholePlayedBlocksInOrder)
{
    KSSetAudioDeviceFactory([] { return std::unique_ptr<LVAudioDevice>(new LVNullAudioDevice); });
    SavePanelAnswer panel;
    panel.path = dir.filePath("threaded.wav").toStdString();
    KSSetPanelPresenter(&panel);
    KSStartSound();
    KSToggleAudioRecording();
    ASSERT_TRUE(KSAudioRecording());
    int16_t next = 1;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (next <= 40 && std::chrono::steady_clock::now() < deadline) {
        if (produce(next)) next++;
        std::this_thread::sleep_for(std::chrono::milliseconds(next % 7 == 0 ? 40 : 12)); // now and then late
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    KSStopSound(); // ends the recording first
    KSSetPanelPresenter(nullptr);
    EXPECT_FALSE(KSAudioRecording());

    SF_INFO info{};
    SNDFILE *file = sf_open(panel.path.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    std::vector<int16_t> samples((size_t)(info.frames * 2));
    sf_read_short(file, samples.data(), (sf_count_t)samples.size());
    sf_close(file);
    ASSERT_EQ(samples.size() % 1470, 0u); // whole blocks of 735 stereo frames
    std::vector<int> blocks;
    for (size_t at = 0; at < samples.size(); at += 1470) {
        for (size_t i = 1; i < 1470; i++)
            ASSERT_EQ(samples[at + i], samples[at]) << "block " << at / 1470;
        blocks.push_back(samples[at]);
    }
    ASSERT_GE(blocks.size(), 20u);
    EXPECT_EQ(blocks[0], 0); // slot 0
    for (size_t i = 1; i < blocks.size(); i++)
        EXPECT_EQ(blocks[i], (int)i) << "no silence, nothing skipped";
}

} // namespace
