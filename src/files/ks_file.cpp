// Opening and closing files, the open panel's filter, freeze and defrost.
#include "files/ks_file.h"

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <cstring>
#include <string>
#include <sys/xattr.h>
#include <zlib.h>

#include "files/ks_filetype.h"
#include "files/ks_recent.h"
#include "shell/ks_assert.h"
#include "shell/ks_main.h"
#include "shell/ks_panels.h"

namespace
{

void NoWindowTitle(const char *) {}
void NoRecentPicker() {}

std::string pCurrentFile;
bool pHaveFile;

// The open panel's delegate: created on first use and kept.
class LVOpenFilterDelegate
{
  public:
    bool panelShouldEnableURL(const std::string &path) const { return KSOpenFilterShouldEnable(path); }
};
LVOpenFilterDelegate *pOpenFilterDelegate;

LVOpenFilterDelegate *OpenFilterDelegate()
{
    if (!pOpenFilterDelegate) pOpenFilterDelegate = new LVOpenFilterDelegate;
    return pOpenFilterDelegate;
}

QString ToQt(const std::string &path)
{
    return QString::fromUtf8(path.data(), (int)path.size());
}

// The Finder flags of the 32-byte Finder-info record (bytes 8-9, big-endian); the
// "has bundle" bit marks a folder as a package.
const uint16_t kHasBundle = 0x2000;
#if defined(__APPLE__)
const char kFinderInfo[] = "com.apple.FinderInfo";
#else
const char kFinderInfo[] = "user.com.apple.FinderInfo";
#endif

bool HasBundleBit(const std::string &path)
{
    uint8_t info[32] = {0};
#if defined(__APPLE__)
    const ssize_t got = getxattr(path.c_str(), kFinderInfo, info, sizeof info, 0, 0);
#else
    const ssize_t got = getxattr(path.c_str(), kFinderInfo, info, sizeof info);
#endif
    if (got != (ssize_t)sizeof info) return false;
    return ((info[8] << 8 | info[9]) & kHasBundle) != 0;
}

} // namespace

void (*gSetWindowFileTitle)(const char *path) = NoWindowTitle;
void (*gEndRecentPickerModal)() = NoRecentPicker;
void (*gFileRecentAdd)(const char *path, bool withScreenshot) = KSRecentAdd;

const char *KSCurrentFilePath()
{
    return pHaveFile ? pCurrentFile.c_str() : nullptr;
}

void KSForgetCurrentFile()
{
    pHaveFile = false;
    pCurrentFile.clear();
}

void KSResetFileState()
{
    KSForgetCurrentFile();
    gSetWindowFileTitle = NoWindowTitle;
    gEndRecentPickerModal = NoRecentPicker;
    gFileRecentAdd = KSRecentAdd;
}

std::string KSResolveSymlinks(const std::string &path)
{
    if (path.empty()) return path;
    const QFileInfo info(ToQt(path));
    QString resolved = info.canonicalFilePath();
    if (resolved.isEmpty()) {
        // Not there yet (a state file about to be written): resolve its folder.
        const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
        if (folder.isEmpty()) return path;
        resolved = QDir(folder).filePath(info.fileName());
    }
    return resolved.toStdString();
}

bool KSPathIsPackage(const std::string &path)
{
    const QFileInfo info(ToQt(path));
    if (!info.isDir()) return false;
#if defined(__APPLE__)
    if (info.isBundle()) return true;
#endif
    static const char *const kPackageSuffixes[] = {"app", "bundle", "framework", "plugin", "kext"};
    const QString suffix = info.suffix();
    for (const char *known : kPackageSuffixes)
        if (suffix.compare(QLatin1String(known), Qt::CaseInsensitive) == 0) return true;
    return HasBundleBit(path);
}

bool KSReadFileHeader(const std::string &path, uint8_t header[128])
{
    memset(header, 0, 128);
    // Only regular files: opening a pipe or a terminal could block the panel.
    if (!QFileInfo(ToQt(path)).isFile()) return false;
    gzFile file = gzopen(path.c_str(), "rb");
    if (!file) return false;
    // A short file leaves the rest zero; a broken gzip stream leaves what was read.
    (void)gzread(file, header, 128);
    gzclose(file);
    return true;
}

