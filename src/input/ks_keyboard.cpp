// Keyboard state: the key table, the keys held for the emulator's own handlers, the
// modifier hold counters, release-all, the per-frame button update and the spelling
// of each button inside its preference keys. Main thread only, so nothing is locked.
#include "input/ks_keyboard.h"

#include <cstdlib>
#include <cstring>

#include "shell/ks_assert.h"
#include "shell/ks_main.h"

uint8_t gKeyState[MAX_KEYS];
uint8_t gGamepadButtonState[MAX_HID_INPUTS];

namespace
{

// The held keys reported to the key-down handler, in the order of pressing. The
// capacity check admits a 65th entry, so the arrays keep one spare slot for it.
uint16_t pStoredCharacters[MAX_STORED_KEYS + 1];
uint32_t pStoredKeyCodes[MAX_STORED_KEYS + 1];
int32_t pStoredKeyCount;

// Hold counters of Command, Shift, Option, Caps Lock and Control; 0 = not held.
constexpr uint32_t kModifierHoldEvents = 30;
struct Modifier {
    uint32_t flag;
    uint16_t keyCode;
};
constexpr Modifier kModifiers[5] = {
    {kModifierCommand, 55},  {kModifierShift, 56},   {kModifierOption, 58},
    {kModifierCapsLock, 57}, {kModifierControl, 59},
};
uint32_t pModifierHold[5];

char *pKeycodeDefaultCache[MAX_HID_INPUTS];

bool RawKeys()
{
    return gConfigParameters && gConfigParameters->raw_keys;
}
KSKeyFunc KeyDownHandler()
{
    return gConfigParameters ? gConfigParameters->handle_keydown : nullptr;
}
KSKeyFunc KeyUpHandler()
{
    return gConfigParameters ? gConfigParameters->handle_keyup : nullptr;
}

void RemoveStoredKey(int32_t index)
{
    for (int32_t j = index; j + 1 < pStoredKeyCount; j++) {
        pStoredCharacters[j] = pStoredCharacters[j + 1];
        pStoredKeyCodes[j] = pStoredKeyCodes[j + 1];
    }
    pStoredKeyCount--;
}

void ReportModifier(uint16_t code, bool down)
{
    if (RawKeys()) {
        KSKeyFunc handler = down ? KeyDownHandler() : KeyUpHandler();
        handler(code, 0);
    } else {
        gKeyState[code] = down ? 1 : 0;
    }
}

} // namespace

void KSKeyDown(uint16_t keyCode, uint16_t character, bool isRepeat)
{
    if (isRepeat) return;
    const uint16_t code = keyCode;

    if (KSKeyFunc keyDown = KeyDownHandler()) {
        for (int32_t i = 0; i < pStoredKeyCount; i++)
            if (pStoredCharacters[i] == character && pStoredKeyCodes[i] == code) return;
        const int32_t stored_key_count = pStoredKeyCount;
        KS_ASSERT(stored_key_count <= MAX_STORED_KEYS);
        if (stored_key_count > MAX_STORED_KEYS) return; // never past the spare slot
        pStoredCharacters[stored_key_count] = character;
        pStoredKeyCodes[stored_key_count] = code;
        pStoredKeyCount++;
        keyDown(code, character);
    }

    if (!RawKeys()) {
        KS_ASSERT(code < MAX_KEYS);
        if (code >= MAX_KEYS) return;
        gKeyState[code] = 1;
    }
}

void KSKeyUp(uint16_t keyCode, uint16_t character)
{
    const uint16_t code = keyCode;

    if (KSKeyFunc keyUp = KeyUpHandler()) {
        bool removed = false;
        for (int32_t i = 0; i < pStoredKeyCount; i++) {
            if (pStoredKeyCodes[i] == code && pStoredCharacters[i] == character) {
                RemoveStoredKey(i);
                removed = true;
            }
        }
        if (removed) {
            keyUp(code, character);
        } else {
            // The character may differ from the press (a modifier changed in between):
            // release the key the emulator was told about, with the character it was given.
            uint16_t storedCharacter = 0;
            for (int32_t i = 0; i < pStoredKeyCount; i++) {
                if (pStoredKeyCodes[i] == code) {
                    storedCharacter = pStoredCharacters[i];
                    RemoveStoredKey(i);
                    removed = true;
                }
            }
            if (removed) {
                keyUp(code, storedCharacter);
            } else {
                KSReleaseAllKeys();
                return;
            }
        }
    }

    if (!RawKeys()) {
        KS_ASSERT(code < MAX_KEYS);
        if (code >= MAX_KEYS) return;
        gKeyState[code] = 0;
        // Releasing a command key lets it fire again at once.
        gCommandCountdown[code] = 0;
    }
}

