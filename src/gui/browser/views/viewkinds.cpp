#include "gui/browser/views/viewkinds.h"

#include "columns/setupkeys.h"
#include "gui/browser/views/opmodeview.h"
#include "gui/browser/views/scatterplotview.h"
#include "gui/browser/views/spectrogramview.h"

#include <algorithm>

namespace Tsb {

std::vector<ViewKind> standardViewKinds()
{
    return {viewKind<OpmodeView>(SetupKeys::opmodeView), viewKind<ScatterPlotView>(SetupKeys::scatterPlotView),
            viewKind<SpectrogramView>(SetupKeys::spectrogramView)};
}

const ViewKind *ViewKinds::kindOf(const QString &type) const
{
    const auto kind = std::find_if(m_kinds.begin(), m_kinds.end(), [&](const ViewKind &k) { return k.type == type; });
    return kind == m_kinds.end() ? nullptr : &*kind;
}

View *ViewKinds::make(const QString &type) const
{
    const ViewKind *kind = kindOf(type);
    return kind ? kind->make() : nullptr;
}

QString ViewKinds::typeOf(const View &view) const
{
    for (const ViewKind &kind : m_kinds) {
        if (view.metaObject() == kind.metaObject)
            return kind.type;
    }
    return {};
}

} // namespace Tsb
