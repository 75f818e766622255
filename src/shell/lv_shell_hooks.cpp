// Where the Qt application meets the shell's other subsystems.
#include "shell/lv_shell_hooks.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>

#include "files/ks_file.h"
#include "prefs/ks_prefs.h"
#include "prefs/lv_menubar_qt.h"
#include "shell/ks_main.h"
#include "shell/ks_window_rules.h"
#include "shell/lv_app.h"

void KSInstallPlatformHooks() {}

void KSInstallMenuBar(LVMainWindow *window) { KSInstallQtMenuBar(window); }

void KSApplyWindowGeometry(LVMainWindow *window)
{
    if (!window || !window->container()) return;
    QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1920, 1080);
    const int chrome = window->chromeHeight();
    // The rules think in window sizes with a title-bar allowance; here the menu bar
    // takes that place above the picture.
    const QSize content = window->holder()->size();
    const KSSize current{(double)content.width(), (double)content.height() + kTitleBarAllowance};
    const double width = window->isFullScreen() ? available.width() : content.width();
    const KSWindowGeometry g =
        KSComputeWindowGeometry(KSPrefInt(kPrefAspectRatio), gBackVideoWidth, gBackVideoHeight, current, width,
                                available.height() - chrome + kTitleBarAllowance);
    window->holder()->setMinimumSize((int)g.minimum.width, std::max(1, (int)(g.minimum.height - kTitleBarAllowance)));
    if (window->isFullScreen()) {
        window->layoutView();
        return;
    }
    if (g.resize) {
        const QRect frame = window->geometry();
        const KSSize size{g.size.width, g.size.height - kTitleBarAllowance + chrome};
        const KSRect r = KSKeepCentreAndTop({(double)frame.x(), (double)frame.y(), (double)frame.width(),
                                             (double)frame.height()},
                                            size);
        window->setGeometry((int)r.x, (int)r.y, (int)r.width, (int)r.height);
    }
    window->layoutView();
}

void KSFinishLaunching()
{
    const QStringList args = QCoreApplication::arguments();
    for (int i = 1; i < args.size(); i++) {
        if (QFileInfo(args[i]).isFile()) KSOpenFile(args[i].toUtf8().constData());
    }
    if (!KSSessionRunning() && KSPrefBool(kPrefOpenAtStart)) KSOpenPanel();
}
