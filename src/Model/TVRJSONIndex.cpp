// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRJSONIndex_p.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstring>

namespace {

constexpr int maximumDepth = 64;
constexpr qsizetype longestNumber = 15;

class Scanner
{
public:
    explicit Scanner(QByteArrayView text)
        : p(reinterpret_cast<const uchar *>(text.data()))
        , start(p)
        , end(p + text.size())
    {
    }

    std::optional<TVRJSONIndex::Document> kept()
    {
        TVRJSONIndex::Document document;
        skipSpace();
        if (!take('['))
            return std::nullopt;
        skipSpace();
        const bool indexed =
            at('{') ? object(1, [&](QByteArrayView key) { return documentMember(key, document); }) : value(1, nullptr);
        skipSpace();
        if (!indexed || !take(']'))
            return std::nullopt;
        skipSpace();
        if (p != end)
            return std::nullopt;
        return document;
    }

private:
    const uchar *p;
    const uchar *const start;
    const uchar *const end;

    bool at(char c) const { return p != end && *p == uchar(c); }
    bool take(char c)
    {
        if (!at(c))
            return false;
        ++p;
        return true;
    }
    void skipSpace()
    {
        while (p != end && (*p == ' ' || *p == '\n' || *p == '\r' || *p == '\t'))
            ++p;
    }

    bool documentMember(QByteArrayView key, TVRJSONIndex::Document &document)
    {
        if (key == "sections") {
            document.sections.clear();
            if (!at('['))
                return value(2, nullptr);
            return array(2, [&] {
                TVRJSONIndex::Section section;
                const bool scanned = at('{')
                    ? object(3, [&](QByteArrayView name) { return sectionMember(name, section); })
                    : value(3, nullptr);
                document.sections.append(section);
                return scanned;
            });
        }
        TVRJSONIndex::Value *const found = key == "_id" ? &document.identifier
            : key == "title"                            ? &document.title
            : key == "updatedAt"                        ? &document.updatedAt
                                                        : nullptr;
        return value(2, found);
    }

    bool sectionMember(QByteArrayView key, TVRJSONIndex::Section &section)
    {
        return value(4, key == "title" ? &section.title : key == "body" ? &section.body : nullptr);
    }

    // The members of an object or the elements of an array, at its opening bracket, up to
    // \a close; \a element scans each.
    template <typename Element>
    bool elements(int depth, char close, Element element)
    {
        if (depth > maximumDepth)
            return false;
        ++p;
        skipSpace();
        if (take(close))
            return true;
        for (;;) {
            if (!element())
                return false;
            skipSpace();
            if (take(close))
                return true;
            if (!take(','))
                return false;
            skipSpace();
        }
    }

    // An object's members, at '{'; \a member scans each value, given its key.
    template <typename Member>
    bool object(int depth, Member member)
    {
        return elements(depth, '}', [&] {
            TVRJSONIndex::Value key;
            if (!at('"') || !string(&key) || key.escaped)
                return false;
            skipSpace();
            if (!take(':'))
                return false;
            skipSpace();
            return member(QByteArrayView(start + key.begin + 1, key.end - key.begin - 2));
        });
    }

    // An array's elements, at '['; \a element scans each.
    template <typename Element>
    bool array(int depth, Element element)
    {
        return elements(depth, ']', element);
    }

    // Any value; its place and kind go to \a found when given.
    bool value(int depth, TVRJSONIndex::Value *found)
    {
        TVRJSONIndex::Value scanned;
        scanned.begin = p - start;
        bool ok = false;
        if (p == end)
            return false;
        switch (*p) {
        case '"':
            return string(found);
        case '{':
            scanned.type = QJsonValue::Object;
            ok = object(depth + 1, [&](QByteArrayView) { return value(depth + 1, nullptr); });
            break;
        case '[':
            scanned.type = QJsonValue::Array;
            ok = array(depth + 1, [&] { return value(depth + 1, nullptr); });
            break;
        case 't':
            scanned.type = QJsonValue::Bool;
            ok = word("true");
            break;
        case 'f':
            scanned.type = QJsonValue::Bool;
            ok = word("false");
            break;
        case 'n':
            scanned.type = QJsonValue::Null;
            ok = word("null");
            break;
        default:
            scanned.type = QJsonValue::Double;
            ok = number();
            break;
        }
        scanned.end = p - start;
        if (ok && found)
            *found = scanned;
        return ok;
    }

    bool word(QByteArrayView expected)
    {
        if (end - p < expected.size() || QByteArrayView(p, expected.size()) != expected)
            return false;
        p += expected.size();
        return true;
    }

    static bool digit(uchar c) { return c >= '0' && c <= '9'; }

    // A number without an exponent, short enough to be read exactly as written.
    bool number()
    {
        const uchar *const first = p;
        take('-');
        if (take('0')) {
            if (p != end && digit(*p))
                return false;
        } else if (p != end && digit(*p)) {
            while (p != end && digit(*p))
                ++p;
        } else {
            return false;
        }
        if (take('.')) {
            if (p == end || !digit(*p))
                return false;
            while (p != end && digit(*p))
                ++p;
        }
        return p - first <= longestNumber && !at('e') && !at('E');
    }

