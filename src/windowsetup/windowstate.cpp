#include "windowsetup/windowstate.h"

#include <QDataStream>
#include <QSet>

namespace WindowSetup {

namespace {

constexpr int stateMarker = 0xff;
// What begins a part of the state.
constexpr quint8 dockAreasMarker = 0xfd;
constexpr quint8 floatingTabsMarker = 0xf9;
constexpr quint8 toolBarsMarker = 0xfc;
// What begins an item of a list of docks.
constexpr quint8 listMarker = 0xfc;
constexpr quint8 tabsMarker = 0xfa;
constexpr quint8 dockMarker = 0xfb;

constexpr int areaCount = 4;
constexpr int greatestArea = 0x8;
constexpr int mostItems = 100; ///< of one list
constexpr int mostDepth = 20;
constexpr int mostNameBytes = 200;
constexpr int greatestLength = 100'000; ///< in pixels, by far
constexpr int unlimited = 0xffffff;     ///< the toolkit's greatest size of a widget; a list adds its tabs to it

enum DockFlag : quint8 { Visible = 1, Floating = 2 };

/// Reads what QMainWindow::saveState() writes, from begin to end.
class StateReader {
public:
    StateReader(const QByteArray &state, const QStringList &knownNames) : m_stream(state), m_knownNames(knownNames)
    {
        m_stream.setVersion(QDataStream::Qt_5_0);
    }

    bool isSound(int version)
    {
        require(readInt() == stateMarker && readInt() == version);
        require(readByte() == dockAreasMarker);
        readDockAreas();
        quint8 marker = readByte();
        for (; m_isSound && marker == floatingTabsMarker; marker = readByte()) {
            readLengths(4); // the frame of the group
            readDockList(0);
        }
        require(marker == toolBarsMarker);
        readToolBars();
        return m_isSound && m_stream.atEnd();
    }

    QSize centre() const { return m_centre; }

private:
    void require(bool condition) { m_isSound = m_isSound && condition && m_stream.status() == QDataStream::Ok; }

    int readInt()
    {
        qint32 value = 0;
        m_stream >> value;
        return value;
    }
    quint8 readByte()
    {
        quint8 value = 0;
        m_stream >> value;
        return value;
    }
    /// Places and sizes; -1 is a size that isn't known yet.
    void readLengths(int count)
    {
        for (int i = 0; i < count; ++i)
            readLength();
    }
    int readLength()
    {
        const int length = readInt();
        const bool isLength = length >= -greatestLength && length <= greatestLength;
        require(isLength || (length >= unlimited && length <= unlimited + greatestLength));
        return length;
    }
    int readCount(int most)
    {
        const int count = readInt();
        require(count >= 0 && count <= most);
        return m_isSound ? count : 0;
    }

    void readName()
    {
        const quint32 bytes = quint32(readInt());
        require(bytes > 0 && bytes <= mostNameBytes && bytes % sizeof(char16_t) == 0);
        QString name;
        for (quint32 i = 0; m_isSound && i < bytes / sizeof(char16_t); ++i) {
            quint16 character = 0;
            m_stream >> character;
            name.append(QChar(character));
        }
        require(!m_names.contains(name) && (m_knownNames.isEmpty() || m_knownNames.contains(name)));
        m_names.insert(name);
    }

    void readDockAreas()
    {
        QSet<int> seen;
        const int count = readCount(areaCount);
        for (int i = 0; m_isSound && i < count; ++i) {
            const int area = readInt();
            require(area >= 0 && area < areaCount && !seen.contains(area));
            seen.insert(area);
            readLengths(2);
            readDockList(0);
        }
        m_centre.setWidth(readLength());
        m_centre.setHeight(readLength());
        for (int i = 0; i < areaCount; ++i) {
            const int corner = readInt(); // one bit
            require(corner > 0 && corner <= greatestArea && (corner & (corner - 1)) == 0);
        }
    }

    void readDockList(int depth)
    {
        const quint8 marker = readByte();
        require((marker == listMarker || marker == tabsMarker) && depth < mostDepth);
        const int current = marker == tabsMarker ? readInt() : -1;
        const quint8 orientation = readByte();
        require(orientation == Qt::Horizontal || orientation == Qt::Vertical);
        const int count = readCount(mostItems);
        require(count > 0 && current >= -1 && current < count);
        for (int i = 0; m_isSound && i < count; ++i)
            readDockItem(depth);
    }

    void readDockItem(int depth)
    {
        constexpr int lengthCount = 4; // place and size along the list, and the size's limits; or a frame
        const quint8 marker = readByte();
        if (marker == dockMarker) {
            readName();
            require((readByte() & ~(Visible | Floating)) == 0);
            readLengths(lengthCount);
            return;
        }
        require(marker == listMarker);
        readLengths(lengthCount);
        if (m_isSound)
            readDockList(depth + 1);
    }

    void readToolBars()
    {
        const int lines = readCount(mostItems);
        for (int line = 0; m_isSound && line < lines; ++line) {
            const int area = readInt();
            require(area >= 0 && area < areaCount);
            const int count = readCount(mostItems);
            for (int i = 0; m_isSound && i < count; ++i) {
                readName();
                require(readByte() <= 1); // whether it is shown
                readLengths(2);
                constexpr int packedFrame = sizeof(quint64); // of one that floats
                require(m_stream.skipRawData(packedFrame) == packedFrame);
            }
        }
    }

    QDataStream m_stream;
    const QStringList &m_knownNames;
    QSet<QString> m_names;
    QSize m_centre;
    bool m_isSound = true;
};

} // namespace

bool isSoundWindowState(const QByteArray &state, int version, const QStringList &knownNames)
{
    return StateReader(state, knownNames).isSound(version);
}

QSize centreOfWindowState(const QByteArray &state, int version)
{
    const QStringList anyNames;
    StateReader reader(state, anyNames);
    return reader.isSound(version) ? reader.centre() : QSize();
}

} // namespace WindowSetup
