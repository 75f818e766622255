#include "shell/lv_shell_hooks.h"

#include <QFileInfo>
#include <QStringList>

#include "files/ks_file.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_main.h"
#include "shell/lv_app.h"

void KSInstallPlatformHooks() {}

void KSInstallMenuBar(LVMainWindow *) {}

void KSApplyWindowGeometry(LVMainWindow *window)
{
    if (!window || !window->container()) return;
    window->container()->setMinimumSize((int)gBackVideoWidth, (int)gBackVideoHeight);
}

void KSFinishLaunching()
{
    const QStringList args = QCoreApplication::arguments();
    for (int i = 1; i < args.size(); i++) {
        if (QFileInfo(args[i]).isFile()) KSOpenFile(args[i].toUtf8().constData());
    }
    if (!KSSessionRunning() && KSPrefBool(kPrefOpenAtStart)) KSOpenPanel();
}