    static int hex(uchar c)
    {
        if (digit(c))
            return c - '0';
        if ((c | 0x20) >= 'a' && (c | 0x20) <= 'f')
            return (c | 0x20) - 'a' + 10;
        return -1;
    }

    // The four hex digits of a "\u" escape at p; -1 when there is none.
    int codeUnit() const
    {
        if (end - p < 6 || p[0] != '\\' || p[1] != 'u')
            return -1;
        int unit = 0;
        for (int i = 2; i < 6; ++i) {
            const int nibble = hex(p[i]);
            if (nibble < 0)
                return -1;
            unit = unit * 16 + nibble;
        }
        return unit;
    }

    // Whether any of the eight bytes in \a word is a quote, a backslash, a control character
    // or not ASCII. A byte below n is found as in "Bit Twiddling Hacks": exactly when any is.
    static bool special(quint64 word)
    {
        constexpr quint64 ones = 0x0101010101010101;
        constexpr quint64 highs = ones * 0x80;
        const auto below = [](quint64 bytes, quint64 n) { return (bytes - ones * n) & ~bytes & highs; };
        return ((word & highs) | below(word ^ (ones * '"'), 1) | below(word ^ (ones * '\\'), 1) | below(word, 0x20))
            != 0;
    }

    static bool continuation(const uchar *c) { return (*c & 0xC0) == 0x80; }

    // The length of the UTF-8 sequence at p in bytes, 0 when it is not well formed.
    int sequence() const
    {
        const uchar lead = *p;
        const qsizetype left = end - p;
        if (lead >= 0xC2 && lead <= 0xDF)
            return left >= 2 && continuation(p + 1) ? 2 : 0;
        if (lead >= 0xE0 && lead <= 0xEF) {
            // No overlong forms and no surrogates.
            const uchar low = lead == 0xE0 ? 0xA0 : 0x80;
            const uchar high = lead == 0xED ? 0x9F : 0xBF;
            return left >= 3 && p[1] >= low && p[1] <= high && continuation(p + 2) ? 3 : 0;
        }
        if (lead >= 0xF0 && lead <= 0xF4) {
            // No overlong forms and nothing past U+10FFFF.
            const uchar low = lead == 0xF0 ? 0x90 : 0x80;
            const uchar high = lead == 0xF4 ? 0x8F : 0xBF;
            return left >= 4 && p[1] >= low && p[1] <= high && continuation(p + 2) && continuation(p + 3) ? 4 : 0;
        }
        return 0;
    }

    // A string, at its opening quote.
    bool string(TVRJSONIndex::Value *found)
    {
        TVRJSONIndex::Value scanned{QJsonValue::String, p - start, 0, 0, false};
        ++p;
        for (;;) {
            // Plain ASCII, by far the most of any text: eight bytes at a time, then one at a time.
            quint64 eight = 0;
            while (end - p >= 8 && (std::memcpy(&eight, p, 8), !special(eight))) {
                p += 8;
                scanned.length += 8;
            }
            while (p != end && *p >= 0x20 && *p < 0x80 && *p != '"' && *p != '\\') {
                ++p;
                ++scanned.length;
            }
            if (p == end || *p < 0x20)
                return false;
            if (*p == '"')
                break;
            if (*p == '\\') {
                scanned.escaped = true;
                if (end - p < 2)
                    return false;
                switch (p[1]) {
                case '"':
                case '\\':
                case '/':
                case 'b':
                case 'f':
                case 'n':
                case 'r':
                case 't':
                    p += 2;
                    ++scanned.length;
                    continue;
                case 'u':
                    break;
                default:
                    return false;
                }
                const int unit = codeUnit();
                if (unit < 0 || (unit >= 0xDC00 && unit <= 0xDFFF))
                    return false;
                p += 6;
                ++scanned.length;
                if (unit >= 0xD800 && unit <= 0xDBFF) {
                    // Only a pair of surrogates reads the same everywhere.
                    const int low = codeUnit();
                    if (low < 0xDC00 || low > 0xDFFF)
                        return false;
                    p += 6;
                    ++scanned.length;
                }
                continue;
            }
            const int bytes = sequence();
            if (bytes == 0)
                return false;
            p += bytes;
            scanned.length += bytes == 4 ? 2 : 1;
        }
        ++p;
        scanned.end = p - start;
        if (found)
            *found = scanned;
        return true;
    }
};

} // namespace

std::optional<TVRJSONIndex::Document> TVRJSONIndex::indexKept(QByteArrayView text)
{
    return Scanner(text).kept();
}

QJsonValue TVRJSONIndex::decode(const QByteArray &text, const Value &value)
{
    const qsizetype size = value.end - value.begin;
    if (value.type == QJsonValue::Undefined)
        return QJsonValue(QJsonValue::Undefined);
    if (value.type == QJsonValue::String && !value.escaped)
        return QString::fromUtf8(text.constData() + value.begin + 1, size - 2);
    // Anything else is read as QJsonDocument reads it, inside an array of its own.
    QByteArray wrapped;
    wrapped.reserve(size + 2);
    wrapped.append('[').append(text.constData() + value.begin, size).append(']');
    return QJsonDocument::fromJson(wrapped).array().at(0);
}
