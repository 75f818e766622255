// A configured shell on the fake platform whose host callbacks, recent list, window
// title, panels and alerts all write into one event log the test reads.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <string>
#include <vector>

#include "../shell/fake_platform.h"
#include "blitters/ks_blitters.h"
#include "files/ks_file.h"
#include "files/ks_filetype.h"
#include "prefs/ks_prefs.h"
#include "shell/ks_alert.h"
#include "shell/ks_main.h"
#include "shell/ks_panels.h"

// Answers panels from a script and keeps what each one asked for.
class ScriptedPanels : public LVPanelPresenter
{
  public:
    std::string answer;
    void *dialogHandle = reinterpret_cast<void *>(0x1234); // what customise is given
    std::vector<KSSavePanelRequest> saves;
    std::vector<KSOpenPanelRequest> opens;
    std::vector<std::string> *events = nullptr;

    std::string runSavePanel(const KSSavePanelRequest &request) override
    {
        saves.push_back(request);
        if (events) events->push_back("save panel");
        return answer;
    }
    std::string runOpenPanel(const KSOpenPanelRequest &request) override
    {
        opens.push_back(request);
        if (request.customise) request.customise(dialogHandle);
        if (events) events->push_back("open panel");
        if (request.customise) request.customise(nullptr);
        return answer;
    }
};

class FilesTest : public ::testing::Test
{
  public: // the host callbacks, plain functions, write into it
    static FilesTest *current;
    QTemporaryDir dir;
    FakePlatform platform;
    RecordingAlerts alerts;
    ScriptedPanels panels;
    KSConfigParameters config{};
    std::vector<std::string> events;
    bool openAnswer = true, stateAnswer = true;
    // What handle_filter was last given.
    uint32_t filterType = 0, filterCreator = 0;
    uint8_t filterHeader[128];
    int64_t filterSize = -2;
    int filterCalls = 0;
    bool filterAnswer = true;

    void SetUp() override
    {
        current = this;
        KSSetPlatform(&platform);
        KSSetAlertPresenter(&alerts);
        KSSetPanelPresenter(&panels);
        panels.events = &events;
        KSPrefsOpenFile(dir.filePath("files.ini").toStdString());
        KSRegisterShellDefaults(false);
        strcpy(config.emulator_name, "Files Test");
        config.framerate = 60;
        config.initial_width = 32;
        config.initial_height = 24;
        config.requires_file = 1;
        config.file_type = 0x524F4D20;    // 'ROM '
        config.file_creator = 0x4C564D58; // 'LVMX'
        config.handle_frame = [](uint16_t *, void *) {};
        config.handle_menuupdate = [](uint32_t, bool, bool) { return true; };
        config.handle_open = [](uint32_t type, const char *path) {
            current->events.push_back("open " + std::string(path) + " type " + std::to_string(type));
            return current->openAnswer;
        };
        config.handle_close = [] { current->events.push_back("close"); };
        config.handle_freeze = [](const char *path) {
            current->events.push_back("freeze " + std::string(path));
            return current->stateAnswer;
        };
        config.handle_defrost = [](const char *path) {
            current->events.push_back("defrost " + std::string(path));
            return current->stateAnswer;
        };
        KSInit(&config);
        gSetWindowFileTitle = [](const char *path) {
            current->events.push_back(path ? "title " + std::string(path) : std::string("title cleared"));
        };
        gEndRecentPickerModal = [] { current->events.push_back("end picker"); };
        gFileRecentAdd = [](const char *path, bool screenshot) {
            current->events.push_back("recent " + std::string(path) + (screenshot ? " with screenshot" : ""));
        };
    }

    void TearDown() override
    {
        if (KSSessionRunning()) KSStopSession();
        KSResetFileState();
        KSResetShellState();
        ClearBlitterRegistry();
        KSSetPanelPresenter(nullptr);
        KSSetAlertPresenter(nullptr);
        KSSetPlatform(nullptr);
        KSPrefsClose();
        gConfigParameters = nullptr;
    }

    void useFilter()
    {
        config.handle_filter = [](uint32_t type, uint32_t creator, const uint8_t *header, int64_t size) {
            FilesTest *t = current;
            t->filterCalls++;
            t->filterType = type;
            t->filterCreator = creator;
            memcpy(t->filterHeader, header, 128);
            t->filterSize = size;
            return t->filterAnswer;
        };
    }

    // A file in the test's folder; returns its canonical path.
    std::string writeFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        return QFileInfo(file.fileName()).canonicalFilePath().toStdString();
    }
    std::string path(const QString &name) { return dir.filePath(name).toStdString(); }
};
