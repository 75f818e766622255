// The overlay tests' clock.
#include "overlay_fixture.h"

double OverlayClock::now;
