#include "faults/lane.h"

#include "batch/exportcommand.h"
#include "batch/outcome.h"
#include "batch/reinvertcommand.h"
#include "batch/savecommand.h"
#include "datafiles/reading/commentfile.h"
#include "datafiles/reading/dump.h"
#include "datafiles/reading/filereadertask.h"
#include "datafiles/writing/commentwriting.h"
#include "llama/qyaml.h"
#include "spectra/inverterfiles.h"
#include "support/demodata.h"
#include "support/files.h"
#include "support/shortmemory.h"
#include "windowsetup/setupfile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Faults;

namespace {

constexpr qint64 firstOnes = 500, spreadOnes = 1500;
constexpr unsigned hang = 60; // s

/// Something that needs memory, in a folder of its own with the data in "in". What it told goes to standard error; the
/// result is all that came of it but files, made with enough memory again.
struct Scenario {
    QString name;
    std::function<QByteArray(const QString &folder)> run;
    enum Files { Whole, Rows, Judged } files = Whole; ///< which it writes: row by row, or looked at by itself
};

/// What a scenario has found by itself.
QString fileFault;

/// From here on there is memory.
void endShortage()
{
    ShortMemory::failures = 0;
}

void tellAll(const QStringList &errors)
{
    for (const QString &error : errors)
        std::fprintf(stderr, "%s\n", qPrintable(error));
}

/// Without the console, which keeps some.
void setLog()
{
    Log::RootLogger::instance().setFilter([](const Log::Entry &entry) {
        if (entry.level <= Log::Warning)
            tellAll({entry.message});
        return false;
    });
}

QByteArray readFolder(const QString &folder, int threads)
{
    auto reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), earliestRecordTime, latestRecordTime);
    FileReaderSettings settings;
    settings.folder = folder;
    settings.files = QDir(folder).entryList({"*.records", "*.spectra"}, QDir::Files, QDir::Name);
    settings.threads = threads;
    settings.chunkBytes = 10000;
    FileReaderTask(reader, settings).run();
    endShortage();
    return Dump::contentsOf(*reader).toUtf8();
}

QByteArray loadInverters(const QString &path)
{
    QStringList errors;
    const auto inverters = SpectMath::loadChosenInverters({path}, unitTable(), &errors);
    endShortage();
    tellAll(errors);
    QByteArray text;
    for (const auto &inverter : inverters) {
        const std::size_t currents = inverter->model().settings.instrumentMatrix.size1();
        text += (inverter->info()->name + inverter->info()->hash).toUtf8();
        for (const double value : inverter->invert(RealVector(currents, 10), RealVector(currents, 1))->concentrations)
            text += ' ' + QByteArray::number(value, 'g', 17);
    }
    return text;
}

QByteArray runCommand(const std::function<int()> &command)
{
    const int status = Batch::runCommand(command);
    endShortage();
    setLog(); // which the command has taken over
    return "status " + QByteArray::number(status);
}

Batch::ReadOptions readOptions(const QString &folder)
{
    Batch::ReadOptions options;
    options.folder = folder;
    options.variant = "block";
    options.jobs = 2;
    return options;
}

/// The comment of each record has to be what was said to be written last.
QByteArray writeAndReadComments(const QString &folder)
{
    const struct {
        int minute;
        const char *text;
    } changes[] = {{0, "first"}, {1, "second"}, {2, "third"}, {1, "changed"}, {0, ""}};
    std::map<QByteArray, QStringList> wanted; ///< the texts that may stand there, by record
    QString path, read;
    for (const auto &change : changes) {
        Spectrometer::RecordHead head;
        head.beginTime = recordTimeFromTicks(ticksPerDay * 18151) + std::chrono::minutes(change.minute);
        head.endTime = head.beginTime + std::chrono::minutes(1);
        QString reason("Out of memory");
        CommentPlace place;
        bool isKnown = false;
        try {
            place = CommentPlace(folder, "block", head, "ions");
            reason = writeComment(place, change.text);
            isKnown = true;
        } catch (const std::bad_alloc &) {
        }
        if (!reason.isNull()) {
            endShortage();
            tellAll({reason});
            place = CommentPlace(folder, "block", head, "ions");
        }
        QStringList &texts = wanted[place.key];
        if (texts.isEmpty())
            texts << QString();
        if (isKnown && reason.isNull())
            texts.clear();
        if (!isKnown || reason.isNull())
            texts << change.text;
        path = place.path;
        readCommentFile(path, [&read](const CommentLine &line) { read += line.text + '\n'; });
    }
    endShortage();
    std::map<QByteArray, QStringList> found;
    for (const QByteArray &line : contentOf(path).split('\n'))
        for (const auto &[key, texts] : wanted)
            if (line.startsWith(key))
                found[key] << QString::fromUtf8(line.mid(key.size()));
    for (const auto &[key, texts] : wanted) {
        const QString text = found[key].join('|');
        if (!texts.contains(text))
            fileFault = QString("The comment is \"%1\" instead of \"%2\"").arg(text, texts.join("\" or \""));
    }
    return read.toUtf8();
}

