// Frame slots and the blitting thread: the core draws slot k while the blitter
// scales slot 1 - k into its front buffer; the view takes the newest finished one.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include <lumivex/blitters.h>

extern uint16_t *gRawBackVideoBuffer[2];
extern uint16_t *gBackVideoBuffer[2]; // 16 rows into the raw buffer
extern uint8_t *gDeltaVideoBuffer[2];
extern uint16_t *gFrontVideoBuffer[2];
extern uint32_t *g32BitBuffer;
extern std::atomic<uint8_t> gBufferReady[2];
extern std::atomic<uint8_t> gBufferClear[2];
extern uint32_t gOutputVideoWidth;
extern uint32_t gOutputVideoHeight;
extern uint32_t gDisplaySkipCounter;
extern bool gRendererInitialised;

// Held by the blitting thread for a whole blit; the main thread takes and
// releases it to wait until no blit runs.
extern std::mutex gBlitThreadLock;

extern BlitterRecord *gBlitterTable;
extern std::atomic<const BlitterRecord *> gBlitterActive;
extern uint16_t gBlitterSize;

// KSInit: builds the blitter table and registers its names.
void KSSetupRendering();
// Frees and allocates every slot buffer for gBackVideoWidth x gBackVideoHeight.
void KSAllocateBuffers();
void KSFreeBuffers();
// Both slots not ready and to be cleared; the renderer counts as initialised.
void KSResetDisplayState();
void KSStartBlittingThread();
void KSStopBlittingThread();
bool KSBlittingThreadRunning();

uint16_t *KSBackBuffer(uint32_t slot);
void KSMarkReady(uint32_t slot);
void KSWakeBlitter();
void KSWaitForBlitIdle();
// Both slots clear their delta and front buffers before their next blit.
void KSSetClearFlags();
// The newest finished picture as 32-bit pixels, bottom row first, or null.
uint32_t *KSDisplayFrame();

// Picks the blitter named by the preferences (Plain 1x when there is none).
void SelectBlitter();

// The blit of one ready slot, as the blitting thread does it (tests call it).
void KSBlitOnce();

// Forgets everything (tests).
void KSResetRenderState();
