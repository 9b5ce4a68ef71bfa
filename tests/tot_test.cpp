// Time offset table: time decoding, the local time offset loop, rendering.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TLocalTimeOffsetDescriptor.h"
#include "TLocalTimeOffsetDescriptorItem.h"
#include "TTOTTable.h"

using namespace Sarn;

namespace {

TTOTTable* parse(Bytes& b, unsigned short* code, int checkCrc = 1, int descriptors = 1) {
    return TTOTTable::parse(b.data(), static_cast<unsigned int>(b.size()), checkCrc, descriptors,
                            code, nullptr);
}

// MJD and BCD time, then a descriptor loop.
Bytes totBody(unsigned short mjd, unsigned char h, unsigned char m, unsigned char s,
              const Bytes& descriptors) {
    return be16(mjd) + Bytes{h, m, s} + loop12(descriptors);
}

// Brazil, three hours behind UTC, moving to two hours on 2016-10-16 00:00.
const Bytes kBrazilOffset = {0x58, 0x0D, 'B',  'R',  'A',  0x03, 0x03, 0x00,
                             0xE1, 0x4D, 0x00, 0x00, 0x00, 0x02, 0x00};
}  // namespace

TEST(TOT, TimeAndOffsetsToJson) {
    LogCapture log;
    // 2016-05-04 13:07:09; a stream identifier (not carried by a TOT) is skipped.
    Bytes b = shortSection(
        0x73, totBody(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset + Bytes{0x52, 0x01, 0x00}));
    unsigned short code = 0xFFFF;
    TTOTTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(t->getUnixTime(), 1462367229);
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_TOT);
    EXPECT_EQ(t->toJSON(),
              "{\"table_id\":115,\"section_length\":29,\"UTC-3_time\":\"2016-05-04 13:07:09\","
              "\"descriptors\":[{\"errors\":0,\"descriptor_tag\":88,\"descriptor_length\":13,"
              "\"loop\":[{\"country_code\":\"BRA\",\"country_region_id\":0,"
              "\"local_time_offset_polarity\":1,\"local_time_offset\":\"03:00\","
              "\"time_of_change\":\"2016-10-16 00:00:00\",\"next_time_offset\":\"02:00\"}]}]}");

    // The descriptors point into the table's own copy: the caller's bytes
    // may go away.
    const TISDBTDescriptor* offsets = t->getDescriptor(0x58);
    ASSERT_NE(offsets, nullptr);
    EXPECT_EQ(offsets->getData(), t->getData() + 10);
    std::fill(b.begin(), b.end(), 0);
    EXPECT_NE(t->toJSON().find("\"descriptor_tag\":88"), std::string::npos);

    // The table itself as "previous" is ignored: a TOT is never unchanged.
    Bytes again = shortSection(0x73, totBody(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset));
    TTOTTable* t2 =
        TTOTTable::parse(again.data(), static_cast<unsigned int>(again.size()), 1, 1, &code, t);
    ASSERT_NE(t2, nullptr);
    EXPECT_EQ(code, 0);
    delete t2;
    delete t;
}

TEST(TOT, LoopSwitchEarlyDatesAndOverruns) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // Before MJD 40588 the date is day 0; with the loop switched off the
    // descriptors are not read, and the code is still 0.
    Bytes early = shortSection(0x73, totBody(0x0001, 0x23, 0x59, 0x58, kBrazilOffset));
    TTOTTable* t = parse(early, &code, 1, 0);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->toJSON(),
              "{\"table_id\":115,\"section_length\":26,\"UTC-3_time\":\"1970-01-01 23:59:58\","
              "\"descriptors\":[]}");
    delete t;

    // The time is a signed 32-bit count: the last MJD wraps to 1902 on every
    // platform.
    Bytes last = shortSection(0x73, totBody(0xFFFF, 0x23, 0x59, 0x59, {}));
    t = parse(last, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_NE(t->toJSON().find("\"UTC-3_time\":\"1902-03-17 17:31:43\""), std::string::npos);
    delete t;

    // A loop length running past the input: read up to the end of the input,
    // CRC bytes included, after a warning; the offsets before are kept.
    Bytes over = shortSection(0x73, totBody(0xE0A8, 0x13, 0x07, 0x09, kBrazilOffset));
    over[8] = 0xF0;
    over[9] = 0x20;
    over = withCrc(Bytes(over.begin(), over.end() - 4));
    t = parse(over, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getDescriptors(0x58).size(), 1u);
    ASSERT_FALSE(log.texts().empty());
    EXPECT_EQ(log.texts()[0],
              warnLine("TTOTTable::parse: descriptor length bigger than data length! (32 > 19)"));
    delete t;

    // The CRC switch is the first integer argument.
    Bytes bad = early;
    bad.back() ^= 0x01;
    t = parse(bad, &code, 0, 1);
    EXPECT_NE(t, nullptr);
    delete t;
    EXPECT_EQ(parse(bad, &code, 1, 1), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
    log.clear();
    Bytes wrongId = early;
    wrongId[0] = 0x70;
    EXPECT_EQ(parse(wrongId, &code, 0, 1), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_TABLE_ID);

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{warnLine("TISDBTTable::parse: Unexpected table ID. Got 0x70, "
                                           "instead of 0x73. Aborting!")}));
}
