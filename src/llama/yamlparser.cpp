#include "llama/yamlparser.h"

#include "llama/scalarclass.h"

#include <QIODevice>

#include <cstring>

namespace Llama {

namespace {

constexpr int maximumDepth = 200;
constexpr qint64 maximumNodesPerByte = 10;

int readInput(void *input, unsigned char *buffer, size_t size, size_t *sizeRead)
{
    return static_cast<YamlInput *>(input)->read(buffer, size, sizeRead) ? 1 : 0;
}

QString lineOf(const yaml_mark_t &mark)
{
    return QString::number(mark.line + 1);
}

QString columnOf(const yaml_mark_t &mark)
{
    return QString::number(mark.column + 1);
}

} // namespace

// ---- YamlInput

bool YamlInput::read(unsigned char *buffer, size_t size, size_t *sizeRead)
{
    if (!take(buffer, size, sizeRead))
        return false;
    countDirectives(buffer, *sizeRead);
    return !hasTooManyDirectives();
}

bool YamlInput::take(unsigned char *buffer, size_t size, size_t *sizeRead)
{
    if (!m_device) {
        *sizeRead = std::min(size, m_size);
        if (*sizeRead > 0)
            std::memcpy(buffer, m_text, *sizeRead);
        m_text += *sizeRead;
        m_size -= *sizeRead;
        return true;
    }
    const qint64 count = m_device->read(reinterpret_cast<char *>(buffer), qint64(size));
    if (count < 0)
        return false;
    *sizeRead = size_t(count);
    m_counted += size_t(count);
    return true;
}

/// libyaml compares each directive with all before it. Counted are percent signs at the start of a line, and all of a
/// text in 16 bits.
void YamlInput::countDirectives(const unsigned char *buffer, size_t size)
{
    for (size_t i = 0; i < size; ++i) {
        if (m_lastBytes == startOfInput)
            m_wide = buffer[i] >= 0xfe;
        if (buffer[i] == '%' && (m_wide || isAfterLineBreak()))
            ++m_directives;
        m_lastBytes = m_lastBytes << 8 | buffer[i];
    }
}

bool YamlInput::isAfterLineBreak() const
{
    const quint32 last3 = m_lastBytes & 0xffffff;
    return m_lastBytes == startOfInput || (last3 & 0xff) == '\n' || (last3 & 0xff) == '\r' ||
           (last3 & 0xffff) == 0xc285 ||                                // next line
           last3 == 0xe280a8 || last3 == 0xe280a9 || last3 == 0xefbbbf; // line and paragraph separator, byte order mark
}

// ---- YamlParser

/// One event, freed with its owner.
class YamlParser::Event {
public:
    Event() { std::memset(&m_event, 0, sizeof m_event); }
    ~Event() { yaml_event_delete(&m_event); }
    Event(const Event &) = delete;
    Event &operator=(const Event &) = delete;

