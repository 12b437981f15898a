#include "records/recordmetadata.h"

Opmode::Opmode(int modeIndex, const QString &modeName)
    : index(modeIndex), name(modeName), isOffset(modeName == QLatin1String("offset"))
{
}

namespace Spectrometer {

QString RecordMetadata::opmodeName(int opmode) const
{
    return opmode >= 0 && opmode < opmodes.size() ? opmodes.at(opmode).name : QString();
}

std::shared_ptr<SystemVariable> RecordMetadata::variable(const QString &name) const
{
    for (const auto &variable : variables)
        if (variable->name == name)
            return variable;
    return nullptr;
}

} // namespace Spectrometer
