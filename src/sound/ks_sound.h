// Sound output: the eight-block ring between the frame loop and the audio device.
#pragma once

#include <cstdint>

// Session start and KSSetFrameRate; nothing unless the record has sound.
void KSStartSound();
// Also ends a recording in progress.
void KSStopSound();
// The ring block for the coming frame, or null when the ring is full.
void *KSAcquireSoundBuffer();
void KSCommitSoundBuffer();
// More than four committed blocks wait to be played.
bool KSSoundAboveHighWater();
