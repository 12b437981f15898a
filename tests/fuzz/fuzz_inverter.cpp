#include "fuzz.h"

#include "spectra/inverterfiles.h"

namespace {

/// Larger ones are made alike, and only cost time.
constexpr std::size_t largestInverted = 40;

void invertSomething(const SpectMath::Inverter &inverter)
{
    const RealMatrix &matrix = inverter.settings().instrumentMatrix;
    RealVector signal(matrix.size1()), variance(matrix.size1());
    for (std::size_t i = 0; i < signal.size(); ++i) {
        signal[i] = i % 3 == 0 ? -1.0 : double(i);
        variance[i] = 1 + double(i);
    }
    try {
        const auto spectrum = inverter.invert(signal, variance);
        require(spectrum->info == inverter.info(), "a spectrum has its inverter's description");
        require(spectrum->status == 0 || (spectrum->status >= 2 && spectrum->status <= 4), "the status is known");
        const RealMatrix &transform = inverter.settings().postTransform;
        const std::size_t points = spectrum->status != 0   ? inverter.info()->nativePoints().size()
                                   : transform.size1() > 0 ? transform.size2()
                                                           : matrix.size2();
        require(spectrum->concentrations.size() == points, "a spectrum is as long as its inverter makes it");
        require(spectrum->covariances.size1() == points, "and so are its covariances");
    } catch (const Inversion::InversionException &error) {
        require(!error.message().isEmpty(), "an error has words");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    try {
        const auto inverter = SpectMath::readInverterText(bytes, QStringLiteral("x.sinv"), unitTable());
        const RealMatrix &matrix = inverter->settings().instrumentMatrix;
        require(matrix.size1() >= 1 && matrix.size1() <= std::size_t(SpectMath::largestMatrixSide), "rows are bounded");
        require(matrix.size2() >= 1 && matrix.size2() <= std::size_t(SpectMath::largestMatrixSide), "columns, too");
        require(inverter->info()->hash.size() == 40, "the hash is that of the bytes");
        require(inverter->info()->inverterData == bytes, "the bytes are kept");
        if (matrix.size1() <= largestInverted && matrix.size2() <= largestInverted &&
            inverter->settings().postTransform.size2() <= largestInverted)
            invertSomething(*inverter);
    } catch (const SpectMath::InverterFileError &error) {
        require(!error.message().isEmpty(), "an error has words");
    } catch (const SpectMath::UnitParsingError &error) {
        require(!error.message().isEmpty(), "an error has words");
    }
    return 0;
}
