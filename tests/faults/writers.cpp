#include "faults/writers.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

namespace Faults {

namespace {

constexpr int longestRun = 120'000;         // ms
constexpr useconds_t restartTime = 150'000; ///< before which no program is started anew
constexpr int cutRows = 2;
constexpr int otherRows = 3;   ///< of each file, not more than leave one to be passed over
constexpr int readRecords = 9; // of a day, in all of three modes

const QString batch = QStringLiteral(FAULTS_BATCH);
const QString driver = QStringLiteral(FAULTS_DRIVER);

class LimitedProcess : public QProcess {
public:
    qint64 largestFile = -1;

protected:
    void setupChildProcess() override
    {
        if (largestFile < 0)
            return;
        const rlimit limit{rlim_t(largestFile), rlim_t(largestFile)};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_DFL); // to ignore it is the program's own affair
    }
};

bool isFolder(const QString &name)
{
    return name.endsWith('/');
}

/// Without what stands behind the last line feed.
QByteArray wholeRows(const QByteArray &bytes)
{
    return bytes.left(bytes.lastIndexOf('\n') + 1);
}

/// The header, its column row, and that many rows.
QByteArray firstRows(const QByteArray &bytes, int rows)
{
    QByteArray out;
    int left = rows + 1;
    for (const QByteArray &line : wholeRows(bytes).split('\n'))
        if (left > 0 && !line.isEmpty()) {
            out += line + '\n';
            left -= line.startsWith('#') ? 0 : 1;
        }
    return out;
}

/// Whether the rows behind `old` are some of those of `all`, in their order and whole. A flag is defined above the
/// first row that has it, which may be a later one.
bool holdsRows(const QByteArray &bytes, const QByteArray &old, const QByteArray &all)
{
    if (!bytes.startsWith(old) || !bytes.endsWith('\n'))
        return false;
    const QByteArray definition("# flag ");
    const QList<QByteArray> rows = all.split('\n');
    QSet<QByteArray> defined;
    auto next = rows.begin();
    for (const QByteArray &row : bytes.split('\n')) {
        const bool isDefinition = row.startsWith(definition);
        const QList<QByteArray> flags = row.mid(row.lastIndexOf('\t') + 1).split('!').mid(1);
        const auto isKnown = [&](const QByteArray &flag) { return row.startsWith('#') || defined.contains(flag); };
        if (isDefinition)
            defined.insert(row.mid(definition.size()).split(':').first());
        else
            next = std::find(next, rows.end(), row);
        if (isDefinition ? !rows.contains(row) : next++ == rows.end())
            return false;
        if (!std::all_of(flags.begin(), flags.end(), isKnown))
            return false;
    }
    return true;
}

bool holdsAll(const Contents &found, const Contents &wanted)
{
    return std::all_of(wanted.begin(), wanted.end(), [&found](const auto &file) {
        const auto there = found.find(file.first);
        return there != found.end() && there->second == file.second;
    });
}

Contents withoutLastRows(Contents contents)
{
    for (auto &[name, bytes] : contents) {
        for (int i = 0; i < cutRows && !bytes.isEmpty(); ++i)
            bytes.truncate(bytes.lastIndexOf('\n', -2) + 1);
    }
    return contents;
}

/// With other records in the first rows, which no input holds.
Contents withOtherRows(Contents contents)
{
    for (auto &[name, bytes] : contents) {
        int left = otherRows;
        QByteArrayList lines = bytes.split('\n');
        for (QByteArray &line : lines)
            if (left > 0 && line.startsWith("2019-")) {
                line.replace(":00:00.000000+", ":00:07.000000+");
                --left;
            }
        bytes = lines.join('\n');
    }
    return contents;
}

bool isRow(const QByteArray &line)
{
    return !line.startsWith('#');
}

/// Null if a file that was continued has the same rows as an undisturbed one, each as often, and no other line than it
/// or the old one.
QString faultOfLines(const QByteArray &now, const QByteArray &old, const QByteArray &wanted)
{
    QByteArrayList lines = now.split('\n'), all = wanted.split('\n');
    const QByteArrayList known = all + old.split('\n');
    for (const QByteArray &line : lines)
        if (!known.contains(line))
            return "a line that nobody wrote, " + QString::fromUtf8(line.left(80));
    for (QByteArrayList *some : {&lines, &all}) {
        some->erase(std::remove_if(some->begin(), some->end(), [](const auto &line) { return !isRow(line); }),
                    some->end());
        std::sort(some->begin(), some->end());
    }
    if (lines == all)
        return {};
    return QString("%1 rows instead of %2, or others").arg(QString::number(lines.size()), QString::number(all.size()));
}

QByteArray bytesOf(const Contents &contents, const QString &path)
{
    const auto at = contents.find(path);
    return at == contents.end() ? QByteArray() : at->second;
}

/// Whether an unfinished run may leave a file of that name beside its own.
bool isRemains(const Writer &writer, const QString &file)
{
    static const QRegularExpression beside("^(.*?)(\\.[a-z]{6})?\\.(tmp|unfinished)$"),
        staged("^out\\.unfinished-\\w{6}/([^/]*)$"), settings("^(.*/)?settings\\.ini\\.(lock|\\w{6})$");
    const auto isOurs = [&](const QString &name) {
        return writer.before.count(name) != 0 || writer.after.count(name) != 0 ||
               QFileInfo(name).fileName() == ".morvantide-batch";
    };
    const auto on = staged.match(file); // the files of "out" on their way
    if (on.hasMatch())
        return on.captured(1).isEmpty() || isOurs("out/" + on.captured(1)) ||
               isRemains(writer, "out/" + on.captured(1));
    return settings.match(file).hasMatch() || isOurs(beside.match(file).captured(1));
}

/// The data that the writers begin from.
class Stage {
public:
    std::vector<Writer> writers()
    {
        makeInput();
        layDown({{"s.exportsetup", "quilvane_data_export_version: 1\n"
                                   "general: {file_name_add_date: true, time_zone: local}\n"
                                   "fields:\n- {type: electrometer}\n"}},
                m_folder.path());
        const QStringList common{path("in"), "--variant", "block", "--jobs", "1"};
        const QStringList save = QStringList{batch, "save"} + common + QStringList{"--output", "{}/out"};
        const QStringList reinvert =
            QStringList{batch, "reinvert"} + common +
            QStringList{"--inverters", path("in/inverters"), "--output", "{}/out", "--records"};
        const QStringList table = QStringList{batch, "export"} + common +
                                  QStringList{"--setup", path("s.exportsetup"), "--output", "{}/out/t.txt"};
        const QStringList append{"--append"}, overwrite{"--overwrite"};
        add("rows", Writer::Appends, save, {}, append);
        const Contents saved = m_writers.back().after;
        add("append", Writer::Appends, save + append, withOtherRows(withoutLastRows(saved)));
        QStringList byTwo = save;
        byTwo[save.indexOf("--jobs") + 1] = "2";
        add("rows-jobs", Writer::Appends, byTwo, {}, append);
        Contents old = saved;
        for (auto &[name, bytes] : old)
            bytes = bytes.isEmpty() ? bytes : "old\n";
        add("overwrite", Writer::Replaces, save + overwrite, old);
        add("reinvert", Writer::Replaces, reinvert, {}, append);
        const Contents inverted = m_writers.back().after;
        add("reinvert-append", Writer::Replaces, reinvert + append, withOtherRows(withoutLastRows(inverted)));
        old = inverted;
        for (auto &[name, bytes] : old)
            bytes = bytes.isEmpty() ? bytes : "old\n";
        add("reinvert-overwrite", Writer::Replaces, reinvert + overwrite, old);
        add("export", Writer::Replaces, table + overwrite,
            {{"out/", {}}, {"out/t-20190514.txt", "old"}, {"out/u.txt", "other"}});
        add("export-new", Writer::Replaces, table, {}, overwrite);
        Contents torn = withoutLastRows(saved);
        for (auto &[name, bytes] : torn)
            bytes += bytes.isEmpty() ? "" : "2019-05-15 23:00:00.000000+02:00\t2019-05-15 23:5";
        add("append-torn", Writer::Appends, save + append, torn, {}, ".torn");
#ifdef FAULTS_RENDER
        const QStringList render = QStringList{batch, "render"} + common + QStringList{"--size", "500x400", "--output"};
        add("picture", Writer::Replaces, render + QStringList{"{}/out/p.png"}, {}, overwrite);
        add("picture-overwrite", Writer::Replaces, render + QStringList{"{}/out/p.png"} + overwrite,
            {{"out/", {}}, {"out/p.png", "old"}});
        add("picture-svg", Writer::Replaces, render + QStringList{"{}/out/p.svg"} + overwrite,
            {{"out/", {}}, {"out/p.svg", "old"}});
#endif
        const Contents commented{{"20190912-block.comments",
                                  "#Record comments\n"
                                  "2019-09-12 10:00:00.000000\t2019-09-12 10:01:00.000000\tions\tolder\n"
                                  "2019-09-12 11:00:00.000000\t2019-09-12 11:01:00.000000\tions\tanother\n"}};
        add("comments", Writer::Replaces, {driver, "comments", "{}"}, commented);
        add("comments-removed", Writer::Replaces, {driver, "nocomments", "{}"}, commented);
        add("layouts", Writer::Replaces, {driver, "layouts", "{}"},
            {{"a.windowsetup", "version: 2\n"}, {"b.windowsetup", "version: 1\n"}, {"b.windowsetup.bak", "oldest"}});
        for (const bool isNew : {false, true}) {
            add(isNew ? "settings-new" : "settings", Writer::Replaces,
                {driver, "settings", isNew ? "{}/new/folder" : "{}"},
                isNew ? Contents{} : Contents{{"settings.ini", "[General]\nversion=2\nkept=here\n"}});
            m_writers.back().lasts = false; // but the old or the new ones do
        }
        return std::move(m_writers);
    }

private:
    QString path(const QString &name) const
    {
        return m_folder.filePath(name);
    }
    /// Two days of few records, for each row is a call that may fail.
    void makeInput()
    {
        runProgram({QStringLiteral(FAULTS_DEMO), "--days", "2", "--interval", "3600", path("in")}, {});
        Contents days = contentsOf(path("in"));
        for (auto &[name, bytes] : days)
            if (name.endsWith(".records") || name.endsWith(".spectra"))
                bytes = firstRows(bytes, name.endsWith(".records") ? readRecords : readRecords / 3);
        layDown(days, path("in"));
    }
    /// `again` is added to the command.
    void add(const QString &name, Writer::Manner manner, const QStringList &command, const Contents &before,
             const QStringList &again = {}, const QString &warning = {})
    {
        Writer writer{name, manner, command, again.isEmpty() ? again : command + again, before, {}, true, warning};
        layDown(before, path(name));
        const Ending ending = writer.run(path(name));
        writer.after = contentsOf(path(name));
        const QString fault = writer.faultOf(ending, writer.after, false);
        if (!ending.isSuccess() || writer.after == before || !fault.isNull())
            qFatal("%s can't write: %d, %s", qPrintable(name), ending.status, ending.words.constData());
        m_writers.push_back(writer);
    }

