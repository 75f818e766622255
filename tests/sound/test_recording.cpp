// WAV recording: what was played, and only that, read back through libsndfile.
#include "sound_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdlib>
#include <sndfile.h>
#include <string>

#include "shell/ks_panels.h"

namespace
{

std::vector<std::string> pPlacards;
std::vector<std::string> pTitles;
void KeepPlacard(const char *text)
{
    pPlacards.push_back(text);
}
void KeepTitle(const char *title)
{
    pTitles.push_back(title);
}

class AnsweringPanels : public LVPanelPresenter
{
  public:
    std::string answer;
    std::vector<KSSavePanelRequest> asked;
    std::string runSavePanel(const KSSavePanelRequest &request) override
    {
        asked.push_back(request);
        return answer;
    }
    std::string runOpenPanel(const KSOpenPanelRequest &) override { return ""; }
};

class RecordingTest : public SoundTest
{
  protected:
    AnsweringPanels panels;
    std::string savedHome, savedConfigHome;
    bool hadHome = false, hadConfigHome = false;

    void SetUp() override
    {
        SoundTest::SetUp();
        pPlacards.clear();
        pTitles.clear();
        KSSetRecordingReporters(KeepPlacard, KeepTitle);
        KSSetPanelPresenter(&panels);
        // The desktop of this test is a folder of its own.
        if (const char *home = getenv("HOME")) hadHome = true, savedHome = home;
        if (const char *config = getenv("XDG_CONFIG_HOME")) hadConfigHome = true, savedConfigHome = config;
        setenv("HOME", dir.filePath("home").toUtf8().constData(), 1);
        setenv("XDG_CONFIG_HOME", dir.filePath("home/.config").toUtf8().constData(), 1);
    }

    void TearDown() override
    {
        SoundTest::TearDown();
        KSSetPanelPresenter(nullptr);
        if (hadHome)
            setenv("HOME", savedHome.c_str(), 1);
        else
            unsetenv("HOME");
        if (hadConfigHome)
            setenv("XDG_CONFIG_HOME", savedConfigHome.c_str(), 1);
        else
            unsetenv("XDG_CONFIG_HOME");
    }

    QString desktop() const { return dir.filePath("home/Desktop"); }

    static std::vector<int16_t> readShorts(const std::string &path, SF_INFO *info)
    {
        SNDFILE *file = sf_open(path.c_str(), SFM_READ, info);
        EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
        if (!file) return {};
        std::vector<int16_t> samples((size_t)(info->frames * info->channels));
        EXPECT_EQ(sf_read_short(file, samples.data(), (sf_count_t)samples.size()), (sf_count_t)samples.size());
        sf_close(file);
        return samples;
    }
};

TEST_F(RecordingTest, TheFileHoldsExactlyThePlayedBlocksAndNoSilence)
{
    KSStartSound();
    panels.answer = dir.filePath("take.wav").toStdString();
    KSToggleAudioRecording(); // started while the ring waits
    ASSERT_TRUE(KSAudioRecording());
    ASSERT_EQ(panels.asked.size(), 1u);
    EXPECT_EQ(panels.asked[0].message, "Save Audio Recording");
    EXPECT_EQ(panels.asked[0].allowedType, "wav");
    EXPECT_EQ(panels.asked[0].proposedName, "Audio Recording.wav");
    EXPECT_EQ(pTitles, std::vector<std::string>{"Stop Recording Audio"});

    std::vector<uint8_t> expected;
    int silentCallbacks = 0;
    int16_t next = 1;
    // A varied schedule: steady play, an underrun, a refill, play again.
    const int produced[] = {4, 0, 1, 1, 1, 0, 0, 0, 0, 0, 3, 0, 0, 1, 0, 1, 1, 1, 0, 0};
    for (int frames : produced) {
        for (int i = 0; i < frames; i++)
            produce(next++);
        const uint16_t readBefore = KSSoundRingSnapshot().readIndex;
        const std::vector<uint8_t> out = callback();
        if (KSSoundRingSnapshot().readIndex != readBefore)
            expected.insert(expected.end(), out.begin(), out.end());
        else
            silentCallbacks++;
    }
    ASSERT_GT(silentCallbacks, 3);
    ASSERT_GT(expected.size(), 4 * 2940u);
    KSToggleAudioRecording();
    EXPECT_FALSE(KSAudioRecording());
    EXPECT_EQ(pTitles, (std::vector<std::string>{"Stop Recording Audio", "Start Recording Audio..."}));

    SF_INFO info{};
    const std::vector<int16_t> samples = readShorts(panels.answer, &info);
    EXPECT_EQ(info.samplerate, 44100);
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    ASSERT_EQ(samples.size() * 2, expected.size());
    EXPECT_EQ(memcmp(samples.data(), expected.data(), expected.size()), 0);
}

TEST_F(RecordingTest, ARecordingStartedDuringAnUnderrunWritesNothingUntilPlaybackResumes)
{
    KSStartSound();
    panels.answer = dir.filePath("late.wav").toStdString();
    KSToggleAudioRecording();
    for (int i = 0; i < 3; i++)
        callback();
    for (int16_t k = 1; k <= 3; k++)
        produce(k);
    callback();
    callback();
    KSToggleAudioRecording();
    SF_INFO info{};
    EXPECT_TRUE(readShorts(panels.answer, &info).empty());
    EXPECT_EQ(info.frames, 0);
}

TEST_F(RecordingTest, EightBitSoundIsStoredUnsignedAndReadsBackAsItPlayed)
{
    config.frequency = 22050;
    config.sample_bits = 8;
    config.stereo = 0;
    config.framerate = 50;
    KSStartSound();
    panels.answer = dir.filePath("eight.wav").toStdString();
    KSToggleAudioRecording();
    const int8_t pattern[] = {-128, -1, 0, 1, 127, -64, 63, 5};
    for (int frame = 0; frame < 5; frame++) {
        int8_t *block = static_cast<int8_t *>(KSAcquireSoundBuffer());
        ASSERT_NE(block, nullptr);
        for (uint32_t i = 0; i < 441; i++)
            block[i] = (int8_t)(pattern[(i + frame) % 8]);
        KSCommitSoundBuffer();
    }
    std::vector<int8_t> expected;
    for (int i = 0; i < 6; i++) {
        const uint16_t readBefore = KSSoundRingSnapshot().readIndex;
        const std::vector<uint8_t> out = callback();
        if (KSSoundRingSnapshot().readIndex != readBefore) expected.insert(expected.end(), out.begin(), out.end());
    }
    KSToggleAudioRecording();
    ASSERT_EQ(expected.size(), 441u * 5); // slot 0's zeros, then blocks 1 to 4

    SF_INFO info{};
    SNDFILE *file = sf_open(panels.answer.c_str(), SFM_READ, &info);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_U8);
    EXPECT_EQ(info.samplerate, 22050);
    EXPECT_EQ(info.channels, 1);
    std::vector<uint8_t> raw(expected.size());
    ASSERT_EQ(sf_read_raw(file, raw.data(), (sf_count_t)raw.size()), (sf_count_t)raw.size());
    sf_close(file);
    for (size_t i = 0; i < raw.size(); i++) {
        ASSERT_EQ(raw[i], (uint8_t)(expected[i] + 128)) << "byte " << i; // unsigned, offset 128
        ASSERT_EQ((int)raw[i] - 128, (int)expected[i]) << "sample " << i;
    }
    // A player's view: libsndfile decodes the samples to the values that were played.
    const std::vector<int16_t> decoded = readShorts(panels.answer, &info);
    ASSERT_EQ(decoded.size(), expected.size());
    for (size_t i = 0; i < decoded.size(); i++)
        ASSERT_EQ(decoded[i], expected[i] * 256) << "sample " << i;
}

