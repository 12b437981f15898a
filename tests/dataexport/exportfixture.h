#pragma once

#include "dataexport/exporttable.h"
#include "support/instrument.h"

#include <gtest/gtest.h>

/// The tree of a setup with these fields.
inline QVariantMap setupTree(const QVariantList &fields, const QVariantMap &general = {})
{
    return {{"general", general}, {"fields", fields}};
}

inline DataExport::ExportData exportData(const QVector<SpectMath::SpectrumInfoPointer> &infos,
                                         const Spectrometer::RecordMetadataPointer &metadata = testMetadata({"ions"}))
{
    DataExport::ExportData data;
    data.metadata = metadata;
    data.infos = infos;
    return data;
}

/// A table of one field, or of several.
inline DataExport::ExportTable tableOf(const QVariantList &fields, const DataExport::ExportData &data,
                                       const QVariantMap &general = {})
{
    const auto setup = DataExport::exportSetupFrom(setupTree(fields, general));
    EXPECT_EQ(setup.errors, QStringList());
    return DataExport::ExportTable(setup, data);
}

/// The titles of the fields, those of times and mode left out.
inline QStringList titlesOf(const DataExport::ExportTable &table)
{
    return QString::fromUtf8(table.head()).chopped(1).split('\t').mid(3);
}

/// The record's fields, those of times and mode left out.
inline QStringList fieldsOf(const DataExport::ExportTable &table, const Record &record)
{
    auto line = table.emptyLine();
    table.addLine(record, line);
    return QString::fromUtf8(line.data(), int(line.size())).chopped(1).split('\t').mid(3);
}

/// A description in the units of real instruments, whose id is "id-" and the name.
inline std::shared_ptr<SpectMath::SpectrumInfo> infoPerCm3(const QString &name, const std::vector<double> &grid,
                                                           SpectMath::DistributionScale scale)
{
    auto info = std::make_shared<SpectMath::SpectrumInfo>();
    info->name = name;
    info->hash = "id-" + name;
    info->scale = scale;
    info->concentrationUnit = (1e6 / Unit::metre.pow(3)).named("1/cm^3");
    RealVector &points = scale == SpectMath::DistributionScale::mobility ? info->mobilities : info->radii;
    points.resize(grid.size());
    std::copy(grid.begin(), grid.end(), points.begin());
    info->finish();
    return info;
}

/// A spectrum of these values, each with that variance.
inline std::shared_ptr<SpectMath::Spectrum> spectrumOf(const SpectMath::SpectrumInfoPointer &info,
                                                       const std::vector<double> &values, double variance = 0)
{
    auto spectrum = testSpectrum(info);
    std::copy(values.begin(), values.end(), spectrum->concentrations.begin());
    spectrum->covariances = BandMatrix(values.size(), values.size(), 0, 0);
    for (std::size_t i = 0; i < values.size(); ++i)
        spectrum->covariances(i, i) = variance;
    return spectrum;
}
