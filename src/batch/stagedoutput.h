#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

class LockedFile;

namespace Batch {

/// A temporary folder beside the one to write to, whose files are moved there once they are complete. Other
/// programs see whole files alone in the folder, however this one ends.
class StagedOutput {
public:
    /// The files that were moved into place.
    struct Moved {
        QStringList names;
        bool complete = true; ///< all did, and will stand after a power failure too
    };

    /// The reason why no files can be put into that folder, or why no temporary one can stand beside it; empty if both
    /// can. It is tried.
    static QString obstacleTo(const QString &folder);

    explicit StagedOutput(const QString &folder);
    ~StagedOutput();

    /// Null if the folder can't be made; tells why.
    bool isValid() const { return m_staging && m_staging->isValid(); }
    /// Where to write.
    QString path() const { return m_staging->path(); }

    /// Brings the target files that exist to the temporary folder, to be continued there, with what was cut off of them
    /// before. Faults are told.
    bool bringIn(const QStringList &names);
    /// Lets files take the places of these target files.
    void replace(const QStringList &names);
    /// Moves all files to their folder, which is made, in place of those that were brought in or are to be replaced,
    /// whose permissions, owner and group they get.
    /// Nothing is moved if one file can't be, as far as that can be seen beforehand: it isn't on the disk, or its
    /// target came into being, or was changed, in the meantime, or is locked by a writer. If a move fails, those files
    /// are taken back that took no other's place. Faults are told.
    Moved moveOut();

private:
    struct State {
        qint64 size;
        QDateTime modified;
    };

    bool isUntouched(const QString &name) const;
    void noteState(const QString &name);
    /// The reason why the file can't be moved; null if there is none, and then nobody writes its target.
    QString faultOf(const QString &name);
    void takeBack(QStringList *names) const;
    QString target(const QString &name) const;

    QString m_folder; ///< absolute, without links
    std::unique_ptr<QTemporaryDir> m_staging;
    QHash<QString, State> m_existing;                  ///< targets that may be replaced
    std::vector<std::unique_ptr<LockedFile>> m_locked; ///< of them, those whose turn has come
};

} // namespace Batch
