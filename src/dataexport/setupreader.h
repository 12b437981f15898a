#pragma once

#include "llama/nodes.h"

namespace DataExport {

/// Reads keys of a map of a setup. Nothing is converted but numbers: what is of another type is told with its place.
class SetupReader {
public:
    SetupReader(const Llama::MapNode &map, QStringList *errors) : m_map(map), m_errors(errors) {}

    // True if the key is absent, or *out has its value. False with an error line for a value of a wrong type.
    bool read(const char *key, bool *out) const;
    /// A whole number; one out of range becomes the nearest int.
    bool read(const char *key, int *out) const;
    /// A number or the text of one, since the text "1e5" isn't a number to YAML.
    bool read(const char *key, double *out) const;
    bool read(const char *key, QString *out) const;
    /// A list of texts.
    bool read(const char *key, QStringList *out) const;

    /// Adds an error line; false.
    bool complain(const QString &text) const;
    QStringList *errors() const { return m_errors; }

private:
    bool wrongType(const Llama::Node &node, const char *wanted) const;

    Llama::MapNode m_map;
    QStringList *m_errors;
};

} // namespace DataExport
