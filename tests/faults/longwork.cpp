#include "faults/longwork.h"

#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/common/pictures/picturecommands.h"
#include "gui/morvantide/datasaverdialog.h"
#include "gui/morvantide/readprogressdialog.h"

#include <QAction>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QProgressDialog>
#include <QPushButton>

#include <random>

namespace Faults {

namespace {

constexpr int longestWork = 120'000, leastWork = 300; // ms
constexpr int mostDoublings = 12;
constexpr QSize pictureSize(3000, 3000); // which takes some seconds to encode, twice as fine

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// -2 where there is no table.
qint64 rowsIn(const QString &path)
{
    return QFileInfo::exists(path) ? contentOf(path).count('\n') - 1 : -2;
}

/// By its end: a writer brings the rest before it.
bool isWhole(const QString &path)
{
    const QByteArray content = contentOf(path);
    if (path.endsWith(".png"))
        return content.endsWith(QByteArray("IEND\xae\x42\x60\x82", 8));
    return (content.isEmpty() || content.endsWith('\n')) && !path.endsWith(".unfinished");
}

/// Noise of two colours, on which an encoder spends its time.
PictureFile::Drawing noise()
{
    QImage tile(1024, 1024, QImage::Format_Mono);
    std::minstd_rand random;
    for (int y = 0; y < tile.height(); ++y)
        std::generate_n(tile.scanLine(y), tile.bytesPerLine(), [&] { return uchar(random() >> 8); });
    const auto draw = [tile](QPainter &painter) { painter.fillRect(QRect(QPoint(), pictureSize), QBrush(tile)); };
    return {QRect(QPoint(), pictureSize), 96, Qt::white, "noise", draw};
}

} // namespace

QString LongWork::nameOf(Kind kind)
{
    return QStringList{
        "read", "reading again", "loading of inverters", "reinversion", "save", "export", "picture"}[kind];
}

LongWork::LongWork(LoadedWindow &window, const QString &data)
    : m_window(window), m_data(data), m_pictures(new PictureCommands(window.window.get(), noise))
{
}

QString LongWork::target(const QString &name, const QString &suffix) const
{
    return m_window.path("made/" + name + QString::number(m_round) + suffix);
}

QWidget *LongWork::pictureDialog() const
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog && dialog->windowTitle() == "Saving the picture" ? dialog : nullptr;
}

double LongWork::measure(Kind kind)
{
    QElapsedTimer clock;
    clock.start();
    start(kind);
    Child::require(QTest::qWaitFor([this, kind] { return !isBusy(kind); }, longestWork), "it never ended");
    const auto ms = double(clock.elapsed());
    judge(kind, false);
    clear(kind);
    if (kind != loading || ms >= leastWork || m_doublings == mostDoublings)
        return ms;
    ++m_doublings;
    return measure(kind);
}

void LongWork::start(Kind kind)
{
    ++m_round;
    const QString inverters = QFileInfo(m_data).path() + "/inverters";
    switch (kind) {
    case read:
        return m_window.startOpening(m_data);
    case readAgain:
        return m_window.action("Read again")->trigger();
    case loading: {
        QStringList all; // the folder's files many times over, so that it takes a while
        for (const QString &name : QDir(inverters).entryList({"*.inverter"}, QDir::Files))
            all << inverters + '/' + name;
        for (int i = 0; i < m_doublings; ++i)
            all << all;
        return m_window.window->findChild<InverterLoader *>()->start(all);
    }
    case reinversion:
        return m_window.invert({inverters + "/demo.invmap"});
    case save:
        LoadedWindow::answer<DataSaverDialog>([this](DataSaverDialog &dialog) {
            m_saver = &dialog;
            dialog.findChild<QLineEdit *>("folderEdit")->setText(target("save"));
            dialog.saveData();
            dialog.reject();
        });
        return m_window.window->saveData();
    case picture:
        LoadedWindow::chooseFiles({target("picture", ".png")});
        return m_pictures->save();
    case exporting:
        QVariantList spectra;
        for (const auto &info : m_window.window->uiInfo()->spectrumInfos())
            spectra << info->hash;
        m_window.window->showExportData();
        auto *dialog = m_window.window->findChild<DataExportDialog *>();
        Q_EMIT dialog->requestExport(
            {{"general", QVariantMap{{"output_file", target("table")}}},
             {"fields", QVariantList{QVariantMap{{"type", "spectrum"}, {"spectra", spectra}, {"uncertainties", true}},
                                     QVariantMap{{"type", "electrometer"}}}}});
        QCoreApplication::processEvents(); // in which it is made
    }
}

