#pragma once

#include "columns/scatterplotsettings.h"
#include "gui/common/uiinfo.h"

#include <QWidget>

class ExpSpinBox;
class QAction;
class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QToolButton;

namespace Tsb {

class SpectraSelectionWidget;

/// The row above a scatter plot in which the user chooses the values that it shows. It has no state beyond its widgets:
/// it is told the settings, and its signals tell the wishes.
class ScatterPropertiesRow : public QWidget {
    Q_OBJECT
public:
    explicit ScatterPropertiesRow(QWidget *parent = nullptr);

    void setUiInfo(const std::shared_ptr<UiInfo> &uiInfo);
    /// Shows the widgets of the settings' kind, with its values.
    void showSettings(const ScatterPlotSettings &settings);
    /// The entries of the button "Options".
    void setOptions(const QList<QAction *> &actions);
    /// Its last widget in the order of Tab.
    QWidget *lastForTab() const;

Q_SIGNALS:
    void electrometerChosen(int electrometer);
    void variableChosen(QString name);
    void parameterChosen(SpectrumParameter parameter);
    void concentrationTypeChosen(SpectMath::ConcentrationType type);
    void fractionScaleChosen(SpectMath::DistributionScale scale);
    void smallerLimitChosen(double value);
    void largerLimitChosen(double value);
    void totalChosen(bool total);
    void spectraChosen(QSet<QString> ids);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QComboBox *addCombo(const QString &toolTip);
    void makeFractionForm();
    void placeFractionForm();
    void refillCombos();
    void showSettingsForm(bool on);
    void showRangeLabel();

    std::shared_ptr<UiInfo> m_uiInfo;
    ScatterPlotSettings m_settings;
    QHBoxLayout *m_row;
    QToolButton *m_titleButton;
    QComboBox *m_electrometerCombo;
    QComboBox *m_variableCombo;
    QComboBox *m_parameterCombo;
    QWidget *m_fractionForm;
    QCheckBox *m_totalCheck;
    QComboBox *m_concentrationCombo;
    QComboBox *m_fractionScaleCombo;
    QLabel *m_rangeLabel;
    ExpSpinBox *m_smallerLimit;
    ExpSpinBox *m_largerLimit;
    QToolButton *m_optionsButton;
    QToolButton *m_spectraButton;
    SpectraSelectionWidget *m_spectra; ///< a pop-up
};

} // namespace Tsb
