#include "gui/morvantide/overviewlabel.h"

#include "datafiles/reading/datafinder.h"
#include "log/logger.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <vector>

namespace {

constexpr int delay = 300;      // ms
constexpr int longestSlice = 8; // ms
constexpr int lineCount = 2;
constexpr int mostModes = 10;
constexpr int mostVariables = 100;
constexpr int longestName = 50;

/// The first names, so that a folder of a million of them, or of long ones, keeps no window waiting.
QString listed(const QStringList &names, int most)
{
    QStringList first;
    for (const QString &name : names.mid(0, most))
        first << (name.size() <= longestName ? name : name.left(longestName) + QStringLiteral("..."));
    if (names.size() > most)
        first << QStringLiteral("...");
    return first.join(QStringLiteral(", "));
}

/// Where it is the span alone that leaves every file out, the days that there are.
QString nothingMatches(QVariantMap choice)
{
    choice[QStringLiteral("limitBegin")] = choice[QStringLiteral("limitEnd")] = false;
    std::vector<QDate> days;
    for (const QString &file : findDataFiles(choice))
        days.push_back(dayOfDataFile(file));
    if (days.empty())
        return OverviewLabel::tr("No file matches.");
    const auto [first, last] = std::minmax_element(days.begin(), days.end());
    return OverviewLabel::tr("No file of these days; the folder has %1 to %2.")
        .arg(first->toString(Qt::ISODate), last->toString(Qt::ISODate));
}

QString textOf(const FolderOverview &overview)
{
    QStringList parts;
    parts << OverviewLabel::tr("%n days", nullptr, overview.days)
          << OverviewLabel::tr("%n files", nullptr, overview.files)
          << QLocale::c().formattedDataSize(overview.bytes, 1, QLocale::DataSizeSIFormat);
    if (!overview.modes.isEmpty())
        parts << OverviewLabel::tr("modes: %1").arg(listed(overview.modes, mostModes));
    if (!overview.variables.isEmpty())
        parts << OverviewLabel::tr("%n variables", nullptr, overview.variables.size());
    if (overview.withoutHeader > 0)
        parts << OverviewLabel::tr("%n without a header", nullptr, overview.withoutHeader);
    return parts.join(QStringLiteral("; "));
}

} // namespace

OverviewLabel::OverviewLabel(QWidget *parent)
    : QLabel(parent), m_work(
                          longestSlice, [this] { return lookAtNext(); }, [this] { tell(); })
{
    setObjectName(QStringLiteral("overviewLabel"));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setMinimumHeight(lineCount * fontMetrics().lineSpacing());
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    connect(&m_delay, &QTimer::timeout, this, &OverviewLabel::begin);
}

OverviewLabel::~OverviewLabel() = default;

void OverviewLabel::setChoice(const QVariantMap &choice)
{
    if (choice == m_choice)
        return;
    m_choice = choice;
    m_work.stop();
    m_delay.start();
}

void OverviewLabel::begin()
{
    clear();
    setToolTip(QString());
    const QString folder = m_choice.value(QStringLiteral("folderName")).toString();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return;
    const Log::Silence silence; // whoever reads the files will hear of it
    m_files = findDataFiles(m_choice);
    m_files.sort(Qt::CaseSensitive);
    m_next = 0;
    m_survey.emplace();
    if (m_files.isEmpty())
        return setText(nothingMatches(m_choice));
    setText(tr("Looking at %n files...", nullptr, m_files.size()));
    m_work.start();
}

bool OverviewLabel::lookAtNext()
{
    const Log::Silence silence;
    m_survey->add(QDir(m_choice.value(QStringLiteral("folderName")).toString()).filePath(m_files[m_next]));
    return ++m_next < m_files.size();
}

void OverviewLabel::tell()
{
    const FolderOverview overview = m_survey->overview();
    setText(textOf(overview));
    if (!overview.variables.isEmpty())
        setToolTip(QLatin1String("<qt>") + // several lines; names are no markup
                   tr("Variables: %1").arg(listed(overview.variables, mostVariables)).toHtmlEscaped() +
                   QLatin1String("</qt>"));
    m_survey.reset();
}
