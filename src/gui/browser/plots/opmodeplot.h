#pragma once

#include "columns/recordcolumn.h"
#include "gui/browser/drawing/barstrip.h"
#include "gui/browser/plots/plot.h"
#include "gui/common/recordnotes.h"
#include "gui/common/uiinfo.h"
#include "records/recordflag.h"

#include <QPointer>

namespace Tsb {

/// A strip of one line: in which operating mode the instrument was, with marks under the records that have a note; or
/// in which records one flag is raised.
class OpmodePlot : public Plot {
    Q_OBJECT
public:
    enum Mode { Opmode, Flag };

    explicit OpmodePlot(QWidget *parent = nullptr);

    Mode mode() const { return m_mode; }
    const Spectrometer::RecordFlag &flag() const { return m_flag; }
    void showOpmode();
    void showFlag(const Spectrometer::RecordFlag &flag);

    void setDatastore(Datastore *datastore) override;
    /// They may die before the plot; null for none.
    void setNotes(const RecordNotes *notes);
    void setUiInfo(std::shared_ptr<UiInfo> uiInfo);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

public Q_SLOTS:
    void reloadSetup();

protected:
    QString valuesText(const Record &record) const override;
    void noteUpdated(int index, const std::shared_ptr<Record> &record, int flags) override;
    void drawRange(QPainter &painter, int first, int last) override;
    void drawOverlay(QPainter &painter) override;
    bool event(QEvent *event) override;

private:
    QString textAt(int column);
    void notesChanged(RecordTime first, RecordTime last);
    bool isRaised(const Record &record) const;
    std::uint8_t flagStyleOf(const Record &record) const;
    void rebuildStyles();

    std::shared_ptr<UiInfo> m_uiInfo;
    Mode m_mode = Opmode;
    Spectrometer::RecordFlag m_flag;
    int m_knownModes = 0; ///< modes that have a colour; more are drawn in black
    std::vector<BarStyle> m_styles;
    RecordColumn<std::uint8_t> m_recordStyles; ///< places in m_styles
    BarStripPainter m_painter;
    QPointer<const RecordNotes> m_notes;
};

/// The pale tint of an operating mode's colour that fills its bars.
QColor paleTint(const QColor &color);

} // namespace Tsb
