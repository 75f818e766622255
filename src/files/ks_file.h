// Opening and closing files, freeze and defrost.
#pragma once

#include <cstdint>
#include <string>

// The loaded file's path (symbolic links resolved), or null.
const char *KSCurrentFilePath();
// Hands the file to the core; on success stamps it, starts the session if needed,
// titles the window and records it in the recent list. A refusal closes the
// current emulation and keeps the previous file as the current one.
bool KSOpenFile(const char *path);
// Unloads the current file; without requires_file the window stays, untitled.
void KSCloseFile();
// "Open...": the open panel, filtered through the core's handle_filter.
void KSOpenPanel();
// "Freeze Game State..." and "Defrost Game State...".
void KSFreezePanel();
void KSDefrostPanel();
void KSForgetCurrentFile();

// The open panel's filter (the panel's LVOpenFilterDelegate): folders are enabled
// unless they are packages; a file is enabled when handle_filter accepts its first
// 128 bytes (decompressed when gzip, zero-padded), type, creator and size.
bool KSOpenFilterShouldEnable(const std::string &path);
// A folder the desktop shows as one document (an application or bundle).
bool KSPathIsPackage(const std::string &path);
// Up to 128 bytes from the start of a file through zlib's gzip reader into a zeroed
// buffer; false when the file does not open.
bool KSReadFileHeader(const std::string &path, uint8_t header[128]);
// The path with symbolic links resolved; for a file that does not exist yet, its
// folder resolved.
std::string KSResolveSymlinks(const std::string &path);

// Seams for the desktop. Each defaults to doing nothing (or to the recent list);
// the application and tests replace them.
// Titles the main window after the file and makes it the represented file; null clears both.
extern void (*gSetWindowFileTitle)(const char *path);
// Ends the recent-files picker when it runs modally.
extern void (*gEndRecentPickerModal)();
// Records a file in the recent list (KSRecentAdd by default).
extern void (*gFileRecentAdd)(const char *path, bool withScreenshot);

// Forgets the current file and restores the default seams (tests).
void KSResetFileState();
