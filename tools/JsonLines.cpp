#include "JsonLines.h"

#include <iconv.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef SARN_HAVE_RAPIDJSON
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#endif

namespace sarntool {

namespace {

constexpr unsigned int kReplacement = 0xFFFD;

std::string lowerCase(const std::string& s) {
    std::string out(s);
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

bool oneOf(const std::string& name, std::initializer_list<const char*> names) {
    for (const char* n : names) {
        if (name == n)
            return true;
    }
    return false;
}

/** Writes the JSON escape of a control character into buf (\n, \t, ... or \u00XX); returns its
 * length. */
unsigned char escapeControl(unsigned int c, char* buf) {
    const char* shortForms = "btn\0fr";  // 0x08 to 0x0D
    buf[0] = '\\';
    if (c >= 0x08 && c <= 0x0D && shortForms[c - 0x08] != '\0') {
        buf[1] = shortForms[c - 0x08];
        return 2;
    }
    std::snprintf(buf, 7, "\\u%04x", c);
    return 6;
}

/** ISO/IEC 8859-15 differs from 8859-1 in eight places (the euro sign among them). */
unsigned int latin9(unsigned int byte) {
    switch (byte) {
        case 0xA4:
            return 0x20AC;
        case 0xA6:
            return 0x0160;
        case 0xA8:
            return 0x0161;
        case 0xB4:
            return 0x017D;
        case 0xB8:
            return 0x017E;
        case 0xBC:
            return 0x0152;
        case 0xBD:
            return 0x0153;
        case 0xBE:
            return 0x0178;
        default:
            return byte;
    }
}

/** Code point of one UTF-8 sequence of length bytes, or kReplacement. */
unsigned int decodeUtf8(const unsigned char* s, size_t length) {
    if (length == 1 && s[0] < 0x80)
        return s[0];
    if (length == 2 && (s[0] & 0xE0) == 0xC0 && (s[1] & 0xC0) == 0x80)
        return ((s[0] & 0x1F) << 6) | (s[1] & 0x3F);
    if (length == 3 && (s[0] & 0xF0) == 0xE0 && (s[1] & 0xC0) == 0x80 && (s[2] & 0xC0) == 0x80)
        return ((s[0] & 0x0F) << 12) | ((s[1] & 0x3F) << 6) | (s[2] & 0x3F);
    return kReplacement;
}

}  // namespace

TextConverter::TextConverter() {
    for (unsigned int b = 0; b < 256; ++b)
        setCode(b, b < 0x80 ? b : latin9(b));
}

void TextConverter::setCode(unsigned int byte, unsigned int cp) {
    Code& c = codes[byte];
    if (cp < 0x20 || cp == 0x7F || (cp >= 0x80 && cp < 0xA0)) {
        c.length = escapeControl(cp, c.bytes);
    } else if (cp < 0x80) {
        c.length = 1;
        c.bytes[0] = static_cast<char>(cp);
    } else if (cp < 0x800) {
        c.length = 2;
        c.bytes[0] = static_cast<char>(0xC0 | (cp >> 6));
        c.bytes[1] = static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        // Single-byte sets map into the Basic Multilingual Plane.
        if (cp > 0xFFFF || (cp >= 0xD800 && cp < 0xE000))
            cp = kReplacement;
        c.length = 3;
        c.bytes[0] = static_cast<char>(0xE0 | (cp >> 12));
        c.bytes[1] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        c.bytes[2] = static_cast<char>(0x80 | (cp & 0x3F));
    }
}

bool TextConverter::setCharset(const std::string& name, std::string* message) {
    const std::string n = lowerCase(name);
    raw = false;
    if (n == "raw") {
        for (unsigned int b = 0; b < 256; ++b)
            setCode(b, b);
        for (unsigned int b = 0x80; b < 256; ++b) {
            codes[b].length = 1;
            codes[b].bytes[0] = static_cast<char>(b);
        }
        raw = true;
        return true;
    }
    if (oneOf(n, {"iso-8859-15", "iso8859-15", "iso_8859-15", "latin9", "latin-9"})) {
        for (unsigned int b = 0; b < 256; ++b)
            setCode(b, b < 0x80 ? b : latin9(b));
        return true;
    }
    if (oneOf(n, {"iso-8859-1", "iso8859-1", "iso_8859-1", "latin1", "latin-1"})) {
        for (unsigned int b = 0; b < 256; ++b)
            setCode(b, b);
        return true;
    }
    iconv_t cd = iconv_open("UTF-8", name.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1)) {
        if (message)
            *message = "unknown character set " + name;
        return false;
    }
    unsigned int points[128];
    bool singleByte = true;
    for (unsigned int b = 0x80; b < 256 && singleByte; ++b) {
        char in[1] = {static_cast<char>(b)};
        unsigned char utf8[8];
        char* inPtr = in;
        char* outPtr = reinterpret_cast<char*>(utf8);
        size_t inLeft = 1, outLeft = sizeof utf8;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        const size_t r = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
        if (r == static_cast<size_t>(-1) && errno == EINVAL)
            singleByte = false;  // the byte begins a multi-byte character
        points[b - 0x80] = r == static_cast<size_t>(-1) || inLeft != 0
                               ? kReplacement
                               : decodeUtf8(utf8, sizeof utf8 - outLeft);
    }
    iconv_close(cd);
    if (!singleByte) {
        if (message)
            *message = "character set " + name + " is not a single-byte set";
        return false;
    }
    for (unsigned int b = 0; b < 256; ++b)
        setCode(b, b < 0x80 ? b : points[b - 0x80]);
    return true;
}

void TextConverter::append(std::string& out, const char* text, size_t length) const {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* end = p + length;
    while (p < end) {
        const unsigned char* run = p;
        while (p < end && *p >= 0x20 && *p < 0x7F)
            ++p;
        out.append(reinterpret_cast<const char*>(run), static_cast<size_t>(p - run));
        if (p == end)
            break;
        const Code& c = codes[*p++];
        out.append(c.bytes, c.length);
    }
}

void TextConverter::appendJsonString(std::string& out, const std::string& text) const {
    for (const char ch : text) {
        if (ch == '"' || ch == '\\')
            out.push_back('\\');
        const Code& c = codes[static_cast<unsigned char>(ch)];
        out.append(c.bytes, c.length);
    }
}

void TextConverter::appendPlain(std::string& out, const std::string& text) const {
    for (const char ch : text) {
        const Code& c = codes[static_cast<unsigned char>(ch)];
        // Control bytes are the codes written as escapes.
        if (c.length > 1 && c.bytes[0] == '\\') {
            if (ch == '\t' || ch == '\n')
                out.push_back(ch);
            continue;
        }
        out.append(c.bytes, c.length);
    }
}

#ifdef SARN_HAVE_RAPIDJSON

bool haveJsonCheck() {
    return true;
}

bool isValidJson(const std::string& text, bool utf8) {
    rapidjson::MemoryStream in(text.data(), text.size());
    rapidjson::BaseReaderHandler<> ignore;
    rapidjson::Reader reader;
    constexpr unsigned int flags = rapidjson::kParseIterativeFlag;
    if (utf8)
        return !reader.Parse<flags | rapidjson::kParseValidateEncodingFlag>(in, ignore).IsError();
    return !reader.Parse<flags>(in, ignore).IsError();
}

#else

bool haveJsonCheck() {
    return false;
}

bool isValidJson(const std::string&, bool) {
    return false;
}

#endif

void appendJsonStringContents(std::string& out, const std::string& text) {
    for (const char ch : text) {
        const unsigned int c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += ch;
        } else if (c < 0x20) {
            char e[8];
            out.append(e, escapeControl(c, e));
        } else {
            out += ch;
        }
    }
}

