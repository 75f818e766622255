// One QApplication for the whole test program (dialogs are widgets, text needs a
// font database), on the offscreen platform unless another one was chosen.
#include <QApplication>

#include <gtest/gtest.h>

namespace {

class QtEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "lumivex-test";
        static char *argv[] = {name, nullptr};
        if (!QCoreApplication::instance()) new QApplication(argc, argv);
    }
};

const auto *pEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

} // namespace
