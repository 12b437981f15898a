#pragma once

#include "gui/browser/plots/opmodeplot.h"
#include "gui/browser/views/singleplotview.h"

class QLabel;

namespace Tsb {

/// The view around an operating mode strip, or around the strip of one flag with the flag's message above it.
class OpmodeView : public SinglePlotView<OpmodePlot> {
    Q_OBJECT
public:
    explicit OpmodeView(QWidget *parent = nullptr);

    void setUiInfo(std::shared_ptr<UiInfo> uiInfo) override;
    void setNotes(const RecordNotes *notes) override;
    /// "type" is "opmode" or "flag", with the definition's text under "flag".
    QVariant settings() const override;
    void setSettings(const QVariant &settings) override;

public Q_SLOTS:
    void showOpmode();
    void showFlag(const QString &flagData);

private:
    int heightOf(int labelHeight) const;

    QLabel *m_label;
};

} // namespace Tsb
