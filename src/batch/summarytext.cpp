#include "batch/summarytext.h"

#include <nlohmann/json.hpp>

namespace Batch {

namespace {

using Json = nlohmann::ordered_json;

std::string text(const QString &value)
{
    return value.toStdString();
}

Json spectraJson(const QList<Summary::Spectrum> &spectra)
{
    Json list = Json::array();
    for (const auto &spectrum : spectra)
        list.push_back({{"name", text(spectrum.name)},
                        {"inverter", text(spectrum.inverter)},
                        {"id", text(spectrum.id)},
                        {"points", spectrum.points},
                        {"unit", text(spectrum.unit)},
                        {"records", spectrum.records},
                        {"empty", spectrum.empty}});
    return list;
}

Json flagsJson(const QList<Summary::Flag> &flags)
{
    Json list = Json::array();
    for (const auto &flag : flags)
        list.push_back({{"type", text(flag.type)}, {"message", text(flag.message)}, {"records", flag.records}});
    return list;
}

Json messagesJson(const QList<Log::Entry> &entries)
{
    Json list = Json::array();
    for (const auto &entry : entries)
        list.push_back({{"level", text(Log::levelName(entry.level))},
                        {"area", text(entry.source)},
                        {"text", text(entry.message)}});
    return list;
}

Json textsJson(const QStringList &texts)
{
    Json list = Json::array();
    for (const QString &each : texts)
        list.push_back(text(each));
    return list;
}

QByteArray bytesOf(const Json &object)
{
    return QByteArray::fromStdString(object.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n';
}

void appendLine(QString &out, const QString &label, const QString &value)
{
    out += label.leftJustified(16) + value + QLatin1Char('\n');
}

/// A heading with a count, and a line for each item.
void appendList(QString &out, const QString &heading, const QStringList &lines)
{
    if (lines.isEmpty())
        return;
    out += QStringLiteral("\n%1 (%2)\n").arg(heading, QString::number(lines.size()));
    for (const QString &line : lines)
        out += QStringLiteral("  ") + line + QLatin1Char('\n');
}

void appendMessages(QString &out, const MessageCollector &messages)
{
    QStringList lines;
    for (const auto &entry : messages.entries())
        lines << QStringLiteral("%1: %2").arg(Log::levelName(entry.level), entry.message);
    appendList(out, QStringLiteral("Messages"), lines);
    if (messages.omitted() > 0)
        out += QStringLiteral("  and %1 more\n").arg(messages.omitted());
}

QString dayText(QDate day)
{
    return day.toString(Qt::ISODate);
}

} // namespace

QByteArray summaryJson(const Summary &summary, const MessageCollector &messages)
{
    Json modes = Json::object();
    // Put behind the others without a look for the name, which is no other's: the library searches all of them.
    for (const auto &mode : summary.modes)
        modes.get_ref<Json::object_t &>().emplace_back(text(mode.first), mode.second);
    const Json object{{"files", summary.files},
                      {"rows", summary.rows},
                      {"ignored_rows", summary.ignoredRows},
                      {"bytes", summary.bytes},
                      {"seconds", summary.seconds},
                      {"records", summary.records},
                      {"begin", text(summary.begin)},
                      {"end", text(summary.end)},
                      {"modes", modes},
                      {"electrometers", summary.electrometers},
                      {"variables", textsJson(summary.variables)},
                      {"spectra", spectraJson(summary.spectra)},
                      {"flags", flagsJson(summary.flags)},
                      {"messages", messagesJson(messages.entries())},
                      {"messages_omitted", messages.omitted()}};
    return bytesOf(object);
}

QByteArray summaryForPeople(const Summary &summary, const MessageCollector &messages)
{
    QString out;
    appendLine(out, QStringLiteral("Records"), QString::number(summary.records));
    if (summary.records > 0) {
        appendLine(out, QStringLiteral("Begin"), summary.begin);
        appendLine(out, QStringLiteral("End"), summary.end);
    }
    appendLine(out, QStringLiteral("Files"),
               QStringLiteral("%1, %2 rows, %3 bytes in %4 s")
                   .arg(QString::number(summary.files), QString::number(summary.rows), QString::number(summary.bytes),
                        QString::number(summary.seconds, 'f', 2)));
    if (summary.ignoredRows > 0)
        appendLine(out, QStringLiteral("Ignored rows"), QString::number(summary.ignoredRows));
    appendLine(out, QStringLiteral("Electrometers"), QString::number(summary.electrometers));

    QStringList lines;
    for (const auto &mode : summary.modes)
        lines << QStringLiteral("%1: %2 records")
                     .arg(mode.first.isEmpty() ? QStringLiteral("(unknown)") : mode.first,
                          QString::number(mode.second));
    appendList(out, QStringLiteral("Modes"), lines);
    appendList(out, QStringLiteral("Variables"), summary.variables);
    lines.clear();
    for (const auto &spectrum : summary.spectra)
        lines << QStringLiteral("%1 (%2), %3 points in %4: %5 records, %6 of them empty")
                     .arg(spectrum.name, spectrum.inverter.isEmpty() ? spectrum.id.left(4) : spectrum.inverter,
                          QString::number(spectrum.points), spectrum.unit, QString::number(spectrum.records),
                          QString::number(spectrum.empty));
    appendList(out, QStringLiteral("Spectra"), lines);
    lines.clear();
    for (const auto &flag : summary.flags)
        lines << QStringLiteral("%1 %2: %3").arg(flag.type, QString::number(flag.records), flag.message);
    appendList(out, QStringLiteral("Flags"), lines);
    appendMessages(out, messages);
    return out.toLocal8Bit();
}

QByteArray overviewJson(const FolderOverview &overview, const MessageCollector &messages)
{
    return bytesOf({{"files", overview.files},
                    {"files_without_header", overview.withoutHeader},
                    {"bytes", overview.bytes},
                    {"days", overview.days},
                    {"first_day", text(dayText(overview.firstDay))},
                    {"last_day", text(dayText(overview.lastDay))},
                    {"modes", textsJson(overview.modes)},
                    {"electrometers", overview.electrometers},
                    {"variables", textsJson(overview.variables)},
                    {"messages", messagesJson(messages.entries())},
                    {"messages_omitted", messages.omitted()}});
}

QByteArray overviewForPeople(const FolderOverview &overview, const MessageCollector &messages)
{
    QString out;
    appendLine(out, QStringLiteral("Files"),
               QStringLiteral("%1, %2 bytes").arg(QString::number(overview.files), QString::number(overview.bytes)));
    if (overview.days > 0)
        appendLine(out, QStringLiteral("Days"),
                   QStringLiteral("%1, from %2 to %3")
                       .arg(QString::number(overview.days), dayText(overview.firstDay), dayText(overview.lastDay)));
    if (overview.withoutHeader > 0)
        appendLine(out, QStringLiteral("Without header"), QString::number(overview.withoutHeader));
    appendLine(out, QStringLiteral("Electrometers"), QString::number(overview.electrometers));
    appendList(out, QStringLiteral("Modes"), overview.modes);
    appendList(out, QStringLiteral("Variables"), overview.variables);
    appendMessages(out, messages);
    return out.toLocal8Bit();
}

} // namespace Batch
