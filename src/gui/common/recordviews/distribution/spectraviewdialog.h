#pragma once

#include "gui/common/recordviews/distribution/plotoptions.h"

#include <QDialog>

class QButtonGroup;
class QFormLayout;
class QSlider;

namespace RecordViews {

/// The choices of the distribution plot. Each takes effect at once, by a signal.
class SpectraViewDialog : public QDialog {
    Q_OBJECT
public:
    explicit SpectraViewDialog(QWidget *parent = nullptr);

    /// Shows these choices, without signals.
    void setChoices(const PlotOptions &options, bool isSinglePlot);

Q_SIGNALS:
    void verticalScaleLogChanged(bool on);
    void horizontalQuantityChanged(bool autoscale, SpectMath::DistributionScale scale);
    void verticalQuantityChanged(SpectMath::ConcentrationType type);
    void distributionTypeChanged(SpectMath::DistributionType type);
    void smoothingCoefChanged(double width);
    void singlePlotChanged(bool on);

private:
    struct Choice {
        int id;
        QString text;
    };

    /// A row of exclusive buttons; `chosen` is told of the id of each that is checked.
    template<typename Function>
    QButtonGroup *addChoices(QFormLayout *layout, const QString &title, const QList<Choice> &choices, Function chosen);
    void addSlider(QFormLayout *layout);

    QButtonGroup *m_distributionType = nullptr;
    QButtonGroup *m_verticalQuantity = nullptr;
    QButtonGroup *m_verticalScale = nullptr;
    QButtonGroup *m_horizontalQuantity = nullptr;
    QButtonGroup *m_layout = nullptr;
    QSlider *m_smoothing = nullptr;
};

} // namespace RecordViews
