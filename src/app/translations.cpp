#include "app/translations.h"

#include <QCoreApplication>
#include <QLatin1String>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QTranslator>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

namespace {

class ToolkitTexts : public QTranslator {
public:
    using QTranslator::QTranslator;
    QString translate(const char *context, const char *text, const char *disambiguation, int n) const override
    {
        static const char *const faults[] = {"QFile", "QFileDevice", "QIODevice", "QImageWriter", "QSaveFile"};
        const bool isOfFault = std::any_of(std::begin(faults), std::end(faults),
                                           [context](const char *one) { return std::strcmp(one, context) == 0; });
        return isOfFault ? QString() : QTranslator::translate(context, text, disambiguation, n);
    }
};

/// Null where there are none.
QTranslator *textsOf(const QString &language)
{
    auto texts = std::make_unique<QTranslator>(QCoreApplication::instance());
    return texts->load(QStringLiteral(":/translations/morvantide_%1.qm").arg(language)) ? texts.release() : nullptr;
}

} // namespace

QString Translations::install(const QStringList &languages)
{
    for (const QString &one : languages) {
        const QString language = one.section(QRegularExpression(QStringLiteral("[-_]")), 0, 0).toLower();
        if (language == QLatin1String("en") || language == QLatin1String("c"))
            break;
        auto *const texts = textsOf(language);
        if (!texts)
            continue;
        auto *const toolkit = new ToolkitTexts(QCoreApplication::instance());
        if (toolkit->load(QStringLiteral("qtbase_%1").arg(language),
                          QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(toolkit);
        QCoreApplication::installTranslator(texts);
        return language;
    }
    if (auto *const plurals = textsOf(QStringLiteral("en")))
        QCoreApplication::installTranslator(plurals);
    return {};
}
