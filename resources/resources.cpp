#include "resources/resources.h"

#include <QDir>

void registerResources()
{
    Q_INIT_RESOURCE(morvantide);
}
