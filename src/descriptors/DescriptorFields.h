#ifndef SARN_DESCRIPTORS_DESCRIPTORFIELDS_H
#define SARN_DESCRIPTORS_DESCRIPTORFIELDS_H

// Small readers and renderers shared by the stand-alone descriptor classes:
// owned copies of raw byte fields, arrays of big-endian 16-bit values, and
// the JSON forms in which those fields are written.

#include "Bytes.h"
#include "Json.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace fields {

using bytes::copyBytes;

/**
 * An owned array of `slots` 16-bit values (freed with delete[]), the first
 * `count` read big-endian from src and the rest zero. The caller makes sure
 * that count <= slots and that 2 * count bytes are readable at src.
 */
inline unsigned short* readBe16Array(const unsigned char* src, unsigned int count,
                                     unsigned int slots) {
    unsigned short* values = new unsigned short[slots]();
    for (unsigned int i = 0; i < count; ++i)
        values[i] = bytes::be16(src + 2 * i);
    return values;
}

}  // namespace fields

namespace json {

/** Each byte as two lower-case hexadecimal digits, without separators. */
inline void appendHexBytes(Out& o, const unsigned char* p, unsigned int n) {
    for (unsigned int i = 0; i < n; ++i)
        o.hex2(p[i]);
}

/**
 * Raw private bytes written as characters, up to the first zero byte or the
 * end of the field when it holds none.
 */
inline void appendTextUpToZero(Out& o, const unsigned char* p, unsigned int n) {
    for (unsigned int i = 0; i < n && p[i] != 0; ++i)
        o << static_cast<char>(p[i]);
}

/** Decimal values separated by commas (no brackets). */
template <typename T>
void appendNumbers(Out& o, const T* values, unsigned int n) {
    for (unsigned int i = 0; i < n; ++i) {
        if (i != 0)
            o << ',';
        o << values[i];
    }
}

}  // namespace json
}  // namespace Sarn
#pragma GCC visibility pop

#endif
