/*
 * lumivex.h - the whole contract between an emulator (the host) and Lumivex.
 *
 * A host calls, in this order:
 *   LVHandshake(LUMIVEX_SHELL_VERSION, "3.1")  -> false: show nothing more, exit.
 *   fill one KSConfigParameters record (kept alive, at the same address, until exit)
 *   KSInit(&record);  KSExecute();  KSTerm();  return 0;
 * Everything else (KSSetFrameRate, KSDisplayPlacard, ...) may be called from the
 * host's callbacks after KSInit. Every export and every callback runs on the main
 * thread unless its comment says otherwise.
 *
 * The record crosses a binary boundary: its layout is fixed and checked below.
 * Compiles as C99 and as C++.
 */
#ifndef LUMIVEX_LUMIVEX_H
#define LUMIVEX_LUMIVEX_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#if defined(LUMIVEX_BUILDING)
#define LUMIVEX_EXPORT __declspec(dllexport)
#else
#define LUMIVEX_EXPORT __declspec(dllimport)
#endif
#else
#define LUMIVEX_EXPORT __attribute__((visibility("default")))
#endif

#if defined(__cplusplus)
#define LUMIVEX_NORETURN [[noreturn]]
extern "C" {
#elif defined(__GNUC__)
#define LUMIVEX_NORETURN __attribute__((noreturn))
#else
#define LUMIVEX_NORETURN
#endif

/* The one shell version this library agrees to, and its version text. */
#define LUMIVEX_SHELL_VERSION 12544 /* 0x3100 */
#define LUMIVEX_VERSION_TEXT "3.1"

/* Limits. */
#define MAX_KEYS 128
#define MAX_STORED_KEYS 64
#define MAX_HID_INPUTS 128
#define MAX_EMULATOR_PREFS 20
#define MAX_CUSTOM_MENU_LENGTH 128
#define MAX_PATH_LENGTH 2048
#define MAX_BLITTERS 30

/* Four-character codes, first character in the most significant byte. */
#define KS_FOURCC(a, b, c, d) \
    (((uint32_t)(uint8_t)(a) << 24) | ((uint32_t)(uint8_t)(b) << 16) | ((uint32_t)(uint8_t)(c) << 8) | (uint32_t)(uint8_t)(d))

/* Command codes handed to handle_command and handle_menuupdate. */
#define KS_CMD_RESET KS_FOURCC('K', 'S', 'r', 's')        /* 0x4B537273 */
#define KS_CMD_CLOSE KS_FOURCC('K', 'S', 'c', 's')        /* 0x4B536373 */
#define KS_CMD_FREEZE KS_FOURCC('K', 'S', 'f', 'z')       /* 0x4B53667A */
#define KS_CMD_DEFROST KS_FOURCC('K', 'S', 'd', 'f')      /* 0x4B536466 */
#define KS_CMD_MAKE_ICON KS_FOURCC('K', 'S', 'm', 'i')    /* 0x4B536D69 */
#define KS_CMD_NETWORK_HOST KS_FOURCC('K', 'S', 'n', 'h') /* 0x4B536E68 */
#define KS_CMD_NETWORK_JOIN KS_FOURCC('K', 'S', 'n', 'j') /* 0x4B536E6A */

/* Standard menu commands: put these in KSMenuItem.commandID; the shell supplies
   the title, key equivalent and action. Any other code is the emulator's own. */
#define KS_STD_ABOUT KS_FOURCC('K', 'S', 'a', 'b')       /* application menu, item 1 */
#define KS_STD_OPEN KS_FOURCC('K', 'S', 'o', 'p')        /* File: "Open..." + "Open Recent" */
#define KS_STD_CLOSE KS_FOURCC('K', 'S', 'c', 's')       /* File: "Close" */
#define KS_STD_PAGE_SETUP KS_FOURCC('K', 'S', 'p', 's')  /* File: "Page Setup..." */
#define KS_STD_PRINT KS_FOURCC('K', 'S', 'p', 't')       /* File: "Print Screen..." */
#define KS_STD_RESET KS_FOURCC('K', 'S', 'r', 's')       /* File: "Reset" */
#define KS_STD_EDIT KS_FOURCC('K', 'S', 'c', 'p')        /* Edit: Undo, Cut, Copy, Paste, Clear */
#define KS_STD_AUDIO_REC KS_FOURCC('K', 'S', 'a', 'r')   /* Options: "Start Recording Audio..." */
#define KS_STD_DEFROST KS_FOURCC('K', 'S', 'd', 'f')     /* Options: "Defrost Game State..." */
#define KS_STD_FREEZE KS_FOURCC('K', 'S', 'f', 'z')      /* Options: "Freeze Game State..." */
#define KS_STD_SCREENSHOT KS_FOURCC('K', 'S', 's', 's')  /* Options: "Save Screenshot..." */
#define KS_STD_MAKE_ICON KS_FOURCC('K', 'S', 'm', 'i')   /* Options: "Screenshot to Custom Icon" */
#define KS_STD_FULL_SCREEN KS_FOURCC('K', 'S', 'f', 's') /* Options: "Full Screen Mode" */
#define KS_STD_NETWORK_HOST KS_FOURCC('K', 'S', 'n', 'h') /* Options: "Host Network Game..." */
#define KS_STD_NETWORK_JOIN KS_FOURCC('K', 'S', 'n', 'j') /* Options: "Join Network Game..." */

/* Menu numbers of KSMenuItem.menu. */
#define KS_MENU_APPLICATION 128
#define KS_MENU_FILE 129
#define KS_MENU_EDIT 130
#define KS_MENU_OPTIONS 131

/* Button functions (KSButton.function). */
enum {
    KS_FUNCTION_INPUT = 0,
    KS_FUNCTION_UP = 1,
    KS_FUNCTION_DOWN = 2,
    KS_FUNCTION_LEFT = 3,
    KS_FUNCTION_RIGHT = 4,
    KS_FUNCTION_CONTROLLER_5 = 5,
    KS_FUNCTION_CONTROLLER_6 = 6,
    KS_FUNCTION_SPEED = 7,           /* while held, the speed limit is off */
    KS_FUNCTION_FULL_SCREEN = 8,     /* full screen toggle */
    KS_FUNCTION_QUICK_FREEZE = 9,    /* handle_freeze with the KSSetFreezePath path */
    KS_FUNCTION_QUICK_DEFROST = 10,  /* handle_defrost with the same path */
    KS_FUNCTION_QUICK_SCREENSHOT = 11,
    KS_FUNCTION_QUICK_AUDIO_REC = 12,
    KS_FUNCTION_QUICK_QUIT = 13      /* hold two seconds */
};

/* Key code meaning "no key". Key codes are Mac virtual key codes 0..127 on every
   platform; the shell translates the physical key. */
#define KS_KEY_UNASSIGNED 127

/* One emulated input or shell command button. The array ends with a null title. */
typedef struct KSButton {
    const char *title;      /* 0: shown in the preferences; null ends the array */
    uint32_t group;         /* 8: controller (player) number */
    uint32_t masterKeyCode; /* 12: default key code, <= MAX_KEYS */
    uint32_t function;      /* 16: KS_FUNCTION_* */
    int32_t state;          /* 20: written by the shell every frame: 1 pressed, else 0 */
    uint32_t reserved;      /* 24: never read by the shell */
    int32_t keyCode;        /* 28: key in force, written by the shell; 127 = none */
} KSButton;

/* One menu entry. Entries of one menu stand together; menu 0 ends the array. */
typedef struct KSMenuItem {
    uint32_t menu;     /* 0: KS_MENU_*; 0 ends the array */
    uint32_t itemID;   /* 4: 1-based position; skipping one number asks for a separator */
    int32_t commandID; /* 8: KS_STD_* or the emulator's own code */
    const char *title; /* 16: own items only: "Title%k" (k the Ctrl/Command key); < 128 bytes;
                          in File, "Sub\nA%1\nB%2" makes a submenu with tags id, id+1 */
} KSMenuItem;

/* One Help-menu link. A title beginning with "-" is a separator; null title ends. */
typedef struct KSWebLink {
    const char *title; /* 0 */
    const char *link;  /* 8: URL, not null for a real link */
} KSWebLink;

/* Types of KSPrefItem.type. */
enum {
    KS_PREF_END = -1,      /* ends the prefs array */
    KS_PREF_CHECKBOX = 1,  /* stored integer 0/1 under `name`; defaultValue 0 or 1 */
    KS_PREF_POPUP = 2,     /* stored 1-based item number; text = "Label\nItem 1\n-\nItem 2" */
    KS_PREF_HEADING = 3,   /* text only */
    KS_PREF_NOTE = 4,      /* text only, a taller label */
    KS_PREF_SPACER = 5,    /* empty row of 23 points */
    KS_PREF_SMALL_SPACER = 6 /* empty row of 11 points */
};

/* One emulator preference (32 bytes). The array ends with type KS_PREF_END; at most
   MAX_EMULATOR_PREFS are shown. The shell writes currentValue (main thread) after
   loading the store and whenever the user changes the item, then calls
   handle_prefchange. */
typedef struct KSPrefItem {
    int32_t type;         /* 0: KS_PREF_* */
    const char *text;     /* 8: checkbox title, pop-up label and items, heading or note */
    const char *name;     /* 16: the store key, used verbatim (types 1 and 2) */
    int32_t defaultValue; /* 24 */
    int32_t currentValue; /* 28: written by the shell */
} KSPrefItem;

/* Callbacks. All are called on the main thread. */
typedef void (*KSPrefChangeFunc)(void);
/* Load the file at path (symbolic links resolved); type is its HFS type or 0. */
typedef bool (*KSOpenFunc)(uint32_t type, const char *path);
typedef void (*KSCommandFunc)(uint32_t command);
/* Run one frame: draw into back_buffer (initial or KSSetVideoDimensions size, 16-bit
   RGB 5-5-5, pitch width * 2) and, when sound_buffer is not null, fill all of it
   with frequency / framerate interleaved signed samples. Both belong to the shell
   and are valid only during the call. */
typedef void (*KSFrameFunc)(uint16_t *back_buffer, void *sound_buffer);
typedef void (*KSCloseFunc)(void);
/* Write or read a state file; return true on success. */
typedef bool (*KSStateFunc)(const char *path);
typedef bool (*KSMenuUpdateFunc)(uint32_t command, bool window_exists, bool network_active);
/* Judge a file for the open dialog. header: its first 128 bytes (decompressed when
   gzip; zero-padded); file_size: -1 when unknown. */
typedef bool (*KSFilterFunc)(uint32_t type, uint32_t creator, const uint8_t *header, int64_t file_size);
/* Customise the open dialog (a QFileDialog *) before it runs; null after it closed. */
typedef void (*KSPanelFunc)(void *panel);
typedef void (*KSKeyFunc)(uint32_t key_code, uint16_t character);

/* The configuration record (520 bytes). Owned by the host. */
typedef struct KSConfigParameters {
    uint32_t reserved0;           /* 0: never read by the shell */
    char emulator_name[64];       /* 4: NUL-terminated UTF-8 */
    uint32_t framerate;           /* 68: frames per second, non-zero; written by KSSetFrameRate */
    char original_author[64];     /* 72 */
    char mac_author[64];          /* 136 */
    char version[128];            /* 200 */
    uint8_t requires_file;        /* 328: 1: the session starts with the first open file */
    const KSMenuItem *menuitems;  /* 336 */
    KSButton *buttons;            /* 344: the shell writes state and keyCode */
    const KSWebLink *weblinks;    /* 352 */
    const char *const *output_folders; /* 360: sub-folder per KSGetOutputPath type */
    KSPrefItem *prefs;            /* 368: the shell writes currentValue; may be null */
    KSPrefChangeFunc handle_prefchange; /* 376: optional */
    uint8_t uses_sound;           /* 384 */
    uint32_t frequency;           /* 388: Hz, non-zero with sound */
    uint8_t sample_bits;          /* 392: 8 or 16 */
    uint8_t stereo;               /* 393 */
    uint32_t initial_width;       /* 396: non-zero */
    uint32_t initial_height;      /* 400: non-zero */
    uint32_t file_type;           /* 404: written by KSSetProxyType */
    uint32_t file_creator;        /* 408 */
    KSOpenFunc handle_open;       /* 416: required */
    KSCommandFunc handle_command; /* 424 */
    KSFrameFunc handle_frame;     /* 432: required */
    KSCloseFunc handle_close;     /* 440: optional; also called when the window closes */
    KSStateFunc handle_freeze;    /* 448 */
    KSStateFunc handle_defrost;   /* 456 */
    KSMenuUpdateFunc handle_menuupdate; /* 464: required unless requires_file */
    KSFilterFunc handle_filter;   /* 472: optional */
    KSPanelFunc handle_panel;     /* 480: optional */
    uint8_t raw_keys;             /* 488: 1: keys reach the core only through the handlers */
    KSKeyFunc handle_keyup;       /* 496: optional */
    KSKeyFunc handle_keydown;     /* 504: optional */
    uint8_t reserved512;          /* 512: never read by the shell */
    uint8_t no_recent_picker;     /* 513 */
    uint8_t fixed_image_size;     /* 514 */
    uint8_t uses_mouse;           /* 515 */
} KSConfigParameters;

/* ---- Exports ---------------------------------------------------------------- */

/* First call. True only for version 12544; otherwise an alert explains and false. */
LUMIVEX_EXPORT bool LVHandshake(int32_t version, const char *version_text);
/* Builds the application from the record (kept by pointer). Without OpenGL 3.3,
   alerts and exits with status 1. Starts the session when requires_file is 0. */
LUMIVEX_EXPORT void KSInit(KSConfigParameters *config);
/* Runs the event loop; returns after Quit or quick quit. */
LUMIVEX_EXPORT void KSExecute(void);
/* Does nothing; call it after KSExecute for symmetry. */
LUMIVEX_EXPORT void KSTerm(void);
/* New frame rate: restarts the timer and the sound when it differs. */
LUMIVEX_EXPORT void KSSetFrameRate(uint32_t frames_per_second);
/* New back-buffer size; takes effect now with a window, else at session start.
   Do not call it from handle_frame with a buffer pointer you keep. */
LUMIVEX_EXPORT void KSSetVideoDimensions(uint32_t width, uint32_t height);
/* Re-applies the window's size and aspect rules; the arguments are not used. */
LUMIVEX_EXPORT void KSSetVideoDisplayDimensions(uint32_t width, uint32_t height);
/* Four checksums that network play compares with the peer's. */
LUMIVEX_EXPORT void KSSetHardwareEnvironCRCs(uint32_t crc0, uint32_t crc1, uint32_t crc2, uint32_t crc3);
/* Shows (or refreshes) a short on-screen message. The text is copied. */
LUMIVEX_EXPORT void KSDisplayPlacard(const char *message);
/* Fatal assertion: alert "Fatal Assertion Failure" with "expr\nfile, line N", exit 1.
   Returns only when expression is null. May be called from the blitting thread. */
LUMIVEX_EXPORT void KSAssert(const char *expression, const char *file, int32_t line);
/* Modal alert with an OK button; either text may be null. */
LUMIVEX_EXPORT void KSHeadsUpAlert(const char *title, const char *message);
/* The output folder for output_folders[type] (created), or with an extension a file
   in it named after the loaded file. The string stays valid until the next call. */
LUMIVEX_EXPORT const char *KSGetOutputPath(uint32_t type, const char *extension);
/* Mouse in emulated pixels (y from the top) and button; false without a window.
   Requires uses_mouse. */
LUMIVEX_EXPORT bool KSGetMouse(uint32_t *x, uint32_t *y, uint8_t *button);
/* Path for quick freeze and quick defrost; shorter than MAX_PATH_LENGTH. Copied. */
LUMIVEX_EXPORT void KSSetFreezePath(const char *path);
/* Stamps a file with the type code and the record's creator code (errors ignored). */
LUMIVEX_EXPORT void KSSetPathFileType(const char *path, uint32_t type);
/* Stores type in the record's file_type. */
LUMIVEX_EXPORT void KSSetProxyType(uint32_t type);

#if defined(__cplusplus)
} /* extern "C" */
#endif

