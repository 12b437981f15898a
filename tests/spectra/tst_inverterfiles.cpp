#include "spectra/inverterfiles.h"

#include "demo/zipwriter.h"
#include "inverterfixture.h"
#include "support/expected.h"
#include "support/files.h"
#include "support/processorclock.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QTextStream>

#include <random>

#include <sys/stat.h>

using namespace SpectMath;
using Demo::ZipWriter;

namespace {

/// A folder of inverter files, maps and packs, and what loading makes of them.
class InverterFiles : public ::testing::Test {
protected:
    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = dir.filePath(name);
        writeFile(path, bytes);
        return path;
    }
    InverterList load(const QString &path)
    {
        errors.clear();
        return loadInverters(path, unitTable(), &errors);
    }
    /// The one complaint that a text as an inverter file comes to.
    QString complaintOf(const QByteArray &text)
    {
        EXPECT_TRUE(load(write("x.sinv", text)).empty());
        EXPECT_EQ(errors.size(), 1) << text.left(60).constData();
        return errors.value(0).replace(dir.path(), "DIR");
    }

    QTemporaryDir dir;
    QStringList errors;
};

/// Settings and description in lines of text.
QString described(const Inverter &inverter)
{
    const InverterSettings &s = inverter.settings();
    const SpectrumInfo &i = *inverter.info();
    QString text;
    QTextStream out(&text);
    const auto write = [&out](const char *name, const auto &numbers) {
        out << name;
        for (const double number : numbers)
            out << ' ' << number;
        out << '\n';
    };
    out << "name " << i.name << ", mode " << i.opmode << ", group " << i.electrometerGroup << ", inverter "
        << i.inverterName << ", comment " << i.comment << ", unit " << i.concentrationUnit.name << '\n';
    write("mobilities", i.mobilities);
    write("radii", i.radii);
    out << s.instrumentMatrix.size1() << " x " << s.instrumentMatrix.size2() << '\n';
    write("matrix", s.instrumentMatrix.data());
    write("post-transform", s.postTransform.data());
    write("smoothing", std::initializer_list<double>{s.smoothing, s.regulSmoothingCoef});
    write("regularisation",
          std::initializer_list<double>{s.initialRegulCoef, s.nextRegulCoef, s.hasRegulLimit ? s.regulLimit : noValue});
    write("removal", std::initializer_list<double>{double(s.negRemoveIterations), s.negRemoveCoef});
    out << (s.regulOffDiagCorrection ? "off-diagonal correction, " : "") << (s.negSignalBias ? "bias" : "no bias")
        << '\n';
    write("total weights", s.totalWeights);
    return text;
}

