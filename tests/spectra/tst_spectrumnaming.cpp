#include "spectra/spectrumnaming.h"
#include "support/instrument.h"

#include <gtest/gtest.h>

TEST(SpectrumNaming, TellsNamesakesApart)
{
    const struct {
        QList<SpectMath::SpectrumInfoPointer> infos;
        QStringList names;
    } table[] = {
        {{}, {}},
        {{namedSpectrum("particles", "aaaaa", "inv")}, {"particles"}},
        {{namedSpectrum("p", "aaaaa", "a"), namedSpectrum("q", "bbbbb"), namedSpectrum("p", "ccccc", "b")},
         {"p (a)", "q", "p (b)"}},
        {{namedSpectrum("p", "aaaaa", "a", "x"), namedSpectrum("p", "bbbbb", "", "x")}, {"p (a)", "p (x)"}},
        {{namedSpectrum("p", "aaaaa", "a"), namedSpectrum("p", "bbbbb", "a"), namedSpectrum("p", "ccccc", "a")},
         {"p (a)", "p (a bbbb)", "p (a cccc)"}},
        {{namedSpectrum("p", "aaaaa"), namedSpectrum("p", "bbbbb")}, {"p (aaaa)", "p (bbbb)"}},
        {{namedSpectrum("%2", "aaaaa", "%1"), namedSpectrum("%2", "bbbbb", "b")}, {"%2 (%1)", "%2 (b)"}},
    };
    for (const auto &row : table)
        EXPECT_EQ(SpectrumNaming::displayNames(row.infos), row.names) << row.names.join(", ").toStdString();
}
