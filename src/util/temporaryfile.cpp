#include "util/temporaryfile.h"

#include "util/filecalls.h"

#include <QRandomGenerator>

#include <cerrno>

#include <fcntl.h>

namespace {

constexpr int mostNames = 100;   // that are tried
constexpr int longestName = 255; // of a file, in bytes

/// The plain name first, then others at random.
QByteArray nameBeside(const QByteArray &target, QByteArray ending, int attempt)
{
    ending.prepend('.');
    if (attempt > 0) {
        QByteArray letters(6, 'a');
        for (char &letter : letters)
            letter = char('a' + QRandomGenerator::global()->bounded(26));
        ending.prepend('.' + letters);
    }
    const int name = target.lastIndexOf('/') + 1;
    return target.left(name) + target.mid(name).left(longestName - ending.size()) + ending;
}

} // namespace

int createBeside(FileCalls &calls, const QByteArray &target, const char *ending, mode_t mode, QByteArray *name)
{
    for (int attempt = 0; attempt < mostNames; ++attempt) {
        const QByteArray tried = nameBeside(target, ending, attempt);
        const int descriptor = calls.open(tried.constData(), O_WRONLY | O_CREAT | O_EXCL, mode);
        if (descriptor >= 0)
            *name = tried;
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    return -1;
}
