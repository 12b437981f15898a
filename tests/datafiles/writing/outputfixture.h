#pragma once

#include "datafiles/writing/plainfileoutput.h"
#include "log/logger.h"
#include "support/files.h"
#include "support/fulldisk.h"
#include "support/instrument.h"
#include "support/realvector.h"

#include <QStringList>
#include <QTemporaryDir>

#include <cmath>

/// 2019-09-12 10:16:52 UTC, which is 12:16:52 at +02:00.
constexpr RecordTime someTime = recordTimeFromTicks(1568283412LL * ticksPerSecond);

inline const QString recordsName = "20190912-block.records";

inline int headersIn(const QByteArray &text)
{
    return ("\n" + text).count("\n# Quilvane records\n");
}

inline std::shared_ptr<Spectrometer::RecordFlag> flagOf(const QString &text)
{
    auto flag = std::make_shared<Spectrometer::RecordFlag>();
    flag->text = text;
    return flag;
}

/// An instrument of two electrometers, one variable and two modes, and an empty folder to write to.
class OutputTest : public ::testing::Test {
protected:
    OutputTest()
    {
        metadata->electrometerGroups["pos"] = {0, 2};
        settings.folder = folder.path() + "/out";
        settings.fileNamePattern = "%Y%m%d";
        settings.timeFormat = "%Y-%m-%d %H:%M:%s";
        settings.variants[0].name = "block";
        settings.metadata = metadata;
        settings.spectra["ions"] = {spectrumInfo};

        QObject::connect(&Log::RootLogger::instance(), &Log::RootLogger::newEntry, &logReceiver,
                         [this](const Log::Entry &entry) {
                             if (entry.level <= Log::Error)
                                 errors << entry.message;
                             else
                                 messages << entry.message;
                         });
    }

    Spectrometer::FullRecord record(int minutes = 0) const
    {
        Spectrometer::FullRecord r;
        r.beginTime = someTime + std::chrono::minutes(minutes);
        r.endTime = r.beginTime + std::chrono::seconds(10);
        r.beginUtcOffset = r.endUtcOffset = 7200;
        r.dpVariantId = 0;
        r.opmode = 0;
        r.currents = realVector({1.5, noValue});
        r.currentVariances = realVector({0.25, 4});
        r.rawCurrents = realVector({noValue, -0.0});
        r.voltages = realVector({100000.5, noValue});
        r.variables = realVector({293.15});
        return r;
    }
    Record withSpectrum(std::int32_t status = 0) const
    {
        Record r(record());
        auto spectrum = std::make_shared<SpectMath::Spectrum>();
        spectrum->concentrations = realVector({123456.5, noValue});
        spectrum->covariances = BandMatrix(2, 2, 0, 0);
        spectrum->covariances(0, 0) = 9;
        spectrum->covariances(1, 1) = 16;
        spectrum->currentTotalError = 0.5;
        spectrum->status = status;
        spectrum->info = spectrumInfo;
        r.spectra = {spectrum};
        return r;
    }

    QString path(const QString &name) const { return settings.folder + '/' + name; }
    /// The lines after the last column row.
    static QList<QByteArray> rows(const QString &fileName)
    {
        QList<QByteArray> lines = contentOf(fileName).split('\n');
        EXPECT_EQ(lines.takeLast(), QByteArray()) << "the file doesn't end in a line feed";
        int first = 0;
        for (int i = 0; i < lines.size(); ++i)
            if (lines.at(i).startsWith("begin_time\t"))
                first = i + 1;
        EXPECT_GT(first, 0) << qPrintable(fileName);
        return lines.mid(first);
    }
    QTemporaryDir folder;
    QObject logReceiver;
    QStringList errors;
    QStringList messages;
    Spectrometer::RecordMetadataPointer metadata = testMetadata({"ions", "offset"}, {"E1", "E2"}, {"temp"});
    SpectMath::SpectrumInfoPointer spectrumInfo = testInfo("ions\tpos", {1.5, 2.25});
    Spectrometer::PlainFileOutput::Settings settings;
};
