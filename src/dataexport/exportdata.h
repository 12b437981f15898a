#pragma once

#include "records/recordhead.h"
#include "records/recordmetadata.h"
#include "spectra/spectruminfo.h"

#include <QStringList>
#include <QVector>

#include <memory>

namespace DataExport {

/// The data that a table is made of, as far as its columns and its head depend on them.
struct ExportData {
    std::shared_ptr<const Spectrometer::RecordMetadata> metadata; ///< never null
    QVector<SpectMath::SpectrumInfoPointer> infos;                ///< all that there are; labels depend on them
    bool isPreview = false; ///< the debug channel hears nothing of it
    // Told in comment lines.
    QString folder;
    QStringList files;
    Spectrometer::RecordHead first; ///< of the span that is exported
    Spectrometer::RecordHead last;
};

} // namespace DataExport
