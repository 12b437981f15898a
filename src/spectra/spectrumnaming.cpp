#include "spectra/spectrumnaming.h"

#include <QHash>
#include <QSet>

namespace SpectrumNaming {

QStringList displayNames(const QList<SpectMath::SpectrumInfoPointer> &infos)
{
    QHash<QString, int> namesakes;
    for (const auto &info : infos)
        ++namesakes[info->name];

    QStringList names;
    QHash<QString, QSet<QString>> usedSuffixes; // by name
    for (const auto &info : infos) {
        if (namesakes.value(info->name) == 1) {
            names.append(info->name);
            continue;
        }
        QString suffix = info->inverterName.isEmpty() ? info->comment : info->inverterName;
        QSet<QString> &used = usedSuffixes[info->name];
        if (suffix.isEmpty())
            suffix = info->hash.left(4);
        else if (used.contains(suffix))
            suffix += QLatin1Char(' ') + info->hash.left(4);
        used.insert(suffix);
        names.append(QStringLiteral("%1 (%2)").arg(info->name, suffix));
    }
    return names;
}

QString taggedName(const QString &displayName, const QString &tag)
{
    return tag.isEmpty() ? displayName : QStringLiteral("%1 %2").arg(displayName, tag);
}

} // namespace SpectrumNaming
