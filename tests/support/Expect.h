#ifndef SARN_TESTS_EXPECT_H
#define SARN_TESTS_EXPECT_H

#include <string>

#include "Sections.h"

/** A priority-5 line as LogCapture::texts() shows it. */
inline std::string warning(const std::string& text) {
    return "5 SarnISDBTUtils: " + text;
}

/** The byte count of a buffer, as the parsers take it. */
inline unsigned int length(const Bytes& b) {
    return static_cast<unsigned int>(b.size());
}

#endif
