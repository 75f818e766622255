// The sound ring, one output callback at a time.
#include "sound_fixture.h"

#include "../shell/fake_platform.h"

double FakeClock::now;

namespace
{

const void *pFirstPlayed;
int pPlayedCount;
void CountPlayed(const void *data, uint32_t)
{
    if (pPlayedCount++ == 0) pFirstPlayed = data;
}

TEST_F(SoundTest, StartLeavesReadZeroWriteEightWaitingAndEightSilentQueueBuffers)
{
    KSStartSound();
    ASSERT_TRUE(KSSoundRingRunning());
    const KSSoundRingState state = KSSoundRingSnapshot();
    EXPECT_EQ(state.readIndex, 0);
    EXPECT_EQ(state.writeIndex, 8);
    EXPECT_EQ(state.filled, 0);
    EXPECT_EQ(state.waiting, 1);
    EXPECT_EQ(KSSoundQueue()->queuedBuffers(), 8u);
    for (int i = 0; i < 8; i++)
        EXPECT_EQ(blockValue(callback()), 0);
    // The first block handed to the producer is slot 1.
    EXPECT_EQ(KSAcquireSoundBuffer(), gSoundBuffer[1]);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 1);
}

TEST_F(SoundTest, TheFirstBlockPlayedIsSlotZerosSilence)
{
    KSStartSound();
    KSSetSoundPlayedHook(CountPlayed);
    pPlayedCount = 0;
    pFirstPlayed = nullptr;
    for (int16_t k = 1; k <= 4; k++)
        ASSERT_TRUE(produce(k));
    EXPECT_EQ(blockValue(callback()), 0); // finds four: ends the wait, still silent
    EXPECT_EQ(pPlayedCount, 0);
    EXPECT_EQ(blockValue(callback()), 0); // plays slot 0
    EXPECT_EQ(pPlayedCount, 1);
    EXPECT_EQ(pFirstPlayed, gSoundBuffer[0]);
    EXPECT_EQ(KSSoundRingSnapshot().readIndex, 1);
    EXPECT_EQ(KSSoundRingSnapshot().filled, 3);
    EXPECT_EQ(blockValue(callback()), 1); // one callback behind its slot number
    EXPECT_EQ(blockValue(callback()), 2);
}

TEST_F(SoundTest, AFullRingOfSevenGivesNullWithoutMovingTheWriteIndex)
{
    KSStartSound();
    for (int16_t k = 1; k <= 7; k++)
        ASSERT_TRUE(produce(k));
    EXPECT_EQ(KSSoundRingSnapshot().filled, 7);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 7);
    EXPECT_EQ(KSAcquireSoundBuffer(), nullptr);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 7);
    EXPECT_EQ(KSSoundRingSnapshot().filled, 7);
    callback(); // ends the wait
    callback(); // plays slot 0: one block free again
    EXPECT_EQ(KSAcquireSoundBuffer(), gSoundBuffer[0]);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 0);
}

TEST_F(SoundTest, AfterAnUnderrunFourBlocksMustWaitAndTheFourthStillPlaysSilence)
{
    KSStartSound();
    for (int16_t k = 1; k <= 4; k++)
        produce(k);
    std::vector<int> heard;
    for (int i = 0; i < 6; i++)
        heard.push_back(blockValue(callback()));
    EXPECT_EQ(heard, (std::vector<int>{0, 0, 1, 2, 3, 0})); // the sixth is the underrun
    EXPECT_EQ(KSSoundRingSnapshot().waiting, 1);
    EXPECT_EQ(KSSoundRingSnapshot().filled, 0);

    for (int16_t k = 5; k <= 7; k++)
        produce(k);
    EXPECT_EQ(blockValue(callback()), 0); // three are not enough
    EXPECT_EQ(blockValue(callback()), 0);
    EXPECT_EQ(KSSoundRingSnapshot().waiting, 1);
    produce(8);
    EXPECT_EQ(blockValue(callback()), 0); // finds four: clears the flag, silent itself
    EXPECT_EQ(KSSoundRingSnapshot().waiting, 0);
    heard.clear();
    for (int i = 0; i < 5; i++)
        heard.push_back(blockValue(callback()));
    EXPECT_EQ(heard, (std::vector<int>{4, 5, 6, 7, 0})); // then the next plays, in order
    EXPECT_EQ(KSSoundRingSnapshot().waiting, 1);
}

TEST_F(SoundTest, BufferSizeTruncatesSamplesPerFrame)
{
    EXPECT_EQ(KSSoundBufferBytes(44100, 16, true, 60), 2940u); // 735 samples
    EXPECT_EQ(KSSoundBufferBytes(22050, 8, false, 50), 441u);  // 441 samples
    EXPECT_EQ(KSSoundBufferBytes(22050, 16, true, 60), 367u * 4);
    EXPECT_EQ(KSSoundBufferBytes(44100, 16, true, 0), 0u);

    config.frequency = 22050;
    config.sample_bits = 8;
    config.stereo = 0;
    config.framerate = 50;
    KSStartSound();
    EXPECT_EQ(KSSoundRingBufferBytes(), 441u);
    const KSAudioFormat *format = KSSoundFormat();
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->mSampleRate, 22050.0);
    EXPECT_EQ(format->mFormatFlags, 12u);
    EXPECT_EQ(format->mBitsPerChannel, 8u);
    EXPECT_EQ(format->mChannelsPerFrame, 1u);
    EXPECT_EQ(format->mBytesPerFrame, 1u);
    EXPECT_EQ(format->mBytesPerPacket, 1u);
    EXPECT_EQ(format->mFramesPerPacket, 1u);
    EXPECT_EQ(callback().size(), 441u);
}

