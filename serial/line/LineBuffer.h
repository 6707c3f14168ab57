#pragma once

#include <QByteArray>
#include <QByteArrayView>

class QIODevice;

// Cuts a stream of bytes into lines, however it is divided into reads: each byte is searched for a line feed
// once, and what has been taken is removed when no line is left to take. The live input and the reader of
// recordings have one each. It does not decode lines, and it does not limit their length.
class LineBuffer
{
public:
    /// Adds bytes at the end. An empty buffer shares them instead of copying.
    void append(const QByteArray& bytes);
    /// Reads up to that many bytes from the device straight to the end. Returns what QIODevice::read()
    /// returned: the number of bytes, or -1 for an error, which adds none.
    qint64 readFrom(QIODevice& device, qint64 maxBytes);
    /// Takes the next line, without its line feed; false when none is complete. Anything may be called
    /// between two lines, but the view is valid only until the next call that is not const.
    [[nodiscard]] bool takeLine(QByteArrayView& line);
    /// What has not been taken: after takeLine() returned false, the unfinished line.
    QByteArrayView rest() const { return QByteArrayView(m_bytes).sliced(m_lineBegin); }
    /// Forgets the rest.
    void clear();

private:
    void removeTakenLines();

    QByteArray m_bytes;
    qsizetype m_lineBegin = 0; // where the next line begins; what is before it has been taken
    qsizetype m_searched = 0;  // no line feed stands between m_lineBegin and this
};
