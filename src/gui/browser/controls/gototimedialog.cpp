#include "gui/browser/controls/gototimedialog.h"

#include "axis/timenavigator.h"
#include "util/timeformat.h"
#include "util/timeparse.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace Tsb {

namespace {

const QString offeredFormat = QStringLiteral("%Y-%m-%d %H:%M:%S");
constexpr int messageWidth = 52; // average characters
constexpr int shownLength = 40;  // of a text that can't be read

} // namespace

GoToTimeDialog::GoToTimeDialog(TimeNavigator *navigator, std::int64_t offsetSeconds, QWidget *parent)
    : QDialog(parent), m_navigator(navigator), m_offset(offsetSeconds), m_edit(new QLineEdit(this)),
      m_message(new QLabel(this))
{
    setWindowTitle(tr("Go to time"));
    const RecordTime middle = navigator->middle();
    if (ticksOf(middle) > 0)
        m_edit->setText(timeToString(localTime(middle, m_offset), offeredFormat));
    m_edit->selectAll();
    m_edit->setToolTip(tr("YYYY-MM-DD or YYYY-MM-DD HH:MM:SS, in the local time of the axis"));
    m_message->setTextFormat(Qt::PlainText); // it repeats what was typed
    m_message->setWordWrap(true);
    m_message->setMinimumWidth(fontMetrics().averageCharWidth() * messageWidth);
    m_message->setText(tr("As 2024-05-31 or 2024-05-31 12:30:00, in local time (UTC%1)")
                           .arg(m_offset == 0 ? QString() : utcOffsetToString(m_offset)));
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &GoToTimeDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *const form = new QFormLayout(this);
    form->addRow(tr("&Time:"), m_edit);
    form->addRow(m_message);
    form->addRow(buttons);
    form->setSizeConstraint(QLayout::SetFixedSize);
}

void GoToTimeDialog::accept()
{
    RecordTime time;
    if (parseLocalTime(m_edit->text(), m_offset, &time)) {
        m_navigator->goToTime(time);
        return QDialog::accept();
    }
    m_message->setText(
        tr("“%1” is no time.\nIt is to read YYYY-MM-DD or YYYY-MM-DD HH:MM:SS.").arg(m_edit->text().left(shownLength)));
    m_edit->setFocus();
    m_edit->selectAll();
}

} // namespace Tsb
