#pragma once

#include "gui/common/dataexport/exportfieldpage.h"
#include "gui/common/uiinfo.h"

#include <memory>
#include <vector>

class ChoiceButton;
class QCheckBox;

/// A field of type "electrometer": currents and voltages, channel by channel.
class ElectrometerFieldForm : public ExportFieldPage {
    Q_OBJECT
public:
    explicit ElectrometerFieldForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent = nullptr);

    QVariantMap settings() const override;
    void setSettings(const QVariantMap &settings) override;
    QString treeItemText() const override;

private:
    /// A check box and the key that it stands for.
    struct Value {
        const char *key;
        bool isOnAtFirst;
        QCheckBox *box;
    };

    void listElectrometers();

    std::shared_ptr<const UiInfo> m_uiInfo;
    ChoiceButton *m_electrometers;
    std::vector<Value> m_values;
};
