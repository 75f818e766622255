// A configured shell on the fake platform, with a clock and alerts the test owns.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstring>
#include <string>
#include <vector>

#include "fake_platform.h"
#include "input/ks_keyboard.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"
#include "video/ks_placard.h"
#include "video/ks_render.h"

class ShellTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    FakePlatform platform;
    RecordingAlerts alerts;
    KSConfigParameters config{};
    KSButton buttons[8]{};
    KSMenuItem menus[2]{};
    KSPrefItem prefs[1]{};
    std::vector<std::string> placards;
    int frames = 0;
    uint16_t *lastBackBuffer = nullptr;
    void *lastSound = reinterpret_cast<void *>(1);
    int freezes = 0;
    static ShellTest *current;

    void SetUp() override
    {
        current = this;
        FakeClock::now = 1000.0;
        KSSetClock(&FakeClock::read);
        KSSetAlertPresenter(&alerts);
        KSSetPlatform(&platform);
        KSPrefsOpenFile(dir.filePath("settings.ini").toStdString());
        strcpy(config.emulator_name, "Shell Test");
        config.framerate = 60;
        config.initial_width = 64;
        config.initial_height = 48;
        config.buttons = buttons;
        config.menuitems = menus;
        prefs[0].type = KS_PREF_END;
        config.prefs = prefs;
        config.handle_frame = [](uint16_t *back, void *sound) {
            current->frames++;
            current->lastBackBuffer = back;
            current->lastSound = sound;
        };
        config.handle_open = [](uint32_t, const char *) { return true; };
        config.handle_menuupdate = [](uint32_t, bool, bool) { return true; };
        config.handle_freeze = [](const char *) {
            current->freezes++;
            return true;
        };
        config.handle_defrost = [](const char *) { return true; };
        addButton("Quick Quit", 53, KS_FUNCTION_QUICK_QUIT);
        addButton("Quick Freeze", 96, KS_FUNCTION_QUICK_FREEZE);
        addButton("Full Screen", 103, KS_FUNCTION_FULL_SCREEN);
        addButton("Fire", 6, KS_FUNCTION_INPUT);
    }

    void TearDown() override
    {
        if (KSSessionRunning()) KSStopSession();
        KSResetShellState();
        KSResetKeyboardState();
        KSResetPlacards();
        KSSetPlatform(nullptr);
        KSSetAlertPresenter(nullptr);
        KSSetClock(nullptr);
        KSPrefsClose();
        gConfigParameters = nullptr;
    }

    void addButton(const char *title, uint32_t key, uint32_t function)
    {
        int i = 0;
        while (buttons[i].title) i++;
        buttons[i].title = title;
        buttons[i].masterKeyCode = key;
        buttons[i].keyCode = (int32_t)key;
        buttons[i].function = function;
    }

    // One timer tick, 1/60 s after the previous one.
    void tick()
    {
        FakeClock::now += 1.0 / 60;
        KSFrameTick();
        const char *text = KSPlacardText();
        placards.push_back(text ? text : "");
        KSResetPlacards();
    }
};
