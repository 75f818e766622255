// Key events of the view, turned into Mac key codes for the keyboard state.
#pragma once

class QKeyEvent;

void KSHandleQtKeyEvent(QKeyEvent *event);
// With release-all on focus changes: the modifier keys count as up again.
void KSForgetQtModifiers();