void KSFlagsChanged(uint32_t modifierFlags)
{
    // In raw-keys mode modifiers reach the emulator only when it has both handlers.
    if (RawKeys() && (!KeyDownHandler() || !KeyUpHandler())) return;

    for (int m = 0; m < 5; m++) {
        const bool set = (modifierFlags & kModifiers[m].flag) != 0;
        if (pModifierHold[m] != 0) {
            // A modifier held through 30 further events runs out and is reported
            // pressed again without a release in between; deliberate and kept.
            pModifierHold[m]--;
            if (!set) {
                pModifierHold[m] = 0;
                ReportModifier(kModifiers[m].keyCode, false);
            }
        } else if (set) {
            pModifierHold[m] = kModifierHoldEvents;
            ReportModifier(kModifiers[m].keyCode, true);
        }
    }
}

void KSReleaseAllKeys()
{
    memset(gKeyState, 0, sizeof gKeyState);
    memset(gCommandCountdown, 0, sizeof(int32_t) * MAX_KEYS);
    memset(gGamepadButtonState, 0, sizeof gGamepadButtonState);

    KSKeyFunc keyUp = KeyUpHandler();
    if (keyUp && pStoredKeyCount > 0) {
        for (int32_t i = 0; i < pStoredKeyCount; i++)
            keyUp(pStoredKeyCodes[i], pStoredCharacters[i]);
    }
    // The modifier hold counters survive on purpose.
    pStoredKeyCount = 0;
}

void KSUpdateButtonStates()
{
    if (!gConfigParameters || !gConfigParameters->buttons) return;
    KSButton *buttons = gConfigParameters->buttons;
    for (uint32_t i = 0; i < MAX_HID_INPUTS && buttons[i].title; i++) {
        // A key code from outside (a hand-edited store) may be anything: only 0..127 name a key.
        const int32_t k = buttons[i].keyCode;
        const bool byKey = k >= 0 && k < MAX_KEYS && gKeyState[k] != 0;
        buttons[i].state = (byKey || gGamepadButtonState[i] != 0) ? 1 : 0;
    }
}

const char *KSButtonPreferenceName(uint32_t which)
{
    KS_ASSERT(which < MAX_HID_INPUTS);
    if (which >= MAX_HID_INPUTS) return "";
    if (pKeycodeDefaultCache[which]) return pKeycodeDefaultCache[which];

    if (!gConfigParameters || !gConfigParameters->buttons) return "";
    const KSButton *buttons = gConfigParameters->buttons;
    for (uint32_t i = 0; i < which; i++)
        if (!buttons[i].title) return ""; // past the end of the record's buttons
    const KSButton &button = buttons[which];
    if (!button.title) return "";

    // Controller inputs keep their words apart with "::" (Joypad::1::Up); every other
    // button runs its words together (FastForward).
    const bool controllerRole = button.function >= 1 && button.function <= 6;
    const size_t length = strlen(button.title);
    pKeycodeDefaultCache[which] = static_cast<char *>(malloc(length * 2 + 1));
    KS_ASSERT(pKeycodeDefaultCache[which]);
    char *out = pKeycodeDefaultCache[which];
    if (!out) return "";
    for (const char *c = button.title; *c; c++) {
        if (*c == ' ') {
            if (controllerRole) {
                *out++ = ':';
                *out++ = ':';
            }
        } else {
            *out++ = *c;
        }
    }
    *out = 0;
    return pKeycodeDefaultCache[which];
}

void KSResetKeyboardState()
{
    memset(gKeyState, 0, sizeof gKeyState);
    memset(gGamepadButtonState, 0, sizeof gGamepadButtonState);
    memset(pStoredCharacters, 0, sizeof pStoredCharacters);
    memset(pStoredKeyCodes, 0, sizeof pStoredKeyCodes);
    pStoredKeyCount = 0;
    memset(pModifierHold, 0, sizeof pModifierHold);
    for (char *&name : pKeycodeDefaultCache) {
        free(name);
        name = nullptr;
    }
}