TEST_F(RecordingTest, ACancelledPanelLeavesRecordingIdle)
{
    KSStartSound();
    panels.answer.clear();
    KSToggleAudioRecording();
    EXPECT_EQ(panels.asked.size(), 1u);
    EXPECT_FALSE(KSAudioRecording());
    EXPECT_TRUE(pTitles.empty());
}

TEST_F(RecordingTest, QuickRecordingTakesTheNextFreeNumberOnTheDesktop)
{
    strcpy(config.emulator_name, "X");
    KSStartSound();
    ASSERT_TRUE(QDir().mkpath(desktop()));
    for (const char *name : {"X.000.wav", "X.001.wav"}) {
        QFile file(QDir(desktop()).filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    KSQuickAudioRecording();
    EXPECT_TRUE(KSAudioRecording());
    EXPECT_EQ(pPlacards, std::vector<std::string>{"Quick Audio Recording (002)"});
    EXPECT_EQ(pTitles, std::vector<std::string>{"Stop Recording Audio"});
    EXPECT_TRUE(QFileInfo::exists(QDir(desktop()).filePath("X.002.wav")));
    EXPECT_EQ(QFileInfo(QDir(desktop()).filePath("X.000.wav")).size(), 0); // untouched

    KSQuickAudioRecording();
    EXPECT_FALSE(KSAudioRecording());
    EXPECT_EQ(pPlacards, (std::vector<std::string>{"Quick Audio Recording (002)", "Recording Finished"}));
    EXPECT_EQ(pTitles, (std::vector<std::string>{"Stop Recording Audio", "Start Recording Audio..."}));
    SF_INFO info{};
    readShorts(QDir(desktop()).filePath("X.002.wav").toStdString(), &info);
    EXPECT_EQ(info.samplerate, 44100);
}

TEST_F(RecordingTest, QuickRecordingCreatesTheDesktopAndStartsAtZero)
{
    strcpy(config.emulator_name, "Tone/Gen");
    KSStartSound();
    ASSERT_FALSE(QFileInfo::exists(desktop()));
    KSQuickAudioRecording();
    EXPECT_EQ(pPlacards, std::vector<std::string>{"Quick Audio Recording (000)"});
    EXPECT_TRUE(QFileInfo::exists(QDir(desktop()).filePath("Tone-Gen.000.wav")));
}

TEST_F(RecordingTest, AFrameRateChangeWhileRecordingClosesTheFileAndResetsTheTitle)
{
    KSStartSound();
    panels.answer = dir.filePath("rate.wav").toStdString();
    KSToggleAudioRecording();
    for (int16_t k = 1; k <= 5; k++)
        produce(k);
    for (int i = 0; i < 4; i++)
        callback(); // plays slot 0 and blocks 1, 2
    KSSetFrameRate(50);
    EXPECT_FALSE(KSAudioRecording());
    EXPECT_EQ(pTitles, (std::vector<std::string>{"Stop Recording Audio", "Start Recording Audio..."}));
    SF_INFO info{};
    const std::vector<int16_t> samples = readShorts(panels.answer, &info);
    EXPECT_EQ(info.frames, 3 * 735); // a finished header: every played frame counted
}

TEST_F(RecordingTest, NothingToRecordWhileSoundIsStopped)
{
    panels.answer = dir.filePath("never.wav").toStdString();
    KSToggleAudioRecording();
    KSQuickAudioRecording();
    EXPECT_FALSE(KSAudioRecording());
    EXPECT_TRUE(panels.asked.empty());
    EXPECT_TRUE(pPlacards.empty());
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(panels.answer)));
}

} // namespace
