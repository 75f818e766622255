// The keyboard state: key table, stored keys, modifiers, release-all, button update
// and the spelling of button preference names.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "input/ks_keyboard.h"
#include "input/ks_keytranslate.h"
#include "shell/ks_main.h"

namespace
{

struct KeyCall {
    bool down;
    uint32_t code;
    uint16_t character;
    bool operator==(const KeyCall &o) const { return down == o.down && code == o.code && character == o.character; }
};

std::vector<KeyCall> gCalls;

void RecordDown(uint32_t code, uint16_t character)
{
    gCalls.push_back({true, code, character});
}
void RecordUp(uint32_t code, uint16_t character)
{
    gCalls.push_back({false, code, character});
}

std::ostream &operator<<(std::ostream &os, const KeyCall &c)
{
    return os << (c.down ? "down(" : "up(") << c.code << ", " << c.character << ")";
}

class Keyboard : public ::testing::Test
{
  protected:
    KSConfigParameters config{};
    KSButton buttons[8]{};

    void SetUp() override
    {
        gCalls.clear();
        KSResetKeyboardState();
        memset(gCommandCountdown, 0, sizeof gCommandCountdown);
        config.buttons = buttons;
        gConfigParameters = &config;
    }

    void TearDown() override
    {
        KSResetKeyboardState();
        gConfigParameters = nullptr;
    }

    void withHandlers()
    {
        config.handle_keydown = RecordDown;
        config.handle_keyup = RecordUp;
    }

    void addButton(const char *title, int32_t keyCode, uint32_t function = KS_FUNCTION_INPUT)
    {
        int i = 0;
        while (buttons[i].title)
            i++;
        buttons[i].title = title;
        buttons[i].masterKeyCode = (uint32_t)keyCode;
        buttons[i].keyCode = keyCode;
        buttons[i].function = function;
    }

    int keysDown() const
    {
        int n = 0;
        for (uint8_t k : gKeyState)
            n += k != 0;
        return n;
    }

    // How many pairs are stored, seen through the key-up calls of release-all.
    size_t storedCount()
    {
        const size_t before = gCalls.size();
        KSReleaseAllKeys();
        return gCalls.size() - before;
    }
};

TEST_F(Keyboard, KeyDownSetsTheKeyStateAndKeyUpClearsItWithoutHandlers)
{
    KSKeyDown(0, 'a', false);
    EXPECT_EQ(gKeyState[0], 1);
    EXPECT_EQ(keysDown(), 1);
    KSKeyUp(0, 'a');
    EXPECT_EQ(gKeyState[0], 0);
    EXPECT_TRUE(gCalls.empty());
}

TEST_F(Keyboard, AutoRepeatKeyDownsChangeNothingAfterTheFirst)
{
    withHandlers();
    KSKeyDown(0, 'a', false);
    ASSERT_EQ(gCalls.size(), 1u);
    gKeyState[0] = 0; // a repeat must not set it again
    for (int i = 0; i < 10; i++)
        KSKeyDown(0, 'a', true);
    KSKeyDown(1, 's', true); // even a repeat of a key never seen is ignored
    EXPECT_EQ(gCalls.size(), 1u);
    EXPECT_EQ(keysDown(), 0);
    EXPECT_EQ(storedCount(), 1u);
}

TEST_F(Keyboard, AutoRepeatIsIgnoredWithoutHandlersToo)
{
    KSKeyDown(3, 'f', true);
    EXPECT_EQ(gKeyState[3], 0);
}

TEST_F(Keyboard, APressWhosePairIsAlreadyStoredIsIgnoredWhole)
{
    withHandlers();
    KSKeyDown(0, 'a', false);
    gKeyState[0] = 0;
    KSKeyDown(0, 'a', false); // the same (character, key code) pair
    EXPECT_EQ(gCalls.size(), 1u);
    EXPECT_EQ(gKeyState[0], 0) << "the key state is left alone too";
    EXPECT_EQ(storedCount(), 1u);
}

TEST_F(Keyboard, TheSameKeyWithAnotherCharacterIsStoredAgain)
{
    withHandlers();
    KSKeyDown(0, 'a', false);
    KSKeyDown(0, 'A', false);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 0, 'a'}, {true, 0, 'A'}}));
    EXPECT_EQ(storedCount(), 2u);
}

TEST_F(Keyboard, AReleaseWhoseCharacterChangedReportsTheStoredCharacterOnce)
{
    withHandlers();
    KSKeyDown(0, 'A', false); // pressed with Shift
    KSKeyUp(0, 'a');          // Shift let go first
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 0, 'A'}, {false, 0, 'A'}}));
    EXPECT_EQ(gKeyState[0], 0);
    EXPECT_EQ(storedCount(), 0u);
}

