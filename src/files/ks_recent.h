// The recent-files list.
#pragma once

void KSLoadRecent();
void KSRecentAdd(const char *path, bool withScreenshot);
