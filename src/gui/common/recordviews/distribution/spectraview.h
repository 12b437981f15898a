#pragma once

#include "gui/common/recordviews/distribution/plotoptions.h"
#include "gui/common/recordviews/distribution/resultplots.h"
#include "gui/common/recordviews/recordview.h"

#include <QSet>
#include <QVector>

class QAction;
class QMenu;
class QToolBar;

namespace RecordViews {

class PlotPicture;
class ResultPlots;
class SpectraViewDialog;
class SummaryText;
struct ShownSpectrum;

/// Draws the spectra of the selected record, in one plot or one plot each, tells each in four numbers, and copies them
/// as text.
class SpectraView : public RecordView {
    Q_OBJECT
public:
    explicit SpectraView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    ~SpectraView() override;

    QString viewName() const override;
    /// The fields of PlotOptions under their keys, and "single_plot".
    QVariantMap setup() const override;
    void restoreSetup(const QVariantMap &setup) override;

    const PlotOptions &options() const { return *m_options; }
    bool isSinglePlot() const;

public Q_SLOTS:
    void copySpectraToClipboard();
    void setVerticalScaleLog(bool on);
    /// Each spectrum on its native axis, or all on one.
    void setHorizontalQuantity(bool autoscale, SpectMath::DistributionScale scale);
    /// Radius isn't shown: it changes nothing.
    void setVerticalQuantity(SpectMath::ConcentrationType type);
    void setDistributionType(SpectMath::DistributionType type);
    void setSmoothingCoef(double width);
    void setSinglePlot(bool on);
    void showDialog();

protected:
    void refreshSetup() override;
    void refreshRecord() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setupActions();
    void setupToolbar(QToolBar *bar);
    void setupContextMenu();
    void setupDialog();
    template<typename T>
    void choose(T &field, const T &value);
    void choicesChanged();
    void fillSpectrumMenu();
    void setSpectrumShown(const QString &hash, bool on);
    void showSummary(const QVector<ShownSpectrum> &shown);
    void showSummaryIfThereIsRoom();

    /// The record's spectra by the order of their descriptions.
    QVector<ShownSpectrum> recordSpectra() const;
    QVector<ShownSpectrum> chosenSpectra(const QVector<ShownSpectrum> &all) const;
    QString clipboardText() const;

    std::shared_ptr<PlotOptions> m_options;
    QToolBar *m_bar = nullptr;
    ResultPlots *m_plots;
    SummaryText *m_summary;
    PlotPicture *m_picture;
    SpectraViewDialog *m_dialog = nullptr;
    QMenu *m_spectrumMenu;
    QAction *m_copy = nullptr;
    QAction *m_settings = nullptr;
    QAction *m_lock = nullptr;
    QAction *m_hold = nullptr;
    QAction *m_fit = nullptr;
    QSet<QString> m_hidden; ///< hashes of the spectra that the user doesn't want to see
    bool m_isRestoring = false;
};

} // namespace RecordViews
