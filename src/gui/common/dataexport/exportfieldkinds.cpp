#include "gui/common/dataexport/exportfieldkinds.h"

#include "gui/common/dataexport/concentrationfieldform.h"
#include "gui/common/dataexport/electrometerfieldform.h"
#include "gui/common/dataexport/spectrumfieldform.h"
#include "gui/common/dataexport/variablefieldform.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

template<class Form>
ExportFieldPage *make(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent)
{
    return new Form(uiInfo, parent);
}

struct Words {
    Q_DECLARE_TR_FUNCTIONS(ExportFieldKinds)
};

} // namespace

const std::vector<ExportFieldKind> &exportFieldKinds()
{
    static const std::vector<ExportFieldKind> kinds{
        {QStringLiteral("concentration"), Words::tr("Add concentrations"), &make<ConcentrationFieldForm>},
        {QStringLiteral("spectrum"), Words::tr("Add whole spectra"), &make<SpectrumFieldForm>},
        {QStringLiteral("variable"), Words::tr("Add variables"), &make<VariableFieldForm>},
        {QStringLiteral("electrometer"), Words::tr("Add electrometers"), &make<ElectrometerFieldForm>}};
    return kinds;
}

const ExportFieldKind *exportFieldKind(const QString &type)
{
    const auto &kinds = exportFieldKinds();
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [&](const ExportFieldKind &kind) { return kind.type == type; });
    return found == kinds.end() ? nullptr : &*found;
}
