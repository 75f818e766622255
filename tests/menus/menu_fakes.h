// Fakes for the command tests: a platform whose window the test opens and closes,
// desktop commands that record what they were asked, and a host that records the
// codes it receives and answers handle_menuupdate as told.
#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "../shell/fake_platform.h"
#include "menu_records.h"
#include "shell/ks_commands.h"
#include "shell/ks_panels.h"
#include "shell/ks_platform.h"

// The shell tests' platform, whose window the test opens and closes.
using MenuFakePlatform = FakePlatform;

class RecordingDesktop : public LVDesktopCommands
{
  public:
    std::vector<std::string> calls;
    std::string aboutName, aboutVersion, aboutCredits, url;

    void showAboutPanel(const std::string &name, const std::string &version, const std::string &credits) override
    {
        calls.push_back("about");
        aboutName = name, aboutVersion = version, aboutCredits = credits;
    }
    void openURL(const std::string &address) override
    {
        calls.push_back("url");
        url = address;
    }
    void hideApplication() override { calls.push_back("hide"); }
    void hideOtherApplications() override { calls.push_back("hideOthers"); }
    void showAllApplications() override { calls.push_back("showAll"); }
    void runPageSetup() override { calls.push_back("pageSetup"); }
};

// The host's side of the callbacks, as plain functions writing to static state.
struct FakeHost {
    static std::vector<uint32_t> commands;
    static std::vector<std::tuple<uint32_t, bool, bool>> updates;
    static bool answer;
    static int closes;
    static int stateCalls;

    static void reset()
    {
        commands.clear();
        updates.clear();
        answer = true;
        closes = 0;
        stateCalls = 0;
    }
    static void handleCommand(uint32_t code) { commands.push_back(code); }
    static bool handleMenuUpdate(uint32_t code, bool window, bool network)
    {
        updates.emplace_back(code, window, network);
        return answer;
    }
    static void handleClose() { closes++; }
    static bool handleState(const char *)
    {
        stateCalls++;
        return true;
    }
    static void attach(KSConfigParameters &record)
    {
        record.handle_command = handleCommand;
        record.handle_menuupdate = handleMenuUpdate;
        record.handle_close = handleClose;
        record.handle_freeze = handleState;
        record.handle_defrost = handleState;
    }
};

// File panels that the user cancels at once, counted.
class CountingPanels : public LVPanelPresenter
{
  public:
    int openPanels = 0, savePanels = 0;
    std::string runSavePanel(const KSSavePanelRequest &) override
    {
        savePanels++;
        return std::string();
    }
    std::string runOpenPanel(const KSOpenPanelRequest &) override
    {
        openPanels++;
        return std::string();
    }
};