QByteArray writeAndReadLayout(const QString &from, const QString &folder)
{
    const QString path = QDir(folder).filePath("a.windowsetup");
    const WindowSetup::SetupFile source = WindowSetup::readSetupFile(from);
    const bool isSound = source.condition == WindowSetup::SetupFile::Sound;
    const QString reason = isSound ? WindowSetup::writeSetupFile(path, source.setup) : QString();
    const WindowSetup::SetupFile read = WindowSetup::readSetupFile(path);
    endShortage();
    tellAll({source.complaint, reason, read.complaint});
    return Llama::yamlDump(read.setup);
}

QByteArray loadAndDumpYaml(const QString &path)
{
    try {
        const QVariantList documents = Llama::yamlLoadFile(path);
        const QByteArray text = Llama::yamlDump(documents.value(0));
        endShortage();
        return text;
    } catch (const Llama::YamlError &error) {
        endShortage();
        tellAll({error.message()});
        return {};
    }
}

// ---- the search

/// Whether the allocation that failed was made inside of an operation of a library, other than one of a container or a
/// text. What the library makes of it, such as a leak, nobody can mend here. The page is shared with children.
bool *const isInLibrary =
    static_cast<bool *>(::mmap(nullptr, sizeof(bool), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));

/// Notes that, and tells the calls that lead to the allocation. addr2line makes lines of them.
void notePlace()
{
    static const char *const containers[] = {"_Znw", "_Zna",      "_ZN10QArrayData", "_ZN7QString",  "_ZNK7QString",
                                             "_ZNS", "_ZN9QHash", "_ZN10QByteArray", "_ZN9QListData"};
    void *places[30];
    const int count = ::backtrace(places, 30);
    ::backtrace_symbols_fd(places + 2, std::max(count - 2, 0), STDERR_FILENO);
    Dl_info program{}, place{};
    ::dladdr(reinterpret_cast<void *>(&notePlace), &program);
    *isInLibrary = false;
    for (int i = 0; i < count && !*isInLibrary; ++i) {
        if (::dladdr(places[i], &place) == 0)
            continue;
        if (place.dli_fbase == program.dli_fbase) {
            if (i > 2)
                return;
            continue; // the allocation itself
        }
        const QLatin1String name(place.dli_sname);
        *isInLibrary = std::none_of(std::begin(containers), std::end(containers), [&name](const char *container) {
            return name.startsWith(QLatin1String(container));
        });
    }
}

using Files = std::map<QString, QByteArray>;

Files filesBelow(const QString &folder)
{
    Files files;
    for (QDirIterator each(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); each.hasNext();) {
        const QString path = each.next();
        files[QDir(folder).relativeFilePath(path)] = contentOf(path);
    }
    return files;
}

/// Whether a file that isn't the whole one is rows of it, each whole.
bool holdsRows(const QByteArray &bytes, const QByteArray &all)
{
    const QList<QByteArray> rows = all.split('\n');
    for (const QByteArray &row : bytes.split('\n'))
        if (!rows.contains(row))
            return false;
    return bytes.endsWith('\n');
}

