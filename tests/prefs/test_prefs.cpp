// Loading the preferences: registered defaults, the emulator's own items, the button
// key codes, hand-edited and broken settings files, and bindings across a restart.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <cstring>
#include <string>
#include <vector>

#include "blitters/ks_blitters.h"
#include "input/ks_keyboard.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"

namespace
{

class Prefs : public ::testing::Test
{
  public: // the callbacks of the record reach the fixture through `current`
    QTemporaryDir dir;
    std::string path;
    KSConfigParameters config{};
    KSButton buttons[8]{};
    KSPrefItem prefs[10]{};
    static std::vector<std::string> events;
    static Prefs *current;

    void SetUp() override
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        current = this;
        events.clear();
        ASSERT_TRUE(dir.isValid());
        path = dir.filePath("settings.ini").toStdString();
        KSPrefsOpenFile(path);
        strcpy(config.emulator_name, "Prefs Test");
        config.uses_sound = 1;
        config.buttons = buttons;
        config.prefs = prefs;
        prefs[0].type = KS_PREF_END;
        gConfigParameters = &config;
    }

    void TearDown() override
    {
        KSPrefsClose();
        KSResetKeyboardState();
        KSSetPrefsWindowHooks(nullptr, nullptr);
        gConfigParameters = nullptr;
        current = nullptr;
    }

    void addButton(const char *title, uint32_t masterKeyCode, uint32_t function = KS_FUNCTION_INPUT)
    {
        int i = 0;
        while (buttons[i].title)
            i++;
        buttons[i].title = title;
        buttons[i].masterKeyCode = masterKeyCode;
        buttons[i].keyCode = 99; // whatever was there before loading
        buttons[i].function = function;
    }

    void addPref(int32_t type, const char *name, int32_t defaultValue)
    {
        int i = 0;
        while (prefs[i].type != KS_PREF_END)
            i++;
        prefs[i] = {type, "text", name, defaultValue, -7};
        prefs[i + 1].type = KS_PREF_END;
    }

    // The program starts again: a new store object on the same file, nothing cached.
    void restart()
    {
        KSPrefsClose();
        KSResetKeyboardState();
        for (KSButton &b : buttons)
            if (b.title) b.keyCode = 99;
        KSPrefsOpenFile(path);
    }

