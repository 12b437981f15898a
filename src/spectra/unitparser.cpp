#include "spectra/unitparser.h"

#include <algorithm>

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

/// Takes the parts of a unit text one after the other, with the blanks behind each. Not by expressions of the toolkit:
/// these need memory when they are destroyed, and end the process where there is none.
class UnitScanner {
public:
    explicit UnitScanner(const QString &text) : m_text(text) {}

    bool atEnd() const { return m_offset == m_text.size(); }

    /// An optional sign, digits with or without a point among them, and perhaps an exponent.
    bool takeNumber(QString *number)
    {
        int at = afterSign(m_offset);
        const int whole = digitsAt(at);
        at += whole;
        const bool hasPoint = isOneOf(at, ".");
        const int fraction = hasPoint ? digitsAt(at + 1) : 0;
        if (whole == 0 && fraction == 0)
            return false;
        return take(afterExponent(hasPoint ? at + 1 + fraction : at), number);
    }
    /// An optional sign, digits, and perhaps an exponent.
    bool takeInteger(QString *integer)
    {
        const int at = afterSign(m_offset);
        const int digits = digitsAt(at);
        return digits > 0 && take(afterExponent(at + digits), integer);
    }
    /// Which may be empty.
    QString takeName()
    {
        const auto isOfName = [](QChar c) { return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_'); };
        QString name;
        take(m_offset + countAt(m_offset, isOfName), &name);
        return name;
    }
    bool takeOperator(QString *symbol) { return isOneOf(m_offset, "*/^") && take(m_offset + 1, symbol); }

private:
    template<typename Is>
    int countAt(int at, Is is) const
    {
        return int(std::find_if_not(m_text.begin() + at, m_text.end(), is) - (m_text.begin() + at));
    }
    int digitsAt(int at) const
    {
        return countAt(at, [](QChar c) { return c.isDigit(); });
    }
    bool isOneOf(int at, const char *characters) const
    {
        return at < m_text.size() && QLatin1String(characters).contains(m_text[at]);
    }
    int afterSign(int at) const { return isOneOf(at, "-+") ? at + 1 : at; }
    int afterExponent(int at) const
    {
        const int digitsBegin = isOneOf(at, "eE") ? afterSign(at + 1) : at;
        const int digits = digitsBegin > at ? digitsAt(digitsBegin) : 0;
        return digits > 0 ? digitsBegin + digits : at;
    }
    bool take(int end, QString *part)
    {
        *part = m_text.mid(m_offset, end - m_offset);
        m_offset = end + countAt(end, [](QChar c) { return c.isSpace(); });
        return true;
    }

    const QString &m_text;
    int m_offset = 0;
};

/// One pass over a unit text.
class UnitParser {
public:
    UnitParser(const QString &text, const UnitTable &table) : m_text(text), m_table(table) {}

    Unit parse()
    {
        while (!m_text.atEnd() && m_state != State::bad)
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
        QString number;
        if (!m_text.takeNumber(&number))
            return State::name;
        m_current = Unit() * number.toDouble(); // 1e400 is infinite, as wanted
        return State::operation;
    }

    State readName()
    {
        const QString name = m_text.takeName();
        const auto known = m_table.constFind(name);
        if (known == m_table.constEnd())
            throw SpectMath::UnitParsingError(QStringLiteral("Unknown unit '%1'").arg(name));
        m_current = *known;
        return State::operation;
    }

    State readOperator()
    {
        QString symbol;
        if (!m_text.takeOperator(&symbol))
            return State::bad;
        if (symbol == QLatin1String("^"))
            return State::exponent;
        applyPending();
        m_divide = symbol != QLatin1String("*");
        return State::factor;
    }

    State readExponent()
    {
        QString power;
        if (!m_text.takeInteger(&power))
            return State::bad;
        m_current = m_current.pow(power.toInt()); // "2e1" and what exceeds 32 bits are the power 0
        return State::operation;
    }

    void applyPending() { m_accumulator = m_divide ? m_accumulator / m_current : m_accumulator * m_current; }

    UnitScanner m_text;
    const UnitTable &m_table;
    Unit m_accumulator;
    Unit m_current;
    bool m_divide = false;
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
