#pragma once

#include "records/recordflag.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

#include <memory>
#include <unordered_map>
#include <vector>

namespace Spectrometer {

/// The short ids under which one block of a records file names its flags: the first two or more hexadecimal digits of
/// the SHA-1 of the flag's text. Ids that were taken for a row stay only if that row is written. Texts are compared as
/// they stand in the file.
class FlagIds {
public:
    using FlagPointer = std::shared_ptr<RecordFlag>;

    /// The flag's id. A new id appends its "# flag " line to *definitions.
    QByteArray idOf(const FlagPointer &flag, QByteArray *definitions);

    /// Takes the id of a "# flag " line of the block, without its line feed. Any other line changes nothing.
    void readDefinition(const QByteArray &line);
    /// The texts of the ids in a row's field of flags. Of an id that isn't defined it is the id itself.
    QByteArrayList textsOf(const QByteArray &field) const;
    /// A flag's text as it stands in a file.
    static QByteArray writtenText(const QString &text);

    /// The row and its definitions stand in the file.
    void commit();
    /// They don't: forgets the ids taken since the last commit.
    void rollBack();
    void clear();

private:
    std::unordered_map<FlagPointer, QByteArray> m_ids;
    QHash<QByteArray, QByteArray> m_texts; ///< of each id defined
    std::vector<FlagPointer> m_newFlags;
    std::vector<QByteArray> m_newTexts;
};

} // namespace Spectrometer
