// The physical-key table: Linux key positions to the Mac key codes of the same place.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "input/ks_keyboard.h"
#include "input/ks_keytranslate.h"

namespace
{

// Native scan code of a Linux input event code under X11 and Wayland.
uint32_t Scan(uint32_t evdev)
{
    return evdev + kKSNativeScanCodeOffset;
}

TEST(KeyTranslate, LettersAndDigitsLandOnTheKeyOfTheSameName)
{
    // Linux codes of the QWERTY rows, with the name the Mac key code of that place has.
    const struct {
        uint32_t evdev;
        const char *name;
    } keys[] = {
        {16, "Q"},   {17, "W"},      {18, "E"},     {19, "R"},         {20, "T"}, {21, "Y"},     {22, "U"},
        {23, "I"},   {24, "O"},      {25, "P"},     {26, "["},         {27, "]"}, {30, "A"},     {31, "S"},
        {32, "D"},   {33, "F"},      {34, "G"},     {35, "H"},         {36, "J"}, {37, "K"},     {38, "L"},
        {39, ";"},   {40, "'"},      {43, "\\"},    {44, "Z"},         {45, "X"}, {46, "C"},     {47, "V"},
        {48, "B"},   {49, "N"},      {50, "M"},     {51, ","},         {52, "."}, {53, "/"},     {2, "1"},
        {3, "2"},    {4, "3"},       {5, "4"},      {6, "5"},          {7, "6"},  {8, "7"},      {9, "8"},
        {10, "9"},   {11, "0"},      {12, "-"},     {13, "="},         {41, "`"}, {1, "Escape"}, {14, "Delete"},
        {15, "Tab"}, {28, "Return"}, {57, "Space"}, {58, "Caps Lock"},
    };
    for (const auto &key : keys) {
        const int code = KSMacKeyCodeFromScanCode(Scan(key.evdev));
        ASSERT_GE(code, 0) << key.name;
        EXPECT_STREQ(KSKeyName((uint32_t)code), key.name) << "evdev " << key.evdev;
    }
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(30)), 0);  // A
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(16)), 12); // Q
}

TEST(KeyTranslate, BothModifiersOfAPairGiveTheLeftHandCode)
{
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(42)), 56);  // Left Shift
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(54)), 56);  // Right Shift
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(29)), 59);  // Left Ctrl
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(97)), 59);  // Right Ctrl
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(56)), 58);  // Left Alt
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(100)), 58); // Right Alt / AltGr
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(125)), 55); // Left Super
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(126)), 55); // Right Super
    for (int never : {54, 60, 61, 62, 63})
        for (size_t i = 0; i < kKSScanCodeMappingCount; i++)
            EXPECT_NE(kKSScanCodeMappings[i].macKeyCode, never);
}

TEST(KeyTranslate, FunctionKeysOneToTwenty)
{
    const char *names[] = {"F1",  "F2",  "F3",  "F4",  "F5",  "F6",  "F7",  "F8",  "F9",  "F10",
                           "F11", "F12", "F13", "F14", "F15", "F16", "F17", "F18", "F19", "F20"};
    const uint32_t evdev[] = {59, 60, 61, 62, 63, 64, 65, 66, 67, 68, 87, 88, 183, 184, 185, 186, 187, 188, 189, 190};
    for (int i = 0; i < 20; i++) {
        const int code = KSMacKeyCodeFromScanCode(Scan(evdev[i]));
        ASSERT_GE(code, 0) << names[i];
        EXPECT_STREQ(KSKeyName((uint32_t)code), names[i]);
    }
}

TEST(KeyTranslate, KeypadArrowsAndEditingBlock)
{
    const struct {
        uint32_t evdev;
        const char *name;
    } keys[] = {
        {82, "Keypad 0"},     {79, "Keypad 1"},        {80, "Keypad 2"},     {81, "Keypad 3"},   {75, "Keypad 4"},
        {76, "Keypad 5"},     {77, "Keypad 6"},        {71, "Keypad 7"},     {72, "Keypad 8"},   {73, "Keypad 9"},
        {83, "Keypad ."},     {55, "Keypad *"},        {78, "Keypad +"},     {74, "Keypad -"},   {98, "Keypad /"},
        {96, "Keypad Enter"}, {117, "Keypad ="},       {69, "Keypad Clr"},   {103, "Up Arrow"},  {108, "Down Arrow"},
        {105, "Left Arrow"},  {106, "Right Arrow"},    {102, "Home"},        {107, "End"},       {104, "Page Up"},
        {109, "Page Down"},   {111, "Forward Delete"}, {110, "Help"},        {99, "F13"},        {70, "F14"},
        {119, "F15"},         {113, "Mute"},           {114, "Volume Down"}, {115, "Volume Up"},
    };
    for (const auto &key : keys) {
        const int code = KSMacKeyCodeFromScanCode(Scan(key.evdev));
        ASSERT_GE(code, 0) << key.name;
        EXPECT_STREQ(KSKeyName((uint32_t)code), key.name) << "evdev " << key.evdev;
    }
}

