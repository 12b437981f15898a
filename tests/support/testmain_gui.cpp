#include "resources/resources.h"

#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

#include <clocale>

/// Windows are built for real on the offscreen platform, with the numbers' locale as the program sets it.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    registerResources();
    std::setlocale(LC_NUMERIC, "C");
    QLocale::setDefault(QLocale(QLocale::C, QLocale::AnyCountry));
    return RUN_ALL_TESTS();
}