bool KSOpenFilterShouldEnable(const std::string &path)
{
    const QFileInfo info(ToQt(path));
    if (info.isDir()) return !KSPathIsPackage(path);

    const std::string resolved = KSResolveSymlinks(path);
    const QFileInfo target(ToQt(resolved));
    const int64_t size = target.exists() ? (int64_t)target.size() : -1;
    uint8_t header[128];
    if (!KSReadFileHeader(resolved, header)) return false;
    uint32_t type = 0, creator = 0;
    KSReadFileTypeAndCreator(resolved.c_str(), &type, &creator);
    if (!gConfigParameters || !gConfigParameters->handle_filter) return true;
    return gConfigParameters->handle_filter(type, creator, header, size) != 0;
}

bool KSOpenFile(const char *path)
{
    if (!path || !*path) return false;
    uint32_t type = 0, creator = 0;
    KSReadFileTypeAndCreator(path, &type, &creator);

    if (pHaveFile) gFileRecentAdd(pCurrentFile.c_str(), true);

    const bool hadPrevious = pHaveFile;
    const std::string previous = pCurrentFile;
    pCurrentFile = KSResolveSymlinks(path);
    pHaveFile = true;
    const std::string resolved = pCurrentFile;

    KS_ASSERT(gConfigParameters->handle_open);
    if (gConfigParameters->handle_open(type, resolved.c_str()) != true) {
        // Nothing half-loaded stays: the host unloads, and the old file is current again.
        KSCloseFile();
        pCurrentFile = previous;
        pHaveFile = hadPrevious;
        return false;
    }

    KSWriteFileTypeAndCreator(resolved.c_str(), gConfigParameters->file_type, gConfigParameters->file_creator);
    if (!KSSessionRunning()) KSStartSession();
    gSetWindowFileTitle(resolved.c_str());
    gFileRecentAdd(resolved.c_str(), false);
    gEndRecentPickerModal();
    return true;
}

void KSCloseFile()
{
    if (gConfigParameters->handle_close)
        gConfigParameters->handle_close();
    else if (gConfigParameters->handle_command)
        gConfigParameters->handle_command(KS_CMD_CLOSE);

    if (pHaveFile) {
        const std::string path = pCurrentFile;
        gFileRecentAdd(path.c_str(), true);
        KSForgetCurrentFile();
    }

    if (!gConfigParameters->requires_file)
        gSetWindowFileTitle(nullptr);
    else if (KSSessionRunning())
        KSStopSession();
}

void KSOpenPanel()
{
    KSOpenPanelRequest request;
    request.message = "Select a file to open";
    if (gConfigParameters->handle_filter)
        request.filter = [](const std::string &path) { return OpenFilterDelegate()->panelShouldEnableURL(path); };
    const bool customised = gConfigParameters->handle_panel != nullptr;
    if (customised)
        request.customise = [](void *dialog) {
            // The call with null comes below, after the chosen file was opened.
            if (dialog && gConfigParameters->handle_panel) gConfigParameters->handle_panel(dialog);
        };

    const std::string chosen = KSPanelPresenter()->runOpenPanel(request);
    if (!chosen.empty()) KSOpenFile(chosen.c_str());

    if (customised && gConfigParameters->handle_panel) gConfigParameters->handle_panel(nullptr);
}

void KSFreezePanel()
{
    KS_ASSERT(gConfigParameters->handle_freeze);
    KSSavePanelRequest request;
    request.message = "Freeze Game State";
    request.allowedType = "frz";
    request.proposedName = "Game State.frz";
    const std::string chosen = KSPanelPresenter()->runSavePanel(request);
    if (chosen.empty()) return;
    const std::string path = KSResolveSymlinks(chosen);
    if (gConfigParameters->handle_freeze(path.c_str()) != true) KSHeadsUpAlert("Unable to freeze game state.", nullptr);
}

void KSDefrostPanel()
{
    KS_ASSERT(gConfigParameters->handle_defrost);
    // A host that customises the open panel tells state files apart itself.
    if (gConfigParameters->handle_panel) {
        KSOpenPanel();
        return;
    }
    KSOpenPanelRequest request;
    request.message = "Defrost Game State";
    const std::string chosen = KSPanelPresenter()->runOpenPanel(request);
    if (chosen.empty()) return;
    const std::string path = KSResolveSymlinks(chosen);
    if (gConfigParameters->handle_defrost(path.c_str()) != true)
        KSHeadsUpAlert("Unable to defrost game state.", nullptr);
}
