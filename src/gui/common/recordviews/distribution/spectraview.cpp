#include "gui/common/recordviews/distribution/spectraview.h"

#include "gui/common/iconhelp.h"
#include "gui/common/recordtext.h"
#include "gui/common/recordviews/distribution/distributionsummary.h"
#include "gui/common/recordviews/distribution/resultplots.h"
#include "gui/common/recordviews/distribution/spectraviewdialog.h"
#include "gui/common/recordviews/distribution/summarytext.h"
#include "gui/common/recordviews/plotpicture.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScopedValueRollback>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace RecordViews {

namespace {

using SpectMath::ConcentrationType;
using SpectMath::DistributionScale;
using SpectMath::DistributionType;

const QString singlePlotKey = QStringLiteral("single_plot");
const QString hiddenSpectraKey = QStringLiteral("hidden_spectra"); // written where there are any

/// The names that tell these descriptions apart: their labels, or where two of them are equal the views' own names.
QStringList curveNames(const QList<UiInfo::InfoPointer> &infos, const UiInfo &uiInfo)
{
    QStringList labels;
    for (const UiInfo::InfoPointer &info : infos)
        labels << info->displayLabel();
    QStringList names;
    for (int i = 0; i < infos.size(); ++i) {
        const QString own = labels.count(labels[i]) > 1 ? uiInfo.spectrumName(infos[i].get()) : QString();
        names << (own.isEmpty() ? labels[i] : own);
    }
    return names;
}

/// A word of one line, whatever a file made of it.
QString onOneLine(QString text)
{
    for (QChar &character : text) {
        if (character.unicode() < 0x20 || character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = QLatin1Char(' ');
    }
    return text;
}

QString menuText(const QString &name)
{
    constexpr int longest = 80;
    QString text = onOneLine(name.left(longest));
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

SpectraView::SpectraView(std::shared_ptr<UiInfo> uiInfo, QWidget *parent, Qt::WindowFlags flags)
    : RecordView(std::move(uiInfo), parent, flags), m_options(std::make_shared<PlotOptions>()),
      m_plots(new ResultPlots(m_options, this)), m_summary(new SummaryText(this)),
      m_picture(new PlotPicture(m_plots->canvas(), [this](QPainter &painter) { m_plots->draw(painter); })),
      m_spectrumMenu(new QMenu(tr("Spectra"), this))
{
    setObjectName(QStringLiteral("spectraView"));
    setWindowTitle(tr("Distribution plot"));
    m_summary->setAccessibleName(tr("Total concentrations and diameters"));

    setupActions();
    auto *const contents = new QWidget(this);
    m_bar = new QToolBar(contents);
    auto *const layout = new QVBoxLayout(contents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_bar);
    layout->addWidget(m_plots); // without a stretch, which would take its room for the text
    layout->addWidget(m_summary);
    setWidget(contents);
    contents->installEventFilter(this);
    setupToolbar(m_bar);
    setTabOrder(m_bar->widgetForAction(m_bar->actions().last()), m_plots->firstPlot());
    setupContextMenu();
}

SpectraView::~SpectraView() = default;

QString SpectraView::viewName() const
{
    return QStringLiteral("spectraView");
}

void SpectraView::setupActions()
{
    const auto make = [this](const QString &text, const char *icon, const QString &shortText) {
        auto *const action = new QAction(namedIcon(QLatin1String(icon)), text, this);
        action->setIconText(shortText);
        action->setToolTip(text);
        return action;
    };
    m_copy = make(tr("Copy to clipboard"), "clipboard-copy", tr("Copy"));
    m_settings = make(tr("Settings"), "settings", tr("Settings"));
    m_lock = make(tr("Lock axes"), "lock-axes", tr("Lock axes"));
    m_lock->setCheckable(true);
    m_lock->setToolTip(tr("Lock axes: they stay as they are when another record is shown"));
    m_hold = make(tr("Hold curves"), "hold-curves", tr("Hold"));
    m_hold->setCheckable(true);
    m_hold->setToolTip(tr("Hold curves: those of this record stay in grey when another one is shown"));
    m_fit = new QAction(tr("Fit axes"), this);
    m_spectrumMenu->setIcon(namedIcon(QStringLiteral("distribution-plot")));
    m_spectrumMenu->menuAction()->setToolTip(tr("Choose which spectra are shown"));

    connect(m_copy, &QAction::triggered, this, &SpectraView::copySpectraToClipboard);
    connect(m_settings, &QAction::triggered, this, &SpectraView::showDialog);
    connect(m_lock, &QAction::toggled, m_plots, &ResultPlots::setAxesLocked);
    connect(m_hold, &QAction::toggled, m_plots, &ResultPlots::setHolding);
    connect(m_fit, &QAction::triggered, m_plots, &ResultPlots::fitAxes);
    connect(m_spectrumMenu, &QMenu::aboutToShow, this, &SpectraView::fillSpectrumMenu);
}

void SpectraView::setupToolbar(QToolBar *bar)
{
    bar->setIconSize(QSize(16, 16));
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->layout()->setSpacing(0);
    bar->addActions({m_copy, m_settings, m_lock, m_hold, m_spectrumMenu->menuAction()});
    for (QAction *action : bar->actions()) {
        auto *const button = qobject_cast<QToolButton *>(bar->widgetForAction(action));
        button->setFocusPolicy(Qt::TabFocus);
        button->setAccessibleName(action->text());
        button->setPopupMode(QToolButton::InstantPopup);
    }
}

void SpectraView::setupContextMenu()
{
    auto *const separator = new QAction(this);
    separator->setSeparator(true);
    widget()->setContextMenuPolicy(Qt::ActionsContextMenu);
    widget()->addActions({m_spectrumMenu->menuAction(), m_hold, m_lock, m_fit, separator, m_copy,
                          m_picture->copyAction(), m_picture->saveAction(), m_settings});
}

// ---- the record

void SpectraView::refreshSetup()
{
    m_plots->forgetPlaces();
}

void SpectraView::refreshRecord()
{
    if (!record())
        m_hold->setChecked(false); // what is held belongs to data that go away
    const ShownSpectra shown = chosenSpectra(recordSpectra());
    m_plots->showSpectra(shown, record() ? RecordText::moment(*record()) : QString());
    showSummary(shown);
}

ShownSpectra SpectraView::recordSpectra() const
{
    std::vector<std::shared_ptr<const SpectMath::Spectrum>> spectra;
    if (record()) {
        std::copy_if(record()->spectra.begin(), record()->spectra.end(), std::back_inserter(spectra),
                     [](const auto &spectrum) { return spectrum && spectrum->info; });
    }
    std::stable_sort(spectra.begin(), spectra.end(), [](const auto &a, const auto &b) { return *a->info < *b->info; });
    QList<UiInfo::InfoPointer> infos;
    for (const auto &spectrum : spectra)
        infos << spectrum->info;
    const QStringList names = curveNames(infos, *uiInfo());
    ShownSpectra all;
    for (int i = 0; i < infos.size(); ++i) {
        const QColor color = uiInfo()->spectrumColor(infos[i].get());
        all.append(
            {spectra[std::size_t(i)], onOneLine(names[i]), color.isValid() ? color : palette().color(QPalette::Text)});
    }
    return all;
}

ShownSpectra SpectraView::chosenSpectra(const ShownSpectra &all) const
{
    ShownSpectra chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [this](const ShownSpectrum &one) { return !m_hidden.contains(one.spectrum->info->hash); });
    return chosen;
}

void SpectraView::showSummary(const ShownSpectra &shown)
{
    QStringList lines;
    for (const ShownSpectrum &one : shown) {
        lines << summaryText(*one.spectrum, one.name);
    }
    m_summary->setLines(lines);
    showSummaryIfThereIsRoom();
}

/// A plot between its title and its axis needs the room more, whose curves can be read out.
void SpectraView::showSummaryIfThereIsRoom()
{
    constexpr int plotLines = 10;
    const int room = widget()->height() - m_bar->height() - plotLines * fontMetrics().lineSpacing();
    const int least = m_summary->minimumSizeHint().height();
    m_summary->setMaximumHeight(std::max(room, least));
    m_summary->setVisible(record() && m_summary->hasHadLines() && room >= least);
}

bool SpectraView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::Resize)
        showSummaryIfThereIsRoom();
    return RecordView::eventFilter(watched, event);
}

