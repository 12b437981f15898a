#include "demo/eventflags.h"

#include <QHash>

namespace Demo {

using Spectrometer::RecordFlag;

namespace {

EventFlags::Pointer makeFlag(RecordFlag::Type type, const char *message)
{
    static const char *const words[] = {"note", "warning", "failure"};
    const QString word = QLatin1String(words[type]);
    auto flag = std::make_shared<RecordFlag>();
    flag->message = QLatin1String(message);
    flag->text = QStringLiteral("{type: \"%1\", message: \"%2\"}").arg(word, flag->message);
    flag->properties = {{QStringLiteral("type"), word}, {QStringLiteral("message"), flag->message}};
    flag->hash = qHash(flag->text, 0);
    flag->type = type;
    return flag;
}

} // namespace

const EventFlags &EventFlags::instance()
{
    static const EventFlags flags{makeFlag(RecordFlag::Note, "Inlet was cleaned"),
                                  makeFlag(RecordFlag::Note, "Electrometer zero drifts with temperature"),
                                  makeFlag(RecordFlag::Warning, "Sample relative humidity is high"),
                                  makeFlag(RecordFlag::Warning, "Charger current is below its target"),
                                  makeFlag(RecordFlag::Failure, "Positive charger has failed")};
    return flags;
}

} // namespace Demo
