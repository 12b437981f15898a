#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <vector>

/// The display as a person has it: a picture, texts that stand in it, a mouse and keys. Everything goes through the
/// display, so that it concerns whatever program has its windows there.
namespace Screen {

QImage picture();
/// Where that text stands, in the ordinary font of windows, whatever its colour: from top to bottom and from left to
/// right. Longer texts count where a part of them looks the same. "&" stands before a letter with a line under it.
std::vector<QRect> placesOf(const QString &text);
/// Waits until that many places have the text; the places, or none when time is over.
std::vector<QRect> waitForText(const QString &text, std::size_t places = 1);
/// Waits until nothing moves any more. False when time is over.
bool waitForRest();
/// Waits until that is true; false when time is over.
bool waitUntil(const std::function<bool()> &condition);

/// The title of the window that gets the keys.
QString activeTitle();

void press(const QString &keys); ///< such as "ctrl+g"
void type(const QString &text);
void click(QPoint at, int button = 1, int times = 1);

} // namespace Screen