/// A scenario with what an undisturbed run of it comes to.
class Search {
public:
    Search(const Scenario &scenario, const QString &folder) : m_scenario(scenario)
    {
        for (int i = 0; i < 2; ++i) { // the first makes what is kept from then on
            const QString work = begin(folder);
            const long held = ShortMemory::held, made = ShortMemory::made;
            const std::uint64_t result = hashOf(scenario.run(work));
            m_allocations = ShortMemory::made - made;
            m_left = ShortMemory::held - held;
            m_result = result;
            m_files = filesBelow(work);
        }
    }
    const QString &name() const { return m_scenario.name; }
    qint64 goal() const { return m_allocations > firstOnes ? firstOnes + spreadOnes : m_allocations; }

    void run(Trial &trial) const
    {
        const qint64 rest = std::max<qint64>(m_allocations - firstOnes, 0);
        const qint64 spread = trial.number - firstOnes; // beyond the goal by chance
        const qint64 nth = spread < 0            ? trial.number + 1
                           : spread < spreadOnes ? firstOnes + 1 + spread * rest / spreadOnes
                                                 : trial.number % m_allocations + 1;
        const QString work = begin(trial.folder());
        *isInLibrary = false;
        int ends[2];
        if (::pipe(ends) != 0)
            return;
        const pid_t child = ::fork();
        if (child == 0) {
            const QByteArray fault = faultWithout(nth, work, trial.isPlanted, trial.number % 2 == 0).toUtf8();
            ::_exit(::write(ends[1], fault.constData(), std::size_t(fault.size())) == fault.size() ? 0 : 1);
        }
        ::close(ends[1]);
        QByteArray fault;
        char piece[4096];
        for (ssize_t size; (size = ::read(ends[0], piece, sizeof piece)) > 0;)
            fault.append(piece, int(size));
        ::close(ends[0]);
        int status = -1;
        ::waitpid(child, &status, 0);
        const QString where = QString(" without allocation %1 of %2").arg(nth).arg(m_allocations);
        const bool isFine = WIFEXITED(status) && (fault == toldMark || fault == sameMark);
        if (*isInLibrary && !isFine)
            trial.count(WIFSIGNALED(status) ? "ended inside of a library" : "lost inside of a library");
        else if (WIFSIGNALED(status))
            trial.fail(QString("Ended by signal %1").arg(WTERMSIG(status)) + where + wordsOf(work));
        else if (fault == toldMark)
            trial.count("told");
        else if (fault != sameMark)
            trial.fail(QString::fromUtf8(fault) + where + wordsOf(work));
        else
            trial.count("done without");
        const Files files = filesBelow(work);
        const QByteArray words = contentOf(QDir(work).filePath(wordsName));
        const bool hasReadAll = !words.contains("Skipping") && !words.contains("will not be read") &&
                                !words.contains("Errors reading inverters") && !words.contains("Inversion error");
        for (const auto &[name, bytes] : files) {
            const auto whole = m_files.find(name);
            const bool isBegun =
                whole != m_files.end() &&
                ((m_scenario.files == Scenario::Rows && (bytes.isEmpty() || holdsRows(bytes, whole->second))) ||
                 ((m_scenario.files == Scenario::Judged || !hasReadAll) && bytes.endsWith('\n')));
            const bool isSound = isBegun || (whole != m_files.end() && bytes == whole->second);
            trial.require(isSound || name == wordsName, name + " is left" + where);
        }
    }

private:
    static constexpr char toldMark[] = "+told", sameMark[] = "+same", wordsName[] = "words";

    /// An empty folder.
    static QString begin(const QString &folder)
    {
        const QString work = QDir(folder).filePath("work");
        QDir(work).removeRecursively();
        QDir().mkpath(work);
        return work;
    }
    static QString wordsOf(const QString &work)
    {
        return ": " + QString::fromUtf8(contentOf(QDir(work).filePath(wordsName)));
    }
    static bool tellsOfMemory(const QByteArray &words)
    {
        return words.contains("memory") || words.contains("could not initialize the parser");
    }
    static std::uint64_t hashOf(const QByteArray &bytes)
    {
        std::uint64_t hash = 14695981039346656037u;
        for (const char byte : bytes)
            hash = (hash ^ std::uint8_t(byte)) * 1099511628211u;
        return hash;
    }

