#pragma once

#include "support/files.h"
#include "util/timeformat.h"

#include <QDir>
#include <QMap>
#include <QSet>
#include <QTemporaryDir>

#include <cmath>
#include <random>

/// A data folder in which an instrument writes: a record each ten seconds of its own time, ions and particles in turn,
/// with spectra, in files of a day each. Rows come in parts, and at times it starts again with a header. One thread.
class GrowingFolder {
public:
    static constexpr int secondsPerRecord = 10;
    static constexpr int channels = 16, points = 28;

    explicit GrowingFolder(unsigned seed = 1) : m_random(seed) { QDir(m_folder.path()).mkdir("data"); }

    QString path() const { return m_folder.filePath("data"); }
    int count() const { return m_count; }
    /// Makes that many more records.
    void write(int records)
    {
        for (; records > 0; --records)
            writeRecord(m_count++);
    }
    /// Lets what was made arrive, or some of it.
    void flush(bool all)
    {
        for (auto file = m_waiting.begin(); file != m_waiting.end(); ++file) {
            const int size = all ? file->size() : int(m_random() % unsigned(file->size() + 1));
            QFile out(QDir(path()).filePath(file.key()));
            if (size == 0 || !out.open(QIODevice::Append))
                continue;
            out.write(file->left(size));
            file->remove(0, size);
        }
    }

private:
    static QByteArray timeText(qint64 number)
    {
        return timeToString(recordTimeFromTicks((1568246400 + number * secondsPerRecord) * ticksPerSecond)).toUtf8();
    }
    QByteArray numbers(int count)
    {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += '\t' + QByteArray::number(double(m_random() % 100000) * 0.01);
        return text;
    }
    void writeRecord(int number)
    {
        const QByteArray mode = number % 2 ? "particles" : "ions";
        const QByteArray begin = timeText(number);
        const QString day = QString::fromLatin1(begin.left(10)).remove('-') + "-block";
        const QByteArray head = begin + '\t' + timeText(number + 1) + '\t' + mode;
        QByteArray names, sizes;
        for (int i = 0; i < channels; ++i)
            names += "e" + QByteArray::number(i) + ", ";
        for (int i = 0; i < points; ++i)
            sizes += QByteArray::number(std::pow(10, i * 0.08), 'f', 3) + ", ";
        put(day + ".records",
            "# Quilvane records\n# opmodes: [ions, particles]\n# total electrometers: " + QByteArray::number(channels) +
                "\n# electrometer groups: {pos: [0, " + QByteArray::number(channels - 1) +
                "]}\n# electrometer names: [" + names + "]\n# parameters: [temperature, pressure]\nbegin_time\tflags\n",
            (m_random() % 20 ? QByteArray() : QByteArray("# flag f: {type: warning, message: hot}\n")) + head +
                numbers(4 * channels + 2) + "\t\n");
        put(day + '-' + mode + ".spectra",
            "# Quilvane spectra\n# spectra:\n# - {name: " + mode + ", xpoints: [" + sizes +
                "], xunit: nm, yunit: 1/cm^3, scale: radius, hash: " + mode + "}\nbegin_time\n",
            head + numbers(2 * points) + '\n');
    }
    void put(const QString &name, const QByteArray &header, const QByteArray &row)
    {
        QByteArray &waiting = m_waiting[name];
        if (!m_begun.contains(name) || m_random() % 200 == 0)
            waiting += header;
        m_begun.insert(name);
        waiting += row;
    }

    QTemporaryDir m_folder;
    std::minstd_rand m_random;
    int m_count = 0;
    QMap<QString, QByteArray> m_waiting;
    QSet<QString> m_begun;
};
