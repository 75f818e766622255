// The Qt application, the main window and the platform the session runs on.
#include "shell/lv_app.h"

#include <QCloseEvent>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileOpenEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QScreen>
#include <QSurfaceFormat>
#include <QVBoxLayout>
#include <QWindow>
#include <QWindowStateChangeEvent>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "files/ks_file.h"
#include "files/lv_open_panel_qt.h"
#include <QFileInfo>
#include "input/ks_keyboard.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_alert.h"
#include "shell/ks_clock.h"
#include "shell/ks_debug.h"
#include "shell/ks_main.h"
#include "shell/lv_keyboard_qt.h"
#include "shell/lv_shell_hooks.h"
#include "shell/ks_window_rules.h"
#include "video/lv_view.h"

namespace {

LVQtPlatform *pQtPlatform;

// argv for QApplication must outlive it; the host never hands us its own.
std::vector<std::string> pArguments;
std::vector<char *> pArgv;
int pArgc;

void ReadCommandLine()
{
    QFile cmdline("/proc/self/cmdline");
    if (cmdline.open(QIODevice::ReadOnly)) {
        const QByteArray all = cmdline.readAll();
        for (const QByteArray &a : all.split('\0'))
            if (!a.isEmpty()) pArguments.push_back(a.toStdString());
    }
    if (pArguments.empty()) pArguments.push_back("lumivex");
    for (auto &a : pArguments) pArgv.push_back(a.data());
    pArgv.push_back(nullptr);
    pArgc = (int)pArguments.size();
}

class LVQtAlertPresenter : public LVAlertPresenter {
public:
    void present(const std::string &message, const std::string &informative, const std::string &button) override
    {
        if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
            fprintf(stderr, "%s\n%s\n", message.c_str(), informative.c_str());
            return;
        }
        QMessageBox box;
        box.setIcon(button == "Quit" ? QMessageBox::Critical : QMessageBox::Warning);
        box.setText(QString::fromStdString(message));
        if (!informative.empty()) box.setInformativeText(QString::fromStdString(informative));
        box.addButton(QString::fromStdString(button), QMessageBox::AcceptRole);
        box.exec();
    }
};
LVQtAlertPresenter pQtAlertPresenter;

} // namespace

LVPlatform *KSCreateQtPlatform() { return new LVQtPlatform; }
LVQtPlatform *KSQtPlatform() { return pQtPlatform; }

// ---- LVAppOverride -----------------------------------------------------------

LVAppOverride::LVAppOverride(int &argc, char **argv) : QApplication(argc, argv) {}

bool LVAppOverride::notify(QObject *receiver, QEvent *event)
{
    // While a session runs, every key event meant for the main window or the view
    // is the emulated machine's, whichever widget holds the focus; this also makes
    // the key-up of a Ctrl (Command) chord reach the keyboard state. Menu shortcuts
    // were matched before the key event was delivered.
    if ((event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) && pQtPlatform &&
        pQtPlatform->view()) {
        LVMainWindow *main = pQtPlatform->window();
        QWidget *widget = qobject_cast<QWidget *>(receiver);
        QWindow *window = qobject_cast<QWindow *>(receiver);
        const bool ours = (widget && widget->window() == main) || receiver == pQtPlatform->view() ||
                          (window && main && window == main->windowHandle());
        if (ours && !QApplication::activePopupWidget() && !QApplication::activeModalWidget()) {
            KSHandleQtKeyEvent(static_cast<QKeyEvent *>(event));
            return true;
        }
    }
    return QApplication::notify(receiver, event);
}

bool LVAppOverride::event(QEvent *event)
{
    if (event->type() == QEvent::FileOpen) {
        const QString path = static_cast<QFileOpenEvent *>(event)->file();
        if (!path.isEmpty()) KSOpenFile(path.toUtf8().constData());
        return true;
    }
    return QApplication::event(event);
}

// ---- LVMainWindow ----------------------------------------------------------------

LVMainWindow::LVMainWindow()
{
    setAcceptDrops(true);
    setAttribute(Qt::WA_DeleteOnClose, false);
    m_holder = new QWidget;
    m_holder->setAutoFillBackground(true);
    QPalette black = m_holder->palette();
    black.setColor(QPalette::Window, Qt::black);
    m_holder->setPalette(black);
    m_placeholder = new QLabel(m_holder);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setStyleSheet("QLabel { background: black; color: #9a9a9a; }");
    m_placeholder->setText(tr("Choose Open... in the File menu, or drop a file here."));
    m_holder->setMinimumSize(320, 200);
    setCentralWidget(m_holder);
    m_holder->installEventFilter(this);
}

int LVMainWindow::chromeHeight() const { return menuWidget() && !menuWidget()->isHidden() ? menuWidget()->sizeHint().height() : 0; }

