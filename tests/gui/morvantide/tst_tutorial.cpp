#include "gui/morvantide/reviewwindow.h"

#include "gui/browser/views/timeseriesbrowser.h"
#include "gui/common/flagcommands.h"
#include "gui/frame/keylist.h"
#include "records/recordflag.h"
#include "support/gestures.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

/// What a person finds in the program's windows, and what a page that leads through them says about it: texts in bold
/// print, "→" between a menu and its entry, keys between backticks, and a command's key behind its text.
class TutorialPage : public ReviewWindow {
protected:
    TutorialPage()
    {
        withDialog<DataChooserDialog>([this](DataChooserDialog &dialog) {
            collect(dialog);
            dialog.reject();
        });
        window->showDataDirChoice();
        open();
        for (QAction *add : window->browser()->addPlotActions())
            add->trigger();
        window->showInfoWindow();
        window->showExportData();
        QMenu ofFlag(window.get());
        addPlotFlagCommand(&ofFlag, *window->uiInfo(), std::make_shared<Spectrometer::RecordFlag>());
        settle();
        collect(*window);
        for (const KeySection &section : keysOfCommands(*window) + gestures())
            for (const auto &row : section.rows)
                for (const QString &key : row.first.split(", "))
                    m_keys << key;
        m_keys << "Return"; // what every dialog takes
    }

    QStringList faultsOf(QString page) const
    {
        QStringList faults;
        page.remove(QRegularExpression("```.*?```", QRegularExpression::DotMatchesEverythingOption));
        page = page.simplified();
        const QString bold = "\\*\\*([^*]+)\\*\\*", key = "`([^`]+)`";
        for (auto it = QRegularExpression(bold).globalMatch(page); it.hasNext();) {
            const QStringList path = it.next().captured(1).split(" → ");
            for (int i = 0; i < path.size(); ++i) {
                const QString step = i > 0 ? path[i - 1] + " → " + path[i] : path[0];
                if (!m_texts.contains(step))
                    faults << step;
            }
        }
        for (auto it = QRegularExpression(key).globalMatch(page); it.hasNext();) {
            const QString told = it.next().captured(1);
            if (!m_keys.contains(told))
                faults << told;
        }
        for (auto it = QRegularExpression(bold + ", (?:or press )?" + key).globalMatch(page); it.hasNext();) {
            const auto match = it.next();
            const QString command = match.captured(1).section(" → ", -1);
            if (!m_commands.contains(command, match.captured(2)))
                faults << command + ": " + match.captured(2);
        }
        for (auto it = QRegularExpression("\\]\\(([^)#]+)").globalMatch(page); it.hasNext();) {
            const QString target = it.next().captured(1);
            if (!QFile::exists(QString(DOCS "/%1").arg(target)))
                faults << target;
        }
        return faults;
    }

private:
    void add(const QString &text) { m_texts << withoutMnemonic(text); }
    void add(const QString &opener, const QMenu &menu)
    {
        for (QAction *entry : menu.actions()) {
            add(entry);
            add(withoutMnemonic(opener) + " → " + withoutMnemonic(entry->text()));
        }
    }
    void add(QAction *action)
    {
        add(action->text());
        m_commands.insert(withoutMnemonic(action->text()), action->shortcut().toString());
        if (action->menu())
            add(action->text(), *action->menu());
    }
    void collect(QWidget &top)
    {
        for (QAction *action : top.findChildren<QAction *>())
            add(action);
        for (QWidget *one : top.findChildren<QWidget *>()) {
            add(one->windowTitle());
            if (const auto *label = qobject_cast<QLabel *>(one))
                add(label->text());
            else if (const auto *box = qobject_cast<QGroupBox *>(one))
                add(box->title());
            else if (const auto *button = qobject_cast<QAbstractButton *>(one))
                add(button->text());
            else if (const auto *view = qobject_cast<QAbstractItemView *>(one))
                addModel(*view->model());
            if (const auto *button = qobject_cast<QToolButton *>(one); button && button->menu())
                add(button->text(), *button->menu());
        }
    }
    void addModel(const QAbstractItemModel &model)
    {
        for (int column = 0; column < model.columnCount(); ++column)
            add(model.headerData(column, Qt::Horizontal).toString());
        for (int row = 0; row < model.rowCount(); ++row)
            add(model.index(row, 0).data().toString());
    }

    QSet<QString> m_texts, m_keys;
    QMultiHash<QString, QString> m_commands;
};

TEST_F(TutorialPage, NamesWhatIsThere)
{
    const QString page = QString::fromUtf8(::contentOf(DOCS "/tutorial.md"));
    EXPECT_GT(page.count("**"), 60);
    EXPECT_EQ(faultsOf(page).join("; ").toStdString(), "");
}

TEST_F(TutorialPage, WithAWrongNameIsFoundOut)
{
    EXPECT_EQ(faultsOf("**File → Quit**, `Ctrl+Q`, or **Filter**: `Ctrl+F`").join("; ").toStdString(), "Filter");
    EXPECT_EQ(faultsOf("**View → Quit**, `Ctrl+0`, ![x](none.png) or `Ctrl+Ä`").join("; ").toStdString(),
              "View → Quit; Ctrl+Ä; Quit: Ctrl+0; none.png");
}
