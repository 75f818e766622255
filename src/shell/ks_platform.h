// What the session and the frame loop need from the desktop: the Qt application
// implements it (shell/lv_app), tests implement a fake. No Qt types cross it.
#pragma once

#include <cstdint>

class LVPlatform {
public:
    virtual ~LVPlatform() = default;

    // Start-up.
    virtual bool graphicsAvailable() = 0;     // an OpenGL 3.3 core context can be made
    virtual void createApplication() = 0;     // the application object and its delegates
    virtual void buildMenuBar() = 0;

    // The main window, made at the given content size (view pixels).
    virtual void createMainWindow(uint32_t contentWidth, uint32_t contentHeight) = 0;
    virtual void destroyMainWindow() = 0;
    virtual bool mainWindowExists() = 0;
    virtual bool isFullScreen() = 0;
    virtual void toggleFullScreen() = 0;
    virtual void applyWindowGeometry() = 0;   // the size and aspect rules after a change
    virtual void hideCursorUntilMouseMoves() = 0;
    virtual void drawView() = 0;              // present the newest picture now
    virtual void markWindowForResize() = 0;   // the blitter's scale changed

    // The repeating frame timer; its tick calls KSFrameTick.
    virtual void startTimer(double interval) = 0;
    virtual void stopTimer() = 0;
    virtual bool timerRunning() = 0;

    // Event loop.
    virtual void runEventLoop() = 0;
    virtual void stopEventLoop() = 0;

    // Display sleep; false when no service can hold it (the session runs anyway).
    virtual bool inhibitDisplaySleep(uint32_t *cookie) = 0;
    virtual void releaseDisplaySleep(uint32_t cookie) = 0;

    // Mouse state kept by the view, in emulated pixels.
    virtual void mouseState(uint32_t *x, uint32_t *y, uint8_t *button) = 0;
};
