#include "app/translations.h"

#include "resources/resources.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

TEST(Translations, OfTheFirstLanguageThatThereAreTextsInAreTaken)
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    registerResources();
    const auto quit = [] { return QCoreApplication::translate("MainWindowBase", "&Quit"); };
    const auto days = [](int n) { return QCoreApplication::translate("OverviewLabel", "%n days", nullptr, n); };
    for (const QStringList &english : {QStringList{}, {"C"}, {"en-US", "en", "de-DE", "de"}, {"fr-FR", "fr"}}) {
        EXPECT_EQ(Translations::install(english), "") << qPrintable(english.join(' '));
        EXPECT_EQ(quit(), "&Quit");
        EXPECT_EQ(days(1) + ", " + days(2), "1 day, 2 days");
    }
    EXPECT_EQ(Translations::install({"fr-FR", "fr", "de-AT", "en"}), "de");
    EXPECT_EQ(quit() + ", " + days(1) + ", " + days(2), "&Beenden, 1 Tag, 2 Tage");
    EXPECT_EQ(QCoreApplication::translate("QIODevice", "Permission denied"), "Permission denied"); // as in the log
}
