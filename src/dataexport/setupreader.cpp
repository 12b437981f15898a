#include "dataexport/setupreader.h"

#include <QStringList>

#include <cmath>

namespace DataExport {

bool SetupReader::wrongType(const Llama::Node &node, const char *wanted) const
{
    m_errors->append(Llama::typeErrorText(node.path(), QLatin1String(wanted), node.value));
    return false;
}

bool SetupReader::complain(const QString &text) const
{
    m_errors->append(text);
    return false;
}

bool SetupReader::read(const char *key, bool *out) const
{
    const Llama::Node node = m_map.get(QLatin1String(key));
    if (node.exists && node.value.userType() != QMetaType::Bool)
        return wrongType(node, "bool");
    if (node.exists)
        *out = node.value.toBool();
    return true;
}

bool SetupReader::read(const char *key, int *out) const
{
    const Llama::Node node = m_map.get(QLatin1String(key));
    if (!node.exists)
        return true;
    const int type = node.value.userType();
    const bool isWhole = type == QMetaType::Int || (type == QMetaType::Double && !std::isnan(node.value.toDouble()) &&
                                                    std::trunc(node.value.toDouble()) == node.value.toDouble());
    if (!isWhole)
        return wrongType(node, "int");
    *out = node.toInt();
    return true;
}

bool SetupReader::read(const char *key, double *out) const
{
    const Llama::Node node = m_map.get(QLatin1String(key));
    if (!node.exists)
        return true;
    const int type = node.value.userType();
    bool isNumber = type == QMetaType::Int || type == QMetaType::Double;
    const double number =
        type == QMetaType::QString ? node.value.toString().toDouble(&isNumber) : node.value.toDouble();
    if (!isNumber)
        return wrongType(node, "double");
    *out = number;
    return true;
}

bool SetupReader::read(const char *key, QString *out) const
{
    const Llama::Node node = m_map.get(QLatin1String(key));
    if (node.exists && node.value.userType() != QMetaType::QString)
        return wrongType(node, "QString");
    if (node.exists)
        *out = node.value.toString();
    return true;
}

bool SetupReader::read(const char *key, QStringList *out) const
{
    const Llama::Node node = m_map.get(QLatin1String(key));
    if (!node.exists)
        return true;
    if (node.value.userType() != QMetaType::QVariantList)
        return wrongType(node, "QVariantList");
    const Llama::ListNode list = node.toList();
    QStringList texts;
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i).value.userType() != QMetaType::QString)
            return wrongType(list.at(i), "QString");
        texts << list.at(i).value.toString();
    }
    *out = texts;
    return true;
}

} // namespace DataExport
