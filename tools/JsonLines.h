#ifndef SARN_TOOLS_JSONLINES_H
#define SARN_TOOLS_JSONLINES_H

// The JSON Lines output of sarn-dump. The library renders broadcast text as
// the raw 8-bit codes that the broadcaster sent (ISO/IEC 8859-15 in
// ISDB-Tb) and leaves a few strings unescaped; these helpers turn such a
// rendering into UTF-8 with control bytes escaped, and check the result
// with a real JSON parser before it is printed as JSON.

#include <cstddef>
#include <string>
#include <vector>

namespace sarntool {

/** Converts 8-bit broadcast text to UTF-8 and escapes control bytes. */
class TextConverter {
  public:
    /** ISO/IEC 8859-15. */
    TextConverter();

    /**
     * Chooses the character set: "ISO-8859-15" (also "latin9"), "ISO-8859-1"
     * (also "latin1"), "raw" (bytes of 0x80 and above stay as they are), or
     * any other single-byte set that iconv knows. Returns false and a
     * message for an unknown set.
     */
    bool setCharset(const std::string& name, std::string* message);
    /** True unless the set is "raw": the output is then UTF-8. */
    bool producesUtf8() const { return !raw; }

    /**
     * Appends text: printable ASCII as it is, control bytes as JSON escapes
     * (\n, \t, ..., \u00XX), other bytes in UTF-8.
     */
    void append(std::string& out, const char* text, size_t length) const;
    /** As append, with double quotes and backslashes escaped too: a JSON string's contents. */
    void appendJsonString(std::string& out, const std::string& text) const;
    /**
     * Appends text converted, with control bytes but tab and line feed left
     * out (for XML, which cannot carry them).
     */
    void appendPlain(std::string& out, const std::string& text) const;

  private:
    struct Code {
        unsigned char length;
        char bytes[7];
    };
    void setCode(unsigned int byte, unsigned int codePoint);

    Code codes[256];
    bool raw = false;
};

/** True when this build checks JSON with a parser; without one every table goes out as text. */
bool haveJsonCheck();

/** True when text is one complete JSON value (and UTF-8, when utf8 is set). */
bool isValidJson(const std::string& text, bool utf8);

/**
 * Appends text as the contents of a JSON string: double quotes,
 * backslashes and control bytes escaped, other bytes unchanged.
 */
void appendJsonStringContents(std::string& out, const std::string& text);

/** A line that the library logged: its priority (5 warning, 6 error) and text. */
struct LogEntry {
    int priority;
    std::string text;
};

/**
 * Writes the line of one section:
 * {"pid":P,"table_id":T,"section_number":S,"error":E,"table":{...}}.
 * The table member is the converted rendering when it is valid JSON, else
 * "table_text" with that rendering as a string; with exactText the
 * library's text goes out unchanged under "table". Lines that the library
 * logged for the section follow as "log":[{"priority":5,"text":"..."}],
 * their text escaped and converted like broadcast text (only escaped with
 * exactText).
 */
class JsonLineWriter {
  public:
    JsonLineWriter(const TextConverter& converter, bool exactText)
        : converter(converter), exactText(exactText) {}

    /** table may be null (a section that gave no table), log null or empty (nothing logged). */
    void append(std::string& out, unsigned int pid, unsigned int tableId,
                unsigned int sectionNumber, unsigned int error, const std::string* table,
                const std::vector<LogEntry>* log = nullptr);

    unsigned long long textFallbacks() const { return fallbacks; }

  private:
    const TextConverter& converter;
    bool exactText;
    std::string converted;
    unsigned long long fallbacks = 0;
};

}  // namespace sarntool

#endif
