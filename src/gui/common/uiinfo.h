#pragma once

#include "gui/common/spectrumcolors.h"
#include "gui/common/vargridlayout.h"
#include "records/recordmetadata.h"
#include "spectra/spectruminfo.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <vector>

/// Names and looks of the present data: the one shared state of the views, and the requests that one
/// view makes for a plot in another. Lives as long as the main window; main thread only.
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
    bool isKnown(InfoKey info) const;

    // These emit nothing (but highlightsChanged): call publish() when all is in place.
    /// Takes over a read's descriptions. Colours given before stay with descriptions of the same hash.
    void setData(std::shared_ptr<const Spectrometer::RecordMetadata> metadata, const QList<InfoPointer> &infos);
    /// Adds a description that a run with that tag made. Null, or one whose hash is known, is refused.
    void addSpectrum(const InfoPointer &info, const QString &tag);
    void removeSpectrum(InfoKey info);
    /// No data, nothing highlighted. Colours are remembered, for the case that the same data come back.
    void clear();
    /// The user's own colour for a spectrum, which stays with its hash. An invalid one changes nothing.
    void setSpectrumColor(InfoKey info, const QColor &color);
    /// The colours that the user gave, by hash.
    const SpectrumColors::ByHash &userColors() const { return m_userColors; }
    /// Others in the place of all of these; spectra without one get an automatic colour.
    void setUserColors(const SpectrumColors::ByHash &colors);
    /// The user's own words on a spectrum of the list, in place of those that it came with; gone with the data.
    void setSpectrumComment(InfoKey info, const QString &comment);
    /// The layouts of the variable grid for the present metadata.
    void setGridLayouts(std::vector<VarGridLayout> layouts) { m_gridLayouts = std::move(layouts); }
    const std::vector<VarGridLayout> &gridLayouts() const { return m_gridLayouts; }
    /// Recomputes names and colours and emits configUpdated.
    void publish();

    // ---- names and colours
    /// The text that all views show for a spectrum; empty for null.
    QString spectrumName(InfoKey info) const;
    /// Invalid when it has none.
    QColor spectrumColor(InfoKey info) const;
    /// The user's comment on a spectrum, or the one that it came with; empty for null.
    QString spectrumComment(InfoKey info) const;
    /// The description with the user's comment in it, as it is written into files: itself, or a copy that is equal.
    InfoPointer commented(const InfoPointer &info) const;
    /// The colours of all spectra, by hash.
    const SpectrumColors::ByHash &spectrumColors() const { return m_spectrumColors; }
    /// Indexed by opmode.
    const std::vector<QColor> &opmodeColors() const { return m_opmodeColors; }
    /// The opmode's colour; invalid for an index outside the list.
    QColor opmodeColor(int opmode) const;

    /// The name of the colour map of new spectrograms, by the user's choice; empty for the first one. Stays when data
    /// go.
    const QString &defaultColormap() const { return m_defaultColormap; }
    void setDefaultColormap(const QString &name) { m_defaultColormap = name; }

    // ---- highlighted variables and electrometers; each call replaces the old
    void setHighlights(const QStringList &variables, const QList<int> &electrometers);
    const QStringList &highlightedVariables() const { return m_highlightedVariables; }
    const QList<int> &highlightedElectrometers() const { return m_highlightedElectrometers; }

    // ---- small values that views share by key
    /// Emits variableChanged with the key if the value is another one.
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
    std::shared_ptr<const Spectrometer::RecordMetadata> m_metadata;
    QList<InfoPointer> m_spectrumInfos;
    // All by hash: a description that is rebuilt keeps its names, tags and comments.
    QHash<QString, QString> m_spectrumNames;
    QHash<QString, QString> m_spectrumTags;
    QHash<QString, QString> m_spectrumComments; ///< by the user
    SpectrumColors::ByHash m_spectrumColors;
    SpectrumColors::ByHash m_userColors;
    std::vector<QColor> m_opmodeColors;
    std::vector<VarGridLayout> m_gridLayouts;
    QString m_defaultColormap;
    QStringList m_highlightedVariables;
    QList<int> m_highlightedElectrometers;
    QVariantMap m_values;
};
