#include "resources/resources.h"
#include "util/programlocale.h"

#include <QApplication>

#include <gtest/gtest.h>

/// Windows are built for real on the offscreen platform, with the numbers' locale as the program sets it.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    registerResources();
    setProgramLocale();
    return RUN_ALL_TESTS();
}
