// The panel seam; without a desktop every panel is cancelled.
#include "shell/ks_panels.h"

namespace {
class CancellingPresenter : public LVPanelPresenter {
public:
    std::string runSavePanel(const KSSavePanelRequest &) override { return {}; }
    std::string runOpenPanel(const KSOpenPanelRequest &) override { return {}; }
};
CancellingPresenter pCancelling;
LVPanelPresenter *pPresenter = &pCancelling;
} // namespace

void KSSetPanelPresenter(LVPanelPresenter *presenter) { pPresenter = presenter ? presenter : &pCancelling; }
LVPanelPresenter *KSPanelPresenter() { return pPresenter; }
