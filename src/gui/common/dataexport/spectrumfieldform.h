#pragma once

#include "gui/common/dataexport/exportfieldpage.h"
#include "gui/common/uiinfo.h"

#include <memory>

class DataComboBox;
class QCheckBox;
class QuantityRows;
class SpectraChoice;

/// A field of type "spectrum": all values of spectra.
class SpectrumFieldForm : public ExportFieldPage {
    Q_OBJECT
public:
    explicit SpectrumFieldForm(const std::shared_ptr<const UiInfo> &uiInfo, QWidget *parent = nullptr);

    QVariantMap settings() const override;
    void setSettings(const QVariantMap &settings) override;
    QString treeItemText() const override;

private:
    SpectraChoice *m_spectra;
    DataComboBox *m_distribution;
    DataComboBox *m_scale;
    QuantityRows *m_quantity;
    QCheckBox *m_uncertainties;
};
