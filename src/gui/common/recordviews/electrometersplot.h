#pragma once

#include "gui/common/recordviews/recordview.h"

#include <vector>

class QAction;

namespace RecordViews {

class ChannelPlot;

/// The record's currents by channel, with the user's correction of each electrometer.
class ElectrometersPlot : public RecordView {
    Q_OBJECT
public:
    explicit ElectrometersPlot(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});

    QString viewName() const override;
    QVariantMap setup() const override;
    void restoreSetup(const QVariantMap &setup) override;

    bool usesCorrection() const { return m_useCorrection; }
    const std::vector<double> &coefficients() const { return m_coefficients; }

public Q_SLOTS:
    void setUseCorrection(bool on);
    /// Asks for the coefficients, until all are numbers or the user gives up.
    void showEditCoefficients();

Q_SIGNALS:
    void useCorrectionChanged(bool on);

protected:
    void refreshSetup() override;
    void refreshRecord() override;

private:
    void makeActions();
    void setCoefficients(const std::vector<double> &coefficients);
    void clearTitle();

    ChannelPlot *m_plot;
    bool m_useCorrection = false;
    std::vector<double> m_coefficients;
};

} // namespace RecordViews
