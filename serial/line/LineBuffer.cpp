#include "serial/line/LineBuffer.h"

#include <QIODevice>

#include <algorithm>

void LineBuffer::append(const QByteArray& bytes) { m_bytes.append(bytes); }

qint64 LineBuffer::readFrom(QIODevice& device, qint64 maxBytes)
{
    const qsizetype end = m_bytes.size();
    m_bytes.resize(end + qsizetype(maxBytes));
    const qint64 count = device.read(m_bytes.data() + end, maxBytes);
    m_bytes.truncate(end + qsizetype(std::max(count, qint64(0))));
    return count;
}

bool LineBuffer::takeLine(QByteArrayView& line)
{
    const qsizetype lineFeed = m_bytes.indexOf('\n', m_searched);
    if (lineFeed < 0) {
        removeTakenLines();
        return false;
    }
    line = QByteArrayView(m_bytes).sliced(m_lineBegin, lineFeed - m_lineBegin);
    m_lineBegin = m_searched = lineFeed + 1;
    return true;
}

void LineBuffer::clear()
{
    m_bytes.clear();
    m_lineBegin = m_searched = 0;
}

void LineBuffer::removeTakenLines()
{
    if (m_lineBegin == m_bytes.size())
        m_bytes.clear(); // only a null array shares what is appended
    else
        m_bytes.remove(0, m_lineBegin);
    m_lineBegin = 0;
    m_searched = m_bytes.size();
}
