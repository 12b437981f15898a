#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace Batch {

/// A temporary folder beside the one to write to, whose files are moved there once they are complete: whoever looks,
/// or whatever ends the program, there are whole files or none.
class StagedOutput {
public:
    explicit StagedOutput(const QString &folder);
    ~StagedOutput();

    /// Null if the folder can't be made; tells why.
    bool isValid() const { return m_staging && m_staging->isValid(); }
    /// Where to write.
    QString path() const { return m_staging->path(); }

    /// Brings the target files that exist to the temporary folder, to be continued there. Faults are told.
    bool bringIn(const QStringList &names);
    /// Moves all files to their folder, which is made, in place of those that were brought in. A file that came into
    /// being there, or was changed, in the meantime is left as it is and told. False if a file was not moved.
    bool moveOut();

private:
    struct State {
        qint64 size;
        QDateTime modified;
    };

    bool isUntouched(const QString &name) const;

    QString m_folder; ///< absolute, without links
    std::unique_ptr<QTemporaryDir> m_staging;
    QHash<QString, State> m_broughtIn;
};

} // namespace Batch
