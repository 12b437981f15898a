#include "gui/morvantide/rereading.h"

Rereading::Rereading(const UiInfo &uiInfo, SpectMath::InverterList inverters) : m_inverters(std::move(inverters))
{
    for (const UiInfo::InfoPointer &info : uiInfo.spectrumInfos())
        m_comments.insert(info->hash, uiInfo.spectrumComment(info.get()));
}

void Rereading::restoreComments(UiInfo &uiInfo) const
{
    bool isAny = false;
    for (const UiInfo::InfoPointer &info : uiInfo.spectrumInfos()) {
        const auto comment = m_comments.constFind(info->hash);
        if (comment == m_comments.constEnd() || *comment == uiInfo.spectrumComment(info.get()))
            continue;
        uiInfo.setSpectrumComment(info.get(), *comment);
        isAny = true;
    }
    if (isAny)
        uiInfo.publish();
}