TEST_F(Keyboard, AMatchingReleaseReportsTheEventsCharacter)
{
    withHandlers();
    KSKeyDown(0, 'a', false);
    KSKeyDown(1, 's', false);
    KSKeyUp(0, 'a');
    EXPECT_EQ(gCalls.back(), (KeyCall{false, 0, 'a'}));
    EXPECT_EQ(gKeyState[0], 0);
    EXPECT_EQ(gKeyState[1], 1);
    EXPECT_EQ(storedCount(), 1u);
}

TEST_F(Keyboard, TheKeyCodeScanSkipsTheEntryThatMovesIntoAFreedSlot)
{
    withHandlers();
    KSKeyDown(0, 'x', false);
    KSKeyDown(0, 'y', false);
    KSKeyDown(0, 'z', false);
    gCalls.clear();
    KSKeyUp(0, 'q'); // no exact pair: the second scan removes x, skips y, removes z
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 0, 'z'}}));
    gCalls.clear();
    KSReleaseAllKeys();
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 0, 'y'}}));
}

TEST_F(Keyboard, AnUnmatchedKeyUpReleasesEveryStoredKeyAndZeroesTheTables)
{
    withHandlers();
    KSKeyDown(0, 'a', false);
    KSKeyDown(1, 's', false);
    KSKeyDown(2, 'd', false);
    gCommandCountdown[53] = 30;
    gGamepadButtonState[4] = 1;
    gCalls.clear();
    KSKeyUp(7, 'x');
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 0, 'a'}, {false, 1, 's'}, {false, 2, 'd'}}));
    EXPECT_EQ(keysDown(), 0);
    EXPECT_EQ(gCommandCountdown[53], 0);
    EXPECT_EQ(gGamepadButtonState[4], 0);
    EXPECT_EQ(storedCount(), 0u);
}

TEST_F(Keyboard, WithOnlyAKeyUpHandlerEveryReleaseReleasesAll)
{
    config.handle_keyup = RecordUp;
    KSKeyDown(0, 'a', false);
    KSKeyDown(1, 's', false);
    EXPECT_EQ(gKeyState[1], 1);
    KSKeyUp(0, 'a'); // nothing is stored without a key-down handler
    EXPECT_EQ(keysDown(), 0);
    EXPECT_TRUE(gCalls.empty());
}

TEST_F(Keyboard, KeyUpZeroesTheCommandCountdownOfItsKey)
{
    gCommandCountdown[96] = 30;
    gCommandCountdown[97] = 30;
    KSKeyDown(96, 0, false);
    KSKeyUp(96, 0);
    EXPECT_EQ(gCommandCountdown[96], 0);
    EXPECT_EQ(gCommandCountdown[97], 30);
}

TEST_F(Keyboard, SixtyFiveKeysAreStoredAndTheSixtySixthIsFatal)
{
    withHandlers();
    for (int i = 0; i < MAX_STORED_KEYS + 1; i++)
        KSKeyDown((uint16_t)i, (uint16_t)('!' + i), false);
    EXPECT_EQ(gCalls.size(), 65u);
    EXPECT_EXIT(KSKeyDown(100, '~', false), ::testing::ExitedWithCode(1),
                "stored_key_count <= MAX_STORED_KEYS\nks_keyboard.cpp, line");
    EXPECT_EQ(storedCount(), 65u);
}

TEST_F(Keyboard, AKeyCodeOutsideTheTableIsFatalOutsideRawKeys)
{
    EXPECT_EXIT(KSKeyDown(200, 0, false), ::testing::ExitedWithCode(1), "code < MAX_KEYS");
    EXPECT_EXIT(KSKeyUp(128, 0), ::testing::ExitedWithCode(1), "code < MAX_KEYS");
}

TEST_F(Keyboard, RawKeysModeLeavesTheKeyTableAloneAndCallsTheHandlers)
{
    withHandlers();
    config.raw_keys = 1;
    KSKeyDown(0, 'a', false);
    KSKeyDown(300, 'z', false); // no table is touched, so any code is fine
    KSKeyUp(0, 'a');
    KSKeyUp(300, 'z');
    EXPECT_EQ(keysDown(), 0);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 0, 'a'}, {true, 300, 'z'}, {false, 0, 'a'}, {false, 300, 'z'}}));
}

