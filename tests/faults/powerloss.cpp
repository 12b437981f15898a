// Lets the power fail behind every call by which a file is written, by what a record of the calls says.
//
// What the disk holds then: of changes of names those that an fsync of their own folder brought there, and of the
// others, whatever their folders are, all up to one of them in their order, as a journal keeps it; and of each file the
// bytes of its last fsync, with the beginning of what came behind it, or all of it, or nothing; a cut may be there or
// not, and what came behind it only with it. A name given by rename may so be there without the bytes.

#include "faults/lane.h"
#include "faults/shim.h"
#include "faults/writers.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>

namespace {

using namespace Faults;

constexpr qint64 drawn = 20; // trials with bytes kept by chance, for each of those that keep all or nothing

/// What a loss of power leaves of the changes of a file that were not brought to the disk.
struct Left {
    std::function<int(int)> bytes; ///< of that many at its end
    std::function<bool()> isCut;
};

/// The disk behind some calls.
class Disk {
public:
    Disk(const Contents &before, QString folder) : m_folder(std::move(folder))
    {
        for (const auto &[name, bytes] : before) {
            const quint64 file = ++m_lastFile;
            m_files[file] = {bytes, bytes, bytes.size()};
            m_names[m_folder + '/' + name] = file;
        }
        m_durableNames = m_names;
    }

    void apply(const Call &call)
    {
        if (!call.isDone)
            return;
        if (call.name == "create" || call.name == "mkdir") {
            m_byInode[call.file] = ++m_lastFile;
            m_files[m_lastFile] = {};
            if (call.target != "nameless")
                change(call.path + (call.name == "mkdir" ? "/" : ""), m_lastFile);
        } else if (call.name == "open" || call.name == "openempty") {
            m_byInode[call.file] = m_names.count(call.path) != 0 ? m_names[call.path] : 0;
            if (call.name == "openempty")
                m_files[m_byInode[call.file]].cut(0);
        } else if (call.name == "write") {
            m_files[m_byInode[call.file]].write(int(call.offset), call.bytes);
        } else if (call.name == "ftruncate") {
            m_files[m_byInode[call.file]].cut(int(call.offset));
        } else if (call.name == "fsync") {
            sync(call);
        } else if (call.name == "link") {
            change(call.path, m_byInode[call.file]);
        } else if (call.name == "rename") {
            const quint64 file = m_names[call.path];
            change(call.path, 0, call.target, file);
        } else if (call.name == "unlink" || call.name == "rmdir") {
            change(call.path + (call.name == "rmdir" ? "/" : ""), 0);
        }
    }

    /// The changes of folders that may be lost: all, or only the later ones.
    std::size_t openChanges() const { return m_changes.size(); }

    /// What is found after the power has come back, with so many of the open changes.
    Contents afterLoss(std::size_t changes, const Left &left) const
    {
        auto names = m_durableNames;
        for (std::size_t i = 0; i < changes; ++i)
            for (const auto &[name, file] : m_changes[i])
                names[name] = file;
        for (auto &[name, file] : names) // a folder comes before what it holds
            if (folderOf(name) != m_folder && names[folderOf(name) + '/'] == 0)
                file = 0;
        Contents found;
        for (const auto &[name, file] : names)
            if (file != 0)
                found[name.mid(m_folder.size() + 1)] = m_files.at(file).afterLoss(left);
        return found;
    }

private:
    struct File {
        QByteArray durable, now;
        int common = 0; ///< bytes at the beginning of both that were never cut off

        void write(int offset, const QByteArray &bytes)
        {
            common = std::min(common, offset);
            now.replace(offset, bytes.size(), bytes);
        }
        void cut(int size)
        {
            common = std::min(common, size);
            now.resize(size);
        }
        void sync()
        {
            durable = now;
            common = now.size();
        }
        QByteArray afterLoss(const Left &left) const
        {
            if (common < durable.size() && !left.isCut())
                return durable;
            return now.left(common + left.bytes(now.size() - common));
        }
    };
    using Names = std::map<QString, quint64>; ///< of files; 0 where there is none any more

    static QString folderOf(const QString &name)
    {
        return name.left(name.lastIndexOf('/', -2)); // without the slash behind a folder's name
    }
    void change(const QString &name, quint64 file) { change(name, file, name, file); }
    void change(const QString &name, quint64 file, const QString &other, quint64 otherFile)
    {
        m_names[name] = file;
        m_names[other] = otherFile;
        m_changes.push_back({{name, file}, {other, otherFile}});
    }
    void sync(const Call &call)
    {
        const bool isFolder =
            call.path == m_folder || (m_names.count(call.path + '/') != 0 && m_names[call.path + '/'] != 0);
        if (!isFolder) {
            m_files[m_byInode[call.file]].sync();
            return;
        }
        std::vector<Names> others;
        for (const Names &change : m_changes) {
            const bool isHere = std::any_of(change.begin(), change.end(),
                                            [&](const auto &name) { return folderOf(name.first) == call.path; });
            if (!isHere)
                others.push_back(change);
            else
                for (const auto &[name, file] : change)
                    m_durableNames[name] = file;
        }
        m_changes = others;
    }