    QTemporaryDir m_folder;
    std::vector<Writer> m_writers;
};

} // namespace

Contents contentsOf(const QString &folder)
{
    Contents contents;
    QDirIterator each(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString name = QDir(folder).relativeFilePath(each.next());
        QFile file(each.filePath());
        if (each.fileInfo().isDir())
            contents[name + '/'] = {};
        else
            contents[name] = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    return contents;
}

void layDown(const Contents &contents, const QString &folder)
{
    QDir().mkpath(folder);
    for (const auto &[name, bytes] : contents) {
        QFile file(QDir(folder).filePath(name));
        const bool isDone = isFolder(name) ? QDir(folder).mkpath(name)
                                           : file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        if (!isDone)
            qFatal("%s can't be laid down", qPrintable(file.fileName()));
    }
}

Ending runProgram(const QStringList &command, const QStringList &variables, qint64 largestFile)
{
    LimitedProcess process;
    process.largestFile = largestFile;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : variables)
        environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    environment.insert("LC_ALL", "C");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command.first(), command.mid(1));
    Ending ending;
    const bool isEnded = process.waitForFinished(longestRun);
    if (!isEnded) {
        process.kill();
        process.waitForFinished();
    }
    ending.words = process.readAll();
    if (isEnded && process.exitStatus() == QProcess::NormalExit)
        ending.status = process.exitCode();
    return ending;
}

