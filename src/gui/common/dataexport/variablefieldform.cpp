#include "gui/common/dataexport/variablefieldform.h"

#include "gui/common/dataexport/nameorder.h"
#include "gui/common/dataexport/setupmap.h"

#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int nameRole = Qt::UserRole;
constexpr int leastRows = 4;

QString rowText(const Spectrometer::SystemVariable &variable)
{
    const QString name = variable.humanname.isEmpty() || variable.humanname == variable.name
                             ? variable.name
                             : QStringLiteral("%1 (%2)").arg(variable.humanname, variable.name);
    return variable.unit.isEmpty() ? name : QStringLiteral("%1, %2").arg(name, variable.unit);
}

} // namespace

VariableFieldForm::VariableFieldForm(std::shared_ptr<const UiInfo> uiInfo, QWidget *parent)
    : ExportFieldPage(parent), m_uiInfo(std::move(uiInfo)), m_filter(new QLineEdit(this)), m_list(new QListWidget(this))
{
    m_filter->setPlaceholderText(tr("Filter by name"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    m_filter->setClearButtonEnabled(true);
    m_list->setObjectName(QStringLiteral("variableList"));
    m_list->setAccessibleName(tr("Record variables"));
    m_list->setMinimumHeight(m_list->fontMetrics().lineSpacing() * leastRows);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(m_filter);
    layout->addWidget(m_list);
    connect(m_filter, &QLineEdit::textChanged, this, &VariableFieldForm::filter);
    connect(m_list, &QListWidget::itemChanged, this, &VariableFieldForm::itemChanged);
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &VariableFieldForm::listVariables);
    listVariables();
}

void VariableFieldForm::listVariables()
{
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    m_names.clear();
    if (const auto metadata = m_uiInfo->metadata()) {
        for (const auto &variable : metadata->variables) {
            auto *const item = new QListWidgetItem(rowText(*variable), m_list);
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            item->setData(nameRole, variable->name);
            m_names << variable->name;
        }
    }
    showChecks();
    filter(m_filter->text());
}

void VariableFieldForm::showChecks()
{
    const QSignalBlocker blocker(m_list);
    for (int row = 0; row < m_list->count(); ++row)
        m_list->item(row)->setCheckState(m_chosen.contains(m_names.at(row)) ? Qt::Checked : Qt::Unchecked);
    m_list->viewport()->update(); // which the blocked signal would have brought about
}

void VariableFieldForm::filter(const QString &text)
{
    for (int row = 0; row < m_list->count(); ++row)
        m_list->item(row)->setHidden(!m_list->item(row)->text().contains(text, Qt::CaseInsensitive));
}

void VariableFieldForm::itemChanged(const QListWidgetItem *item)
{
    const QString name = item->data(nameRole).toString();
    if (item->checkState() == Qt::Checked)
        insertInOrder(m_chosen, name, m_names);
    else
        m_chosen.removeAll(name);
    Q_EMIT treeItemTextChanged();
    Q_EMIT changed();
}

QString VariableFieldForm::treeItemText() const
{
    return m_chosen.isEmpty() ? tr("Variables") : tr("Variables: %1").arg(m_chosen.join(QStringLiteral(", ")));
}

QVariantMap VariableFieldForm::settings() const
{
    return {{QStringLiteral("type"), QStringLiteral("variable")}, {QStringLiteral("variables"), listOf(m_chosen)}};
}

void VariableFieldForm::setSettings(const QVariantMap &settings)
{
    m_chosen = valueOr(settings, "variables", QStringList());
    showChecks();
    Q_EMIT treeItemTextChanged();
    Q_EMIT changed();
}
