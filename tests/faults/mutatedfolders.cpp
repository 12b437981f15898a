#include "faults/damagedfile.h"
#include "faults/lane.h"
#include "faults/soundrows.h"

#include "datafiles/reading/commentfile.h"
#include "datafiles/reading/dump.h"
#include "demo/demowriter.h"
#include "demo/legacyfiles.h"
#include "log/logger.h"
#include "spectra/inverterfiles.h"
#include "support/files.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>

#include <unistd.h>

using namespace Faults;

namespace {

constexpr int longestRead = 10000; // ms
constexpr double mostMemory = 400; // MB above what was held before, in which sanitizers have a share
constexpr unsigned hang = 120;     // s, after which the process ends

/// Resets the process's highest memory where that is allowed, and tells it in MB.
class PeakMemory {
public:
    PeakMemory()
    {
        QFile file("/proc/self/clear_refs");
        m_isReset = file.open(QIODevice::WriteOnly) && file.write("5") == 1;
        file.close();
        m_before = peak();
    }
    double growth() const { return m_isReset ? peak() - m_before : 0; }

private:
    static double peak()
    {
        QFile file("/proc/self/status");
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray text = file.readAll();
        const int at = text.indexOf("VmHWM:");
        return text.mid(at + 6, text.indexOf("kB", at) - at - 6).trimmed().toDouble() / 1024;
    }
    bool m_isReset;
    double m_before;
};

/// Ends a trial by a signal if it hangs, and looks at its time and memory.
class Bounds {
public:
    explicit Bounds(Trial &trial) : m_trial(trial)
    {
        alarm(hang);
        m_timer.start();
    }
    ~Bounds()
    {
        alarm(0);
        const qint64 elapsed = m_timer.elapsed();
        const double growth = m_memory.growth();
        m_trial.measure("ms", double(elapsed));
        m_trial.require(elapsed < longestRead, QString("It took %1 ms").arg(elapsed));
        m_trial.require(growth < mostMemory, QString("It took %1 MB").arg(growth));
    }

private:
    Trial &m_trial;
    PeakMemory m_memory;
    QElapsedTimer m_timer;
};

/// The comments of a file, one text each.
QStringList commentsOf(const QString &path)
{
    QStringList all;
    readCommentFile(path, [&all](const CommentLine &line) {
        all << QString("%1 %2 %3 %4 %5")
                   .arg(QString::number(ticksOf(line.begin)), QString::number(ticksOf(line.end)),
                        QString::number(line.beginUtcOffset), line.opmode, line.text);
    });
    return all;
}

/// Whether the list holds those in their order, and others between them.
bool holdsInOrder(const QStringList &list, const QStringList &those)
{
    int at = 0;
    for (const QString &one : those) {
        at = list.indexOf(one, at) + 1;
        if (at == 0)
            return false;
    }
    return true;
}

/// A sound folder with files of each kind, and its judges.
class Sample {
public:
    Sample(const QString &path, int interval, bool isLegacy) : m_folder(path)
    {
        QDir().mkpath(path);
        Demo::Campaign::Settings settings;
        settings.interval = interval;
        const Demo::Campaign campaign(settings);
        if (isLegacy)
            Demo::writeLegacyFiles(campaign, path);
        else
            write(campaign);
        m_rows = std::make_unique<SoundRows>(path);
        for (const DamagedFile &file : m_rows->files())
            m_files << file.name;
    }

    SoundRows &rows() const { return *m_rows; }
    qint64 bytes() const
    {
        qint64 all = m_comments.bytes().size();
        for (const DamagedFile &file : m_rows->files())
            all += file.bytes().size();
        return all;
    }

