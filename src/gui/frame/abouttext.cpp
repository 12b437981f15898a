#include "gui/frame/abouttext.h"

#include "util/buildinfo.h"
#include "util/textescape.h"

#include <QCoreApplication>
#include <QSysInfo>

QString aboutText(const QString &name, const QString &description)
{
    const QString pattern = QCoreApplication::translate(
        "AboutText",
        "<h1>%1</h1><p>version: %2<br>revision: %3<br>build date: %4<br>architecture: %7<br>os: %8 <br>os kernel: "
        "%9 %10</p>%5<p><small>Qt run-time: %6</small></p>");
    return fillMarkers(pattern, {name, BuildInfo::version(), BuildInfo::revision(), BuildInfo::buildTime(), description,
                                 QString::fromLatin1(qVersion()), QSysInfo::buildCpuArchitecture(),
                                 QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion()});
}
