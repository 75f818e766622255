// The window's size rules as plain functions of sizes, for the Qt window to apply.
#include "shell/ks_window_rules.h"

#include <algorithm>
#include <cmath>

namespace
{

// The picture height that goes with a machine width in a corrected mode (integer
// arithmetic, as the machine's sizes are whole pixels); 0 for the free mode.
uint32_t CorrectedHeight(int64_t mode, uint32_t backWidth, uint32_t backHeight)
{
    switch (mode) {
    case KS_ASPECT_4_3:
        return backWidth * 3 / 4;
    case KS_ASPECT_16_9:
        return backWidth * 9 / 16;
    case KS_ASPECT_HARDWARE:
        return backHeight;
    default:
        return 0;
    }
}

// The window width that goes with a window height in a corrected mode.
double WidthForHeight(int64_t mode, double height, uint32_t backWidth, uint32_t backHeight)
{
    switch (mode) {
    case KS_ASPECT_4_3:
        return (height - kTitleBarAllowance) / 3 * 4;
    case KS_ASPECT_16_9:
        return (height - kTitleBarAllowance) / 9 * 16;
    default:
        return height * backWidth / backHeight;
    }
}

} // namespace

KSSize KSRigidResize(KSSize proposed, bool rigid, int64_t mode, uint32_t backWidth, uint32_t backHeight)
{
    if (!rigid || backWidth == 0) return proposed;
    const uint32_t h = CorrectedHeight(mode, backWidth, backHeight);
    if (h == 0) return proposed;
    const double w = backWidth;
    const double factor = std::max(std::max(1.0, std::trunc(proposed.width / w)), std::trunc(proposed.height / h));
    return {w * factor, factor * h + kTitleBarAllowance};
}

KSSize KSFullScreenContentSize(KSSize screen, int64_t mode, uint32_t backWidth, uint32_t backHeight)
{
    const double W = screen.width, H = screen.height;
    switch (mode) {
    case KS_ASPECT_4_3:
        if (W * 3 / 4 > H) return {H * 4 / 3, H};
        return {W, W * 3 / 4};
    case KS_ASPECT_16_9:
        if (W * 9 / 16 > H) return {H * 16 / 9, H};
        return {W, W * 9 / 16};
    case KS_ASPECT_HARDWARE: {
        if (backWidth == 0 || backHeight == 0) return screen;
        const double height = W * backHeight / backWidth;
        if (height > H) return {H * backWidth / backHeight, H};
        return {W, height};
    }
    default:
        return screen;
    }
}

KSWindowGeometry KSComputeWindowGeometry(int64_t mode, uint32_t backWidth, uint32_t backHeight, KSSize current,
                                         double width, double screenHeight)
{
    KSWindowGeometry geometry;
    const double w = backWidth, h = backHeight;
    if (mode == KS_ASPECT_HARDWARE && (backWidth == 0 || backHeight == 0)) mode = KS_ASPECT_UNCORRECTED;
    switch (mode) {
    case KS_ASPECT_4_3:
        geometry.minimum = {w, (double)(backWidth * 3 / 4) + kTitleBarAllowance};
        geometry.aspect = {4, 3};
        geometry.size = {width, width * 3 / 4 + kTitleBarAllowance};
        break;
    case KS_ASPECT_16_9:
        geometry.minimum = {w, (double)(backWidth * 9 / 16) + kTitleBarAllowance};
        geometry.aspect = {16, 9};
        geometry.size = {width, width * 9 / 16 + kTitleBarAllowance};
        break;
    case KS_ASPECT_HARDWARE:
        geometry.minimum = {w, h + kTitleBarAllowance};
        geometry.aspect = {w, h};
        geometry.size = {width, width / w * h};
        break;
    default:
        geometry.minimum = {w, h + kTitleBarAllowance};
        geometry.resetIncrements = true;
        return geometry;
    }
    geometry.hasAspect = true;
    if (geometry.size.height > screenHeight) {
        geometry.size.height = screenHeight;
        geometry.size.width = WidthForHeight(mode, screenHeight, backWidth, backHeight);
    }
    if (geometry.size.height < geometry.minimum.height) {
        geometry.size.height = geometry.minimum.height;
        geometry.size.width = WidthForHeight(mode, geometry.minimum.height, backWidth, backHeight);
    }
    geometry.resize = geometry.size.width != current.width || geometry.size.height != current.height;
    return geometry;
}

KSRect KSKeepCentreAndTop(KSRect frame, KSSize size)
{
    const double centre = frame.x + frame.width / 2;
    return {std::round(centre - size.width / 2), frame.y, size.width, size.height};
}

KSRect KSCentreOnScreen(KSRect screen, KSSize size)
{
    return {std::round(screen.x + (screen.width - size.width) / 2),
            std::round(screen.y + (screen.height - size.height) / 2), size.width, size.height};
}
