// Keyboard state: the key table, the stored keys for the emulator's handlers,
// modifier tracking, release-all and the per-frame button update. Pure C++.
#pragma once

#include <cstdint>

#include <lumivex/lumivex.h>

// Modifier flag bits handed to KSFlagsChanged (the values of the Mac event flags).
constexpr uint32_t kModifierCommand = 0x100000;
constexpr uint32_t kModifierShift = 0x20000;
constexpr uint32_t kModifierOption = 0x80000;
constexpr uint32_t kModifierCapsLock = 0x10000;
constexpr uint32_t kModifierControl = 0x40000;

extern uint8_t gKeyState[MAX_KEYS];
extern uint8_t gGamepadButtonState[MAX_HID_INPUTS]; // by button index, written by the gamepads

// View events, already translated to Mac key codes.
void KSKeyDown(uint16_t keyCode, uint16_t character, bool isRepeat);
void KSKeyUp(uint16_t keyCode, uint16_t character);
void KSFlagsChanged(uint32_t modifierFlags);

void KSReleaseAllKeys();
void KSUpdateButtonStates();

// The spelling of button `which` inside its "KS::Input::" keys.
const char *KSButtonPreferenceName(uint32_t which);
// The display name of a key code (empty for 127 and for codes out of range).
const char *KSKeyName(uint32_t code);

// Forgets all keyboard state and the name cache (tests, shutdown).
void KSResetKeyboardState();
