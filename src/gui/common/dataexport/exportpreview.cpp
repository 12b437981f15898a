#include "gui/common/dataexport/exportpreview.h"

#include "gui/browser/controls/plaintooltip.h"
#include "gui/common/complainttext.h"
#include "gui/common/dataexport/exportsample.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

constexpr int shownErrors = 2;
constexpr int widestColumn = 260;
constexpr int rowSpacing = 6;

QLabel *makeLabel(const char *name, QWidget *parent)
{
    auto *const label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText); // it repeats names from files
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QString filesText(const ExportSample &sample)
{
    if (sample.files.isEmpty())
        return sample.rows.isEmpty() ? ExportPreview::tr("None of the first records is meant.") : QString();
    QStringList names;
    for (const QString &file : sample.files)
        names << QDir::toNativeSeparators(file);
    const QString text = names.join(QStringLiteral(", "));
    return sample.mayHaveMoreFiles ? ExportPreview::tr("%1 and more").arg(text) : text;
}

} // namespace

ExportPreview::ExportPreview(QWidget *parent)
    : QWidget(parent), m_table(new QTableWidget(this)), m_files(makeLabel("previewFiles", this)),
      m_errors(makeLabel("previewErrors", this))
{
    m_table->setObjectName(QStringLiteral("previewTable"));
    m_table->setAccessibleName(tr("First rows of the table"));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowSpacing);
    m_table->horizontalHeader()->setMaximumSectionSize(widestColumn);
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget *widget : std::initializer_list<QWidget *>{m_table, m_files, m_errors})
        layout->addWidget(widget);
}

void ExportPreview::showSample(const ExportSample &sample)
{
    showRows(sample);
    QString text = filesText(sample);
    if (sample.columns > sample.titles.size())
        text += QLatin1Char('\n') + tr("The first %1 of %2 columns are shown.")
                                        .arg(QString::number(sample.titles.size()), QString::number(sample.columns));
    m_files->setText(text);
    QStringList errors;
    for (const QString &error : sample.errors.mid(0, shownErrors))
        errors << complaintText(error);
    if (sample.errors.size() > shownErrors)
        errors << tr("%n more complaints.", nullptr, sample.errors.size() - shownErrors);
    m_errors->setText(errors.join(QLatin1Char('\n')));
    m_errors->setVisible(!errors.isEmpty());
}

void ExportPreview::showRows(const ExportSample &sample)
{
    m_table->clear();
    m_table->setColumnCount(sample.titles.size());
    m_table->setRowCount(sample.rows.size());
    for (int column = 0; column < sample.titles.size(); ++column) {
        auto *const title = new QTableWidgetItem(sample.titles.at(column));
        title->setToolTip(Tsb::plainToolTip(sample.titles.at(column)));
        m_table->setHorizontalHeaderItem(column, title);
    }
    for (int row = 0; row < sample.rows.size(); ++row)
        for (int column = 0; column < sample.rows.at(row).size(); ++column)
            m_table->setItem(row, column, new QTableWidgetItem(sample.rows.at(row).at(column)));
    m_table->resizeColumnsToContents();
    m_table->setFixedHeight(m_table->verticalHeader()->defaultSectionSize() * ExportSample::mostRows +
                            m_table->horizontalHeader()->sizeHint().height() +
                            m_table->horizontalScrollBar()->sizeHint().height() + 2 * m_table->frameWidth());
}
