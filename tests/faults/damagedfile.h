#pragma once

#include <QByteArray>
#include <QString>

#include <random>
#include <vector>

namespace Faults {

/// A text file, some lines of which were changed by chance. The others know which lines of the sound file they are.
struct DamagedFile {
    static constexpr int changed = -1;

    struct Line {
        QByteArray text;      ///< with its line feed, which only a file's last line may lack
        int origin = changed; ///< the number of the sound line that it is
    };

    DamagedFile() = default;
    DamagedFile(const QString &fileName, const QByteArray &soundBytes);

    QByteArray bytes() const;
    /// Changes that share of the bytes, so many in a row, or with `sparesHeaders` of those in rows.
    void changeBytes(double share, int inRow, bool sparesHeaders, std::mt19937_64 &random);
    /// Deletes, doubles or swaps that many lines, or with `sparesHeaders` rows.
    void changeLines(int count, bool sparesHeaders, std::mt19937_64 &random);
    /// Keeps the first bytes.
    void cut(int size);

    QString name;
    std::vector<Line> lines;
};

/// Whether the line belongs to a header, or defines a flag.
bool isHeaderLine(const QByteArray &line);

} // namespace Faults
