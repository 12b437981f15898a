#include "datafiles/reading/reading.h"

namespace {

/// What one damaged or odd file must come to: the records it gives, the lines that no reader took, and what is said of
/// it, each thing once.
struct Case {
    const char *file;
    int records;
    int ignoredRows;
    QStringList complaints;
};

class Corpus : public Reading {
protected:
    const QString corpus = QStringLiteral(CORPUS_DIRECTORY);
};

const QList<Case> &cases();

TEST_F(Corpus, each_file_gives_its_records_and_its_complaints_once)
{
    for (const Case &c : cases()) {
        read({QString::fromLatin1(c.file)}, corpus);
        EXPECT_EQ(recordCount(), c.records) << c.file;
        EXPECT_EQ(ignoredRows(), c.ignoredRows) << c.file;
        EXPECT_EQ(complaints().join('\n').toStdString(), c.complaints.join('\n').toStdString()) << c.file;
    }
}

TEST_F(Corpus, each_file_is_in_the_table)
{
    QStringList known;
    for (const Case &c : cases())
        known.append(QString::fromLatin1(c.file));
    known.sort();
    EXPECT_EQ(QDir(corpus).entryList(QDir::Files, QDir::Name).join('\n').toStdString(), known.join('\n').toStdString());
}

TEST_F(Corpus, all_files_in_one_read)
{
    read(QDir(corpus).entryList(QDir::Files), corpus);
    EXPECT_GT(recordCount(), 0);
    const auto &metadata = *reader->metadata();
    for (const auto &one : reader->datastore()->records()) {
        ASSERT_EQ(one->currents.size(), std::size_t(metadata.totalElectrometers));
        ASSERT_EQ(one->variables.size(), std::size_t(metadata.variableCount));
    }
}

#include "datafiles/reading/corpustable.h"

} // namespace
