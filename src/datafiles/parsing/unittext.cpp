#include "datafiles/parsing/unittext.h"

#include "spectra/unitparser.h"

namespace {

struct Spelling {
    const char *written;
    const char *usual;
};
constexpr Spelling spellings[] = {
    {"1e+06/m^3", "1/cm^3"},
    {"1e-09*m", "nm"},
    {"0.0001/kg*s^2*A", "cm^2/s/V"},
};

} // namespace

Unit parseHeaderUnit(const QString &text)
{
    for (const Spelling &spelling : spellings)
        if (text == QLatin1String(spelling.written))
            return SpectMath::parseUnit(QLatin1String(spelling.usual), unitTable());
    return SpectMath::parseUnit(text, unitTable());
}
