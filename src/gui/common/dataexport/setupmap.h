#pragma once

#include "dataexport/setupreader.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

/// The value of a key of a setup's map, for forms: the fallback where it is absent or of a wrong type, which was told
/// when the setup was loaded.
template<typename Value>
Value valueOr(const QVariantMap &map, const char *key, Value fallback)
{
    QStringList untold;
    DataExport::SetupReader(Llama::Node(map).toMap(), &untold).read(key, &fallback);
    return fallback;
}

/// A list of texts as the tree of a file holds it.
inline QVariantList listOf(const QStringList &texts)
{
    return {texts.begin(), texts.end()};
}

inline QString textOr(const QVariantMap &map, const char *key, const char *fallback)
{
    return valueOr(map, key, QString::fromUtf8(fallback));
}