TEST_F(Keyboard, ModifiersSetTheKeyStateAndNeverCallTheHandlersOutsideRawKeys)
{
    withHandlers();
    KSFlagsChanged(kModifierShift | kModifierControl);
    EXPECT_EQ(gKeyState[56], 1);
    EXPECT_EQ(gKeyState[59], 1);
    EXPECT_TRUE(gCalls.empty());
    KSFlagsChanged(kModifierControl);
    EXPECT_EQ(gKeyState[56], 0);
    EXPECT_EQ(gKeyState[59], 1);
    KSKeyDown(0, 'a', false); // an ordinary key does call the handler
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 0, 'a'}}));
}

TEST_F(Keyboard, ModifiersReachTheHandlersInRawKeysInTheFixedOrder)
{
    withHandlers();
    config.raw_keys = 1;
    KSFlagsChanged(kModifierCommand | kModifierShift | kModifierOption | kModifierCapsLock | kModifierControl);
    EXPECT_EQ(gCalls,
              (std::vector<KeyCall>{{true, 55, 0}, {true, 56, 0}, {true, 58, 0}, {true, 57, 0}, {true, 59, 0}}));
    EXPECT_EQ(keysDown(), 0);
    gCalls.clear();
    KSFlagsChanged(kModifierShift);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 55, 0}, {false, 58, 0}, {false, 57, 0}, {false, 59, 0}}));
}

TEST_F(Keyboard, RawKeysWithoutBothHandlersDropsModifierEventsAndLeavesTheCounters)
{
    config.handle_keydown = RecordDown;
    config.raw_keys = 1;
    KSFlagsChanged(kModifierShift);
    EXPECT_TRUE(gCalls.empty());
    // Had the counter been set, the next event would only count down.
    config.raw_keys = 0;
    KSFlagsChanged(kModifierShift);
    EXPECT_EQ(gKeyState[56], 1);
}

TEST_F(Keyboard, AModifierHeldThroughThirtyFurtherEventsIsPressedAgain)
{
    withHandlers();
    config.raw_keys = 1;
    KSFlagsChanged(kModifierShift);
    for (int i = 0; i < 30; i++)
        KSFlagsChanged(kModifierShift);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 56, 0}})) << "nothing more during the thirty";
    gCalls.clear();
    KSFlagsChanged(kModifierShift);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{true, 56, 0}})) << "pressed again without a release";
    gCalls.clear();
    KSFlagsChanged(0);
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 56, 0}}));
}

TEST_F(Keyboard, AReleaseAfterTheCounterRanOutIsNotReported)
{
    KSFlagsChanged(kModifierOption);
    for (int i = 0; i < 30; i++)
        KSFlagsChanged(kModifierOption);
    EXPECT_EQ(gKeyState[58], 1);
    KSFlagsChanged(0);
    EXPECT_EQ(gKeyState[58], 1) << "the counter had run out, so the release passes unseen";
    KSReleaseAllKeys();
    EXPECT_EQ(gKeyState[58], 0);
}

TEST_F(Keyboard, RightShiftSetsShiftNeverRightShift)
{
    const int code = KSMacKeyCodeFromScanCode(54 + 8); // evdev KEY_RIGHTSHIFT
    ASSERT_EQ(code, 56);
    KSModifierFlagTracker tracker;
    uint32_t flags = 0;
    ASSERT_TRUE(tracker.keyEvent(54 + 8, true, &flags));
    KSFlagsChanged(flags);
    EXPECT_EQ(gKeyState[56], 1);
    EXPECT_EQ(gKeyState[60], 0);
    ASSERT_TRUE(tracker.keyEvent(54 + 8, false, &flags));
    KSFlagsChanged(flags);
    EXPECT_EQ(gKeyState[56], 0);
    for (int code : {54, 60, 61, 62, 63})
        EXPECT_EQ(gKeyState[code], 0) << code;
}

TEST_F(Keyboard, ReleaseAllZeroesEverythingReportsStoredPairsAndKeepsTheCounters)
{
    withHandlers();
    KSKeyDown(12, 'q', false);
    KSKeyDown(13, 'w', false);
    KSFlagsChanged(kModifierShift);
    gCommandCountdown[12] = 30;
    gGamepadButtonState[0] = 1;
    gCalls.clear();
    KSReleaseAllKeys();
    EXPECT_EQ(gCalls, (std::vector<KeyCall>{{false, 12, 'q'}, {false, 13, 'w'}}));
    EXPECT_EQ(keysDown(), 0);
    EXPECT_EQ(gCommandCountdown[12], 0);
    EXPECT_EQ(gGamepadButtonState[0], 0);
    // The Shift counter survived: the same flags again only count down.
    KSFlagsChanged(kModifierShift);
    EXPECT_EQ(gKeyState[56], 0);
    gCalls.clear();
    KSReleaseAllKeys();
    EXPECT_TRUE(gCalls.empty()) << "nothing stored any more";
}

