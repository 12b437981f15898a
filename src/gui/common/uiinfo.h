#pragma once

#include "records/recordmetadata.h"
#include "spectra/spectruminfo.h"

#include <QColor>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <vector>

/// What the present data are called and how they look: the one shared state of the views, and the requests that one view
/// makes for a plot in another. Lives as long as the main window; main thread only.
class UiInfo : public QObject {
    Q_OBJECT
public:
    using InfoPointer = SpectMath::SpectrumInfoPointer;
    using InfoKey = const SpectMath::SpectrumInfo *;

    UiInfo();
    ~UiInfo() override;

    // ---- the data's description
    std::shared_ptr<const Spectrometer::RecordMetadata> metadata() const { return m_metadata; } ///< may be null
    /// In display order.
    const QList<InfoPointer> &spectrumInfos() const { return m_spectrumInfos; }
    /// The description of that id (its hash), or null.
    InfoPointer spectrumById(const QString &id) const;

    /// Takes over a read's descriptions. Colours given before stay with descriptions of the same hash. No signal: call
    /// publish() when all is in place.
    void setData(std::shared_ptr<const Spectrometer::RecordMetadata> metadata, const QList<InfoPointer> &infos);
    void addSpectrum(const InfoPointer &info, const QString &tag);
    void removeSpectrum(InfoKey info);
    void clear();
    /// Recomputes names and colours and emits configUpdated.
    void publish();

    // ---- names and colours
    /// The text that all views show for a spectrum.
    QString spectrumName(InfoKey info) const;
    /// Invalid when it has none.
    QColor spectrumColor(InfoKey info) const;
    /// The colours of all spectra, by hash.
    QHash<QString, QColor> spectrumColors() const;
    void setSpectrumColor(InfoKey info, const QColor &color);
    /// A text laid over the description's own comment.
    QString spectrumComment(InfoKey info) const;
    void setSpectrumComment(InfoKey info, const QString &comment);
    /// Indexed by opmode.
    const std::vector<QColor> &opmodeColors() const { return m_opmodeColors; }
    /// The opmode's colour; invalid for an index outside the list.
    QColor opmodeColor(int opmode) const;

    // ---- highlighted variables and electrometers; each call replaces the old
    void setHighlights(const QStringList &variables, const QList<int> &electrometers);
    const QStringList &highlightedVariables() const { return m_highlightedVariables; }
    const QList<int> &highlightedElectrometers() const { return m_highlightedElectrometers; }

    // ---- small values that views share by key
    void setValue(const QString &key, const QVariant &value);
    QVariant value(const QString &key) const { return m_values.value(key); }

Q_SIGNALS:
    void requestVariableScatterplot(QString varName);
    void requestElectrometerScatterplot(int elmIndex);
    void requestFlagPlot(QString flagData);
    /// Names, colours or the list of spectra changed.
    void configUpdated();
    void variableChanged(QString value);
    void highlightsChanged();

private:
    void recomputeNames();
    void recomputeSpectrumColors();
    void recomputeOpmodeColors();

    std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    QList<InfoPointer> m_spectrumInfos;
    QMap<InfoKey, QString> m_spectrumNames;
    QMap<InfoKey, QString> m_spectrumTags;
    QMap<InfoKey, QString> m_spectrumComments;
    QMap<InfoKey, QColor> m_spectrumColors;
    std::vector<QColor> m_opmodeColors;
    QStringList m_highlightedVariables;
    QList<int> m_highlightedElectrometers;
    QVariantMap m_values;
};
