// The physical-key table: Linux input event codes to Mac virtual key codes by position.
#include "input/ks_keytranslate.h"

#include "input/ks_keyboard.h"

// clang-format off
const KSScanCodeMapping kKSScanCodeMappings[] = {
    // Top row and the main block, left to right, top to bottom.
    {1, 53},    // Esc -> Escape
    {2, 18},    // 1
    {3, 19},    // 2
    {4, 20},    // 3
    {5, 21},    // 4
    {6, 23},    // 5
    {7, 22},    // 6
    {8, 26},    // 7
    {9, 28},    // 8
    {10, 25},   // 9
    {11, 29},   // 0
    {12, 27},   // -
    {13, 24},   // =
    {14, 51},   // Backspace -> Delete
    {15, 48},   // Tab
    {16, 12},   // Q
    {17, 13},   // W
    {18, 14},   // E
    {19, 15},   // R
    {20, 17},   // T
    {21, 16},   // Y
    {22, 32},   // U
    {23, 34},   // I
    {24, 31},   // O
    {25, 35},   // P
    {26, 33},   // [
    {27, 30},   // ]
    {28, 36},   // Enter -> Return
    {29, 59},   // Left Ctrl -> Control
    {30, 0},    // A
    {31, 1},    // S
    {32, 2},    // D
    {33, 3},    // F
    {34, 5},    // G
    {35, 4},    // H
    {36, 38},   // J
    {37, 40},   // K
    {38, 37},   // L
    {39, 41},   // ;
    {40, 39},   // '
    {41, 50},   // ` (left of 1)
    {42, 56},   // Left Shift -> Shift
    {43, 42},   // Backslash (also the ISO key beside Enter)
    {44, 6},    // Z
    {45, 7},    // X
    {46, 8},    // C
    {47, 9},    // V
    {48, 11},   // B
    {49, 45},   // N
    {50, 46},   // M
    {51, 43},   // ,
    {52, 47},   // .
    {53, 44},   // /
    {54, 56},   // Right Shift -> Shift
    {55, 67},   // Keypad *
    {56, 58},   // Left Alt -> Option
    {57, 49},   // Space
    {58, 57},   // Caps Lock
    // Function keys.
    {59, 122},  // F1
    {60, 120},  // F2
    {61, 99},   // F3
    {62, 118},  // F4
    {63, 96},   // F5
    {64, 97},   // F6
    {65, 98},   // F7
    {66, 100},  // F8
    {67, 101},  // F9
    {68, 109},  // F10
    {87, 103},  // F11
    {88, 111},  // F12
    {183, 105}, // F13
    {184, 107}, // F14
    {185, 113}, // F15
    {186, 106}, // F16
    {187, 64},  // F17
    {188, 79},  // F18
    {189, 80},  // F19
    {190, 90},  // F20
    // Keypad; Num Lock sits where the Mac keypad has Clear.
    {69, 71},   // Num Lock -> Keypad Clr
    {71, 89},   // Keypad 7
    {72, 91},   // Keypad 8
    {73, 92},   // Keypad 9
    {74, 78},   // Keypad -
    {75, 86},   // Keypad 4
    {76, 87},   // Keypad 5
    {77, 88},   // Keypad 6
    {78, 69},   // Keypad +
    {79, 83},   // Keypad 1
    {80, 84},   // Keypad 2
    {81, 85},   // Keypad 3
    {82, 82},   // Keypad 0
    {83, 65},   // Keypad .
    {96, 76},   // Keypad Enter
    {98, 75},   // Keypad /
    {117, 81},  // Keypad =
    {121, 95},  // Keypad , -> JIS Keypad Comma
    // The block above the arrows: Print Screen, Scroll Lock and Pause stand where the
    // Mac extended keyboard has F13, F14 and F15.
    {99, 105},  // Print Screen / SysRq -> F13
    {70, 107},  // Scroll Lock -> F14
    {119, 113}, // Pause -> F15
    // Editing block and arrows; Insert stands where the Mac keyboard has Help.
    {110, 114}, // Insert -> Help
    {102, 115}, // Home
    {104, 116}, // Page Up
    {111, 117}, // Delete -> Forward Delete
    {107, 119}, // End
    {109, 121}, // Page Down
    {103, 126}, // Up
    {105, 123}, // Left
    {106, 124}, // Right
    {108, 125}, // Down
    {138, 114}, // Help
    // Right-hand modifiers give the left-hand codes; Menu is the PC application key.
    {97, 59},   // Right Ctrl -> Control
    {100, 58},  // Right Alt / AltGr -> Option
    {125, 55},  // Left Super -> Command
    {126, 55},  // Right Super -> Command
    {127, 110}, // Menu (Compose) -> 0x6E
    // The ISO key between Left Shift and Z.
    {86, 10},   // 102nd key -> Section
    // Media keys that the Mac keyboard also has.
    {113, 74},  // Mute
    {114, 73},  // Volume Down
    {115, 72},  // Volume Up
    // JIS keys. Zenkaku/Hankaku stands where ANSI has `; Muhenkan and Henkan beside
    // the space bar where the Mac has Eisu and Kana; Apple keyboards report Eisu and
    // Kana as Hanja and Hangeul.
    {85, 50},   // Zenkaku/Hankaku -> `
    {89, 94},   // Ro -> JIS Underscore
    {90, 104},  // Katakana -> JIS Kana
    {91, 104},  // Hiragana -> JIS Kana
    {92, 104},  // Henkan -> JIS Kana
    {93, 104},  // Katakana/Hiragana -> JIS Kana
    {94, 102},  // Muhenkan -> JIS Eisu
    {95, 95},   // Keypad JP comma -> JIS Keypad Comma
    {122, 104}, // Hangeul (Apple Kana) -> JIS Kana
    {123, 102}, // Hanja (Apple Eisu) -> JIS Eisu
    {124, 93},  // Yen -> JIS Yen
};
// clang-format on

