// Minimal keyboard state until the full key handling lands.
#include "input/ks_keyboard.h"

#include <cstring>

#include "shell/ks_main.h"

uint8_t gKeyState[MAX_KEYS];
uint8_t gGamepadButtonState[MAX_HID_INPUTS];

void KSKeyDown(uint16_t keyCode, uint16_t, bool isRepeat)
{
    if (isRepeat || keyCode >= MAX_KEYS) return;
    gKeyState[keyCode] = 1;
}

void KSKeyUp(uint16_t keyCode, uint16_t)
{
    if (keyCode >= MAX_KEYS) return;
    gKeyState[keyCode] = 0;
    gCommandCountdown[keyCode] = 0;
}

void KSFlagsChanged(uint32_t) {}

void KSReleaseAllKeys()
{
    memset(gKeyState, 0, sizeof gKeyState);
    memset(gCommandCountdown, 0, sizeof(int32_t) * MAX_KEYS);
    memset(gGamepadButtonState, 0, sizeof gGamepadButtonState);
}

void KSUpdateButtonStates()
{
    if (!gConfigParameters || !gConfigParameters->buttons) return;
    KSButton *b = gConfigParameters->buttons;
    for (int i = 0; i < MAX_KEYS && b[i].title; i++) {
        const int32_t k = b[i].keyCode;
        const bool key = k >= 0 && k < MAX_KEYS && gKeyState[k];
        b[i].state = (key || gGamepadButtonState[i]) ? 1 : 0;
    }
}

const char *KSButtonPreferenceName(uint32_t) { return ""; }
const char *KSKeyName(uint32_t) { return ""; }

void KSResetKeyboardState()
{
    memset(gKeyState, 0, sizeof gKeyState);
    memset(gGamepadButtonState, 0, sizeof gGamepadButtonState);
}
