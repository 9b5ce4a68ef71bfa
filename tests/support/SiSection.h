#ifndef SARN_TESTS_SISECTION_H
#define SARN_TESTS_SISECTION_H

#include <algorithm>
#include <string>

#include "Sections.h"

/** A warning line as LogCapture::texts() shows it. */
inline std::string line(const char* text) {
    return std::string("5 SarnISDBTUtils: ") + text;
}

inline unsigned int size(const Bytes& b) {
    return static_cast<unsigned int>(b.size());
}

/**
 * A long-form section (section_syntax_indicator 1) with a correct
 * section_length and CRC32: table_id, table_id_extension, version 'version'
 * (current), section 0 of 0, then the body.
 */
inline Bytes longSection(unsigned char tableId, unsigned short extension, unsigned char version,
                         const Bytes& body) {
    const unsigned int sectionLength = static_cast<unsigned int>(body.size()) + 9;
    Bytes b = {tableId,
               static_cast<unsigned char>(0xB0 | (sectionLength >> 8)),
               static_cast<unsigned char>(sectionLength),
               static_cast<unsigned char>(extension >> 8),
               static_cast<unsigned char>(extension),
               static_cast<unsigned char>(0xC1 | (version << 1)),
               0x00,
               0x00};
    b.insert(b.end(), body.begin(), body.end());
    return withCrc(b);
}

/** A short-form section (no table_id_extension) with a correct section_length and CRC32. */
inline Bytes shortSection(unsigned char tableId, const Bytes& body) {
    const unsigned int sectionLength = static_cast<unsigned int>(body.size()) + 4;
    Bytes b = {tableId, static_cast<unsigned char>(0xB0 | (sectionLength >> 8)),
               static_cast<unsigned char>(sectionLength)};
    b.insert(b.end(), body.begin(), body.end());
    return withCrc(b);
}

/** A loop: four reserved bits and a 12-bit length, then the content. */
inline Bytes loop12(const Bytes& content) {
    const unsigned int n = static_cast<unsigned int>(content.size());
    // Sized once and filled in place: growing a two-byte vector by insert()
    // makes g++ 12 at -O3 warn about a memcpy past its old end (-Warray-bounds)
    // although the copy goes to the new storage.
    Bytes b(content.size() + 2);
    b[0] = static_cast<unsigned char>(0xF0 | (n >> 8));
    b[1] = static_cast<unsigned char>(n);
    std::copy(content.begin(), content.end(), b.begin() + 2);
    return b;
}

/** Two bytes, big-endian. */
inline Bytes be16(unsigned int v) {
    return {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)};
}

/** Concatenation, to build loops piece by piece. */
inline Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

#endif
