// Placards are not drawn yet; the text goes to the debug output instead.
#include "video/ks_placard.h"

#include <lumivex/lumivex.h>

#include "shell/ks_debug.h"

extern "C" void KSDisplayPlacard(const char *message)
{
    if (message) KSDebugLine("placard: %s", message);
}

bool KSPlacardShowing() { return false; }
void KSDrawPlacards(uint16_t *, uint32_t, uint32_t) {}
void KSResetPlacards() {}
