#pragma once

#include <QFileDialog>

/// The toolkit's dialog that asks for files, as all of the program's are. Where files are to be read, it neither
/// renames nor removes any, and makes no folders.
class FileDialog : public QFileDialog {
public:
    enum class Use { Read, Write };

    FileDialog(Use use, QWidget *parent, const QString &title, const QString &folder, const QString &filter = {});

    /// Runs a dialog and deletes it. The chosen files; none if none were chosen, or if the window that the dialog
    /// belongs to went while it was open.
    static QStringList ask(FileDialog *dialog);
    /// Asks for a folder. Null if none was chosen.
    static QString askForFolder(Use use, QWidget *parent, const QString &title, const QString &folder);
};
