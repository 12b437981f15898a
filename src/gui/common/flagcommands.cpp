#include "gui/common/flagcommands.h"

#include "gui/common/uiinfo.h"
#include "records/recordflag.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

FlagSubjects subjectsOf(const Spectrometer::RecordFlag &flag)
{
    FlagSubjects subjects;
    subjects.variables = flag.properties.value(QStringLiteral("vars")).toStringList();
    const QVariantList numbers = flag.properties.value(QStringLiteral("elms")).toList();
    for (const QVariant &number : numbers) {
        bool isWhole = false;
        const int electrometer = number.toString().toInt(&isWhole);
        if (isWhole && electrometer >= 0)
            subjects.electrometers.append(electrometer);
    }
    return subjects;
}

void highlightSubjects(UiInfo &uiInfo, const Spectrometer::RecordFlag *flag)
{
    uiInfo.setHighlights({}, {});
    if (!flag)
        return;
    const FlagSubjects subjects = subjectsOf(*flag);
    uiInfo.setHighlights(subjects.variables, subjects.electrometers);
}

void addPlotFlagCommand(QMenu *menu, UiInfo &uiInfo, const std::shared_ptr<Spectrometer::RecordFlag> &flag)
{
    auto *const plot = new QAction(QCoreApplication::translate("FlagCommands", "Plot flag"), menu);
    // The flag itself, not its place: another record may be shown by the time of the click.
    QObject::connect(plot, &QAction::triggered, &uiInfo,
                     [&uiInfo, flag] { Q_EMIT uiInfo.requestFlagPlot(flag->text); });
    QAction *const first = menu->actions().value(0);
    menu->insertAction(first, plot);
    menu->insertSeparator(first);
}
