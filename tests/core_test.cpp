// The shared helpers: CRC, times, BCD, escaping, the string and byte-array
// readers, the JSON writer and the bounded reader.
#include <gtest/gtest.h>

#include <random>

#include "ISDBTUtils.h"
#include "Json.h"
#include "LogCapture.h"
#include "ParserUtils.h"
#include "Reader.h"
#include "Sections.h"

using namespace Sarn;
using Sarn::bytes::Reader;

TEST(ISDBTUtils, CrcTimesBcdAndEscaping) {
    // A real PAT: the CRC over everything before the CRC field equals the
    // field, and over the whole section leaves a zero remainder.
    Bytes pat = withCrc({0x00, 0xB0, 0x11, 0x02, 0xE1, 0xC1, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x10,
                         0x5C, 0x20, 0xE1, 0x01});
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 16), 0x27AC842Cu);
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 20), 0u);
    EXPECT_EQ(ISDBTUtils::getSectionCRC32(pat.data(), 0), 0xFFFFFFFFu);
    // Lengths up to 4 KB at every alignment: identical to the bitwise CRC.
    std::mt19937 rng(7);
    Bytes buf(4100);
    for (auto& b : buf)
        b = static_cast<unsigned char>(rng());
    for (unsigned int len : {1u, 7u, 8u, 9u, 15u, 16u, 17u, 183u, 1021u, 4093u, 4096u})
        for (unsigned int off = 0; off < 4; ++off)
            EXPECT_EQ(ISDBTUtils::getSectionCRC32(buf.data() + off, len),
                      referenceCrc32(buf.data() + off, len))
                << len << " at " << off;

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

    // Only quotes and backslashes are escaped.
    EXPECT_EQ(ISDBTUtils::escapeJSONString("a\"b"), "a\\\"b");
    EXPECT_EQ(ISDBTUtils::escapeJSONString("\\"), "\\\\");
    EXPECT_EQ(ISDBTUtils::escapeJSONString("x\ny\t\x01\xC7"), "x\ny\t\x01\xC7");
    EXPECT_EQ(ISDBTUtils::escapeJSONString(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(ParserUtils, StringsAndByteArrays) {
    LogCapture log;
    std::string out = "old";
    unsigned char prefixed[] = {0x03, 0x41, 0x0D, 0x42};
    EXPECT_EQ(ParserUtils::parseStr(prefixed, out, 0, 4), 4);
    EXPECT_EQ(out, "AB");
    unsigned char tooLong[] = {0x05, 0x41};
    out = "keep";
    EXPECT_EQ(ParserUtils::parseStr(tooLong, out, 0, 2), -1);
    EXPECT_EQ(out, "keep");
    // Known length: no length byte. Control codes go; NUL, tab, LF, 0xA1.. stay.
    unsigned char mixed[] = {0xA0, 0xA1, 0x00, 0x09, 0x0A, 0x1B,
                             0x7F, 0x80, 0x9F, 0x20, 0x7E, 0xFF};
    EXPECT_EQ(ParserUtils::parseStr(mixed, out, sizeof mixed, sizeof mixed), 12);
    EXPECT_EQ(out, std::string("\xA1\0\t\n \x7E\xFF", 7));
    EXPECT_EQ(ParserUtils::parseStr(mixed, out, 0, 0), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ParserUtils::parseStr(mixed, out, 3, 2), -1);

    unsigned char src[] = {1, 2, 3};
    unsigned char* target = nullptr;
    ParserUtils::parseByteArray(src, target, 0);
    EXPECT_EQ(target, nullptr);
    ParserUtils::parseByteArray(src, target, 3);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(Bytes(target, target + 3), Bytes({1, 2, 3}));
    delete[] target;
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data "
                           "length: 5 > 1. Aborting!"),
                  warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data "
                           "length: 3 > 2. Aborting!"),
                  warnLine("ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!"),
                  warnLine("ParserUtils::parseByteArray: ERROR: Byte array length is not greater "
                           "than zero.Aborting!"),
                  warnLine("ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!")}));
    EXPECT_EQ(log.lines()[0].tag, "Sarn");
}

