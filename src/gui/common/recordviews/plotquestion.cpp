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
    const QString question = QCoreApplication::translate("RecordViews", "Add %n plots to the browser?", nullptr, count);
    return QMessageBox::question(parent, QCoreApplication::translate("RecordViews", "Plot selected"), question) ==
           QMessageBox::Yes;
}

} // namespace RecordViews
