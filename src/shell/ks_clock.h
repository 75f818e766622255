// The media clock: monotonic seconds since boot, replaceable by tests.
#pragma once

double KSMediaTime();
// Null restores the real clock.
void KSSetClock(double (*clock)());
