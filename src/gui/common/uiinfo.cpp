#include "gui/common/uiinfo.h"

#include "spectra/spectrumnaming.h"

#include <algorithm>

UiInfo::UiInfo() = default;
UiInfo::~UiInfo() = default;

UiInfo::InfoPointer UiInfo::spectrumById(const QString &id) const
{
    const auto found = std::find_if(m_spectrumInfos.begin(), m_spectrumInfos.end(),
                                    [&id](const InfoPointer &info) { return info->hash == id; });
    return found == m_spectrumInfos.end() ? nullptr : *found;
}

bool UiInfo::isKnown(InfoKey info) const
{
    return std::any_of(m_spectrumInfos.begin(), m_spectrumInfos.end(),
                       [info](const InfoPointer &known) { return known.get() == info; });
}

void UiInfo::setData(std::shared_ptr<const Spectrometer::RecordMetadata> metadata, const QList<InfoPointer> &infos)
{
    clear();
    m_metadata = std::move(metadata);
    m_spectrumInfos = infos;
}

void UiInfo::addSpectrum(const InfoPointer &info, const QString &tag)
{
    if (!info || spectrumById(info->hash))
        return;
    m_spectrumInfos.append(info);
    m_spectrumTags.insert(info->hash, tag);
}

void UiInfo::removeSpectrum(InfoKey info)
{
    const auto found = std::find_if(m_spectrumInfos.begin(), m_spectrumInfos.end(),
                                    [info](const InfoPointer &known) { return known.get() == info; });
    if (found == m_spectrumInfos.end())
        return;
    m_spectrumTags.remove((*found)->hash);
    m_spectrumComments.remove((*found)->hash);
    m_spectrumInfos.erase(found);
}

void UiInfo::clear()
{
    m_metadata.reset();
    m_spectrumInfos.clear();
    m_spectrumTags.clear();
    m_spectrumComments.clear();
    m_gridLayouts.clear();
    m_values.clear();
    setHighlights({}, {});
}

void UiInfo::setSpectrumColor(InfoKey info, const QColor &color)
{
    if (!info || !color.isValid())
        return;
    m_spectrumColors.insert(info->hash, color);
    m_userColors.insert(info->hash, color);
}

void UiInfo::setUserColors(const SpectrumColors::ByHash &colors)
{
    for (auto it = m_userColors.constBegin(); it != m_userColors.constEnd(); ++it)
        m_spectrumColors.remove(it.key());
    m_userColors = colors;
}

void UiInfo::setSpectrumComment(InfoKey info, const QString &comment)
{
    if (info && spectrumById(info->hash))
        m_spectrumComments.insert(info->hash, comment);
}

void UiInfo::publish()
{
    m_spectrumNames.clear();
    QList<InfoPointer> infos;
    for (const InfoPointer &info : qAsConst(m_spectrumInfos))
        infos.append(commented(info));
    const QStringList names = SpectrumNaming::displayNames(infos);
    for (int i = 0; i < names.size(); ++i)
        m_spectrumNames.insert(m_spectrumInfos[i]->hash, names[i]);
    for (auto it = m_userColors.constBegin(); it != m_userColors.constEnd(); ++it)
        m_spectrumColors.insert(it.key(), *it);
    if (m_metadata) // without data the colours wait for the next
        m_spectrumColors = SpectrumColors::updated(m_spectrumColors, m_spectrumInfos);
    m_opmodeColors = m_metadata ? SpectrumColors::opmodeColors(m_metadata->opmodes) : std::vector<QColor>();
    Q_EMIT configUpdated();
}

QString UiInfo::spectrumName(InfoKey info) const
{
    if (!info)
        return {};
    return SpectrumNaming::taggedName(m_spectrumNames.value(info->hash, info->name), m_spectrumTags.value(info->hash));
}

QString UiInfo::spectrumComment(InfoKey info) const
{
    return info ? m_spectrumComments.value(info->hash, info->comment) : QString();
}

UiInfo::InfoPointer UiInfo::commented(const InfoPointer &info) const
{
    if (!info || spectrumComment(info.get()) == info->comment)
        return info;
    auto copy = std::make_shared<SpectMath::SpectrumInfo>(*info);
    copy->comment = spectrumComment(info.get());
    return copy;
}

QColor UiInfo::spectrumColor(InfoKey info) const
{
    return info ? m_spectrumColors.value(info->hash) : QColor();
}

QColor UiInfo::opmodeColor(int opmode) const
{
    return opmode >= 0 && opmode < int(m_opmodeColors.size()) ? m_opmodeColors[std::size_t(opmode)] : QColor();
}

void UiInfo::setHighlights(const QStringList &variables, const QList<int> &electrometers)
{
    if (variables == m_highlightedVariables && electrometers == m_highlightedElectrometers)
        return;
    m_highlightedVariables = variables;
    m_highlightedElectrometers = electrometers;
    Q_EMIT highlightsChanged();
}

void UiInfo::setValue(const QString &key, const QVariant &value)
{
    if (m_values.value(key) == value)
        return;
    m_values.insert(key, value);
    Q_EMIT variableChanged(key);
}
