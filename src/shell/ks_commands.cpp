// Menu commands and their enabling.
#include "shell/ks_commands.h"

#include <cstring>

#include "files/ks_file.h"
#include "network/ks_network.h"
#include "shell/ks_assert.h"
#include "shell/ks_debug.h"
#include "shell/ks_main.h"
#include "shell/ks_platform.h"
#include "sound/ks_recording.h"

namespace
{

class DebugDesktopCommands : public LVDesktopCommands
{
  public:
    void showAboutPanel(const std::string &name, const std::string &, const std::string &) override
    {
        KSDebugLine("About %s", name.c_str());
    }
    void openURL(const std::string &url) override { KSDebugLine("No desktop to open %s", url.c_str()); }
    void hideApplication() override {}
    void hideOtherApplications() override {}
    void showAllApplications() override {}
    void runPageSetup() override {}
};

DebugDesktopCommands pDebugDesktopCommands;
LVDesktopCommands *pDesktopCommands = &pDebugDesktopCommands;

constexpr int kActionCount = (int)KSMenuAction::None + 1;
KSMenuFeatureHandler pFeatureHandlers[kActionCount];

const char *FeatureName(KSMenuAction action)
{
    switch (action) {
    case KSMenuAction::Print:
        return "Print";
    case KSMenuAction::CopyToClipboard:
        return "CopyToClipboard";
    case KSMenuAction::SaveScreenshot:
        return "SaveScreenshot";
    case KSMenuAction::MakeIcon:
        return "MakeIcon";
    case KSMenuAction::NetworkHost:
        return "NetworkHost";
    case KSMenuAction::NetworkJoin:
        return "NetworkJoin";
    case KSMenuAction::Preferences:
        return "Preferences";
    default:
        return nullptr;
    }
}

void RunFeature(KSMenuAction action, uint32_t tag)
{
    if (KSMenuFeatureHandler handler = pFeatureHandlers[(int)action]) {
        handler(tag);
        return;
    }
    KSDebugLine("The %s command is not available in this build.", FeatureName(action));
}

void HostCommand(uint32_t code)
{
    if (gConfigParameters->handle_command) gConfigParameters->handle_command(code);
}

// A fixed-size text field of the record, safe when it lacks its terminator.
std::string RecordText(const char *text, size_t size)
{
    return std::string(text, strnlen(text, size));
}

// The web link at an index, or null when the index is past the array's end.
const KSWebLink *WebLinkAt(uint32_t index)
{
    if (!gConfigParameters->weblinks) return nullptr;
    for (uint32_t i = 0; gConfigParameters->weblinks[i].title != nullptr; i++)
        if (i == index) return &gConfigParameters->weblinks[i];
    return nullptr;
}

} // namespace

void KSSetDesktopCommands(LVDesktopCommands *commands)
{
    pDesktopCommands = commands ? commands : &pDebugDesktopCommands;
}

LVDesktopCommands *KSDesktopCommands()
{
    return pDesktopCommands;
}
bool KSDesktopCommandsSet()
{
    return pDesktopCommands != &pDebugDesktopCommands;
}

void KSSetMenuFeatureHandler(KSMenuAction action, KSMenuFeatureHandler handler)
{
    if (FeatureName(action)) pFeatureHandlers[(int)action] = handler;
}

KSAboutTexts KSAboutPanelTexts()
{
    const KSConfigParameters &record = *gConfigParameters;
    KSAboutTexts texts;
    texts.name = RecordText(record.emulator_name, sizeof record.emulator_name) + " (with Lumivex)";
    texts.version = RecordText(record.version, sizeof record.version);
    texts.credits = "Original version by " + RecordText(record.original_author, sizeof record.original_author) +
                    "\nMacintosh version by " + RecordText(record.mac_author, sizeof record.mac_author);
    return texts;
}