// ---- the user's choices

bool SpectraView::isSinglePlot() const
{
    return m_plots->isSinglePlot();
}

template<typename T>
void SpectraView::choose(T &field, const T &value)
{
    if (field == value)
        return;
    field = value;
    choicesChanged();
}

void SpectraView::choicesChanged()
{
    if (m_dialog)
        m_dialog->setChoices(*m_options, isSinglePlot());
    setRecordStale();
    if (!m_isRestoring)
        Q_EMIT setupChanged();
}

void SpectraView::setVerticalScaleLog(bool on)
{
    choose(m_options->verticalScaleLog, on);
}

void SpectraView::setHorizontalQuantity(bool autoscale, DistributionScale scale)
{
    PlotOptions &options = *m_options;
    if (options.horizontalQuantityAuto == autoscale && (autoscale || options.horizontalQuantity == scale))
        return;
    options.horizontalQuantityAuto = autoscale;
    if (!autoscale)
        options.horizontalQuantity = scale;
    choicesChanged();
}

void SpectraView::setVerticalQuantity(ConcentrationType type)
{
    if (type != ConcentrationType::radius)
        choose(m_options->verticalQuantity, type);
}

void SpectraView::setDistributionType(DistributionType type)
{
    choose(m_options->distributionType, type);
}

