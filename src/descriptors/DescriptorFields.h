#ifndef SARN_DESCRIPTORS_DESCRIPTORFIELDS_H
#define SARN_DESCRIPTORS_DESCRIPTORFIELDS_H

// Small readers and renderers shared by the stand-alone descriptor classes:
// owned copies of raw byte fields, arrays of big-endian 16-bit values, and
// the JSON forms in which those fields are written.

#include <cstring>
#include <string>

#include "Arena.h"
#include "Bytes.h"
#include "Json.h"
#include "Reader.h"

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace fields {

// The arrays below are freed with releaseObject: built in arena when the
// parse has one, on the heap otherwise (arena null).

/** An owned copy of n bytes at src (null when src is null or n is 0). */
inline unsigned char* copyBytes(memory::Arena* arena, const unsigned char* src, unsigned int n) {
    if (src == nullptr || n == 0)
        return nullptr;
    unsigned char* copy = memory::newArray<unsigned char>(arena, n);
    std::memcpy(copy, src, n);
    return copy;
}

/** An owned copy of the next n bytes of r (null when n is 0 or they are not there). */
inline unsigned char* copyBytes(memory::Arena* arena, bytes::Reader& r, unsigned int n) {
    return copyBytes(arena, r.bytes(n), n);
}

/**
 * The bytes left in r, as many as an 8-bit size counts (the count modulo
 * 256): size receives that count and the bytes come back as an owned copy
 * (null for none).
 */
inline unsigned char* copyRest8(memory::Arena* arena, bytes::Reader& r, unsigned char& size) {
    size = static_cast<unsigned char>(r.remaining());
    return copyBytes(arena, r, size);
}

/**
 * The next `count` 16-bit big-endian values of r in an owned array of
 * `slots`, the slots past count zero; count <= slots. Values not there read
 * as 0.
 */
inline unsigned short* readBe16Array(memory::Arena* arena, bytes::Reader& r, unsigned int count,
                                     unsigned int slots) {
    unsigned short* values = memory::newArray<unsigned short>(arena, slots);
    std::memset(values, 0, slots * sizeof(unsigned short));
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
inline unsigned short* readRest16(memory::Arena* arena, bytes::Reader& r, unsigned char& count) {
    const unsigned int payload = r.remaining();
    if (payload == 0)
        return nullptr;
    count = static_cast<unsigned char>(payload / 2);
    return readBe16Array(arena, r, count, payload);
}

/** The next n bytes of r as characters, copied as they are (nothing dropped). */
inline void readChars(bytes::Reader& r, std::string& out, unsigned int n) {
    const unsigned char* src = r.bytes(n);
    if (src != nullptr)
        out.assign(reinterpret_cast<const char*>(src), n);
}
/** The same into a text, whose room is taken in arena when there is one. */
inline void readChars(bytes::Reader& r, memory::Text& out, unsigned int n, memory::Arena* arena) {
    const unsigned char* src = r.bytes(n);
    if (src == nullptr)
        return;
    char* to = out.room(n, arena);
    if (n != 0)
        std::memcpy(to, src, n);
    out.keep(n);
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