    yaml_event_type_t type() const { return m_event.type; }
    const yaml_event_t *operator->() const { return &m_event; }
    yaml_event_t *emptied()
    {
        yaml_event_delete(&m_event);
        return &m_event;
    }

private:
    yaml_event_t m_event;
};

YamlParser::YamlParser(const YamlInput &input, const QString &sourceName, qint64 mostNodes)
    : m_input(input), m_sourceName(sourceName), m_mostNodes(std::min(mostNodes, maximumNodes))
{
    auto parser = std::make_unique<yaml_parser_t>();
    if (!yaml_parser_initialize(parser.get()))
        fail(QStringLiteral("Could not initialize the parser object"));
    m_parser = std::shared_ptr<yaml_parser_t>(parser.release(), [](yaml_parser_t *initialized) {
        yaml_parser_delete(initialized);
        delete initialized;
    });
    yaml_parser_set_input(m_parser.get(), readInput, &m_input);

    Event event;
    for (next(event); event.type() != YAML_STREAM_END_EVENT; next(event)) {
        if (event.type() != YAML_DOCUMENT_START_EVENT)
            continue;
        next(event);
        m_documents.append(readNode(event, 0).value);
    }
}

void YamlParser::next(Event &event)
{
    if (!yaml_parser_parse(m_parser.get(), event.emptied()))
        fail(failureText());
}

YamlParser::Tree YamlParser::readNode(const Event &event, int depth)
{
    switch (event.type()) {
    case YAML_ALIAS_EVENT:
        return readAlias(event, depth);
    case YAML_SCALAR_EVENT:
        return readScalar(event);
    case YAML_SEQUENCE_START_EVENT:
        return readSequence(event, depth + 1);
    case YAML_MAPPING_START_EVENT:
        return readMapping(event, depth + 1);
    default:
        fail("Internal error at line %1, column %2", event);
    }
}

YamlParser::Tree YamlParser::readAlias(const Event &event, int depth)
{
    const char *const name = reinterpret_cast<const char *>(event->data.alias.anchor);
    const auto found = m_anchors.constFind(QByteArray(name));
    if (found == m_anchors.constEnd())
        fail("Undefined alias '%3' at line %1, column %2", event, QString::fromUtf8(name));
    checkDepth(depth + found->height, event);
    countNodes(found->nodes, event);
    return *found;
}

YamlParser::Tree YamlParser::readScalar(const Event &event)
{
    countNodes(1, event);
    const auto &scalar = event->data.scalar;
    const QByteArray text = QByteArray::fromRawData(reinterpret_cast<const char *>(scalar.value), int(scalar.length));
    Tree tree;
    if (scalar.quoted_implicit) {
        tree.value = scalarText(text);
    } else {
        const ScalarClass scalarClass = classifyScalar(text.constData());
        if (scalarClass == ScalarClass::Merge)
            fail("Unknown value at line %1, column %2", event);
        tree.value = scalarValue(scalarClass, text);
    }
    remember(scalar.anchor, tree);
    return tree;
}

YamlParser::Tree YamlParser::readSequence(const Event &event, int depth)
{
    checkDepth(depth, event);
    countNodes(1, event);
    Tree tree;
    QVariantList items;
    Event part;
    for (next(part); part.type() != YAML_SEQUENCE_END_EVENT; next(part)) {
        const Tree item = readNode(part, depth);
        items.append(item.value);
        tree.nodes += item.nodes;
        tree.height = std::max(tree.height, item.height);
    }
    tree.value = items;
    ++tree.height;
    remember(event->data.sequence_start.anchor, tree);
    return tree;
}

YamlParser::Tree YamlParser::readMapping(const Event &event, int depth)
{
    checkDepth(depth, event);
    countNodes(1, event);
    Tree tree;
    QVariantMap entries;
    Event part;
    for (next(part); part.type() != YAML_MAPPING_END_EVENT; next(part)) {
        const QString key = readKey(part, depth, tree);
        next(part);
        const Tree value = readNode(part, depth);
        entries.insert(key, value.value);
        tree.nodes += value.nodes;
        tree.height = std::max(tree.height, value.height);
    }
    tree.value = entries;
    ++tree.height;
    remember(event->data.mapping_start.anchor, tree);
    return tree;
}

QString YamlParser::readKey(const Event &event, int depth, Tree &map)
{
    const Tree key = readNode(event, depth);
    if (!key.value.canConvert(QMetaType::QString))
        fail("A mapping key that can't be represented as a string at line %1, column %2", event);
    map.nodes += key.nodes;
    return key.value.toString();
}

void YamlParser::remember(const yaml_char_t *anchor, const Tree &tree)
{
    if (anchor)
        m_anchors.insert(QByteArray(reinterpret_cast<const char *>(anchor)), tree);
}

void YamlParser::countNodes(qint64 count, const Event &event)
{
    m_nodes += count;
    const qint64 held = m_nodes + m_anchors.size(); // an anchor takes as much memory as a node
    if (held > m_mostNodes || m_nodes > maximumNodesPerByte * qint64(m_input.size()))
        fail("Too many nodes at line %1, column %2", event);
}

void YamlParser::checkDepth(int depth, const Event &event) const
{
    if (depth > maximumDepth)
        fail("Too much nesting at line %1, column %2", event);
}

QString YamlParser::failureText() const
{
    if (m_input.hasTooManyDirectives())
        return QStringLiteral("Too many directives");
    const yaml_parser_t &parser = *m_parser;
    const QString problem = QString::fromUtf8(parser.problem);
    switch (parser.error) {
    case YAML_MEMORY_ERROR:
        return QStringLiteral("Memory error: Not enough memory for parsing");
    case YAML_READER_ERROR:
        if (parser.problem_value == -1)
            return QStringLiteral("Reader error: %1 at %2").arg(problem, QString::number(parser.problem_offset));
        return QStringLiteral("Reader error: %1: #%2 at %3")
            .arg(problem, QString::number(parser.problem_value, 16), QString::number(parser.problem_offset));
    case YAML_SCANNER_ERROR:
    case YAML_PARSER_ERROR: {
        // One of the two begins with a small letter: logs have been searched for these words for long.
        const QString kind = QLatin1String(parser.error == YAML_SCANNER_ERROR ? "Scanner" : "parser");
        const QString line = lineOf(parser.problem_mark), column = columnOf(parser.problem_mark);
        if (!parser.context)
            return QStringLiteral("%1 error: %2 at line %3, column %4").arg(kind, problem, line, column);
        return QStringLiteral("%1 error: %2 at line %3, column %4; %5 at line %6, column %7")
            .arg(kind, QString::fromUtf8(parser.context), lineOf(parser.context_mark), columnOf(parser.context_mark),
                 problem, line, column);
    }
    default:
        return QStringLiteral("Internal error");
    }
}

void YamlParser::fail(const QString &message) const
{
    throw YamlError(m_sourceName, message);
}

void YamlParser::fail(const char *pattern, const Event &event, const QString &detail) const
{
    const QString line = lineOf(event->start_mark), column = columnOf(event->start_mark);
    const QString text = QLatin1String(pattern);
    fail(text.contains(QLatin1String("%3")) ? text.arg(line, column, detail) : text.arg(line, column));
}

} // namespace Llama
