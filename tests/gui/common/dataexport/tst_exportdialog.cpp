#include "gui/browser/controls/expspinbox.h"
#include "gui/common/dataexport/choicebutton.h"
#include "gui/common/dataexport/dataexportdialog.h"
#include "gui/common/dataexport/exporteddata.h"
#include "support/commands.h"
#include "support/files.h"
#include "support/gestures.h"
#include "support/logcatcher.h"
#include "support/savedialog.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

namespace {

class Dialog : public ::testing::Test, protected ExportedData {
protected:
    Dialog() { dialog.show(); }

    template<class Widget>
    Widget *find(const QString &name = {}) const
    {
        const auto all = dialog.findChildren<Widget *>(name);
        EXPECT_FALSE(all.isEmpty()) << name.toStdString();
        return all.value(0);
    }
    void add(const QString &command) { commandOf(dialog.findChildren<QAction *>(), command)->trigger(); }
    QVariantMap onlyField() const
    {
        const QVariantList fields = dialog.setup().value("fields").toList();
        EXPECT_EQ(fields.size(), 1);
        return fields.value(0).toMap();
    }
    QStringList types() const
    {
        QStringList list;
        for (const QVariant &field : dialog.setup().value("fields").toList())
            list << field.toMap().value("type").toString();
        return list;
    }
    QString path(const QString &name) const { return folder.filePath(name); }

    QTemporaryDir folder;
    DataExportDialog dialog{source};
};

QVariantMap setupOf(const QVariantMap &general, const QVariantList &fields)
{
    return {{"general", general}, {"fields", fields}, {"quilvane_data_export_version", 1}};
}

const QVariantMap firstGeneral{{"output_file", ""},       {"file_name_add_date", false},
                               {"time_zone", "utc"},      {"file_name_add_opmode", false},
                               {"field_separator", "\t"}, {"time_format", "%Y-%m-%d %H:%M:%s"}};
const QVariantMap firstConcentration{{"type", "concentration"},
                                     {"spectra", QVariantList()},
                                     {"concentration_type", "number"},
                                     {"material_density", 1.0},
                                     {"total_concentration_enabled", true},
                                     {"decade_fractions_enabled", false},
                                     {"decade_fractions_scale", "diameter"},
                                     {"decade_fractions_number", 1},
                                     {"decade_fractions_from", 1.0},
                                     {"decade_fractions_to", 1000.0},
                                     {"custom_fractions_enabled", false},
                                     {"custom_fractions_data", ""},
                                     {"custom_fractions_scale", "diameter"}};
const QVariantMap firstSpectrum{
    {"type", "spectrum"},     {"spectra", QVariantList()},      {"scale", "diameter"},    {"distribution", "density"},
    {"uncertainties", false}, {"concentration_type", "number"}, {"material_density", 1.0}};
const QVariantMap firstElectrometer{{"type", "electrometer"}, {"electrometers", QVariantList()}, {"currents", true},
                                    {"deviations", false},    {"raw_currents", false},           {"voltages", false}};

QVariantMap with(QVariantMap map, const QVariantMap &others)
{
    for (auto it = others.begin(); it != others.end(); ++it)
        map[it.key()] = it.value();
    return map;
}

} // namespace

