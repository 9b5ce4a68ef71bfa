#ifndef SARN_ISDBTUTILS_H
#define SARN_ISDBTUTILS_H

#include <string>

namespace Sarn {

// Error codes reported through the unsigned short out-parameter of every parse.
constexpr unsigned short ERROR_NONE = 0;
constexpr unsigned short ERROR_PREVIOUS_TABLE_TYPE = 2560;        // 0x0A00
constexpr unsigned short ERROR_TABLE_UNCHANGED = 2561;            // 0x0A01
constexpr unsigned short ERROR_INVALID_DATA = 2562;               // 0x0A02
constexpr unsigned short ERROR_DATA_TOO_SHORT = 2563;             // 0x0A03
constexpr unsigned short ERROR_UNEXPECTED_TABLE_ID = 2564;        // 0x0A04
constexpr unsigned short ERROR_SECTION_LENGTH = 2565;             // 0x0A05
constexpr unsigned short ERROR_CRC32 = 2566;                      // 0x0A06
constexpr unsigned short ERROR_UNEXPECTED_DESCRIPTOR_TAG = 2567;  // 0x0A07
constexpr unsigned short ERROR_DESCRIPTOR_LENGTH = 2568;          // 0x0A08
constexpr unsigned short ERROR_FIELD_PARSE = 2569;                // 0x0A09
constexpr unsigned short ERROR_INVALID_ITEM = 2570;               // 0x0A0A

/** Stateless helpers shared by every table and descriptor. */
class ISDBTUtils {
  public:
    ISDBTUtils() {}
    virtual ~ISDBTUtils();

    /** CRC-32/MPEG-2 (ISO/IEC 13818-1 Annex A) of length bytes; 0xFFFFFFFF for none. */
    static unsigned int getSectionCRC32(unsigned char* data, unsigned int length);
    /** Seconds since 1970 of 00:00:00 of the given Modified Julian Date; 0 up to MJD 40587. */
    static unsigned int mjd2unix(unsigned short mjd);
    /** High nibble * 10 + low nibble; nibbles above 9 are taken as they stand. */
    static unsigned char bcd2U8(unsigned char bcd);
    /** Stores code through error unless error is null. */
    static void setErrorCode(unsigned short* error, unsigned short code);
    /** Escapes double quotes and backslashes; every other byte is copied unchanged. */
    static std::string escapeJSONString(const std::string& text);
};

}  // namespace Sarn

#endif
