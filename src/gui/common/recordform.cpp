#include "gui/common/recordform.h"

#include "gui/common/commentedit.h"
#include "gui/common/commentmap.h"
#include "gui/common/flagcommands.h"
#include "gui/common/notesbrowser.h"
#include "gui/common/recordnotes.h"
#include "gui/common/recordtext.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QTextDocument>
#include <QUrl>

namespace {

constexpr int leastNoteLines = 2;

const char notesStyle[] =
    "a { text-decoration: none; color: palette(window-text); } a.info { color: palette(dark); font-style: italic; } "
    "a.failure { font-weight: bold; } div.info { color: palette(dark); font-style: italic; } "
    "div { margin-bottom: 0.2em; }";

/// Wide enough for the widest contents from the start, so that the form doesn't jump from record to record. What is
/// wider still, as a mode's name from a file may be, doesn't push the dock open.
QLabel *makeLabel(const QString &name, const QString &widest, QWidget *parent)
{
    auto *label = new QLabel(widest, parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(label->sizeHint().width());
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

} // namespace

RecordForm::RecordForm(std::shared_ptr<UiInfo> uiInfo, QWidget *parent)
    : QWidget(parent), m_uiInfo(std::move(uiInfo)), m_commentEdit(new CommentEdit(this)),
      m_notSavedLabel(new QLabel(tr("not saved"), this)), m_notes(new NotesBrowser(this))
{
    setObjectName(QStringLiteral("RecordForm"));
    m_dateLabel = makeLabel(QStringLiteral("dateLabel"), QStringLiteral("0000-00-00 (UTC+00:00)"), this);
    m_beginTimeLabel = makeLabel(QStringLiteral("beginTimeLabel"), QStringLiteral("00:00:00.000"), this);
    m_endTimeLabel = makeLabel(QStringLiteral("endTimeLabel"), QStringLiteral("00:00:00.000"), this);
    m_opmodeLabel = makeLabel(QStringLiteral("opmodeLabel"), QStringLiteral("particlesxx"), this);
    m_notes->setObjectName(QStringLiteral("notesBrowser"));
    m_notes->setMinimumHeight(fontMetrics().lineSpacing() * leastNoteLines);
    m_notes->setAccessibleName(tr("Notes and flags"));
    m_notes->document()->setDefaultStyleSheet(QString::fromLatin1(notesStyle));

    auto *layout = new QFormLayout(this);
    layout->setObjectName(QStringLiteral("formLayout"));
    layout->addRow(tr("Date:"), m_dateLabel);
    layout->addRow(tr("Begin:"), m_beginTimeLabel);
    layout->addRow(tr("End:"), m_endTimeLabel);
    layout->addRow(tr("Mode:"), m_opmodeLabel);
    layout->addRow(tr("Add comment"), makeCommentRow());
    layout->addRow(m_notes);

    connect(m_notes, &QTextBrowser::anchorClicked, this, &RecordForm::flagClicked);
    connect(m_notes, &NotesBrowser::linkMenuRequested, this, &RecordForm::addFlagCommands);
    connect(m_uiInfo.get(), &UiInfo::configUpdated, this, &RecordForm::updateSetup);
    connect(m_commentEdit, &CommentEdit::editStarted, this, &RecordForm::editStarted);
    connect(m_commentEdit, &CommentEdit::editEnded, this, &RecordForm::editEnded);
    connect(m_commentEdit, &CommentEdit::typed, this, &RecordForm::commentTyped);
    connect(m_commentEdit, &CommentEdit::left, this, &RecordForm::editLeft);
    clear();
}

RecordForm::~RecordForm()
{
    // Now, and not when the line goes and loses the focus: that is later than this.
    commitComment();
    m_commentEdit->disconnect(this);
    if (m_commentMap)
        m_commentMap->disconnect(this);
}

QWidget *RecordForm::makeCommentRow()
{
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_commentEdit);
    layout->addWidget(m_notSavedLabel);
    row->setFocusProxy(m_commentEdit);
    m_commentEdit->setObjectName(QStringLiteral("commentEdit"));
    m_commentEdit->setAccessibleName(tr("Comment"));
    m_notSavedLabel->setObjectName(QStringLiteral("notSavedLabel"));
    m_notSavedLabel->setToolTip(tr("The comment could not be written; the log tells why. It is tried again with the "
                                   "next comment, and when the data or the program are closed."));
    return row;
}

// ---- the comment

void RecordForm::setCommentMap(CommentMap *commentMap)
{
    if (m_commentMap)
        disconnect(m_commentMap, nullptr, this, nullptr);
    m_commentEdit->setCommentMap(commentMap);
    m_commentMap = commentMap;
    if (m_commentMap)
        connect(m_commentMap, &CommentMap::changed, this, &RecordForm::showWhetherSaved);
    showWhetherSaved();
}

void RecordForm::showWhetherSaved()
{
    m_notSavedLabel->setVisible(m_commentMap && !m_commentMap->isSaved(m_record));
}

bool RecordForm::isTyping() const
{
    return m_commentEdit->hasFocus();
}

void RecordForm::commitComment()
{
    m_commentEdit->commit();
}

void RecordForm::clearEditFocus()
{
    m_commentEdit->clearFocus();
}

// ---- the record

void RecordForm::showRecord(std::shared_ptr<Record> record)
{
    if (!record) {
        clear();
        return;
    }
    m_record = std::move(record);
    const RecordText::Times times = RecordText::times(*m_record);
    const auto metadata = m_uiInfo->metadata();
    setTexts(times.date, times.begin, times.end, metadata ? metadata->opmodeName(m_record->opmode) : QString());
    m_commentEdit->showRecord(m_record);
    showWhetherSaved();
    setNotes(RecordText::notes(*m_record));
}

void RecordForm::clear()
{
    m_record.reset();
    const QString none = QStringLiteral("-");
    setTexts(none, none, none, none);
    m_commentEdit->showRecord(nullptr);
    showWhetherSaved();
    setNotes({});
}

void RecordForm::updateSetup()
{
    showRecord(m_record);
}

std::shared_ptr<Spectrometer::RecordFlag> RecordForm::flagAt(const QString &address) const
{
    bool isNumber = false;
    const int index = address.toInt(&isNumber);
    if (!isNumber || !m_record || index < 0 || index >= int(m_record->flags.size()))
        return nullptr;
    return m_record->flags[std::size_t(index)];
}

void RecordForm::addFlagCommands(QMenu *menu, const QString &address)
{
    if (const auto flag = flagAt(address))
        addPlotFlagCommand(menu, *m_uiInfo, flag);
}

void RecordForm::flagClicked(const QUrl &url)
{
    highlightSubjects(*m_uiInfo, flagAt(url.path()).get());
}

void RecordForm::setTexts(const QString &date, const QString &begin, const QString &end, const QString &mode)
{
    m_dateLabel->setText(date);
    m_dateLabel->setToolTip(date);
    m_beginTimeLabel->setText(begin);
    m_endTimeLabel->setText(end);
    m_opmodeLabel->setText(mode);
    m_opmodeLabel->setToolTip(mode.isEmpty() ? QString() : RecordNotes::toolTip(mode));
}

void RecordForm::setNotes(const QString &html)
{
    if (html == m_notesHtml)
        return; // most records have none, and laying out a text costs more than all the rest
    m_notesHtml = html;
    m_notes->setHtml(html);
}
