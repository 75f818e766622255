// File dialogs behind one seam: the Qt side runs QFileDialog, tests answer at once.
#pragma once

#include <functional>
#include <string>

struct KSSavePanelRequest {
    std::string message;      // e.g. "Save Audio Recording"
    std::string allowedType;  // extension without the dot, e.g. "wav"; empty: any
    std::string proposedName; // e.g. "Audio Recording.wav"
};

struct KSOpenPanelRequest {
    std::string message; // e.g. "Select a file to open"
    // When set, files for which it returns false are shown disabled.
    std::function<bool(const std::string &path)> filter;
    // Given the native dialog (a QFileDialog *) before it runs, and null after.
    std::function<void(void *dialog)> customise;
};

class LVPanelPresenter {
public:
    virtual ~LVPanelPresenter() = default;
    // The chosen path, or empty when the user cancelled.
    virtual std::string runSavePanel(const KSSavePanelRequest &request) = 0;
    virtual std::string runOpenPanel(const KSOpenPanelRequest &request) = 0;
};

// Null restores the default, which cancels every panel.
void KSSetPanelPresenter(LVPanelPresenter *presenter);
LVPanelPresenter *KSPanelPresenter();
