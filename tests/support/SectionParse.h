#ifndef SARN_TESTS_SECTIONPARSE_H
#define SARN_TESTS_SECTIONPARSE_H

#include <cstring>
#include <string>

#include "LogCapture.h"
#include "ParseSection.h"
#include "Sections.h"

/** A warning and an error line as sectionOutcome shows them. */
inline const std::string kWarn = "\n5 SarnISDBTUtils: ";
inline const std::string kError = "\n6 SarnISDBTUtils: ";

/**
 * Sarn::parseSection over its own copy of the bytes, in one text: the table
 * rendered by render (toJSON when null), preceded by "code=<code> " when the
 * code is not 0, or "null code=<code>" without a table; then every line
 * logged meanwhile, each after a line break as LogCapture::texts() shows it.
 * The code starts at 0xBEEF, a value no parser writes. PID 0x0012 makes an
 * EIT a full-segment one.
 */
inline std::string sectionOutcome(Bytes b,
                                  std::string (*render)(const Sarn::TISDBTTable&) = nullptr,
                                  unsigned int pid = 0x0012, int checkCrc = 1,
                                  Sarn::TISDBTTable* previous = nullptr) {
    LogCapture log;
    unsigned short code = 0xBEEF;
    Sarn::TISDBTTable* t = Sarn::parseSection(b.data(), length(b), checkCrc, &code, pid, previous);
    std::string out = t == nullptr || code != 0 ? "code=" + std::to_string(code) : "";
    if (t == nullptr)
        out = "null " + out;
    else
        out += (out.empty() ? "" : " ") + (render != nullptr ? render(*t) : t->toJSON());
    delete t;
    for (const std::string& line : log.texts())
        out += "\n" + line;
    return out;
}

/** Whether every number in the text is 0 (but the date of time 0 and the 3 of "UTC-3"). */
inline bool onlyZeros(std::string text) {
    for (const char* fixed : {"1970-01-01", "UTC-3"})
        for (size_t at; (at = text.find(fixed)) != std::string::npos;)
            text.erase(at, std::strlen(fixed));
    return text.find_first_of("123456789") == std::string::npos;
}

/** The blocks from the global operator new not yet deleted (tests/support/HeapCount.cpp). */
long heapBlocksAlive();

/**
 * Whether parsing the section and deleting its table leave as many blocks
 * alive as before; the second of two runs is counted, so that what a first
 * run sets up for good does not count. No LogCapture may be alive (its lines
 * stay).
 */
inline bool leavesTheHeapAsItWas(Bytes b, unsigned int pid = 0x0012) {
    unsigned short code = 0;
    delete Sarn::parseSection(b.data(), length(b), 1, &code, pid);
    const long before = heapBlocksAlive();
    delete Sarn::parseSection(b.data(), length(b), 1, &code, pid);
    return heapBlocksAlive() == before;
}

#endif
