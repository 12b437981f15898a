#include "gui/common/tsb/scatterseries.h"

namespace Tsb {

QString electrometerSeriesName(const Spectrometer::RecordMetadata &metadata, int electrometer)
{
    QString name = metadata.electrometerNames.value(electrometer);
    for (const char *group : {"pos", "neg"}) {
        const Spectrometer::ChannelRange channels = metadata.electrometerGroups.value(QString::fromLatin1(group));
        if (electrometer >= channels.first && electrometer < channels.end)
            name += QLatin1Char(' ') + QLatin1String(group);
    }
    return name;
}

} // namespace Tsb
