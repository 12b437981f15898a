#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace Spectrometer {

/// Files that were written and are to be closed. Those that have to be on the disk wait for others, since the disk
/// takes many of them in little more time than one. Lives on one thread.
class ClosingFiles {
public:
    struct File {
        int descriptor;
        QString name;
        qint64 rowCount;  ///< that were written since it was opened
        qint64 heldCount; ///< that were passed over
        int error = 0;    ///< of its way to the disk
    };
    /// Told of each file, and why its closing failed, which is null if it didn't.
    using Closed = std::function<void(const File &file, const QString &failure)>;

    explicit ClosingFiles(Closed closed);
    ~ClosingFiles(); ///< finishes
    ClosingFiles(const ClosingFiles &) = delete;
    ClosingFiles &operator=(const ClosingFiles &) = delete;

    /// Takes the descriptor, and closes it at once or, if the bytes have to be on the disk, when enough others wait.
    void add(const File &file, bool sync);
    /// Brings those that wait to the disk and closes them.
    void finish();

private:
    void close(const File &file);

    const Closed m_closed;
    std::vector<File> m_waiting;
};

} // namespace Spectrometer
