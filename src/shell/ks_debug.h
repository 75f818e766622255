// Debug notes to standard output, each line beginning "KSDEBUG: ".
#pragma once

void KSDebugLine(const char *format, ...) __attribute__((format(printf, 1, 2)));
