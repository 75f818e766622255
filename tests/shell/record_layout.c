/* The public header compiles as C and pins the same layout there. */
#include <lumivex/lumivex.h>

size_t LayoutSizeFromC(void) { return sizeof(KSConfigParameters); }
size_t LayoutOffsetFromC(int which)
{
    switch (which) {
    case 0: return offsetof(KSConfigParameters, framerate);
    case 1: return offsetof(KSConfigParameters, requires_file);
    case 2: return offsetof(KSConfigParameters, handle_open);
    case 3: return offsetof(KSConfigParameters, uses_mouse);
    case 4: return sizeof(KSButton);
    case 5: return sizeof(KSMenuItem);
    case 6: return sizeof(KSWebLink);
    default: return 0;
    }
}
