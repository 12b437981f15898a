#include "gui/common/filedialog.h"

#include <QMetaProperty>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTimer>

namespace {

/// Renames files when the editor of the name has gone. The toolkit's model tells of a failure by a message that waits
/// for its answer: while it stands, a second Return takes the editor away, which would be touched once more behind it.
class LateRenaming : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        const bool isAwaited = m_index.isValid();
        m_index = index;
        m_name = editor->property(editor->metaObject()->userProperty().name());
        if (!isAwaited)
            QTimer::singleShot(0, model, [this, model] { rename(model); });
    }

private:
    void rename(QAbstractItemModel *model) const
    {
        const QPersistentModelIndex index = m_index;
        m_index = QModelIndex();
        if (index.isValid() && index.data(Qt::EditRole) != m_name)
            model->setData(index, m_name);
    }

    mutable QPersistentModelIndex m_index; ///< of the file that is to be renamed; invalid if none is
    mutable QVariant m_name;
};

} // namespace

FileDialog::FileDialog(Use use, QWidget *parent, const QString &title, const QString &folder, const QString &filter)
    : QFileDialog(parent, title, folder, filter)
{
    if (use == Use::Read)
        setOption(ReadOnly);
    setItemDelegate(new LateRenaming(this));
}

QStringList FileDialog::ask(FileDialog *dialog)
{
    const QPointer<FileDialog> guard(dialog);
    const bool isAccepted = dialog->exec() == Accepted;
    const QStringList files = isAccepted && guard ? dialog->selectedFiles() : QStringList();
    delete guard;
    return files;
}

QString FileDialog::askForFolder(Use use, QWidget *parent, const QString &title, const QString &folder)
{
    auto *const dialog = new FileDialog(use, parent, title, folder);
    dialog->setFileMode(Directory);
    dialog->setOption(ShowDirsOnly);
    return ask(dialog).value(0);
}