    // A settings file written by hand (or by something else), then read afresh.
    void writeFile(const std::string &text)
    {
        KSPrefsClose();
        QFile file(QString::fromStdString(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text.data(), (qint64)text.size());
        file.close();
        KSPrefsOpenFile(path);
    }

    QStringList keysInFile()
    {
        KSPrefSync();
        QSettings file(QString::fromStdString(path), QSettings::IniFormat);
        return file.allKeys();
    }
};

std::vector<std::string> Prefs::events;
Prefs *Prefs::current;

TEST_F(Prefs, AFirstLaunchYieldsTheRegisteredDefaults)
{
    addButton("Fire", 6);
    addButton("Quick Quit", 53, KS_FUNCTION_QUICK_QUIT);
    KSLoadPreferences();

    EXPECT_TRUE(KSPrefBool(kPrefBilinearFiltering));
    EXPECT_TRUE(KSPrefBool(kPrefVBLSync));
    EXPECT_FALSE(KSPrefBool(kPrefCurvature));
    EXPECT_EQ(KSPrefInt(kPrefAspectRatio), 0);
    EXPECT_TRUE(KSPrefBool(kPrefDisplayRecent));
    EXPECT_FALSE(KSPrefBool(kPrefRigidResizing));
    EXPECT_TRUE(KSPrefBool(kPrefOpenAtStart));
    EXPECT_TRUE(KSPrefBool(kPrefDisplayPlacards));
    EXPECT_FALSE(KSPrefBool(kPrefDisplayFrameRate));
    EXPECT_EQ(KSPrefInt(kPrefBlitterSize), 1);
    EXPECT_EQ(KSPrefString(kPrefBlitterType), "Plain");
    EXPECT_TRUE(KSPrefBool(kPrefLimitSpeed));
    EXPECT_TRUE(KSPrefBool(kPrefPauseInBackground));
    EXPECT_TRUE(KSPrefBool(kPrefSoundEnabled));
    for (int slot = 0; slot < 9; slot++) {
        EXPECT_EQ(KSPrefString(KSRecentPrefKey(kPrefRecentFilepath, slot).c_str()), "");
        EXPECT_EQ(KSPrefString(KSRecentPrefKey(kPrefRecentScreenshot, slot).c_str()), "");
    }
    EXPECT_EQ(KSRecentPrefKey(kPrefRecentFilepath, 0), "KS::Recent::Filepath0");
    EXPECT_EQ(KSRecentPrefKey(kPrefRecentScreenshot, 8), "KS::Recent::Screenshot8");
    EXPECT_EQ(buttons[0].keyCode, 6);
    EXPECT_EQ(buttons[1].keyCode, 53);
    EXPECT_EQ(KSPrefInt("KS::Input::QuickQuit::KeyCode"), 53);
}

TEST_F(Prefs, RegisteredDefaultsAreNeverWrittenToTheFile)
{
    addButton("Fire", 6);
    addPref(KS_PREF_CHECKBOX, "Emu Option", 1);
    KSLoadPreferences();
    EXPECT_TRUE(keysInFile().isEmpty()) << keysInFile().join(",").toStdString();
    EXPECT_FALSE(KSPrefExists(kPrefBlitterType));

    // A write goes straight to the store, and is read back at once.
    KSPrefSetBool(kPrefDisplayFrameRate, true);
    EXPECT_TRUE(KSPrefBool(kPrefDisplayFrameRate));
    EXPECT_EQ(keysInFile(), QStringList{kPrefDisplayFrameRate});
}

TEST_F(Prefs, AMachineWithoutSoundReadsTheSoundSettingAsNo)
{
    config.uses_sound = 0;
    KSLoadPreferences();
    EXPECT_FALSE(KSPrefBool(kPrefSoundEnabled));
    EXPECT_FALSE(KSPrefExists(kPrefSoundEnabled));
    KSPrefSetBool(kPrefSoundEnabled, true); // the user turns sound on
    EXPECT_TRUE(KSPrefBool(kPrefSoundEnabled));
}

TEST_F(Prefs, TheEmulatorsItemsAreLoadedIntoTheirCurrentValues)
{
    addPref(KS_PREF_HEADING, nullptr, 0);
    addPref(KS_PREF_CHECKBOX, "Emu Sprite Limit", 1);
    addPref(KS_PREF_NOTE, nullptr, 0);
    addPref(KS_PREF_POPUP, "Emu Region", 3);
    addPref(KS_PREF_SPACER, nullptr, 0);
    addPref(KS_PREF_CHECKBOX, "Emu Turbo", 0);
    addPref(KS_PREF_SMALL_SPACER, nullptr, 0);
    addPref(KS_PREF_POPUP, "Emu Palette", 1);
    KSPrefSetInt("Emu Turbo", 1);   // stored by an earlier run
    KSPrefSetInt("Emu Palette", 4); // under the item's own name, verbatim
    KSLoadPreferences();
    EXPECT_EQ(prefs[0].currentValue, -7) << "headings have no value";
    EXPECT_EQ(prefs[1].currentValue, 1);
    EXPECT_EQ(prefs[3].currentValue, 3);
    EXPECT_EQ(prefs[4].currentValue, -7);
    EXPECT_EQ(prefs[5].currentValue, 1);
    EXPECT_EQ(prefs[7].currentValue, 4);
    EXPECT_EQ(KSPrefInt("Emu Region"), 3);
}

TEST_F(Prefs, TheEmulatorHearsOfItsLoadedSettingsOnce)
{
    addButton("Fire", 6);
    addPref(KS_PREF_CHECKBOX, "Emu Turbo", 1);
    config.handle_prefchange = [] {
        events.push_back("prefchange " + std::to_string(current->prefs[0].currentValue) + " " +
                         std::to_string(current->buttons[0].keyCode));
    };
    KSSetPrefsWindowHooks([] { events.push_back("release " + std::to_string(current->prefs[0].currentValue)); },
                          [] { events.push_back("forget"); });
    KSLoadPreferences();
    EXPECT_EQ(events, (std::vector<std::string>{"release -7", "prefchange 1 6", "forget"}));
}

TEST_F(Prefs, LoadingNeedsNoPrefsArrayAndKeepsTheEmulatorsName)
{
    config.prefs = nullptr;
    addButton("Fire", 6);
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 6);
    EXPECT_EQ(KSPrefsEmulatorName(), "Prefs Test");
}

TEST_F(Prefs, LoadingEmptiesTheBlitterRegistry)
{
    RegisterBlitter("Plain", 1);
    RegisterBlitter("Plain", 2);
    ASSERT_GT(gBlitterCount, 0u);
    KSLoadPreferences();
    EXPECT_EQ(gBlitterCount, 0u);
}