TEST_F(Keyboard, ButtonsArePressedByTheirKeyOrTheirGamepadInput)
{
    addButton("Fire", 6);
    addButton("Jump", 7);
    addButton("Start", 36);
    KSKeyDown(6, 'z', false);
    gGamepadButtonState[1] = 1;
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 1);
    EXPECT_EQ(buttons[1].state, 1);
    EXPECT_EQ(buttons[2].state, 0);
    KSKeyUp(6, 'z');
    gGamepadButtonState[1] = 0;
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 0);
    EXPECT_EQ(buttons[1].state, 0);
}

TEST_F(Keyboard, AnUnassignedButtonIsPressedOnlyByItsGamepadInput)
{
    addButton("Fire", KS_KEY_UNASSIGNED);
    // No physical key translates to 127, so pressing every key leaves it up.
    for (uint32_t scan = 0; scan < 600; scan++) {
        const int code = KSMacKeyCodeFromScanCode(scan);
        if (code >= 0) KSKeyDown((uint16_t)code, 0, false);
    }
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 0);
    gGamepadButtonState[0] = 1;
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 1);
}

TEST_F(Keyboard, KeyCodesOutsideTheTableNeverPressAButton)
{
    addButton("Fire", 200);
    addButton("Jump", -5);
    memset(gKeyState, 1, sizeof gKeyState);
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 0);
    EXPECT_EQ(buttons[1].state, 0);
    gGamepadButtonState[1] = 1;
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[1].state, 1);
}

TEST_F(Keyboard, LosingFocusWithAKeyDownLeavesNoButtonPressed)
{
    withHandlers();
    addButton("Fire", 6);
    KSKeyDown(6, 'z', false);
    KSUpdateButtonStates();
    ASSERT_EQ(buttons[0].state, 1);
    KSReleaseAllKeys(); // the application resigned and became active again
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 0);
    EXPECT_EQ(gCalls.back(), (KeyCall{false, 6, 'z'}));
}

TEST_F(Keyboard, TheUpdateStopsAtTheButtonWithoutTitle)
{
    addButton("Fire", 6);
    buttons[2].title = "beyond the end";
    buttons[2].keyCode = 6;
    KSKeyDown(6, 0, false);
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 1);
    EXPECT_EQ(buttons[2].state, 0);
}

TEST_F(Keyboard, PreferenceNamesDropSpacesOrJoinControllerWordsWithColons)
{
    addButton("Fast Forward", 48, KS_FUNCTION_SPEED);
    addButton("Joypad 1 Up", 126, KS_FUNCTION_UP);
    addButton("Joypad 2 Fire B", 1, KS_FUNCTION_CONTROLLER_6);
    addButton("Insert Coin", 8, KS_FUNCTION_INPUT);
    addButton("Quick Quit", 53, KS_FUNCTION_QUICK_QUIT);
    EXPECT_STREQ(KSButtonPreferenceName(0), "FastForward");
    EXPECT_STREQ(KSButtonPreferenceName(1), "Joypad::1::Up");
    EXPECT_STREQ(KSButtonPreferenceName(2), "Joypad::2::Fire::B");
    EXPECT_STREQ(KSButtonPreferenceName(3), "InsertCoin");
    EXPECT_STREQ(KSButtonPreferenceName(4), "QuickQuit");
}

TEST_F(Keyboard, PreferenceNamesAreCachedForTheRun)
{
    addButton("Joypad 1 Up", 126, KS_FUNCTION_UP);
    const char *first = KSButtonPreferenceName(0);
    buttons[0].title = "Something Else";
    EXPECT_EQ(KSButtonPreferenceName(0), first);
    EXPECT_STREQ(KSButtonPreferenceName(0), "Joypad::1::Up");
    KSResetKeyboardState();
    EXPECT_STREQ(KSButtonPreferenceName(0), "Something::Else");
}

TEST_F(Keyboard, APreferenceNameBeyondTheLimitIsFatal)
{
    EXPECT_EXIT(KSButtonPreferenceName(MAX_HID_INPUTS), ::testing::ExitedWithCode(1), "which < MAX_HID_INPUTS");
}

TEST_F(Keyboard, APreferenceNamePastTheLastButtonIsEmpty)
{
    addButton("Fire", 6);
    EXPECT_STREQ(KSButtonPreferenceName(3), "");
}

// ---- Key names ----------------------------------------------------------------

