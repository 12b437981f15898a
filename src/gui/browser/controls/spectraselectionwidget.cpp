#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/common/uiinfo.h"
#include "util/textescape.h"

#include <QBoxLayout>
#include <QEvent>
#include <QIcon>
#include <QItemSelectionModel>
#include <QListView>
#include <QPixmap>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStandardItemModel>
#include <QStyle>

#include <algorithm>

namespace Tsb {

namespace {
constexpr int idRole = Qt::UserRole;
constexpr int colorSquare = 8;
constexpr int leastWidth = 16; // characters

/// The colour itself in a selected row too, where an icon would be tinted.
QIcon spectrumIcon(const QColor &color)
{
    const QPixmap square = spectrumColorPixmap(color);
    QIcon icon(square);
    icon.addPixmap(square, QIcon::Selected);
    return icon;
}
} // namespace

QPixmap spectrumColorPixmap(const QColor &color)
{
    QPixmap pixmap(colorSquare, colorSquare);
    pixmap.fill(color);
    return pixmap;
}

SpectraSelectionWidget::SpectraSelectionWidget(bool popup, QWidget *parent)
    : QWidget(parent, popup ? Qt::Popup : Qt::Widget), m_listView(new QListView(this)),
      m_model(new QStandardItemModel(this))
{
    m_listView->setWordWrap(true);
    m_listView->setAccessibleName(tr("Spectra"));
    m_listView->setSelectionMode(QAbstractItemView::MultiSelection);
    m_listView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_listView->setModel(m_model);
    m_listView->setIconSize(QSize(colorSquare, colorSquare));
    if (popup) // a press on the button that closes the list must not open it again
        setAttribute(Qt::WA_NoMouseReplay);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_listView);
    setFocusProxy(m_listView);
    connect(m_listView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SpectraSelectionWidget::modelSelectionChanged);
}

void SpectraSelectionWidget::setUiInfo(const std::shared_ptr<UiInfo> &uiInfo)
{
    if (m_uiInfo)
        disconnect(m_uiInfo.get(), nullptr, this, nullptr);
    m_uiInfo = uiInfo;
    if (m_uiInfo)
        connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &SpectraSelectionWidget::updateSpectrumList);
    updateSpectrumList();
}

void SpectraSelectionWidget::updateSpectrumList()
{
    QScopedValueRollback<bool> guard(m_selectingRows, true);
    m_model->clear();
    if (!m_uiInfo)
        return;
    const QSize size(0, fontMetrics().height() + 6);
    for (const auto &info : m_uiInfo->spectrumInfos()) {
        auto *item = new QStandardItem(capitalized(m_uiInfo->spectrumName(info.get())));
        item->setEditable(false);
        item->setData(info->hash, idRole);
        const QColor color = m_uiInfo->spectrumColor(info.get());
        if (color.isValid())
            item->setIcon(spectrumIcon(color));
        item->setSizeHint(size);
        m_model->appendRow(item);
    }
    selectRows();
}

void SpectraSelectionWidget::selectRows()
{
    QScopedValueRollback<bool> guard(m_selectingRows, true);
    QItemSelection rows;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        if (m_selected.contains(index.data(idRole).toString()))
            rows.select(index, index);
    }
    m_listView->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
}

void SpectraSelectionWidget::setSelectedSpectra(const QSet<QString> &ids)
{
    if (ids == m_selected)
        return;
    m_selected = ids;
    selectRows();
    Q_EMIT selectionChanged(m_selected);
}

void SpectraSelectionWidget::modelSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    if (m_selectingRows)
        return;
    QSet<QString> ids = m_selected;
    for (const QModelIndex &index : deselected.indexes())
        ids.remove(index.data(idRole).toString());
    for (const QModelIndex &index : selected.indexes())
        ids.insert(index.data(idRole).toString());
    if (ids == m_selected)
        return;
    m_selected = ids;
    Q_EMIT selectionChanged(m_selected);
}

QSize SpectraSelectionWidget::sizeOfRows() const
{
    const int rows = m_model->rowCount(), frame = 2 * m_listView->frameWidth();
    int widest = fontMetrics().averageCharWidth() * leastWidth, height = frame;
    for (int row = 0; row < rows; ++row) {
        widest = std::max(widest, fontMetrics().horizontalAdvance(m_model->item(row)->text()));
        height += m_model->item(row)->sizeHint().height();
    }
    const int margin = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_listView) + 1);
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_listView);
    return {widest + colorSquare + 2 * margin + scrollBar + frame, std::max(height, frame + fontMetrics().height())};
}

void SpectraSelectionWidget::popUpBelow(const QWidget *button)
{
    const QRect screen = button->screen()->availableGeometry();
    resize(sizeOfRows().boundedTo(screen.size()));
    QPoint place = button->mapToGlobal(QPoint(0, button->height()));
    if (place.y() + height() > screen.bottom() + 1) {
        const int above = button->mapToGlobal(QPoint()).y() - height();
        place.setY(above >= screen.top() ? above : screen.bottom() + 1 - height());
    }
    place.setX(std::max(screen.left(), std::min(place.x(), screen.right() + 1 - width())));
    move(place);
    show();
    m_listView->setFocus();
}

bool SpectraSelectionWidget::event(QEvent *event)
{
    // The view behind a pop-up is its parent, and would take the keys of its own commands: Escape would not close the
    // list.
    if (isWindow() && event->type() == QEvent::ShortcutOverride)
        event->accept();
    return QWidget::event(event);
}

void SpectraSelectionWidget::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    Q_EMIT visibilityChanged(true);
}

void SpectraSelectionWidget::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    Q_EMIT visibilityChanged(false);
}

} // namespace Tsb
