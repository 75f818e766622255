// Key events of the view, turned into Mac key codes for the keyboard state.
#pragma once

class QKeyEvent;

void KSHandleQtKeyEvent(QKeyEvent *event);
