#include "gui/common/recordviews/headerstate.h"

#include "windowsetup/sealedstate.h"
#include "windowsetup/setupkeys.h"

#include <QDataStream>
#include <QHeaderView>

#include <algorithm>
#include <optional>
#include <vector>

namespace RecordViews {

namespace {

constexpr int greatestWidth = 10'000;
constexpr int stateMarker = 0xff;

/// From left to right.
struct Columns {
    std::vector<int> logicalIndices;
    std::vector<int> widths;
};

bool isPermutation(std::vector<int> indices)
{
    std::sort(indices.begin(), indices.end());
    for (std::size_t i = 0; i < indices.size(); ++i) {
        if (indices[i] != int(i))
            return false;
    }
    return true;
}

/// Reads what QHeaderView::saveState() writes, as far as the widths.
class StateReader {
public:
    StateReader(const QByteArray &state, int columns) : m_stream(state), m_columns(columns)
    {
        m_stream.setVersion(QDataStream::Qt_5_0);
    }

    std::optional<Columns> read()
    {
        Columns columns;
        const bool hasMarker = readInt() == stateMarker && readInt() == 0; // the version
        const bool isHorizontal = readInt() == Qt::Horizontal;
        skipInts(2); // the order of sorting and its column
        skipBools(1);
        readIndices(); // the inverse of the next
        columns.logicalIndices = readIndices();
        skipHiddenColumns();
        skipInts(1); // the sum of the widths
        const bool hasColumns = readInt() == m_columns;
        skipBools(5);
        skipInts(6);
        columns.widths = readWidths();
        if (!hasMarker || !isHorizontal || !hasColumns || m_isDamaged || m_stream.status() != QDataStream::Ok)
            return {};
        return columns;
    }

private:
    int readInt()
    {
        qint32 value = 0;
        m_stream >> value;
        return value;
    }
    void skipInts(int count) { m_stream.skipRawData(count * int(sizeof(qint32))); }
    void skipBools(int count) { m_stream.skipRawData(count); }

    /// An empty list stands for the natural order.
    std::vector<int> readIndices()
    {
        std::vector<int> indices(std::size_t(m_columns), 0);
        const int count = readInt();
        for (int i = 0; i < m_columns; ++i)
            indices[std::size_t(i)] = count == m_columns ? readInt() : i;
        m_isDamaged |= (count != 0 && count != m_columns) || !isPermutation(indices);
        return indices;
    }

    void skipHiddenColumns()
    {
        constexpr int bitsOfByte = 8;
        const int bits = readInt();
        const int count = bits == m_columns ? (bits + bitsOfByte - 1) / bitsOfByte : 0;
        m_stream.skipRawData(count);
        const int widths = readInt();
        m_isDamaged |= (bits != 0 && bits != m_columns) || widths != 0; // the views hide none
    }

    std::vector<int> readWidths()
    {
        std::vector<int> widths;
        m_isDamaged |= readInt() != m_columns;
        for (int i = 0; i < m_columns && !m_isDamaged; ++i) {
            widths.push_back(readInt());
            const bool isOneColumn = readInt() == 1;
            skipInts(1); // the mode of resizing
            m_isDamaged |= !isOneColumn || widths.back() <= 0 || widths.back() > greatestWidth;
        }
        return widths;
    }

    QDataStream m_stream;
    int m_columns;
    bool m_isDamaged = false;
};

} // namespace

void storeHeaderState(QVariantMap &setup, const QHeaderView &header)
{
    WindowSetup::seal(setup, WindowSetup::Keys::headerState, header.saveState());
}

bool restoreHeaderState(QHeaderView &header, const QVariantMap &setup)
{
    const QByteArray state = WindowSetup::unseal(setup, WindowSetup::Keys::headerState).bytes;
    const std::optional<Columns> columns = StateReader(state, header.count()).read();
    if (!columns)
        return false;
    for (int i = 0; i < header.count(); ++i) {
        const int logical = columns->logicalIndices[std::size_t(i)];
        header.moveSection(header.visualIndex(logical), i);
        header.resizeSection(logical, columns->widths[std::size_t(i)]);
    }
    return true;
}

} // namespace RecordViews
