#include "llama/yamldumper.h"

#include "llama/errors.h"
#include "llama/scalarclass.h"

#include <QDebug>
#include <QIODevice>

#include <yaml.h>

#include <new>

namespace Llama {

namespace {

/// Gathers the text of one document in memory, so that a device gets the whole or nothing.
class YamlDumper {
public:
    YamlDumper()
    {
        if (!yaml_emitter_initialize(&m_emitter))
            throw std::bad_alloc();
        yaml_emitter_set_output(&m_emitter, append, &m_text);
        yaml_emitter_set_unicode(&m_emitter, 1);
        yaml_emitter_set_encoding(&m_emitter, YAML_UTF8_ENCODING);
        yaml_emitter_set_width(&m_emitter, -1);
    }
    ~YamlDumper() { yaml_emitter_delete(&m_emitter); }
    YamlDumper(const YamlDumper &) = delete;
    YamlDumper &operator=(const YamlDumper &) = delete;

    bool dump(const QVariant &value)
    {
        yaml_event_t event;
        return emit(event, yaml_stream_start_event_initialize(&event, YAML_UTF8_ENCODING)) &&
               emit(event, yaml_document_start_event_initialize(&event, nullptr, nullptr, nullptr, 1)) &&
               dumpValue(value) && emit(event, yaml_document_end_event_initialize(&event, 1)) &&
               emit(event, yaml_stream_end_event_initialize(&event)) && isDone(yaml_emitter_flush(&m_emitter));
    }

    const QByteArray &text() const { return m_text; }
    const char *problem() const { return m_emitter.problem ? m_emitter.problem : ""; }

private:
    static int append(void *text, unsigned char *buffer, size_t size)
    {
        static_cast<QByteArray *>(text)->append(reinterpret_cast<const char *>(buffer), int(size));
        return 1;
    }

    /// The emitter owns the event from then on, also when it fails.
    bool emit(yaml_event_t &event, int initialized)
    {
        if (!initialized) // texts are sound UTF-8
            throw std::bad_alloc();
        return isDone(yaml_emitter_emit(&m_emitter, &event));
    }

    bool isDone(int result) const
    {
        if (m_emitter.error == YAML_MEMORY_ERROR)
            throw std::bad_alloc();
        return result;
    }

    static bool isList(const QVariant &value)
    {
        return value.userType() == QMetaType::QVariantList || value.userType() == QMetaType::QStringList;
    }

    static bool isCollection(const QVariant &value)
    {
        return isList(value) || value.userType() == QMetaType::QVariantMap;
    }

    static QByteArray plainText(const QVariant &value)
    {
        const QByteArray text = value.toString().toUtf8();
        const bool isNumber = value.userType() == QMetaType::Double || value.userType() == QMetaType::LongLong ||
                              value.userType() == QMetaType::ULongLong || value.userType() == QMetaType::UInt;
        bool fits = false;
        text.toInt(&fits);
        // An integer beyond 32 bits would be read as 0.
        return isNumber && !fits && classifyScalar(text.constData()) == ScalarClass::Decimal ? text + ".0" : text;
    }

    bool dumpValue(const QVariant &value)
    {
        if (value.userType() == QMetaType::QVariantMap)
            return dumpMap(value.toMap());
        if (isList(value))
            return dumpList(value.toList());
        if (value.userType() == QMetaType::QString)
            return dumpString(value.toString());
        if (value.canConvert(QMetaType::QString)) // "true" and "false" too
            return dumpScalar(plainText(value), YAML_PLAIN_SCALAR_STYLE);
        return false;
    }

    bool dumpMap(const QVariantMap &entries)
    {
        yaml_event_t event;
        if (!emit(event, yaml_mapping_start_event_initialize(&event, nullptr, nullptr, 1, YAML_ANY_MAPPING_STYLE)))
            return false;
        for (auto entry = entries.constBegin(); entry != entries.constEnd(); ++entry) {
            if (!dumpString(entry.key()) || !dumpValue(entry.value()))
                return false;
        }
        return emit(event, yaml_mapping_end_event_initialize(&event));
    }

    bool dumpList(const QVariantList &items)
    {
        yaml_event_t event;
        const bool flat = std::none_of(items.begin(), items.end(), isCollection);
        if (!emit(event, yaml_sequence_start_event_initialize(
                             &event, nullptr, nullptr, 1, flat ? YAML_FLOW_SEQUENCE_STYLE : YAML_ANY_SEQUENCE_STYLE)))
            return false;
        for (const QVariant &item : items) {
            if (!dumpValue(item))
                return false;
        }
        return emit(event, yaml_sequence_end_event_initialize(&event));
    }

    /// Quoted when it would be read as something else: left to itself the emitter writes "yes" and "" plain.
    bool dumpString(const QString &string)
    {
        const QByteArray text = string.toUtf8();
        const bool plainIsString = classifyScalar(text.constData()) == ScalarClass::String;
        return dumpScalar(text, plainIsString ? YAML_ANY_SCALAR_STYLE : YAML_SINGLE_QUOTED_SCALAR_STYLE);
    }

    bool dumpScalar(const QByteArray &text, yaml_scalar_style_t style)
    {
        yaml_event_t event;
        const auto *bytes = reinterpret_cast<const yaml_char_t *>(text.constData());
        return emit(event, yaml_scalar_event_initialize(&event, nullptr, nullptr, const_cast<yaml_char_t *>(bytes),
                                                        text.size(), 1, 1, style));
    }

    yaml_emitter_t m_emitter;
    QByteArray m_text;
};

QByteArray textOf(const QVariant &value)
{
    YamlDumper dumper;
    if (!dumper.dump(value)) {
        qDebug() << "Yaml dump error" << dumper.problem();
        throw YamlError(QStringLiteral("Failed to emit yaml document."));
    }
    return dumper.text();
}

} // namespace

bool yamlDump(const QVariant &value, QIODevice *device)
{
    try {
        const QByteArray text = textOf(value);
        if (device->write(text) == text.size())
            return true;
        qDebug() << "Yaml dump error" << device->errorString();
    } catch (const YamlError &) {
    } catch (const std::bad_alloc &) {
        qDebug() << "Yaml dump error: not enough memory";
    }
    return false;
}

QByteArray yamlDump(const QVariant &value)
{
    return textOf(value);
}

} // namespace Llama
