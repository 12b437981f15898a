#include "datafiles/reading/reading.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What a child process made of a read.
struct Outcome {
    qint64 grownBy; ///< bytes of resident memory at the most
    int records;
    int complaints;
    bool whole; ///< each record has its values, and each series its entries
    char lastComplaint[200];
};

QByteArray minuteRow(int i, const QByteArray &fields)
{
    const QByteArray time = "2019-09-" + QByteArray::number(1 + i / 1440).rightJustified(2, '0') + ' ' +
                            QByteArray::number(i / 60 % 24).rightJustified(2, '0') + ':' +
                            QByteArray::number(i % 60).rightJustified(2, '0') + ':';
    return time + "00\t" + time + "30\tions\t" + fields + '\n';
}

class ReadMemory : public Reading {
protected:
    void SetUp() override
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "the sanitizer's own memory would be measured";
#endif
        m_outcome = static_cast<Outcome *>(
            mmap(nullptr, sizeof(Outcome), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    }

    /// Reads the folder in a child process with at most `more` bytes of address space beyond what this one has. True if
    /// the child came to its end.
    bool readInChild(qint64 more = -1)
    {
        const pid_t child = fork();
        if (child == 0) {
            log = std::make_unique<LogCatcher>();
            reader = std::make_shared<FileReader>(FileReader::SpectrumMap(), beginLimit, endLimit);
            FileReaderTask task(reader, {filesIn(folder.path()), folder.path(), beginLimit, endLimit, QString()});
            const qint64 before = peak();
            if (more >= 0)
                limitAddressSpace(more);
            task.run();
            m_outcome->grownBy = peak() - before;
            describe();
            _exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << child;
        return status == 0;
    }
    const Outcome &outcome() const
    {
        return *m_outcome;
    }

private:
    static qint64 peak()
    {
        rusage usage;
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss * 1024;
    }
    static void limitAddressSpace(qint64 more)
    {
        const qint64 pages = contentOf("/proc/self/statm").split(' ').first().toLongLong();
        const rlim_t limit = rlim_t(pages * sysconf(_SC_PAGESIZE) + more);
        const rlimit limits{limit, RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &limits);
    }
    void describe()
    {
        const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &none);
        m_outcome->records = recordCount();
        m_outcome->complaints = complaints().size();
        qstrncpy(m_outcome->lastComplaint, complaints().isEmpty() ? "" : qPrintable(complaints().last()), 200);
        const Datastore &store = *reader->datastore();
        const auto &metadata = *reader->metadata();
        std::size_t spectra = 0, entries = 0;
        m_outcome->whole = store.recordSpans().size() == std::size_t(store.size());
        for (const auto &one : store.records()) {
            m_outcome->whole &= one && one->currents.size() == std::size_t(metadata.totalElectrometers) &&
                                one->variables.size() == std::size_t(metadata.variableCount);
            spectra += one ? one->spectra.size() : 0;
        }
        for (const auto *key : store.spectrumSeries().keys()) {
            const auto series = store.series(key);
            const RealVector weights = series->empty() ? RealVector() : key->totalWeights({});
            for (std::size_t i = 0; i < series->size(); ++i)
                m_outcome->whole &= store.totalDecades(key)[i] ==
                                    SpectMath::decadesOf(SpectMath::concentrationOf(*(*series)[i].spectrum, weights));
            m_outcome->whole &= store.histogram(key).total() == qint64(weights.size() * series->size()) &&
                                store.seriesSpans(key).size() == series->size();
            entries += series->size();
        }
        m_outcome->whole &= entries <= spectra;
    }

    Outcome *m_outcome = nullptr;
};

// ---- bounded by what the files hold

QByteArray aliasedGrids()
{
    QByteArray points, text;
    for (int i = 0; i < 1000; ++i)
        points += "1.5,";
    for (int header = 0; header < 1000; ++header) {
        text += "# Quilvane spectra\n# spectra:\n";
        for (int i = 0; i < 10; ++i)
            text += "# - {name: s" + QByteArray::number(header * 10 + i) +
                    ", xpoints: " + (i ? QByteArray("*p") : "&p [" + points + "]") +
                    ", xunit: nm, yunit: 1/cm^3, scale: radius}\n";
        text += "begin_time\n";
    }
    return text;
}

QByteArray newModes()
{
    QByteArray text;
    for (int header = 0; header < 100; ++header) {
        text += "# Quilvane flags\n# opmodes: [";
        for (int i = 0; i < 10000; ++i)
            text += 'm' + QByteArray::number(header * 10000 + i, 36) + ',';
        text += "]\nbegin_time\n";
    }
    return text;
}

QByteArray manySpectraOfOnePoint()
{
    QByteArray text("# Quilvane spectra\n# spectra:\n");
    for (int i = 0; i < 3000; ++i)
        text += "# - {name: s" + QByteArray::number(i) + ", xpoints: [1], xunit: nm, yunit: 1/cm^3, scale: radius}\n";
    text += "begin_time\n";
    for (int i = 0; i < 1000; ++i)
        text += minuteRow(i, QByteArray("\t").repeated(5999));
    return text;
}

QByteArray shortOldLines()
{
    return "#Only records\n" + QByteArray("#a\n").repeated(5000000) + "begintime,endtime,x\n";
}

TEST_F(ReadMemory, IsInProportionToTheFiles)
{
    const struct {
        const char *name;
        QByteArray (*text)();
    } cases[] = {
        {"grids shared by an alias over a thousand headers", aliasedGrids},
        {"headers of new modes", newModes},
        {"3000 spectra of one point a record", manySpectraOfOnePoint},
        {"lines of an old header", shortOldLines},
    };
    for (const auto &c : cases) {
        const QByteArray text = c.text();
        write("1.flags", text);
        ASSERT_TRUE(readInChild()) << c.name;
        const qint64 most = (qint64(64) << 20) + 1024 * outcome().records + 10 * qint64(text.size());
        EXPECT_LT(outcome().grownBy, most) << c.name;
    }
}

// ---- until there is none left

TEST_F(ReadMemory, ThatRunsOutCostsAMessageAndNothingElse)
{
    QByteArray currents("# Quilvane currents\n# total electrometers: 3\n# electrometer groups: {}\n"
                        "# electrometer names: [a, b, c]\n# opmodes: [ions]\nbegin_time\n");
    QByteArray spectra("# Quilvane spectra\n# spectra:\n");
    for (int i = 0; i < 20; ++i)
        spectra +=
            "# - {name: s" + QByteArray::number(i) + ", xpoints: [1,2], xunit: nm, yunit: 1/cm^3, scale: radius}\n";
    spectra += "begin_time\n";
    for (int i = 0; i < 4000; ++i) {
        currents += minuteRow(i, "1\t2\t3\t1\t2\t3\t1\t2\t3");
        spectra += minuteRow(i, QByteArray("1\t2\t3\t4\t").repeated(20));
    }
    write("1.currents", currents);
    write("2.spectra", spectra);
    ASSERT_TRUE(readInChild());
    ASSERT_EQ(outcome().records, 4000);
    ASSERT_TRUE(outcome().whole);
    const qint64 needed = outcome().grownBy + (16 << 20);
    int failed = 0;
    for (qint64 limit = needed; limit >= 0; limit -= needed / 30) {
        ASSERT_TRUE(readInChild(limit)) << limit;
        EXPECT_TRUE(outcome().whole) << limit;
        EXPECT_TRUE(outcome().records == 4000 || outcome().complaints > 0) << limit;
        failed += outcome().complaints > 0;
    }
    EXPECT_GT(failed, 10);
}

} // namespace
