#ifndef SARN_TESTS_EXPECT_H
#define SARN_TESTS_EXPECT_H

#include "Sections.h"

/** The byte count of a buffer, as the parsers take it. */
inline unsigned int length(const Bytes& b) {
    return static_cast<unsigned int>(b.size());
}

#endif
