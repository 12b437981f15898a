#pragma once

#include "records/recordflag.h"

#include <QByteArray>
#include <QHash>

#include <memory>
#include <unordered_map>
#include <vector>

namespace Spectrometer {

/// The short ids under which one opening of a records file names its flags: the first two or more hexadecimal digits of
/// the SHA-1 of the flag's text. Ids that were taken for a row stay only if that row is written.
class FlagIds {
public:
    using FlagPointer = std::shared_ptr<RecordFlag>;

    /// The flag's id. A new id appends its "# flag " line to *definitions.
    QByteArray idOf(const FlagPointer &flag, QByteArray *definitions);

    /// The row and its definitions stand in the file.
    void commit();
    /// They don't: forgets the ids taken since the last commit.
    void rollBack();
    void clear();

private:
    std::unordered_map<FlagPointer, QByteArray> m_ids;
    QHash<QByteArray, QString> m_texts; ///< of each id defined
    std::vector<FlagPointer> m_newFlags;
    std::vector<QByteArray> m_newTexts;
};

} // namespace Spectrometer
