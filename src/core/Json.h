#ifndef SARN_CORE_JSON_H
#define SARN_CORE_JSON_H

// Building blocks for the JSON text of tables and descriptors. Text is
// appended to a std::string with no whitespace. Integers of every width,
// 8-bit ones included, are written as decimal numbers; a plain char is
// written as that character; bool as 0 or 1.

#include <charconv>
#include <string>

#include "TISDBTDescriptor.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace json {

class Out {
  public:
    explicit Out(std::string& target) : s(target) {}

    Out& operator<<(const char* text) {
        s.append(text);
        return *this;
    }
    Out& operator<<(const std::string& text) {
        s.append(text);
        return *this;
    }
    Out& operator<<(const memory::Text& text) {
        s.append(text.data(), text.size());
        return *this;
    }
    Out& operator<<(char c) {
        s.push_back(c);
        return *this;
    }
    Out& operator<<(bool b) {
        s.push_back(b ? '1' : '0');
        return *this;
    }
    Out& operator<<(unsigned char v) { return unsignedNumber(v); }
    Out& operator<<(signed char v) { return signedNumber(v); }
    Out& operator<<(unsigned short v) { return unsignedNumber(v); }
    Out& operator<<(short v) { return signedNumber(v); }
    Out& operator<<(unsigned int v) { return unsignedNumber(v); }
    Out& operator<<(int v) { return signedNumber(v); }
    Out& operator<<(unsigned long v) { return unsignedNumber(v); }
    Out& operator<<(long v) { return signedNumber(v); }
    Out& operator<<(unsigned long long v) { return unsignedNumber(v); }
    Out& operator<<(long long v) { return signedNumber(v); }

    /** Exactly two lower-case hexadecimal digits. */
    Out& hex2(unsigned char v) {
        static const char digits[] = "0123456789abcdef";
        s.push_back(digits[v >> 4]);
        s.push_back(digits[v & 0x0F]);
        return *this;
    }
    /** text with a backslash before each '"' and '\\'; nothing else is escaped. */
    Out& escaped(const std::string& text) { return escaped(text.data(), text.size()); }
    Out& escaped(const memory::Text& text) { return escaped(text.data(), text.size()); }
    Out& escaped(const char* text, std::size_t size);
    /** A decimal number zero-filled to width digits (wider values are not cut). */
    Out& zeroFilled(long long v, int width);

    std::string& str() { return s; }

  private:
    Out& unsignedNumber(unsigned long long v) {
        char buf[24];
        auto r = std::to_chars(buf, buf + sizeof buf, v);
        s.append(buf, static_cast<size_t>(r.ptr - buf));
        return *this;
    }
    Out& signedNumber(long long v) {
        char buf[24];
        auto r = std::to_chars(buf, buf + sizeof buf, v);
        s.append(buf, static_cast<size_t>(r.ptr - buf));
        return *this;
    }

    std::string& s;
};

/**
 * Appends a time as "YYYY-MM-DD HH:MM:SS", broken down with UTC rules from a
 * signed 32-bit count of seconds (identical on 32- and 64-bit time_t).
 */
void appendUtcTime(Out& out, int seconds);

/**
 * An empty string with room for the text of a table whose section is
 * sectionBytes long. The text runs to between one and sixteen times the
 * section's size (descriptors of a few bytes cost some sixty characters of
 * keys each); eight times, plus the header, covers nearly every table in one
 * allocation, and the rare larger one grows once.
 */
inline std::string tableText(unsigned int sectionBytes) {
    std::string text;
    text.reserve(64 + 8 * static_cast<size_t>(sectionBytes));
    return text;
}

/** The commas of a list: nothing before its first element, ',' before each later one. */
class Commas {
  public:
    void before(Out& out) {
        if (!first)
            out << ',';
        first = false;
    }

  private:
    bool first = true;
};

/**
 * Appends "[" + each element as write(element) appends it, comma-separated,
 * + "]".
 */
template <typename Container, typename Write>
void appendArray(Out& out, const Container& elements, Write write) {
    out << '[';
    Commas commas;
    for (const auto& element : elements) {
        commas.before(out);
        write(element);
    }
    out << ']';
}

/**
 * Appends "[" + each descriptor as "{" + toJSON() + "}", comma-separated, + "]",
 * each written in place by appendJSON.
 * A null element (a slot that holds no descriptor) is left out.
 */
template <typename Iterator>
void appendDescriptorArray(Out& out, Iterator begin, Iterator end) {
    out << '[';
    Commas commas;
    for (Iterator it = begin; it != end; ++it) {
        const TISDBTDescriptor* d = *it;
        if (d == nullptr)
            continue;
        commas.before(out);
        out << '{';
        d->appendJSON(out.str());
        out << '}';
    }
    out << ']';
}

}  // namespace json
}  // namespace Sarn
#pragma GCC visibility pop

#endif
