#include "app/commandline.h"

CommandLine::RecoverOption CommandLine::recoverOption(const QStringList &arguments)
{
    const int index = arguments.indexOf(QStringLiteral("--recover"));
    if (index < 0)
        return {};
    return {true, arguments.value(index + 1)};
}

QStringList CommandLine::positionalArguments(const QStringList &arguments)
{
    QStringList words;
    for (const QString &argument : arguments.mid(1)) {
        if (!argument.startsWith(QLatin1Char('-')))
            words << argument;
    }
    return words;
}
