#include "gui/browser/views/viewkinds.h"

#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"

namespace Tsb {

std::vector<ViewKind> standardViewKinds()
{
    return {viewKind<OpmodeView>(QStringLiteral("opmode")), viewKind<ScatterPlotView>(QStringLiteral("scatterplot")),
            viewKind<SpectrogramView>(QStringLiteral("spectrogram"))};
}

} // namespace Tsb