TEST_F(Prefs, APopUpWithDefaultZeroStopsTheProgram)
{
    addPref(KS_PREF_POPUP, "Emu Region", 0);
    EXPECT_EXIT(KSLoadPreferences(), ::testing::ExitedWithCode(1),
                "gConfigParameters->prefs\\[i\\]\\.defaultValue >= 1\nks_prefs\\.cpp, line");
}

TEST_F(Prefs, ACheckboxWithDefaultTwoStopsTheProgram)
{
    addPref(KS_PREF_CHECKBOX, "Emu Turbo", 2);
    EXPECT_EXIT(KSLoadPreferences(), ::testing::ExitedWithCode(1),
                "\\(gConfigParameters->prefs\\[i\\]\\.defaultValue == 0\\) \\|\\| "
                "\\(gConfigParameters->prefs\\[i\\]\\.defaultValue == 1\\)");
}

TEST_F(Prefs, AnUnknownItemTypeStopsTheProgram)
{
    addPref(KS_PREF_CHECKBOX, "Emu Turbo", 1);
    addPref(9, "Emu Strange", 1);
    EXPECT_EXIT(KSLoadPreferences(), ::testing::ExitedWithCode(1), "Fatal Assertion Failure\n0\nks_prefs\\.cpp, line");
}

TEST_F(Prefs, AMasterKeyCodeAbove128StopsTheProgramAnd128IsAdmitted)
{
    addButton("Fire", 128);
    KSLoadPreferences();
    EXPECT_EQ(KSPrefInt("KS::Input::Fire::KeyCode"), 128);
    EXPECT_EQ(buttons[0].keyCode, KS_KEY_UNASSIGNED) << "128 names no key";

    addButton("Jump", 129);
    EXPECT_EXIT(KSLoadPreferences(), ::testing::ExitedWithCode(1),
                "gConfigParameters->buttons\\[i\\]\\.masterKeyCode <= MAX_KEYS");
}

TEST_F(Prefs, AButtonTitledWithSpacesOutsideTheControllerRolesRunsItsWordsTogether)
{
    addButton("Fast Forward", 48, KS_FUNCTION_SPEED);
    EXPECT_EQ(KSButtonPrefKey(0, kPrefKeyCodeSuffix), "KS::Input::FastForward::KeyCode");
    KSPrefSetInt("KS::Input::FastForward::KeyCode", 17);
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 17);
}

TEST_F(Prefs, AControllerButtonKeepsItsWordsApartWithColons)
{
    addButton("Joypad 1 Up", 126, KS_FUNCTION_UP);
    EXPECT_EQ(KSButtonPrefKey(0, kPrefKeyCodeSuffix), "KS::Input::Joypad::1::Up::KeyCode");
    EXPECT_EQ(KSButtonPrefKey(0, "::HID::VendorID"), "KS::Input::Joypad::1::Up::HID::VendorID");
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 126);
    EXPECT_EQ(KSPrefInt("KS::Input::Joypad::1::Up::KeyCode"), 126);
}

TEST_F(Prefs, BindingsSurviveARestart)
{
    addButton("Fire", 6);
    addButton("Jump", 7);
    KSLoadPreferences();
    ASSERT_EQ(buttons[0].keyCode, 6);
    // The input table rebinds Fire to W.
    KSPrefSetInt(KSButtonPrefKey(0, kPrefKeyCodeSuffix).c_str(), 13);
    KSPrefSync();

    restart();
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 13);
    EXPECT_EQ(buttons[1].keyCode, 7);

    // The button answers to the new key and no longer to the old one.
    KSKeyDown(6, 'z', false);
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 0);
    KSKeyDown(13, 'w', false);
    KSUpdateButtonStates();
    EXPECT_EQ(buttons[0].state, 1);
    KSReleaseAllKeys();
}

// ---- Settings files edited by hand, or broken -----------------------------------

class PrefsBadInput : public Prefs
{
  protected:
    void SetUp() override
    {
        Prefs::SetUp();
        addButton("Fire", 6);
        addButton("Jump", 7);
        addButton("Joypad 1 Up", 126, KS_FUNCTION_UP);
        addButton("Start", 36);
        addPref(KS_PREF_CHECKBOX, "Emu Turbo", 1);
        addPref(KS_PREF_POPUP, "Emu Region", 2);
    }

    // Whatever the file held, nothing reads or writes outside the tables.
    void pressEverything()
    {
        // Every real key: 127 names none and no physical key gives it.
        for (uint16_t code = 0; code < KS_KEY_UNASSIGNED; code++)
            KSKeyDown(code, 0, false);
        KSUpdateButtonStates();
        for (const KSButton &b : buttons)
            if (b.title) EXPECT_TRUE(b.keyCode >= 0 && b.keyCode < MAX_KEYS) << b.title;
        KSReleaseAllKeys();
    }
};

