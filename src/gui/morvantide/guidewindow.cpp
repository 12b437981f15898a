#include "gui/morvantide/guidewindow.h"

#include "gui/common/screenfit.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr QSize firstSize(860, 760);
constexpr int sideMargin = 90; ///< pixels that a picture leaves free, for margins and the scroll bar

/// A picture that is wider than the page would have to be scrolled sideways.
class Pages : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl &name) override
    {
        const QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        const QImage image = resource.type() == QVariant::ByteArray ? QImage::fromData(resource.toByteArray())
                                                                    : resource.value<QImage>();
        const int width = std::max(viewport()->width() - sideMargin, sideMargin);
        return image.width() <= width ? image : image.scaledToWidth(width, Qt::SmoothTransformation);
    }
};

} // namespace

GuideWindow::GuideWindow(const QString &page, QWidget *parent)
    : QWidget(parent, Qt::Window), m_pages(new Pages(this)), m_wanted(new QLineEdit(this))
{
    setObjectName(QStringLiteral("guideWindow"));
    resize(fittedToScreen(*this, firstSize));
    auto *const layout = new QVBoxLayout(this);
    layout->addLayout(makeTools(page));
    layout->addWidget(m_pages);
    m_pages->setAccessibleName(tr("Page of the user guide"));
    m_pages->setOpenExternalLinks(true);
    connect(m_pages, &QTextBrowser::sourceChanged, this, &GuideWindow::showTitle);
    new QShortcut(QKeySequence::Find, m_wanted, [this] {
        m_wanted->setFocus();
        m_wanted->selectAll();
    });
    new QShortcut(QKeySequence::FindNext, this, [this] { findNext(); });
    new QShortcut(Qt::Key_Escape, this, [this] { close(); });
    m_pages->setFocus();
    m_pages->setSource(QUrl::fromLocalFile(page));
}

QLayout *GuideWindow::makeTools(const QString &firstPage)
{
    auto *const tools = new QHBoxLayout;
    const auto add = [this, tools](const QString &text, auto slot) {
        auto *const button = new QPushButton(text, this);
        connect(button, &QPushButton::clicked, this, slot);
        tools->addWidget(button);
        return button;
    };
    QPushButton *const back = add(tr("&Back"), [this] { m_pages->backward(); });
    back->setEnabled(false);
    connect(m_pages, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    add(tr("&Contents"), [this, firstPage] { m_pages->setSource(QUrl::fromLocalFile(firstPage)); });
    m_wanted->setPlaceholderText(tr("Find in page"));
    m_wanted->setAccessibleName(tr("Find in page"));
    m_wanted->setClearButtonEnabled(true);
    connect(m_wanted, &QLineEdit::returnPressed, this, &GuideWindow::findNext);
    tools->addWidget(m_wanted);
    add(tr("&Next"), [this] { findNext(); });
    add(tr("&Open in browser"), [this] { openInBrowser(); });
    return tools;
}

void GuideWindow::showTitle()
{
    const QString title = m_pages->documentTitle();
    setWindowTitle(title.isEmpty() ? tr("User guide") : tr("User guide: %1").arg(title));
}

void GuideWindow::findNext()
{
    const QString words = m_wanted->text();
    if (words.isEmpty() || m_pages->find(words))
        return;
    const QTextCursor former = m_pages->textCursor();
    m_pages->moveCursor(QTextCursor::Start);
    if (!m_pages->find(words))
        m_pages->setTextCursor(former);
}

void GuideWindow::openInBrowser()
{
    if (!QDesktopServices::openUrl(m_pages->source()))
        QMessageBox::information(
            this, tr("User guide"),
            tr("No program was found that shows this page: %1").arg(m_pages->source().toLocalFile()));
}
