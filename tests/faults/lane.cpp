#include "faults/lane.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace Faults {

namespace {

constexpr double binsPerUnit = 100; ///< of the logarithm
constexpr int mostFindings = 50;
constexpr int drawnNumbers = 0x7fffffff; ///< from the goal on

void tell(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

/// Another text for other programs: by the bytes of each, and by the sizes and times of the libraries that it loads.
QString digestOf(const QStringList &programs)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString &program : programs) {
        QFile file(program);
        if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
            qFatal("%s can't be read", qPrintable(program));
        QProcess libraries;
        libraries.start("ldd", {program});
        libraries.waitForFinished();
        for (const QByteArray &word : libraries.readAllStandardOutput().simplified().split(' ')) {
            const QFileInfo library(QFile::decodeName(word));
            if (library.isAbsolute() && library.isFile())
                hash.addData(word + QByteArray::number(library.size()) +
                             QByteArray::number(library.lastModified().toMSecsSinceEpoch()));
        }
    }
    return QString::fromLatin1(hash.result().toHex());
}

/// What is known of a kind.
struct Standing {
    QString subject;  ///< the programs that all of this was found of, but the findings, which are to be tried again
    qint64 next = 0;  ///< the number of the next trial
    qint64 drawn = 0; ///< trials beyond the goal
    double seconds = 0;
    bool isPlantedFound = false;
    std::map<qint64, QString> findings;
    Tally tally;

    QJsonObject toJson() const
    {
        QJsonObject counts, measured, found;
        for (const auto &[name, count] : tally.counts)
            counts[name] = double(count);
        for (const auto &[name, bins] : tally.measured) {
            QJsonObject all;
            for (const auto &[bin, count] : bins)
                all[QString::number(bin)] = double(count);
            measured[name] = all;
        }
        for (const auto &[trial, text] : findings)
            found[QString::number(trial)] = text;
        return {{"subject", subject},
                {"next", double(next)},
                {"drawn", double(drawn)},
                {"seconds", seconds},
                {"planted found", isPlantedFound},
                {"counts", counts},
                {"measured", measured},
                {"findings", found}};
    }
    static Standing of(const QJsonObject &json)
    {
        Standing standing;
        standing.next = qint64(json["next"].toDouble());
        standing.seconds = json["seconds"].toDouble();
        standing.drawn = qint64(json["drawn"].toDouble());
        standing.isPlantedFound = json["planted found"].toBool();
        standing.subject = json["subject"].toString();
        const QJsonObject counts = json["counts"].toObject(), measured = json["measured"].toObject(),
                          found = json["findings"].toObject();
        for (auto i = counts.begin(); i != counts.end(); ++i)
            standing.tally.counts[i.key()] = qint64(i->toDouble());
        for (auto i = measured.begin(); i != measured.end(); ++i) {
            const QJsonObject bins = i->toObject();
            for (auto bin = bins.begin(); bin != bins.end(); ++bin)
                standing.tally.measured[i.key()][bin.key().toInt()] = qint64(bin->toDouble());
        }
        for (auto i = found.begin(); i != found.end(); ++i)
            standing.findings[i.key().toLongLong()] = i->toString();
        return standing;
    }
};

class Lane {
public:
    Lane(QString name, std::vector<Kind> kinds, QString stateFile)
        : m_name(std::move(name)), m_kinds(std::move(kinds)), m_stateFile(std::move(stateFile))
    {
    }

    /// What was counted before.
    void load()
    {
        QFile file(m_stateFile);
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QJsonObject all = QJsonDocument::fromJson(file.readAll()).object();
        for (const Kind &kind : m_kinds)
            m_standings[kind.name] = Standing::of(all[kind.name].toObject());
    }

