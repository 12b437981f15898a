#include "datafiles/writing/plainfileoutput.h"

#include "datafiles/writing/plainfileoutput_header.h"
#include "llama/qyaml.h"
#include "outputfixture.h"
#include "support/expected.h"

using Spectrometer::PlainFileOutput;
using Result = PlainFileOutput::RowResult;

TEST_F(OutputTest, EachKindOfFileIsWrittenToTheLetter)
{
    settings.variants[0].diagnostics = settings.variants[0].currents = true;
    settings.rawFile = settings.inversionVars = true;
    metadata->instrumentSettings = {{"serial", 7}, {"a", "x\ny"}};
    PlainFileOutput output(settings);
    auto full = std::make_shared<Spectrometer::FullRecord>(record());
    full->flags = {flagOf("low flow"), flagOf("a\n\"b\"")};
    output.fullRecord(full);
    output.writeSpectraRow(withSpectrum());
    auto raw = std::make_shared<Spectrometer::RawRecord>();
    raw->instrumentTime = raw->computerTime = someTime;
    raw->opmode = 1;
    raw->electrometers = realVector({0.1, 2});
    raw->valid = QBitArray(2);
    raw->valid.setBit(1);
    raw->variables = realVector({-3});
    output.rawRecord(raw);
    for (const QString &name : filesIn(settings.folder))
        expectText(contentOf(path(name)).replace(Spectrometer::FileHeader::softwareText().toUtf8(), "SOFTWARE"),
                   EXPECTED_FILES "/" + name);
    EXPECT_EQ(filesIn(settings.folder), filesIn(EXPECTED_FILES));
    EXPECT_TRUE(errors.isEmpty()) << qPrintable(errors.join('\n'));
    EXPECT_EQ(output.counts().written, 5);
}

TEST_F(OutputTest, RowsAreFullWidthWhateverIsMissing)
{
    settings.inversionVars = true;
    PlainFileOutput output(settings);
    Spectrometer::FullRecord bare;
    bare.beginTime = bare.endTime = someTime;
    bare.dpVariantId = 0;
    bare.opmode = 9;
    output.writeRecordRow(bare);
    EXPECT_EQ(rows(path("20190912-block.records")).first(),
              "2019-09-12 10:16:52.000000\t2019-09-12 10:16:52.000000\t\t\t\t\t\tnan\tnan\t\t\t\t");

    Record without(record());
    Record shortened = withSpectrum();
    shortened.spectra.front()->concentrations = realVector({1});
    Record noCovariances = withSpectrum();
    noCovariances.spectra.front()->covariances = BandMatrix();
    for (const Record &r : {without, withSpectrum(3), shortened, withSpectrum(), noCovariances})
        EXPECT_EQ(output.writeSpectraRow(r), Result::Written);
    QList<QByteArray> ends;
    for (const QByteArray &row : rows(path("20190912-block-ions.spectra")))
        ends << row.mid(row.indexOf("ions") + 4);
    EXPECT_EQ(ends,
              (QList<QByteArray>{"\t\t\t\t\t\t\t", "\t\t\t\t\t\t\t", "\t\t\t\t\t\t\t",
                                 "\t123457\tnan\t3\t4\tnan\tnan\t0.5", "\t123457\tnan\tnan\tnan\tnan\tnan\t0.5"}));
}

TEST_F(OutputTest, WhatIsSkipped)
{
    settings.variants[0].diagnostics = settings.variants[0].currents = true;
    PlainFileOutput output(settings);
    Record provisional = withSpectrum();
    provisional.provisional = provisional.spectraProvisional = true;
    EXPECT_EQ(output.writeRecordRow(provisional), Result::Skipped);
    EXPECT_EQ(output.writeCurrentsRow(provisional), Result::Skipped);
    EXPECT_EQ(output.writeSpectraRow(provisional), Result::Skipped);
    EXPECT_EQ(output.writeDiagnosticsRow(provisional), Result::Written); // alone in this
    auto interim = std::make_shared<Spectrometer::FullRecord>(record());
    interim->interim = true;
    output.fullRecord(interim);
    Record otherMode = withSpectrum();
    otherMode.opmode = 1;
    EXPECT_EQ(output.writeSpectraRow(otherMode), Result::Skipped);
    Spectrometer::FullRecord otherVariant = record();
    otherVariant.dpVariantId = 1;
    EXPECT_EQ(output.writeRecordRow(otherVariant), Result::Skipped);
    EXPECT_EQ(QDir(settings.folder).entryList(QDir::Files), QStringList{"20190912-block.diagnostics"});
}

TEST_F(OutputTest, NumbersInHeadersKeepTheirValue)
{
    // Digits beyond 32 bits would be read as 0.
    const QVariantList numbers{3e9, -1e12, 1e22, 2.5e9, 0.1, 7.0, -2147483648.0, qint64(1) << 40, 4294967295u, 12};
    metadata->instrumentSettings = {{"a", QVariantMap{{"b", numbers}}}};
    const auto settingsIn = [&] {
        QByteArray text;
        const auto lines =
            Spectrometer::FileHeader::recordsHeader(Spectrometer::FileHeader::commonKeys(*metadata), *metadata);
        for (const QByteArray &line : lines.mid(1, lines.size() - 2))
            text += line.mid(2) + '\n';
        return Llama::yamlLoad(text).value(0).toMap().value("instrument configuration").toMap();
    };
    const QVariantMap once = settingsIn();
    const QVariantList read = once.value("a").toMap().value("b").toList();
    ASSERT_EQ(read.size(), numbers.size());
    for (int i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(read.at(i).toDouble(), numbers.at(i).toDouble()) << i;
    metadata->instrumentSettings = once;
    EXPECT_EQ(settingsIn(), once); // written again, the same
}

TEST_F(OutputTest, ALogFile)
{
    settings.logFile = true;
    PlainFileOutput output(settings);
    Log::Entry entry;
    entry.level = 4;
    entry.source = "x%2";
    entry.message = "one\ntwo";
    entry.time = QDateTime(QDate(2019, 9, 12), QTime(12, 0, 0, 7));
    output.addLogEntry(entry);
    EXPECT_TRUE(contentOf(path("20190912.log")).endsWith("\n2019-09-12 12:00:00.007\twarning\tx%2\tone\n\ttwo\n"));
}

TEST_F(OutputTest, NumbersAreThoseOfQtInWholeRows)
{
    metadata->totalElectrometers = 500;
    settings.variants[0].currents = true;
    PlainFileOutput output(settings);
    Spectrometer::FullRecord r = record();
    r.currents = r.currentVariances = r.rawCurrents = RealVector(500);
    QStringList expected;
    for (int i = 0; i < 500; ++i)
        r.currents[std::size_t(i)] = std::sin(i * 12.5) * std::pow(10.0, i % 40 - 20);
    for (std::size_t i = 0; i < 500; ++i)
        expected << QString::number(r.currents[i], 'g', 6);
    output.writeCurrentsRow(r);
    const auto row = rows(path("20190912-block.currents")).first().split('\t');
    ASSERT_EQ(row.size(), 1503);
    EXPECT_EQ(row.mid(3, 500).join('\t'), expected.join('\t').toLatin1());
}
