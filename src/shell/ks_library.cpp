// The shared library's own translation unit; everything else comes from the
// shell and pure layers, linked whole so that every export is present.
#include <lumivex/blitters.h>
#include <lumivex/lumivex.h>
