// Output folders under the user's data folder, one per emulator and output type.
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <string>

#include <lumivex/lumivex.h>

#include "files/ks_file.h"
#include "shell/ks_alert.h"
#include "shell/ks_main.h"

namespace {
std::string pOutputPath; // valid until the next call
} // namespace

extern "C" const char *KSGetOutputPath(uint32_t type, const char *extension)
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty() || !QDir().mkpath(base)) {
        KSHeadsUpAlert("Unable to find the Application Support directory. This should never happen.", nullptr);
        KSExitProcess(1);
    }
    QString folder = base + "/Morrowvale/" + QString::fromUtf8(gConfigParameters->emulator_name);
    const char *sub = gConfigParameters->output_folders ? gConfigParameters->output_folders[type] : nullptr;
    if (sub) folder += "/" + QString::fromUtf8(sub);
    if (!QDir().mkpath(folder)) {
        KSHeadsUpAlert("Unable to create the Morrowvale directory under Application Support. This should never happen.",
                       nullptr);
        KSExitProcess(1);
    }
    QString path = QFileInfo(folder).canonicalFilePath();
    if (extension) {
        // Named after the loaded file: Game.zip + ".png" -> Game.zip.png.
        const char *current = KSCurrentFilePath();
        const QString name = current ? QFileInfo(QString::fromUtf8(current)).fileName()
                                     : QString::fromUtf8(gConfigParameters->emulator_name);
        QString ext = QString::fromUtf8(extension);
        if (ext.startsWith('.')) ext.remove(0, 1);
        path += "/" + name + "." + ext;
    }
    pOutputPath = path.toStdString();
    return pOutputPath.c_str();
}