    /// Damages each file, reads the folder, and looks what came of it.
    void tryDamage(Trial &trial, const std::function<void(DamagedFile &)> &damage) const
    {
        std::vector<DamagedFile> files = m_rows->files();
        for (DamagedFile &file : files)
            damage(file);
        DamagedFile comments = m_comments;
        damage(comments);
        tryFiles(trial, files, comments);
    }
    /// With one of its files cut there, as if they followed each other.
    void tryCut(Trial &trial, qint64 at) const
    {
        std::vector<DamagedFile> files = m_rows->files();
        DamagedFile comments = m_comments;
        for (DamagedFile &file : files) {
            const int size = file.bytes().size();
            if (at >= 0 && at < size)
                file.cut(int(at));
            at -= size;
        }
        if (at >= 0)
            comments.cut(int(at));
        tryFiles(trial, files, comments);
    }

private:
    /// All files of the current format, the day files of two blocks.
    void write(const Demo::Campaign &campaign)
    {
        auto settings = Demo::outputSettings(campaign, m_folder);
        settings.variants[0].currents = settings.variants[0].diagnostics = true;
        Spectrometer::PlainFileOutput output(settings);
        QByteArray flags =
            "# Quilvane flags\nbegin_time\tend_time\topmode\tflags\n# flag z: {type: note, message: x}\n";
        for (int slot = 0; slot < campaign.slotCount(); ++slot) {
            const auto record = campaign.record(slot);
            if (!record)
                continue;
            output.writeRecordRow(*record);
            output.writeCurrentsRow(*record);
            output.writeDiagnosticsRow(*record);
            output.writeSpectraRow(*record);
        }
        output.closeFiles();
        Demo::writeComments(campaign, m_folder);
        const QString name = "20190514-block";
        const QByteArray records = contentOf(QDir(m_folder).filePath(name + ".records"));
        for (const QByteArray &row : records.split('\n'))
            if (row.startsWith("20"))
                flags += row.split('\t').mid(0, 3).join('\t') + "\t!z\n";
        writeFile(QDir(m_folder).filePath(name + ".flags"), flags);
        for (const QString &file : QDir(m_folder).entryList(QDir::Files))
            if (!file.endsWith(".comments"))
                repeatHeader(QDir(m_folder).filePath(file));
        m_comments = DamagedFile(name + ".comments", contentOf(QDir(m_folder).filePath(name + ".comments")));
    }
    /// Before the rows of the second half, with the flags that they use.
    static void repeatHeader(const QString &path)
    {
        const DamagedFile file(path, contentOf(path));
        QByteArray header, text;
        int rows = 0;
        for (const auto &line : file.lines)
            if (isHeaderLine(line.text))
                header += line.text;
            else
                ++rows;
        for (const auto &line : file.lines) {
            if (!isHeaderLine(line.text) && --rows == int(file.lines.size()) / 4)
                text += header;
            text += line.text;
        }
        writeFile(path, text);
    }

    void tryFiles(Trial &trial, const std::vector<DamagedFile> &files, const DamagedFile &comments) const
    {
        for (const DamagedFile &file : files)
            writeFile(trial.path(file.name), file.bytes());
        if (trial.isPlanted)
            plant(trial, files);
        const Bounds bounds(trial);
        QString ofOne, ofTwo;
        const auto byOne = readFiles(trial.folder(), m_files, 1, 0, &ofOne);
        const auto byTwo = readFiles(trial.folder(), m_files, 2, std::size_t(trial.pick(100, 50000)), &ofTwo);
        const QString fault = m_rows->faultOf(files, *byOne);
        trial.count("sound rows", m_rows->comparedRows());
        trial.require(fault.isEmpty(), fault);
        trial.require(Dump(*byOne).text() == Dump(*byTwo).text(), "Two threads read other records");
        trial.require(ofOne == ofTwo, "Two threads complain otherwise");
        if (!comments.name.isEmpty())
            tryComments(trial, comments);
    }
    /// A digit of a sound row becomes another one, as if a field of another row had been taken.
    static void plant(Trial &trial, std::vector<DamagedFile> files)
    {
        std::vector<std::pair<DamagedFile *, QByteArray *>> rows;
        for (DamagedFile &file : files)
            for (auto &line : file.lines)
                if (line.origin != DamagedFile::changed && !isHeaderLine(line.text))
                    rows.emplace_back(&file, &line.text);
        if (rows.empty())
            return;
        const auto [file, row] = rows[std::size_t(trial.pick(0, int(rows.size()) - 1))];
        const int at = row->size() - trial.pick(2, 400);
        if (at > 90 && std::isdigit(row->at(at)))
            (*row)[at] = row->at(at) == '7' ? '8' : '7';
        writeFile(trial.path(file->name), file->bytes());
    }
    void tryComments(Trial &trial, const DamagedFile &comments) const
    {
        const QString path = trial.path(comments.name);
        QStringList expected;
        const QStringList all = commentsOf(QDir(m_folder).filePath(comments.name));
        if (!comments.lines.empty() && comments.lines[0].origin == 0)
            for (const auto &line : comments.lines)
                if (line.origin > 0)
                    expected << all[line.origin - 1];
        writeFile(path, comments.bytes());
        trial.require(holdsInOrder(commentsOf(path), expected), "Comments are missing");
        trial.count("comments", expected.size());
    }

