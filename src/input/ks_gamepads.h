// Gamepads through SDL2 joysticks: hot-plug, identity and bindings.
#pragma once

void KSStartGamepads();
void KSStopGamepads();
