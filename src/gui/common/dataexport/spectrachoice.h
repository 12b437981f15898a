#pragma once

#include "gui/common/dataexport/choicebutton.h"
#include "gui/common/uiinfo.h"

#include <memory>

/// A button that chooses among the spectra in memory, by their ids.
class SpectraChoice : public ChoiceButton {
    Q_OBJECT
public:
    explicit SpectraChoice(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent = nullptr);

private:
    void listSpectra();

    std::shared_ptr<const UiInfo> m_uiInfo;
};
