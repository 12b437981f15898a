#pragma once

#include "demo/demowriter.h"
#include "gui/morvantide/datachooserdialog.h"
#include "gui/morvantide/morvantide_mainwin.h"
#include "morvantide/dialogs.h"
#include "morvantide/docktext.h"

#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

/// A demonstration on disk and a review window upon it, driven through its dialogs.
class ReviewWindow : public testing::Test {
protected:
    explicit ReviewWindow(int secondsBetweenRecords = 600)
    {
        writeDemo(QStringLiteral("demo"), secondsBetweenRecords);
        makeWindow();
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    void write(const QString &name, const QByteArray &text) const
    {
        QFile file(path(name));
        file.open(QIODevice::WriteOnly);
        file.write(text);
    }
    QByteArray contentOf(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// A day of records, and the inverters that their spectra come from in "inverters".
    void writeDemo(const QString &name, int secondsBetweenRecords, std::uint64_t seed = 1) const
    {
        Demo::Campaign::Settings settings;
        settings.interval = secondsBetweenRecords;
        settings.seed = seed;
        const Demo::Campaign campaign(settings);
        Demo::writeCampaign(campaign, path(name));
        Demo::writeInverterFiles(campaign.inverterFiles(), path(QStringLiteral("inverters")));
    }
    /// Files in "variants" with so many copies of one of the inverters, which differ in their names and hashes.
    QStringList writeVariants(int count, const QString &mode = QStringLiteral("particles")) const
    {
        QDir().mkpath(path(QStringLiteral("variants")));
        const QByteArray text = contentOf(QStringLiteral("inverters/%1-neg.inverter").arg(mode));
        QStringList files;
        for (int i = 0; i < count; ++i) {
            files << QStringLiteral("variants/%1%2.inverter").arg(mode).arg(i);
            write(files.last(),
                  QByteArray(text).replace("inverter_name: demo", "inverter_name: variant" + QByteArray::number(i)));
        }
        return files;
    }

    void makeWindow() { window = std::make_unique<MorvantideMainWindow>(path(QStringLiteral("morvantide.conf"))); }
    /// Goes through the dialog, and comes back with the read under way.
    void startOpening(const QString &name)
    {
        withDialog<DataChooserDialog>([this, name](DataChooserDialog &dialog) {
            dialog.setChoice({{"folderName", path(name)}, {"variant", "block"}, {"legacyFiles", false}});
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        window->showDataDirChoice();
    }
    void open(const QString &name = QStringLiteral("demo"))
    {
        startOpening(name);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window->isReading(); }, 60000));
        ASSERT_TRUE(window->datastore());
    }
    /// Chooses those files in the dialog that the command shows.
    void startReinversion(const QStringList &files)
    {
        withDialog<QFileDialog>([this, files](QFileDialog &dialog) {
            dialog.setDirectory(m_folder.path());
            dialog.findChild<QLineEdit *>("fileNameEdit")->setText('"' + files.join("\" \"") + '"');
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        window->reinvert();
    }
    void waitForReinversion()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window->isReinverting(); }, 120000));
    }
    void reinvert(const QStringList &files = {QStringLiteral("inverters/demo.invmap")})
    {
        startReinversion(files);
        waitForReinversion();
    }

    QString log() const { return logDockText(*window); }

    std::unique_ptr<MorvantideMainWindow> window;

private:
    QTemporaryDir m_folder;
};