void SpectraView::setSmoothingCoef(double width)
{
    if (std::isfinite(width) && width >= 0)
        choose(m_options->smoothingCoef, width);
}

void SpectraView::setSinglePlot(bool on)
{
    if (on == isSinglePlot())
        return;
    m_plots->setSinglePlot(on);
    choicesChanged();
}

void SpectraView::showDialog()
{
    if (!m_dialog)
        setupDialog();
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void SpectraView::setupDialog()
{
    m_dialog = new SpectraViewDialog(this);
    m_dialog->setChoices(*m_options, isSinglePlot());
    connect(m_dialog, &SpectraViewDialog::verticalScaleLogChanged, this, &SpectraView::setVerticalScaleLog);
    connect(m_dialog, &SpectraViewDialog::horizontalQuantityChanged, this, &SpectraView::setHorizontalQuantity);
    connect(m_dialog, &SpectraViewDialog::verticalQuantityChanged, this, &SpectraView::setVerticalQuantity);
    connect(m_dialog, &SpectraViewDialog::distributionTypeChanged, this, &SpectraView::setDistributionType);
    connect(m_dialog, &SpectraViewDialog::smoothingCoefChanged, this, &SpectraView::setSmoothingCoef);
    connect(m_dialog, &SpectraViewDialog::singlePlotChanged, this, &SpectraView::setSinglePlot);
}

QVariantMap SpectraView::setup() const
{
    QVariantMap setup = m_options->toMap();
    setup.insert(singlePlotKey, isSinglePlot());
    if (!m_hidden.isEmpty()) {
        QStringList hidden = m_hidden.values();
        hidden.sort();
        setup.insert(hiddenSpectraKey, hidden);
    }
    return setup;
}

void SpectraView::restoreSetup(const QVariantMap &setup)
{
    const QScopedValueRollback<bool> guard(m_isRestoring, true); // what was stored needs no storing again
    *m_options = PlotOptions();
    m_options->takeFrom(setup);
    bool isSingle = true;
    takeBool(setup, singlePlotKey, isSingle);
    m_plots->setSinglePlot(isSingle);
    const QStringList hidden = setup.value(hiddenSpectraKey).toStringList();
    m_hidden = QSet<QString>(hidden.begin(), hidden.end());
    choicesChanged();
}

// ---- which spectra are shown

void SpectraView::fillSpectrumMenu()
{
    m_spectrumMenu->clear();
    QList<UiInfo::InfoPointer> infos = uiInfo()->spectrumInfos();
    for (const ShownSpectrum &one : recordSpectra()) {
        const auto isSame = [&](const UiInfo::InfoPointer &info) { return info->hash == one.spectrum->info->hash; };
        if (std::none_of(infos.begin(), infos.end(), isSame))
            infos << one.spectrum->info;
    }
    const QStringList names = curveNames(infos, *uiInfo());
    for (int i = 0; i < infos.size(); ++i) {
        const QString hash = infos[i]->hash;
        QAction *const action = m_spectrumMenu->addAction(menuText(names[i]));
        action->setCheckable(true);
        action->setChecked(!m_hidden.contains(hash));
        connect(action, &QAction::toggled, this, [this, hash](bool on) { setSpectrumShown(hash, on); });
    }
    m_spectrumMenu->addSeparator();
    QAction *const all = m_spectrumMenu->addAction(tr("Show all"));
    all->setEnabled(!m_hidden.isEmpty());
    connect(all, &QAction::triggered, this, [this] {
        m_hidden.clear();
        m_plots->forgetPlaces();
        choicesChanged();
    });
}

void SpectraView::setSpectrumShown(const QString &hash, bool on)
{
    if (on)
        m_hidden.remove(hash);
    else
        m_hidden.insert(hash);
    m_plots->forgetPlaces();
    choicesChanged();
}

// ---- the clipboard

void SpectraView::copySpectraToClipboard()
{
    QApplication::clipboard()->setText(clipboardText());
}

QString SpectraView::clipboardText() const
{
    if (!record())
        return QStringLiteral("No data");
    const ShownSpectra all = recordSpectra();
    const ShownSpectra chosen = chosenSpectra(all);
    const QString time = recordTimeText(*record());
    DisplaySmoothing smoothing;
    QStringList lines;
    for (const ShownSpectrum &one : all) {
        // One plot has one axis, that of its first spectrum.
        const ShownSpectrum &leading = !isSinglePlot() ? one : chosen.isEmpty() ? all.first() : chosen.first();
        lines << QStringLiteral("### %1 at %2 ###").arg(one.name, time)
              << spectrumText(*one.spectrum, *m_options, shownAxis(*leading.spectrum->info, *m_options), smoothing);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace RecordViews
