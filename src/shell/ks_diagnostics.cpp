// Fatal assertions, heads-up alerts, the clock and debug lines.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <lumivex/lumivex.h>

#include "shell/ks_alert.h"
#include "shell/ks_clock.h"
#include "shell/ks_debug.h"

namespace {

class StandardErrorPresenter : public LVAlertPresenter {
public:
    void present(const std::string &message, const std::string &informative, const std::string &) override
    {
        fprintf(stderr, "%s\n%s\n", message.c_str(), informative.c_str());
    }
};

StandardErrorPresenter pStandardErrorPresenter;
LVAlertPresenter *pAlertPresenter = &pStandardErrorPresenter;

double RealClock()
{
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return (double)ts.tv_sec + (double)ts.tv_nsec * 1e-9;
}
double (*pClock)() = RealClock;

} // namespace

void KSSetAlertPresenter(LVAlertPresenter *presenter)
{
    pAlertPresenter = presenter ? presenter : &pStandardErrorPresenter;
}

LVAlertPresenter *KSAlertPresenter() { return pAlertPresenter; }

void KSExitProcess(int status)
{
    fflush(stdout);
    fflush(stderr);
    _Exit(status);
}

double KSMediaTime() { return pClock(); }
void KSSetClock(double (*clock)()) { pClock = clock ? clock : RealClock; }

void KSDebugLine(const char *format, ...)
{
    char text[1024];
    va_list args;
    va_start(args, format);
    vsnprintf(text, sizeof text, format, args);
    va_end(args);
    printf("KSDEBUG: %s\n", text);
    fflush(stdout);
}

extern "C" void KSAssert(const char *expression, const char *file, int32_t line)
{
    if (!expression) return; // the only way back: a null expression
    const char *slash = file ? strrchr(file, '/') : nullptr;
    const char *name = slash ? slash + 1 : (file ? file : "");
    char text[512];
    snprintf(text, sizeof text, "%s\n%s, line %i", expression, name, (int)line);
    fprintf(stderr, "Fatal Assertion Failure\n%s\n", text);
    pAlertPresenter->present("Fatal Assertion Failure", text, "Quit");
    KSExitProcess(1);
}

extern "C" void KSHeadsUpAlert(const char *title, const char *message)
{
    pAlertPresenter->present(title ? title : "", message ? message : "", "OK");
}
