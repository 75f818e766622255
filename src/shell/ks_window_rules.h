// The window's size rules: rigid live resizing, the full-screen content size and
// the geometry applied after a session start or a picture-size change. Sizes are
// in points; window heights include the title-bar allowance.
#pragma once

#include <cstdint>

// Added to every content height that becomes a window height.
constexpr double kTitleBarAllowance = 22.0;

// "KS::Video::AspectRatio": 0 uncorrected, 1 4:3, 2 16:9, 3 as the hardware defines.
enum { KS_ASPECT_UNCORRECTED = 0, KS_ASPECT_4_3 = 1, KS_ASPECT_16_9 = 2, KS_ASPECT_HARDWARE = 3 };

struct KSSize {
    double width = 0;
    double height = 0;
};

struct KSRect {
    double x = 0; // left edge
    double y = 0; // top edge (y grows downwards, as in Qt)
    double width = 0;
    double height = 0;
};

// The size a live resize to `proposed` (a window size) turns into. With rigid
// resizing and an aspect mode other than 0, only whole multiples of the machine's
// width (backWidth) are allowed; otherwise the proposed size stands.
KSSize KSRigidResize(KSSize proposed, bool rigid, int64_t mode, uint32_t backWidth, uint32_t backHeight);

// The content size of a full-screen window on a screen of the given size.
KSSize KSFullScreenContentSize(KSSize screen, int64_t mode, uint32_t backWidth, uint32_t backHeight);

struct KSWindowGeometry {
    KSSize minimum;         // minimum window size
    bool hasAspect = false; // keep the content at aspect.width : aspect.height
    KSSize aspect;
    bool resetIncrements = false; // mode 0: forget any resize increments
    bool resize = false;          // size below differs from the current window size
    KSSize size;                  // the window size to apply when resize is set
};

// The geometry for a back buffer of backWidth x backHeight. `current` is the window's
// current size, `width` the width to keep (the window's, or the screen's in full
// screen) and screenHeight the height of its screen.
KSWindowGeometry KSComputeWindowGeometry(int64_t mode, uint32_t backWidth, uint32_t backHeight, KSSize current,
                                         double width, double screenHeight);

// The frame of a window resized to `size` that keeps the horizontal centre and the
// top edge of `frame`, rounded to whole points.
KSRect KSKeepCentreAndTop(KSRect frame, KSSize size);
// The frame of a window of `size` centred on `screen`, rounded to whole points.
KSRect KSCentreOnScreen(KSRect screen, KSSize size);
