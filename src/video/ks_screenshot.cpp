// Screenshots are not taken yet.
#include "video/ks_screenshot.h"

void KSQuickScreenshot() {}
