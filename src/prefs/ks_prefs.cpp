// The preference store over QSettings, with registered defaults kept in memory.
#include "prefs/ks_prefs.h"

#include <QSettings>
#include <QVariant>
#include <map>
#include <memory>
#include <mutex>

#include <lumivex/lumivex.h>

#include "blitters/ks_blitters.h"
#include "shell/ks_assert.h"
#include "shell/ks_main.h"

namespace {

std::unique_ptr<QSettings> pStore;
std::map<std::string, QVariant> pDefaults;
// The blitting thread reads preferences too; one QSettings object is not thread-safe.
std::recursive_mutex pStoreLock;

QSettings &Store()
{
    if (!pStore) {
        const char *name = gConfigParameters && gConfigParameters->emulator_name[0]
                               ? gConfigParameters->emulator_name
                               : "Lumivex";
        KSPrefsOpenNative("Lumivex", name);
    }
    return *pStore;
}

QVariant Value(const char *key)
{
    QSettings &store = Store();
    const QString k = QString::fromUtf8(key);
    if (store.contains(k)) return store.value(k);
    auto it = pDefaults.find(key);
    return it == pDefaults.end() ? QVariant() : it->second;
}

QVariant Default(const char *key)
{
    auto it = pDefaults.find(key);
    return it == pDefaults.end() ? QVariant() : it->second;
}

} // namespace

void KSPrefsOpenNative(const char *organisation, const char *application)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    pStore = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                         QString::fromUtf8(organisation), QString::fromUtf8(application));
}

void KSPrefsOpenFile(const std::string &path)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    pStore = std::make_unique<QSettings>(QString::fromStdString(path), QSettings::IniFormat);
}

void KSPrefsClose()
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    pStore.reset();
    pDefaults.clear();
}

void KSRegisterShellDefaults(bool usesSound)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    pDefaults[kPrefBilinearFiltering] = true;
    pDefaults[kPrefVBLSync] = true;
    pDefaults[kPrefCurvature] = false;
    pDefaults[kPrefAspectRatio] = 0;
    pDefaults[kPrefDisplayRecent] = true;
    pDefaults[kPrefRigidResizing] = false;
    pDefaults[kPrefOpenAtStart] = true;
    pDefaults[kPrefDisplayPlacards] = true;
    pDefaults[kPrefDisplayFrameRate] = false;
    pDefaults[kPrefBlitterSize] = 1;
    pDefaults[kPrefBlitterType] = QString("Plain");
    pDefaults[kPrefLimitSpeed] = true;
    pDefaults[kPrefPauseInBackground] = true;
    if (usesSound) pDefaults[kPrefSoundEnabled] = true;
}

void KSLoadPreferences()
{
    KS_ASSERT(gConfigParameters);
    KSRegisterShellDefaults(gConfigParameters->uses_sound == 1);
    ClearBlitterRegistry();
}

bool KSPrefBool(const char *key)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    QVariant v = Value(key);
    if (v.typeId() == QMetaType::Bool) return v.toBool();
    // INI files hold text: "true", "false" and numbers all count.
    const QString text = v.toString().trimmed().toLower();
    if (text == "true" || text == "yes") return true;
    if (text == "false" || text == "no") return false;
    bool ok = false;
    const qlonglong n = text.toLongLong(&ok);
    if (ok) return n != 0;
    return Default(key).toBool();
}

int64_t KSPrefInt(const char *key)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    QVariant v = Value(key);
    if (v.typeId() == QMetaType::Bool) return v.toBool() ? 1 : 0;
    bool ok = false;
    const qlonglong n = v.toString().trimmed().toLongLong(&ok);
    if (ok) return n;
    const QString text = v.toString().trimmed().toLower();
    if (text == "true") return 1;
    if (text == "false") return 0;
    return Default(key).toLongLong();
}

std::string KSPrefString(const char *key)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    QVariant v = Value(key);
    if (v.canConvert<QString>()) return v.toString().toStdString();
    return Default(key).toString().toStdString();
}

bool KSPrefExists(const char *key)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    return Store().contains(QString::fromUtf8(key));
}

void KSPrefSetBool(const char *key, bool value)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    Store().setValue(QString::fromUtf8(key), value);
}
void KSPrefSetInt(const char *key, int64_t value)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    Store().setValue(QString::fromUtf8(key), (qlonglong)value);
}
void KSPrefSetString(const char *key, const std::string &value)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    Store().setValue(QString::fromUtf8(key), QString::fromStdString(value));
}
void KSPrefRemove(const char *key)
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    Store().remove(QString::fromUtf8(key));
}
void KSPrefSync()
{
    std::lock_guard<std::recursive_mutex> guard(pStoreLock);
    if (pStore) pStore->sync();
}
