#pragma once

#include <QString>

/// The three texts that are set when the program is built.
namespace BuildInfo {
QString version();   ///< the build's day, such as "20190912"
QString revision();  ///< 40 hexadecimal digits of the source tree's revision; zeros outside a checkout
QString buildTime(); ///< such as "2019-09-12 12:16:52"
} // namespace BuildInfo
