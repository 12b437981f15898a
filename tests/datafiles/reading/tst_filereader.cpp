#include "datafiles/reading/reading.h"

#include "records/recordflagparser.h"
#include "util/timeformat.h"

#include <cmath>

namespace {

const char currentsHeader[] = "# Quilvane currents\n"
                              "# opmodes: [ions, particles]\n"
                              "# total electrometers: 2\n"
                              "# electrometer groups: {pos: [0, 0], neg: [1, 1]}\n"
                              "# electrometer names: [a, b]\n"
                              "# \n"
                              "begin_time\tend_time\topmode\tcur_0\n";
const char diagnosticsHeader[] = "# Quilvane diagnostics\n"
                                 "# total electrometers: 2\n"
                                 "# electrometer groups: {pos: [0, 0], neg: [1, 1]}\n"
                                 "# electrometer names: [a, b]\n"
                                 "# parameters: [flow, temp]\n"
                                 "# instrument configuration: {id: 7, gone: , deep: {also: , kept: [1, 2]}}\n"
                                 "# \n"
                                 "begin_time\tend_time\topmode\tvolt_0\n";
const char flagsHeader[] = "# Quilvane flags\n# \nbegin_time\tend_time\topmode\tflags\n";

QByteArray spectraHeader(const char *name, const char *hash, const char *points)
{
    return QByteArray("# Quilvane spectra\n# spectra: [{name: ") + name + ", xpoints: " + points +
           ", xunit: nm, yunit: 1/cm^3, scale: radius, hash: " + hash + "}]\n# \nbegin_time\tend_time\topmode\tx\n";
}

/// A row of that minute of the day, with the fields behind the mode.
QByteArray row(int minute, const QByteArray &fields, const QByteArray &mode = "ions", int length = 60)
{
    const RecordTime begin = recordTimeFromTicks((18000 * 86400 + qint64(minute) * 60) * ticksPerSecond);
    const RecordTime end = begin + Ticks(length * ticksPerSecond);
    return timeToString(begin).toUtf8() + '\t' + timeToString(end).toUtf8() + '\t' + mode + '\t' + fields + '\n';
}

using FileReading = Reading;

TEST_F(FileReading, AllKindsOfOneMomentFillOneRecord)
{
    write("20190912-x-ions.spectra", spectraHeader("s", "h1", "[1, 2]") + row(5, "10\t20\t3\t", "ions", 30));
    write("20190912-x.currents", currentsHeader + row(5, "1\t2\t0.1\t0.2\t3\t4", "particles"));
    write("20190912-x.diagnostics", diagnosticsHeader + row(5, "5\t6\t7\t8") + row(6, "5\t6\t7\tx"));
    write("20190912-x.flags", flagsHeader + QByteArray("# flag a: {message: hot, type: failure}\n") + row(5, "!a!a"));
    read();
    EXPECT_EQ(complaints(), QStringList());
    ASSERT_EQ(recordCount(), 2);
    const Record &first = record(0);
    EXPECT_EQ(ticksOf(first.endTime) - ticksOf(first.beginTime), 30 * ticksPerSecond) << "the first file's end stays";
    EXPECT_EQ(first.midTime, first.beginTime + Ticks(15 * ticksPerSecond));
    EXPECT_EQ(modeOf(0), "ions");
    EXPECT_EQ(first.dpVariantId, 0);
    EXPECT_EQ(first.currents[1], 2);
    EXPECT_EQ(first.currentVariances[0], 0.1);
    EXPECT_EQ(first.rawCurrents[1], 4);
    EXPECT_EQ(first.voltages[1], 6);
    EXPECT_EQ(first.variables[1], 8);
    EXPECT_TRUE(std::isnan(record(1).variables[1]));
    EXPECT_TRUE(std::isnan(record(1).currents[0]));
    EXPECT_EQ(messagesOf(0), QStringList({"hot", "hot"}));
    EXPECT_EQ(first.flags[0]->type, Spectrometer::RecordFlag::Failure);
    ASSERT_EQ(first.spectra.size(), 1u);
    const SpectMath::Spectrum &spectrum = *first.spectra[0];
    EXPECT_EQ(spectrum.status, 0);
    EXPECT_EQ(spectrum.concentrations[1], 20);
    const BandMatrix &covariances = spectrum.covariances;
    EXPECT_EQ(covariances(0, 0), 9);
    EXPECT_TRUE(std::isnan(covariances(1, 1)));
    EXPECT_EQ(covariances(0, 1), 0);
    const auto series = reader->datastore()->series(spectrum.info.get());
    ASSERT_TRUE(series);
    EXPECT_EQ(series->front().record, reader->datastore()->at(0));
    EXPECT_EQ(reader->metadata()->instrumentSettings,
              (QVariantMap{{"id", 7}, {"deep", QVariantMap{{"kept", QVariantList{1, 2}}}}}));
    EXPECT_EQ(reader->metadata()->electrometerGroups.value("neg"), (Spectrometer::ChannelRange{1, 2}));
}

TEST_F(FileReading, RowsThatFallBetweenThoseOfOtherFilesFindTheirPlace)
{
    QByteArray even(currentsHeader), odd(currentsHeader), again(currentsHeader), shuffled(currentsHeader);
    for (int i = 0; i < 200; i += 2)
        even += row(i, QByteArray::number(i) + "\t0\t0\t0\t0\t0");
    for (int i = 1; i < 200; i += 2)
        odd += row(i, QByteArray::number(i) + "\t0\t0\t0\t0\t0", "particles");
    for (int i = 0; i < 200; ++i) {
        again += row(i, QByteArray::number(i) + "\t1\t0\t0\t0\t0", "late");
        shuffled += row(200 + i * 77 % 200, QByteArray::number(200 + i * 77 % 200) + "\t1\t0\t0\t0\t0");
    }
    write("1.currents", even);
    write("2.currents", odd);
    write("3.currents", again);
    write("4.currents", shuffled);
    read();
    ASSERT_EQ(recordCount(), 400);
    for (int i = 0; i < 400; ++i) {
        ASSERT_EQ(record(i).currents[0], i);
        ASSERT_EQ(record(i).currents[1], 1);
        ASSERT_EQ(modeOf(i), i % 2 && i < 200 ? "particles" : "ions");
    }
    EXPECT_EQ(reader->metadata()->opmodes.size(), 2) << "the mode of a row whose record is known isn't looked at";
}

TEST_F(FileReading, SeriesAreOrderedWhateverTheOrderOfRows)
{
    QByteArray text = spectraHeader("s", "h1", "[1, 2]");
    for (const int minute : {10, 30, 20, 0, 30})
        text += row(minute, QByteArray::number(minute) + "\t0\t0\t0");
    write("1.spectra", text);
    write("2.spectra", spectraHeader("s", "h1", "[1, 2]") + row(11, "11\t0\t0\t0"));
    read();
    ASSERT_EQ(reader->spectrumInfos().size(), 1) << "shared over files by its hash";
    const auto series = reader->datastore()->series(reader->spectrumInfos()[0].get());
    ASSERT_EQ(series->size(), 5u);
    const std::int64_t minute = 60 * ticksPerSecond;
    const std::int64_t gaps[] = {10 * minute, minute, minute, 9 * minute, 10 * minute};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ((*series)[i].spectrum->concentrations[0], (std::array<int, 5>{0, 10, 11, 20, 30})[i]);
        EXPECT_EQ((*series)[i].nearestGap, gaps[i]) << i;
    }
    EXPECT_EQ(record(4).spectra.size(), 2u) << "a row that stands twice gives two spectra";
}

