#pragma once

#include <QList>
#include <QWidget>

class Colorbar;
class QAction;
class QBoxLayout;
class QDoubleSpinBox;
class QLabel;
class QToolButton;

namespace Tsb {

class ColorLimits;
class ColormapMenu;
class ZeroSwatch;

/// The row above the strips of a spectrogram view: the button for its list of spectra, options, smoothing, colour bar
/// and limits; where it is too narrow for their texts, colour bar and limits have a row of their own. Owns the state of
/// its options. The limits must live as long as the row.
class SpectrogramControls : public QWidget {
    Q_OBJECT
public:
    SpectrogramControls(ColorLimits &limits, QWidget *parent);

    /// A checkable button that shows and hides the list of spectra.
    QToolButton *spectraButton() const { return m_spectraButton; }
    Colorbar *colorbar() const { return m_colorbar; }
    ColormapMenu *colormaps() const { return m_colormaps; }
    /// The options, for a context menu.
    const QList<QAction *> &options() const { return m_options; }

    bool fillsGaps() const;
    void setFillGaps(bool on);
    bool marksZeros() const;
    void setMarkZeros(bool on);
    bool locksColors() const;
    void setLockColors(bool on);
    bool isSmoothing() const;
    void setSmoothing(bool on);
    /// The width that smoothing has while it is on.
    double smoothingWidth() const;
    void setSmoothingWidth(double width);
    /// The width that is in use: 0 while smoothing is off.
    double usedSmoothing() const { return isSmoothing() ? smoothingWidth() : 0.0; }

Q_SIGNALS:
    void fitRequested();
    void fillGapsChanged(bool on);
    void markZerosChanged(bool on);
    void lockColorsChanged(bool on);
    /// Another width is in use.
    void smoothingChanged(double width);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void makeOptions();
    void fitRows();
    QAction *addOption(const QString &text, const QString &toolTip = QString());
    QAction *addSwitch(const QString &text, const QString &toolTip);
    void showSmoothing(bool on);

    QBoxLayout *m_buttonRow;
    QBoxLayout *m_colorRow;
    QBoxLayout *m_rows; ///< both, beside each other or one below the other
    QToolButton *m_spectraButton;
    QToolButton *m_optionsButton;
    QLabel *m_smoothingLabel;
    QDoubleSpinBox *m_smoothingBox;
    Colorbar *m_colorbar;
    ColormapMenu *m_colormaps;
    ZeroSwatch *m_zeroSwatch;
    QAction *m_fillGapsAction = nullptr;
    QAction *m_smoothingAction = nullptr;
    QAction *m_markZerosAction = nullptr;
    QAction *m_lockAction = nullptr;
    QList<QAction *> m_options;
};

} // namespace Tsb
