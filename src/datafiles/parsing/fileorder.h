#pragma once

#include "datafiles/parsing/newrecord.h"
#include "spectra/spectruminfo.h"

#include <QString>

#include <map>
#include <vector>

/// Remembers which file of a read told what. A record is put together from rows of several files in the order of the
/// files' names. Rows that a file gets after the read come later than those of the files behind it; this class tells
/// whether the outcome is still that of a read of all files in their order.
class FileOrder {
public:
    /// The file of that path is the one whose lines come next.
    void enter(const QString &path);
    /// From here on rows come that were appended, and are checked.
    void startChecking() { m_isChecking = true; }
    bool isChecking() const { return m_isChecking; }
    /// While a file's header is read once more, nothing is checked.
    void pauseChecking(bool on) { m_isChecking = !on; }
    /// Whether a read of all files would have had another outcome, or the read has learnt names that it didn't know.
    bool isContradicted() const { return m_isContradicted; }
    void contradict() { m_isContradicted = m_isContradicted || m_isChecking; }

    // ---- headers
    enum Names { Opmodes, Variables, Spectra, nameKinds };
    /// The present file tells the name of that index, which is the next one if it is new; else all that is told along
    /// with it is the same as before, or not: what was told first holds.
    void noteName(Names kind, int index, bool isSame = true);
    void noteElectrometers();
    /// The settings that a header tells are not taken because another header told some before.
    void noteOtherSettings(bool areEqual);
    void noteSettings() { m_settingsFile = m_path; }
    void noteBadHeader();
    void noteSpectra(const QVector<SpectMath::SpectrumInfoPointer> &infos);

    // ---- rows
    void noteRow(RecordTime begin, NumberGroups groups)
    {
        if (m_present)
            m_present->extend(begin, groups);
    }
    /// A row belongs to a record that was there before.
    void noteFound(const Record &record, const RowTimes &times, NumberGroups groups);
    void noteFoundMode(const Record &record, bool isSame)
    {
        if (m_isChecking && !isSame && isLaterKnown(record.beginTime))
            contradict();
    }
    /// A row has brought flags to a record that had `before` of them.
    void noteFlags(const Record &record, std::size_t before);
    /// A row is to bring a spectrum to a record.
    void noteSpectrum(const Record &record);

private:
    /// What the rows of one file hold.
    struct File {
        RecordTime first = latestRecordTime;
        RecordTime last = earliestRecordTime;
        NumberGroups groups;
        bool hasFlags = false;
        std::vector<const SpectMath::SpectrumInfo *> spectra;

        bool covers(RecordTime begin) const { return first <= begin && begin <= last; }
        void extend(RecordTime begin, NumberGroups more)
        {
            first = std::min(first, begin);
            last = std::max(last, begin);
            groups.currents |= more.currents;
            groups.voltages |= more.voltages;
            groups.variables |= more.variables;
        }
    };
    using Files = std::map<QString, File>;

    /// Calls test(file) for files behind the present one that have rows about that time, until it is true.
    template<typename Test>
    bool anyLater(RecordTime begin, Test test) const
    {
        for (auto file = m_files.upper_bound(m_path); file != m_files.end(); ++file)
            if (file->second.covers(begin) && test(file->second))
                return true;
        return false;
    }
    bool isLaterKnown(RecordTime begin) const
    {
        return anyLater(begin, [](const File &) { return true; });
    }

    bool m_isChecking = false;
    bool m_isContradicted = false;
    QString m_path;
    File *m_present = nullptr;
    Files m_files;
    std::vector<QString> m_firstTold[nameKinds]; ///< paths by the index of the name
    QString m_electrometersFile;                 ///< that told their number; null before
    QString m_settingsFile;
};
