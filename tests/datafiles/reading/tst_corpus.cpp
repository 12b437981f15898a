#include "datafiles/reading/reading.h"
#include "support/expected.h"
#include "util/timeformat.h"

namespace {

using Corpus = Reading;

template<typename Vector>
QString numbers(const char *name, const Vector &values)
{
    QStringList texts;
    for (std::size_t i = 0; i < std::min<std::size_t>(values.size(), 12); ++i)
        texts << QString::number(values[i], 'g', 9);
    return texts.isEmpty() ? QString() : QString(" | %1 %2").arg(name, texts.join(' '));
}

QString described(const Spectrometer::RecordMetadata &metadata)
{
    QString text = QString("electrometers: %1, %2")
                       .arg(metadata.totalElectrometers)
                       .arg(metadata.electrometerNames.toList().join(' '));
    for (auto group = metadata.electrometerGroups.begin(); group != metadata.electrometerGroups.end(); ++group)
        text += QString(" | %1 %2-%3").arg(group.key()).arg(group->first).arg(group->end);
    text += "\nvariables:";
    for (const auto &variable : metadata.variables)
        text += QString(" %1 = %2 (%3)").arg(variable->name, variable->humanname, variable->unit);
    return text.left(1000);
}

QString described(const Record &record, const Spectrometer::RecordMetadata &metadata)
{
    const auto time = [](RecordTime at, std::int64_t offset) {
        return timeToString(at, 0, "%Y-%m-%d %H:%M:%s") + utcOffsetToString(offset);
    };
    QString text = time(record.beginTime, record.beginUtcOffset) + ' ' + time(record.endTime, record.endUtcOffset) +
                   QString(" mode %1 %2").arg(record.opmode).arg(metadata.opmodeName(record.opmode)) +
                   numbers("currents", record.currents) + numbers("variances", record.currentVariances) +
                   numbers("raw", record.rawCurrents) + numbers("voltages", record.voltages) +
                   numbers("variables", record.variables);
    for (const auto &flag : record.flags)
        text += QString("\n  flag of type %1: %2").arg(QString::number(flag->type), flag->message.left(200));
    for (const auto &spectrum : record.spectra) {
        const SpectMath::SpectrumInfo &info = *spectrum->info;
        const BandMatrix &covariances = spectrum->covariances;
        RealVector diagonal(covariances.size1());
        for (std::size_t i = 0; i < diagonal.size(); ++i)
            diagonal[i] = covariances(i, i);
        text += "\n  spectrum " + info.name + " in " + info.concentrationUnit.toString() + " by " +
                info.mobilityUnit.toString() + numbers("mobilities", info.mobilities) + numbers("radii", info.radii) +
                numbers("values", spectrum->concentrations) + numbers("covariances", diagonal);
    }
    return text;
}

/// What a damaged or odd file gives, the lines that no reader took, and what is said of it, each thing once.
TEST_F(Corpus, EachFileComesToWhatIsExpectedOfIt)
{
    expectCorpus("dayfile", [this](const QString &path) {
        read({QFileInfo(path).fileName()}, QFileInfo(path).path());
        QStringList outcome{QString("records: %1").arg(recordCount()), QString("ignored rows: %1").arg(ignoredRows())};
        outcome << complaints() << described(*reader->metadata());
        for (int i = 0; i < std::min(recordCount(), 4); ++i)
            outcome << described(record(i), *reader->metadata());
        return outcome.join('\n') + '\n';
    });
}

TEST_F(Corpus, AllFilesInOneRead)
{
    const QString corpus = FUZZ_DIRECTORY "/corpus/dayfile";
    read(filesIn(corpus), corpus);
    EXPECT_GT(recordCount(), 0);
    const auto &metadata = *reader->metadata();
    for (const auto &one : reader->datastore()->records()) {
        ASSERT_EQ(one->currents.size(), std::size_t(metadata.totalElectrometers));
        ASSERT_EQ(one->variables.size(), std::size_t(metadata.variableCount));
    }
}

} // namespace
