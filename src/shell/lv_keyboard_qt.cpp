// Key events of the view, turned into Mac key codes for the keyboard state.
#include "shell/lv_keyboard_qt.h"

#include <QKeyEvent>

#include "input/ks_keyboard.h"
#include "input/ks_keytranslate.h"

namespace {
KSModifierFlagTracker pModifiers;

int MacKeyCode(const QKeyEvent *event)
{
#if defined(__APPLE__)
    return event->nativeVirtualKey() < 128 ? (int)event->nativeVirtualKey() : -1;
#else
    return KSMacKeyCodeFromScanCode(event->nativeScanCode());
#endif
}
} // namespace

void KSHandleQtKeyEvent(QKeyEvent *event)
{
    const bool down = event->type() == QEvent::KeyPress;
    uint32_t flags = 0;
    if (pModifiers.keyEvent(event->nativeScanCode(), down, &flags)) {
        if (!event->isAutoRepeat()) KSFlagsChanged(flags);
        return;
    }
    // X11 sends a release before every repeated press; the key is still held.
    if (event->isAutoRepeat() && !down) return;
    const int code = MacKeyCode(event);
    if (code < 0) return;
    const QString text = event->text();
    const uint16_t character = text.isEmpty() ? 0 : text.at(0).unicode();
    if (down)
        KSKeyDown((uint16_t)code, character, event->isAutoRepeat());
    else
        KSKeyUp((uint16_t)code, character);
}

void KSForgetQtModifiers() { pModifiers.clear(); }
