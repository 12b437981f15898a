#include "llama/qyaml.h"
#include "support/files.h"

#include <QMap>
#include <QTemporaryDir>

#include <limits>

namespace {

using Llama::ListNode;
using Llama::MapNode;
using Llama::Node;
using Llama::NodeMissingError;
using Llama::NodeTypeError;

template<typename Error, typename Operation>
QString messageOf(Operation operation)
{
    try {
        operation();
    } catch (const Error &error) {
        return error.message();
    }
    return "no error";
}

const QString arrow = QString::fromUtf8(" \u2192 ");

MapNode tree()
{
    const QByteArray text = "spectra:\n- {name: a}\n- {name: b}\n- {name: [1, x, 2.5]}\n"
                            "number: 7\nreal: 1e5\nword: abc\nyes: on\nnothing:\nbig: 3.0e+9\n";
    return Node(Llama::yamlLoad(text).first(), "x.inverter").toMap();
}

TEST(Nodes, PathsNameThePlace)
{
    const Node name = tree().at("spectra").toList().at(2).toMap().at("name");
    EXPECT_EQ(name.path(), "x.inverter" + arrow + "spectra" + arrow + "[2]" + arrow + "name");
    EXPECT_EQ(Node(QVariant(QVariantMap{{"a", 1}})).toMap().at("a").path(), arrow + "a");
    EXPECT_EQ(messageOf<NodeTypeError>([&] { name.toList().toDoubleVector(); }), "no error")
        << "a text could be a number, and is 0 here";
    EXPECT_EQ(name.toList().toDoubleVector(), (std::vector<double>{1, 0, 2.5}));
    const ListNode list = tree().at("spectra").toList();
    EXPECT_EQ(messageOf<NodeTypeError>([&] { list.toDoubleVector(); }),
              "'x.inverter" + arrow + "spectra" + arrow + "[0]' must be double, but was QVariantMap");
}

TEST(Nodes, TypeErrors)
{
    const MapNode map = tree();
    const auto error = [&](auto operation) { return messageOf<NodeTypeError>(operation); };
    const QString root = "'x.inverter" + arrow;
    EXPECT_EQ(error([&] { map.at("nothing").toInt(); }), root + "nothing' must be int, but was ");
    EXPECT_EQ(error([&] { map.at("nothing").toList(); }), root + "nothing' must be QVariantList, but was ");
    EXPECT_EQ(error([&] { map.get("nothing").toMap(); }), root + "nothing' must be QVariantMap, but was ");
    EXPECT_EQ(error([&] { map.at("word").toList(); }), root + "word' must be QVariantList, but was QString");
    EXPECT_EQ(error([&] { map.at("number").toMap(); }), root + "number' must be QVariantMap, but was int");
    EXPECT_EQ(error([&] { map.at("spectra").toBool(); }), root + "spectra' must be bool, but was QVariantList");
    EXPECT_EQ(error([&] { map.at("spectra").toString(); }), root + "spectra' must be QString, but was QVariantList");
    EXPECT_EQ(error([&] { map.at("spectra").toByteArray(); }),
              root + "spectra' must be QByteArray, but was QVariantList");
    EXPECT_EQ(error([&] { map.at("number").requireString(); }), root + "number' must be QString, but was int");
    EXPECT_EQ(error([&] { map.at("spectra").toList().at(9).toInt(); }),
              root + "spectra" + arrow + "[9]' must be int, but was ");
    EXPECT_EQ(map.at("word").requireString(), "abc");
}

TEST(Nodes, ValuesThatCouldConvert)
{
    const MapNode map = tree();
    EXPECT_EQ(map.at("number").toInt(), 7);
    EXPECT_EQ(map.at("number").toString(), "7");
    EXPECT_EQ(map.at("number").toDouble(), 7.0);
    EXPECT_EQ(map.at("word").toDouble(), 0.0);
    EXPECT_EQ(map.at("real").value, QVariant("1e5"));
    EXPECT_EQ(map.at("real").toDouble(), 1e5);
    EXPECT_TRUE(map.at("true").toBool());
    EXPECT_EQ(map.at("word").toByteArray(), "abc");
}

TEST(Nodes, ADoubleBeyondTheRangeOfAnIntSaturates)
{
    constexpr int least = std::numeric_limits<int>::min(), greatest = std::numeric_limits<int>::max();
    for (const double huge : {3e9, 1e300, std::numeric_limits<double>::infinity(), 2147483647.0, 2147483646.6}) {
        EXPECT_EQ(Node(huge).toInt(), greatest) << huge;
        EXPECT_EQ(Node(-huge - 1).toInt(), least) << huge;
    }
    EXPECT_EQ(Node(std::nan("")).toInt(), 0);
    EXPECT_EQ(Node(2.6).toInt(), 3);
    EXPECT_EQ(Node(Llama::yamlLoad("12345678901").first()).toInt(), 0) << "an integer of too many digits stays 0";
}

TEST(Nodes, MissingKeys)
{
    const MapNode map = tree();
    EXPECT_EQ(messageOf<NodeMissingError>([&] { map.at("absent"); }), "'absent' was not found at x.inverter");
    EXPECT_EQ(messageOf<NodeMissingError>([&] { map.at(map.entries.constEnd()); }),
              "'<unknown>' was not found at x.inverter");
    EXPECT_EQ(map.at(map.entries.constFind("number")).toInt(), 7);
    EXPECT_FALSE(map.get("absent").exists);
    EXPECT_TRUE(map.get("nothing").exists);
    EXPECT_EQ(map.get("absent").path(), "x.inverter" + arrow + "absent");
    EXPECT_FALSE(map.get("absent").toList().exists);
    EXPECT_EQ(map.get("absent").toMap().get("deeper").toList().size(), 0);

    int number = 1;
    double real = 1;
    QString word = "old";
    EXPECT_TRUE(map.read("number", &number) && map.read("real", &real) && map.read("word", &word));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 1e5);
    EXPECT_EQ(word, "abc");
    EXPECT_FALSE(map.read("absent", &number) || map.read("absent", &real) || map.read("absent", &word));
    EXPECT_EQ(number, 7);
    EXPECT_THROW(map.read("spectra", &number), NodeTypeError);
    EXPECT_TRUE(map.value("absent", true));
    EXPECT_EQ(map.value("number", 1.5), 7.0);
    EXPECT_EQ(map.value("absent", "fallback"), "fallback");
    EXPECT_THROW(map.value("spectra", "fallback"), NodeTypeError);
}