void LVMainWindow::showView(LVViewDelegate *view, int width, int height)
{
    m_container = QWidget::createWindowContainer(view, m_holder);
    m_container->setFocusPolicy(Qt::StrongFocus);
    m_placeholder->hide();
    m_holder->setMinimumSize(1, 1);
    m_container->show();
    resize(width, height + chromeHeight());
    layoutView();
    m_container->setFocus();
}

void LVMainWindow::removeView()
{
    delete m_container;
    m_container = nullptr;
    m_holder->setMinimumSize(320, 200);
    m_placeholder->show();
    layoutView();
}

void LVMainWindow::layoutView()
{
    const QSize area = m_holder->size();
    m_placeholder->setGeometry(QRect(QPoint(0, 0), area));
    if (!m_container) return;
    if (isFullScreen()) {
        const KSSize content = KSFullScreenContentSize({(double)area.width(), (double)area.height()},
                                                       KSPrefInt(kPrefAspectRatio), gBackVideoWidth, gBackVideoHeight);
        const int w = std::min(area.width(), (int)content.width), h = std::min(area.height(), (int)content.height);
        m_container->setGeometry((area.width() - w) / 2, (area.height() - h) / 2, w, h);
    } else
        m_container->setGeometry(QRect(QPoint(0, 0), area));
}

bool LVMainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_holder && event->type() == QEvent::Resize) layoutView();
    return QMainWindow::eventFilter(watched, event);
}

void LVMainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    layoutView();
    if (m_adjusting || !m_container || isFullScreen()) return;
    // Live resizing: the window asks the rules for the size it may have. The title
    // bar allowance of the rules stands for the menu bar here.
    const int chrome = chromeHeight();
    const KSSize proposed{(double)width(), (double)(height() - chrome) + kTitleBarAllowance};
    const KSSize allowed = KSRigidResize(proposed, KSPrefBool(kPrefRigidResizing), KSPrefInt(kPrefAspectRatio),
                                         gRequestedVideoWidth, gRequestedVideoHeight);
    const int w = (int)allowed.width, h = (int)(allowed.height - kTitleBarAllowance) + chrome;
    if (w != width() || h != height()) {
        m_adjusting = true;
        resize(w, h);
        m_adjusting = false;
    }
}

void LVMainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (KSSessionRunning()) {
        if (gConfigParameters->handle_close) gConfigParameters->handle_close();
        KSStopSession();
        // Without a file to run, a machine that needs none has nothing left to show.
        if (gConfigParameters->requires_file == 0) KSQtPlatform()->stopEventLoop();
    } else
        KSQtPlatform()->stopEventLoop();
}

void LVMainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        KSReleaseAllKeys();
        KSForgetQtModifiers();
    }
    if (event->type() == QEvent::WindowStateChange) {
        const bool was = static_cast<QWindowStateChangeEvent *>(event)->oldState() & Qt::WindowFullScreen;
        if (was != isFullScreen()) {
            gLastFullScreenChange = KSMediaTime();
            KSReleaseAllKeys();
            KSForgetQtModifiers();
        }
        layoutView();
    }
    QMainWindow::changeEvent(event);
}

void LVMainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void LVMainWindow::dropEvent(QDropEvent *event)
{
    if (openDroppedFiles(event->mimeData()->urls()))
        event->acceptProposedAction();
    else
        event->ignore();
}

bool LVMainWindow::openDroppedFiles(const QList<QUrl> &urls)
{
    if (urls.size() != 1 || !urls.first().isLocalFile()) return false; // exactly one file or nothing
    KSOpenFile(urls.first().toLocalFile().toUtf8().constData());
    return true;
}

// ---- LVQtPlatform -----------------------------------------------------------------

LVQtPlatform::LVQtPlatform()
{
    pQtPlatform = this;
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LVQtPlatform::timerFired);
}

void LVQtPlatform::ensureApplication()
{
    if (QCoreApplication::instance()) return;
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setSwapInterval(1);
    QSurfaceFormat::setDefaultFormat(format);
    ReadCommandLine();
    new LVAppOverride(pArgc, pArgv.data());
}

bool LVQtPlatform::graphicsAvailable()
{
    ensureApplication();
    QOpenGLContext context;
    context.setFormat(QSurfaceFormat::defaultFormat());
    if (!context.create()) return false;
    const QSurfaceFormat got = context.format();
    if (got.majorVersion() < 3 || (got.majorVersion() == 3 && got.minorVersion() < 3)) return false;
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    return context.makeCurrent(&surface);
}

