#include "gui/common/statustext.h"

#include "records/recordflag.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <vector>

namespace StatusText {

namespace {

using Spectrometer::RecordFlag;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(StatusText)
};

constexpr Ticks minute(60 * ticksPerSecond), hour(3600 * ticksPerSecond), day(ticksPerDay);
constexpr Ticks recent = 10 * minute;

QString tag(const RecordFlag &flag)
{
    if (flag.type == RecordFlag::Warning)
        return QStringLiteral("<span class='warning'>%1</span>").arg(Words::tr("[warn]"));
    if (flag.type == RecordFlag::Failure)
        return QStringLiteral("<span class='error'>%1</span>").arg(Words::tr("[fail]"));
    return {};
}

/// The numbers of notes, warnings and failures.
class Sums {
public:
    void add(const RecordFlag &flag) { ++m_numbers[std::size_t(std::clamp(flag.type, 0, int(RecordFlag::Failure)))]; }
    QString summary() const
    {
        QStringList parts;
        const auto tell = [&parts](int number, const QString &format, const QString &one, const QString &many) {
            if (number > 0)
                parts += format.arg(number > 1 ? many.arg(number) : one);
        };
        tell(m_numbers[RecordFlag::Failure], QStringLiteral("<font color='darkred'><b>%1</b></font>"),
             Words::tr("1 failure"), Words::tr("%1 failures"));
        tell(m_numbers[RecordFlag::Warning], QStringLiteral("<font color='darkred'>%1</font>"), Words::tr("1 warning"),
             Words::tr("%1 warnings"));
        tell(m_numbers[RecordFlag::Note], QStringLiteral("<font color='black'>%1</font>"), Words::tr("1 notice"),
             Words::tr("%1 notices"));
        return parts.isEmpty() ? QStringLiteral("<font color='black'>%1</font>").arg(Words::tr("ok"))
                               : parts.join(QLatin1Char(' '));
    }

private:
    std::array<int, 3> m_numbers{};
};

/// The first rows of a list by `before`. Of equal ones the smaller message comes first.
template<typename Before>
std::vector<const FlagStatus *> firstRows(std::vector<const FlagStatus *> all, Before before)
{
    const auto end = all.begin() + std::min<std::ptrdiff_t>(std::ptrdiff_t(all.size()), mostRows);
    std::partial_sort(all.begin(), end, all.end(), [before](const FlagStatus *a, const FlagStatus *b) {
        if (before(*a, *b) || before(*b, *a))
            return before(*a, *b);
        return a->flag->message < b->flag->message;
    });
    all.erase(end, all.end());
    return all;
}

QString table(const QString &rows, std::size_t count)
{
    if (count == 0)
        return {};
    const QString more =
        count > mostRows
            ? QStringLiteral("<tr><td>%1</td><td></td></tr>").arg(Words::tr("and %1 more").arg(count - mostRows))
            : QString();
    return QStringLiteral("<table width='100%'>%1</table>").arg(rows + more);
}

} // namespace

Texts byCount(const FlagCounts &counts)
{
    Sums sums;
    std::vector<const FlagStatus *> all;
    for (const FlagStatus &status : counts.statuses()) {
        all.push_back(&status);
        sums.add(*status.flag);
    }
    QString rows;
    for (const FlagStatus *status :
         firstRows(all, [](const FlagStatus &a, const FlagStatus &b) { return a.count > b.count; })) {
        rows += QStringLiteral("<tr><td><a href='%3/flag'>%1 %2</a></td>"
                               "<td align='right' class='comment'>%4</td></tr>")
                    .arg(tag(*status->flag), status->flag->message.toHtmlEscaped(),
                         FlagCounts::keyOf(status->flag.get()), Words::tr("%n records", nullptr, status->count));
    }
    return {table(rows, all.size()), sums.summary()};
}

Texts byTime(const FlagCounts &counts, RecordTime now)
{
    Sums sums;
    std::vector<const FlagStatus *> all;
    for (const FlagStatus &status : counts.statuses()) {
        if (status.lastEnd < now - day)
            continue;
        all.push_back(&status);
        if (status.lastEnd >= now - recent)
            sums.add(*status.flag);
    }
    QString rows;
    for (const FlagStatus *status :
         firstRows(all, [](const FlagStatus &a, const FlagStatus &b) { return a.lastEnd > b.lastEnd; })) {
        const bool isOld = status->lastEnd < now - recent;
        rows +=
            QStringLiteral("<tr class='%4'><td><a href='%3/flag'>%1 %2</a></td><td align='right'>%5</td></tr>")
                .arg(tag(*status->flag), status->flag->message.toHtmlEscaped(), FlagCounts::keyOf(status->flag.get()),
                     isOld ? QStringLiteral("dimmed") : QStringLiteral("normal"), age(now - status->lastEnd));
    }
    return {table(rows, all.size()), sums.summary()};
}

QString age(Ticks age)
{
    if (age < minute)
        return Words::tr("0 minutes ago");
    if (age < 2 * minute)
        return Words::tr("1 minute ago");
    const std::int64_t minutes = age / minute;
    if (age < hour)
        return Words::tr("%1 minutes ago").arg(minutes);
    return Words::tr("%1:%2 hours ago")
        .arg(QString::number(minutes / 60), QString::number(minutes % 60).rightJustified(2, QLatin1Char('0')));
}

} // namespace StatusText
