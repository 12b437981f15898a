#include "gui/common/selectiontext.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace {

class AccessibleDrawing : public QAccessibleWidget {
public:
    AccessibleDrawing(QWidget *drawing, const SelectionText &selection)
        : QAccessibleWidget(drawing, QAccessible::Graphic), m_selection(selection)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Description || kind == QAccessible::Value)
            return m_selection.selectionText();
        return QAccessibleWidget::text(kind);
    }

private:
    const SelectionText &m_selection;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    const auto *const selection = dynamic_cast<SelectionText *>(object);
    return selection ? new AccessibleDrawing(static_cast<QWidget *>(object), *selection) : nullptr;
}

} // namespace

void tellSelections()
{
    QAccessible::installFactory(makeInterface); // a second time does nothing
}

void noteSelectionChanged(QWidget *drawing)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(drawing, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}