TEST(Reader, BigEndianFieldsAndAStickyFailurePastTheEnd) {
    // PMT-like: a PCR PID with reserved bits, a 12-bit length, a 24-bit and a 32-bit field.
    const unsigned char d[] = {0xE1, 0x01, 0xF0, 0x0A, 0x12, 0x34,
                               0x56, 0xDE, 0xAD, 0xBE, 0xEF, 0x7F};
    Reader r(d, sizeof d);
    EXPECT_EQ(r.pid(), 0x0101);
    EXPECT_EQ(r.length12(), 0x00A);
    EXPECT_EQ(r.u24(), 0x123456u);
    EXPECT_EQ(r.peek(), 0xDE);
    EXPECT_EQ(r.peek(5), 0);  // outside: 0, and the reader is still good
    EXPECT_TRUE(r.ok());
    EXPECT_EQ(r.u32(), 0xDEADBEEFu);
    EXPECT_EQ(r.position(), 11u);
    EXPECT_TRUE(r.has(1));
    EXPECT_FALSE(r.has(2));
    EXPECT_EQ(r.u16(), 0);  // one byte left: nothing read, failed
    EXPECT_FALSE(r.ok());
    EXPECT_EQ(r.remaining(), 0u);
    EXPECT_EQ(r.u8(), 0);  // sticky: even the byte that was there
    EXPECT_EQ(r.bytes(0), nullptr);
    EXPECT_EQ(r.position(), 11u);
    unsigned char tag = 0, size = 0;
    EXPECT_FALSE(r.peekHeader(tag, size));  // failed: no header either
    Reader header(d, 2);
    ASSERT_TRUE(header.peekHeader(tag, size));
    EXPECT_EQ(tag, 0xE1);
    EXPECT_EQ(size, 0x01);
    EXPECT_EQ(header.position(), 0u);  // peeked, not read
    header.skip(1);
    EXPECT_FALSE(header.peekHeader(tag, size));  // one byte cannot hold a header
    Reader empty(nullptr, 5);                    // no data: nothing to read
    EXPECT_EQ(empty.remaining(), 0u);
    EXPECT_EQ(empty.u8(), 0);
    EXPECT_FALSE(empty.ok());
}

TEST(Reader, SubReadersStringsAndBroadcastTimes) {
    // A loop of 3 bytes, then 2 bytes beyond it that the loop must not see.
    const unsigned char d[] = {0x03, 0xAA, 0xBB, 0xCC, 0x11, 0x22};
    Reader r(d, sizeof d);
    Reader loop = r.sub(r.u8());
    EXPECT_EQ(loop.remaining(), 3u);
    EXPECT_EQ(loop.u16(), 0xAABB);
    EXPECT_EQ(loop.u16(), 0);  // past its own end, though the parent has bytes
    EXPECT_FALSE(loop.ok());
    EXPECT_TRUE(r.ok());
    EXPECT_EQ(r.u16(), 0x1122);
    Reader tooLong = Reader(d, sizeof d).sub(7);
    EXPECT_FALSE(tooLong.ok());
    EXPECT_EQ(tooLong.remaining(), 0u);
    Reader whole(d, sizeof d);
    whole.skip(4);
    Reader rest = whole.rest();
    EXPECT_TRUE(whole.atEnd());
    EXPECT_EQ(rest.u16(), 0x1122);

    // "AB<CR>C" then a byte: the string is 4 bytes on the wire, 3 stored.
    const unsigned char s[] = {'A', 'B', 0x0D, 'C', 0x09};
    Reader t(s, sizeof s);
    std::string out;
    EXPECT_EQ(t.string(out, 4), 4);
    EXPECT_EQ(out, "ABC");
    EXPECT_EQ(t.u8(), 0x09);
    Reader u(s, sizeof s);
    EXPECT_EQ(u.string(out, 6), -1);
    EXPECT_FALSE(u.ok());

    // An event's start_time (MJD 0xC079 = 1993-10-13, 12:45:00 in BCD), its
    // duration (01:45:30), then a loop length that runs past the bytes.
    const unsigned char e[] = {0xC0, 0x79, 0x12, 0x45, 0x00, 0x01, 0x45, 0x30, 0x09, 0xAA, 0xBB};
    Reader ev(e, sizeof e);
    EXPECT_EQ(ev.mjdTime(), 750516300u);
    EXPECT_EQ(ev.bcdTime(), 6330u);
    Reader clamped = ev.subAtMost(ev.u8());  // 9 announced, 2 there: bounded, not failed
    EXPECT_TRUE(ev.ok());
    EXPECT_TRUE(ev.atEnd());
    EXPECT_EQ(clamped.remaining(), 2u);
    Reader shortTime(e, 4);  // the seconds byte is missing
    EXPECT_EQ(shortTime.mjdTime(), 750470400u + 12 * 3600u + 45 * 60u);
    EXPECT_FALSE(shortTime.ok());
}
