#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>

#include <functional>

class QPainter;

/// Pictures of what the window shows, in files.
namespace PictureFile {

/// What is drawn, in logical pixels.
struct Drawing {
    QRect frame;     ///< the part that is seen; its top left corner becomes that of the picture
    int dotsPerInch; ///< of logical pixels: the size of a font in points depends on it
    QColor background;
    QString title; ///< of a drawing that can be scaled
    /// May draw beyond the frame, whose origin stays the painter's. The painter may be that of a document, of which
    /// texts are to be texts. Called for each part of a large picture, with that part as the painter's clip.
    std::function<void(QPainter &painter)> draw;
};

/// Whether that file is made of pixels.
bool isPixelFile(const QString &path);

/// Why so many pixels can't be drawn, or a null text.
QString sizeFault(const QSize &pixels);
/// With that many pixels for each logical one along each edge; null where memory doesn't suffice.
QImage imageOf(const Drawing &drawing, double ratio);
/// A drawing on its way into a file of that kind: the part of the work that needs the window is done.
struct Drawn {
    QString fault;       ///< why nothing is drawn, or null
    QImage pixels;       ///< of a PNG, which are yet to be encoded
    QByteArray document; ///< or the content
};
/// For a file of that name: PNG, SVG or PDF by the end of it; `ratio` is that of a PNG.
Drawn draw(const Drawing &drawing, const QString &name, double ratio);
/// Asked now and then: whether the work is to be given up.
using IsCancelled = std::function<bool()>;
/// The content of the file, on any thread. The result is null, or the reason of the failure.
QString encode(const Drawn &drawn, QByteArray *content, const IsCancelled &isCancelled = {});
/// Writes a file that is whole or absent, on any thread; an old one is replaced. Otherwise as above. Where it is
/// cancelled before the file is written, the old one stands.
QString write(const Drawn &drawn, const QString &path, const IsCancelled &isCancelled = {});

} // namespace PictureFile
