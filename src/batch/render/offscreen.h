#pragma once

#include <QString>

#include <memory>

class QApplication;

/// Windows without a display.
namespace Batch::Offscreen {

/// The application object for drawing with `scale` pixels of a picture for each logical one, on the platform that
/// needs no display. Nothing of the user's desktop reaches the picture: a script draws the same everywhere. Numbers are
/// those of the C locale. One at a time.
std::unique_ptr<QApplication> makeApplication(int scale);

/// Why no text can be drawn, or an empty text. Needs the application object.
QString fontFault();

} // namespace Batch::Offscreen