TEST(KeyTranslate, JisKeysAndTheIsoKey)
{
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(124))), "JIS Yen");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(89))), "JIS Underscore");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(95))), "JIS Keypad Comma");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(94))), "JIS Eisu");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(92))), "JIS Kana");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(123))), "JIS Eisu");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(122))), "JIS Kana");
    EXPECT_STREQ(KSKeyName((uint32_t)KSMacKeyCodeFromScanCode(Scan(86))), "Section");
}

TEST(KeyTranslate, EveryKeyOfAPcKeyboardIsKnown)
{
    // The 105 keys of an ISO PC keyboard, by Linux code.
    std::set<uint32_t> keys;
    for (uint32_t k = 1; k <= 83; k++)
        keys.insert(k); // Esc through Keypad .
    for (uint32_t k : {86u,  87u,  88u,  96u,  97u,  98u,  99u,  100u, 102u, 103u, 104u,
                       105u, 106u, 107u, 108u, 109u, 110u, 111u, 119u, 125u, 126u, 127u})
        keys.insert(k);
    EXPECT_EQ(keys.size(), 105u);
    for (uint32_t k : keys)
        EXPECT_GE(KSMacKeyCodeFromScanCode(Scan(k)), 0) << "evdev " << k;
}

TEST(KeyTranslate, UnknownKeysGiveMinusOne)
{
    EXPECT_EQ(KSMacKeyCodeFromScanCode(0), -1); // synthetic keys carry no scan code
    EXPECT_EQ(KSMacKeyCodeFromScanCode(7), -1);
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(84)), -1);  // no key has this code
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(116)), -1); // Power
    EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(500)), -1);
    EXPECT_EQ(KSMacKeyCodeFromScanCode(0xFFFFFFFFu), -1);
}

TEST(KeyTranslate, TheTableIsWellFormed)
{
    std::set<uint16_t> seen;
    for (size_t i = 0; i < kKSScanCodeMappingCount; i++) {
        const KSScanCodeMapping &m = kKSScanCodeMappings[i];
        EXPECT_TRUE(seen.insert(m.evdevCode).second) << "evdev " << m.evdevCode << " twice";
        EXPECT_LT(m.macKeyCode, KS_KEY_UNASSIGNED) << "evdev " << m.evdevCode;
        EXPECT_STRNE(KSKeyName(m.macKeyCode), "") << "evdev " << m.evdevCode;
        EXPECT_EQ(KSMacKeyCodeFromScanCode(Scan(m.evdevCode)), m.macKeyCode);
    }
}

TEST(ModifierTracker, FlagsFollowThePhysicalKeysLeftAndRightApart)
{
    KSModifierFlagTracker tracker;
    uint32_t flags = 0xDEAD;
    EXPECT_FALSE(tracker.keyEvent(Scan(30), true, &flags)); // A is no modifier
    EXPECT_EQ(flags, 0xDEADu);
    EXPECT_TRUE(tracker.keyEvent(Scan(42), true, &flags));
    EXPECT_EQ(flags, kModifierShift);
    EXPECT_TRUE(tracker.keyEvent(Scan(54), true, &flags));
    EXPECT_EQ(flags, kModifierShift);
    EXPECT_TRUE(tracker.keyEvent(Scan(42), false, &flags));
    EXPECT_EQ(flags, kModifierShift) << "Right Shift is still down";
    EXPECT_TRUE(tracker.keyEvent(Scan(97), true, &flags));
    EXPECT_EQ(flags, kModifierShift | kModifierControl);
    EXPECT_TRUE(tracker.keyEvent(Scan(54), false, &flags));
    EXPECT_TRUE(tracker.keyEvent(Scan(125), true, &flags));
    EXPECT_TRUE(tracker.keyEvent(Scan(100), true, &flags));
    EXPECT_TRUE(tracker.keyEvent(Scan(58), true, &flags));
    EXPECT_EQ(flags, kModifierControl | kModifierCommand | kModifierOption | kModifierCapsLock);
    tracker.clear();
    EXPECT_EQ(tracker.flags(), 0u);
}

TEST(ModifierTracker, FlagOfEachModifierCode)
{
    EXPECT_EQ(KSModifierFlagForMacKeyCode(55), kModifierCommand);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(56), kModifierShift);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(57), kModifierCapsLock);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(58), kModifierOption);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(59), kModifierControl);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(0), 0u);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(-1), 0u);
    EXPECT_EQ(KSModifierFlagForMacKeyCode(60), 0u);
}

} // namespace
