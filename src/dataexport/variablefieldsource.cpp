#include "dataexport/variablefieldsource.h"

#include "dataexport/delimitedline.h"
#include "util/textescape.h"

namespace DataExport {

VariableFieldSource::VariableFieldSource(const QStringList &names, const Spectrometer::RecordMetadata &metadata,
                                         QStringList *errors)
{
    for (const QString &name : names) {
        const auto variable = metadata.variable(name);
        if (!variable) {
            errors->append(QStringLiteral("Unknown variable '%1'.").arg(name));
            continue;
        }
        m_titles << (variable->unit.isEmpty() ? name : fillMarkers(QStringLiteral("%1 (%2)"), {name, variable->unit}));
        m_slots.push_back(variable->valueIndex);
    }
}

void VariableFieldSource::values(const Record &record, DelimitedLine &line) const
{
    for (const int slot : m_slots) {
        const bool isHeld = slot >= 0 && std::size_t(slot) < record.variables.size();
        line.addNumber(isHeld ? record.variables[std::size_t(slot)] : noValue);
    }
}

} // namespace DataExport
