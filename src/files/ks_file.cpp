// Minimal file handling until the open panel and its filter land.
#include "files/ks_file.h"

#include <string>

#include "shell/ks_assert.h"
#include "shell/ks_main.h"

namespace {
std::string pCurrentFile;
bool pHaveFile;
} // namespace

const char *KSCurrentFilePath() { return pHaveFile ? pCurrentFile.c_str() : nullptr; }

bool KSOpenFile(const char *path)
{
    KS_ASSERT(gConfigParameters->handle_open);
    if (!gConfigParameters->handle_open(0, path)) return false;
    pCurrentFile = path;
    pHaveFile = true;
    if (!KSSessionRunning()) KSStartSession();
    return true;
}

void KSCloseFile()
{
    if (gConfigParameters->handle_close) gConfigParameters->handle_close();
    pHaveFile = false;
    if (gConfigParameters->requires_file) KSStopSession();
}

void KSOpenPanel() {}
void KSFreezePanel() {}
void KSDefrostPanel() {}
void KSForgetCurrentFile() { pHaveFile = false; }
