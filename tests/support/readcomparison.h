#pragma once

#include "datafiles/reading/filereadertask.h"
#include "store/datastore.h"

#include <QDir>

#include <algorithm>
#include <cmath>
#include <memory>

/// What is in two records of the same moment, bit for bit but for the kind of NaN.
inline bool isEqual(const Record &a, const Record &b)
{
    const auto same = [](const auto &x, const auto &y) {
        return x.size() == y.size() && std::equal(x.begin(), x.end(), y.begin(), [](double p, double q) {
                   return p == q || (std::isnan(p) && std::isnan(q));
               });
    };
    const auto spectra = [&](const auto &x, const auto &y) {
        return x->info->hash == y->info->hash && same(x->concentrations, y->concentrations);
    };
    return static_cast<const Spectrometer::RecordHead &>(a) == b && same(a.currents, b.currents) &&
           same(a.variables, b.variables) && same(a.voltages, b.voltages) && a.flags.size() == b.flags.size() &&
           std::equal(a.spectra.begin(), a.spectra.end(), b.spectra.begin(), b.spectra.end(), spectra);
}

/// In what a store differs from that of a read of all files of the folder; empty if it doesn't.
inline QString differenceToARead(const Datastore &found, const QString &folder)
{
    const auto reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    FileReaderSettings settings;
    settings.folder = folder;
    settings.files = QDir(folder).entryList(QDir::Files);
    FileReaderTask(reader, settings).run();
    const Datastore &expected = *reader->datastore();
    if (found.size() != expected.size())
        return QString("%1 records instead of %2").arg(found.size()).arg(expected.size());
    for (int i = 0; i < found.size(); ++i)
        if (!isEqual(*found.at(i), *expected.at(i)))
            return QString("record %1 is another one").arg(i);
    return {};
}
