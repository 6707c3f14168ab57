#pragma once

#include <QStringView>

#include <optional>

// The grammar of a line: cuts it into a timestamp, value, state and error pairs and free text. The live input
// and the reader of recordings both walk a line with it. It keeps views into the line (which must outlive
// it), allocates nothing, and decides nothing about what a pair means or whether its key is known.
class LineParser
{
public:
    enum class Kind {
        Value,  ///< key and number of KEY=NUMBER
        State,  ///< group id in key, state name in text (both not empty)
        Error,  ///< error id or code in text (not empty)
        Text,   ///< free text
        Dropped ///< a pair that says nothing: a value that is no number, an empty group, state or error
    };

    struct Token
    {
        Kind kind = Kind::Dropped;
        QStringView key;     ///< trimmed; may be empty or anything else without white space
        QStringView text;    ///< trimmed, free text as it stands
        double number = 0.0; ///< of a value; may be NaN or infinite
    };

    /// The line need not be trimmed; an empty one has no timestamp and no tokens.
    explicit LineParser(QStringView line);

    /// The first token when all of it is a number: the line's time in seconds. It is not among the tokens.
    std::optional<double> timestamp() const { return m_timestamp; }
    /// Reads the next token, dropped ones included; false at the end of the line.
    bool next(Token& token);
    /// Reads the next token as it stands, whatever it is; false at the end of the line.
    bool nextWord(QStringView& word);

    /// Reads the number that the whole text is, exactly as QString::toDouble() does; false if it is none, and
    /// the number is then undefined.
    [[nodiscard]] static bool toNumber(QStringView text, double& number);

private:
    void cut();

    const QChar* m_position;
    const QChar* m_end;
    QStringView m_token;        // the token that next() reads; empty at the end
    qsizetype m_equalSign = -1; // its first '=', or -1
    std::optional<double> m_timestamp;
};
