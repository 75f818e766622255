// The recent-files list is not kept yet.
#include "files/ks_recent.h"

void KSLoadRecent() {}
void KSRecentAdd(const char *, bool) {}
