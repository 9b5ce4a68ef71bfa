#include "ISDBTUtils.h"

#include "Bytes.h"
#include "Json.h"

namespace Sarn {

namespace {

// CRC-32/MPEG-2: polynomial 0x04C11DB7, MSB first, initial value 0xFFFFFFFF,
// no final XOR. Tables for slicing-by-8: table[k][b] is the register change
// caused by byte b followed by k zero bytes, so eight bytes are folded per
// step with the same result as the byte-at-a-time table walk.
struct CrcTables {
    unsigned int t[8][256];
    constexpr CrcTables() : t{} {
        for (unsigned int i = 0; i < 256; ++i) {
            unsigned int c = i << 24;
            for (int bit = 0; bit < 8; ++bit)
                c = (c & 0x80000000u) ? (c << 1) ^ 0x04C11DB7u : c << 1;
            t[0][i] = c;
        }
        for (int k = 1; k < 8; ++k)
            for (unsigned int i = 0; i < 256; ++i)
                t[k][i] = (t[k - 1][i] << 8) ^ t[0][t[k - 1][i] >> 24];
    }
};

constexpr CrcTables kCrc;

}  // namespace

ISDBTUtils::~ISDBTUtils() {}

unsigned int ISDBTUtils::getSectionCRC32(unsigned char* data, unsigned int length) {
    const auto& t = kCrc.t;
    unsigned int crc = 0xFFFFFFFFu;
    const unsigned char* p = data;
    for (; length >= 8; length -= 8, p += 8) {
        const unsigned int hi = crc ^ bytes::be32(p);
        const unsigned int lo = bytes::be32(p + 4);
        crc = t[7][hi >> 24] ^ t[6][(hi >> 16) & 0xFF] ^ t[5][(hi >> 8) & 0xFF] ^ t[4][hi & 0xFF] ^
              t[3][lo >> 24] ^ t[2][(lo >> 16) & 0xFF] ^ t[1][(lo >> 8) & 0xFF] ^ t[0][lo & 0xFF];
    }
    for (; length > 0; --length, ++p)
        crc = (crc << 8) ^ t[0][(crc >> 24) ^ *p];
    return crc;
}

unsigned int ISDBTUtils::mjd2unix(unsigned short mjd) {
    // MJD 40587 is 1970-01-01.
    return mjd > 40587 ? (static_cast<unsigned int>(mjd) - 40587u) * 86400u : 0u;
}

unsigned char ISDBTUtils::bcd2U8(unsigned char bcd) {
    return static_cast<unsigned char>((bcd >> 4) * 10 + (bcd & 0x0F));
}

void ISDBTUtils::setErrorCode(unsigned short* error, unsigned short code) {
    if (error != nullptr)
        *error = code;
}

std::string ISDBTUtils::escapeJSONString(const std::string& text) {
    std::string out;
    out.reserve(text.size() + 8);
    json::Out(out).escaped(text);
    return out;
}

}  // namespace Sarn
