// WAV recording: a file opened from the save panel or numbered on the desktop, fed
// by prvSoundProcess with each block as it is played, so that the file holds what
// was heard and none of the silence of an underrun.
#include "sound/ks_recording.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>

#include <sndfile.h>

#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>

#include <lumivex/lumivex.h>

#include "files/ks_file.h"
#include "prefs/ks_menus.h"
#include "shell/ks_assert.h"
#include "shell/ks_debug.h"
#include "shell/ks_main.h"
#include "shell/ks_panels.h"
#include "sound/ks_sound_ring.h"

namespace
{

const char *const kStartTitle = "Start Recording Audio...";
const char *const kStopTitle = "Stop Recording Audio";

bool pRecording;
// The audio thread writes while the main thread opens and closes the file.
std::mutex pFileLock;
SNDFILE *pRecordingFile;
uint32_t pBitsPerSample;
int64_t pByteOffset;

void (*pPlacard)(const char *) = KSDisplayPlacard;
void (*pMenuTitle)(const char *) = KSSetAudioRecordingMenuTitle;

void WriteSamples(SNDFILE *file, const void *data, uint32_t bytes)
{
    switch (pBitsPerSample) {
    case 8: {
        // 8-bit samples are signed in memory but unsigned in a WAV file: flipping
        // the top bit adds 128, so the file sounds exactly as it played.
        const uint8_t *in = static_cast<const uint8_t *>(data);
        uint8_t chunk[1024];
        while (bytes > 0) {
            const uint32_t n = bytes < sizeof chunk ? bytes : (uint32_t)sizeof chunk;
            for (uint32_t i = 0; i < n; i++)
                chunk[i] = (uint8_t)(in[i] ^ 0x80);
            sf_write_raw(file, chunk, n);
            in += n;
            bytes -= n;
        }
        break;
    }
    case 16:
        sf_write_short(file, static_cast<const short *>(data), bytes / 2);
        break;
    case 32:
        sf_write_int(file, static_cast<const int *>(data), bytes / 4);
        break;
    default:
        sf_write_raw(file, data, bytes);
        break; // 24-bit: packed little-endian, as WAV keeps it
    }
}

// The write hook; its status is ignored, as a failed write must not stop the sound.
void WritePlayedBlock(const void *data, uint32_t bytes)
{
    std::lock_guard<std::mutex> lock(pFileLock);
    if (!pRecordingFile) return;
    WriteSamples(pRecordingFile, data, bytes);
    pByteOffset += bytes;
}

int WavSampleFormat(uint32_t bits)
{
    switch (bits) {
    case 8:
        return SF_FORMAT_PCM_U8;
    case 16:
        return SF_FORMAT_PCM_16;
    case 24:
        return SF_FORMAT_PCM_24;
    case 32:
        return SF_FORMAT_PCM_32;
    default:
        return 0;
    }
}

// Creates (or replaces) the WAV file in the sound output's format.
void CreateRecordingFile(const KSAudioFormat &format, const QString &path)
{
    SF_INFO info{};
    info.samplerate = (int)format.mSampleRate;
    info.channels = (int)format.mChannelsPerFrame;
    info.format = SF_FORMAT_WAV | WavSampleFormat(format.mBitsPerChannel);
    SNDFILE *file = sf_format_check(&info) ? sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info) : nullptr;
    int status = file ? noErr : SF_ERR_SYSTEM;
    if (!file) KSDebugLine("Unable to create \"%s\": %s", path.toUtf8().constData(), sf_strerror(nullptr));
    KS_ASSERT(status == noErr);
    {
        std::lock_guard<std::mutex> lock(pFileLock);
        pRecordingFile = file;
        pBitsPerSample = format.mBitsPerChannel;
        pByteOffset = 0;
    }
    KSSetSoundPlayedHook(WritePlayedBlock);
}

// The format to record in, or null (after a debug line) when nothing can be recorded.
const KSAudioFormat *RecordableFormat()
{
    const KSAudioFormat *format = KSSoundFormat();
    if (!format) {
        KSDebugLine("Sound is not playing: there is nothing to record.");
        return nullptr;
    }
    if (!WavSampleFormat(format->mBitsPerChannel)) {
        KSDebugLine("%u-bit sound cannot be recorded.", format->mBitsPerChannel);
        return nullptr;
    }
    return format;
}

void BeginRecording()
{
    pMenuTitle(kStopTitle);
    pRecording = true;
}

// The quick recording's base name: the open file's name, else the machine's name
// (a host without files records "Test Card.000.wav"), else "Audio Recording".
QString QuickRecordingName()
{
    if (const char *path = KSCurrentFilePath()) {
        const QString name = QFileInfo(QString::fromUtf8(path)).fileName();
        if (!name.isEmpty()) return name;
    }
    QString name;
    if (gConfigParameters)
        name =
            QString::fromUtf8(gConfigParameters->emulator_name,
                              (int)strnlen(gConfigParameters->emulator_name, sizeof gConfigParameters->emulator_name));
    name.replace(QLatin1Char('/'), QLatin1Char('-'));
    return name.trimmed().isEmpty() ? QStringLiteral("Audio Recording") : name;
}

} // namespace

void KSSetRecordingReporters(void (*placard)(const char *), void (*menuTitle)(const char *))
{
    pPlacard = placard ? placard : KSDisplayPlacard;
    pMenuTitle = menuTitle ? menuTitle : KSSetAudioRecordingMenuTitle;
}

bool KSAudioRecording()
{
    return pRecording;
}

void KSToggleAudioRecording()
{
    if (pRecording) {
        {
            std::lock_guard<std::mutex> lock(pFileLock);
            if (pRecordingFile) sf_close(pRecordingFile); // finalises the header
            pRecordingFile = nullptr;
        }
        pMenuTitle(kStartTitle);
        pRecording = false;
        return;
    }
    const KSAudioFormat *format = RecordableFormat();
    if (!format) return;
    KSSavePanelRequest request;
    request.message = "Save Audio Recording";
    request.allowedType = "wav";
    request.proposedName = "Audio Recording.wav";
    const std::string path = KSPanelPresenter()->runSavePanel(request);
    if (path.empty()) return;
    // The panel ran modally: sound may have been stopped meanwhile.
    format = RecordableFormat();
    if (!format) return;
    CreateRecordingFile(*format, QString::fromStdString(path));
    BeginRecording();
}

void KSQuickAudioRecording()
{
    if (pRecording) {
        KSToggleAudioRecording();
        pPlacard("Recording Finished");
        return;
    }
    const KSAudioFormat *format = RecordableFormat();
    if (!format) return;
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    QDir().mkpath(desktop);
    const QString base = QDir(desktop).filePath(QuickRecordingName());
    int n = 0;
    QString path;
    for (;; n++) {
        path = base + QLatin1Char('.') + QString::asprintf("%.3i.wav", n);
        if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink()) break;
    }
    char text[64];
    snprintf(text, sizeof text, "Quick Audio Recording (%.3i)", n);
    pPlacard(text);
    CreateRecordingFile(*format, path);
    BeginRecording();
}