TEST_F(PrefsBadInput, KeyCodesOutsideTheTableLeaveTheButtonUnassigned)
{
    writeFile("[General]\n"
              "KS%3A%3AInput%3A%3AFire%3A%3AKeyCode=200\n"
              "KS%3A%3AInput%3A%3AJump%3A%3AKeyCode=-5\n"
              "KS%3A%3AInput%3A%3AJoypad%3A%3A1%3A%3AUp%3A%3AKeyCode=128\n"
              "KS%3A%3AInput%3A%3AStart%3A%3AKeyCode=12\n");
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, KS_KEY_UNASSIGNED);
    EXPECT_EQ(buttons[1].keyCode, KS_KEY_UNASSIGNED);
    EXPECT_EQ(buttons[2].keyCode, KS_KEY_UNASSIGNED);
    EXPECT_EQ(buttons[3].keyCode, 12) << "a good value next to bad ones still counts";
    pressEverything();
    EXPECT_EQ(buttons[0].state, 0) << "an unassigned button is not pressed by any key";
}

TEST_F(PrefsBadInput, TextWhereANumberBelongsLeavesTheDefault)
{
    writeFile("[General]\n"
              "KS::Input::Fire::KeyCode=abc\n"
              "KS::Input::Jump::KeyCode=12abc\n"
              "KS::Input::Joypad::1::Up::KeyCode=\"1, 2\"\n"
              "KS::Input::Start::KeyCode=99999999999999999999999\n"
              "Emu%20Turbo=maybe\n"
              "Emu%20Region=@ByteArray(\\0\\x1)\n"
              "KS%3A%3AVideo%3A%3ABlitterSize=big\n"
              "KS%3A%3AVideo%3A%3ABilinearFiltering=perhaps\n");
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 6);
    EXPECT_EQ(buttons[1].keyCode, 7);
    EXPECT_EQ(buttons[2].keyCode, 126);
    EXPECT_EQ(buttons[3].keyCode, 36);
    EXPECT_EQ(prefs[0].currentValue, 1);
    EXPECT_EQ(prefs[1].currentValue, 2);
    EXPECT_EQ(KSPrefInt(kPrefBlitterSize), 1);
    EXPECT_TRUE(KSPrefBool(kPrefBilinearFiltering));
    pressEverything();
}

TEST_F(PrefsBadInput, AGarbledFileLeavesEveryDefault)
{
    std::string garbage = "[General\n=\n[[]]\nKS%3A%3AInput%3A%3AFire%3A%3AKeyCode\n%%%%=%ZZ\n";
    uint32_t seed = 12345;
    for (int i = 0; i < 4096; i++) {
        seed = seed * 1103515245u + 12345u;
        garbage.push_back((char)(seed >> 24));
    }
    garbage += "\nKS%3A%3AInput%3A%3AJump%3A%3AKeyCode=";
    writeFile(garbage);
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 6);
    EXPECT_EQ(buttons[1].keyCode, 7);
    EXPECT_EQ(buttons[2].keyCode, 126);
    EXPECT_EQ(buttons[3].keyCode, 36);
    EXPECT_EQ(prefs[0].currentValue, 1);
    EXPECT_EQ(prefs[1].currentValue, 2);
    EXPECT_EQ(KSPrefString(kPrefBlitterType), "Plain");
    pressEverything();
}

TEST_F(PrefsBadInput, AMissingFileLeavesEveryDefault)
{
    KSPrefsClose();
    KSPrefsOpenFile(dir.filePath("never/written/settings.ini").toStdString());
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 6);
    EXPECT_EQ(buttons[3].keyCode, 36);
    EXPECT_EQ(prefs[1].currentValue, 2);
    pressEverything();
}

TEST_F(PrefsBadInput, AStoreThatCannotBeReadOrWrittenLeavesEveryDefault)
{
    // The settings path is a folder: nothing can be read and every write fails.
    KSPrefsClose();
    ASSERT_TRUE(QDir(dir.path()).mkpath("folder.ini"));
    KSPrefsOpenFile(dir.filePath("folder.ini").toStdString());
    KSLoadPreferences();
    EXPECT_EQ(buttons[0].keyCode, 6);
    KSPrefSetInt(KSButtonPrefKey(0, kPrefKeyCodeSuffix).c_str(), 13);
    KSPrefSync();
    pressEverything();
}

} // namespace
