#include "gui/browser/views/viewkinds.h"

#include "columns/setupkeys.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"

namespace Tsb {

std::vector<ViewKind> standardViewKinds()
{
    return {viewKind<OpmodeView>(SetupKeys::opmodeView), viewKind<ScatterPlotView>(SetupKeys::scatterPlotView),
            viewKind<SpectrogramView>(SetupKeys::spectrogramView)};
}

} // namespace Tsb
