#include "fuzzfile.h"

#include "spectra/inverterfiles.h"

#include <QDir>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString path = fuzzFile(data, size);
    try {
        // Not walked: any folder of the machine may be named.
        for (const QString &named : SpectMath::readInverterMap(path))
            require(QDir::isAbsolutePath(named), "named paths are absolute");
    } catch (const SpectMath::InverterFileError &error) {
        require(!error.message().isEmpty(), "an error has words");
    }
    return 0;
}
