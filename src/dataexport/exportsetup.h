#pragma once

#include "dataexport/fractions.h"
#include "dataexport/quantity.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <variant>
#include <vector>

/// Tables of chosen values, a line for each record, as delimited text.
namespace DataExport {

/// What stands in a setup's map "general".
struct GeneralSettings {
    QString outputFile;
    bool local = false; ///< times and days by the record's own offset, else UTC
    bool addDate = false;
    bool addOpmode = false;
    QString separator = QStringLiteral("\t"); ///< never empty, without line feeds and double quotes
    QString timeFormat = QStringLiteral("%Y-%m-%d %H:%M:%s");
    bool commentLines = false;
    QStringList opmodes; ///< the modes whose records are exported; empty: all
};

/// Total concentrations and fractions, each with its uncertainty. The spectra are named by their hashes.
struct ConcentrationField {
    QStringList spectra;
    Quantity quantity;
    bool total = true;
    DecadeFractions decades;
    DistributionScale customScale = DistributionScale::diameter; ///< or mobility
    std::vector<Limits> customFractions;                         ///< empty where they aren't enabled
};

/// All values of a spectrum.
struct SpectrumField {
    QStringList spectra;
    Quantity quantity;
    DistributionScale scale = DistributionScale::diameter; ///< or mobility
    SpectMath::DistributionType distribution = SpectMath::DistributionType::density;
    bool uncertainties = false;
};

struct VariableField {
    QStringList variables; ///< names
};

struct ElectrometerField {
    QStringList electrometers; ///< names; empty: all
    bool currents = true;
    bool deviations = false;
    bool rawCurrents = false;
    bool voltages = false;
};

using Field = std::variant<ConcentrationField, SpectrumField, VariableField, ElectrometerField>;

struct ExportSetup {
    GeneralSettings general;
    std::vector<Field> fields;
    /// What was wrong and could be passed over, in words: each cost its word, its key or its field.
    QStringList errors;
};

/// A setup that can't be used at all.
class SetupError {
public:
    explicit SetupError(const QString &message) : m_message(message) {}
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Understands the tree of a setup. Keys that are absent have their defaults. Throws SetupError if it is no map, has no
/// map "general" or no list "fields", or is of a later version.
ExportSetup exportSetupFrom(const QVariant &tree);
/// The tree of a setup file. Throws SetupError if the file can't be read, or isn't one document of YAML.
QVariant loadSetupTree(const QString &path);
/// Both in one.
ExportSetup loadExportSetup(const QString &path);

} // namespace DataExport
