// CRC, time, BCD, escaping and the string/byte-array readers.
#include <gtest/gtest.h>

#include <random>

#include "ISDBTUtils.h"
#include "Json.h"
#include "LogCapture.h"
#include "ParserUtils.h"
#include "Sections.h"

using namespace Sarn;

TEST(ISDBTUtils, Crc32MatchesBitwiseReferenceAndSectionField) {
    // A real PAT: the CRC over everything before the CRC field equals the field,
    // and over the whole section (field included) leaves a zero remainder.
    Bytes pat = withCrc({0x00, 0xB0, 0x11, 0x02, 0xE1, 0xC1, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x10,
                         0x5C, 0x20, 0xE1, 0x01});
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 16), 0x27AC842Cu);
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 20), 0u);
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 0), 0xFFFFFFFFu);

    // Every length from 0 to 4 KB, every alignment: identical to the bitwise CRC.
    std::mt19937 rng(7);
    Bytes buf(4100);
    for (auto& b : buf)
        b = static_cast<unsigned char>(rng());
    for (unsigned int len : {1u, 7u, 8u, 9u, 15u, 16u, 17u, 183u, 1021u, 4093u, 4096u})
        for (unsigned int off = 0; off < 4; ++off)
            EXPECT_EQ(ISDBTUtils::getSectionCRC32(buf.data() + off, len),
                      referenceCrc32(buf.data() + off, len))
                << len << " at " << off;
}

TEST(ISDBTUtils, MjdBcdAndErrorCode) {
    EXPECT_EQ(ISDBTUtils::mjd2unix(0), 0u);
    EXPECT_EQ(ISDBTUtils::mjd2unix(40587), 0u);
    EXPECT_EQ(ISDBTUtils::mjd2unix(40588), 86400u);
    EXPECT_EQ(ISDBTUtils::mjd2unix(65535), 2155507200u);
    EXPECT_EQ(ISDBTUtils::mjd2unix(0xE4C4), 1553212800u);  // 2019-03-22

    EXPECT_EQ(ISDBTUtils::bcd2U8(0x59), 59);
    EXPECT_EQ(ISDBTUtils::bcd2U8(0x9A), 100);
    EXPECT_EQ(ISDBTUtils::bcd2U8(0xFF), 165);

    ISDBTUtils::setErrorCode(nullptr, ERROR_INVALID_DATA);
    unsigned short code = 7;
    ISDBTUtils::setErrorCode(&code, ERROR_INVALID_ITEM);
    EXPECT_EQ(code, 2570);
}

TEST(ISDBTUtils, EscapeJSONStringOnlyQuotesAndBackslashes) {
    EXPECT_EQ(ISDBTUtils::escapeJSONString("a\"b"), "a\\\"b");
    EXPECT_EQ(ISDBTUtils::escapeJSONString("\\"), "\\\\");
    EXPECT_EQ(ISDBTUtils::escapeJSONString("x\ny\t\x01\xC7"), "x\ny\t\x01\xC7");
    EXPECT_EQ(ISDBTUtils::escapeJSONString(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(ParserUtils, ParseStrLengthPrefixedFilteredAndBounded) {
    LogCapture log;
    std::string out = "old";
    unsigned char prefixed[] = {0x03, 0x41, 0x0D, 0x42};
    EXPECT_EQ(ParserUtils::parseStr(prefixed, out, 0, 4), 4);
    EXPECT_EQ(out, "AB");

    unsigned char tooLong[] = {0x05, 0x41};
    out = "keep";
    EXPECT_EQ(ParserUtils::parseStr(tooLong, out, 0, 2), -1);
    EXPECT_EQ(out, "keep");
    ASSERT_EQ(log.texts(), std::vector<std::string>{
                               "5 SarnISDBTUtils: ParserUtils::parseStr: ERROR: String length "
                               "exceeds available data length: 5 > 1. Aborting!"});
    EXPECT_EQ(log.lines()[0].tag, "Sarn");

    // Known length: no length byte. Control codes go, NUL, tab, LF, 0xA1.. stay.
    unsigned char mixed[] = {0xA0, 0xA1, 0x00, 0x09, 0x0A, 0x1B,
                             0x7F, 0x80, 0x9F, 0x20, 0x7E, 0xFF};
    EXPECT_EQ(ParserUtils::parseStr(mixed, out, sizeof mixed, sizeof mixed), 12);
    EXPECT_EQ(out, std::string("\xA1\0\t\n \x7E\xFF", 7));

    EXPECT_EQ(ParserUtils::parseStr(mixed, out, 0, 0), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ParserUtils::parseStr(mixed, out, 3, 2), -1);
}

TEST(ParserUtils, ParseByteArrayLogsAndCopies) {
    LogCapture log;
    unsigned char src[] = {1, 2, 3};
    unsigned char* target = nullptr;
    ParserUtils::parseByteArray(src, target, 0);
    EXPECT_EQ(target, nullptr);
    ParserUtils::parseByteArray(src, target, 3);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(Bytes(target, target + 3), Bytes({1, 2, 3}));
    delete[] target;
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            "5 SarnISDBTUtils: ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!",
            "5 SarnISDBTUtils: ParserUtils::parseByteArray: ERROR: Byte array length is not "
            "greater than zero.Aborting!",
            "5 SarnISDBTUtils: ParserUtils::parseByteArray: ERROR: Invalid data target. "
            "Aborting!"}));
}

TEST(Json, NumbersTimesAndZeroFill) {
    std::string s;
    json::Out o(s);
    unsigned char u8 = 200;
    signed char s8 = -3;
    unsigned short u16 = 65535;
    o << u8 << ',' << s8 << ',' << u16 << ',' << true << ',' << 4294967295u << ','
      << -2147483647 - 1;
    o << ' ';
    o.zeroFilled(5, 2) << ' ';
    o.zeroFilled(-5, 3) << ' ';
    o.zeroFilled(123, 2);
    EXPECT_EQ(s, "200,-3,65535,1,4294967295,-2147483648 05 0-5 123");

    std::string t;
    json::Out ot(t);
    json::appendUtcTime(ot, 1462367229);  // 2016-05-04 13:07:09
    ot << '|';
    json::appendUtcTime(ot, -1);  // a negative 32-bit count is before 1970 everywhere
    EXPECT_EQ(t, "2016-05-04 13:07:09|1969-12-31 23:59:59");
}
