#pragma once

#include "records/recordmetadata.h"

#include <QString>

#include <vector>

namespace RecordViews {

/// Words that a variable's names must all hold, in any case; of a word behind "!" they must hold none.
class VariableFilter {
public:
    VariableFilter() = default;
    explicit VariableFilter(const QString &text);

    /// What is searched: the variable's names and unit, ready for passes(). A true minus sign (U+2212) in the name for
    /// people counts as "-".
    static QString searchedText(const Spectrometer::SystemVariable &variable);
    bool passes(const QString &searchedText) const;

private:
    struct Word {
        QString text;
        bool isWanted;
    };
    std::vector<Word> m_words;
};

} // namespace RecordViews
