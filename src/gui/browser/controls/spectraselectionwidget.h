#pragma once

#include <QSet>
#include <QString>
#include <QWidget>

#include <memory>

class QItemSelection;
class QListView;
class QPixmap;
class QStandardItemModel;
class UiInfo;

namespace Tsb {

/// A list from which the spectra of a view are chosen by their ids. Ids that the present data don't have stay in the
/// selection until they are deselected as a whole.
class SpectraSelectionWidget : public QWidget {
    Q_OBJECT
public:
    /// A pop-up window, or a child of the parent.
    explicit SpectraSelectionWidget(bool popup, QWidget *parent = nullptr);

    void setUiInfo(const std::shared_ptr<UiInfo> &uiInfo);
    const QSet<QString> &selectedSpectra() const { return m_selected; }
    QListView *listView() const { return m_listView; }
    /// Shows the pop-up at a button, as large as its rows and on the button's screen as a whole.
    void popUpBelow(const QWidget *button);

public Q_SLOTS:
    void updateSpectrumList();
    void setSelectedSpectra(const QSet<QString> &ids);

Q_SIGNALS:
    void visibilityChanged(bool visible);
    void selectionChanged(QSet<QString> ids);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private Q_SLOTS:
    void modelSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected);

private:
    void selectRows();
    QSize sizeOfRows() const;

    QListView *m_listView;
    QStandardItemModel *m_model;
    std::shared_ptr<UiInfo> m_uiInfo;
    QSet<QString> m_selected;
    bool m_selectingRows = false; ///< the rows follow m_selected, not the other way round
};

/// The square that stands for a spectrum's colour in lists and on scales.
QPixmap spectrumColorPixmap(const QColor &color);

} // namespace Tsb
