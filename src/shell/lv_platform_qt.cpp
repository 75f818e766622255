// The Qt platform (placeholder until the application and window land).
#include "shell/ks_platform.h"

LVPlatform *KSCreateQtPlatform() { return nullptr; }
