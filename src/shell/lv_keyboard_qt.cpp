#include "shell/lv_keyboard_qt.h"

#include <QKeyEvent>

#include "input/ks_keyboard.h"

void KSHandleQtKeyEvent(QKeyEvent *) {}
