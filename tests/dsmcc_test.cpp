// DSM-CC sections: DSI/DII and DDB kept whole, stream descriptor sections parsed.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TDDBTable.h"
#include "TDSMCCSectionTable.h"
#include "TDsiDiiTable.h"

using namespace Sarn;

namespace {

TDSMCCSectionTable* parse(Bytes& b, unsigned short* code, int checkCrc = 1,
                          TDSMCCSectionTable* previous = nullptr) {
    return TDSMCCSectionTable::parse(b.data(), static_cast<unsigned int>(b.size()), checkCrc, 0,
                                     code, previous);
}

// NPT reference, stream mode, a stream event under the standard tag 0x1A, an
// unknown tag 0x17 and an NPT endpoint.
const Bytes kDescriptors = {
    0x01, 0x12, 0x85, 0xFF, 0x12, 0x34, 0x56, 0x78, 0xFF, 0xFF, 0xFF, 0xFE,  //
    0x00, 0x00, 0x10, 0x00, 0x00, 0x01, 0x00, 0x02,                          //
    0x03, 0x02, 0x01, 0xFF,                                                  //
    0x1A, 0x0E, 0x00, 0x2A, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x01, 0x86, 0xA0,  //
    'a',  'b',  'c',  'd',                                                   //
    0x17, 0x01, 0x00,                                                        //
    0x02, 0x0E, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x64, 0xFF, 0xFF, 0xFF, 0xFE,  //
    0x00, 0x00, 0x03, 0xE8};
constexpr unsigned int kStreamEventAt = 8 + 20 + 4;

}  // namespace

TEST(DsmccSection, StreamDescriptorsIntoSlots) {
    LogCapture log;
    Bytes b = longSection(0x3D, 0x2123, 1, kDescriptors);
    unsigned short code = 0xFFFF;
    TDSMCCSectionTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_DSMCC);
    EXPECT_EQ(t->getDataEventID(), 2);
    EXPECT_EQ(t->getEventMsgGroupID(), 0x123);
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{1, 2, 3, 4}));
    EXPECT_EQ(t->getDescriptor(1), t->getNPTReferenceDescriptor());
    EXPECT_EQ(t->getDescriptor(4), t->getStreamEventDescriptor());
    EXPECT_EQ(t->getDescriptor(0), nullptr);
    EXPECT_EQ(t->getDescriptor(0x1A), nullptr);

    // 33-bit clock values split into bit 32 (H) and bits 31-0 (L) under
    // reserved bits that are all set.
    TNPTReferenceDescriptor* ref = t->getNPTReferenceDescriptor();
    EXPECT_TRUE(ref->isPostDiscontinuity());
    EXPECT_EQ(ref->getDSMCCContentID(), 5);
    EXPECT_EQ(ref->getSTCReferenceH(), 1);
    EXPECT_EQ(ref->getSTCReferenceL(), 0x12345678u);
    EXPECT_EQ(ref->getNPTReferenceH(), 0);
    EXPECT_EQ(ref->getNPTReferenceL(), 4096u);
    EXPECT_EQ(ref->getScaleNumerator(), 1);
    EXPECT_EQ(ref->getScaleDenominator(), 2);
    TNPTEndpointDescriptor* end = t->getNPTEndpointDescriptor();
    EXPECT_EQ(end->getNPTStartH(), 1);
    EXPECT_EQ(end->getNPTStartL(), 100u);
    EXPECT_EQ(end->getNPTStopH(), 0);
    EXPECT_EQ(end->getNPTStopL(), 1000u);
    EXPECT_EQ(t->getStreamModeDescriptor()->getStreamMode(), 1);
    TStreamEventDescriptor* ev = t->getStreamEventDescriptor();
    EXPECT_EQ(ev->getEventID(), 42);
    EXPECT_EQ(ev->getEventNPTH(), 1);
    EXPECT_EQ(ev->getEventNPTL(), 100000u);
    ASSERT_EQ(ev->getPrivateDataSize(), 4);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(ev->getPrivateData()), 4), "abcd");

    // The 0x1A tag was rewritten in the caller's buffer, and the descriptors
    // point into that buffer rather than into the table's copy.
    EXPECT_EQ(b[kStreamEventAt], 0x04);
    EXPECT_EQ(t->getStreamEventDescriptor()->getData(), b.data() + kStreamEventAt);
    EXPECT_EQ(t->getData()[kStreamEventAt], 0x1A);

    EXPECT_EQ(t->toJSON(),
              "\"table_id\":61,\"section_length\":68,\"table_id_extension\":8483,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0");
    EXPECT_EQ(t->getStreamEventDescriptor()->toJSON(),
              "\"errors\":0,\"descriptor_tag\":4,\"descriptor_length\":14,\"descriptor_content\":"
              "\"0x002affffffff000186a061626364\"");
    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(
                               "TDSMCCSectionTable::parse: Unknown descriptor: 0x17. Ignored!")}));

    // The same section again, as broadcast: same version and CRC.
    Bytes repeat = longSection(0x3D, 0x2123, 1, kDescriptors);
    EXPECT_EQ(parse(repeat, &code, 1, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    // Its buffer, rewritten by the first parse, no longer matches its CRC.
    EXPECT_EQ(parse(b, &code, 1, t), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
    delete t;
}

TEST(DsmccSection, CrcSwitchIsTheFirstIntegerArgument) {
    LogCapture log;
    Bytes b = longSection(0x3D, 0x1001, 0, {0x03, 0x02, 0x02, 0xFF});
    b[b.size() - 1] ^= 0xFF;
    unsigned short code = 0;
    EXPECT_EQ(parse(b, &code, 1), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].priority, 6);

    // Switch in the second integer: ignored, no check.
    TDSMCCSectionTable* t = TDSMCCSectionTable::parse(b.data(), static_cast<unsigned int>(b.size()),
                                                      0, 1, &code, nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getTableCRC32(), 0u);
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{3}));
    delete t;

    // Unchecked, a section_length of 2 wraps the body counter: the walk ends
    // where the CRC of the buffer would be.
    Bytes wrapped = {0x3D, 0xB0, 0x02, 0x00, 0x01, 0xC1, 0x00, 0x00,
                     0x03, 0x02, 0x07, 0xFF, 0xDE, 0xAD, 0xBE, 0xEF};
    t = parse(wrapped, &code, 0);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getStreamModeDescriptor()->getStreamMode(), 7);
    delete t;
}

