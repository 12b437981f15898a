#include "gui/common/pictures/picturefile.h"

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
constexpr int mostDrawn = 30'000;            // pixels along an edge: the toolkit draws none beyond 32767

QString words(const char *text)
{
    return QCoreApplication::translate("PictureFile", text);
}

/// Takes no more bytes once it is cancelled, by which an encoder ends.
class CancellableBuffer : public QBuffer {
public:
    CancellableBuffer(QByteArray *bytes, const IsCancelled &isCancelled) : QBuffer(bytes), m_isCancelled(isCancelled)
    {
        open(QIODevice::WriteOnly);
    }

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        return m_isCancelled && m_isCancelled() ? -1 : QBuffer::writeData(data, size);
    }

private:
    const IsCancelled &m_isCancelled;
};

void drawPixels(const Drawing &drawing, double ratio, Drawn &drawn)
{
    drawn.fault = sizeFault((QSizeF(drawing.frame.size()) * ratio).toSize());
    if (!drawn.fault.isNull())
        return;
    drawn.pixels = imageOf(drawing, ratio);
    if (drawn.pixels.isNull())
        drawn.fault = words(QT_TRANSLATE_NOOP("PictureFile", "The picture can't be drawn."));
    drawn.pixels.setDotsPerMeterX(qRound(dotsPerMeter * ratio));
    drawn.pixels.setDotsPerMeterY(qRound(dotsPerMeter * ratio));
}

QImage blankImage(const QSize &size, const QColor &color, double ratio)
{
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(color);
    return image;
}

/// The last pixel of one becomes that of the other, the ones before it likewise.
void copyToEnd(const QImage &from, QImage &to)
{
    const QPoint start = from.rect().bottomRight() - to.rect().bottomRight();
    const QRect common = to.rect().translated(start) & from.rect();
    for (int y = common.top(); y <= common.bottom(); ++y) {
        const auto *const source = reinterpret_cast<const QRgb *>(from.constScanLine(y));
        auto *const target = reinterpret_cast<QRgb *>(to.scanLine(y - start.y()));
        std::copy_n(source + common.left(), common.width(), target + common.left() - start.x());
    }
}

/// Has no memory of its own.
QImage partOf(QImage &sheet, const QRect &part)
{
    QImage image(sheet.scanLine(part.y()) + qint64(part.x()) * sheet.depth() / 8, part.width(), part.height(),
                 sheet.bytesPerLine(), sheet.format());
    image.setDevicePixelRatio(sheet.devicePixelRatio());
    return image;
}

void drawParts(const Drawing &drawing, QImage &sheet)
{
    for (int y = 0; y < sheet.height(); y += mostDrawn) {
        for (int x = 0; x < sheet.width(); x += mostDrawn) {
            const QRect part = QRect(x, y, mostDrawn, mostDrawn) & sheet.rect();
            QImage image = partOf(sheet, part);
            QPainter painter(&image);
            const double ratio = sheet.devicePixelRatioF();
            painter.translate(-x / ratio, -y / ratio);
            if (part != sheet.rect())
                painter.setClipRect(QRectF(x / ratio, y / ratio, part.width() / ratio, part.height() / ratio));
            drawing.draw(painter);
        }
    }
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

void drawSvg(const Drawing &drawing, double, Drawn &drawn)
{
    QBuffer buffer(&drawn.document);
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(drawing.dotsPerInch);
    generator.setSize(drawing.frame.size());
    generator.setViewBox(QRect(QPoint(), drawing.frame.size()));
    generator.setTitle(drawing.title);
    drawn.fault = drawDocument(drawing, generator);
}

void drawPdf(const Drawing &drawing, double, Drawn &drawn)
{
    QBuffer buffer(&drawn.document);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    const QSizeF points = QSizeF(drawing.frame.size()) * pointsPerInch / drawing.dotsPerInch;
    writer.setResolution(drawing.dotsPerInch);
    writer.setPageSize(QPageSize(points, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    writer.setTitle(drawing.title);
    drawn.fault = drawDocument(drawing, writer);
}

struct Format {
    const char *suffix;
    void (*draw)(const Drawing &, double ratio, Drawn &);
};

const Format formats[] = {{"png", drawPixels}, {"svg", drawSvg}, {"pdf", drawPdf}};

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
    // On a sheet with the drawing's own origin first: edges that are smoothed come out as on the screen, to the last
    // bit.
    QImage sheet = blankImage({drawing.frame.right() + 1, drawing.frame.bottom() + 1}, drawing.background, ratio);
    if (sheet.isNull())
        return {};
    drawParts(drawing, sheet);
    if (drawing.frame.topLeft().isNull())
        return sheet;
    QImage picture = blankImage(drawing.frame.size(), drawing.background, ratio);
    if (!picture.isNull())
        copyToEnd(sheet, picture);
    return picture;
}

Drawn draw(const Drawing &drawing, const QString &name, double ratio)
{
    Drawn drawn;
    if (const Format *const format = formatOf(name))
        format->draw(drawing, ratio, drawn);
    else
        drawn.fault = words(QT_TRANSLATE_NOOP("PictureFile", "The name must end in .png, .svg or .pdf."));
    return drawn;
}

QString encode(const Drawn &drawn, QByteArray *content, const IsCancelled &isCancelled)
{
    if (!drawn.fault.isNull())
        return drawn.fault;
    *content = drawn.document;
    if (drawn.pixels.isNull())
        return {};
    CancellableBuffer buffer(content, isCancelled);
    QImageWriter writer(&buffer, "png");
    return writer.write(drawn.pixels) ? QString() : writer.errorString();
}

QString write(const Drawn &drawn, const QString &path, const IsCancelled &isCancelled)
{
    QByteArray content;
    const QString fault = encode(drawn, &content, isCancelled);
    if (!fault.isNull() || (isCancelled && isCancelled()))
        return fault;
    return replaceFile(path, content);
}

} // namespace PictureFile
