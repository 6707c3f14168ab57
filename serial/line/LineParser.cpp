#include "serial/line/LineParser.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <fast_float/fast_float.h>
#include <iterator>
#include <string>
#include <system_error>

namespace {

constexpr QStringView kStatePrefix(u"ST_");
constexpr QStringView kErrorKey(u"ERR");
// Longer numbers are rare and take the long way.
constexpr qsizetype kMaxPlainNumber = 48;

// Exactly the characters that \s takes without Unicode properties.
constexpr bool isSeparator(char16_t c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }

// A token holds no ASCII white space, so that only a character beyond ASCII at an end can need trimming.
QStringView trimmedPart(QStringView part)
{
    if (part.isEmpty() || (part.front().unicode() < 0x80 && part.back().unicode() < 0x80))
        return part;
    return part.trimmed();
}

bool isPlain(char16_t c)
{
    return (c >= u'0' && c <= u'9') || c == u'.' || c == u'-' || c == u'+' || c == u'e' || c == u'E';
}

// A number without an exponent and of at most 15 digits, as nearly all are. Its digits and the power of ten
// are exact, so that the one division rounds as every correct conversion does.
bool shortNumber(QStringView text, double& result)
{
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr qsizetype kMaxDigits = std::size(kPowersOfTen) - 1;
    const bool negative = text.startsWith(u'-');
    if (negative)
        text = text.sliced(1);
    if (text.size() > kMaxDigits + 1)
        return false;
    qint64 number = 0;
    const QChar* at = text.begin();
    const auto readDigits = [&] {
        for (; at != text.end() && *at >= u'0' && *at <= u'9'; ++at)
            number = number * 10 + (at->unicode() - u'0');
    };
    readDigits();
    qsizetype decimals = 0;
    qsizetype digits = text.size();
    if (at != text.end() && *at == u'.') {
        const QChar* const afterPoint = ++at;
        readDigits();
        decimals = at - afterPoint;
        --digits;
    }
    if (at != text.end() || digits == 0 || digits > kMaxDigits)
        return false;
    const double value = double(number) / kPowersOfTen[decimals];
    result = negative ? -value : value;
    return true;
}

// Whether a number that was read as zero says so: all digits before the exponent are zeros.
bool saysZero(const char* begin, const char* end)
{
    const char* const at =
        std::find_if(begin, end, [](char c) { return c == 'e' || c == 'E' || (c >= '1' && c <= '9'); });
    return at == end || *at == 'e' || *at == 'E';
}

// Given nothing but digits, signs, point and exponent, fast_float accepts only what Qt accepts too, and both
// round correctly. Not all of its versions refuse what is too large or too small for a double, as Qt does.
bool plainNumber(const char* begin, const char* end, double& result)
{
    const auto [stop, error] = fast_float::from_chars(begin, end, result);
    return error == std::errc() && stop == end && !std::isinf(result) &&
           (result != 0.0 || saysZero(begin, end));
}

// At most kMaxPlainNumber characters.
bool plainNumber(QStringView text, double& result)
{
    char characters[kMaxPlainNumber];
    char* end = characters;
    for (const QChar c : text) {
        if (!isPlain(c.unicode()))
            return false;
        *end++ = char(c.unicode());
    }
    return plainNumber(characters, end, result);
}

// Qt's conversion takes too long for a number of a hundred million characters. For one that is too long to be
// nan or inf it differs from fast_float only in a leading plus and in U+2212 as a minus.
bool longNumber(QStringView text, double& result)
{
    std::string characters;
    characters.reserve(std::size_t(text.size()));
    for (const QChar c : text) {
        if (c == QChar(0x2212))
            characters += '-';
        else if (isPlain(c.unicode()))
            characters += char(c.unicode());
        else
            return false;
    }
    if (characters.starts_with('+') && !characters.starts_with("+-"))
        characters.erase(0, 1);
    return plainNumber(characters.data(), characters.data() + characters.size(), result);
}

} // namespace

LineParser::LineParser(QStringView line)
    : m_position(line.begin())
    , m_end(line.end())
{
    cut();
    if (m_equalSign >= 0) // no number holds an equal sign
        return;
    if (double time = 0.0; toNumber(m_token, time)) {
        m_timestamp = time;
        cut();
    }
}

// Finds the next token and its first equal sign in one walk over its characters.
void LineParser::cut()
{
    const QChar* at = m_position;
    while (at != m_end && isSeparator(at->unicode()))
        ++at;
    const QChar* const begin = at;
    while (at != m_end && *at != u'=' && !isSeparator(at->unicode()))
        ++at;
    m_equalSign = at != m_end && *at == u'=' ? at - begin : -1;
    while (at != m_end && !isSeparator(at->unicode()))
        ++at;
    m_token = QStringView(begin, at);
    m_position = at;
}

bool LineParser::next(Token& token)
{
    if (m_token.isEmpty())
        return false;
    if (m_equalSign <= 0) {
        token.kind = Kind::Text;
        token.text = m_token;
        cut();
        return true;
    }
    token.key = trimmedPart(m_token.first(m_equalSign));
    token.text = trimmedPart(m_token.sliced(m_equalSign + 1));
    token.kind = Kind::Dropped;
    cut();
    if (token.key.startsWith(kStatePrefix)) {
        token.key = token.key.sliced(kStatePrefix.size());
        if (!token.key.isEmpty() && !token.text.isEmpty())
            token.kind = Kind::State;
    } else if (token.key == kErrorKey) {
        if (!token.text.isEmpty())
            token.kind = Kind::Error;
    } else if (toNumber(token.text, token.number)) {
        token.kind = Kind::Value;
    }
    return true;
}

bool LineParser::nextWord(QStringView& word)
{
    if (m_token.isEmpty())
        return false;
    word = m_token;
    cut();
    return true;
}

// Qt's conversion, which decides in the end, takes many times as long as fast_float even with the copying,
// and a short number needs neither.
bool LineParser::toNumber(QStringView text, double& number)
{
    if (text.size() > kMaxPlainNumber)
        text = text.trimmed();
    if (text.size() > kMaxPlainNumber)
        return longNumber(text, number);
    if (text.isEmpty())
        return false;
    if (shortNumber(text, number) || plainNumber(text, number))
        return true;
    bool ok = false;
    number = text.toDouble(&ok);
    return ok;
}