void LVQtPlatform::createApplication()
{
    ensureApplication();
    KSSetAlertPresenter(&pQtAlertPresenter);
    KSInstallQtPanelPresenter();
    KSInstallPlatformHooks();
    if (gConfigParameters) QApplication::setApplicationName(QString::fromUtf8(gConfigParameters->emulator_name));
    // The desktop ending the application (log-out, a signal to quit) stops the session first.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [] {
        if (KSSessionRunning()) KSStopSession();
    });
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            KSResumeOnActivate();
        else
            KSPauseOnResign();
    });
    m_window = new LVMainWindow;
    gSetWindowFileTitle = [](const char *path) {
        LVMainWindow *window = pQtPlatform->window();
        const QString name = QString::fromUtf8(gConfigParameters->emulator_name);
        if (path) {
            window->setWindowFilePath(QString::fromUtf8(path));
            window->setWindowTitle(QFileInfo(QString::fromUtf8(path)).fileName());
        } else {
            window->setWindowFilePath(QString());
            window->setWindowTitle(name);
        }
    };
}

void LVQtPlatform::buildMenuBar()
{
    if (gConfigParameters) m_window->setWindowTitle(QString::fromUtf8(gConfigParameters->emulator_name));
    KSInstallMenuBar(m_window);
    if (!KSSessionRunning()) m_window->show();
}

void LVQtPlatform::createMainWindow(uint32_t contentWidth, uint32_t contentHeight)
{
    m_view = new LVViewDelegate;
    m_window->setWindowTitle(QString::fromUtf8(gConfigParameters->emulator_name));
    m_window->showView(m_view, (int)contentWidth, (int)contentHeight);
    if (QScreen *screen = m_window->screen()) {
        QRect frame = m_window->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        m_window->move(frame.topLeft());
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    m_view->requestActivate();
}

void LVQtPlatform::destroyMainWindow()
{
    if (!m_view) return;
    m_window->removeView(); // deletes the container and with it the view
    m_view = nullptr;
    m_window->setWindowTitle(QString::fromUtf8(gConfigParameters->emulator_name));
    if (m_cursorHidden) {
        QGuiApplication::restoreOverrideCursor();
        m_cursorHidden = false;
    }
}

bool LVQtPlatform::mainWindowExists() { return m_view != nullptr; }

bool LVQtPlatform::isFullScreen() { return m_window && m_window->isFullScreen(); }

void LVQtPlatform::toggleFullScreen()
{
    if (!m_window) return;
    gLastFullScreenChange = KSMediaTime();
    KSReleaseAllKeys();
    if (m_window->isFullScreen())
        m_window->showNormal();
    else
        m_window->showFullScreen();
}

void LVQtPlatform::applyWindowGeometry() { KSApplyWindowGeometry(m_window); }

void LVQtPlatform::hideCursorUntilMouseMoves()
{
    if (m_view) m_view->setCursor(Qt::BlankCursor);
}

void LVQtPlatform::drawView()
{
    if (m_view) m_view->draw();
}

void LVQtPlatform::markWindowForResize()
{
    if (m_view) QTimer::singleShot(0, this, [this] { applyWindowGeometry(); });
}

void LVQtPlatform::startTimer(double interval)
{
    m_schedule.start(KSMediaTime(), interval);
    m_timerRunning = true;
    arm();
}

void LVQtPlatform::stopTimer()
{
    m_timer.stop();
    m_timerRunning = false;
}

bool LVQtPlatform::timerRunning() { return m_timerRunning; }

void LVQtPlatform::arm()
{
    const double wait = m_schedule.next() - KSMediaTime();
    // Qt timers have millisecond resolution: sleep for the whole milliseconds and
    // let the schedule decide when the grid point has really come.
    m_timer.start(wait > 0.001 ? (int)std::floor(wait * 1000.0) : 0);
}

void LVQtPlatform::timerFired()
{
    if (!m_timerRunning) return;
    if (m_schedule.due(KSMediaTime())) {
        m_ticks++;
        KSFrameTick();
    }
    if (m_timerRunning) arm();
}

void LVQtPlatform::runEventLoop()
{
    ensureApplication();
    QTimer::singleShot(0, this, [] { KSFinishLaunching(); });
    QApplication::exec();
}

void LVQtPlatform::stopEventLoop()
{
    if (QCoreApplication::instance()) QCoreApplication::exit(0);
}

bool LVQtPlatform::inhibitDisplaySleep(uint32_t *cookie)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QDBusInterface saver("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver",
                         bus);
    if (!saver.isValid()) return false;
    QDBusReply<uint> reply = saver.call("Inhibit", QCoreApplication::applicationName(), "Emulation");
    if (!reply.isValid()) return false;
    *cookie = reply.value();
    return true;
}

void LVQtPlatform::releaseDisplaySleep(uint32_t cookie)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    QDBusInterface saver("org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver",
                         bus);
    if (saver.isValid()) saver.call("UnInhibit", cookie);
}

void LVQtPlatform::mouseState(uint32_t *x, uint32_t *y, uint8_t *button)
{
    *x = LVViewDelegate::sMouseX;
    *y = LVViewDelegate::sMouseY;
    *button = LVViewDelegate::sMouseButton;
}
