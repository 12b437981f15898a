#pragma once

#include "llama/nodes.h"
#include "llama/yamldumper.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

class QIODevice;

/// YAML text to trees of QVariant and back, and nodes that carry the path of each value so that errors name the place.
/// Mappings are QVariantMap, sequences QVariantList, scalars null, bool, int, double or QString.
namespace Llama {

/// All documents of the text. Throws YamlError. Text from foreign files is bounded: no deeper than 200 levels, no more
/// than 10 nodes a byte (copies of aliases counted) and 10 million nodes in all, or fewer where the caller says so.
QVariantList yamlLoad(const QByteArray &text, const QString &sourceName = QString(), qint64 mostNodes = 10'000'000);
QVariantList yamlLoad(const char *text, size_t size, const QString &sourceName = QString());
QVariantList yamlLoad(QIODevice *device, const QString &sourceName = QString());
/// All documents of the file; the source name is the file's name without its directory. Throws YamlError.
QVariantList yamlLoadFile(const QString &path);

/// Where files are read by name, such as a folder or a pack.
class FileSource {
public:
    virtual ~FileSource() = default;
    virtual QString directory() const = 0;
    virtual QByteArray read(const QString &name) const = 0;
};

/// The single document of a file, with the path as the root's name. Throws NodeError (of a YamlError too).
Node loadYamlNode(const QString &path);
Node loadYamlNode(const QString &name, const FileSource &source);

} // namespace Llama
