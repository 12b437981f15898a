#include "datafiles/reading/reading.h"

namespace {

class Corpus : public Reading {
protected:
    const QString corpus = QStringLiteral(FUZZ_DIRECTORY "/corpus/dayfile");
    const QString expected = QStringLiteral(FUZZ_DIRECTORY "/expected/dayfile");
};

/// The records that a damaged or odd file gives, the lines that no reader took, and what is said of it, each thing
/// once.
TEST_F(Corpus, each_file_comes_to_what_is_expected_of_it)
{
    for (const QString &file : filesIn(corpus)) {
        read({file}, corpus);
        QString outcome = QStringLiteral("records: %1\nignored rows: %2\n").arg(recordCount()).arg(ignoredRows());
        for (const QString &complaint : complaints())
            outcome += complaint + '\n';
        EXPECT_EQ(outcome.toStdString(), contentOf(expected + '/' + file + ".expected").toStdString())
            << file.toStdString();
    }
    EXPECT_EQ(filesIn(expected).size(), filesIn(corpus).size()) << "something is expected of a file that isn't there";
}

TEST_F(Corpus, all_files_in_one_read)
{
    read(filesIn(corpus), corpus);
    EXPECT_GT(recordCount(), 0);
    const auto &metadata = *reader->metadata();
    for (const auto &one : reader->datastore()->records()) {
        ASSERT_EQ(one->currents.size(), std::size_t(metadata.totalElectrometers));
        ASSERT_EQ(one->variables.size(), std::size_t(metadata.variableCount));
    }
}

} // namespace