TEST(Nodes, MadeWithoutAnIdentityHaveAnEmptyOne)
{
    EXPECT_EQ(Node().path(), "");
    EXPECT_EQ(Node(true, nullptr, 1).path(), "");
    EXPECT_EQ(ListNode().path(), "");
    EXPECT_EQ(MapNode(true, nullptr, {}).path(), "");
}

/// A folder of files held in memory.
struct Files : Llama::FileSource {
    QString directory() const override { return "pack.sinp"; }
    QByteArray read(const QString &name) const override { return files.value(name); }
    QMap<QString, QByteArray> files{{"one", "a: 1"}, {"two", "1\n---\n2"}, {"bad", "["}};
};

TEST(LoadYamlNode, FromFilesAndSources)
{
    using Llama::loadYamlNode;
    const auto error = [](auto operation) { return messageOf<Llama::NodeError>(operation); };
    const Files files;
    EXPECT_EQ(loadYamlNode("one", files).toMap().at("a").path(), "pack.sinp/one" + arrow + "a");
    EXPECT_EQ(error([&] { loadYamlNode("two", files); }), "File 'pack.sinp/two' has bad structure");
    EXPECT_EQ(error([&] { loadYamlNode("absent", files); }), "File 'pack.sinp/absent' has bad structure");
    EXPECT_TRUE(error([&] { loadYamlNode("bad", files); }).startsWith("(bad) parser error: "));

    const QTemporaryDir directory;
    const QString path = directory.filePath("x.yaml");
    EXPECT_EQ(error([&] { loadYamlNode(path); }),
              QString("File '%1' can not be opened: %2").arg(path, qt_error_string(ENOENT)));
    writeFile(path);
    EXPECT_EQ(error([&] { loadYamlNode(path); }), QString("File '%1' has bad structure").arg(path));
    writeFile(path, "a: 5");
    EXPECT_EQ(loadYamlNode(path).toMap().at("a").path(), path + arrow + "a");
    EXPECT_TRUE(error([&] { loadYamlNode(directory.path()); }).contains("can not be opened"));
}

} // namespace
