// The bounded reader: typed big-endian reads, sub-readers for length-prefixed
// loops, and the sticky failure that makes reading past the end impossible.
#include <gtest/gtest.h>

#include <string>

#include "Reader.h"

using Sarn::bytes::Reader;

TEST(Reader, ReadsBigEndianFieldsAndFailsForGoodPastTheEnd) {
    // PMT-like: a PCR PID with reserved bits, a 12-bit length, a 24-bit and a 32-bit field.
    const unsigned char d[] = {0xE1, 0x01, 0xF0, 0x0A, 0x12, 0x34,
                               0x56, 0xDE, 0xAD, 0xBE, 0xEF, 0x7F};
    Reader r(d, sizeof d);
    EXPECT_EQ(r.pid(), 0x0101);
    EXPECT_EQ(r.length12(), 0x00A);
    EXPECT_EQ(r.u24(), 0x123456u);
    EXPECT_EQ(r.peek(), 0xDE);
    EXPECT_EQ(r.peek(4), 0x7F);
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

    Reader empty(nullptr, 5);  // no data: nothing to read
    EXPECT_EQ(empty.remaining(), 0u);
    EXPECT_EQ(empty.u8(), 0);
    EXPECT_FALSE(empty.ok());
}

TEST(Reader, SubReadersBoundNestedLoopsAndStringsDropControlBytes) {
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
}

TEST(Reader, ClampedLoopsAndBroadcastTimes) {
    // An event's start_time (MJD 0xC079 = 1993-10-13, 12:45:00 in BCD), its
    // duration (01:45:30), then a loop length that runs past the bytes.
    const unsigned char d[] = {0xC0, 0x79, 0x12, 0x45, 0x00, 0x01, 0x45, 0x30, 0x09, 0xAA, 0xBB};
    Reader r(d, sizeof d);
    EXPECT_EQ(r.mjdTime(), 750516300u);
    EXPECT_EQ(r.bcdTime(), 6330u);
    Reader loop = r.subAtMost(r.u8());  // 9 announced, 2 there: bounded, not failed
    EXPECT_TRUE(r.ok());
    EXPECT_TRUE(r.atEnd());
    EXPECT_EQ(loop.remaining(), 2u);
    EXPECT_EQ(Reader(d, sizeof d).subAtMost(1).remaining(), 1u);
    Reader shortTime(d, 4);  // the seconds byte is missing
    EXPECT_EQ(shortTime.mjdTime(), 750470400u + 12 * 3600u + 45 * 60u);
    EXPECT_FALSE(shortTime.ok());
}
