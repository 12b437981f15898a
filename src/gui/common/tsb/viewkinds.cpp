#include "gui/common/tsb/viewkinds.h"

namespace Tsb {

std::vector<ViewKind> standardViewKinds()
{
    return {};
}

} // namespace Tsb
