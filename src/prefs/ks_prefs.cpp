// The preference store over QSettings, with registered defaults kept in memory.
#include "prefs/ks_prefs.h"

#include <QSettings>
#include <QVariant>
#include <algorithm>
#include <climits>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include <lumivex/lumivex.h>

#include "blitters/ks_blitters.h"
#include "input/ks_keyboard.h"
#include "shell/ks_assert.h"
#include "shell/ks_main.h"

namespace
{

std::unique_ptr<QSettings> pStore;
std::map<std::string, QVariant> pDefaults;
// The blitting thread reads preferences too; one QSettings object is not thread-safe.
std::recursive_mutex pStoreLock;

QSettings &Store()
{
    if (!pStore) {
        const char *name =
            gConfigParameters && gConfigParameters->emulator_name[0] ? gConfigParameters->emulator_name : "Lumivex";
        KSPrefsOpenNative("Lumivex", name);
    }
    return *pStore;
}

std::string pEmulatorName;
void (*pReleaseEmulatorControls)();
void (*pForgetPrefsWindow)();

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
    pStore = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, QString::fromUtf8(organisation),
                                         QString::fromUtf8(application));
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

std::string KSButtonPrefKey(uint32_t which, const char *suffix)
{
    return std::string(kPrefInputPrefix) + KSButtonPreferenceName(which) + (suffix ? suffix : "");
}

std::string KSRecentPrefKey(const char *prefix, int slot)
{
    return std::string(prefix) + std::to_string(slot);
}

const std::string &KSPrefsEmulatorName()
{
    return pEmulatorName;
}

void KSSetPrefsWindowHooks(void (*releaseEmulatorControls)(), void (*forgetWindow)())
{
    pReleaseEmulatorControls = releaseEmulatorControls;
    pForgetPrefsWindow = forgetWindow;
}

void KSLoadPreferences()
{
    KS_ASSERT(gConfigParameters);
    KSButton *buttons = gConfigParameters->buttons;
    KSPrefItem *prefs = gConfigParameters->prefs;

    // 1. The buttons run up to the entry without a title; only 128 are addressable.
    uint32_t buttonCount = 0;
    while (buttons && buttonCount < MAX_HID_INPUTS && buttons[buttonCount].title)
        buttonCount++;

    {
        std::lock_guard<std::recursive_mutex> guard(pStoreLock);

        // 2. The shell's own settings.
        KSRegisterShellDefaults(gConfigParameters->uses_sound == 1);

        // 3. The emulator's own settings: checkboxes and pop-ups are stored by name.
        for (int i = 0; prefs && prefs[i].type != KS_PREF_END; i++) {
            switch (prefs[i].type) {
            case KS_PREF_CHECKBOX:
                KS_ASSERT((gConfigParameters->prefs[i].defaultValue == 0) ||
                          (gConfigParameters->prefs[i].defaultValue == 1));
                if (prefs[i].name) pDefaults[prefs[i].name] = (int)prefs[i].defaultValue;
                break;
            case KS_PREF_POPUP:
                KS_ASSERT(gConfigParameters->prefs[i].defaultValue >= 1);
                if (prefs[i].name) pDefaults[prefs[i].name] = (int)prefs[i].defaultValue;
                break;
            case KS_PREF_HEADING:
            case KS_PREF_NOTE:
            case KS_PREF_SPACER:
            case KS_PREF_SMALL_SPACER:
                break;
            default:
                KS_FAIL("0");
                return;
            }
        }

        // 4. The recent-file slots.
        for (int slot = 0; slot < kPrefRecentSlots; slot++) {
            pDefaults[KSRecentPrefKey(kPrefRecentFilepath, slot)] = QString("");
            pDefaults[KSRecentPrefKey(kPrefRecentScreenshot, slot)] = QString("");
        }

        // 5. Every button's key code defaults to its master key code. The test admits
        // 128 although a shown key code is below 128; both tests stay as they are.
        for (uint32_t i = 0; i < buttonCount; i++) {
            KS_ASSERT(gConfigParameters->buttons[i].masterKeyCode <= MAX_KEYS);
            pDefaults[KSButtonPrefKey(i, kPrefKeyCodeSuffix)] = (qlonglong)buttons[i].masterKeyCode;
        }

        // 6. The shared store, opened once (the defaults above are kept beside it).
        Store();
    }

    // 7. Blitters register afresh.
    ClearBlitterRegistry();

    // 8. The key codes in force. The store is a text file anyone may edit: a value
    // that is no number reads as the default, one outside 0..127 as unassigned.
    for (uint32_t i = 0; i < buttonCount; i++) {
        const int64_t code = KSPrefInt(KSButtonPrefKey(i, kPrefKeyCodeSuffix).c_str());
        buttons[i].keyCode = (code >= 0 && code < MAX_KEYS) ? (int32_t)code : KS_KEY_UNASSIGNED;
    }

    // 9. The emulator's name for the window and the menus.
    const char *name = gConfigParameters->emulator_name;
    pEmulatorName.assign(name, strnlen(name, sizeof gConfigParameters->emulator_name));

    // 10. The emulator tab of the preferences window is rebuilt from the new values.
    if (pReleaseEmulatorControls) pReleaseEmulatorControls();

    // 11. The emulator's current values, then its change handler so that it sees them.
    for (int i = 0; prefs && prefs[i].type != KS_PREF_END; i++) {
        switch (prefs[i].type) {
        case KS_PREF_CHECKBOX:
        case KS_PREF_POPUP:
            if (prefs[i].name) {
                const int64_t value = KSPrefInt(prefs[i].name);
                prefs[i].currentValue = (int32_t)std::clamp<int64_t>(value, INT32_MIN, INT32_MAX);
            }
            break;
        case KS_PREF_HEADING:
        case KS_PREF_NOTE:
        case KS_PREF_SPACER:
        case KS_PREF_SMALL_SPACER:
            break;
        default:
            KS_FAIL("0");
            return;
        }
    }
    if (gConfigParameters->handle_prefchange) gConfigParameters->handle_prefchange();

    // 12. The preferences window is built again when next shown.
    if (pForgetPrefsWindow) pForgetPrefsWindow();
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
