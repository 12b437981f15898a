#include "gui/common/dataexport/datacombobox.h"

#include "util/textescape.h"

namespace {

constexpr int shownLength = 40;

} // namespace

void DataComboBox::choose(const QString &text)
{
    if (findData(text) < 0)
        addItem(QStringLiteral("“%1”").arg(escapeTextNoQuote(text.left(shownLength))), text);
    setCurrentIndex(findData(text));
}
