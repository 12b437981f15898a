#pragma once

#include "gui/morvantide/windowtest.h"
#include "support/demodata.h"

#include <QFileDialog>
#include <QLineEdit>

/// A demonstration on disk and a review window upon it.
class ReviewWindow : public WindowTest {
protected:
    explicit ReviewWindow(int secondsBetweenRecords = 600) { writeDemoData(path("demo"), secondsBetweenRecords); }

    /// Files in "variants" with so many copies of one of the inverters, which differ in their names and hashes.
    QStringList writeVariants(int count, const QString &mode = "particles") const
    {
        const QByteArray text = contentOf(QString("inverters/%1-neg.inverter").arg(mode));
        QStringList files;
        for (int i = 0; i < count; ++i) {
            files << QString("variants/%1%2.inverter").arg(mode).arg(i);
            write(files.last(),
                  QByteArray(text).replace("inverter_name: demo", "inverter_name: variant" + QByteArray::number(i)));
        }
        return files;
    }
    void open(const QString &name = "demo")
    {
        startOpening(path(name));
        waitForRead();
        ASSERT_TRUE(window->datastore());
    }
    bool isLoading() const { return window->findChild<InverterLoader *>()->isLoading(); }
    /// Chooses those files in the dialog that the command shows.
    void chooseInverters(const QStringList &files)
    {
        withDialog<QFileDialog>([this, files](QFileDialog &dialog) {
            dialog.setDirectory(path(""));
            dialog.findChild<QLineEdit *>("fileNameEdit")->setText('"' + files.join("\" \"") + '"');
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        window->reinvert();
    }
    void startReinversion(const QStringList &files)
    {
        chooseInverters(files);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !isLoading(); }, 120000));
    }
    void waitForReinversion()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !window->isReinverting(); }, 120000));
    }
    void reinvert(const QStringList &files = {"inverters/demo.invmap"})
    {
        startReinversion(files);
        waitForReinversion();
    }
};