TEST_F(InverterFiles, OfTheCorpusComeToWhatIsExpectedOfThem)
{
    expectCorpus("inverter", [](const QString &path) {
        const QByteArray bytes = contentOf(path);
        try {
            const auto inverter = readInverterText(bytes, "DIR/x.sinv", unitTable());
            EXPECT_EQ(inverter->info()->hash.toLatin1(),
                      QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
            EXPECT_EQ(inverter->info()->inverterData, bytes);
            return described(*inverter);
        } catch (const InverterFileError &error) {
            return error.message() + '\n';
        } catch (const UnitParsingError &error) {
            return "unit: " + error.message() + '\n';
        }
    });
}

TEST_F(InverterFiles, ThatAreBadCostThemselvesAndTellTheirPath)
{
    EXPECT_EQ(complaintOf("- 1"), "File 'DIR/x.sinv' has bad structure");
    EXPECT_THROW(load(write("u.sinv", inverterText().replace("yunit: 1/cm^3", "yunit: furlong"))), UnitParsingError);
    EXPECT_TRUE(load(dir.filePath("absent/x.sinv")).empty());
    EXPECT_EQ(errors, QStringList{"Path '" + dir.filePath("absent/x.sinv") + "' does not exist"});
}

TEST_F(InverterFiles, MapsFoldersAndPacks)
{
    write("sub/one.sinv", inverterText(3, "one"));
    write("sub/two.inverter", inverterText(3, "two"));
    write("sub/readme.txt", "not an inverter");
    write("map.invmap",
          "ions: {neg: sub/two.inverter, pos: sub/one.sinv}\nparticles: sub/one.sinv\nself: map.invmap\nall: sub\n");
    const auto named = load(dir.filePath("map.invmap"));
    ASSERT_EQ(named.size(), 2u) << "the folder, and nothing of what it holds again";
    EXPECT_NE(named[0]->info()->name, named[1]->info()->name);
    EXPECT_TRUE(errors.isEmpty());

    EXPECT_THROW(load(write("list.invmap", "[a]\n")), InverterFileError);
    EXPECT_THROW(load(write("number.invmap", "a: {b: 5}\n")), InverterFileError);
    EXPECT_THROW(load(write("inner.invmap", "a: [b]\n")), InverterFileError);

    ZipWriter zip;
    zip.add("opmode1/a.sinv", inverterText(3, "a")).add("opmode10/b.inverter", inverterText(3, "b"));
    zip.add("opmode2/c.sinv", inverterText(3, "c")).add("opmode2/d.sinv", "").add("opmode2/notes.txt", "x");
    const QString pack = write("pack.sinp", zip.finish());
    EXPECT_EQ(load(pack).size(), 3u);
    EXPECT_EQ(errors, QStringList{"Unable to read inverters from '" + pack + "/opmode2/d.sinv'"});
    EXPECT_EQ(load(pack + "/opmode1").size(), 2u) << "a prefix is no folder";
    EXPECT_EQ(load(pack + "/opmode2/c.sinv").size(), 1u);
    EXPECT_EQ(load(pack + "/")[0]->info()->inverterName, "a.sinv");
    EXPECT_TRUE(load(pack + "/nothing").empty());
    EXPECT_EQ(errors, QStringList{"Unable to read inverters from '" + pack + "/nothing'"});
    write("broken.zip", "this is no archive");
    load(dir.filePath("broken.zip"));
    EXPECT_EQ(errors, QStringList{"Unable to read inverters from '" + dir.filePath("broken.zip") + "'"});
}

TEST_F(InverterFiles, APathThatAMapNamesManyTimesIsReadOnce)
{
    write("one.sinv", inverterText(3, "one"));
    write("two.sinv", "format: 7\n");
    write("pack.zip", ZipWriter().add("a.sinv", inverterText(3, "a")).add("b.sinv", inverterText(3, "b")).finish());
    QFile::link(dir.filePath("one.sinv"), dir.filePath("link.sinv"));
    QByteArray map = "w: pack.zip/a\nx: pack.zip\ny: absent.sinv\nz: link.sinv\n";
    for (int i = 100; i < 200; ++i)
        map += "a" + QByteArray::number(i) + ": {two: two.sinv, one: ./one.sinv, gone: absent.sinv}\n";
    QStringList names;
    for (const auto &inverter : load(write("map.invmap", map)))
        names << inverter->info()->name;
    EXPECT_EQ(names, QStringList({"one", "a", "b"}));
    EXPECT_EQ(errors, QStringList({"Path '" + dir.filePath("absent.sinv") + "' does not exist",
                                   "Inverter requires a newer Morvantide/Quilvane."}));
}

TEST_F(InverterFiles, PipesAreToldAndNotWaitedFor)
{
    for (const char *name : {"p.zip", "p.sinp", "p.sinv", "p.inverter"})
        ASSERT_EQ(::mkfifo(dir.filePath(name).toLocal8Bit(), 0600), 0);
    write("map.invmap", "a: p.zip\nb: p.sinv\nc: p.inverter\n");
    EXPECT_TRUE(load(dir.filePath("map.invmap")).empty());
    EXPECT_EQ(errors.join('\n').replace(dir.path(), "DIR"), "Unable to open inverter pack 'DIR/p.zip'\n"
                                                            "Could not open file 'DIR/p.sinv'\n"
                                                            "Could not open file 'DIR/p.inverter'");
    load(dir.filePath("p.sinp/entry"));
    EXPECT_EQ(errors, QStringList{"Path '" + dir.filePath("p.sinp/entry") + "' does not exist"});
    ASSERT_EQ(::mkfifo(dir.filePath("p.invmap").toLocal8Bit(), 0600), 0);
    EXPECT_THROW(load(dir.filePath("p.invmap")), InverterFileError);
}

TEST_F(InverterFiles, ABombCostsItsEntry)
{
    ZipWriter zip;
    for (int i = 0; i < 10; ++i)
        zip.add("bomb" + QByteArray::number(i) + ".sinv", QByteArray(15 << 20, '#'));
    zip.add("good.sinv", inverterText());
    const ProcessorClock timer;
    EXPECT_EQ(load(write("bombs.zip", zip.finish())).size(), 1u) << "and no more";
    EXPECT_EQ(errors.size(), 10);
    EXPECT_EQ(complaintOf(QByteArray((16 << 20) + 1, ' ')), "File 'DIR/x.sinv' has bad structure");
    EXPECT_LT(timer.milliseconds(), 20000);
}

TEST_F(InverterFiles, LawfulMatricesOfTheLargestSizeAreReadAndMoreNodesAreNot)
{
    const auto matrix = [](int side) {
        const QByteArray row = "[" + QByteArray("0,").repeated(side - 1) + "0],\n";
        const QByteArray size = QByteArray::number(side);
        return "{rows: " + size + ", cols: " + size + ", data: [" + row.repeated(side).chopped(2) + "]}\n";
    };
    const QByteArray small = inverterText(1);
    // That matrices don't fit each other is told at an inversion.
    const QByteArray largest =
        "posttransform: " + matrix(largestMatrixSide) +
        "instrument_matrix: {rows: 1, cols: 1, data: [[1]]}\nspare: " + matrix(largestMatrixSide) +
        small.mid(small.indexOf("name: "));
    EXPECT_EQ(load(write("largest.sinv", "format: 1\n" + largest)).size(), 1u) << errors.join('\n').toStdString();
    EXPECT_TRUE(complaintOf("[" + QByteArray("a,").repeated(2'200'000) + "a]").contains("Too many nodes at line 1"));
    EXPECT_TRUE(complaintOf("a: [" + QByteArray("a,").repeated(2'050'000) + "a]").contains("was not found"));
}

TEST_F(InverterFiles, OnePathInflatesToABoundedSizeInAll)
{
    // Each within its own bound and below the ratio of a bomb.
    QByteArray noise(1 << 19, '\0');
    std::mt19937 random(1);
    for (char &c : noise)
        c = char('a' + random() % 26);
    ZipWriter zip;
    for (int i = 0; i < 20; ++i)
        zip.add("e" + QByteArray::number(i) + ".sinv", "#" + noise.repeated(2) + QByteArray(14 << 20, '#'));
    int met = 0;
    QStringList told;
    loadInverters(write("pack.zip", zip.finish()), unitTable(), &told, [&met](const QString &) { return ++met > 0; });
    EXPECT_EQ(met, 1 + 20);
    EXPECT_EQ(told.filter("has bad structure").size(), 17) << "of 15 MB each";
    EXPECT_EQ(told.filter("Unable to read inverters from").size(), 3);
}

TEST_F(InverterFiles, LoadingEndsWhereItsStepSaysSo)
{
    write("sub/a.sinv", inverterText(3, "a"));
    write("pack.zip", ZipWriter().add("b.sinv", inverterText(3, "b")).add("c.sinv", inverterText(3, "c")).finish());
    const QStringList paths{dir.filePath("sub"), dir.filePath("pack.zip"), dir.filePath("sub/a.sinv")};
    for (std::size_t steps = 0; steps < 8; ++steps) {
        QStringList met, told;
        const auto list = loadChosenInverters(paths, unitTable(), &told, [&](const QString &path) {
            if (std::size_t(met.size()) == steps)
                return false;
            met << path;
            return true;
        });
        EXPECT_EQ(met.size(), std::min(steps, std::size_t(6)));
        const std::size_t inverters[] = {0, 0, 1, 1, 2, 3, 4, 4};
        EXPECT_EQ(list.size(), inverters[steps]) << steps;
        EXPECT_TRUE(told.isEmpty());
    }
}

} // namespace