/* Layout checks: the record is shared with separately built hosts. */
#if defined(__cplusplus)
#define LUMIVEX_STATIC_ASSERT(cond, msg) static_assert(cond, msg)
#else
#define LUMIVEX_STATIC_ASSERT(cond, msg) _Static_assert(cond, msg)
#endif
LUMIVEX_STATIC_ASSERT(sizeof(KSButton) == 32, "KSButton size");
LUMIVEX_STATIC_ASSERT(offsetof(KSButton, group) == 8, "KSButton.group");
LUMIVEX_STATIC_ASSERT(offsetof(KSButton, masterKeyCode) == 12, "KSButton.masterKeyCode");
LUMIVEX_STATIC_ASSERT(offsetof(KSButton, function) == 16, "KSButton.function");
LUMIVEX_STATIC_ASSERT(offsetof(KSButton, state) == 20, "KSButton.state");
LUMIVEX_STATIC_ASSERT(offsetof(KSButton, keyCode) == 28, "KSButton.keyCode");
LUMIVEX_STATIC_ASSERT(sizeof(KSMenuItem) == 24, "KSMenuItem size");
LUMIVEX_STATIC_ASSERT(offsetof(KSMenuItem, itemID) == 4, "KSMenuItem.itemID");
LUMIVEX_STATIC_ASSERT(offsetof(KSMenuItem, commandID) == 8, "KSMenuItem.commandID");
LUMIVEX_STATIC_ASSERT(offsetof(KSMenuItem, title) == 16, "KSMenuItem.title");
LUMIVEX_STATIC_ASSERT(sizeof(KSWebLink) == 16, "KSWebLink size");
LUMIVEX_STATIC_ASSERT(offsetof(KSWebLink, link) == 8, "KSWebLink.link");
LUMIVEX_STATIC_ASSERT(sizeof(KSPrefItem) == 32, "KSPrefItem size");
LUMIVEX_STATIC_ASSERT(offsetof(KSPrefItem, text) == 8, "KSPrefItem.text");
LUMIVEX_STATIC_ASSERT(offsetof(KSPrefItem, name) == 16, "KSPrefItem.name");
LUMIVEX_STATIC_ASSERT(offsetof(KSPrefItem, defaultValue) == 24, "KSPrefItem.defaultValue");
LUMIVEX_STATIC_ASSERT(offsetof(KSPrefItem, currentValue) == 28, "KSPrefItem.currentValue");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, emulator_name) == 4, "emulator_name");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, framerate) == 68, "framerate");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, original_author) == 72, "original_author");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, mac_author) == 136, "mac_author");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, version) == 200, "version");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, requires_file) == 328, "requires_file");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, menuitems) == 336, "menuitems");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, buttons) == 344, "buttons");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, weblinks) == 352, "weblinks");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, output_folders) == 360, "output_folders");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, prefs) == 368, "prefs");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_prefchange) == 376, "handle_prefchange");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, uses_sound) == 384, "uses_sound");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, frequency) == 388, "frequency");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, sample_bits) == 392, "sample_bits");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, stereo) == 393, "stereo");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, initial_width) == 396, "initial_width");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, initial_height) == 400, "initial_height");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, file_type) == 404, "file_type");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, file_creator) == 408, "file_creator");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_open) == 416, "handle_open");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_command) == 424, "handle_command");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_frame) == 432, "handle_frame");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_close) == 440, "handle_close");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_freeze) == 448, "handle_freeze");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_defrost) == 456, "handle_defrost");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_menuupdate) == 464, "handle_menuupdate");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_filter) == 472, "handle_filter");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_panel) == 480, "handle_panel");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, raw_keys) == 488, "raw_keys");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_keyup) == 496, "handle_keyup");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, handle_keydown) == 504, "handle_keydown");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, reserved512) == 512, "byte 512");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, no_recent_picker) == 513, "no_recent_picker");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, fixed_image_size) == 514, "fixed_image_size");
LUMIVEX_STATIC_ASSERT(offsetof(KSConfigParameters, uses_mouse) == 515, "uses_mouse");
LUMIVEX_STATIC_ASSERT(sizeof(KSConfigParameters) == 520, "KSConfigParameters size");

#endif /* LUMIVEX_LUMIVEX_H */
