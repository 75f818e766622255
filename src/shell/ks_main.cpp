// The exported host interface, the emulation session and the frame loop.
#include "shell/ks_main.h"

#include <cstdio>
#include <cstring>

#include "files/ks_file.h"
#include "files/ks_filetype.h"
#include "files/ks_recent.h"
#include "input/ks_gamepads.h"
#include "input/ks_keyboard.h"
#include "network/ks_network.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_assert.h"
#include "shell/ks_clock.h"
#include "shell/ks_debug.h"
#include "shell/ks_framerate.h"
#include "shell/ks_platform.h"
#include "shell/ks_alert.h"
#include "sound/ks_recording.h"
#include "sound/ks_sound.h"
#include "video/ks_render.h"
#include "video/ks_screenshot.h"

LVPlatform *KSCreateQtPlatform(); // shell/lv_platform_qt.cpp

namespace {

LVPlatform *pPlatform;
uint32_t pDisplaySleepCookie;
bool pHoldingDisplaySleep;
int32_t pFramesThisSecond;
double pSecondStart;
double pLastCursorHide;
uint32_t pQuitHoldCounter;

constexpr double kUnlimitedInterval = 0.00001;

} // namespace

void KSSetPlatform(LVPlatform *platform) { pPlatform = platform; }
LVPlatform *KSPlatform() { return pPlatform; }

// ---- Handshake and start-up ------------------------------------------------

extern "C" bool LVHandshake(int32_t version, const char *version_text)
{
    if (version < LUMIVEX_SHELL_VERSION) {
        KSHeadsUpAlert("Unable to load Lumivex.",
                       "The version of Lumivex installed on this computer is only compatible with emulators released "
                       "on or after December 1st, 2019.\n\nPlease download and install the latest release of your "
                       "emulator to resolve this issue.");
        return false;
    }
    if (version > LUMIVEX_SHELL_VERSION) {
        char message[1024];
        snprintf(message, sizeof message,
                 "Lumivex v%s is installed, which is not compatible with the emulator shell v%s. Please download and "
                 "install the latest release to resolve this issue.",
                 LUMIVEX_VERSION_TEXT, version_text ? version_text : "");
        KSHeadsUpAlert("Unable to load Lumivex.", message);
        return false;
    }
    return true;
}

extern "C" void KSInit(KSConfigParameters *config)
{
    if (!pPlatform) pPlatform = KSCreateQtPlatform();
    if (!pPlatform->graphicsAvailable()) {
        KSHeadsUpAlert("Unable to start.", "This emulator requires a computer that supports OpenGL 3.3.");
        KSExitProcess(1);
    }
    printf("Lumivex v%s, the desktop shell for emulators. Free software; see the README for credits.\n",
           LUMIVEX_VERSION_TEXT);
    fflush(stdout);
    pPlatform->createApplication();
    gConfigParameters = config;
    KS_ASSERT(gConfigParameters);
    gQuickFreezePath[0] = 0;
    gRequestedVideoWidth = config->initial_width;
    gRequestedVideoHeight = config->initial_height;
    KSLoadPreferences();
    KSSetupRendering();
    pPlatform->buildMenuBar();
    KSLoadRecent();
    KSStartGamepads();
    if (config->requires_file == 0) KSStartSession();
}

extern "C" void KSExecute(void)
{
    if (pPlatform) pPlatform->runEventLoop();
}

extern "C" void KSTerm(void) {}

// ---- Exports called by the core ----------------------------------------------

extern "C" void KSSetFrameRate(uint32_t rate)
{
    if (!gConfigParameters || rate == gConfigParameters->framerate) return;
    KSStopFrameTimer();
    KSStopSound();
    gConfigParameters->framerate = rate;
    if (KSSessionRunning()) {
        KSStartFrameTimer();
        KSStartSound();
    }
}

extern "C" void KSSetVideoDimensions(uint32_t width, uint32_t height)
{
    if (width == gRequestedVideoWidth && height == gRequestedVideoHeight) return;
    KSWaitForBlitIdle();
    gRequestedVideoWidth = width;
    gRequestedVideoHeight = height;
    if (!KSSessionRunning()) {
        KSDebugLine("KSSetVideoDimensions called without extant window.");
        return;
    }
    {
        // No blit may run while the slots are replaced.
        std::lock_guard<std::mutex> lock(gBlitThreadLock);
        gBackVideoWidth = gRequestedVideoWidth;
        gBackVideoHeight = gRequestedVideoHeight;
        KS_ASSERT(gBackVideoWidth > 0);
        KS_ASSERT(gBackVideoHeight > 0);
        KSAllocateBuffers();
        gBufferReady[0] = 0;
        gBufferReady[1] = 0;
    }
    pPlatform->applyWindowGeometry();
    SelectBlitter();
    KSResetDisplayState();
}

