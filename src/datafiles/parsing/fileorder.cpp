#include "datafiles/parsing/fileorder.h"

#include "spectra/spectrum.h"

#include <algorithm>

void FileOrder::enter(const QString &path)
{
    m_path = path;
    m_present = &m_files[path];
}

void FileOrder::noteName(Names kind, int index, bool isSame)
{
    std::vector<QString> &paths = m_firstTold[kind];
    if (index >= int(paths.size())) {
        contradict(); // what is made for each name, in records and in windows, would have to grow
        paths.resize(std::size_t(index), m_path); // shorter than the names only where memory ran out
        paths.push_back(m_path);
    } else if (m_isChecking && m_path < paths[std::size_t(index)]) {
        if (!isSame || (index > 0 && m_path < paths[std::size_t(index) - 1]))
            contradict(); // in a read the name would stand before others
        paths[std::size_t(index)] = m_path;
    }
}

void FileOrder::noteElectrometers()
{
    if (m_electrometersFile.isNull() || m_path < m_electrometersFile)
        m_electrometersFile = m_path;
}

void FileOrder::noteOtherSettings(bool areEqual)
{
    if (!m_isChecking || !(m_path < m_settingsFile))
        return;
    if (!areEqual)
        contradict();
    m_settingsFile = m_path;
}

/// Another number of electrometers than that of a later file may be the fault.
void FileOrder::noteBadHeader()
{
    if (m_path < m_electrometersFile)
        contradict();
}

void FileOrder::noteSpectra(const QVector<SpectMath::SpectrumInfoPointer> &infos)
{
    if (!m_present)
        return;
    auto &spectra = m_present->spectra;
    for (const auto &info : infos)
        if (std::find(spectra.begin(), spectra.end(), info.get()) == spectra.end())
            spectra.push_back(info.get());
}

void FileOrder::noteFound(const Record &record, const RowTimes &times, NumberGroups groups)
{
    if (!m_isChecking)
        return;
    const bool isSame = record.endTime == times.end && record.beginUtcOffset == times.beginUtcOffset &&
                        record.endUtcOffset == times.endUtcOffset;
    const auto isBefore = [&](const File &later) {
        return !isSame || (groups.currents && later.groups.currents) || (groups.voltages && later.groups.voltages) ||
               (groups.variables && later.groups.variables);
    };
    if (anyLater(times.begin, isBefore))
        contradict();
}

void FileOrder::noteFlags(const Record &record, std::size_t before)
{
    if (m_present)
        m_present->hasFlags = true;
    if (m_isChecking && before > 0 && anyLater(record.beginTime, [](const File &later) { return later.hasFlags; }))
        contradict();
}

void FileOrder::noteSpectrum(const Record &record)
{
    if (!m_isChecking || record.spectra.empty())
        return;
    const auto isBefore = [&record](const File &later) {
        return std::any_of(record.spectra.begin(), record.spectra.end(), [&later](const auto &spectrum) {
            return std::find(later.spectra.begin(), later.spectra.end(), spectrum->info.get()) != later.spectra.end();
        });
    };
    if (anyLater(record.beginTime, isBefore))
        contradict();
}
