#include "faults/damagedfile.h"

#include <algorithm>
#include <utility>

namespace Faults {

namespace {

char otherByte(char byte, std::mt19937_64 &random)
{
    static constexpr char telling[] = "0123456789-+.,;:!#\t\n\r\0 \"'{}[]eEnN";
    char other = byte;
    while (other == byte)
        other = random() % 3 == 0 ? char(random() % 256) : telling[random() % (sizeof telling - 1)];
    return other;
}

void appendLines(std::vector<DamagedFile::Line> *lines, const QByteArray &text)
{
    for (int begin = 0; begin < text.size();) {
        const int feed = text.indexOf('\n', begin);
        const int end = feed < 0 ? text.size() : feed + 1;
        lines->push_back({text.mid(begin, end - begin), DamagedFile::changed});
        begin = end;
    }
}

} // namespace

bool isHeaderLine(const QByteArray &line)
{
    return line.startsWith('#') || line.startsWith("begin");
}

DamagedFile::DamagedFile(const QString &fileName, const QByteArray &soundBytes) : name(fileName)
{
    appendLines(&lines, soundBytes);
    for (std::size_t i = 0; i < lines.size(); ++i)
        lines[i].origin = int(i);
}

QByteArray DamagedFile::bytes() const
{
    QByteArray all;
    for (const Line &line : lines)
        all += line.text;
    return all;
}

void DamagedFile::changeBytes(double share, int inRow, bool sparesHeaders, std::mt19937_64 &random)
{
    std::geometric_distribution<int> distance(share / inRow);
    int left = distance(random); // bytes before the first that is changed next
    QByteArray open;             // lines that have lost their line feeds
    std::vector<Line> all;
    for (Line &line : lines) {
        const bool isSpared = sparesHeaders && isHeaderLine(line.text);
        bool isChanged = !open.isEmpty();
        for (char *byte = line.text.data(); !isSpared && byte != line.text.data() + line.text.size(); ++byte) {
            if (left-- > 0)
                continue;
            if (left <= -inRow)
                left = distance(random);
            *byte = otherByte(*byte, random);
            isChanged = true;
        }
        open += line.text;
        if (!open.endsWith('\n'))
            continue;
        if (isChanged)
            appendLines(&all, open);
        else
            all.push_back(line);
        open.clear();
    }
    appendLines(&all, open);
    lines = std::move(all);
}

void DamagedFile::changeLines(int count, bool sparesHeaders, std::mt19937_64 &random)
{
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (!sparesHeaders || !isHeaderLine(lines[i].text))
            open.push_back(i);
    for (; count > 0 && !open.empty(); --count) {
        const std::size_t one = open[random() % open.size()], other = open[random() % open.size()];
        switch (random() % 3) {
        case 0:
            lines[one].text.clear(); // goes below
            break;
        case 1:
            lines.push_back(lines[one]);
            std::rotate(lines.begin() + std::ptrdiff_t(one) + 1, lines.end() - 1, lines.end());
            for (std::size_t &index : open)
                index += index > one ? 1 : 0;
            break;
        default:
            std::swap(lines[one], lines[other]);
        }
    }
    lines.erase(std::remove_if(lines.begin(), lines.end(), [](const Line &line) { return line.text.isEmpty(); }),
                lines.end());
}

void DamagedFile::cut(int size)
{
    std::vector<Line> kept;
    for (Line &line : lines) {
        if (size >= line.text.size())
            kept.push_back(line);
        else if (size > 0)
            kept.push_back({line.text.left(size), changed});
        size -= line.text.size();
    }
    lines = std::move(kept);
}

} // namespace Faults
