#include "dayswork/screen.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace Screen {

namespace {

constexpr int patience = 30000; // ms
constexpr int pollMs = 50;
constexpr int restMs = 300; ///< shorter than a caret is lit

/// The shape of a text that begins that part of a pixel behind a whole one: how much of each pixel is ink.
class TextShape {
public:
    TextShape(const QString &text, double shift)
    {
        const QFontMetrics metrics(QApplication::font());
        QImage image(metrics.horizontalAdvance(text) + 8, metrics.height() + 8, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(QApplication::font());
        painter.drawText(QRectF(image.rect()).adjusted(4 + shift, 4, 0, 0), Qt::TextShowMnemonic, text);
        painter.end();
        const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
        QRect box;
        for (int y = 0; y < grey.height(); ++y)
            for (int x = 0; x < grey.width(); ++x)
                if (grey.constScanLine(y)[x] < 200)
                    box |= QRect(x, y, 1, 1);
        m_size = box.size();
        for (int y = 0; y < m_size.height(); ++y)
            for (int x = 0; x < m_size.width(); ++x)
                m_pixels.push_back({x, y, 1 - grey.constScanLine(box.y() + y)[box.x() + x] / 255.0});
        takeProbes();
    }

    QSize size() const { return m_size; }

    bool isAt(const QImage &grey, int x, int y) const
    {
        const auto at = [&](const Pixel &pixel) { return double(grey.constScanLine(y + pixel.y)[x + pixel.x]); };
        const double paper = at(m_probes[0]), ink = at(m_probes[1]), contrast = ink - paper;
        if (std::fabs(contrast) < leastContrast)
            return false;
        const auto differs = [&](const Pixel &pixel) {
            return std::fabs(at(pixel) - paper - contrast * pixel.ink) > tolerance * std::fabs(contrast);
        };
        if (std::count_if(m_probes.begin(), m_probes.end(), differs) > 1)
            return false;
        return double(std::count_if(m_pixels.begin(), m_pixels.end(), differs)) < mostOthers * double(m_pixels.size());
    }

private:
    struct Pixel {
        int x, y;
        double ink;
    };
    static constexpr double leastContrast = 60, tolerance = 0.35;
    static constexpr double mostOthers = 0.03; ///< of all pixels: a caret, for one

    /// Some of the clearest pixels, paper and ink by turns.
    void takeProbes()
    {
        std::vector<Pixel> sorted = m_pixels;
        std::stable_sort(sorted.begin(), sorted.end(), [](const Pixel &a, const Pixel &b) { return a.ink < b.ink; });
        const std::size_t count = std::min<std::size_t>(12, sorted.size() / 8);
        for (std::size_t i = 0; i < count; ++i) {
            m_probes.push_back(sorted[i * sorted.size() / 4 / count]);
            m_probes.push_back(sorted[sorted.size() - 1 - i * 2]);
        }
    }

    QSize m_size;
    std::vector<Pixel> m_pixels;
    std::vector<Pixel> m_probes;
};

void run(const QStringList &arguments)
{
    const int code = QProcess::execute(QStringLiteral("xdotool"), arguments);
    if (code != 0)
        qWarning("xdotool %s: %d", qPrintable(arguments.join(' ')), code);
}

QStringList numbers(QPoint at)
{
    return {QString::number(at.x()), QString::number(at.y())};
}

} // namespace

QImage picture()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

std::vector<QRect> placesOf(const QString &text)
{
    const QImage grey = picture().convertToFormat(QImage::Format_Grayscale8);
    std::vector<QRect> places;
    for (const double shift : {0.0, 0.25, 0.5, 0.75}) { // a text that is centred begins anywhere
        const TextShape shape(text, shift);
        for (int y = 0; y + shape.size().height() <= grey.height(); ++y)
            for (int x = 0; x + shape.size().width() <= grey.width(); ++x) {
                const QRect place(QPoint(x, y), shape.size());
                const auto isSame = [&place](const QRect &other) { return other.intersects(place); };
                if (shape.isAt(grey, x, y) && std::none_of(places.begin(), places.end(), isSame))
                    places.push_back(place);
            }
    }
    const auto isBefore = [](const QRect &a, const QRect &b) {
        return std::pair(a.y(), a.x()) < std::pair(b.y(), b.x());
    };
    std::sort(places.begin(), places.end(), isBefore);
    return places;
}

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patience);
}

std::vector<QRect> waitForText(const QString &text, std::size_t places)
{
    std::vector<QRect> found;
    const auto isThere = [&] {
        found = placesOf(text);
        QTest::qWait(pollMs);
        return found.size() >= places;
    };
    return waitUntil(isThere) ? found : std::vector<QRect>();
}

bool waitForRest()
{
    QImage last;
    QElapsedTimer still;
    return waitUntil([&] {
        QImage now = picture();
        if (now != last)
            still.start();
        last = std::move(now);
        QTest::qWait(pollMs);
        return still.elapsed() > restMs;
    });
}

QString activeTitle()
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), {"getactivewindow", "getwindowname"});
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void press(const QString &keys)
{
    run({"key", keys});
}

void type(const QString &text)
{
    run({"type", "--delay", "5", text});
}

void click(QPoint at, int button, int times)
{
    run(QStringList{"mousemove"} + numbers(at) +
        QStringList{"click", "--repeat", QString::number(times), "--delay", "50", QString::number(button)});
}

} // namespace Screen
