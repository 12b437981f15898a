#pragma once

#include <QStringList>

/// The window's texts in other languages. They are compiled in as ":/translations/morvantide_LANGUAGE.qm"; the
/// toolkit's own come from where the system keeps them, if it has them.
namespace Translations {

/// Gives the application the texts of the first of `languages` ("de-DE", the best first) that there are any for, and
/// tells which it took, as "de". English, and the plain locale "C", end the search with an empty answer, for the texts
/// in the sources are English; only those that count something have a singular and a plural in a file. To be called
/// once, after the resources are registered and before the first window.
///
/// The toolkit's words for faults of files and devices stay English, for they go into the log.
QString install(const QStringList &languages);

} // namespace Translations
