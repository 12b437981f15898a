#include "gui/common/recordviews/plotpicture.h"

#include "gui/common/recordviews/recordplot.h"
#include "util/filereplacement.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMessageBox>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPointer>
#include <QStandardPaths>
#include <QSvgGenerator>

#include <qwt_plot.h>
#include <qwt_plot_renderer.h>

#include <algorithm>

namespace RecordViews {

namespace {

constexpr double pointsPerInch = 72;
constexpr double leastPixelRatio = 2;

void draw(QWidget *widget, QPainter &painter)
{
    painter.fillRect(widget->rect(), widget->palette().window());
    QwtPlotRenderer renderer;
    const auto drawPlot = [&](QwtPlot *plot) {
        auto *const own = qobject_cast<RecordPlot *>(plot);
        if (own)
            own->setFocusFrameShown(false);
        renderer.render(plot, &painter, QRectF(QPointF(plot->mapTo(widget, QPoint())), QSizeF(plot->size())));
        if (own)
            own->setFocusFrameShown(true);
    };
    if (auto *const plot = qobject_cast<QwtPlot *>(widget))
        drawPlot(plot);
    for (QwtPlot *plot : widget->findChildren<QwtPlot *>()) {
        if (plot->isVisibleTo(widget))
            drawPlot(plot);
    }
}

bool writePng(QWidget *widget, QIODevice &out)
{
    return PlotPicture::imageOf(widget).save(&out, "PNG");
}

bool writeSvg(QWidget *widget, QIODevice &out)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&out);
    generator.setResolution(widget->logicalDpiX());
    generator.setSize(widget->size());
    generator.setViewBox(widget->rect());
    generator.setTitle(widget->windowTitle());
    QPainter painter(&generator);
    if (!painter.isActive())
        return false;
    draw(widget, painter);
    return painter.end();
}

bool writePdf(QWidget *widget, QIODevice &out)
{
    QPdfWriter writer(&out);
    const double scale = pointsPerInch / widget->logicalDpiX();
    writer.setResolution(widget->logicalDpiX());
    writer.setPageSize(QPageSize(QSizeF(widget->size()) * scale, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    if (!painter.isActive())
        return false;
    draw(widget, painter);
    return painter.end();
}

struct Format {
    const char *suffix;
    const char *filter;
    bool (*write)(QWidget *, QIODevice &);
};

const Format formats[] = {
    {"png", QT_TRANSLATE_NOOP("RecordViews::PlotPicture", "Picture in pixels (*.png)"), writePng},
    {"svg", QT_TRANSLATE_NOOP("RecordViews::PlotPicture", "Drawing that can be scaled (*.svg)"), writeSvg},
    {"pdf", QT_TRANSLATE_NOOP("RecordViews::PlotPicture", "PDF document (*.pdf)"), writePdf},
};

} // namespace

PlotPicture::PlotPicture(QWidget *widget)
    : QObject(widget), m_widget(widget), m_copy(new QAction(tr("Copy picture"), this)),
      m_save(new QAction(tr("Save picture..."), this)),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation))
{
    connect(m_copy, &QAction::triggered, this, &PlotPicture::copy);
    connect(m_save, &QAction::triggered, this, &PlotPicture::save);
}

QImage PlotPicture::imageOf(QWidget *widget)
{
    const double ratio = std::max(leastPixelRatio, widget->devicePixelRatioF());
    QImage image((QSizeF(widget->size()) * ratio).toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    draw(widget, painter);
    return image;
}

QString PlotPicture::write(QWidget *widget, const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const auto *const format =
        std::find_if(std::begin(formats), std::end(formats), [&](const Format &f) { return suffix == f.suffix; });
    if (format == std::end(formats))
        return tr("The name must end in .png, .svg or .pdf.");
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!format->write(widget, buffer) || bytes.isEmpty())
        return tr("The picture can't be drawn.");
    return replaceFile(path, bytes);
}

void PlotPicture::copy()
{
    QApplication::clipboard()->setImage(imageOf(m_widget));
}

void PlotPicture::save()
{
    const QPointer<PlotPicture> guard(this); // the window may close behind the dialog
    QFileDialog dialog(m_widget->window(), tr("Save picture"), m_folder);
    QStringList filters;
    for (const Format &format : formats)
        filters << tr(format.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(formats[0].suffix);
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString &filter) {
        dialog.setDefaultSuffix(formats[std::max(0, filters.indexOf(filter))].suffix);
    });
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    if (!isAccepted || !guard)
        return;
    const QString path = dialog.selectedFiles().value(0);
    m_folder = QFileInfo(path).path();
    const QString reason = write(m_widget, path);
    if (reason.isNull())
        return;
    QMessageBox box(QMessageBox::Warning, tr("Save picture"), tr("Failed to write \"%1\": %2").arg(path, reason),
                    QMessageBox::Ok, m_widget->window());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace RecordViews
