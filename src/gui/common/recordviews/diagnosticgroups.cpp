#include "gui/common/recordviews/diagnosticgroups.h"

#include <QHash>

#include <map>

namespace RecordViews {

namespace {

using Spectrometer::SystemVariable;

/// The name of a variable beside the main one: what stands before and behind the stem.
struct Affixes {
    const char *prefix = "";
    const char *suffix = nullptr; ///< null for no such name
};

struct Companion {
    ParameterGroup::Slot slot; ///< the slot of its deviation is the next one
    Affixes mean;
    Affixes deviation = {};
};

/// A main variable's name is a stem and a suffix.
struct NamingRule {
    const char *suffix;
    Affixes deviation;
    std::vector<Companion> companions;
};

/// Earlier rules go before later ones where both could take a slot.
const std::vector<NamingRule> &namingRules()
{
    static const std::vector<NamingRule> rules = {
        {".mean",
         {"", ".stddev"},
         {{ParameterGroup::OnState, {"", "_on.mean"}, {"", "_on.stddev"}},
          {ParameterGroup::Input, {"", "_vin.mean"}, {"", "_vin.stddev"}},
          {ParameterGroup::Output, {"", "_vout.mean"}, {"", "_vout.stddev"}},
          {ParameterGroup::Target, {"", "_tgt.mean"}, {"", "_tgt.stddev"}},
          {ParameterGroup::ValueTarget, {"", "_vtgt.mean"}, {"", "_vtgt.stddev"}}}},
        {".mean",
         {"", ".stddev"},
         {{ParameterGroup::OnState, {"", "_enabled.mean"}, {"", "_enabled.stddev"}},
          {ParameterGroup::Input, {"", "_raw.mean"}, {"", "_raw.stddev"}},
          {ParameterGroup::Output, {"", "_control.mean"}, {"", "_control.stddev"}},
          {ParameterGroup::Target, {"", "_target.mean"}, {"", "_target.stddev"}},
          {ParameterGroup::ValueTarget, {"", "_raw_target.mean"}, {"", "_raw_target.stddev"}}}},
        {".mean",
         {"", ".stddev"},
         {{ParameterGroup::OnState, {"", ".on.mean"}, {"", ".on.stddev"}},
          {ParameterGroup::Input, {"", ".vin.mean"}, {"", ".vin.stddev"}},
          {ParameterGroup::Output, {"", ".vout.mean"}, {"", ".vout.stddev"}},
          {ParameterGroup::Target, {"", ".tgt.mean"}, {"", ".tgt.stddev"}},
          {ParameterGroup::ValueTarget, {"", ".vtgt.mean"}, {"", ".vtgt.stddev"}}}},
        {"_voltage.mean",
         {"", "_voltage.stddev"},
         {{ParameterGroup::Input, {"", "_sensor_voltage.mean"}, {"", "_sensor_voltage.stddev"}}}},
        {"",
         {"", "_stddev"},
         {{ParameterGroup::Input, {"sens_", ""}},
          {ParameterGroup::Output, {"ctrl_", ""}},
          {ParameterGroup::Target, {"tgt_", ""}}}},
    };
    return rules;
}

class Grouping {
public:
    explicit Grouping(const VariableList &variables)
        : m_variables(variables), m_isClaimed(std::size_t(variables.size())), m_groups(m_isClaimed.size())
    {
        m_byName.reserve(variables.size());
        for (int i = 0; i < variables.size(); ++i) {
            if (!m_byName.contains(variables[i]->name))
                m_byName.insert(variables[i]->name, i);
        }
    }

    std::vector<ParameterGroup> make()
    {
        // A main variable's name is shorter than those that it claims: once all shorter names have had their turn, it
        // is settled whether a variable is claimed.
        std::map<int, std::vector<int>> byLength;
        for (int i = 0; i < m_variables.size(); ++i)
            byLength[m_variables[i]->name.size()].push_back(i);
        for (const auto &[length, indices] : byLength) {
            for (const int i : indices) {
                if (!m_isClaimed[std::size_t(i)])
                    makeGroup(i);
            }
        }
        std::vector<ParameterGroup> made;
        for (std::size_t i = 0; i < m_groups.size(); ++i) {
            if (!m_isClaimed[i])
                made.push_back(m_groups[i]);
        }
        return made;
    }

private:
    void makeGroup(int index)
    {
        ParameterGroup &group = m_groups[std::size_t(index)];
        const QString &name = m_variables[index]->name;
        group.slots[ParameterGroup::Mean] = m_variables[index].get();
        for (const NamingRule &rule : namingRules()) {
            const QLatin1String suffix(rule.suffix);
            if (!name.endsWith(suffix))
                continue;
            const QStringRef stem = name.leftRef(name.size() - suffix.size());
            claim(group, ParameterGroup::MeanDeviation, stem, rule.deviation);
            for (const Companion &companion : rule.companions) {
                if (claim(group, companion.slot, stem, companion.mean))
                    claim(group, companion.slot + 1, stem, companion.deviation);
            }
        }
    }

    /// Whether there is such a variable and the slot was free.
    bool claim(ParameterGroup &group, int slot, const QStringRef &stem, const Affixes &affixes)
    {
        const SystemVariable *&place = group.slots[std::size_t(slot)];
        if (place || !affixes.suffix)
            return false;
        m_name.resize(0); // its memory stays
        m_name.append(QLatin1String(affixes.prefix)).append(stem).append(QLatin1String(affixes.suffix));
        const auto found = m_byName.constFind(m_name);
        if (found == m_byName.constEnd())
            return false;
        place = m_variables[*found].get();
        m_isClaimed[std::size_t(*found)] = true;
        return true;
    }

    const VariableList &m_variables;
    QHash<QString, int> m_byName;
    std::vector<bool> m_isClaimed;
    std::vector<ParameterGroup> m_groups; ///< by the place of the main variable
    QString m_name;
};

} // namespace

std::vector<ParameterGroup> groupVariables(const VariableList &variables)
{
    return Grouping(variables).make();
}

} // namespace RecordViews
