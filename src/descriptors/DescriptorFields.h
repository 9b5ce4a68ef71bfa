#ifndef SARN_DESCRIPTORS_DESCRIPTORFIELDS_H
#define SARN_DESCRIPTORS_DESCRIPTORFIELDS_H

// Small readers and renderers shared by the stand-alone descriptor classes:
// owned copies of raw byte fields, arrays of big-endian 16-bit values, and
// the JSON forms in which those fields are written.

#include <string>

#include "Bytes.h"
#include "Json.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace fields {

using bytes::copyBytes;

/** An owned copy of the next n bytes of r (null when n is 0 or they are not there). */
inline unsigned char* copyBytes(bytes::Reader& r, unsigned int n) {
    const unsigned char* src = r.bytes(n);
    return src != nullptr ? copyBytes(src, n) : nullptr;
}

/**
 * The bytes left in r, as many as an 8-bit size counts (the count modulo
 * 256): size receives that count and the bytes come back as an owned copy
 * (null for none).
 */
inline unsigned char* copyRest8(bytes::Reader& r, unsigned char& size) {
    size = static_cast<unsigned char>(r.remaining());
    return copyBytes(r, size);
}

/**
 * The next `count` 16-bit big-endian values of r in an owned array of
 * `slots` (freed with delete[]), the slots past count zero; count <= slots.
 * Values not there read as 0.
 */
inline unsigned short* readBe16Array(bytes::Reader& r, unsigned int count, unsigned int slots) {
    unsigned short* values = new unsigned short[slots]();
    for (unsigned int i = 0; i < count; ++i)
        values[i] = r.u16();
    return values;
}

/**
 * The 16-bit big-endian values that fill the rest of r (an odd trailing byte
 * is left): count receives how many, kept in 8 bits, and that many are read
 * into an owned array of one slot per byte left. Null, with count untouched,
 * when nothing is left.
 */
inline unsigned short* readRest16(bytes::Reader& r, unsigned char& count) {
    const unsigned int payload = r.remaining();
    if (payload == 0)
        return nullptr;
    count = static_cast<unsigned char>(payload / 2);
    return readBe16Array(r, count, payload);
}

/** The next n bytes of r as characters, copied as they are (nothing dropped). */
inline void readChars(bytes::Reader& r, std::string& out, unsigned int n) {
    const unsigned char* src = r.bytes(n);
    if (src != nullptr)
        out.assign(reinterpret_cast<const char*>(src), n);
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
