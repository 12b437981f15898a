#include "gui/common/spectrumcolors.h"

#include <QMap>

#include <optional>

namespace SpectrumColors {
namespace {

/// Three shades of a hue.
struct Hue {
    QRgb light;
    QRgb middle;
    QRgb dark;
};

constexpr Hue butter{0xfffce94f, 0xffedd400, 0xffc4a000};
constexpr Hue chameleon{0xff8ae234, 0xff73d216, 0xff4e9a06};
constexpr Hue orange{0xfffcaf3e, 0xfff57900, 0xffce5c00};
constexpr Hue chocolate{0xffe9b96e, 0xffc17d11, 0xff8f5902};
constexpr Hue plum{0xffad7fa8, 0xff75507b, 0xff5c3566};
constexpr Hue skyBlue{0xff729fcf, 0xff3465a4, 0xff204a87};
constexpr Hue scarletRed{0xffef2929, 0xffcc0000, 0xffa40000};

QList<QColor> colors(std::initializer_list<QRgb> values)
{
    QList<QColor> list;
    for (QRgb value : values)
        list.append(QColor(value));
    return list;
}

using NamedColors = QMap<QString, QColor>;

const NamedColors &namedColors()
{
    static const NamedColors map{{QStringLiteral("particles"), QColor(skyBlue.dark)},
                                 {QStringLiteral("particles neg"), QColor(skyBlue.dark)},
                                 {QStringLiteral("particles pos"), QColor(scarletRed.dark)},
                                 {QStringLiteral("ions neg"), QColor(skyBlue.light)},
                                 {QStringLiteral("ions pos"), QColor(scarletRed.light)}};
    return map;
}

const NamedColors &knownModes()
{
    static const NamedColors map{{QStringLiteral("offset"), QColor(butter.dark)},
                                 {QStringLiteral("particles"), QColor(skyBlue.dark)},
                                 {QStringLiteral("alterch"), QColor(chameleon.dark)},
                                 {QStringLiteral("ions"), QColor(scarletRed.dark)}};
    return map;
}

const QList<QColor> &paletteFor(const QString &name)
{
    if (name.endsWith(QLatin1String(" pos")))
        return positivePalette();
    if (name.endsWith(QLatin1String(" neg")))
        return negativePalette();
    return generalPalette();
}

using UseCounts = QHash<QRgb, int>;

QColor leastUsed(std::optional<QColor> candidate, const QList<QColor> &palette, const UseCounts &uses)
{
    for (int level = 0;; ++level) {
        if (candidate && uses.value(candidate->rgb()) <= level)
            return *candidate;
        for (const QColor &color : palette) {
            if (uses.value(color.rgb()) <= level) {
                candidate = color;
                break;
            }
        }
    }
}

} // namespace

const QList<QColor> &generalPalette()
{
    static const QList<QColor> list =
        colors({plum.dark, chocolate.dark, orange.dark, butter.middle, skyBlue.middle, chameleon.middle, plum.middle,
                chocolate.middle, scarletRed.middle, orange.middle, butter.light, skyBlue.light, chameleon.light,
                plum.light, chocolate.light, scarletRed.light, orange.light});
    return list;
}

const QList<QColor> &negativePalette()
{
    static const QList<QColor> list = colors({plum.dark, skyBlue.middle, plum.middle, skyBlue.light, plum.light});
    return list;
}

const QList<QColor> &positivePalette()
{
    static const QList<QColor> list =
        colors({orange.dark, scarletRed.middle, orange.middle, scarletRed.light, orange.light});
    return list;
}

std::vector<QColor> opmodeColors(const QVector<Opmode> &opmodes)
{
    std::vector<QColor> result;
    int next = 0;
    for (const Opmode &mode : opmodes) {
        const auto known = knownModes().constFind(mode.name);
        if (known != knownModes().constEnd())
            result.push_back(*known);
        else
            result.push_back(generalPalette().at(next++ % generalPalette().size()));
    }
    return result;
}

ByHash updated(const ByHash &former, const QList<SpectMath::SpectrumInfoPointer> &infos)
{
    ByHash result;
    UseCounts uses;
    for (const auto &info : infos) {
        const auto known = former.constFind(info->hash);
        if (known != former.constEnd() && !result.contains(info->hash)) {
            result.insert(info->hash, *known);
            ++uses[known->rgb()];
        }
    }
    NamedColors named = namedColors();
    for (const auto &info : infos) {
        if (result.contains(info->hash))
            continue;
        std::optional<QColor> candidate;
        const auto own = named.find(info->name);
        if (own != named.end()) {
            candidate = *own;
            named.erase(own);
        }
        const QColor color = leastUsed(candidate, paletteFor(info->name), uses);
        ++uses[color.rgb()];
        result.insert(info->hash, color);
    }
    return result;
}

} // namespace SpectrumColors
