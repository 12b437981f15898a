#include "spectra/unitparser.h"

#include <QRegExp>

UnitTable makeUnitTable()
{
    UnitTable table;
    const auto add = [&table](const Unit &unit, const char *name) {
        const QString key = QString::fromLatin1(name);
        table.insert(key, unit.named(key));
    };
    for (const Unit &base : {Unit::metre, Unit::kilogram, Unit::second, Unit::ampere, Unit::kelvin, Unit::mole,
                             Unit::candela, Unit::volt, Unit::nanometre})
        table.insert(base.name, base);
    add(0.01 * Unit::metre, "cm");
    add(Unit::volt * 1000.0, "kV");
    return table;
}

const UnitTable &unitTable()
{
    static const UnitTable table = makeUnitTable();
    return table;
}

namespace {

enum class State { factor, name, operation, exponent, bad };

/// One pass over a unit text. The expressions keep state while they match, so each parser has its own.
class UnitParser {
public:
    UnitParser(const QString &text, const UnitTable &table) : m_text(text), m_table(table) {}

    Unit parse()
    {
        while (m_offset < m_text.length() && m_state != State::bad)
            m_state = step();
        if (m_state != State::operation)
            throw SpectMath::UnitParsingError(QStringLiteral("Bad syntax"));
        applyPending();
        return m_accumulator;
    }

private:
    State step()
    {
        switch (m_state) {
        case State::factor:
            return readNumber();
        case State::name:
            return readName();
        case State::operation:
            return readOperator();
        case State::exponent:
            return readExponent();
        case State::bad:
            break;
        }
        return State::bad;
    }

    State readNumber()
    {
        if (!take(m_number))
            return State::name;
        m_current = Unit() * m_number.cap(1).toDouble(); // 1e400 is infinite, as wanted
        return State::operation;
    }

    State readName()
    {
        if (!take(m_name))
            return State::bad;
        const auto known = m_table.constFind(m_name.cap(1));
        if (known == m_table.constEnd())
            throw SpectMath::UnitParsingError(QStringLiteral("Unknown unit '%1'").arg(m_name.cap(1)));
        m_current = *known;
        return State::operation;
    }

    State readOperator()
    {
        if (!take(m_operator))
            return State::bad;
        const QString symbol = m_operator.cap(1);
        if (symbol == QLatin1String("^"))
            return State::exponent;
        applyPending();
        m_divide = symbol != QLatin1String("*");
        return State::factor;
    }

    State readExponent()
    {
        if (!take(m_integer))
            return State::bad;
        m_current = m_current.pow(m_integer.cap(1).toInt()); // "2e1" and what exceeds 32 bits are the power 0
        return State::operation;
    }

    bool take(QRegExp &expression)
    {
        if (expression.indexIn(m_text, m_offset, QRegExp::CaretAtOffset) < 0)
            return false;
        m_offset += expression.matchedLength();
        return true;
    }

    void applyPending() { m_accumulator = m_divide ? m_accumulator / m_current : m_accumulator * m_current; }

    const QString &m_text;
    const UnitTable &m_table;
    QRegExp m_number{QStringLiteral("^([-+]?(\\d+(\\.\\d*)?|\\d*\\.\\d+)([eE][-+]?\\d+)?)\\s*")};
    QRegExp m_integer{QStringLiteral("^([-+]?(\\d+)([eE][-+]?\\d+)?)\\s*")};
    QRegExp m_name{QStringLiteral("^(\\w*)\\s*")};
    QRegExp m_operator{QStringLiteral("^([\\*/\\^])\\s*")};
    Unit m_accumulator;
    Unit m_current;
    bool m_divide = false;
    int m_offset = 0;
    State m_state = State::factor;
};

} // namespace

Unit SpectMath::parseUnit(const QString &text, const UnitTable &table, const QString &name)
{
    const QString resultName = name.isNull() ? text : name;
    const auto known = table.constFind(text);
    if (known != table.constEnd())
        return known->named(resultName);
    Unit result = UnitParser(text, table).parse();
    result.name = resultName;
    return result;
}
