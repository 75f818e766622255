// Sound is not played yet: no ring, so the core gets no sound buffer.
#include "sound/ks_sound.h"

void KSStartSound() {}
void KSStopSound() {}
void *KSAcquireSoundBuffer() { return nullptr; }
void KSCommitSoundBuffer() {}
bool KSSoundAboveHighWater() { return false; }
