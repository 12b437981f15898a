#include "gui/morvantide/savewarnings.h"

#include "datafiles/reading/datafinder.h"

#include <QCoreApplication>
#include <QDir>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SaveWarnings)
};

QString row(const QString &text)
{
    return QStringLiteral("<TR><TD><IMG SRC=\":warning-16.png\"></TD><TD valign=middle>%1</TD></TR>").arg(text);
}

QString dayFilesText(int count, const QString &variant)
{
    return Words::tr("%n day files of the variant \"%1\" are there already: rows are added to them.", nullptr, count)
        .arg(variant.toHtmlEscaped());
}

} // namespace

QString saveWarnings(const SaveTarget &target)
{
    QString rows;
    const QDir folder(target.folder);
    // Without a name it would be the folder that the program was started in.
    if (target.folder.isEmpty() || !folder.exists()) {
        rows += row(Words::tr("Folder does not exist. It will be created."));
    } else if (!folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot).isEmpty()) {
        rows += row(Words::tr("Folder is not empty! Files may become corrupted."));
        const int dayFiles = dayFileCount(target.folder, target.variant, target.modes);
        if (dayFiles > 0)
            rows += row(dayFilesText(dayFiles, target.variant));
    }
    if (target.isReinverting)
        rows += row(Words::tr("A reinversion is running: spectra that it hasn't made yet will be missing."));
    return rows.isEmpty() ? QString() : QStringLiteral("<TABLE border=0>%1</TABLE>").arg(rows);
}
