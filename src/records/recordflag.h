#pragma once

#include <QString>
#include <QVariantMap>

#include <cstdint>

namespace Spectrometer {

/// One flag definition, shared by all records that carry it.
struct RecordFlag {
    enum Type { Note, Warning, Failure };

    QString text;            ///< the definition as it stood in the file
    QString message;
    QVariantMap properties;
    std::uint32_t hash = 0;  ///< qHash(text, 0)
    std::int32_t type = Note;
};

} // namespace Spectrometer
