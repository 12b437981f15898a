#include "records/recordflagparser.h"

#include "llama/qyaml.h"

#include <QHash>

namespace Spectrometer {

namespace {

int typeOf(const QString &word)
{
    if (word == QLatin1String("warning"))
        return RecordFlag::Warning;
    if (word == QLatin1String("failure"))
        return RecordFlag::Failure;
    return RecordFlag::Note;
}

QVariant firstDocument(const QString &text, qint64 mostNodes)
{
    try {
        const QVariantList documents = Llama::yamlLoad(text.toUtf8(), QString(), mostNodes);
        return documents.isEmpty() ? QVariant() : documents.first();
    } catch (const Llama::YamlError &) {
        return {};
    }
}

} // namespace

std::shared_ptr<RecordFlag> makeRecordFlag(const QString &text, qint64 mostNodes)
{
    auto flag = std::make_shared<RecordFlag>();
    flag->text = text;
    flag->message = text;
    flag->hash = qHash(text, 0);
    const QVariant document = firstDocument(text, mostNodes);
    if (document.type() == QVariant::String) {
        flag->message = document.toString();
        flag->properties.insert(QStringLiteral("message"), flag->message);
    } else if (document.type() == QVariant::Map) {
        flag->properties = document.toMap();
        flag->message = flag->properties.value(QStringLiteral("message")).toString();
        flag->type = typeOf(flag->properties.value(QStringLiteral("type")).toString());
    }
    return flag;
}

qint64 nodesOf(const QVariant &tree)
{
    qint64 count = 1;
    if (tree.type() == QVariant::Map) {
        const QVariantMap entries = tree.toMap();
        for (const QVariant &value : entries)
            count += 1 + nodesOf(value);
    } else if (tree.type() == QVariant::List) {
        const QVariantList items = tree.toList();
        for (const QVariant &item : items)
            count += nodesOf(item);
    }
    return count;
}

} // namespace Spectrometer
