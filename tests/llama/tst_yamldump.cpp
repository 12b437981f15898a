#include "llama/qyaml.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <random>

namespace {

using Llama::yamlDump;

TEST(YamlDump, Texts)
{
    const QVariantMap inner{{"x", 1}};
    const std::pair<QVariant, QByteArray> table[] = {
        {QVariantList{1, 2, 3}, "[1, 2, 3]\n"},
        {QVariantList{}, "[]\n"},
        {QVariantList{1, inner}, "- 1\n- x: 1\n"},
        {QVariantList{QVariantList{1, 2}, QStringList{"a", "no"}}, "- [1, 2]\n- [a, 'no']\n"},
        {QVariantMap{{"b", true}, {"a", false}}, "a: false\nb: true\n"},
        {QVariantMap{{"m", inner}, {"e", QVariantMap()}}, "e: {}\nm:\n  x: 1\n"},
        {QVariantMap{{"1", "1"}, {"on", "abc"}, {"", ""}}, "'': ''\n'1': '1'\n'on': abc\n"},
        {QVariantMap{{"a", 1.5}, {"b", 5.0}, {"c", 1e-7}}, "a: 1.5\nb: 5\nc: 1e-07\n"},
        {QVariantList{4294967297.0, -2147483649.0, 2147483647.0, -2147483648.0, 1e15, 1e300, 5000000000LL, 3000000000u},
         "[4294967297.0, -2147483649.0, 2147483647, -2147483648, 1e+15, 1e+300, 5000000000.0, 3000000000.0]\n"},
        {QVariantList{"yes", "1.5", "2019-01-01", "", "abc", "it's", "- x", "a: b"},
         "['yes', '1.5', '2019-01-01', '', abc, it's, '- x', 'a: b']\n"},
        {QVariantMap{{"a", QString::fromUtf8("\u00b5m \u2192")}}, "a: \u00b5m \u2192\n"},
        {QVariantMap{{"a", QString("word ").repeated(100) + "end"}},
         "a: " + QByteArray("word ").repeated(100) + "end\n"},
        {QVariantMap{{"a", QByteArray("yes")}}, "a: yes\n"},
    };
    for (const auto &[value, text] : table)
        EXPECT_EQ(yamlDump(value).toStdString(), text.toStdString());
}

TEST(YamlDump, ADeviceThatTakesTooFewBytesIsToldWithItsError)
{
    struct Full : QIODevice {
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *, qint64 size) override
        {
            setErrorString("No space left");
            return size / 2;
        }
    } device;
    ASSERT_TRUE(device.open(QIODevice::WriteOnly));
    static QStringList told;
    const auto former =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { told.append(text); });
    EXPECT_FALSE(yamlDump(QVariantList{1, 2}, &device));
    qInstallMessageHandler(former);
    EXPECT_EQ(told, QStringList("Yaml dump error \"No space left\""));
}

TEST(YamlDump, WhatCannotBeSaidFailsAsAWhole)
{
    for (const QVariant &value :
         {QVariant(), QVariant(QVariantMap{{"a", QVariant()}}), QVariant(QVariantList{1, QVariant()})}) {
        QBuffer buffer;
        ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
        EXPECT_FALSE(yamlDump(value, &buffer));
        EXPECT_TRUE(buffer.data().isEmpty());
        try {
            yamlDump(value);
            FAIL();
        } catch (const Llama::YamlError &error) {
            EXPECT_EQ(error.message(), "Failed to emit yaml document.");
        }
    }
    QBuffer closed;
    ASSERT_TRUE(closed.open(QIODevice::ReadOnly));
    EXPECT_FALSE(yamlDump(QVariant(1), &closed));
}

class RandomTrees {
public:
    QString text()
    {
        static const QStringList pieces =
            QString(
                "a_yes_1_._5_e+_0x_ _\n_\t_'_\"_#_: _- _?_[_]_{_,_&_*_!_%_\\_|_>_~_<<_=_--_..._@_`_:_\r_\x7f_\x01_ \n ")
                .split('_') +
            QStringList{QChar(0x2192), QChar(0x2028), QChar(0xfeff), QChar(0x85), QString::fromUtf8("\U0001f600"),
                        QChar(0)};
        QString text;
        for (unsigned i = below(6); i > 0; --i)
            text += pieces[int(below(unsigned(pieces.size())))];
        return text;
    }
    QVariant tree(int depth)
    {
        switch (below(depth > 0 ? 7 : 4)) {
        case 0:
            return int(m_random());
        case 1:
            return below(2) == 0;
        case 2:
        case 3:
            return text();
        case 4: {
            QVariantList items;
            for (unsigned i = below(4); i > 0; --i)
                items.append(tree(depth - 1));
            return items;
        }
        default: {
            QVariantMap entries;
            for (unsigned i = below(4); i > 0; --i)
                entries.insert(text(), tree(depth - 1));
            return entries;
        }
        }
    }

private:
    unsigned below(unsigned bound) { return unsigned(m_random()) % bound; }
    std::mt19937 m_random{5};
};

TEST(YamlDump, IsReadBackAsItWas)
{
    RandomTrees trees;
    for (int round = 0; round < 20000; ++round) {
        const QVariant tree = trees.tree(4);
        const QByteArray text = yamlDump(tree);
        try {
            ASSERT_EQ(Llama::yamlLoad(text), QVariantList{tree}) << text.toStdString();
        } catch (const Llama::YamlError &error) {
            FAIL() << error.message().toStdString() << "\n" << text.toStdString();
        }
    }
}

} // namespace