    QString m_folder;
    QStringList m_files;
    DamagedFile m_comments;
    std::unique_ptr<SoundRows> m_rows;
};

/// Inverter files in a folder, some of which are damaged.
class InverterSample {
public:
    explicit InverterSample(const QString &path) : m_folder(path)
    {
        const Demo::Campaign campaign({});
        Demo::writeInverterFiles(campaign.inverterFiles(), path);
        for (const QString &name : QDir(path).entryList(QDir::Files, QDir::Name)) {
            m_files.emplace_back(name, contentOf(QDir(path).filePath(name)));
            m_results << (name.endsWith(".inverter") ? resultsOf({QDir(path).filePath(name)}) : QStringList());
        }
    }
    void run(Trial &trial) const
    {
        QStringList paths, expected;
        for (std::size_t i = 0; i < m_files.size(); ++i) {
            DamagedFile file = m_files[i];
            if (trial.pick(0, 1) != 0) {
                const int way = trial.pick(0, 3);
                if (way == 0)
                    file.cut(trial.pick(0, file.bytes().size()));
                else if (way == 1)
                    file.changeLines(trial.pick(1, 3), false, trial.random);
                else
                    file.changeBytes(way == 2 ? 0.02 : 0.001, 1, false, trial.random);
            } else {
                expected << m_results[int(i)];
            }
            paths << trial.path(file.name);
            // The planted fault is a neighbour's numbers.
            writeFile(paths.last(),
                      trial.isPlanted && file.name == "ions-pos.inverter" ? m_files[2].bytes() : file.bytes());
        }
        const Bounds bounds(trial);
        trial.require(holdsInOrder(resultsOf(paths), expected), "A sound inverter is missing, or has become another");
        trial.count("sound inverters", expected.size());
    }

private:
    /// What each inverter makes of the same signal.
    static QStringList resultsOf(const QStringList &paths)
    {
        QStringList errors, all;
        for (const auto &inverter : SpectMath::loadChosenInverters(paths, unitTable(), &errors)) {
            QString text = inverter->info()->name + inverter->info()->hash;
            const std::size_t currents = inverter->model().settings.instrumentMatrix.size1();
            try {
                const auto spectrum = inverter->invert(RealVector(currents, 10), RealVector(currents, 1));
                for (const double value : spectrum->concentrations)
                    text += ' ' + QString::number(value, 'g', 17);
            } catch (const Inversion::InversionException &) {
            }
            all << text;
        }
        return all;
    }

    QString m_folder;
    std::vector<DamagedFile> m_files;
    QList<QStringList> m_results;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Log::RootLogger::instance().setFilter([](const Log::Entry &) { return false; });
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QTemporaryDir place;
    const Sample days(place.filePath("days"), 3600, false), oldDays(place.filePath("old"), 3600, true);
    const Sample small(place.filePath("small"), 21600, false), oldSmall(place.filePath("oldsmall"), 21600, true);
    const InverterSample inverters(place.filePath("inverters"));

    const auto withBytes = [&](double share) {
        return [&, share](Trial &trial) {
            const bool sparesHeaders = trial.number % 3 != 0;
            const int inRow = trial.number % 2 ? 50 : 1;
            (trial.number % 8 >= 6 ? oldDays : days).tryDamage(trial, [&](DamagedFile &file) {
                file.changeBytes(share, inRow, sparesHeaders, trial.random);
            });
        };
    };
    const auto withLines = [&](Trial &trial) {
        const bool sparesHeaders = trial.number % 3 != 0;
        (trial.number % 4 == 3 ? oldDays : days).tryDamage(trial, [&](DamagedFile &file) {
            file.changeLines(trial.pick(0, 5), sparesHeaders, trial.random);
        });
    };
    const auto cut = [&](Trial &trial) {
        const qint64 at = trial.number % (small.bytes() + oldSmall.bytes());
        if (at < small.bytes())
            small.tryCut(trial, at);
        else
            oldSmall.tryCut(trial, at - small.bytes());
    };
    return runLane("mutatedfolders", {{"2 % of bytes", 8000, withBytes(0.02)},
                                      {"0.1 % of bytes", 8000, withBytes(0.001)},
                                      {"lines", 8000, withLines},
                                      {"cut at each byte", small.bytes() + oldSmall.bytes(), cut},
                                      {"inverters", 4000, [&](Trial &trial) { inverters.run(trial); }}});
}
