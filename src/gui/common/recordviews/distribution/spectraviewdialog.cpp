#include "gui/common/recordviews/distribution/spectraviewdialog.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>

namespace RecordViews {

namespace {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::DistributionType;

constexpr int automaticAxis = -2;
constexpr int mostSmoothing = 20;
constexpr int smoothingTicks = 5;

void check(QButtonGroup *group, int id)
{
    const QSignalBlocker blocker(group);
    if (QAbstractButton *const button = group->button(id))
        button->setChecked(true);
}

} // namespace

SpectraViewDialog::SpectraViewDialog(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Distribution plot settings"));
    auto *const layout = new QVBoxLayout(this);
    auto *const rows = new QFormLayout;
    rows->setRowWrapPolicy(QFormLayout::WrapAllRows);
    layout->addLayout(rows);
    m_distributionType = addChoices(rows, tr("Distribution type:"),
                                    {{int(DistributionType::density), tr("Density distribution")},
                                     {int(DistributionType::fraction), tr("Fraction distribution")}},
                                    [this](int id) { Q_EMIT distributionTypeChanged(DistributionType(id)); });
    m_verticalQuantity = addChoices(rows, tr("Concentration type:"),
                                    {{int(ConcentrationType::number), tr("Number")},
                                     {int(ConcentrationType::diameter), tr("Diameter")},
                                     {int(ConcentrationType::surface), tr("Surface")},
                                     {int(ConcentrationType::volume), tr("Volume")}},
                                    [this](int id) { Q_EMIT verticalQuantityChanged(ConcentrationType(id)); });
    m_verticalScale = addChoices(rows, tr("Vertical scale:"), {{0, tr("Linear")}, {1, tr("Logarithmic")}},
                                 [this](int id) { Q_EMIT verticalScaleLogChanged(id == 1); });
    m_horizontalQuantity =
        addChoices(rows, tr("Horizontal quantity:"),
                   {{automaticAxis, tr("Automatic")},
                    {int(DistributionScale::diameter), tr("Diameter")},
                    {int(DistributionScale::mobility), tr("Mobility")}},
                   [this](int id) {
                       const bool isAutomatic = id == automaticAxis;
                       Q_EMIT horizontalQuantityChanged(isAutomatic, isAutomatic ? DistributionScale::diameter
                                                                                 : DistributionScale(id));
                   });
    m_layout = addChoices(rows, tr("Layout:"), {{1, tr("Single plot")}, {0, tr("Separate plots for spectra")}},
                          [this](int id) { Q_EMIT singlePlotChanged(id == 1); });
    addSlider(rows);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

template<typename Function>
QButtonGroup *SpectraViewDialog::addChoices(QFormLayout *layout, const QString &title, const QList<Choice> &choices,
                                            Function chosen)
{
    auto *const box = new QGroupBox(title, this);
    auto *const row = new QHBoxLayout(box);
    auto *const group = new QButtonGroup(this);
    for (const Choice &choice : choices) {
        auto *const button = new QRadioButton(choice.text, box);
        group->addButton(button, choice.id);
        row->addWidget(button);
    }
    row->addStretch();
    layout->addRow(box);
    connect(group, &QButtonGroup::idToggled, this, [chosen](int id, bool isChecked) {
        if (isChecked)
            chosen(id);
    });
    return group;
}

void SpectraViewDialog::addSlider(QFormLayout *layout)
{
    auto *const box = new QGroupBox(tr("Smoothing:"), this);
    auto *const row = new QHBoxLayout(box);
    m_smoothing = new QSlider(Qt::Horizontal, box);
    m_smoothing->setRange(0, mostSmoothing);
    m_smoothing->setTickInterval(smoothingTicks);
    m_smoothing->setTickPosition(QSlider::TicksBelow);
    m_smoothing->setAccessibleName(tr("Smoothing"));
    row->addWidget(m_smoothing);
    layout->addRow(box);
    connect(m_smoothing, &QSlider::valueChanged, this, [this](int value) { Q_EMIT smoothingCoefChanged(value); });
}

void SpectraViewDialog::setChoices(const PlotOptions &options, bool isSinglePlot)
{
    // A radius is shown as a diameter, and has no button.
    const DistributionScale axis = options.horizontalQuantity == DistributionScale::mobility
                                       ? DistributionScale::mobility
                                       : DistributionScale::diameter;
    check(m_distributionType, int(options.distributionType));
    check(m_verticalQuantity, int(options.verticalQuantity));
    check(m_verticalScale, options.verticalScaleLog ? 1 : 0);
    check(m_horizontalQuantity, options.horizontalQuantityAuto ? automaticAxis : int(axis));
    check(m_layout, isSinglePlot ? 1 : 0);
    const QSignalBlocker blocker(m_smoothing);
    m_smoothing->setValue(int(std::clamp(options.smoothingCoef, 0.0, double(mostSmoothing))));
}

} // namespace RecordViews
