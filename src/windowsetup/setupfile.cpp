#include "windowsetup/setupfile.h"

#include "llama/qyaml.h"
#include "util/filereplacement.h"
#include "util/regularfile.h"
#include "windowsetup/setupkeys.h"

#include <QFile>
#include <QFileInfo>

namespace WindowSetup {

namespace {

constexpr int mostBytes = 16'000'000;
constexpr qint64 mostValues = 1'000'000;

SetupFile notUnderstood(const QString &path, const QString &reason)
{
    return {SetupFile::NotUnderstood,
            {},
            QStringLiteral("Failed to understand interface setup file '%1': %2").arg(path, reason)};
}

SetupFile notOpened(const QString &path)
{
    return {SetupFile::NotOpened, {}, QStringLiteral("Failed to open interface setup file '%1'").arg(path)};
}

SetupFile readFrom(QFile &file)
{
    const QString path = file.fileName();
    const QByteArray text = readUpTo(file, mostBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return notUnderstood(path, file.errorString());
    if (text.size() > mostBytes)
        return notUnderstood(path, QStringLiteral("it is longer than any layout"));
    try {
        const QVariantList documents = Llama::yamlLoad(text, QFileInfo(path).fileName(), mostValues);
        if (documents.isEmpty() || documents.first().type() != QVariant::Map)
            return notUnderstood(path, QStringLiteral("it isn't a map"));
        return {SetupFile::Sound, documents.first().toMap(), {}};
    } catch (const Llama::Exception &error) {
        return notUnderstood(path, error.message());
    }
}

} // namespace

SetupFile readSetupFile(const QString &path)
{
    QFile file(path);
    return openRegularFile(file) ? readFrom(file) : notOpened(path);
}

SetupFile readDefaultSetup()
{
    QFile file(QStringLiteral(":default-window-setup"));
    return file.open(QIODevice::ReadOnly) ? readFrom(file) : notOpened(file.fileName());
}

bool isTooOld(const QVariantMap &setup)
{
    return setup.value(Keys::version).toInt() <= 1;
}

QString writeSetupFile(const QString &path, const QVariantMap &setup)
{
    try {
        return replaceFile(path, Llama::yamlDump(setup));
    } catch (const Llama::Exception &error) {
        return error.message();
    }
}

QString moveToBackup(const QString &path)
{
    return moveFile(path, path + QLatin1String(".bak"));
}

} // namespace WindowSetup