const size_t kKSScanCodeMappingCount = sizeof kKSScanCodeMappings / sizeof kKSScanCodeMappings[0];

namespace
{

// Direct lookup by evdev code, built once from the table above.
struct Lookup {
    static constexpr uint32_t kSize = 256;
    int8_t mac[kSize];
    Lookup()
    {
        for (int8_t &m : mac)
            m = -1;
        for (size_t i = 0; i < kKSScanCodeMappingCount; i++)
            if (kKSScanCodeMappings[i].evdevCode < kSize)
                mac[kKSScanCodeMappings[i].evdevCode] = (int8_t)kKSScanCodeMappings[i].macKeyCode;
    }
};

const Lookup &Table()
{
    static const Lookup table;
    return table;
}

} // namespace

int KSMacKeyCodeFromScanCode(uint32_t nativeScanCode)
{
    if (nativeScanCode < kKSNativeScanCodeOffset) return -1;
    const uint32_t evdev = nativeScanCode - kKSNativeScanCodeOffset;
    if (evdev >= Lookup::kSize) return -1;
    return Table().mac[evdev];
}

uint32_t KSModifierFlagForMacKeyCode(int macKeyCode)
{
    switch (macKeyCode) {
    case 55:
        return kModifierCommand;
    case 56:
        return kModifierShift;
    case 57:
        return kModifierCapsLock;
    case 58:
        return kModifierOption;
    case 59:
        return kModifierControl;
    default:
        return 0;
    }
}

bool KSModifierFlagTracker::keyEvent(uint32_t nativeScanCode, bool down, uint32_t *flags)
{
    const uint32_t flag = KSModifierFlagForMacKeyCode(KSMacKeyCodeFromScanCode(nativeScanCode));
    if (flag == 0 || nativeScanCode >= kTracked) return false;
    m_down[nativeScanCode] = down;
    if (flags) *flags = this->flags();
    return true;
}

uint32_t KSModifierFlagTracker::flags() const
{
    uint32_t result = 0;
    for (uint32_t code = 0; code < kTracked; code++)
        if (m_down[code]) result |= KSModifierFlagForMacKeyCode(KSMacKeyCodeFromScanCode(code));
    return result;
}

void KSModifierFlagTracker::clear()
{
    for (bool &d : m_down)
        d = false;
}
