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

QString tr(const char *text)
{
    return QCoreApplication::translate("KeyList", text);
}

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
    KeySection others{tr("Selected record"), {}};
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
        {tr("Time axis"),
         {{tr("Drag"), tr("Moves through time; far above or below the axis it zooms")},
          {tr("Drag with the middle button"), tr("Rolls on, faster with the distance")},
          {tr("Shift + drag"), tr("Marks a time span, to zoom to it or to export it")},
          {tr("Drag a handle"), tr("Moves that measuring cursor")},
          {tr("Wheel"), tr("Zooms about the pointer")},
          {tr("Double click"), tr("Shows all of the data")}}},
        {tr("Plot over time"),
         {{tr("Click, drag"), tr("Selects the record under the pointer")},
          {tr("Shift + click, Ctrl + drag"), tr("Selects the nearest record of the same mode")},
          {tr("Drag with the middle button"), tr("Moves through time; Ctrl and the left button do the same")},
          {tr("Wheel"), tr("Zooms about the pointer")},
          {tr("Up, Down"), tr("Previous and next record; with Ctrl of the same mode")},
          {tr("Page Up, Page Down"), tr("Ten pixels back and forth")},
          {tr("+, -"), tr("Zooms about the selected record")},
          {tr("1, 2"), tr("Sets a measuring cursor at the pointer, else at the selected record")},
          {tr("Esc"), tr("Drops the measuring cursors; without any, unselects the record")}}},
        {tr("Frame of a plot over time"),
         {{tr("Drag the left edge"), tr("Moves the plot among the others")},
          {tr("Drag the lower edge"), tr("Sets the height")},
          {tr("Right click"), tr("Shows the plot's commands")}}},
        {tr("Value scale"),
         {{tr("Drag up or down"), tr("Moves the scale")},
          {tr("Drag left or right"), tr("Zooms")},
          {tr("Wheel"), tr("Zooms about the pointer")},
          {tr("Double click"), tr("Fits the scale to the values in sight")}}},
        {tr("Colour bar"),
         {{tr("Drag the left or right half"), tr("Sets the lower or upper limit")},
          {tr("Drag with the right button"), tr("Marks the values above the pointer")},
          {tr("Wheel"), tr("Moves the limit of that half")},
          {tr("Double click"), tr("Fits the limits to the values in sight")}}},
        {tr("Plot of the selected record"),
         {{tr("Drag"), tr("Moves the axis under the pointer")},
          {tr("Wheel"), tr("Zooms the axis under the pointer")},
          {tr("Double click, Home"), tr("Fits the axes")},
          {tr("Shift + arrow keys"), tr("Moves the axes")},
          {tr("+, -"), tr("Zooms")},
          {tr("Comma, full stop"), tr("Reads out the previous or next point")},
          {tr("Page Up, Page Down"), tr("Reads out another curve")},
          {tr("Esc"), tr("Hides what is read out")}}},
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
