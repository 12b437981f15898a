#pragma once

#include "records/recordmetadata.h"
#include "spectra/spectruminfo.h"

#include <QByteArray>
#include <QList>
#include <QVariantMap>
#include <QVector>

/// The headers of day files: a magic line, a YAML document of sorted keys with "# " before each of its lines, and the
/// row of column names. Lines are without their line feeds.
namespace Spectrometer {
namespace FileHeader {

using Lines = QList<QByteArray>;
using SpectrumInfos = QVector<SpectMath::SpectrumInfoPointer>;

/// "Quilvane <version> revision <revision> date <build time> architecture <ABI>"
QString softwareText();

/// The keys that all headers have.
QVariantMap commonKeys(const RecordMetadata &metadata);

// The full headers. `common` is commonKeys(), with "dataproc variant" where there is a variant. A map that can't be
// dumped is logged, and the header is a single line that says so.
Lines recordsHeader(const QVariantMap &common, const RecordMetadata &metadata);
Lines diagnosticsHeader(const QVariantMap &common, const RecordMetadata &metadata);
Lines currentsHeader(const QVariantMap &common, const RecordMetadata &metadata);
Lines rawHeader(const QVariantMap &common, const RecordMetadata &metadata);
Lines spectraHeader(const QVariantMap &common, const QString &opmode, const SpectrumInfos &spectra, bool inversionVars);
/// The program log has no YAML and no columns.
Lines logHeader();

} // namespace FileHeader
} // namespace Spectrometer
