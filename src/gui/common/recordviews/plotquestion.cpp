#include "gui/common/recordviews/plotquestion.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace RecordViews {

namespace {

constexpr int mostUnasked = 20;

} // namespace

bool confirmPlots(QWidget *parent, int count)
{
    if (count <= mostUnasked)
        return count > 0;
    const QString question = QCoreApplication::translate("RecordViews", "Add %1 plots to the browser?");
    return QMessageBox::question(parent, QCoreApplication::translate("RecordViews", "Plot selected"),
                                 question.arg(count)) == QMessageBox::Yes;
}

} // namespace RecordViews