Writer carelessly(Writer writer, const QString &wanted)
{
    layDown(writer.after, wanted);
    writer.command = QStringList{driver, writer.before.empty() ? "scattered" : "careless", "{}", wanted};
    return writer;
}

void workInMemory()
{
    const QString memory = "/dev/shm";
    if (!qEnvironmentVariableIsSet("TMPDIR") && QFileInfo(memory).isWritable())
        qputenv("TMPDIR", memory.toLatin1());
}

Ending Writer::run(const QString &folder, const QStringList &variables, qint64 largestFile) const
{
    QStringList words = command;
    return runProgram(words.replaceInStrings("{}", folder), variables, largestFile);
}

QString Writer::faultOf(const Ending &ending, const Contents &found, bool mayLeave) const
{
    static const QRegularExpression complaint(
        "not (be )?(made|written|copied|lost|saved)|Failed|Unable|[Cc]an't|might be lost");
    const QString told =
        QStringLiteral(" (status %1: %2)").arg(QString::number(ending.status), QString::fromUtf8(ending.words));
    const bool isWarning = !warning.isNull() && ending.words.contains(warning.toUtf8());
    if ((ending.status != 1 && !ending.isSuccess()) || (ending.status == 3 && !isWarning))
        return "No such end" + told;
    if (ending.isSuccess() && !holdsAll(found, after))
        return "A success that is none" + told;
    if (!ending.isSuccess() && !complaint.match(QString::fromUtf8(ending.words)).hasMatch())
        return "Not a word of the failure" + told;
    const QString fault = faultOf(found, mayLeave);
    if (!fault.isNull())
        return fault + told;
    for (const auto &[file, bytes] : found)
        if (!mayLeave && before.count(file) == 0 && after.count(file) == 0)
            return file + " is left" + told;
    return {};
}

