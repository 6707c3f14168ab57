#include "playback/recording/RecordingReader.h"

#include "serial/line/LineParser.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 kLargestPiece = 1'048'576; // bytes; what is still to be read, in short files
constexpr qint64 kSmallestPiece = 4096;
constexpr QStringView kMessageWord(u"RAW");

QString joinedWords(LineParser& parser)
{
    QString text;
    for (QStringView word; parser.nextWord(word);) {
        if (!text.isEmpty())
            text.append(QLatin1Char(' '));
        text.append(word);
    }
    return text;
}

} // namespace

RecordingReader::RecordingReader(const QString& path, SignalRecording recording)
    : m_file(path)
    , m_recording(std::move(recording))
{}

bool RecordingReader::open()
{
    // Reading a pipe or a device might never end.
    if (!QFileInfo(m_file.fileName()).isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    m_fileSize = m_file.size();
    return true;
}

bool RecordingReader::readSlice(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    do {
        if (!step())
            return false;
    } while (!clock.hasExpired(milliseconds));
    return true;
}

// Takes the next line, or reads a piece of the file to find its end in; false when nothing is left.
bool RecordingReader::step()
{
    if (QByteArrayView line; m_lines.takeLine(line)) {
        addLine(line);
        return true;
    }
    if (readPiece())
        return true;
    addLine(m_lines.rest()); // the last line may have no line feed
    m_lines.clear();
    return false;
}

bool RecordingReader::readPiece()
{
    if (!m_file.isOpen())
        return false;
    const qint64 wanted = std::clamp(m_fileSize - m_file.pos(), kSmallestPiece, kLargestPiece);
    const qint64 count = m_lines.readFrom(m_file, wanted);
    m_failed = count < 0;
    if (count <= 0)
        m_file.close();
    return count > 0;
}

void RecordingReader::addLine(QByteArrayView bytes)
{
    const QString line = QString::fromUtf8(bytes).trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
        return;
    LineParser parser(line);
    m_recording.addFrame(parser.timestamp().value_or(0.0));
    LineParser::Token token;
    for (bool first = true; parser.next(token); first = false) {
        switch (token.kind) {
        case LineParser::Kind::Value:
            m_recording.addValue(token.key, token.number);
            break;
        case LineParser::Kind::State:
            m_recording.addState(token.key, token.text);
            break;
        case LineParser::Kind::Error:
            m_recording.addError(token.text);
            break;
        case LineParser::Kind::Text:
            if (!first || token.text != kMessageWord)
                break;
            if (const QString message = joinedWords(parser); !message.isEmpty())
                m_recording.addMessage(message);
            return;
        case LineParser::Kind::Dropped:
            break;
        }
    }
}

double RecordingReader::progress() const
{
    if (!m_file.isOpen())
        return 1.0;
    const auto done = double(m_file.pos() - m_lines.rest().size());
    return std::clamp(done / double(std::max(m_fileSize, qint64(1))), 0.0, 1.0); // the file may grow
}

SignalRecording RecordingReader::takeRecording()
{
    m_recording.finish();
    return std::exchange(m_recording, {});
}