TEST_F(FileReading, ComplaintsFoldOnlyWhileTheyAreEqual)
{
    QByteArray text(currentsHeader);
    for (int i = 0; i < 5000; ++i)
        text += i == 2500 ? row(i, "1\t2\t3\t4\t5\t6") : row(i, "1");
    write("1.currents", text);
    read();
    EXPECT_EQ(complaints(), QStringList("File 1.currents, rows 8 to 5007: 4 fields found, 9 expected"));

    write("1.currents", currentsHeader + row(0, "1") + row(1, "1\t2") + row(2, "1") + "# remark\n" + row(3, "1"));
    read();
    EXPECT_EQ(complaints().size(), 4);
}

TEST_F(FileReading, ARowCutOffInsideANumberWasTakenForAWholeOneInSilence)
{
    const QByteArray header(currentsHeader), whole = row(0, "1\t2\t3\t4\t5\t66.25");
    const struct {
        QByteArray text;
        int records;
        bool isTold;
    } cases[] = {
        {header + whole, 1, false},
        {header + whole.chopped(3), 1, true},
        {header + whole + row(1, "1\t2\t3\t4\t5\t6").chopped(1) + '\r', 2, true},
        {header + whole + "# remark", 1, false},
        {header + whole + header.chopped(1), 1, false},
        {whole.chopped(1), 0, false}, // of no block
    };
    for (const auto &c : cases) {
        for (const int count : {1, 2}) {
            threads = count;
            chunkBytes = 40;
            write("1.currents", c.text);
            read();
            EXPECT_EQ(recordCount(), c.records);
            EXPECT_EQ(complaints(), c.isTold
                                        ? QStringList("The last row of '1.currents' has no line end and may be cut off")
                                        : QStringList())
                << c.text.constData() << count;
        }
    }
}