    QString m_folder;
    quint64 m_lastFile = 0;
    std::map<quint64, File> m_files;
    std::map<quint64, quint64> m_byInode; ///< inodes are given to others when a file is gone
    Names m_names, m_durableNames;
    std::vector<Names> m_changes; ///< since the last fsync of their folders
};

class PowerLoss {
public:
    explicit PowerLoss(const Writer &writer) : m_writer(writer)
    {
        const QTemporaryDir folder;
        m_calls = recordOf(writer, folder.path());
        m_folder = watchedFolder(folder.path());
        m_planted = planted();
    }

    qint64 trials() const { return qint64(m_calls.size() + 1) * (1 + drawn); }

    void run(Trial &trial) const
    {
        const std::vector<Call> &calls = trial.isPlanted ? m_planted : m_calls;
        const auto count = qint64(calls.size()) + 1;
        const qint64 behind = trial.number % count;
        Disk disk(m_writer.before, m_folder);
        for (qint64 i = 0; i < behind; ++i)
            disk.apply(calls[std::size_t(i)]);
        const auto none = [](int) { return 0; };
        const auto whole = [](int bytes) { return bytes; };
        const std::vector<Left> all{
            {none, [] { return false; }}, {none, [] { return true; }}, {whole, [] { return true; }}};
        const std::vector<Left> some{
            {[&trial](int bytes) { return trial.pick(0, bytes); }, [&trial] { return trial.pick(0, 1) == 1; }}};
        for (std::size_t changes = 0; changes <= disk.openChanges(); ++changes)
            for (const Left &left : trial.number < count ? all : some) {
                const QString fault = faultOf(disk.afterLoss(changes, left), behind == count - 1);
                trial.count("disks");
                if (!fault.isNull())
                    trial.fail(QString("behind call %1, %2, with %3 changes of folders: %4")
                                   .arg(QString::number(behind),
                                        behind > 0 ? calls[std::size_t(behind) - 1].name : "the start",
                                        QString::number(changes), fault));
            }
    }

private:
    /// The same calls as a careless writer does them: without an fsync; or, where rows are put behind others, each file
    /// written anew from its beginning.
    std::vector<Call> planted() const
    {
        std::vector<Call> calls;
        for (Call call : m_calls) {
            if (call.name == "fsync")
                continue;
            if (m_writer.manner == Writer::Appends && call.name == "open")
                call.name = "openempty";
            calls.push_back(call);
        }
        // What its head tells is known at last to one that makes a new file.
        if (m_writer.manner == Writer::Appends && m_writer.before.empty()) {
            const auto head =
                std::find_if(calls.begin(), calls.end(), [](const Call &call) { return call.name == "write"; });
            std::rotate(head, head + 1, calls.end());
        }
        return calls;
    }

    QString faultOf(const Contents &found, bool isDone) const
    {
        if (isDone && m_writer.lasts &&
            !std::includes(found.begin(), found.end(), m_writer.after.begin(), m_writer.after.end()))
            return "what was said to be done isn't there";
        return m_writer.manner == Writer::Appends ? faultOfRows(found) : m_writer.faultOf(found, false);
    }

    /// Null if each file holds the old rows, and a beginning of the new ones.
    QString faultOfRows(const Contents &found) const
    {
        for (const auto &[name, bytes] : m_writer.before)
            if (found.count(name) == 0 || !found.at(name).startsWith(bytes.left(bytes.lastIndexOf('\n') + 1)))
                return name + " has lost old rows";
        for (const auto &[name, bytes] : found) {
            const auto old = m_writer.before.find(name), all = m_writer.after.find(name);
            const bool isOld = old != m_writer.before.end() && old->second == bytes;
            if (!isOld && all != m_writer.after.end() && !all->second.startsWith(bytes))
                return name + " holds something else than rows";
        }
        return m_writer.faultOfTornRows(found);
    }

    const Writer &m_writer;
    QString m_folder;
    std::vector<Call> m_calls, m_planted;
};

} // namespace

int main(int argc, char **argv)
{
    workInMemory();
    const QCoreApplication application(argc, argv);
    std::vector<Kind> kinds;
    for (const Writer &writer : writers()) {
        const auto loss = std::make_shared<PowerLoss>(writer);
        kinds.push_back(
            {writer.name, loss->trials(), [loss](Trial &trial) { loss->run(trial); }, 500, writingPrograms()});
    }
    return runLane("powerloss", kinds);
}
