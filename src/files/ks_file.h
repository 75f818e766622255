// Opening and closing files, freeze and defrost.
#pragma once

// The loaded file's path (symbolic links resolved), or null.
const char *KSCurrentFilePath();
bool KSOpenFile(const char *path);
void KSCloseFile();
void KSOpenPanel();
void KSFreezePanel();
void KSDefrostPanel();
void KSForgetCurrentFile();