    /// Whether no other run has the state file. While this process lives, none gets it then.
    bool takeState() const
    {
        // Not inherited by children, which may outlive a run.
        const int file = ::open(qPrintable(m_stateFile + ".lock"), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        struct flock lock {};
        lock.l_type = F_WRLCK;
        return file >= 0 && ::fcntl(file, F_SETLK, &lock) == 0;
    }

    bool run(double seconds)
    {
        bool isSound = true;
        load();
        takeEndedTrial();
        forgetOtherPrograms();
        std::vector<const Kind *> sound;
        for (const Kind &kind : m_kinds) {
            if (!findsPlanted(kind)) {
                isSound = false;
                continue;
            }
            sound.push_back(&kind);
            isSound &= repeatFindings(kind);
        }
        QElapsedTimer timer;
        timer.start();
        const auto hasTime = [&] { return timer.elapsed() < seconds * 1000; };
        for (bool more = true; more && hasTime();) {
            more = false;
            for (const Kind *kind : sound) {
                if (standing(*kind).next >= kind->goal || !hasTime())
                    continue;
                more = true;
                isSound &= runTrial(*kind, standing(*kind).next++);
            }
        }
        isSound &= runDrawn(sound, hasTime);
        save();
        QFile::remove(runningFile());
        for (const Kind &kind : m_kinds)
            tell(summary(kind));
        return isSound;
    }

    /// One trial by itself.
    bool runOne(qint64 number, bool isPlanted)
    {
        Tally tally;
        Trial trial(number, isPlanted, tally);
        m_kinds.front().run(trial);
        trial.keepFolder(placeOf(m_kinds.front(), number));
        tell(trial.failure().isEmpty() ? QString("nothing found") : trial.failure());
        return trial.failure().isEmpty();
    }

    QString summary(const Kind &kind)
    {
        const Standing &now = standing(kind);
        QStringList more;
        for (const auto &[name, count] : now.tally.counts)
            more << QString("%1 %2").arg(name, QString::number(count));
        for (const auto &[name, bins] : now.tally.measured) {
            more << QString("%1: half %2, 99 of 100 %3, highest %4")
                        .arg(name, QString::number(now.tally.quantile(name, 0.5), 'g', 3),
                             QString::number(now.tally.quantile(name, 0.99), 'g', 3),
                             QString::number(now.tally.quantile(name, 1), 'g', 3));
        }
        return QString("| %1 | %2 | %3 of %4 | %5 | %6 | %7 |")
            .arg(m_name, kind.name, QString::number(std::min(now.next, kind.goal)),
                 QString::number(kind.goal) + (now.drawn > 0 ? QString(" and %1 drawn").arg(now.drawn) : QString()),
                 QString::number(std::llround(now.seconds)), QString::number(now.findings.size()), more.join("; "));
    }

private:
    Standing &standing(const Kind &kind) { return m_standings[kind.name]; }
    QString placeOf(const Kind &kind, qint64 number) const
    {
        return QString("%1-%2-%3")
            .arg(QFileInfo(m_stateFile).absoluteDir().filePath(m_name), kind.name, QString::number(number));
    }

    QString runningFile() const { return m_stateFile + ".running"; }
    /// So that the next run knows the trial, should it end this program.
    void noteRunning(const Kind &kind, qint64 number) const
    {
        QFile file(runningFile());
        if (file.open(QIODevice::WriteOnly))
            file.write((QString::number(number) + ' ' + kind.name).toUtf8());
    }
    void takeEndedTrial()
    {
        QFile file(runningFile());
        if (!file.open(QIODevice::ReadOnly))
            return;
        const QString text = QString::fromUtf8(file.readAll());
        file.remove();
        const qint64 number = text.section(' ', 0, 0).toLongLong();
        for (const Kind &kind : m_kinds) {
            if (kind.name != text.section(' ', 1))
                continue;
            standing(kind).findings[number] = "The program ended in it";
            if (number < kind.goal)
                standing(kind).next = std::max(standing(kind).next, number + 1);
        }
    }
    void forgetOtherPrograms()
    {
        std::map<QStringList, QString> digests;
        for (const Kind &kind : m_kinds) {
            QString &digest = digests[kind.programs];
            if (digest.isEmpty())
                digest = digestOf(QStringList{QCoreApplication::applicationFilePath()} + kind.programs);
            Standing &known = standing(kind);
            if (known.subject == digest)
                continue;
            Standing now;
            now.subject = digest;
            now.findings = known.findings;
            known = now;
        }
    }

    bool findsPlanted(const Kind &kind)
    {
        if (standing(kind).isPlantedFound)
            return true;
        for (int i = 0; i < kind.plantedTrials; ++i) {
            Tally tally;
            Trial trial(i, true, tally);
            kind.run(trial);
            if (trial.failure().isEmpty())
                continue;
            tell(QString("%1, %2: the planted fault was found by trial %3: %4")
                     .arg(m_name, kind.name, QString::number(i), trial.failure()));
            standing(kind).isPlantedFound = true;
            save();
            return true;
        }
        tell(QString("%1, %2: THE PLANTED FAULT WAS NOT FOUND, this kind isn't run").arg(m_name, kind.name));
        return false;
    }

    /// What failed before is tried first, and forgotten if it holds now.
    bool repeatFindings(const Kind &kind)
    {
        const auto known = standing(kind).findings;
        for (const auto &[number, text] : known) {
            Tally tally;
            Trial trial(number, false, tally);
            noteRunning(kind, number);
            kind.run(trial);
            if (trial.failure().isEmpty()) {
                standing(kind).findings.erase(number);
                QDir(placeOf(kind, number)).removeRecursively();
            } else {
                standing(kind).findings[number] = trial.failure();
                trial.keepFolder(placeOf(kind, number));
            }
        }
        for (const auto &[number, text] : standing(kind).findings)
            tell(QString("%1, %2, trial %3 fails still: %4").arg(m_name, kind.name, QString::number(number), text));
        return standing(kind).findings.empty();
    }

    /// By turns, of each kind that has come to its goal one at least, and more if all have.
    template<typename HasTime>
    bool runDrawn(const std::vector<const Kind *> &kinds, const HasTime &hasTime)
    {
        bool isSound = true;
        std::map<const Kind *, qint64> numbers;
        std::random_device chance;
        for (const Kind *kind : kinds) {
            if (standing(*kind).next < kind->goal)
                continue;
            numbers[kind] = std::uniform_int_distribution<qint64>(kind->goal, drawnNumbers)(chance);
            tell(QString("%1, %2: drawn trials from %3 on").arg(m_name, kind->name, QString::number(numbers[kind])));
        }
        do {
            for (auto &[kind, number] : numbers) {
                ++standing(*kind).drawn;
                isSound &= runTrial(*kind, number);
                number = number < drawnNumbers ? number + 1 : kind->goal;
            }
        } while (!numbers.empty() && hasTime());
        return isSound;
    }

    bool runTrial(const Kind &kind, qint64 number)
    {
        Standing &now = standing(kind);
        QElapsedTimer timer;
        timer.start();
        Trial trial(number, false, now.tally);
        noteRunning(kind, number);
        kind.run(trial);
        now.seconds += double(timer.elapsed()) / 1000;
        if (!trial.failure().isEmpty()) {
            tell(QString("%1, %2, trial %3: %4").arg(m_name, kind.name, QString::number(number), trial.failure()));
            if (now.findings.size() < mostFindings) {
                now.findings[number] = trial.failure();
                trial.keepFolder(placeOf(kind, number));
            }
        }
        if (!trial.failure().isEmpty() || m_sinceSaved.elapsed() > 2000)
            save(); // the lane may be ended at any moment
        return trial.failure().isEmpty();
    }

    void save()
    {
        QJsonObject all;
        QFile before(m_stateFile);
        if (before.open(QIODevice::ReadOnly))
            all = QJsonDocument::fromJson(before.readAll()).object(); // of kinds that aren't run now
        for (const auto &[name, standing] : m_standings)
            all[name] = standing.toJson();
        QSaveFile file(m_stateFile);
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(all).toJson()) < 0 || !file.commit())
            tell("Failed to write " + m_stateFile);
        m_sinceSaved.start();
    }

    QString m_name;
    std::vector<Kind> m_kinds;
    QString m_stateFile;
    std::map<QString, Standing> m_standings;
    QElapsedTimer m_sinceSaved = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
};

} // namespace