void LongWork::cancel(Kind kind)
{
    switch (kind) {
    case read:
    case readAgain: {
        m_window.window->cancelFileReader();
        const auto *dialog = m_window.window->findChild<ReadProgressDialog *>();
        Child::require(dialog && dialog->findChild<QLabel *>()->text() == "Stopping after this file" &&
                           !dialog->findChild<QPushButton *>()->isEnabled(),
                       "the dialog of a read doesn't say at once that it stops");
        return;
    }
    case loading:
        return m_window.window->findChild<InverterLoader *>()->cancel();
    case reinversion:
        return m_window.window->cancelReinvert();
    case save:
        if (m_saver)
            m_saver->reject();
        return;
    case exporting:
        if (auto *progress = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget()))
            progress->cancel();
        return;
    case picture:
        if (const QWidget *dialog = pictureDialog())
            dialog->findChild<QPushButton *>()->click();
    }
}

bool LongWork::isBusy(Kind kind) const
{
    switch (kind) {
    case read:
    case readAgain:
        return m_window.window->isReading();
    case loading:
        return m_window.window->findChild<InverterLoader *>()->isLoading();
    case reinversion:
        return m_window.window->findChild<Reinversion *>()->hasThreads();
    case save:
        return m_saver && m_saver->isSaving();
    case exporting:
        return qobject_cast<QProgressDialog *>(QApplication::activeModalWidget()) != nullptr;
    case picture:
        return pictureDialog() != nullptr;
    }
    return false;
}

void LongWork::judge(Kind kind, bool wasCancelled) const
{
    MorvantideMainWindow &window = *m_window.window;
    const int count = window.datastore() ? window.datastore()->size() : 0;
    if (kind == read || kind == readAgain) {
        Child::require(wasCancelled || count > 0, "nothing was read");
        Child::require(count == 0 || m_recordCount == 0 || count == m_recordCount ||
                           window.windowTitle().contains("(incomplete)"),
                       "data that were read in part aren't said to be incomplete");
    }
    if (kind == loading && wasCancelled)
        Child::require(window.inverters().empty() && !window.isReinverting(), "inverters came in after all");
    if (kind == reinversion)
        Child::require(!window.isReinverting() && !m_window.action("Cancel reinversion")->isEnabled(),
                       "a reinversion that is over is offered to be cancelled");
    if (kind == exporting) {
        const qint64 rows = rowsIn(target("table"));
        Child::require(rows == (wasCancelled ? -2 : count) || rows == count, QString("a table has %1 rows").arg(rows));
    }
    if (kind == picture) {
        const QString path = target("picture", ".png");
        const bool isThere = QFileInfo::exists(path);
        Child::require(isThere || wasCancelled, "no picture was saved");
        Child::require(!isThere || QImage(path).size() == 2 * pictureSize, "a picture can't be read");
    }
    const QString complaint = complaintOfFiles(m_window.path("made"));
    Child::require(complaint.isEmpty(), complaint);
}

QString LongWork::complaintOfFiles(const QString &folder)
{
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!isWhole(path))
            return "a file was left unfinished: " + path;
    }
    return {};
}

void LongWork::clear(Kind kind)
{
    if (kind == read) {
        if (const auto store = m_window.window->datastore())
            m_recordCount = std::max(m_recordCount, store->size());
        m_window.window->closeData();
    }
    if (kind == picture)
        QFile::remove(target("picture", ".png"));
    if (kind == readAgain || kind == loading || kind == reinversion) {
        m_window.window->closeData(); // spectra that came in, and what is still coming
        m_window.open(m_data);
    }
}

} // namespace Faults