void JsonLineWriter::append(std::string& out, unsigned int pid, unsigned int tableId,
                            unsigned int sectionNumber, unsigned int error,
                            const std::string* table, const std::vector<LogEntry>* log) {
    char head[96];
    const int n = std::snprintf(head, sizeof head,
                                "{\"pid\":%u,\"table_id\":%u,\"section_number\":%u,\"error\":%u",
                                pid, tableId, sectionNumber, error);
    out.append(head, static_cast<size_t>(n));
    if (table != nullptr) {
        if (exactText) {
            out += ",\"table\":";
            out += *table;
        } else {
            converted.clear();
            converter.append(converted, table->data(), table->size());
            if (isValidJson(converted, converter.producesUtf8())) {
                out += ",\"table\":";
                out += converted;
            } else {
                ++fallbacks;
                out += ",\"table_text\":\"";
                appendJsonStringContents(out, converted);
                out += '"';
            }
        }
    }
    if (log != nullptr && !log->empty()) {
        out += ",\"log\":[";
        for (const LogEntry& entry : *log) {
            const int m = std::snprintf(head, sizeof head, "%s{\"priority\":%d,\"text\":\"",
                                        &entry == &log->front() ? "" : ",", entry.priority);
            out.append(head, static_cast<size_t>(m));
            if (exactText) {
                appendJsonStringContents(out, entry.text);
            } else {
                converted.clear();
                appendJsonStringContents(converted, entry.text);
                converter.append(out, converted.data(), converted.size());
            }
            out += "\"}";
        }
        out += ']';
    }
    out += "}\n";
}

}  // namespace sarntool
