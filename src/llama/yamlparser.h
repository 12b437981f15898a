#pragma once

#include "llama/errors.h"

#include <QHash>
#include <QVariant>

#include <memory>

#include <yaml.h>

class QIODevice;

namespace Llama {

/// Where the bytes come from: a piece of memory or a device.
class YamlInput {
public:
    YamlInput(const char *text, size_t size) : m_text(text), m_size(size), m_counted(size) {}
    explicit YamlInput(QIODevice *device) : m_device(device) {}

    /// False when the device fails, or when the text has more directives than libyaml deals with in good time.
    bool read(unsigned char *buffer, size_t size, size_t *sizeRead);
    /// All bytes of a text, or those that a device gave so far.
    size_t size() const { return m_counted; }
    bool hasTooManyDirectives() const { return m_directives > maximumDirectives; }

private:
    static constexpr int maximumDirectives = 100;
    static constexpr quint32 startOfInput = 0xffffffff;

    bool take(unsigned char *buffer, size_t size, size_t *sizeRead);
    void countDirectives(const unsigned char *buffer, size_t size);
    bool isAfterLineBreak() const;

    const char *m_text = nullptr;
    size_t m_size = 0; ///< of the rest at m_text
    QIODevice *m_device = nullptr;
    size_t m_counted = 0;
    int m_directives = 0;
    quint32 m_lastBytes = startOfInput; ///< the last one lowest
    bool m_wide = false;                ///< 16 bits a character
};

/// Reads a whole stream in its constructor: it either holds all documents, or its construction has thrown YamlError.
class YamlParser {
public:
    YamlParser(const YamlInput &input, const QString &sourceName, qint64 mostNodes = maximumNodes);

    const QVariantList &documents() const { return m_documents; }

private:
    static constexpr qint64 maximumNodes = 10'000'000;

    class Event;
    /// A value with the number of its nodes and the levels of collections in it (0 for a scalar).
    struct Tree {
        QVariant value;
        qint64 nodes = 1;
        int height = 0;
    };

    void next(Event &event);
    Tree readNode(const Event &event, int depth);
    Tree readAlias(const Event &event, int depth);
    Tree readScalar(const Event &event);
    Tree readSequence(const Event &event, int depth);
    Tree readMapping(const Event &event, int depth);
    QString readKey(const Event &event, int depth, Tree &map);
    void remember(const yaml_char_t *anchor, const Tree &tree);
    void countNodes(qint64 count, const Event &event);
    void checkDepth(int depth, const Event &event) const;
    QString failureText() const;
    [[noreturn]] void fail(const QString &message) const;
    /// %1 and %2 of the pattern are the line and column at which the event starts, %3 the detail.
    [[noreturn]] void fail(const char *pattern, const Event &event, const QString &detail = QString()) const;

    YamlInput m_input;
    QString m_sourceName;
    qint64 m_mostNodes;
    std::shared_ptr<yaml_parser_t> m_parser;
    QVariantList m_documents;
    QHash<QByteArray, Tree> m_anchors; ///< not cleared between documents
    qint64 m_nodes = 0;                ///< in all documents, copies of aliases counted
};

} // namespace Llama
