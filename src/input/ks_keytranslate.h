// From the physical key of a Linux keyboard to the Mac virtual key code of the key in
// the same place on an ANSI keyboard, so that bindings follow the key's position on
// any layout. Pure data; no Qt.
#pragma once

#include <cstddef>
#include <cstdint>

// One row of the table: a Linux input event code (linux/input-event-codes.h) and the
// Mac virtual key code of the key in its place.
struct KSScanCodeMapping {
    uint16_t evdevCode;
    uint8_t macKeyCode;
};

extern const KSScanCodeMapping kKSScanCodeMappings[];
extern const size_t kKSScanCodeMappingCount;

// X11, XWayland and Wayland hand Qt the evdev code plus 8 as the native scan code.
constexpr uint32_t kKSNativeScanCodeOffset = 8;

// The Mac key code for QKeyEvent::nativeScanCode() on Linux, or -1 for a key that has
// no place on the Mac keyboard (and for 0, which the platform sends for synthetic keys).
// Left and right modifiers both give the left-hand code: Ctrl 59 (Control), Super 55
// (Command), Alt and AltGr 58 (Option), Shift 56.
int KSMacKeyCodeFromScanCode(uint32_t nativeScanCode);

// The Mac modifier flag that a translated key code stands for (55 Command, 56 Shift,
// 57 Caps Lock, 58 Option, 59 Control), or 0 for an ordinary key.
uint32_t KSModifierFlagForMacKeyCode(int macKeyCode);

// Linux reports modifier keys as ordinary presses and releases; the keyboard state
// wants the Mac modifier flags instead. This keeps which physical modifier keys are
// down (left and right apart) and gives the flags after each event. Caps Lock counts
// as set while its key is down: the lock state itself is not visible to the view.
class KSModifierFlagTracker
{
  public:
    // For a modifier key: records the press or release, stores the flags after it in
    // *flags and returns true. For any other key: returns false and leaves *flags.
    bool keyEvent(uint32_t nativeScanCode, bool down, uint32_t *flags);
    uint32_t flags() const;
    void clear();

  private:
    static constexpr uint32_t kTracked = 256;
    bool m_down[kTracked] = {};
};
