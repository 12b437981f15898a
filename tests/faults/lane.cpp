#include "faults/lane.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cmath>
#include <cstdio>

namespace Faults {

namespace {

constexpr double binsPerUnit = 100; ///< of the logarithm
constexpr int mostFindings = 50;

void tell(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

/// What is known of a kind.
struct Standing {
    qint64 next = 0; ///< the number of the next trial
    double seconds = 0;
    QString plantedFoundBy; ///< the program that found the planted fault last
    QString subject;        ///< of the trials before `next`
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
        return {
            {"subject", subject}, {"next", double(next)}, {"seconds", seconds}, {"planted found by", plantedFoundBy},
            {"counts", counts},   {"measured", measured}, {"findings", found}};
    }
    static Standing of(const QJsonObject &json)
    {
        Standing standing;
        standing.next = qint64(json["next"].toDouble());
        standing.seconds = json["seconds"].toDouble();
        standing.plantedFoundBy = json["planted found by"].toString();
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
        QFile file(m_stateFile);
        if (file.open(QIODevice::ReadOnly)) {
            const QJsonObject all = QJsonDocument::fromJson(file.readAll()).object();
            for (const Kind &kind : m_kinds)
                m_standings[kind.name] = Standing::of(all[kind.name].toObject());
        }
        for (const Kind &kind : m_kinds) {
            Standing &now = standing(kind);
            if (now.subject != kind.subject)
                now.next = 0;
            now.subject = kind.subject;
        }
        takeEndedTrial();
        const QFileInfo program(QCoreApplication::applicationFilePath());
        m_program = program.lastModified().toString(Qt::ISODate) + ' ' + QString::number(program.size());
    }

    bool run(double seconds)
    {
        bool isSound = true;
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
        for (bool more = true; more && timer.elapsed() < seconds * 1000;) {
            more = false;
            for (const Kind *kind : sound) {
                if (standing(*kind).next >= kind->goal || timer.elapsed() >= seconds * 1000)
                    continue;
                more = true;
                isSound &= runNext(*kind);
            }
        }
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
            .arg(m_name, kind.name, QString::number(now.next), QString::number(kind.goal),
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
        const qint64 number = text.section(' ', 0, 0).toLongLong();
        for (const Kind &kind : m_kinds) {
            if (kind.name != text.section(' ', 1))
                continue;
            standing(kind).findings[number] = "The program ended in it";
            standing(kind).next = std::max(standing(kind).next, number + 1);
        }
    }

    bool findsPlanted(const Kind &kind)
    {
        if (standing(kind).plantedFoundBy == m_program)
            return true;
        for (int i = 0; i < kind.plantedTrials; ++i) {
            Tally tally;
            Trial trial(i, true, tally);
            kind.run(trial);
            if (trial.failure().isEmpty())
                continue;
            tell(QString("%1, %2: the planted fault was found by trial %3: %4")
                     .arg(m_name, kind.name, QString::number(i), trial.failure()));
            standing(kind).plantedFoundBy = m_program;
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
            }
        }
        for (const auto &[number, text] : standing(kind).findings)
            tell(QString("%1, %2, trial %3 fails still: %4").arg(m_name, kind.name, QString::number(number), text));
        return standing(kind).findings.empty();
    }

    bool runNext(const Kind &kind)
    {
        Standing &now = standing(kind);
        const qint64 number = now.next++;
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
    QString m_program;
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
    if (!QDir().rename(m_folder.path(), target))
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
        for (const Kind &kind : chosen)
            tell(search.summary(kind));
        return 0;
    }
    return search.run(parser.value("seconds").toDouble()) ? 0 : 1;
}

} // namespace Faults
