#include "gui/common/recordviews/flagmark.h"

#include <QBrush>
#include <QCoreApplication>
#include <QFont>

namespace RecordViews {

QVariant flagMark(int role)
{
    if (role == Qt::ForegroundRole)
        return QBrush(Qt::red);
    if (role == Qt::AccessibleDescriptionRole)
        return QCoreApplication::translate("FlagMark", "of the chosen flag");
    if (role != Qt::FontRole)
        return {};
    QFont font;
    font.setUnderline(true);
    return font;
}

} // namespace RecordViews
