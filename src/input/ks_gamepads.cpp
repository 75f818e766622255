// Gamepads are not handled yet: the per-button gamepad state stays zero.
#include "input/ks_gamepads.h"

void KSStartGamepads() {}
void KSStopGamepads() {}
