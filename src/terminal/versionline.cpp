#include "terminal/versionline.h"

#include "util/buildinfo.h"

std::string versionLine(const std::string &program)
{
    return program + ' ' + BuildInfo::version().toStdString() + " revision " + BuildInfo::revision().toStdString();
}
