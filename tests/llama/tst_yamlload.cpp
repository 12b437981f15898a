#include "llama/qyaml.h"
#include "support/expected.h"
#include "support/processorclock.h"

#include <QBuffer>
#include <QDebug>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

using Llama::yamlLoad;

/// The one document of the text.
QVariant loaded(const QByteArray &text)
{
    const QVariantList documents = yamlLoad(text);
    EXPECT_EQ(documents.size(), 1) << text.toStdString();
    return documents.value(0);
}

/// The words of the error that this ends with.
template<typename Operation>
std::string errorOf(Operation operation)
{
    try {
        operation();
    } catch (const Llama::YamlError &error) {
        return error.message().toStdString();
    }
    return "no error";
}

std::string failure(const QByteArray &text, const QString &sourceName = QString())
{
    return errorOf([&] { yamlLoad(text, sourceName); });
}

/// Runs in well under the seconds that libyaml alone would take.
std::string promptFailure(const QByteArray &text)
{
    const ProcessorClock timer;
    const std::string message = failure(text);
    EXPECT_LT(timer.milliseconds(), 10000) << text.left(20).toStdString();
    return message;
}

TEST(YamlLoad, FilesOfTheCorpusComeToWhatIsExpectedOfThem)
{
    expectCorpus("yaml", [](const QString &path) {
        QString tree;
        const std::string error = errorOf([&] {
            for (const QVariant &document : yamlLoad(contentOf(path)))
                QDebug(&tree).nospace() << document << '\n';
        });
        return (tree.size() > 5000 ? tree.left(100) + "...\n" : tree) + QString::fromStdString(error) + '\n';
    });
}

TEST(YamlLoad, SizesAndNamesOfSources)
{
    EXPECT_EQ(yamlLoad("ab", 1), QVariantList{"a"});
    EXPECT_EQ(failure("a: *x", "%1 %2"), "(%1 %2) Undefined alias 'x' at line 1, column 4");
}

TEST(YamlLoad, NestingIsBounded)
{
    EXPECT_EQ(loaded(QByteArray(200, '[') + QByteArray(200, ']')).toList().size(), 1);
    EXPECT_EQ(failure(QByteArray(201, '[') + QByteArray(201, ']')), "Too much nesting at line 1, column 201");
    EXPECT_EQ(promptFailure(QByteArray(100000, '[')), "Too much nesting at line 1, column 201");
    EXPECT_EQ(promptFailure(QByteArray("{a: ").repeated(30000)), "Too much nesting at line 1, column 801");
    EXPECT_EQ(promptFailure(QByteArray("- ").repeated(50000)), "Too much nesting at line 1, column 401");
    EXPECT_EQ(promptFailure(QByteArray("? ").repeated(50000)), "Too much nesting at line 1, column 401");

    QByteArray chain = "- &a0 x\n"; // each alias one level deeper than the one before
    for (int i = 1; i <= 250; ++i)
        chain += "- &a" + QByteArray::number(i) + " [*a" + QByteArray::number(i - 1) + "]\n";
    EXPECT_EQ(failure(chain), "Too much nesting at line 201, column 10");
}

TEST(YamlLoad, NodesAreBounded)
{
    QByteArray laughs = "a0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
    for (int i = 1; i < 12; ++i) {
        const QByteArray alias = "*a" + QByteArray::number(i - 1);
        const QByteArray name = "a" + QByteArray::number(i);
        laughs += name + ": &" + name + " [" + (alias + ", ").repeated(9) + alias + "]\n";
    }
    EXPECT_EQ(promptFailure(laughs), "Too many nodes at line 4, column 35");
    EXPECT_EQ(loaded("a: &a [1, 2, 3, 4, 5, 6, 7, 8]\nb: [*a, *a, *a, *a, *a, *a]\n").toMap().size(), 2);
    EXPECT_EQ(promptFailure("[&a [" + QByteArray("1,").repeated(5000) + "1]" + QByteArray(",*a").repeated(10000) + "]"),
              "Too many nodes at line 1, column 10243");

    // A text of anchors alone takes twice the memory of one without.
    const auto bounded = [](const char *text, qint64 mostNodes) {
        return errorOf([&] { EXPECT_FALSE(yamlLoad(text, QString(), mostNodes).isEmpty()); });
    };
    EXPECT_EQ(bounded("[x, y]", 3), "no error");
    EXPECT_NE(bounded("[&a x, &b y]", 3), "no error");
    EXPECT_EQ(bounded("[&a x, &b y]", 4), "no error");
}

TEST(YamlLoad, ForeignTextsCostLittle)
{
    QByteArray anchors;
    for (int i = 0; i < 50000; ++i)
        anchors += "- &a" + QByteArray::number(i) + " x\n";
    const ProcessorClock timer;
    EXPECT_EQ(loaded(anchors).toList().size(), 50000);
    EXPECT_LT(timer.milliseconds(), 10000);

    QByteArray directives;
    for (int i = 0; i < 50000; ++i)
        directives += "%TAG !a" + QByteArray::number(i) + "! b\n";
    EXPECT_EQ(promptFailure(directives + "--- x\n"), "Too many directives");
    EXPECT_EQ(loaded("%YAML 1.1\n%TAG !a! b\n--- x\n"), QVariant("x"));
    EXPECT_EQ(loaded("[" + QByteArray("50 %,\n").repeated(500) + "]").toList().size(), 500);
}

/// Fails at the second read.
struct BrokenDevice : QIODevice {
    qint64 readData(char *data, qint64) override
    {
        if (m_read)
            return -1;
        m_read = true;
        *data = 'a';
        return 1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }
    bool m_read = false;
};

TEST(YamlLoad, DevicesAndFiles)
{
    QByteArray text = "[" + QByteArray("abc, ").repeated(20000) + "abc]";
    QBuffer buffer(&text);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    EXPECT_EQ(yamlLoad(&buffer).value(0).toList().size(), 20001);

    BrokenDevice broken;
    ASSERT_TRUE(broken.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    EXPECT_EQ(errorOf([&] { yamlLoad(&broken, "x"); }), "(x) Reader error: input error at 0");

    const QTemporaryDir directory;
    const auto fileFailure = [](const QString &path) {
        return QString::fromStdString(errorOf([&] { Llama::yamlLoadFile(path); }));
    };
    EXPECT_EQ(fileFailure("/no/file"), "Could not open file '/no/file'");
    EXPECT_EQ(fileFailure(directory.path()), QString("Could not open file '%1'").arg(directory.path()));
    const QString pipe = directory.filePath("pipe");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(fileFailure(pipe), QString("Could not open file '%1'").arg(pipe)) << "and doesn't wait for a writer";
    const QString path = directory.filePath("x.yaml");
    writeFile(path, "[");
    EXPECT_TRUE(fileFailure(path).startsWith("(x.yaml) parser error: ")) << fileFailure(path).toStdString();
}

} // namespace
