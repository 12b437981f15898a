#include "gui/common/dataexport/spectrachoice.h"

#include "util/textescape.h"

SpectraChoice::SpectraChoice(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent)
    : ChoiceButton(tr("None selected"), tr("no spectra"), parent), m_uiInfo(std::move(uiInfo))
{
    setObjectName(QStringLiteral("spectraChoice"));
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &SpectraChoice::listSpectra);
    listSpectra();
}

void SpectraChoice::listSpectra()
{
    std::vector<Entry> entries;
    for (const auto &info : m_uiInfo->spectrumInfos()) {
        const QString name = m_uiInfo->spectrumName(info.get());
        entries.push_back({info->hash, name, fillMarkers(tr("%2: %1"), {name, info->opmode})});
    }
    setEntries(entries);
}