void KSPerformMenuAction(KSMenuAction action, uint32_t tag)
{
    switch (action) {
    case KSMenuAction::About: {
        const KSAboutTexts texts = KSAboutPanelTexts();
        pDesktopCommands->showAboutPanel(texts.name, texts.version, texts.credits);
        break;
    }
    case KSMenuAction::Open:
        HostCommand(tag);
        KSOpenPanel();
        break;
    case KSMenuAction::Close:
        KSCloseFile();
        break;
    case KSMenuAction::PageSetup:
        pDesktopCommands->runPageSetup();
        break;
    case KSMenuAction::Reset:
        HostCommand(KS_CMD_RESET);
        KSDisplayPlacard("Emulator Reset");
        break;
    case KSMenuAction::AudioRecToggle:
        KSToggleAudioRecording();
        break;
    case KSMenuAction::Defrost:
        HostCommand(tag);
        KSDefrostPanel();
        break;
    case KSMenuAction::Freeze:
        KSFreezePanel();
        break;
    case KSMenuAction::ToggleFullScreen:
        if (KSSessionRunning()) KSPlatform()->toggleFullScreen();
        break;
    case KSMenuAction::Custom:
        HostCommand(tag);
        break;
    case KSMenuAction::WebLink:
        if (const KSWebLink *link = WebLinkAt(tag))
            if (link->link) pDesktopCommands->openURL(link->link);
        break;
    case KSMenuAction::Hide:
        pDesktopCommands->hideApplication();
        break;
    case KSMenuAction::HideOthers:
        pDesktopCommands->hideOtherApplications();
        break;
    case KSMenuAction::ShowAll:
        pDesktopCommands->showAllApplications();
        break;
    case KSMenuAction::Terminate:
        if (KSSessionRunning()) KSStopSession();
        if (KSPlatform()) KSPlatform()->stopEventLoop();
        break;
    case KSMenuAction::Print:
    case KSMenuAction::CopyToClipboard:
    case KSMenuAction::SaveScreenshot:
    case KSMenuAction::MakeIcon:
    case KSMenuAction::NetworkHost:
    case KSMenuAction::NetworkJoin:
    case KSMenuAction::Preferences:
        RunFeature(action, tag);
        break;
    case KSMenuAction::None:
        break;
    }
}

KSMenuEnablingState KSCurrentMenuEnablingState()
{
    KSMenuEnablingState state;
    state.modal = gModalRunning;
    state.windowExists = KSSessionRunning();
    state.networkActive = KSNetworkActive();
    state.networkHosting = state.networkActive && KSNetworkHosting();
    return state;
}

bool KSMenuItemEnabled(KSMenuAction action, uint32_t tag, const KSMenuEnablingState &state)
{
    // Nothing performs these (Undo, Cut, Paste, Clear), so they stay disabled.
    if (action == KSMenuAction::None) return false;
    if (state.modal) return false;

    if (state.networkActive) {
        switch (action) {
        case KSMenuAction::NetworkHost:
            return state.networkHosting;
        case KSMenuAction::NetworkJoin:
            return !state.networkHosting;
        case KSMenuAction::Print:
        case KSMenuAction::CopyToClipboard:
        case KSMenuAction::SaveScreenshot:
        case KSMenuAction::AudioRecToggle:
        case KSMenuAction::MakeIcon:
            return true;
        default:
            return false;
        }
    }

    uint32_t code;
    switch (action) {
    case KSMenuAction::Reset:
    case KSMenuAction::Print:
    case KSMenuAction::CopyToClipboard:
    case KSMenuAction::SaveScreenshot:
    case KSMenuAction::AudioRecToggle:
        return state.windowExists;
    case KSMenuAction::MakeIcon:
        code = KS_CMD_MAKE_ICON;
        break;
    case KSMenuAction::Close:
        code = KS_CMD_CLOSE;
        break;
    case KSMenuAction::Freeze:
        code = KS_CMD_FREEZE;
        break;
    case KSMenuAction::Defrost:
        code = KS_CMD_DEFROST;
        break;
    case KSMenuAction::NetworkHost:
        code = KS_CMD_NETWORK_HOST;
        break;
    case KSMenuAction::NetworkJoin:
        code = KS_CMD_NETWORK_JOIN;
        break;
    case KSMenuAction::Custom:
        // The callback is required unless the machine needs a file; a host that
        // needs one and has no callback gets its own items always enabled.
        if (gConfigParameters->requires_file == 1 && !gConfigParameters->handle_menuupdate) return true;
        KS_ASSERT(gConfigParameters->handle_menuupdate);
        return gConfigParameters->handle_menuupdate(tag, state.windowExists, state.networkActive);
    default:
        return true;
    }
    if (gConfigParameters->requires_file == 1) return state.windowExists;
    KS_ASSERT(gConfigParameters->handle_menuupdate);
    return gConfigParameters->handle_menuupdate(code, state.windowExists, state.networkActive);
}

bool KSValidateMenuItem(KSMenuAction action, uint32_t tag)
{
    return KSMenuItemEnabled(action, tag, KSCurrentMenuEnablingState());
}

void KSResetMenuCommands()
{
    pDesktopCommands = &pDebugDesktopCommands;
    for (KSMenuFeatureHandler &handler : pFeatureHandlers)
        handler = nullptr;
}
