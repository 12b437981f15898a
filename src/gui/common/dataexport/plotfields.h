#pragma once

#include <QStringList>
#include <QVariantList>

/// Fields of an export setup for the concentrations that a stored stack of views shows as scatter plots, in its order.
/// A plot of a fraction one of whose limits isn't told has none, and costs an error line.
QVariantList plotFields(const QVariant &browserSetup, QStringList *errors);
