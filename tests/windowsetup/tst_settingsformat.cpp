#include "windowsetup/settingsformat.h"

#include "support/files.h"
#include "support/fulldisk.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <unistd.h>

namespace {

class SettingsFormat : public testing::Test {
protected:
    QString path(const char *name = "s.ini") const { return m_folder.filePath(name); }
    /// What a later start of the program finds, by Qt's own format.
    QVariant found(const QString &key)
    {
        const QString copy = path(QByteArray::number(++m_copies).constData());
        QFile::copy(path(), copy);
        return QSettings(copy, QSettings::IniFormat).value(key);
    }

private:
    QTemporaryDir m_folder;
    int m_copies = 0;
};

/// The order is free.
std::string sortedLines(const QString &path)
{
    QList<QByteArray> lines = contentOf(path).split('\n');
    std::sort(lines.begin(), lines.end());
    return lines.join('\n').toStdString();
}

QSettings::Status store(const QString &path, const QString &key, const QVariant &value)
{
    QSettings settings(path, WindowSetup::settingsFormat());
    settings.setValue(key, value);
    settings.sync();
    return settings.status();
}

} // namespace

TEST_F(SettingsFormat, WritesWhatQtWrites)
{
    const QVariantMap map{{"a", QDateTime({2019, 9, 12}, {12, 0})}, {"b,", QVariantList{1, "x"}}};
    QByteArray all;
    for (int c = 0; c < 256; ++c)
        all += char(c);
    const QVariantMap values{{"plain", "word"},
                             {"General/own", "x"},
                             {"group/deep er/ключ", "  a;b=c, \"d\"\\\n\x01"
                                                    "f  "},
                             {"text", QString::fromUtf8("µ€\x01"
                                                        "1 @")},
                             {"at", "@Invalid()"},
                             {"nul", QString("a") + QChar(0) + "1"},
                             {"empty", ""},
                             {"bytes", all},
                             {"list", QStringList{"a", "", "b, c", " d"}},
                             {"one", QStringList{"a, b"}},
                             {"none", QStringList{}},
                             {"time", map["a"]},
                             {"choices", QVariantList{map, map}},
                             {"choice", QVariantList{map}}};
    QSettings own(path(), WindowSetup::settingsFormat()), qts(path("qt.ini"), QSettings::IniFormat);
    for (auto it = values.begin(); it != values.end(); ++it) {
        own.setValue(it.key(), it.value());
        qts.setValue(it.key(), it.value());
    }
    own.sync();
    qts.sync();
    EXPECT_EQ(own.status(), QSettings::NoError);
    EXPECT_EQ(sortedLines(path()), sortedLines(path("qt.ini")));
}

TEST_F(SettingsFormat, AFullDiskCostsNoSettings)
{
    ASSERT_EQ(store(path(), "kept", "here"), QSettings::NoError);
    {
        const FullDisk disk(100);
        EXPECT_EQ(store(path(), "more", QByteArray(500, 'x')), QSettings::AccessError);
    }
    EXPECT_EQ(found("kept"), "here");
    EXPECT_EQ(store(path(), "less", 1), QSettings::NoError);
    EXPECT_EQ(found("kept"), "here");
}

TEST_F(SettingsFormat, KeysThatCouldNotBeReadAreNotWrittenOver)
{
    writeFile(path(), "[General]\nkept=here\n");
    const int free = ::dup(0);
    ::close(free);
    rlimit old{};
    getrlimit(RLIMIT_NOFILE, &old);
    const rlimit oneMore{rlim_t(free) + 1, old.rlim_max}; // the file's own; what it is read into is another
    setrlimit(RLIMIT_NOFILE, &oneMore);
    QSettings settings(path(), WindowSetup::settingsFormat());
    setrlimit(RLIMIT_NOFILE, &old);
    settings.setValue("new", 1);
    settings.sync();
    EXPECT_NE(settings.status(), QSettings::NoError);
    EXPECT_EQ(found("kept"), "here");
    EXPECT_FALSE(found("new").isValid());
}

TEST_F(SettingsFormat, WhatOthersWroteAndWhatWasRemovedIsMerged)
{
    ASSERT_EQ(store(path(), "mine", 1), QSettings::NoError);
    QSettings settings(path(), WindowSetup::settingsFormat());
    writeFile(path(), "[General]\nmine=1\nother=later\n");
    settings.remove("mine");
    settings.sync();
    EXPECT_EQ(settings.status(), QSettings::NoError);
    EXPECT_FALSE(found("mine").isValid());
    EXPECT_EQ(found("other"), "later");
}

TEST_F(SettingsFormat, ANamelessLockOfAKilledProcessHeldUpTheNextStartForHalfAMinute)
{
    const struct {
        QByteArray text;
        int ms; ///< its age
        bool isRemoved;
    } locks[] = {{"", 1000, true},
                 {"", 0, false},
                 {"1\nmorvantide\nhost\nid", 1000, true},
                 {"1\nmorvantide\nhost\n", 1000, false}};
    for (const auto &lock : locks) {
        writeFile(path("s.ini.lock"), lock.text);
        QFile file(path("s.ini.lock"));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(QDateTime::currentDateTime().addMSecs(-lock.ms), QFile::FileModificationTime));
        WindowSetup::removeNamelessLock(path());
        EXPECT_EQ(QFile::exists(path("s.ini.lock")), !lock.isRemoved) << lock.text.constData() << lock.ms;
    }
}