TEST(DsmccSection, BadDescriptorsFailTheSection) {
    LogCapture log;
    unsigned short code = 0;
    // A descriptor longer than what is left: the message shows the tag, not
    // the length, and the room left.
    Bytes overrun = longSection(0x3D, 0x0001, 0, {0x03, 0x02, 0x01, 0xFF, 0x03, 0x05, 0x01});
    EXPECT_EQ(parse(overrun, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // One stray byte before the CRC: its length byte would be the CRC's.
    Bytes stray = longSection(0x3D, 0x0001, 0, {0x03, 0x02, 0x01, 0xFF, 0x02});
    EXPECT_EQ(parse(stray, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // A stream descriptor failing its own checks takes its code to the caller.
    Bytes shortEndpoint =
        longSection(0x3D, 0x0001, 0, {0x02, 0x0D, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(parse(shortEndpoint, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TDSMCCSectionTable::parse: Item length not valid: 3 > 1. Aborting!"),
            warnLine("TDSMCCSectionTable::parse: Item length not valid: 2 > 4294967295. Aborting!"),
            warnLine(
                "TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 15 < "
                "16. Aborting!")}));

    // A repeated tag keeps the later descriptor.
    Bytes twice = longSection(0x3D, 0x0001, 0, {0x03, 0x02, 0x01, 0xFF, 0x03, 0x02, 0x09, 0xFF});
    TDSMCCSectionTable* t = parse(twice, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getStreamModeDescriptor()->getStreamMode(), 9);
    delete t;
}

TEST(DsmccSection, DsiDiiAndDdbAreKeptWithoutParsing) {
    LogCapture log;
    Bytes ddb = {0x3C};
    unsigned short code = 0xFFFF;
    TDDBTable* d = TDDBTable::parse(ddb.data(), 1, 7, 7, &code, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(d->getType(), TISDBTTable::TYPE_DDB);
    EXPECT_EQ(d->getDataLength(), 1u);
    EXPECT_NE(d->getData(), ddb.data());
    EXPECT_EQ(d->getData()[0], 0x3C);
    EXPECT_EQ(d->toJSON(), "\"table_id\":0,\"section_length\":0");
    // No comparison with a previous table, no table_id test.
    TDDBTable* again = TDDBTable::parse(ddb.data(), 1, 1, 1, &code, d);
    ASSERT_NE(again, nullptr);
    delete again;
    delete d;

    Bytes dii = {0x3D, 0xB0, 0x01};
    code = 0xFFFF;
    TDsiDiiTable* s = TDsiDiiTable::parse(dii.data(), 3, 1, 1, &code, nullptr);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(s->getType(), TISDBTTable::TYPE_DSI_DII);
    EXPECT_EQ(s->getTableId(), 0);
    EXPECT_EQ(s->toJSON(), "\"table_id\":0,\"section_length\":0");
    delete s;
    s = TDsiDiiTable::parse(nullptr, 0, 0, 0, nullptr, nullptr);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->getData(), nullptr);
    delete s;
    EXPECT_TRUE(log.lines().empty());
}
