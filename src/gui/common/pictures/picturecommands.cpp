#include "gui/common/pictures/picturecommands.h"

#include "gui/common/complainttext.h"
#include "gui/common/filedialog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr double leastPixelRatio = 2;

} // namespace

PictureCommands::PictureCommands(QWidget *widget, std::function<PictureFile::Drawing()> drawing,
                                 const QVector<int> &ratios)
    : QObject(widget), m_widget(widget), m_drawing(std::move(drawing)), m_ratios(ratios),
      m_copy(new QAction(tr("Copy picture"), this)), m_save(new QAction(tr("Save picture..."), this)),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)),
      m_writing(widget, {QStringLiteral("picture"), tr("Saving the picture"), tr("Stopping")})
{
    connect(m_copy, &QAction::triggered, this, &PictureCommands::copy);
    connect(m_save, &QAction::triggered, this, &PictureCommands::save);
}

void PictureCommands::setEnabled(bool on)
{
    m_copy->setEnabled(on);
    m_save->setEnabled(on);
}

QVector<PictureCommands::Choice> PictureCommands::choices() const
{
    QVector<Choice> all;
    for (const int ratio : m_ratios) {
        const QString filter = m_ratios.size() == 1 || ratio == 1
                                   ? tr("Picture in pixels (*.png)")
                                   : tr("Picture in pixels, %1 times as fine (*.png)").arg(ratio);
        all.append({filter, QStringLiteral("png"), ratio});
    }
    all.append({tr("Drawing that can be scaled (*.svg)"), QStringLiteral("svg"), 1});
    all.append({tr("PDF document (*.pdf)"), QStringLiteral("pdf"), 1});
    return all;
}

void PictureCommands::copy()
{
    const PictureFile::Drawing drawing = m_drawing();
    const double ratio = std::max(leastPixelRatio, m_widget->devicePixelRatioF());
    QString fault = PictureFile::sizeFault((QSizeF(drawing.frame.size()) * ratio).toSize());
    if (fault.isNull()) {
        const QImage image = PictureFile::imageOf(drawing, ratio);
        if (!image.isNull())
            return QApplication::clipboard()->setImage(image);
        fault = tr("The picture can't be drawn.");
    }
    tell(tr("Copy picture"), fault);
}

void PictureCommands::save()
{
    if (m_writing.isRunning())
        return;
    const QPointer<PictureCommands> guard(this); // the window may close behind the dialog
    auto *const dialog = new FileDialog(FileDialog::Use::Write, m_widget->window(), tr("Save picture"), m_folder);
    const QVector<Choice> all = choices();
    QStringList filters;
    for (const Choice &choice : all)
        filters << choice.filter;
    const auto chosen = [&](const QString &filter) { return all[std::max(0, filters.indexOf(filter))]; };
    QString filter;
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(all[0].suffix);
    connect(dialog, &QFileDialog::filterSelected, dialog,
            [&](const QString &selected) { dialog->setDefaultSuffix(chosen(selected).suffix); });
    connect(dialog, &QFileDialog::accepted, dialog, [&] { filter = dialog->selectedNameFilter(); });
    const QString path = FileDialog::ask(dialog).value(0);
    if (path.isEmpty() || !guard)
        return;
    m_folder = QFileInfo(path).path();
    write(PictureFile::draw(m_drawing(), path, chosen(filter).ratio), path);
}

void PictureCommands::write(const PictureFile::Drawn &drawn, const QString &path)
{
    const auto reason = std::make_shared<QString>();
    m_writing.start(
        [drawn, path, reason](ModalWork::Monitor &monitor) {
            monitor.tell(path);
            *reason = PictureFile::write(drawn, path, [&monitor] { return monitor.isCancelled(); });
        },
        [this, path, reason](bool isCancelled) {
            if (!isCancelled && !reason->isNull())
                tell(tr("Save picture"), tr("Failed to write \"%1\": %2").arg(path, complaintText(*reason)));
        });
}

void PictureCommands::tell(const QString &title, const QString &text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, m_widget->window());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}
