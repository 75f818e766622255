// The Qt application: LVAppOverride (event dispatch), the persistent main window
// that carries the menu bar and, while a session runs, the display view.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "shell/ks_frame_schedule.h"
#include "shell/ks_platform.h"

class LVViewDelegate;
class QLabel;

class LVAppOverride : public QApplication {
    Q_OBJECT
public:
    LVAppOverride(int &argc, char **argv);
    // The key-up of a Ctrl (Command) chord still reaches the view.
    bool notify(QObject *receiver, QEvent *event) override;

protected:
    bool event(QEvent *event) override; // open-file events
};

class LVMainWindow : public QMainWindow {
    Q_OBJECT
public:
    LVMainWindow();
    void showView(LVViewDelegate *view, int width, int height);
    void removeView();
    // The widget that holds the view; the view fills it, or sits letter-boxed in it
    // at the aspect's shape in full screen.
    QWidget *container() const { return m_container; }
    QWidget *holder() const { return m_holder; }
    // Content size (the picture area) for a window size and back again.
    int chromeHeight() const;
    // Places the view in the holder (fills it, or letter-boxes it in full screen).
    void layoutView();
    // A drop opens exactly one file; anything else is refused (false).
    bool openDroppedFiles(const QList<QUrl> &urls);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QLabel *m_placeholder = nullptr;
    QWidget *m_holder = nullptr;
    QWidget *m_container = nullptr;
    bool m_adjusting = false;
};

class LVQtPlatform : public QObject, public LVPlatform {
    Q_OBJECT
public:
    LVQtPlatform();
    bool graphicsAvailable() override;
    void createApplication() override;
    void buildMenuBar() override;
    void createMainWindow(uint32_t contentWidth, uint32_t contentHeight) override;
    void destroyMainWindow() override;
    bool mainWindowExists() override;
    bool isFullScreen() override;
    void toggleFullScreen() override;
    void applyWindowGeometry() override;
    void hideCursorUntilMouseMoves() override;
    void drawView() override;
    void markWindowForResize() override;
    void startTimer(double interval) override;
    void stopTimer() override;
    bool timerRunning() override;
    void runEventLoop() override;
    void stopEventLoop() override;
    bool inhibitDisplaySleep(uint32_t *cookie) override;
    void releaseDisplaySleep(uint32_t cookie) override;
    void mouseState(uint32_t *x, uint32_t *y, uint8_t *button) override;

    LVMainWindow *window() const { return m_window; }
    LVViewDelegate *view() const { return m_view; }
    // Ticks the timer has run since the session started (for tests).
    uint64_t tickCount() const { return m_ticks; }

private slots:
    void timerFired();

private:
    void ensureApplication();
    void arm();

    LVMainWindow *m_window = nullptr;
    LVViewDelegate *m_view = nullptr;
    QTimer m_timer;
    KSFrameSchedule m_schedule;
    bool m_timerRunning = false;
    uint64_t m_ticks = 0;
    bool m_cursorHidden = false;
};

LVQtPlatform *KSQtPlatform();
