#include "gui/common/tsb/viewkinds.h"

#include "gui/common/tsb/opmodeview.h"
#include "gui/common/tsb/scatterplotview.h"
#include "gui/common/tsb/spectrogramview.h"

namespace Tsb {

std::vector<ViewKind> standardViewKinds()
{
    return {viewKind<OpmodeView>(QStringLiteral("opmode")), viewKind<ScatterPlotView>(QStringLiteral("scatterplot")),
            viewKind<SpectrogramView>(QStringLiteral("spectrogram"))};
}

} // namespace Tsb