QString Writer::faultOfTornRows(const Contents &found) const
{
    for (const auto &[file, bytes] : before) {
        const QByteArray torn = bytes.mid(wholeRows(bytes).size());
        const auto now = found.find(file), aside = found.find(file + ".torn");
        const bool isThere = (now != found.end() && now->second.startsWith(bytes)) ||
                             (aside != found.end() && aside->second.contains(torn));
        if (manner == Appends && !torn.isEmpty() && !isThere)
            return file + " has lost its torn row";
    }
    return {};
}

QString Writer::faultOf(const Contents &found, bool mayLeave) const
{
    for (const auto &[file, bytes] : before) {
        const bool isGone = found.count(file) == 0 && after.count(file) != 0;
        if (isGone && !isFolder(file) && bytesOf(found, file + ".bak") != bytes)
            return file + " is gone";
    }
    for (const auto &[file, bytes] : found) {
        const bool isNew = before.count(file) == 0;
        if (isNew && after.count(file) == 0 && !isRemains(*this, file))
            return file + " is nobody's";
        if (after.count(file) == 0 || bytes == bytesOf(after, file) || (!isNew && bytes == bytesOf(before, file)))
            continue;
        const bool isBegun = mayLeave && isNew &&
                             (bytes.isEmpty() || (file.endsWith(".torn") && bytesOf(after, file).startsWith(bytes)));
        if (manner != Appends || !(isBegun || holdsRows(bytes, wholeRows(bytesOf(before, file)), bytesOf(after, file))))
            return file + " is neither old nor new";
    }
    return faultOfTornRows(found);
}

QString Writer::faultOfSecondRun(const QString &folder, bool mayLeave) const
{
    const Contents first = contentsOf(folder);
    const bool isLocked = std::any_of(first.begin(), first.end(),
                                      [](const auto &file) { return file.first.endsWith("settings.ini.lock"); });
    if (isLocked)
        ::usleep(restartTime);
    Ending ending = run(folder);
    if (ending.status == 2 && !again.isEmpty())
        ending = runProgram(QStringList(again).replaceInStrings("{}", folder), {});
    const QString told =
        QStringLiteral(" (status %1: %2)").arg(QString::number(ending.status), QString::fromUtf8(ending.words));
    if (!ending.isSuccess())
        return "A second try failed" + told;
    const Contents now = contentsOf(folder);
    for (const auto &[file, bytes] : after)
        if (now.count(file) == 0)
            return file + " isn't there after a second try" + told;
    for (const auto &[file, bytes] : now) {
        const bool isOurs = after.count(file) != 0;
        const bool isKnown = isOurs || bytesOf(before, file) == bytes || (mayLeave && isRemains(*this, file)) ||
                             (file.endsWith(".torn") && first.count(file) != 0);
        if (!isKnown)
            return file + " is left after a second try" + told;
        if (!isOurs || bytes == bytesOf(after, file))
            continue;
        const QString fault = manner == Appends ? faultOfLines(bytes, bytesOf(before, file), bytesOf(after, file))
                                                : QString("other bytes");
        if (!fault.isNull())
            return file + " after a second try: " + fault + told;
    }
    return {};
}

QStringList writingPrograms()
{
    return {batch, driver, QStringLiteral(FAULTS_DEMO), QStringLiteral(FAULTS_SHIM)};
}

const std::vector<Writer> &writers()
{
    static Stage stage; // the commands name its files
    static const std::vector<Writer> all = stage.writers();
    return all;
}

} // namespace Faults
