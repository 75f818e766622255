// The preference store: one QSettings in native format for the host application,
// with registered defaults that are never written to the file. Every value is read
// at the moment of use; writes go straight to the store.
#pragma once

#include <cstdint>
#include <string>

// Shell setting keys.
#define kPrefBilinearFiltering "KS::Video::BilinearFiltering"
#define kPrefVBLSync "KS::Video::VBLSync"
#define kPrefCurvature "KS::Video::Curvature"
#define kPrefAspectRatio "KS::Video::AspectRatio"
#define kPrefDisplayRecent "KS::Interface::DisplayRecent"
#define kPrefRigidResizing "KS::Interface::RigidResizing"
#define kPrefOpenAtStart "KS::Interface::OpenAtStart"
#define kPrefDisplayPlacards "KS::Interface::DisplayPlacards"
#define kPrefDisplayFrameRate "KS::Interface::DisplayFrameRate"
#define kPrefBlitterSize "KS::Video::BlitterSize"
#define kPrefBlitterType "KS::Video::BlitterType"
#define kPrefLimitSpeed "KS::Interface::LimitSpeed"
#define kPrefPauseInBackground "KS::Interface::PauseInBackground"
#define kPrefSoundEnabled "KS::Sound::Enabled"

// Recent-file keys: these prefixes followed by the slot number 0 to 8 ("%@%i").
#define kPrefRecentFilepath "KS::Recent::Filepath"
#define kPrefRecentScreenshot "KS::Recent::Screenshot"
#define kPrefRecentSlots 9

// Button keys: "KS::Input::" + the button's preference name + a suffix such as this.
#define kPrefInputPrefix "KS::Input::"
#define kPrefKeyCodeSuffix "::KeyCode"

// Loads the preferences for gConfigParameters: registers the defaults, reads the
// key codes and the emulator's own values, calls handle_prefchange.
void KSLoadPreferences();

// Registers the shell's own defaults only (the sound entry when the record has
// sound). Part of KSLoadPreferences; also used by tests that need no record walk.
void KSRegisterShellDefaults(bool usesSound);

// The key of button `which` with a suffix ("::KeyCode", "::HID::VendorID", ...):
// "KS::Input::" + its preference name + suffix.
std::string KSButtonPrefKey(uint32_t which, const char *suffix);
// The key of a recent-file slot: prefix (kPrefRecentFilepath or kPrefRecentScreenshot)
// followed by the slot number.
std::string KSRecentPrefKey(const char *prefix, int slot);

// The emulator's name text as loaded with the preferences, for the window and menus.
const std::string &KSPrefsEmulatorName();

// The preferences window registers these so that loading the preferences drops what
// it built: the first runs before the emulator's values are read (release the
// controls made for the emulator's settings), the second at the very end (mark the
// window as not built). Either may be null.
void KSSetPrefsWindowHooks(void (*releaseEmulatorControls)(), void (*forgetWindow)());

// Reads. A stored value that is not of the asked type reads as the registered
// default (or false / 0 / "" without one).
bool KSPrefBool(const char *key);
int64_t KSPrefInt(const char *key);
std::string KSPrefString(const char *key);
bool KSPrefExists(const char *key);

// Writes, straight to the store.
void KSPrefSetBool(const char *key, bool value);
void KSPrefSetInt(const char *key, int64_t value);
void KSPrefSetString(const char *key, const std::string &value);
void KSPrefRemove(const char *key);
void KSPrefSync();

// Where the store lives: by default the native settings of the application named
// `application` (INI under the user's configuration folder on Linux). Tests point
// it at a file of their own. Registered defaults are kept; KSPrefsClose forgets both.
void KSPrefsOpenNative(const char *organisation, const char *application);
void KSPrefsOpenFile(const std::string &path);
void KSPrefsClose();
