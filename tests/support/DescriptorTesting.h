#ifndef SARN_TESTS_DESCRIPTORTESTING_H
#define SARN_TESTS_DESCRIPTORTESTING_H

#include <string>

#include "Sections.h"

/** A captured warning as LogCapture::texts() shows it. */
inline std::string warning(const std::string& text) {
    return "5 SarnISDBTUtils: " + text;
}

/** T::parse over the whole of b (the descriptor keeps pointing into b). */
template <class T>
T* parseWhole(Bytes& b, unsigned short* code, unsigned int* bytesRead = nullptr) {
    return T::parse(b.data(), static_cast<unsigned int>(b.size()), bytesRead, code);
}

#endif
