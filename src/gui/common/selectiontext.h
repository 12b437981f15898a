#pragma once

#include <QString>

class QWidget;

/// A drawing that tells in words which record is selected in it, and what it shows of it. A widget that is one says so
/// once in its constructor, by tellSelectionOf().
class SelectionText {
public:
    virtual ~SelectionText() = default;

    /// One line of plain text for the eyes' stead. Asked for by a reader of the screen, never while drawing.
    virtual QString selectionText() const = 0;

protected:
    SelectionText() = default;
    SelectionText(const SelectionText &) = delete;
    SelectionText &operator=(const SelectionText &) = delete;
};

/// From now on readers of the screen find a widget that is a SelectionText as a graphic, and its text as description
/// and value.
void tellSelections();
/// The drawing's text has changed; costs nothing while nobody reads the screen.
void noteSelectionChanged(QWidget *drawing);
