#pragma once

#include "gui/common/commentmap.h"

#include <QTemporaryDir>

/// A record of ten minutes; number 0 begins at the noon of 2019-09-12 by local time, the others follow each other.
inline std::shared_ptr<Record> commentRecord(int place, std::int64_t utcOffset = 7200)
{
    auto record = std::make_shared<Record>();
    const std::int64_t noon = (18151 * 2 + 1) * ticksPerDay / 2 - utcOffset * ticksPerSecond;
    record->beginTime = recordTimeFromTicks(noon + place * 600 * ticksPerSecond);
    record->endTime = recordTimeFromTicks(ticksOf(record->beginTime) + 600 * ticksPerSecond);
    record->midTime = Spectrometer::middleOf(record->beginTime, record->endTime);
    record->beginUtcOffset = record->endUtcOffset = utcOffset;
    record->dpVariantId = record->opmode = 0;
    return record;
}

/// A map on a folder, whose variant is "block" and whose mode is "ions".
inline std::unique_ptr<CommentMap> commentMap(const QString &folder, const QString &variant = QStringLiteral("block"))
{
    auto map = std::make_unique<CommentMap>();
    DpVariant block;
    block.name = variant;
    map->setFolder(folder);
    map->setVariants({block});
    map->setOpmodeNames({{0, QStringLiteral("ions")}});
    return map;
}
