#pragma once

#include "gui/browser/controls/colorbar.h"
#include "gui/browser/controls/expspinbox.h"
#include "gui/browser/controls/spectraselectionwidget.h"
#include "gui/browser/views/spectrogramview.h"
#include "support/gestures.h"
#include "support/plotstore.h"

#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

/// A view over records of two spectra in turn, whose values rise by three decades.
class SpectrogramViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        store.setLimitRecords(false);
        for (int i = 0; i < 60; ++i)
            addSpectrumRecord(store, i * 10, i * 10 + 10, testSpectrum(i % 2 ? a : b, std::pow(10, 1 + i * 0.05)));
        uiInfo->setData(std::make_shared<Spectrometer::RecordMetadata>(), {a, b, single});
        uiInfo->publish();
        prepare(view);
    }
    void prepare(Tsb::SpectrogramView &v)
    {
        v.resize(700, 240);
        v.setLeftMargin(110);
        v.setTimeScale(TimeScale(testStart, ticksPerSecond, 0));
        v.setUiInfo(uiInfo);
        v.setDatastore(&store);
        v.show();
    }
    void choose(std::initializer_list<const char *> names)
    {
        QSet<QString> ids;
        for (const char *name : names)
            ids.insert(QStringLiteral("id-") + QLatin1String(name));
        view.findChild<Tsb::SpectraSelectionWidget *>()->setSelectedSpectra(ids); // as the user does
    }
    std::string labels() const
    {
        std::string all;
        for (const auto &row : view.rows())
            all += row.scale->label().section(QLatin1Char('\n'), 0, 0).toStdString() + ";";
        return all;
    }
    Colorbar &bar() { return *view.findChild<Colorbar *>(); }
    ExpSpinBox &low() { return *view.findChildren<ExpSpinBox *>()[0]; }
    ExpSpinBox &high() { return *view.findChildren<ExpSpinBox *>()[1]; }
    QAction &action(const QString &text, const QString &parentMenu = QString())
    {
        for (QAction *candidate : view.findChildren<QAction *>()) {
            const auto *menu = qobject_cast<QMenu *>(candidate->parent());
            if (candidate->text() == text && (parentMenu.isEmpty() || (menu && menu->title() == parentMenu)))
                return *candidate;
        }
        ADD_FAILURE() << "no action " << text.toStdString();
        std::abort();
    }
    QImage picture(int row = 0)
    {
        view.rows()[row].plot->grab();
        return view.rows()[row].plot->image().copy();
    }

    SpectMath::SpectrumInfoPointer a = testInfo("a", {1, 2, 4}), b = testInfo("b", {4, 2, 1}),
                                   single = testInfo("single", {3});
    std::shared_ptr<UiInfo> uiInfo = std::make_shared<UiInfo>();
    Datastore store;
    Tsb::SpectrogramView view;
};
