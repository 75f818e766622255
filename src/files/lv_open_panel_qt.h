// The file dialogs on the desktop, behind the panel seam of shell/ks_panels.h.
#pragma once

#include "shell/ks_panels.h"

class QFileDialog;

// Makes QFileDialog the panel presenter; the application calls it at start.
void KSInstallQtPanelPresenter();

// The configured dialogs, not yet run (the presenter runs them; tests inspect them).
// An open dialog with a filter is Qt's own dialog, with packages and rejected files
// disabled. The caller owns the dialog.
QFileDialog *KSCreateOpenPanel(const KSOpenPanelRequest &request);
QFileDialog *KSCreateSavePanel(const KSSavePanelRequest &request);
