#include "gui/frame/keylist.h"

#include "gui/frame/menumnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QShortcut>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(KeyList)
};

/// Without the mark of a letter, and without the dots that announce a dialog.
QString commandText(const QAction &action)
{
    QString text = withoutMnemonic(action.text());
    if (text.endsWith(QLatin1String("...")))
        text.chop(3);
    return text;
}

QString keyTexts(const QList<QKeySequence> &keys)
{
    return QKeySequence::listToString(keys, QKeySequence::NativeText).replace(QLatin1String("; "), QLatin1String(", "));
}

class CommandKeys {
public:
    void add(const QString &title, const QList<QAction *> &actions)
    {
        KeySection section{title, {}};
        addTo(section, actions);
        if (!section.rows.isEmpty())
            sections.append(section);
    }

    QVector<KeySection> sections;

private:
    void addTo(KeySection &section, const QList<QAction *> &actions)
    {
        for (const QAction *action : actions) {
            if (action->menu())
                addTo(section, action->menu()->actions());
            if (m_seen.contains(action) || action->shortcut().isEmpty())
                continue;
            m_seen.insert(action);
            section.rows.append({keyTexts(action->shortcuts()), commandText(*action)});
        }
    }

    QSet<const QAction *> m_seen;
};

} // namespace

QVector<KeySection> keysOfCommands(const QMainWindow &window)
{
    CommandKeys keys;
    if (const auto *bar = qobject_cast<const QMenuBar *>(window.menuWidget())) {
        for (const QAction *menu : bar->actions()) {
            if (menu->menu())
                keys.add(withoutMnemonic(menu->text()), menu->menu()->actions());
        }
    }
    for (const QDockWidget *dock : window.findChildren<QDockWidget *>())
        keys.add(dock->windowTitle(), dock->findChildren<QAction *>());
    KeySection others{Words::tr("Selected record"), {}};
    for (const QShortcut *shortcut : window.findChildren<QShortcut *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!shortcut->whatsThis().isEmpty())
            others.rows.append({keyTexts({shortcut->key()}), shortcut->whatsThis()});
    }
    if (!others.rows.isEmpty())
        keys.sections.append(others);
    return keys.sections;
}

QVector<KeySection> gestures()
{
    return {
        {Words::tr("Time axis"),
         {{Words::tr("Drag"), Words::tr("Moves through time; far above or below the axis it zooms")},
          {Words::tr("Drag with the middle button"), Words::tr("Rolls on, faster with the distance")},
          {Words::tr("Shift + drag"), Words::tr("Marks a time span, to zoom to it or to export it")},
          {Words::tr("Drag a handle"), Words::tr("Moves that measuring cursor")},
          {Words::tr("Wheel"), Words::tr("Zooms about the pointer")},
          {Words::tr("Double click"), Words::tr("Shows all of the data")}}},
        {Words::tr("Plot over time"),
         {{Words::tr("Click, drag"), Words::tr("Selects the record under the pointer")},
          {Words::tr("Shift + click, Ctrl + drag"), Words::tr("Selects the nearest record of the same mode")},
          {Words::tr("Drag with the middle button"),
           Words::tr("Moves through time; Ctrl and the left button do the same")},
          {Words::tr("Wheel"), Words::tr("Zooms about the pointer")},
          {Words::tr("Up, Down"), Words::tr("Previous and next record; with Ctrl of the same mode")},
          {Words::tr("Page Up, Page Down"), Words::tr("Ten pixels back and forth")},
          {Words::tr("+, -"), Words::tr("Zooms about the selected record")},
          {Words::tr("1, 2"), Words::tr("Sets a measuring cursor at the pointer, else at the selected record")},
          {Words::tr("Esc"), Words::tr("Drops the measuring cursors; without any, unselects the record")}}},
        {Words::tr("Frame of a plot over time"),
         {{Words::tr("Drag the left edge"), Words::tr("Moves the plot among the others")},
          {Words::tr("Drag the lower edge"), Words::tr("Sets the height")},
          {Words::tr("Right click"), Words::tr("Shows the plot's commands")}}},
        {Words::tr("Value scale"),
         {{Words::tr("Drag up or down"), Words::tr("Moves the scale")},
          {Words::tr("Drag left or right"), Words::tr("Zooms")},
          {Words::tr("Up, Down, +, -, Home"), Words::tr("Moves, zooms and fits the scale that Tab has reached")},
          {Words::tr("Wheel"), Words::tr("Zooms about the pointer")},
          {Words::tr("Double click"), Words::tr("Fits the scale to the values in sight")}}},
        {Words::tr("Colour bar"),
         {{Words::tr("Drag the left or right half"), Words::tr("Sets the lower or upper limit")},
          {Words::tr("Drag with the right button"), Words::tr("Marks the values above the pointer")},
          {Words::tr("Wheel"), Words::tr("Moves the limit of that half")},
          {Words::tr("Double click"), Words::tr("Fits the limits to the values in sight")}}},
        {Words::tr("Plot of the selected record"),
         {{Words::tr("Drag"), Words::tr("Moves the axis under the pointer")},
          {Words::tr("Wheel"), Words::tr("Zooms the axis under the pointer")},
          {Words::tr("Double click, Home"), Words::tr("Fits the axes")},
          {Words::tr("Shift + arrow keys"), Words::tr("Moves the axes")},
          {Words::tr("+, -"), Words::tr("Zooms")},
          {Words::tr("Comma, full stop"), Words::tr("Reads out the previous or next point")},
          {Words::tr("Page Up, Page Down"), Words::tr("Reads out another curve")},
          {Words::tr("Esc"), Words::tr("Hides what is read out")}}},
    };
}

QString keyPage(const QVector<KeySection> &sections)
{
    QString page;
    for (const KeySection &section : sections) {
        page += QStringLiteral("<h3>%1</h3><table cellspacing='0' cellpadding='3'>").arg(section.title.toHtmlEscaped());
        for (const auto &row : section.rows)
            page += QStringLiteral("<tr><td width='220'><b>%1</b></td><td>%2</td></tr>")
                        .arg(row.first.toHtmlEscaped(), row.second.toHtmlEscaped());
        page += QStringLiteral("</table>");
    }
    return page;
}
