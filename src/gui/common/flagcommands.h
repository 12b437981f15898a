#pragma once

#include <QList>
#include <QStringList>

#include <memory>

class QMenu;
class UiInfo;
namespace Spectrometer {
struct RecordFlag;
}

/// The variables and electrometers that a flag is about, by its properties "vars" and "elms". What is no list of names,
/// or no whole number from 0 on, is passed over; whether there are such variables and electrometers isn't looked at.
struct FlagSubjects {
    QStringList variables;
    QList<int> electrometers;
};
FlagSubjects subjectsOf(const Spectrometer::RecordFlag &flag);

// What a view offers on a flag that it shows.

/// Highlights what the flag is about, and nothing else; null only clears.
void highlightSubjects(UiInfo &uiInfo, const Spectrometer::RecordFlag *flag);

/// Puts "Plot flag" and a separator before the commands of a menu.
void addPlotFlagCommand(QMenu *menu, UiInfo &uiInfo, const std::shared_ptr<Spectrometer::RecordFlag> &flag);
