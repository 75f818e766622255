// One QGuiApplication for the whole test program (text needs a font database), on
// the offscreen platform unless another one was chosen.
#include <QGuiApplication>

#include <gtest/gtest.h>

#include "overlay_fixture.h"

double OverlayClock::now;

namespace
{

class QtEnvironment : public ::testing::Environment
{
  public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "test_overlay";
        static char *argv[] = {name, nullptr};
        if (!QGuiApplication::instance()) new QGuiApplication(argc, argv);
    }
};

const auto *pEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

} // namespace
