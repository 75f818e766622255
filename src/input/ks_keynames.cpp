// The display name of every Mac virtual key code 0 to 127, as the input table shows it.
#include "input/ks_keyboard.h"

namespace
{

// clang-format off
// The one-character names, each followed by its terminator and laid end to end in
// key-code order: codes 0 to 9, 11 to 35 and 37 to 47. Every name is its own literal
// so that no escape runs into the character after it.
const char pShortNames[] = "A\0" "S\0" "D\0" "F\0" "H\0" "G\0" "Z\0" "X\0" "C\0" "V\0" // 0-9
                           "B\0" "Q\0" "W\0" "E\0" "R\0" "Y\0" "T\0" "1\0" "2\0" "3\0" // 11-20
                           "4\0" "6\0" "5\0" "=\0" "9\0" "7\0" "-\0" "8\0" "0\0" "]\0" // 21-30
                           "O\0" "U\0" "[\0" "I\0" "P\0"                               // 31-35
                           "L\0" "J\0" "'\0" "K\0" ";\0" "\\\0" ",\0" "/\0" "N\0" "M\0" // 37-46
                           ".";                                                        // 47

// Position of a one-character name inside pShortNames (codes 10 and 36 have long names).
constexpr int ShortIndex(int code) { return code < 10 ? code : (code < 36 ? code - 1 : code - 2); }

#define SHORT_NAME(code) (pShortNames + 2 * ShortIndex(code))

const char *const pKeyNames[MAX_KEYS] = {
    SHORT_NAME(0),      SHORT_NAME(1),      SHORT_NAME(2),      SHORT_NAME(3),
    SHORT_NAME(4),      SHORT_NAME(5),      SHORT_NAME(6),      SHORT_NAME(7),
    SHORT_NAME(8),      SHORT_NAME(9),      "Section",          SHORT_NAME(11),
    SHORT_NAME(12),     SHORT_NAME(13),     SHORT_NAME(14),     SHORT_NAME(15),
    SHORT_NAME(16),     SHORT_NAME(17),     SHORT_NAME(18),     SHORT_NAME(19),
    SHORT_NAME(20),     SHORT_NAME(21),     SHORT_NAME(22),     SHORT_NAME(23),
    SHORT_NAME(24),     SHORT_NAME(25),     SHORT_NAME(26),     SHORT_NAME(27),
    SHORT_NAME(28),     SHORT_NAME(29),     SHORT_NAME(30),     SHORT_NAME(31),
    SHORT_NAME(32),     SHORT_NAME(33),     SHORT_NAME(34),     SHORT_NAME(35),
    "Return",           SHORT_NAME(37),     SHORT_NAME(38),     SHORT_NAME(39),
    SHORT_NAME(40),     SHORT_NAME(41),     SHORT_NAME(42),     SHORT_NAME(43),
    SHORT_NAME(44),     SHORT_NAME(45),     SHORT_NAME(46),     SHORT_NAME(47),
    "Tab",              "Space",            "`",                "Delete",
    "0x34",             "Escape",           "Right Command",    "Command",
    "Shift",            "Caps Lock",        "Option",           "Control",
    "Right Shift",      "Right Option",     "Right Control",    "Function",
    "F17",              "Keypad .",         "0x42",             "Keypad *",
    "0x44",             "Keypad +",         "0x46",             "Keypad Clr",
    "Volume Up",        "Volume Down",      "Mute",             "Keypad /",
    "Keypad Enter",     "0x4D",             "Keypad -",         "F18",
    "F19",              "Keypad =",         "Keypad 0",         "Keypad 1",
    "Keypad 2",         "Keypad 3",         "Keypad 4",         "Keypad 5",
    "Keypad 6",         "Keypad 7",         "F20",              "Keypad 8",
    "Keypad 9",         "JIS Yen",          "JIS Underscore",   "JIS Keypad Comma",
    "F5",               "F6",               "F7",               "F3",
    "F8",               "F9",               "JIS Eisu",         "F11",
    "JIS Kana",         "F13",              "F16",              "F14",
    "0x6C",             "F10",              "0x6E",             "F12",
    "0x70",             "F15",              "Help",             "Home",
    "Page Up",          "Forward Delete",   "F4",               "End",
    "F2",               "Page Down",        "F1",               "Left Arrow",
    "Right Arrow",      "Down Arrow",       "Up Arrow",         "",
};

// clang-format on
#undef SHORT_NAME

} // namespace

const char *KSKeyName(uint32_t code)
{
    return code < MAX_KEYS ? pKeyNames[code] : "";
}
