#include "gui/common/recordviews/variablefilter.h"

#include <QStringList>

#include <algorithm>

namespace RecordViews {

VariableFilter::VariableFilter(const QString &text)
{
    QStringList words = text.toCaseFolded().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    words.removeDuplicates();
    for (const QString &word : qAsConst(words)) {
        const bool isWanted = !word.startsWith(QLatin1Char('!'));
        if (isWanted || word.size() > 1)
            m_words.push_back({isWanted ? word : word.mid(1), isWanted});
    }
}

QString VariableFilter::searchedText(const Spectrometer::SystemVariable &variable)
{
    constexpr QChar minusSign(0x2212);
    QString humanname = variable.humanname;
    humanname.replace(minusSign, QLatin1Char('-'));
    // No word of a filter has a blank, so none is found across the borders.
    return (humanname + QLatin1Char(' ') + variable.unit + QLatin1Char(' ') + variable.name).toCaseFolded();
}

bool VariableFilter::passes(const QString &searchedText) const
{
    return std::all_of(m_words.begin(), m_words.end(),
                       [&](const Word &word) { return searchedText.contains(word.text) == word.isWanted; });
}

} // namespace RecordViews
