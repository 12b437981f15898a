#include "llama/qyaml.h"

#include "llama/yamlparser.h"
#include "util/regularfile.h"

#include <QFile>
#include <QFileInfo>

namespace Llama {

namespace {

Node singleDocument(const QVariantList &documents, const QString &rootName)
{
    if (documents.size() != 1)
        throw NodeError(QStringLiteral("File '%1' has bad structure").arg(rootName));
    return Node(documents.first(), rootName);
}

} // namespace

QVariantList yamlLoad(const QByteArray &text, const QString &sourceName, qint64 mostNodes)
{
    return YamlParser(YamlInput(text.constData(), size_t(text.size())), sourceName, mostNodes).documents();
}

QVariantList yamlLoad(const char *text, size_t size, const QString &sourceName)
{
    return YamlParser(YamlInput(text, size), sourceName).documents();
}

QVariantList yamlLoad(QIODevice *device, const QString &sourceName)
{
    return YamlParser(YamlInput(device), sourceName).documents();
}

QVariantList yamlLoadFile(const QString &path)
{
    QFile file(path);
    if (!openRegularFile(file))
        throw YamlError(QStringLiteral("Could not open file '%1'").arg(path));
    return yamlLoad(&file, QFileInfo(path).fileName());
}

Node loadYamlNode(const QString &path)
{
    QFile file(path);
    QString reason;
    if (!openRegularFile(file, &reason))
        throw NodeError(QStringLiteral("File '%1' can not be opened: %2").arg(path, reason));
    try {
        return singleDocument(yamlLoad(&file, QFileInfo(path).fileName()), path);
    } catch (const YamlError &exception) {
        throw NodeError(exception.message());
    }
}

Node loadYamlNode(const QString &name, const FileSource &source)
{
    const QString rootName = QStringLiteral("%1/%2").arg(source.directory(), name);
    try {
        return singleDocument(yamlLoad(source.read(name), name), rootName);
    } catch (const YamlError &exception) {
        throw NodeError(exception.message());
    }
}

} // namespace Llama
