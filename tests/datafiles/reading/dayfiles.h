#pragma once

#include "support/seeds.h"
#include "util/timeformat.h"

/// Makes day files at random: some blocks of a kind, sound for the greater part.
template<class Fixture>
class DayFiles : public Seeded<Fixture> {
protected:
    using Seeded<Fixture>::pick;

    template<typename T>
    T one(std::initializer_list<T> of)
    {
        return *(of.begin() + pick(0, int(of.size()) - 1));
    }
    bool chance(int percent) { return pick(1, 100) <= percent; }

    QByteArray dayFile()
    {
        const int kind = pick(0, 5);
        QByteArray text;
        for (int blocks = pick(1, 3); blocks > 0; --blocks)
            text += block(kind);
        if (chance(20))
            text.chop(pick(0, text.size() / 4));
        return text;
    }
    void damage(QByteArray &text)
    {
        for (int i = pick(1, 20); i > 0 && !text.isEmpty(); --i)
            text[pick(0, text.size() - 1)] = one({'\n', '\t', '#', '\r', '\0', ',', '9', '"'});
    }

private:
    QByteArray block(int kind)
    {
        const int channels = chance(95) ? 3 : 4;
        const QByteArray names = variables();
        const int p = names.isEmpty() ? 0 : names.count(',') + 1;
        const QByteArray described = electrometers(channels) + "# parameters: [" + names + "]\n";
        const QByteArray modes(one({"", "# opmodes: [ions, particles]\n", "# opmodes: [particles]\n"}));
        const bool more = chance(50); // than the least columns
        switch (kind) {
        case 0:
            return "# Quilvane records\n" + modes + described + "begin_time" + (more ? "\tflags\n" : "\n") +
                   rows('\t', 4 * channels + p, more ? ids : none);
        case 1:
            return "# Quilvane currents\n" + modes + electrometers(channels) + "begin_time\n" +
                   rows('\t', 3 * channels, none);
        case 2:
            return "# Quilvane diagnostics\n" + modes + described +
                   (more ? "# flags: [{type: warning, message: hot, freq: 20}]\n" : "") + "begin_time\n" +
                   rows('\t', channels + p, more ? levels : none);
        case 3:
            return QByteArray("# Quilvane spectra\n# spectra:\n# - {name: s, xpoints: ") +
                   one({"[1, 2, 3]", "[4, 5, 6]"}) +
                   ", xunit: nm, yunit: 1/cm^3, scale: radius, hash: " + one({"h1", "h2"}) +
                   "}\n# - {name: t, xpoints: [1, 2], xunit: cm^2/s/V, yunit: 1/cm^3, " + "scale: mobility}\n" +
                   (more ? "# inversion_vars: [current_rms_error, what]\n" : "") + (chance(95) ? "begin_time\n" : "") +
                   rows('\t', more ? 14 : 10, none);
        case 4:
            return "# Quilvane flags\nbegin_time\n" + rows('\t', 0, ids);
        default:
            return QByteArray("#Only records\n#Operating modes: ions, particles\n#Electrometer currents: 3 (pos 0 0)\n"
                              "#Diagnostics: a,f\n") +
                   (more ? "#Raw electrometer currents: 3\n" : "") +
                   "#Result spectrum: \"s\" density num (1/cm^3), mob (cm^2/s/V) 3,2\nbegintime,endtime,opmode\n" +
                   rows(',', more ? 15 : 12, none);
        }
    }
    enum LastField { none, ids, levels };
    QByteArray rows(char separator, int numbers, LastField last)
    {
        QByteArray text;
        int at = pick(0, 200);
        for (int rows = pick(0, 150); rows > 0; --rows) {
            at += chance(90) ? 1 : pick(-30, 30);
            if (chance(3))
                text += one({"\n", "# remark\n", "# flag z: {type: failure, message: late}\n", "\t\t\t\n", "\r\n"});
            if (last == ids && chance(10))
                text +=
                    "# flag f" + QByteArray::number(pick(1, 2)) + one({": cold\n", ": {message: hot}\n", ": \"\"\n"});
            text += head(at, separator);
            for (int i = 0; i < numbers; ++i)
                text += separator + number();
            if (last == ids)
                text += separator + QByteArray(one({"", "", "!f1", "!f2!f1", "!z", "f2!!"}));
            if (last == levels)
                text += separator + QByteArray(one({"F", "0", "00"}));
            text += one({"\n", "\n", "\n", "\n", "\n", "\n", "\n", "\r\n", "\t\n", chance(20) ? "\tx\ty\n" : "\n"});
        }
        return text;
    }
    QByteArray head(int at, char separator)
    {
        if (chance(2))
            return QByteArray("so") + separator + "what" + separator + "ions";
        const RecordTime begin = recordTimeFromTicks((1568246400 + qint64(at) * 60) * ticksPerSecond);
        return timeToString(begin).toUtf8() + separator + timeToString(begin + Ticks(60 * ticksPerSecond)).toUtf8() +
               separator + one({"ions", "ions", "particles", "new", ""});
    }
    QByteArray number()
    {
        return chance(3) ? QByteArray(one({"", "nan", "-INF", "x", "1e400", "-0"}))
                         : QByteArray::number(pick(-99999, 99999) * one({1e-9, 0.01, 1.0, 1e5}));
    }
    QByteArray variables()
    {
        QByteArray names;
        for (const char *name : {"a", "b", "c", "d", "e"})
            if (chance(60))
                names += QByteArray(names.isEmpty() ? "" : ", ") + name;
        return names;
    }
    static QByteArray electrometers(int count)
    {
        QByteArray text = "# total electrometers: " + QByteArray::number(count) +
                          "\n# electrometer groups: {pos: [0, 0]}\n# electrometer names: [";
        for (int i = 0; i < count; ++i)
            text += "e" + QByteArray::number(i) + ", ";
        return text + "]\n";
    }
};