TEST(KeyNames, EveryCodeHasItsName)
{
    const char *expected[MAX_KEYS] = {"A",
                                      "S",
                                      "D",
                                      "F",
                                      "H",
                                      "G",
                                      "Z",
                                      "X",
                                      "C",
                                      "V",
                                      "Section",
                                      "B",
                                      "Q",
                                      "W",
                                      "E",
                                      "R",
                                      "Y",
                                      "T",
                                      "1",
                                      "2",
                                      "3",
                                      "4",
                                      "6",
                                      "5",
                                      "=",
                                      "9",
                                      "7",
                                      "-",
                                      "8",
                                      "0",
                                      "]",
                                      "O",
                                      "U",
                                      "[",
                                      "I",
                                      "P",
                                      "Return",
                                      "L",
                                      "J",
                                      "'",
                                      "K",
                                      ";",
                                      "\\",
                                      ",",
                                      "/",
                                      "N",
                                      "M",
                                      ".",
                                      "Tab",
                                      "Space",
                                      "`",
                                      "Delete",
                                      "0x34",
                                      "Escape",
                                      "Right Command",
                                      "Command",
                                      "Shift",
                                      "Caps Lock",
                                      "Option",
                                      "Control",
                                      "Right Shift",
                                      "Right Option",
                                      "Right Control",
                                      "Function",
                                      "F17",
                                      "Keypad .",
                                      "0x42",
                                      "Keypad *",
                                      "0x44",
                                      "Keypad +",
                                      "0x46",
                                      "Keypad Clr",
                                      "Volume Up",
                                      "Volume Down",
                                      "Mute",
                                      "Keypad /",
                                      "Keypad Enter",
                                      "0x4D",
                                      "Keypad -",
                                      "F18",
                                      "F19",
                                      "Keypad =",
                                      "Keypad 0",
                                      "Keypad 1",
                                      "Keypad 2",
                                      "Keypad 3",
                                      "Keypad 4",
                                      "Keypad 5",
                                      "Keypad 6",
                                      "Keypad 7",
                                      "F20",
                                      "Keypad 8",
                                      "Keypad 9",
                                      "JIS Yen",
                                      "JIS Underscore",
                                      "JIS Keypad Comma",
                                      "F5",
                                      "F6",
                                      "F7",
                                      "F3",
                                      "F8",
                                      "F9",
                                      "JIS Eisu",
                                      "F11",
                                      "JIS Kana",
                                      "F13",
                                      "F16",
                                      "F14",
                                      "0x6C",
                                      "F10",
                                      "0x6E",
                                      "F12",
                                      "0x70",
                                      "F15",
                                      "Help",
                                      "Home",
                                      "Page Up",
                                      "Forward Delete",
                                      "F4",
                                      "End",
                                      "F2",
                                      "Page Down",
                                      "F1",
                                      "Left Arrow",
                                      "Right Arrow",
                                      "Down Arrow",
                                      "Up Arrow",
                                      ""};
    for (uint32_t code = 0; code < MAX_KEYS; code++) {
        ASSERT_NE(KSKeyName(code), nullptr) << code;
        EXPECT_STREQ(KSKeyName(code), expected[code]) << code;
    }
}

TEST(KeyNames, BackslashIsOneCharacterAndHexNamesShowTheirOwnCode)
{
    EXPECT_EQ(strlen(KSKeyName(42)), 1u);
    EXPECT_EQ(KSKeyName(42)[0], '\\');
    for (uint32_t code : {52u, 66u, 68u, 70u, 77u, 108u, 110u, 112u}) {
        char text[8];
        snprintf(text, sizeof text, "0x%02X", code);
        EXPECT_STREQ(KSKeyName(code), text);
    }
}

TEST(KeyNames, OneCharacterNamesLieEndToEnd)
{
    const std::pair<uint32_t, uint32_t> runs[] = {{0, 9}, {11, 35}, {37, 47}};
    for (const auto &run : runs) {
        for (uint32_t code = run.first; code < run.second; code++) {
            EXPECT_EQ(strlen(KSKeyName(code)), 1u) << code;
            EXPECT_EQ(KSKeyName(code + 1), KSKeyName(code) + 2) << code;
        }
    }
}

TEST(KeyNames, UnassignedAndOutOfRangeCodesAreEmpty)
{
    EXPECT_STREQ(KSKeyName(KS_KEY_UNASSIGNED), "");
    EXPECT_STREQ(KSKeyName(128), "");
    EXPECT_STREQ(KSKeyName(0xFFFFFFFFu), "");
}

} // namespace