TEST_F(Dialog, ASetupSavedAndLoadedGivesTheSameMaps)
{
    const QVariantMap first =
        setupOf(firstGeneral, {firstConcentration, firstSpectrum,
                               QVariantMap{{"type", "variable"}, {"variables", QVariantList()}}, firstElectrometer});
    for (const char *command : {"Add concentrations", "Add whole spectra", "Add variables", "Add electrometers"})
        add(command);
    EXPECT_EQ(dialog.setup(), first);
    const QVariantMap other =
        setupOf(with(firstGeneral, {{"output_file", "no"},
                                    {"field_separator", "|'\\"},
                                    {"time_zone", "local"},
                                    {"comment_lines", true},
                                    {"opmodes", QVariantList{"ions", "7"}},
                                    {"file_name_add_date", true},
                                    {"time_format", "%H\t\"%M\""}}),
                {with(firstConcentration, {{"spectra", QVariantList{"gone", "id-particles neg", "id-ions neg"}},
                                           {"concentration_type", "radius"},
                                           {"material_density", 1.23456789},
                                           {"mass_unit", "µg/m^3"},
                                           {"total_concentration_enabled", false},
                                           {"decade_fractions_enabled", true},
                                           {"decade_fractions_scale", "mobility_custom"},
                                           {"decade_fractions_number", 100},
                                           {"decade_fractions_from", 1e-7},
                                           {"decade_fractions_to", 1e+22},
                                           {"custom_fractions_enabled", true},
                                           {"custom_fractions_data", "1 3\n\n  10 1e5\n"},
                                           {"custom_fractions_scale", "mobility"}}),
                 with(firstSpectrum, {{"spectra", QVariantList{"id-ions neg", "1"}},
                                      {"distribution", "fraction"},
                                      {"scale", "mobility"},
                                      {"uncertainties", true},
                                      {"concentration_type", "mass"}}),
                 QVariantMap{{"type", "variable"}, {"variables", QVariantList{"yes", "pressure", "temperature"}}},
                 with(firstElectrometer,
                      {{"electrometers", QVariantList{"2-", "9-"}}, {"currents", false}, {"voltages", true}})});
    for (const QVariantMap &setup : {first, other}) {
        dialog.setSetup(setup);
        EXPECT_EQ(dialog.setup(), setup);
        ASSERT_EQ(dialog.save(path("s.exportsetup")), QString());
        DataExportDialog second(source);
        ASSERT_EQ(second.load(path("s.exportsetup")), QString());
        EXPECT_EQ(second.setup(), setup);
        EXPECT_EQ(second.setupPath(), path("s.exportsetup"));
    }
}

TEST_F(Dialog, DamagedFilesChangeNothingAndUnknownFieldsAreSkipped)
{
    const LogCatcher log;
    writeFile(path("mixed"), "{general: {}, fields: [{type: song}, 5, {type: electrometer}, {}, {type: variable, "
                             "variables: [pressure]}]}");
    EXPECT_EQ(dialog.load(path("mixed")), QString());
    EXPECT_EQ(types(), (QStringList{"electrometer", "variable"}));
    EXPECT_TRUE(log.complaints().contains("Unknown field type 'song'."));
    EXPECT_TRUE(find<QLabel>("resultLabel")->text().startsWith("Not all of the setup was understood"));
    const QVariantMap before = dialog.setup();
    int refused = 0;
    const QStringList cases = filesIn(FUZZ_CORPUS "/exportsetup");
    EXPECT_GT(cases.size(), 10);
    for (const QString &name : cases) {
        dialog.setSetup(before);
        refused += !dialog.load(FUZZ_CORPUS "/exportsetup/" + name).isNull() && dialog.setup() == before;
        QTest::qWait(0);
    }
    EXPECT_EQ(refused, 4) << "later_version, no_general, truncated, two_documents";
    EXPECT_FALSE(dialog.load(path("absent")).isNull());
    EXPECT_FALSE(dialog.save(path("absent/s")).isNull());
    EXPECT_EQ(dialog.setupPath(), FUZZ_CORPUS "/exportsetup/zero_per_decade");
}

TEST_F(Dialog, SetupFilesAreAskedForAndFailuresTold)
{
    QAction save, load;
    QObject::connect(&save, &QAction::triggered, &dialog, &DataExportDialog::saveSetup);
    QObject::connect(&load, &QAction::triggered, &dialog, &DataExportDialog::loadSetup);
    find<QLineEdit>("outputFile")->setText("x");
    EXPECT_EQ(saveByDialog(&save, path("s")), QString());
    EXPECT_EQ(dialog.setupPath(), path("s.exportsetup"));
    EXPECT_TRUE(saveByDialog(&save, "/proc/s.exportsetup")
                    .startsWith("Failed to open file /proc/s.exportsetup for writing.\n"));
    writeFile(path("lacking.exportsetup"), "fields: []");
    EXPECT_EQ(saveByDialog(&load, path("lacking.exportsetup")),
              "Failed to open file " + path("lacking.exportsetup") + ".\nIt has no map \"general\"");
    EXPECT_EQ(dialog.setupPath(), path("s.exportsetup"));
    find<QLineEdit>("outputFile")->clear();
    EXPECT_EQ(saveByDialog(&load, path("s.exportsetup")), QString());
    EXPECT_EQ(find<QLineEdit>("outputFile")->text(), "x");
    QTimer::singleShot(0, [] { QMetaObject::invokeMethod(QApplication::activeModalWidget(), "accept"); });
    find<QLineEdit>("outputFile")->parentWidget()->findChild<QToolButton *>()->click();
    EXPECT_EQ(find<QLineEdit>("outputFile")->text(), path("x.txt")) << "a relative name stays where it was";
}

