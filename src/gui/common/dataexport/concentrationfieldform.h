#pragma once

#include "gui/common/dataexport/exportfieldpage.h"
#include "gui/common/uiinfo.h"

#include <memory>

class CustomFractionsBox;
class DecadeFractionsBox;
class QCheckBox;
class QuantityRows;
class SpectraChoice;

/// A field of type "concentration": total concentrations and fractions of spectra.
class ConcentrationFieldForm : public ExportFieldPage {
    Q_OBJECT
public:
    explicit ConcentrationFieldForm(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent = nullptr);

    QVariantMap settings() const override;
    void setSettings(const QVariantMap &settings) override;
    QString treeItemText() const override;

private:
    SpectraChoice *m_spectra;
    QuantityRows *m_quantity;
    QCheckBox *m_total;
    DecadeFractionsBox *m_decades;
    CustomFractionsBox *m_custom;
};
