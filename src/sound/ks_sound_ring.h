// The sound ring: eight blocks between the frame loop, which fills one per frame,
// and prvSoundProcess, which copies them into the output queue's buffers. Plain
// C++; the device that plays the queue comes in through LVAudioDevice.
#pragma once

#include <cstdint>
#include <memory>

#include "sound/ks_audio_queue.h"

constexpr int kSoundRingBlocks = 8;

// Heap blocks of the buffer size, zero-filled at start; null while sound is stopped.
extern void *gSoundBuffer[kSoundRingBlocks];

// (sample_bits >> 3) x channels x (frequency / framerate), the division truncating;
// 0 for a zero frame rate.
uint32_t KSSoundBufferBytes(uint32_t frequency, uint8_t sampleBits, bool stereo, uint32_t framerate);
KSAudioFormat KSMakeAudioFormat(uint32_t frequency, uint8_t sampleBits, bool stereo);

// Resets the ring, allocates its blocks and the queue on the device, primes the
// eight queue buffers with silence and starts the queue. Sound must be stopped.
void KSSoundRingStart(const KSAudioFormat &format, uint32_t bufferBytes, std::unique_ptr<LVAudioDevice> device);
// Stops and disposes of the queue (the device stops pulling first), frees the ring.
void KSSoundRingStop();
bool KSSoundRingRunning();

// The frame loop's side.
void *KSSoundRingAcquire();
void KSSoundRingCommit();
bool KSSoundRingAboveHighWater();

// Whether the core is asked for samples this frame: the record has sound, the
// user has it enabled, and not (running unlimited while the ring is backed up).
bool KSFrameWantsSound(bool usesSound, bool soundEnabled, bool speedUnlimited);

// The queue's output callback: fills one queue buffer and enqueues it.
void prvSoundProcess(void *userData, LVAudioQueue *queue, KSQueueBuffer *q);

// Called from prvSoundProcess with each block as it is played (never with the
// silence of an underrun), on the device's thread. Null: no recorder listens.
typedef void (*KSSoundPlayedHook)(const void *data, uint32_t bytes);
void KSSetSoundPlayedHook(KSSoundPlayedHook hook);

// The running output's format and block size; null / 0 while sound is stopped.
const KSAudioFormat *KSSoundFormat();
uint32_t KSSoundRingBufferBytes();
LVAudioQueue *KSSoundQueue();

// A look at the ring's counters (tests and debugging).
struct KSSoundRingState {
    uint16_t filled;
    uint16_t readIndex;
    uint16_t writeIndex;
    uint8_t waiting;
};
KSSoundRingState KSSoundRingSnapshot();
