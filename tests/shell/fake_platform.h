// A platform without a desktop: counts what the session asks of it.
#pragma once

#include <string>
#include <vector>

#include "shell/ks_alert.h"
#include "shell/ks_clock.h"
#include "shell/ks_main.h"
#include "shell/ks_platform.h"

class FakePlatform : public LVPlatform {
public:
    bool graphics = true, window = false, fullScreen = false, timer = false, eventLoopStopped = false;
    int timerStarts = 0, timerStops = 0, draws = 0, resizes = 0, toggles = 0, windowsCreated = 0, eventLoopStops = 0;
    double lastInterval = 0;
    uint32_t contentWidth = 0, contentHeight = 0;

    bool graphicsAvailable() override { return graphics; }
    void createApplication() override {}
    void buildMenuBar() override {}
    void createMainWindow(uint32_t w, uint32_t h) override
    {
        window = true;
        windowsCreated++;
        contentWidth = w;
        contentHeight = h;
    }
    void destroyMainWindow() override { window = false; }
    bool mainWindowExists() override { return window; }
    bool isFullScreen() override { return fullScreen; }
    void toggleFullScreen() override
    {
        // As the window delegate does on its enter/exit notifications.
        toggles++;
        fullScreen = !fullScreen;
        gLastFullScreenChange = KSMediaTime();
    }
    void applyWindowGeometry() override {}
    void hideCursorUntilMouseMoves() override {}
    void drawView() override { draws++; }
    void markWindowForResize() override { resizes++; }
    void startTimer(double interval) override
    {
        timer = true;
        timerStarts++;
        lastInterval = interval;
    }
    void stopTimer() override
    {
        timer = false;
        timerStops++;
    }
    bool timerRunning() override { return timer; }
    void runEventLoop() override {}
    void stopEventLoop() override
    {
        eventLoopStopped = true;
        eventLoopStops++;
    }
    bool inhibitDisplaySleep(uint32_t *cookie) override
    {
        *cookie = 7;
        return true;
    }
    void releaseDisplaySleep(uint32_t) override {}
    void mouseState(uint32_t *x, uint32_t *y, uint8_t *b) override { *x = 3, *y = 4, *b = 1; }
};

class RecordingAlerts : public LVAlertPresenter {
public:
    struct Alert {
        std::string message, informative, button;
    };
    std::vector<Alert> alerts;
    void present(const std::string &m, const std::string &i, const std::string &b) override
    {
        alerts.push_back({m, i, b});
    }
};

// A clock the test moves by hand.
struct FakeClock {
    static double now;
    static double read() { return now; }
};
