#include "llama/qyaml.h"
#include "support/files.h"

#include <QBuffer>
#include <QElapsedTimer>
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
    QElapsedTimer timer;
    timer.start();
    const std::string message = failure(text);
    EXPECT_LT(timer.elapsed(), 10000) << text.left(20).toStdString();
    return message;
}

TEST(YamlLoad, trees)
{
    const QVariantMap abc{{"a", 1}, {"b", QVariantList{1, 2.5, "x"}}, {"c", QVariant()}};
    EXPECT_EQ(loaded("c:\nb: [1, 2.5, x]\na: 1\n"), QVariant(abc));
    EXPECT_EQ(loaded("'1'"), QVariant("1")) << "quoted";
    EXPECT_EQ(loaded("\"a\\0b\""), QVariant(QString::fromLatin1("a\0b", 3)));
    EXPECT_EQ(loaded("|\n  yes\n"), QVariant("yes\n")) << "block";
    EXPECT_EQ(loaded("''"), QVariant(""));
    EXPECT_EQ(loaded("!!str 123"), QVariant(123)) << "tags are ignored";
    EXPECT_EQ(loaded("!!str \"123\""), QVariant(123));
    EXPECT_EQ(loaded("a: 1\na: 2\n'a': 3"), QVariant(QVariantMap{{"a", 3}})) << "the last of equal keys";
    EXPECT_EQ(loaded("on: 1\n1.50: 2\n0x10: 3\n16: 4"), QVariant(QVariantMap{{"true", 1}, {"1.5", 2}, {"16", 4}}));
    EXPECT_EQ(loaded(QByteArray("\xef\xbb\xbf") + "a: \"\xc2\xb5\""),
              QVariant(QVariantMap{{"a", QString::fromUtf8("\u00b5")}}));
    EXPECT_EQ(yamlLoad(""), QVariantList());
    EXPECT_EQ(yamlLoad("# nothing\n"), QVariantList());
    EXPECT_EQ(yamlLoad("1\n---\n2\n...\n"), (QVariantList{1, 2}));
    EXPECT_EQ(yamlLoad("---\n---\n"), (QVariantList{QVariant(), QVariant()}));
    EXPECT_EQ(yamlLoad("ab", 1), QVariantList{"a"});
}

TEST(YamlLoad, aliases)
{
    EXPECT_EQ(loaded("[&a {x: 1}, *a]"), QVariant(QVariantList{QVariantMap{{"x", 1}}, QVariantMap{{"x", 1}}}));
    EXPECT_EQ(loaded("[&a 1, &a 2, *a]"), QVariant(QVariantList{1, 2, 2}));
    EXPECT_EQ(yamlLoad("&a x\n---\n*a\n"), (QVariantList{"x", "x"})) << "anchors last from one document to the next";
    EXPECT_EQ(loaded("{&k key: 1, *k : 2}"), QVariant(QVariantMap{{"key", 2}}));
}

TEST(YamlLoad, messages)
{
    const std::pair<QByteArray, std::string> table[] = {
        {"a: *x", "Undefined alias 'x' at line 1, column 4"},
        {"a: &x [*x]", "Undefined alias 'x' at line 1, column 8"},
        {"a: 1\n<<: 2", "Unknown value at line 2, column 1"},
        {"? [a]\n: 1", "A mapping key that can't be represented as a string at line 1, column 3"},
        {"x: {~: 1}", "A mapping key that can't be represented as a string at line 1, column 5"},
        {"a: 'x",
         "Scanner error: while scanning a quoted scalar at line 1, column 4; found unexpected end of stream at line "
         "1, column 6"},
        {"[1, 2",
         "parser error: while parsing a flow sequence at line 1, column 1; did not find expected ',' or ']' at line "
         "2, column 1"},
        {"a: b: c", "Scanner error: mapping values are not allowed in this context at line 1, column 5"},
        {"[a]\n]", "parser error: did not find expected <document start> at line 2, column 1"},
        {"a: \xb5", "Reader error: invalid leading UTF-8 octet: #b5 at 3"},
        {QByteArray("a\0b", 3), "Reader error: control characters are not allowed: #0 at 1"},
    };
    for (const auto &[text, message] : table) {
        EXPECT_EQ(failure(text), message) << text.toStdString();
        EXPECT_EQ(failure(text, "%1 %2"), "(%1 %2) " + message);
    }
}

TEST(YamlLoad, nesting_is_bounded)
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

TEST(YamlLoad, nodes_are_bounded)
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

TEST(YamlLoad, foreign_texts_cost_little)
{
    QByteArray anchors;
    for (int i = 0; i < 50000; ++i)
        anchors += "- &a" + QByteArray::number(i) + " x\n";
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(loaded(anchors).toList().size(), 50000);
    EXPECT_LT(timer.elapsed(), 10000);

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

TEST(YamlLoad, devices_and_files)
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
