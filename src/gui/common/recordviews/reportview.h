#pragma once

#include "gui/common/recordviews/recordview.h"
#include "spectra/inverter.h"

class QLabel;
class QPushButton;
class QStackedWidget;
class QTextBrowser;

namespace RecordViews {

/// Shows how the selected record's currents invert, with every inverter of its operating mode. Nothing is computed
/// until the button is pressed; another record, and other inverters, bring the button back.
class ReportView : public RecordView {
    Q_OBJECT
public:
    explicit ReportView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr, Qt::WindowFlags flags = {});

    QString viewName() const override;

public Q_SLOTS:
    /// The inverters in use, in the order of loading; none until some have been loaded.
    void setInverters(const SpectMath::InverterList &inverters);
    void showCurrentReport();

protected:
    void refreshRecord() override;

private:
    QWidget *makeButtonPage();
    void returnToButton();

    std::shared_ptr<Record> m_reported; ///< the record that the pages are about
    SpectMath::InverterList m_inverters;
    QStackedWidget *m_pages;
    QPushButton *m_button = nullptr;
    QLabel *m_hint = nullptr; ///< tells the reason why there is no report
    QTextBrowser *m_browser;
};

} // namespace RecordViews
