#include "fuzz.h"

#include "llama/qyaml.h"

namespace {

/// The tree as a dump can hold it: nothing is null, and numbers with a fraction are texts.
QVariant dumpable(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QVariantMap: {
        QVariantMap entries = value.toMap();
        for (QVariant &entry : entries)
            entry = dumpable(entry);
        return entries;
    }
    case QMetaType::QVariantList: {
        QVariantList items = value.toList();
        for (QVariant &item : items)
            item = dumpable(item);
        return items;
    }
    case QMetaType::Bool:
    case QMetaType::Int:
        return value;
    default:
        return value.toString();
    }
}

/// The text without what UTF-8 can't carry, halves of surrogate pairs.
bool isWellFormed(const QVariant &value)
{
    if (value.userType() == QMetaType::QVariantMap) {
        const QVariantMap entries = value.toMap();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
            if (!isWellFormed(entry.key()) || !isWellFormed(entry.value()))
                return false;
        }
        return true;
    }
    if (value.userType() == QMetaType::QVariantList) {
        const QVariantList items = value.toList();
        return std::all_of(items.begin(), items.end(), isWellFormed);
    }
    const QString text = value.toString();
    return QString::fromUtf8('x' + text.toUtf8()).mid(1) == text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QVariantList documents;
    try {
        documents = Llama::yamlLoad(reinterpret_cast<const char *>(data), size, "x");
    } catch (const Llama::YamlError &error) {
        require(error.message().startsWith("(x) "), "an error names the source");
        return 0;
    }
    for (const QVariant &document : documents) {
        const QVariant tree = dumpable(document);
        if (!isWellFormed(tree))
            continue;
        const QByteArray text = Llama::yamlDump(tree);
        // Aliases may make a dump of a small text long; nothing else may bring it near the bounds of loading.
        require(Llama::yamlLoad(text) == QVariantList{tree}, "what was dumped is loaded as it was");
    }
    return 0;
}
