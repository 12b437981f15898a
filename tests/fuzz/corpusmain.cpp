#include "fuzz.h"

#include <QDir>
#include <QFile>

/// Runs a fuzz target once over each file of some folders. An empty folder is a failure: it would test nothing.
int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QDir corpus(QString::fromLocal8Bit(argv[i]));
        const QStringList names = corpus.entryList(QDir::Files);
        if (names.isEmpty())
            return 1;
        for (const QString &name : names) {
            QFile file(corpus.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                return 1;
            const QByteArray bytes = file.readAll();
            std::fprintf(stderr, "%s\n", qPrintable(name));
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                   std::size_t(bytes.size()));
        }
    }
    return argc > 1 ? 0 : 1;
}
