#include "gui/common/picturefile.h"

#include "util/filereplacement.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <algorithm>

namespace PictureFile {

namespace {

constexpr double pointsPerInch = 72;
constexpr double dotsPerMeter = 96 / 0.0254; // of logical pixels in a file of pixels, on every screen
constexpr qint64 mostPixels = 1 << 27;       // one and a half GB while it is drawn

QString words(const char *text)
{
    return QCoreApplication::translate("PictureFile", text);
}

/// What can't be drawn is told in words.
QString writePng(const Drawing &drawing, double ratio, QIODevice &out)
{
    const QString fault = sizeFault((QSizeF(drawing.frame.size()) * ratio).toSize());
    if (!fault.isNull())
        return fault;
    QImage image = imageOf(drawing, ratio);
    if (image.isNull())
        return words(QT_TRANSLATE_NOOP("PictureFile", "The picture can't be drawn."));
    image.setDotsPerMeterX(qRound(dotsPerMeter * ratio));
    image.setDotsPerMeterY(qRound(dotsPerMeter * ratio));
    QImageWriter writer(&out, "png");
    return writer.write(image) ? QString() : writer.errorString();
}

QString drawDocument(const Drawing &drawing, QPaintDevice &document)
{
    QPainter painter(&document);
    if (painter.isActive()) {
        painter.translate(-drawing.frame.topLeft());
        painter.fillRect(drawing.frame, drawing.background);
        drawing.draw(painter);
        if (painter.end())
            return {};
    }
    return words(QT_TRANSLATE_NOOP("PictureFile", "The picture can't be drawn."));
}

QString writeSvg(const Drawing &drawing, double, QIODevice &out)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&out);
    generator.setResolution(drawing.dotsPerInch);
    generator.setSize(drawing.frame.size());
    generator.setViewBox(QRect(QPoint(), drawing.frame.size()));
    generator.setTitle(drawing.title);
    return drawDocument(drawing, generator);
}

QString writePdf(const Drawing &drawing, double, QIODevice &out)
{
    QPdfWriter writer(&out);
    const QSizeF points = QSizeF(drawing.frame.size()) * pointsPerInch / drawing.dotsPerInch;
    writer.setResolution(drawing.dotsPerInch);
    writer.setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    writer.setTitle(drawing.title);
    return drawDocument(drawing, writer);
}

struct Format {
    const char *suffix;
    QString (*write)(const Drawing &, double ratio, QIODevice &);
};

const Format formats[] = {{"png", writePng}, {"svg", writeSvg}, {"pdf", writePdf}};

const Format *formatOf(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const auto *const found = std::find_if(std::begin(formats), std::end(formats),
                                           [&](const Format &f) { return suffix == QLatin1String(f.suffix); });
    return found == std::end(formats) ? nullptr : found;
}

} // namespace

bool isPixelFile(const QString &path)
{
    return formatOf(path) == &formats[0];
}

QString sizeFault(const QSize &pixels)
{
    if (qint64(pixels.width()) * pixels.height() <= mostPixels)
        return {};
    return words(QT_TRANSLATE_NOOP("PictureFile", "The picture would be too large: %1 x %2 pixels"))
        .arg(QString::number(pixels.width()), QString::number(pixels.height()));
}

QImage imageOf(const Drawing &drawing, double ratio)
{
    const auto blank = [&](const QSize &size) {
        QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(drawing.background);
        return image;
    };
    // On a sheet with the drawing's own origin first: edges that are smoothed come out as on the screen, to the last
    // bit.
    QImage sheet = blank({drawing.frame.right() + 1, drawing.frame.bottom() + 1});
    QImage picture = blank(drawing.frame.size());
    if (sheet.isNull() || picture.isNull())
        return {};
    {
        QPainter painter(&sheet);
        drawing.draw(painter);
    }
    QPainter painter(&picture);
    painter.drawImage(-drawing.frame.topLeft(), sheet);
    return picture;
}

QString encode(const Drawing &drawing, const QString &name, double ratio, QByteArray *content)
{
    const Format *const format = formatOf(name);
    if (!format)
        return words(QT_TRANSLATE_NOOP("PictureFile", "The name must end in .png, .svg or .pdf."));
    QBuffer buffer(content);
    buffer.open(QIODevice::WriteOnly);
    return format->write(drawing, ratio, buffer);
}

QString write(const Drawing &drawing, const QString &path, double ratio)
{
    QByteArray content;
    const QString fault = encode(drawing, path, ratio, &content);
    return fault.isNull() ? replaceFile(path, content) : fault;
}

} // namespace PictureFile
