#include "spectra/inverterchoice.h"

#include <QHash>
#include <QSet>

namespace SpectMath {

namespace {

QSet<QString> modesOf(const std::deque<std::shared_ptr<Record>> &records, const QVector<Opmode> &opmodes)
{
    std::vector<bool> occurs(std::size_t(opmodes.size()), false);
    for (const auto &record : records)
        if (record->opmode >= 0 && record->opmode < opmodes.size())
            occurs[std::size_t(record->opmode)] = true;
    QSet<QString> modes;
    for (int i = 0; i < opmodes.size(); ++i)
        if (occurs[std::size_t(i)])
            modes.insert(opmodes[i].name);
    return modes;
}

} // namespace

InverterChoice chooseInverters(const InverterList &loaded, const std::deque<std::shared_ptr<Record>> &records,
                               const Spectrometer::RecordMetadata &metadata)
{
    const QSet<QString> modes = modesOf(records, metadata.opmodes);
    QHash<QString, std::size_t> lastOfHash;
    for (std::size_t i = 0; i < loaded.size(); ++i)
        lastOfHash[loaded[i]->info()->hash] = i;

    InverterChoice choice;
    for (std::size_t i = 0; i < loaded.size(); ++i) {
        const SpectrumInfo &info = *loaded[i]->info();
        if (!modes.contains(info.opmode))
            continue;
        (lastOfHash[info.hash] == i ? choice.used : choice.replaced).push_back(loaded[i]);
    }
    return choice;
}

} // namespace SpectMath