    /// In a process of its own. The planted faults are a failure that isn't told, and a block that isn't given back.
    QString faultWithout(qint64 nth, const QString &work, bool isPlanted, bool leaks) const
    {
        alarm(hang);
        const int words = ::open(qPrintable(QDir(work).filePath(wordsName)), O_CREAT | O_RDWR | O_APPEND, 0600);
        ::dup2(words, STDERR_FILENO);
        ::dup2(words, STDOUT_FILENO);
        bool isTold = false, isSame = false;
        const long held = ShortMemory::held;
        ShortMemory::whenFailed = notePlace;
        ShortMemory::letFail(false, int(nth), 1);
        try {
            isSame = hashOf(m_scenario.run(work)) == m_result;
        } catch (const std::bad_alloc &) {
            isTold = true;
        }
        endShortage();
        if (!fileFault.isEmpty())
            return fileFault;
        if (isPlanted && leaks)
            m_leaked = std::malloc(100);
        const long left = ShortMemory::held - held;
        if (left > m_left)
            return QString("%1 blocks were not given back").arg(left - m_left);
        if (!isPlanted)
            isTold |= tellsOfMemory(contentOf(QDir(work).filePath(wordsName)).toLower());
        else
            isTold = false;
        if (!isTold && !isSame)
            return "Another result, and not a word of memory";
        return isTold ? toldMark : sameMark;
    }

    Scenario m_scenario;
    long m_allocations = 0, m_left = 0;
    std::uint64_t m_result = 0;
    Files m_files; ///< that an undisturbed run writes
    mutable void *volatile m_leaked = nullptr;
};

std::vector<Scenario> scenarios(const QString &data)
{
    const auto save = [data](const QString &folder) {
        Batch::SaveOptions options;
        options.read = readOptions(data);
        options.outputVariant = "block";
        options.outputFolder = QDir(folder).filePath("out");
        return options;
    };
    return {
        {"parse inverter", [data](const QString &) { return loadInverters(data + "/inverters/ions-neg.inverter"); }},
        {"zip", [data](const QString &) { return loadInverters(data + "/inverters/demo.sinp"); }},
        {"read", [data](const QString &) { return readFolder(data, 1); }},
        {"read, two threads", [data](const QString &) { return readFolder(data, 2); }},
        {"save", [save](const QString &folder) { return runCommand([&] { return Batch::runSave(save(folder)); }); },
         Scenario::Rows},
        {"reinvert",
         [save, data](const QString &folder) {
             return runCommand([&] {
                 Batch::ReinvertOptions options;
                 options.save = save(folder);
                 options.inverters = QStringList{data + "/inverters"};
                 return Batch::runReinvert(options);
             });
         }},
        {"export",
         [data](const QString &folder) {
             return runCommand([&] {
                 Batch::ExportOptions options;
                 options.read = readOptions(data);
                 options.setupFile = data + "/s.exportsetup";
                 options.outputFile = QDir(folder).filePath("t.txt");
                 return Batch::runExport(options);
             });
         }},
        {"comments", writeAndReadComments, Scenario::Judged},
        {"layout", [data](const QString &folder) { return writeAndReadLayout(data + "/values.yaml", folder); }},
        {"yaml", [data](const QString &) { return loadAndDumpYaml(data + "/values.yaml"); }}};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Log::installQtMessageHandler();
    setLog();
    const QTemporaryDir place;
    void *first[1];
    ::backtrace(first, 1); // loads what it needs
    const QString data = place.filePath("in");
    QDir().mkpath(data);
    writeDemoData(data, 7200);
    QDir().rename(place.filePath("inverters"), data + "/inverters");
    writeFile(data + "/s.exportsetup", "quilvane_data_export_version: 1\ngeneral: {time_zone: local}\n"
                                       "fields:\n- {type: electrometer}\n");
    QByteArray values;
    for (int i = 0; i < 60; ++i)
        values += "key " + QByteArray::number(i) + ": [1, 2.5, {x: &y \"text\", z: *y}, !!str 5, 'a\n  b']\n";
    writeFile(data + "/values.yaml", values);
    std::vector<std::shared_ptr<Search>> searches;
    for (const Scenario &scenario : scenarios(data))
        searches.push_back(std::make_shared<Search>(scenario, place.path()));
    std::vector<Kind> kinds;
    for (const auto &search : searches)
        kinds.push_back({search->name(), search->goal(), [search](Trial &trial) { search->run(trial); }});
    return runLane("allocations", kinds);
}