TEST_F(FileReading, FlagsAreOneObjectOverBlocksButIdsHoldInOne)
{
    const QByteArray a("# flag a: low flow\n");
    write("1.flags", flagsHeader + a + row(0, "!a") + "# flag b: low flow\n# flag a: other\n" + row(1, "!b!a"));
    write("2.flags", flagsHeader + row(2, "!a") + a + row(3, "!a"));
    read();
    EXPECT_EQ(complaints(), QStringList("File 2.flags, row 4: Encounterend undefined flag ids"));
    EXPECT_EQ(messagesOf(1), QStringList({"low flow", "other"}));
    EXPECT_EQ(record(0).flags[0], record(1).flags[0]);
    EXPECT_EQ(record(0).flags[0], record(3).flags[0]);
}

TEST_F(FileReading, RowsOutsideOfTheLimitsArePassedOverInSilence)
{
    beginLimit = recordTimeFromTicks((18000 * 86400 + 120) * ticksPerSecond);
    endLimit = beginLimit + Ticks(120 * ticksPerSecond);
    QByteArray text(flagsHeader);
    for (int i = 0; i < 10; ++i)
        text += row(i, "");
    write("1.flags", text);
    read();
    EXPECT_EQ(recordCount(), 4) << "a row that touches a limit is inside";
    EXPECT_EQ(record(0).endTime, beginLimit);
    EXPECT_EQ(complaints(), QStringList());
    EXPECT_EQ(ignoredRows(), 0);
}

TEST_F(FileReading, AWideHeaderOverShortRowsDoesNotEatMemory)
{
    QByteArray names("# electrometer names: [");
    for (int i = 0; i < 10000; ++i)
        names += "e,";
    write("1.currents", "# Quilvane currents\n# total electrometers: 10000\n# electrometer groups: {}\n" + names +
                            "]\n# \nbegin_time\n");
    QByteArray rows(flagsHeader);
    for (int i = 0; i < 20000; ++i)
        rows += row(i, "");
    write("2.flags", rows);
    read();
    std::size_t bytes = 0;
    for (const auto &one : reader->datastore()->records())
        bytes += 4 * 8 * one->currents.size();
    EXPECT_LT(bytes, (64u << 20) + 1024u * std::size_t(recordCount()) + 10u * std::size_t(names.size() + rows.size()));
    ASSERT_EQ(complaints().size(), 1);
    EXPECT_TRUE(complaints()[0].endsWith("Record would hold too many values"));
}

TEST_F(FileReading, PropertiesOfFlagsDoNotEatMemory)
{
    QByteArray rows(flagsHeader);
    for (int i = 0; i < 1000; ++i)
        rows += "# flag " + QByteArray::number(i) + ": {type: warning, message: m" + QByteArray::number(i) + ", a: [" +
                QByteArray("0,").repeated(300) + "]}\n" + row(i, "!" + QByteArray::number(i));
    write("1.flags", rows);
    read();
    ASSERT_EQ(recordCount(), 1000);
    qint64 nodes = 0;
    for (const auto &one : reader->datastore()->records())
        nodes += Spectrometer::nodesOf(one->flags.at(0)->properties);
    EXPECT_LT(110 * nodes, (32 << 20) + qint64(rows.size()));
    EXPECT_EQ(record(0).flags[0]->message, "m0");
    EXPECT_TRUE(record(999).flags[0]->message.startsWith("{type: warning, message: m999")) << "a note of its text";
    EXPECT_TRUE(complaints().isEmpty());
}

TEST_F(FileReading, StatisticsCountLinesBytesAndWhatWasLost)
{
    const QByteArray text = "lost\n" + QByteArray(flagsHeader) + row(0, "") + "lost too\n";
    write("1.flags", text);
    read();
    EXPECT_EQ(reader->statistics().rows, 6);
    EXPECT_EQ(reader->statistics().bytes, text.size());
    EXPECT_EQ(ignoredRows(), 1) << "the last line was taken, and refused";
    EXPECT_EQ(complaints().size(), 1);
}

} // namespace