TEST_F(Dialog, SpectraAreCheckedInAMenuThatStaysOpen)
{
    add("Add concentrations");
    auto *const tree = find<QTreeWidget>("setupTree");
    auto *const button = find<ChoiceButton>("spectraChoice");
    EXPECT_EQ(tree->currentItem()->text(0), "Concentrations");
    EXPECT_EQ(button->text(), "None selected");
    QMenu *const menu = button->menu();
    QStringList texts;
    for (const QAction *action : menu->actions())
        texts << action->text();
    EXPECT_EQ(texts, (QStringList{"Select all", "Select none", "", "ions: ions neg", "particles: particles neg"}));
    menu->popup(QPoint());
    for (const int entry : {4, 3})
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions()[entry]).center());
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(button->text(), "ions neg, particles neg");
    EXPECT_EQ(tree->currentItem()->text(0), "Concentrations: ions neg, particles neg");
    menu->setActiveAction(menu->actions()[3]);
    QTest::keyClick(menu, Qt::Key_Space);
    EXPECT_EQ(button->text(), "particles neg");
    EXPECT_TRUE(menu->isVisible());
    menu->close();

    button->setChosen({"gone", "id-ions neg"});
    EXPECT_EQ(button->text(), "ions neg");
    menu->actions()[0]->trigger();
    EXPECT_EQ(button->chosen(), (QStringList{"gone", "id-ions neg", "id-particles neg"}));
    ui->removeSpectrum(ions.get());
    ui->publish();
    EXPECT_EQ(button->text(), "particles neg");
    EXPECT_EQ(onlyField().value("spectra").toList().size(), 3) << "a spectrum may come back";
    menu->actions()[1]->trigger();
    EXPECT_EQ(button->chosen(), QStringList());
    ui->clear();
    ui->publish();
    EXPECT_EQ(button->text(), "no spectra");
}

TEST_F(Dialog, WhatDoesNotApplyIsDisabled)
{
    add("Add concentrations");
    const auto choose = [this](const char *box, const char *data) {
        auto *const combo = find<QComboBox>(box);
        combo->setCurrentIndex(combo->findData(data));
    };
    EXPECT_FALSE(find<ExpSpinBox>("materialDensity")->isEnabled());
    choose("concentrationType", "mass");
    EXPECT_TRUE(find<ExpSpinBox>("materialDensity")->isEnabled());
    const auto *from = find<ExpSpinBox>("decadeFrom");
    choose("decadeScale", "mobility_custom");
    EXPECT_FALSE(from->isEnabled()) << "of a group that is off";
    find<QGroupBox>("decadeFractions")->setChecked(true);
    EXPECT_TRUE(from->isEnabled());
    choose("decadeScale", "mobility");
    EXPECT_FALSE(from->isEnabled());
    find<QGroupBox>("decadeFractions")->setChecked(false);
    find<QGroupBox>("decadeFractions")->setChecked(true);
    EXPECT_FALSE(from->isEnabled());

    const auto *ending = find<QLabel>("nameEnding");
    find<QCheckBox>("addOpmode")->click();
    EXPECT_EQ(ending->text(), "-<i>opmode</i>");
    find<QCheckBox>("addDate")->click();
    EXPECT_EQ(ending->text(), "-<i>yyyymmdd</i>-<i>opmode</i>");
}

