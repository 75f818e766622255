// Screenshots and image export.
#pragma once

void KSQuickScreenshot();