void Tally::measure(const QString &name, double value)
{
    ++measured[name][int(std::lround(binsPerUnit * std::log(std::max(value, 1e-9))))];
}

void Tally::add(const Tally &other)
{
    for (const auto &[name, by] : other.counts)
        counts[name] += by;
    for (const auto &[name, bins] : other.measured)
        for (const auto &[bin, times] : bins)
            measured[name][bin] += times;
}

double Tally::quantile(const QString &name, double share) const
{
    const auto found = measured.find(name);
    if (found == measured.end())
        return 0;
    qint64 all = 0, below = 0;
    for (const auto &[bin, count] : found->second)
        all += count;
    for (const auto &[bin, count] : found->second) {
        below += count;
        if (double(below) >= share * double(all))
            return std::exp(bin / binsPerUnit);
    }
    return 0;
}

Trial::Trial(qint64 which, bool withPlanted, Tally &tally)
    : number(which), isPlanted(withPlanted), random(std::uint64_t(which) * 0x9e3779b97f4a7c15u + 1), m_tally(tally)
{
}

void Trial::fail(const QString &what)
{
    if (m_failure.isEmpty())
        m_failure = what.isEmpty() ? QString("a fault without a word") : what;
}

bool Trial::require(bool holds, const QString &what)
{
    if (!holds)
        fail(what);
    return holds;
}

void Trial::keepFolder(const QString &target)
{
    QDir(target).removeRecursively();
    m_folder.setAutoRemove(false);
    if (QProcess::execute("mv", {m_folder.path(), target}) != 0) // which may be in another file system
        tell("Its folder is " + m_folder.path());
}

int runLane(const QString &lane, const std::vector<Kind> &kinds)
{
    QCommandLineParser parser;
    parser.addOptions({{"seconds", {}, "N", "60"},
                       {"state", {}, "FILE", QCoreApplication::applicationFilePath() + ".json"},
                       {"kind", {}, "NAME"},
                       {"trial", {}, "N"},
                       QCommandLineOption("planted"),
                       QCommandLineOption("table")});
    parser.process(*QCoreApplication::instance());
    std::vector<Kind> chosen;
    for (const Kind &kind : kinds)
        if (!parser.isSet("kind") || parser.value("kind") == kind.name)
            chosen.push_back(kind);
    if (chosen.empty() || (parser.isSet("trial") && chosen.size() != 1)) {
        std::fprintf(stderr, "There is no such kind, or a trial without one\n");
        return 2;
    }
    Lane search(lane, chosen, parser.value("state"));
    if (parser.isSet("trial"))
        return search.runOne(parser.value("trial").toLongLong(), parser.isSet("planted")) ? 0 : 1;
    if (parser.isSet("table")) {
        search.load();
        for (const Kind &kind : chosen)
            tell(search.summary(kind));
        return 0;
    }
    if (!search.takeState()) {
        std::fprintf(stderr, "Another run has %s\n", qPrintable(parser.value("state")));
        return 2;
    }
    return search.run(parser.value("seconds").toDouble()) ? 0 : 1;
}

} // namespace Faults