TEST_F(Dialog, FieldsMoveAndGoByKeys)
{
    for (const char *command : {"Add electrometers", "Add variables", "Add concentrations"})
        add(command);
    auto *const tree = find<QTreeWidget>("setupTree");
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(types(), (QStringList{"electrometer", "concentration", "variable"}));
    EXPECT_EQ(tree->currentItem()->text(0), "Concentrations");
    QTest::keyClick(tree, Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(tree, Qt::Key_Down, Qt::ControlModifier); // there is no farther
    EXPECT_EQ(types(), (QStringList{"electrometer", "variable", "concentration"}));
    QTest::keyClick(tree, Qt::Key_Delete);
    EXPECT_EQ(types(), (QStringList{"electrometer", "variable"}));
    EXPECT_TRUE(find<QListWidget>("variableList")->isVisible()) << "the page of the field that is current now";
    QTest::keyClick(tree, Qt::Key_Up);
    QTest::keyClick(tree, Qt::Key_Up);
    QTest::keyClick(tree, Qt::Key_Delete); // "Fields" itself stays
    EXPECT_EQ(types(), (QStringList{"electrometer", "variable"}));
}

TEST_F(Dialog, TabReachesAllOfEveryPageAndAllHasAName)
{
    for (const char *command : {"Add concentrations", "Add whole spectra", "Add variables", "Add electrometers"})
        add(command);
    for (auto *box : dialog.findChildren<QGroupBox *>())
        box->setChecked(true);
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto *const tree = find<QTreeWidget>("setupTree");
    for (auto *item = tree->topLevelItem(0); item; item = tree->itemBelow(item)) {
        SCOPED_TRACE(item->text(0).toStdString());
        tree->setCurrentItem(item);
        tree->setFocus();
        QList<QWidget *> reached;
        for (int i = 0; i < 60 && !reached.contains(QApplication::focusWidget()); ++i) {
            reached << QApplication::focusWidget();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(reached.indexOf(find<QTableWidget>("previewTable")), reached.size() - 5)
            << "buttons alone are behind it";
        for (QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() || !widget->isEnabled() ||
                widget->focusProxy() || widget->parentWidget()->inherits("QAbstractSpinBox"))
                continue;
            const QString who = QString("%1 %2").arg(widget->metaObject()->className(), widget->objectName());
            EXPECT_TRUE(reached.contains(widget)) << who.toStdString();
            const QString name = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << who.toStdString();
        }
        EXPECT_GT(reached.size(), 6);
    }
}

TEST_F(Dialog, VariablesAreCheckedInAFilteredList)
{
    dialog.setSetup(setupOf({}, {QVariantMap{{"type", "variable"}, {"variables", QVariantList{"R&D"}}}}));
    EXPECT_EQ(find<QTreeWidget>()->topLevelItem(1)->child(0)->toolTip(0), "Variables: R&D");
    auto *const list = find<QListWidget>("variableList");
    for (const int row : {1, 0})
        list->item(row)->setCheckState(Qt::Checked);
    EXPECT_EQ(onlyField().value("variables").toList(), (QVariantList{"R&D", "temperature", "pressure"}));
    list->parentWidget()->findChild<QLineEdit *>()->setText("PRESS");
    EXPECT_TRUE(list->item(0)->isHidden());
    EXPECT_FALSE(list->item(1)->isHidden());
    list->item(0)->setCheckState(Qt::Unchecked);
    EXPECT_EQ(onlyField().value("variables").toList(), (QVariantList{"R&D", "pressure"}));
}

TEST_F(Dialog, ThePreviewFollowsSomeTimeBehindTheLastChange)
{
    auto *const table = find<QTableWidget>("previewTable");
    EXPECT_EQ(table->rowCount(), 5);
    EXPECT_EQ(table->columnCount(), 3);
    add("Add electrometers");
    EXPECT_EQ(table->columnCount(), 3) << "at once";
    ASSERT_TRUE(QTest::qWaitFor([table] { return table->columnCount() == 5; }));
    EXPECT_EQ(table->horizontalHeaderItem(3)->text(), "current 1- (fA)");
    find<QLineEdit>("outputFile")->setText("x");
    const auto *files = find<QLabel>("previewFiles");
    ASSERT_TRUE(QTest::qWaitFor([files] { return files->text() == "/data/x"; }));
    find<QComboBox>("timeSpan")->setCurrentIndex(1);
    inSight = {timeOf(4), timeOf(6)};
    dialog.spanChanged();
    ASSERT_TRUE(QTest::qWaitFor([table] { return table->rowCount() == 2; }));
}

TEST_F(Dialog, WidensForFormsThatItsWidthWouldCutAndFitsTheScreen)
{
    EXPECT_LE(dialog.width(), dialog.screen()->availableGeometry().width());
    dialog.resize(300, 700);
    dialog.addFields({QVariantMap{{"type", "electrometer"}}});
    settle();
    const int most = dialog.screen()->availableGeometry().width();
    for (const auto *page : dialog.findChildren<QStackedWidget *>().first()->findChildren<QScrollArea *>())
        EXPECT_TRUE(page->horizontalScrollBar()->maximum() == 0 || dialog.width() == most) << dialog.width();
    EXPECT_LE(dialog.width(), most);
}

TEST_F(Dialog, TwoHundredFieldsOfAFileAreTaken)
{
    QVariantList fields;
    for (int i = 0; i < 1000; ++i)
        fields << QVariantMap{{"type", "variable"}};
    const LogCatcher log;
    dialog.setSetup(setupOf({}, fields));
    EXPECT_EQ(types().size(), 200);
    EXPECT_EQ(log.complaints().size(), 1) << "one for all";
}
