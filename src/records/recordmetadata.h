#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariantMap>
#include <QVector>

#include <cstdint>
#include <memory>

/// An operating mode. Its index is its own place in RecordMetadata::opmodes.
struct Opmode {
    Opmode() = default;
    Opmode(int modeIndex, const QString &modeName);

    std::int32_t index = -1;
    QString name;
    bool isOffset = false; ///< true exactly for the name "offset"
};

/// A data processing variant.
struct DpVariant {
    bool followAtOnce = false;
    bool skipOffsets = false;
    std::int32_t id = -1; ///< never used as a key: the variant number everywhere is the index in dpVariants
    QString name;
    QString shortName;
};

namespace Spectrometer {

/// One diagnostic variable's description.
struct SystemVariable {
    QString name; ///< the key
    QString humanname;
    QString unit;                 ///< empty if none
    std::int32_t index = -1;      ///< place in RecordMetadata::variables
    std::int32_t valueIndex = -1; ///< slot in FullRecord::variables
    std::int32_t reserved = 1;
};

/// A group of neighbouring channels, end exclusive (files hold the last channel, inclusive).
struct ChannelRange {
    int first = 0;
    int end = 0;
};
inline bool operator==(ChannelRange a, ChannelRange b)
{
    return a.first == b.first && a.end == b.end;
}
inline bool operator!=(ChannelRange a, ChannelRange b)
{
    return !(a == b);
}

/// The meaning of the numbered slots of the records of one store. One per read.
struct RecordMetadata {
    QVariantMap instrumentSettings;
    std::int32_t totalElectrometers = 0;
    QVector<QString> electrometerNames;
    QVector<std::shared_ptr<SystemVariable>> variables;
    std::int32_t variableCount = 0; ///< slots of FullRecord::variables
    QVector<Opmode> opmodes;        ///< index = RecordHead::opmode
    QMap<QString, ChannelRange> electrometerGroups;
    QVector<DpVariant> dpVariants; ///< index = RecordHead::dpVariantId

    /// The mode's name, or an empty text for an index outside the list.
    QString opmodeName(int opmode) const;
    /// The variable of that name, or null.
    std::shared_ptr<SystemVariable> variable(const QString &name) const;
};

using RecordMetadataPointer = std::shared_ptr<RecordMetadata>;

} // namespace Spectrometer

Q_DECLARE_METATYPE(std::shared_ptr<Spectrometer::RecordMetadata>)
