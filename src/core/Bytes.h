#ifndef SARN_CORE_BYTES_H
#define SARN_CORE_BYTES_H

// Big-endian field readers and owned byte copies. The field
// readers do not check: parsers read through bytes::Reader (Reader.h), which
// checks every read and uses them underneath.

#include <cstring>

#pragma GCC visibility push(hidden)  // internal: not exported
namespace Sarn {
namespace bytes {

inline unsigned short be16(const unsigned char* p) {
    return static_cast<unsigned short>((p[0] << 8) | p[1]);
}
inline unsigned int be24(const unsigned char* p) {
    return (static_cast<unsigned int>(p[0]) << 16) | (static_cast<unsigned int>(p[1]) << 8) | p[2];
}
inline unsigned int be32(const unsigned char* p) {
    return (static_cast<unsigned int>(p[0]) << 24) | (static_cast<unsigned int>(p[1]) << 16) |
           (static_cast<unsigned int>(p[2]) << 8) | p[3];
}
/** 13-bit PID after three reserved bits. */
inline unsigned short pid13(const unsigned char* p) {
    return static_cast<unsigned short>(((p[0] & 0x1F) << 8) | p[1]);
}
/** 12-bit length after four reserved bits. */
inline unsigned short len12(const unsigned char* p) {
    return static_cast<unsigned short>(((p[0] & 0x0F) << 8) | p[1]);
}

/**
 * An owned copy (freed with delete[]) of n bytes at src, or null when there
 * is nothing to copy (src null or n 0).
 */
inline unsigned char* copyBytes(const unsigned char* src, unsigned int n) {
    if (src == nullptr || n == 0)
        return nullptr;
    unsigned char* copy = new unsigned char[n];
    std::memcpy(copy, src, n);
    return copy;
}

}  // namespace bytes
}  // namespace Sarn
#pragma GCC visibility pop

#endif
