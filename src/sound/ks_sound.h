// Sound output: the eight-block ring between the frame loop and the audio device.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

class LVAudioDevice;

// Session start and KSSetFrameRate; nothing unless the record has sound.
void KSStartSound();
// Also ends a recording in progress.
void KSStopSound();
// The ring block for the coming frame, or null when the ring is full.
void *KSAcquireSoundBuffer();
void KSCommitSoundBuffer();
// More than four committed blocks wait to be played.
bool KSSoundAboveHighWater();

// The frame loop's sound decision and acquisition in one: null unless the record
// has sound and "KS::Sound::Enabled" is on, null while running unlimited with more
// than four blocks waiting, null when the ring is full; else the acquired block,
// which the loop commits after handle_frame.
void *KSFrameSoundBuffer();

// Where sound plays: null restores the SDL2 device (with the silent clocked device
// as fallback when SDL has none). Tests install an inert device and drive the queue.
void KSSetAudioDeviceFactory(std::function<std::unique_ptr<LVAudioDevice>()> factory);