extern "C" void KSSetVideoDisplayDimensions(uint32_t, uint32_t)
{
    if (KSSessionRunning()) pPlatform->applyWindowGeometry();
}

extern "C" void KSSetHardwareEnvironCRCs(uint32_t crc0, uint32_t crc1, uint32_t crc2, uint32_t crc3)
{
    gHardwareCRCs[0] = crc0;
    gHardwareCRCs[1] = crc1;
    gHardwareCRCs[2] = crc2;
    gHardwareCRCs[3] = crc3;
}

extern "C" bool KSGetMouse(uint32_t *x, uint32_t *y, uint8_t *button)
{
    if (!gConfigParameters || gConfigParameters->uses_mouse != 1) KS_FAIL("gConfigParameters->uses_mouse == YES");
    if (!KSSessionRunning()) return false;
    uint32_t mx = 0, my = 0;
    uint8_t mb = 0;
    pPlatform->mouseState(&mx, &my, &mb);
    if (x) *x = mx;
    if (y) *y = my;
    if (button) *button = mb;
    return true;
}

extern "C" void KSSetFreezePath(const char *path)
{
    KS_ASSERT(path != nullptr);
    KS_ASSERT(strlen(path) < MAX_PATH_LENGTH);
    memcpy(gQuickFreezePath, path, strlen(path) + 1);
}

extern "C" void KSSetPathFileType(const char *path, uint32_t type)
{
    if (!path || !gConfigParameters) return;
    KSWriteFileTypeAndCreator(path, type, gConfigParameters->file_creator);
}

extern "C" void KSSetProxyType(uint32_t type)
{
    if (gConfigParameters) gConfigParameters->file_type = type;
}

// ---- Session -------------------------------------------------------------------

bool KSSessionRunning() { return pPlatform && pPlatform->mainWindowExists(); }

void KSStartFrameTimer()
{
    KSStopFrameTimer();
    const double interval = gSpeedUnlimited ? kUnlimitedInterval : 1.0 / gConfigParameters->framerate;
    pPlatform->startTimer(interval);
}

void KSStopFrameTimer()
{
    if (pPlatform && pPlatform->timerRunning()) pPlatform->stopTimer();
}

void KSStartSession()
{
    if (KSSessionRunning()) KSStopSession();
    pHoldingDisplaySleep = pPlatform->inhibitDisplaySleep(&pDisplaySleepCookie);
    if (!pHoldingDisplaySleep) KSDebugLine("No screensaver service: the display may sleep during play.");
    gBackVideoWidth = gRequestedVideoWidth;
    gBackVideoHeight = gRequestedVideoHeight;
    KS_ASSERT(gBackVideoWidth > 0);
    KS_ASSERT(gBackVideoHeight > 0);
    KS_ASSERT(gConfigParameters->framerate != 0);
    KSAllocateBuffers();
    SelectBlitter();
    uint32_t width = gBlitterSize * gBackVideoWidth, height;
    switch (KSPrefInt(kPrefAspectRatio)) {
    case 1: height = width * 3 / 4; break;
    case 2: height = width * 9 / 16; break;
    default: height = gBlitterSize * gBackVideoHeight; break;
    }
    pPlatform->createMainWindow(width, height);
    pPlatform->applyWindowGeometry();
    KSStartSound();
    KSResetDisplayState();
    KSStartBlittingThread();
    KSStartFrameTimer();
    KSReleaseAllKeys();
    KSPublishFrameRate(gConfigParameters->framerate);
    pFramesThisSecond = 0;
    pSecondStart = KSMediaTime();
}

void KSStopSession()
{
    if (pPlatform->mainWindowExists() && pPlatform->isFullScreen()) pPlatform->toggleFullScreen();
    if (const char *path = KSCurrentFilePath()) KSRecentAdd(path, true);
    KSStopBlittingThread();
    KSStopFrameTimer();
    if (pPlatform->mainWindowExists()) pPlatform->destroyMainWindow();
    if (pHoldingDisplaySleep) pPlatform->releaseDisplaySleep(pDisplaySleepCookie);
    pHoldingDisplaySleep = false;
    pDisplaySleepCookie = 0;
    KSStopSound();
    KSNetworkEnd();
    KSForgetCurrentFile();
}

void KSPauseOnResign()
{
    if (KSPrefBool(kPrefPauseInBackground)) gPausedInBackground = true;
}

void KSResumeOnActivate()
{
    gPausedInBackground = false;
    KSReleaseAllKeys();
}

// ---- The frame tick ------------------------------------------------------------

