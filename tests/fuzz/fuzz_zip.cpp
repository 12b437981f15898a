#include "fuzzfile.h"

#include "util/zipreader.h"

namespace {

constexpr int mostRead = 32;

void silence(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(silence);
    QZipReader reader(fuzzFile(data, size));
    require(reader.status() == QZipReader::NoError, "an existing file can be opened");
    const int count = reader.count();
    require(count >= 0 && std::size_t(count) <= size / 46, "no more entries than their descriptions have room for");
    qint64 inflated = 0;
    for (int i = 0; i < count && i < mostRead && inflated < (64 << 20); ++i) {
        const QZipReader::FileInfo entry = reader.entryInfoAt(i);
        require(!entry.filePath.contains(QLatin1Char('\\')), "names have slashes");
        const QByteArray bytes = reader.fileData(entry.filePath);
        // Another entry of the same name may have been meant, so the bound is the common one.
        require(bytes.size() <= inflationLimit(64 << 20), "inflation ends");
        inflated += bytes.size();
    }
    require(reader.entryInfoAt(-1).filePath.isEmpty() && reader.entryInfoAt(count).filePath.isEmpty(),
            "there is nothing beyond the entries");
    return 0;
}
