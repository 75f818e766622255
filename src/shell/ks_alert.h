// The one way the shell shows a modal alert. The Qt side installs a QMessageBox
// presenter; tests install a fake that records the texts and answers at once.
#pragma once

#include <string>

class LVAlertPresenter {
public:
    virtual ~LVAlertPresenter() = default;
    // Shows message text, informative text (either may be empty) and one button.
    // Returns when the user dismissed it.
    virtual void present(const std::string &message, const std::string &informative, const std::string &button) = 0;
};

// Null restores the default presenter (standard error only).
void KSSetAlertPresenter(LVAlertPresenter *presenter);
LVAlertPresenter *KSAlertPresenter();

// Ends the process with a status; a seam so that tests can observe it.
[[noreturn]] void KSExitProcess(int status);
