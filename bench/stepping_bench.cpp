#include "gui/common/recordviews/recordview.h"
#include "gui/frame/docklayout.h"
#include "gui/frame/mainwindowbase.h"
#include "records/recordflag.h"
#include "store/datastore.h"
#include "support/gestures.h"
#include "support/instrument.h"
#include "support/measuring.h"

#include <QApplication>
#include <QDockWidget>
#include <QStandardItemModel>
#include <QTreeView>

#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_scale_engine.h>

/// One step to the next record, from the key to the finished picture.

namespace {

constexpr QSize windowSize(2560, 1440);
constexpr int recordCount = 400, points = 60, electrometers = 42, variables = 100, steps = 100;

QStringList names(const QString &prefix, int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list += prefix + QString::number(i);
    return list;
}

struct Data {
    Spectrometer::RecordMetadataPointer metadata = testMetadata(
        {QStringLiteral("ions")}, names(QStringLiteral("e"), electrometers), names(QStringLiteral("v"), variables));
    SpectMath::SpectrumInfoPointer infos[2] = {testInfo(QStringLiteral("ions neg"), testGrid(points, 0.5, 1.1)),
                                               testInfo(QStringLiteral("ions pos"), testGrid(points, 0.5, 1.1))};
    std::shared_ptr<Datastore> store = std::make_shared<Datastore>();

    Data()
    {
        for (int i = 0; i < recordCount; ++i)
            store->insertRecord(store->lowerBound(latestRecordTime), makeRecordAt(i));
    }

private:
    std::shared_ptr<Record> makeRecordAt(int i) const
    {
        const auto wave = [i](std::size_t k) { return 100 * (2 + std::sin(0.1 * double(k) + 0.3 * i)); };
        auto record = std::make_shared<Record>();
        record->beginTime = recordTimeFromTicks((1 + i) * 60 * ticksPerSecond);
        record->endTime = record->beginTime + Ticks(60 * ticksPerSecond);
        record->opmode = 0;
        for (const auto &info : infos) {
            auto spectrum = testSpectrum(info);
            spectrum->covariances = BandMatrix(points, points, 0, 0);
            for (std::size_t k = 0; k < points; ++k) {
                spectrum->concentrations[k] = wave(k);
                spectrum->covariances(k, k) = wave(k);
            }
            record->spectra.push_back(spectrum);
        }
        for (RealVector *vector :
             {&record->currents, &record->rawCurrents, &record->currentVariances, &record->voltages}) {
            vector->resize(electrometers);
            for (std::size_t k = 0; k < electrometers; ++k)
                (*vector)[k] = wave(k);
        }
        record->variables.resize(variables);
        for (std::size_t k = 0; k < variables; ++k)
            record->variables[k] = wave(k);
        return record;
    }
};

/// The frame of the window with all its docks, or with none of them.
class Window : public MainWindowBase {
public:
    Window(const Data &shown, bool hasDocks) : m_hasDocks(hasDocks)
    {
        setAboutInfo({}, {});
        setupActions();
        setupContextActions();
        setupDocks();
        setupToolbar();
        setupMenus();
        uiInfo()->setData(shown.metadata, {shown.infos[0], shown.infos[1]});
        uiInfo()->publish();
        resize(windowSize);
        show();
        setDatastore(shown.store);
        showRecord(shown.store->at(0));
        settle();
    }
    void setupDocks() override
    {
        if (m_hasDocks)
            MainWindowBase::setupDocks();
    }
    QList<QDockWidget *> allDocks() const { return findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly); }
    /// None in a tab: below one another on the left and on the right.
    void putSideBySide()
    {
        const QList<QDockWidget *> all = allDocks();
        for (int i = 0; i < all.size(); ++i) {
            addDockWidget(i % 2 ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea, all[i]);
            all[i]->show();
        }
        settle();
    }
    void step(int turn)
    {
        jumpRecord(turn / steps % 2 ? PreviousRecord : NextRecord);
        settle();
    }

private:
    bool m_hasDocks;
};

/// Plain plots and lists in the places of the docks' contents, with as many curves and rows.
class PlainWidgets {
public:
    explicit PlainWidgets(const Window &window)
    {
        m_window.resize(windowSize);
        for (const QDockWidget *dock : window.allDocks()) {
            const QRect place(dock->mapTo(&window, QPoint()), dock->size());
            if (dock->objectName() == QLatin1String("spectraView"))
                addPlot(place, 2 * 2, points);
            else if (dock->objectName() == QLatin1String("electrometersPlotView"))
                addPlot(place, 3, electrometers);
            else if (dock->objectName() == QLatin1String("electrometersView"))
                addList(place, electrometers, 5);
            else if (dock->objectName() == QLatin1String("diagnosticsView"))
                addList(place, variables, 2);
        }
        m_window.show();
        settle();
    }
    void redraw()
    {
        for (QwtPlot *plot : m_plots)
            plot->replot();
        for (const QTreeView *list : m_lists)
            list->viewport()->update();
        settle();
    }

private:
    void addPlot(const QRect &place, int curves, int size)
    {
        auto *plot = new QwtPlot(&m_window);
        plot->setGeometry(place);
        for (int c = 0; c < curves; ++c) {
            QVector<QPointF> samples;
            for (int i = 0; i < size; ++i)
                samples.append({i + 1.0, c + std::sin(0.1 * i)});
            auto *curve = new QwtPlotCurve;
            curve->setSamples(samples);
            curve->setRenderHint(QwtPlotItem::RenderAntialiased);
            curve->attach(plot);
        }
        m_plots.append(plot);
    }
    void addList(const QRect &place, int rows, int columns)
    {
        auto *model = new QStandardItemModel(rows, columns, &m_window);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                model->setItem(r, c, new QStandardItem(QString::number(r * 1.2345)));
        auto *list = new QTreeView(&m_window);
        list->setGeometry(place);
        list->setModel(model);
        m_lists.append(list);
    }

    QWidget m_window;
    QList<QwtPlot *> m_plots;
    QList<QTreeView *> m_lists;
};

void stepBesidePlainWidgets(benchmark::State &state)
{
    const Data data;
    Window window(data, true);
    window.putSideBySide();
    PlainWidgets plain(window);
    int turn = 0;
    compare(
        state, [&] { window.step(turn++); }, [&] { plain.redraw(); });
}
BENCHMARK(stepBesidePlainWidgets)->Iterations(steps)->Unit(benchmark::kMillisecond);

/// A step while the docks are closed (0), or all but the log in tabs behind it (1), beside a window without any.
void stepWithUnseenDocks(benchmark::State &state)
{
    const Data data;
    Window window(data, true), bare(data, false);
    QDockWidget *const log = window.findChild<QDockWidget *>(QStringLiteral("logDock"));
    for (QDockWidget *dock : window.allDocks()) {
        if (state.range(0) == 0)
            dock->close();
        else if (dock != log)
            window.tabifyDockWidget(log, dock);
    }
    log->raise();
    settle();
    int turn = 0, bareTurn = 0;
    compare(
        state, [&] { bare.step(bareTurn++); }, [&] { window.step(turn++); });
}
BENCHMARK(stepWithUnseenDocks)->Arg(0)->Arg(1)->ArgName("tabs")->Iterations(300)->Unit(benchmark::kMillisecond);

} // namespace