TEST_F(SoundTest, WhileUnlimitedMoreThanFourWaitingBlocksWithholdTheCoresBuffer)
{
    KSStartSound();
    gSpeedUnlimited = true;
    for (int i = 0; i < 5; i++) {
        void *block = KSFrameSoundBuffer();
        ASSERT_NE(block, nullptr) << "frame " << i;
        KSCommitSoundBuffer();
    }
    EXPECT_TRUE(KSSoundAboveHighWater());
    EXPECT_EQ(KSFrameSoundBuffer(), nullptr);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 5); // nothing was acquired
    gSpeedUnlimited = false;                        // limited: up to the full ring
    EXPECT_NE(KSFrameSoundBuffer(), nullptr);
    KSCommitSoundBuffer();
    EXPECT_NE(KSFrameSoundBuffer(), nullptr);
    KSCommitSoundBuffer();
    EXPECT_EQ(KSFrameSoundBuffer(), nullptr); // seven filled
    EXPECT_FALSE(KSFrameWantsSound(true, true, true));
    EXPECT_TRUE(KSFrameWantsSound(true, true, false));
}

TEST_F(SoundTest, SoundSwitchedOffPassesNullAndTheQueueDrainsToSilence)
{
    KSStartSound();
    for (int16_t k = 1; k <= 4; k++)
        produce(k);
    KSPrefSetBool(kPrefSoundEnabled, false);
    EXPECT_EQ(KSFrameSoundBuffer(), nullptr);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 4);
    std::vector<int> heard;
    for (int i = 0; i < 7; i++)
        heard.push_back(blockValue(callback()));
    EXPECT_EQ(heard, (std::vector<int>{0, 0, 1, 2, 3, 0, 0}));
    EXPECT_TRUE(KSSoundRingRunning()); // not stopped, only starved
    KSPrefSetBool(kPrefSoundEnabled, true);
    EXPECT_NE(KSFrameSoundBuffer(), nullptr);
}

TEST_F(SoundTest, AMachineWithoutSoundStartsNothingAndGetsNoBuffer)
{
    config.uses_sound = 0;
    KSStartSound();
    EXPECT_FALSE(KSSoundRingRunning());
    EXPECT_EQ(KSFrameSoundBuffer(), nullptr);
    EXPECT_EQ(KSAcquireSoundBuffer(), nullptr);
}

TEST_F(SoundTest, StopFreesTheRingAndTheQueue)
{
    KSStartSound();
    produce(1);
    KSStopSound();
    EXPECT_FALSE(KSSoundRingRunning());
    EXPECT_EQ(KSSoundQueue(), nullptr);
    EXPECT_EQ(KSSoundFormat(), nullptr);
    for (void *block : gSoundBuffer)
        EXPECT_EQ(block, nullptr);
    EXPECT_EQ(KSAcquireSoundBuffer(), nullptr);
    KSStopSound(); // twice is harmless
}

TEST_F(SoundTest, ZeroFrequencyIsAFatalAssertion)
{
    config.frequency = 0;
    EXPECT_EXIT(KSStartSound(), ::testing::ExitedWithCode(1), "gConfigParameters->frequency != 0");
}

TEST_F(SoundTest, ANewFrameRateRestartsSoundWithTheNewBlockSizeOnlyWithASession)
{
    FakePlatform platform;
    platform.window = true;
    KSSetPlatform(&platform);
    KSStartSound();
    produce(1);
    KSSetFrameRate(50);
    EXPECT_TRUE(KSSoundRingRunning());
    EXPECT_EQ(KSSoundRingBufferBytes(), 882u * 4);
    EXPECT_EQ(KSSoundRingSnapshot().writeIndex, 8); // a fresh ring
    EXPECT_EQ(KSSoundRingSnapshot().filled, 0);
    platform.window = false;
    KSSetFrameRate(60);
    EXPECT_FALSE(KSSoundRingRunning());
    KSSetPlatform(nullptr);
}

TEST_F(SoundTest, RenderPlaysQueueBuffersInOrderAcrossPulls)
{
    KSStartSound();
    for (int16_t k = 1; k <= 7; k++)
        produce(k);
    // Eight silent buffers are queued first, then the ring's blocks come through.
    const size_t block = KSSoundRingBufferBytes();
    std::vector<uint8_t> out(block * 12 + block / 2);
    size_t done = 0;
    while (done < out.size()) { // uneven pulls, as a device asks
        const size_t n = std::min<size_t>(1000, out.size() - done);
        KSSoundQueue()->render(out.data() + done, n);
        done += n;
    }
    std::vector<int> heard;
    for (size_t i = 0; i + block <= out.size(); i += block)
        heard.push_back(blockValue(std::vector<uint8_t>(out.begin() + i, out.begin() + i + block)));
    // 8 primed silences, then the callbacks' output: wait-ending silence, slot 0, 1, 2.
    EXPECT_EQ(heard, (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2}));
}

TEST(AudioQueue, RenderWithNothingQueuedIsSilence)
{
    KSAudioFormat format = KSMakeAudioFormat(8000, 8, false);
    LVAudioQueue queue(format, prvSoundProcess, nullptr, std::unique_ptr<LVAudioDevice>(new InertAudioDevice));
    std::vector<uint8_t> out(64, 0xAA);
    queue.render(out.data(), out.size());
    EXPECT_EQ(out, std::vector<uint8_t>(64, 0));
    EXPECT_EQ(queue.finishHeadBuffer(), nullptr);
}

} // namespace
