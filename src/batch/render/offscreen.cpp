#include "batch/render/offscreen.h"

#include "resources/resources.h"
#include "util/programlocale.h"

#include <QApplication>
#include <QFont>
#include <QPainterPath>

namespace Batch::Offscreen {

namespace {

constexpr int fontSize = 9; // points, as a desktop without wishes of its own gives

/// What of the environment would change platform, sizes, style or fonts.
void clearEnvironment()
{
    for (const char *name :
         {"QT_AUTO_SCREEN_SCALE_FACTOR", "QT_DEVICE_PIXEL_RATIO", "QT_ENABLE_HIGHDPI_SCALING", "QT_FONT_DPI",
          "QT_QPA_FONTDIR", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME", "QT_SCALE_FACTOR_ROUNDING_POLICY",
          "QT_SCREEN_SCALE_FACTORS", "QT_STYLE_OVERRIDE", "QT_USE_PHYSICAL_DPI"})
        qunsetenv(name);
}

} // namespace

std::unique_ptr<QApplication> makeApplication(int scale)
{
    clearEnvironment();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
    // The program's own arguments are none of the toolkit's. Both must live as long as the application object.
    static char name[] = "morvantide-batch";
    static char *arguments[] = {name, nullptr};
    static int count = 1;
    auto application = std::make_unique<QApplication>(count, arguments);
    setProgramLocale();
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setFont(QFont(QStringLiteral("Sans Serif"), fontSize));
    registerResources();
    return application;
}

QString fontFault()
{
    // Families are listed even where no file has one; then all glyphs are the same box.
    QPainterPath one, eight;
    one.addText(0, 0, QApplication::font(), QStringLiteral("1"));
    eight.addText(0, 0, QApplication::font(), QStringLiteral("8"));
    if (one != eight)
        return {};
    return QStringLiteral("No font is installed: the texts of the picture can't be drawn. Install one, such as the "
                          "package fonts-dejavu-core.");
}

} // namespace Batch::Offscreen
