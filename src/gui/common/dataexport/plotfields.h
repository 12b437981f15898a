#pragma once

#include <QStringList>
#include <QVariantList>

/// Fields of an export setup for the concentrations that a stored stack of views shows as scatter plots, in its order.
/// A plot of a fraction one of whose limits isn't told has none, and costs an error line. Spectra stand in the order of
/// `spectra`, their ids as the user sees them listed, and others behind them: a stored plot has them in no order.
QVariantList plotFields(const QVariant &browserSetup, const QStringList &spectra, QStringList *errors);