namespace {

// Returns false when the loop must stop looking at buttons (the session ended).
bool ActOnCommandButton(KSButton &button, double now)
{
    int32_t k = button.keyCode;
    if (k < 0 || k >= MAX_KEYS) k = KS_KEY_UNASSIGNED; // a hand-edited store cannot index out of range
    if (gCommandCountdown[k] != 0) {
        gCommandCountdown[k]--;
        return true;
    }
    const bool down = button.state != 0;
    switch (button.function) {
    case KS_FUNCTION_SPEED:
        if (!down && KSPrefBool(kPrefLimitSpeed)) {
            if (gSpeedUnlimited) {
                gSpeedUnlimited = false;
                KSStartFrameTimer();
                if (KSPrefBool(kPrefDisplayFrameRate)) {
                    KSRestoreFrameRate();
                    pFramesThisSecond = 0;
                    pSecondStart = now;
                }
            }
        } else if (!gSpeedUnlimited) {
            gSpeedUnlimited = true;
            KSStartFrameTimer();
        }
        break;
    case KS_FUNCTION_FULL_SCREEN:
        if (now - gLastFullScreenChange > 1.0 && down) {
            if (!pPlatform->mainWindowExists()) KS_FAIL("gMainWindow");
            pPlatform->toggleFullScreen();
        }
        break;
    case KS_FUNCTION_QUICK_FREEZE:
        if (down) {
            KS_ASSERT(gConfigParameters->handle_freeze);
            gCommandCountdown[k] = 30;
            KSDisplayPlacard(gConfigParameters->handle_freeze(gQuickFreezePath) ? "Quick Freeze" : "Unable to Freeze");
        }
        break;
    case KS_FUNCTION_QUICK_DEFROST:
        if (down) {
            KS_ASSERT(gConfigParameters->handle_defrost);
            gCommandCountdown[k] = 30;
            KSDisplayPlacard(gConfigParameters->handle_defrost(gQuickFreezePath) ? "Quick Defrost"
                                                                                   : "Unable to Defrost");
        }
        break;
    case KS_FUNCTION_QUICK_SCREENSHOT:
        if (down) {
            gCommandCountdown[k] = 30;
            KSQuickScreenshot();
        }
        break;
    case KS_FUNCTION_QUICK_AUDIO_REC:
        if (down) {
            gCommandCountdown[k] = 30;
            KSQuickAudioRecording();
        }
        break;
    case KS_FUNCTION_QUICK_QUIT:
        if (down) {
            pQuitHoldCounter++;
            if (pQuitHoldCounter < gConfigParameters->framerate)
                KSDisplayPlacard("Quick Quit: Hold Two Seconds");
            else if (pQuitHoldCounter >= 2 * gConfigParameters->framerate) {
                pQuitHoldCounter = 0;
                if (pPlatform->mainWindowExists()) KSStopSession();
                pPlatform->stopEventLoop();
                return false;
            } else
                KSDisplayPlacard("Quick Quit: Hold One Second");
        } else if (pQuitHoldCounter > 0) {
            KSDisplayPlacard("Quick Quit: Cancelled");
            pQuitHoldCounter = 0;
        }
        break;
    default: break;
    }
    return true;
}

} // namespace

void KSFrameTick()
{
    if (gModalRunning || gPausedInBackground) return;
    if (!gConfigParameters || !KSSessionRunning()) return;
    const double now = KSMediaTime();
    if (now - pSecondStart >= 1.0) {
        pSecondStart = now;
        KSPublishFrameRate((uint32_t)pFramesThisSecond);
        pFramesThisSecond = 1;
    } else
        pFramesThisSecond++;
    if (pPlatform->isFullScreen() && now - pLastCursorHide >= 2.0) {
        pLastCursorHide = now;
        pPlatform->hideCursorUntilMouseMoves();
    }
    gBufferIndex ^= 1;

    // None without sound or with it switched off, none while unlimited with more than
    // four blocks waiting, none when the ring is full.
    void *sound = KSFrameSoundBuffer();

    KSUpdateButtonStates();
    KSNetworkExchange();
    const uint32_t slot = gBufferIndex;
    gConfigParameters->handle_frame(KSBackBuffer(slot), sound);
    if (sound) KSCommitSoundBuffer();
    if (!KSSessionRunning()) return; // the core closed its own file
    KSMarkReady(slot);
    KSWakeBlitter();
    pPlatform->drawView();

    KSButton *buttons = gConfigParameters->buttons;
    for (int i = 0; buttons && i < MAX_KEYS && buttons[i].title; i++) {
        if (!ActOnCommandButton(buttons[i], now)) return;
    }
}

void KSResetShellState()
{
    KSResetRenderState();
    gSpeedUnlimited = false;
    gPausedInBackground = false;
    gModalRunning = false;
    gBufferIndex = 0;
    memset(gCommandCountdown, 0, sizeof gCommandCountdown);
    gLastFullScreenChange = 0;
    gQuickFreezePath[0] = 0;
    pFramesThisSecond = 0;
    pSecondStart = 0;
    pLastCursorHide = 0;
    pQuitHoldCounter = 0;
    pHoldingDisplaySleep = false;
    pDisplaySleepCookie = 0;
    gRequestedVideoWidth = gRequestedVideoHeight = 0;
    gBackVideoWidth = gBackVideoHeight = 0;
}
