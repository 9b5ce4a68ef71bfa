// Network information table: network descriptors, transport streams, failures.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TNITTable.h"
#include "TTSInformationDescriptor.h"

using namespace Sarn;

namespace {

TNITTable* parse(Bytes& b, unsigned short* code, int checkCrc = 1, TNITTable* previous = nullptr) {
    return TNITTable::parse(b.data(), static_cast<unsigned int>(b.size()), checkCrc, 0, code,
                            previous);
}

Bytes tsEntry(unsigned short tsid, unsigned short onid, const Bytes& descriptors) {
    return be16(tsid) + be16(onid) + loop12(descriptors);
}

// Network 0x0641 "SARN TV" with a system management descriptor (accepted,
// not decoded); transport stream 0x0641 with a service list and a terrestrial
// delivery descriptor (accepted, not decoded) and TS information; transport
// stream 0x0500 without descriptors.
Bytes networkBody() {
    const Bytes tsInfo = {0xCD, 0x0A, 0x05, 0x12, 'S', 'A', 'R', 'N', 0x0F, 0x01, 0xC8, 0x58};
    return loop12({0x40, 0x07, 'S', 'A', 'R', 'N', ' ', 'T', 'V', 0xFE, 0x02, 0x03, 0x01}) +
           loop12(tsEntry(0x0641, 0x0641,
                          Bytes{0x41, 0x03, 0xC8, 0x58, 0xC0, 0xFA, 0x04, 0xC0, 0x02, 0x15, 0x32} +
                              tsInfo) +
                  tsEntry(0x0500, 0x0641, {}));
}
}  // namespace

TEST(NIT, NetworkAndTransportStreamsToJson) {
    LogCapture log;
    Bytes b = longSection(0x40, 0x0641, 3, networkBody());
    unsigned short code = 0xFFFF;
    TNITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(t->getNetworkID(), 0x0641);
    EXPECT_EQ(t->getVersion(), 3);
    EXPECT_EQ(t->getCurrentIndicator(), 1);
    EXPECT_EQ(t->getTransportStreamLoopSize(), 2);
    EXPECT_EQ(t->getTransportStreamIDs(), (std::list<unsigned short>{0x0500, 0x0641}));
    EXPECT_EQ(t->toJSON(),
              "{\"networkId\":1601,\"networkDescriptors\":["
              "{\"name\":\"networkNameDescriptor\",\"networkName\":\"SARN TV\"}],"
              "\"transportStreams\":["
              "{\"transportStreamId\":1280,\"originalNetworkId\":1601,\"transportDescriptors\":[]},"
              "{\"transportStreamId\":1601,\"originalNetworkId\":1601,\"transportDescriptors\":["
              "{\"name\":\"tsInformationDescriptor\",\"remoteControlKeyId\":5,\"tsName\":\"SARN\","
              "\"loop\":[{\"transmissionLayer\":0,\"modulationSystem\":0,\"serviceId\":[51288]}]}"
              "]}]}");
    const TTransportStreamInfo* ts = t->getTransportStreamInfo(0x0641);
    ASSERT_NE(ts, nullptr);
    EXPECT_EQ(ts->getOriginalNetworkID(), 0x0641);
    // Descriptors point into the caller's bytes.
    EXPECT_EQ(ts->getDescriptor(0xCD)->getData(), b.data() + 42);
    EXPECT_EQ(t->getTransportStreamInfo(0x0001), nullptr);

    // The CRC switch is the first integer argument; a repeat is reported.
    EXPECT_EQ(parse(b, &code, 1, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    delete t;
    Bytes corrupt = b;
    corrupt.back() ^= 0x01;
    t = TNITTable::parse(corrupt.data(), static_cast<unsigned int>(corrupt.size()), 0, 1, &code,
                         nullptr);
    EXPECT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    delete t;
    EXPECT_EQ(parse(corrupt, &code), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
}

TEST(NIT, LoopLengthChecks) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // No transport streams at all.
    Bytes none = longSection(0x40, 0x0001, 0, loop12({}) + loop12({}));
    TNITTable* t = parse(none, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->toJSON(), "{\"networkId\":1,\"networkDescriptors\":[],\"transportStreams\":[]}");
    delete t;

    // network_descriptors_length reaching two bytes before the CRC passes
    // (the last two bytes are then read as transport_stream_loop_length); one
    // more fails.
    Bytes exact = longSection(0x40, 0x0001, 0, {0xF0, 0x02, 0x53, 0x00, 0xF0, 0x00});
    t = parse(exact, &code);
    ASSERT_NE(t, nullptr);
    delete t;
    Bytes over = longSection(0x40, 0x0001, 0, {0xF0, 0x03, 0x53, 0x00, 0xF0, 0x00});
    EXPECT_EQ(parse(over, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // transport_stream_loop_length past the CRC.
    Bytes loopOver =
        longSection(0x40, 0x0001, 0, Bytes{0xF0, 0x00, 0xF0, 0x07} + tsEntry(0x0001, 0x0001, {}));
    EXPECT_EQ(parse(loopOver, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // A network descriptor overrunning its loop only warns.
    Bytes netOverrun = longSection(0x40, 0x0001, 0, loop12({0x40, 0x05, 'A'}) + loop12({}));
    t = parse(netOverrun, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    delete t;

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TNITTable::parse: NetDescLen not valid: 13 > 12. Aborting!"),
            warnLine("TNITTable::parse: Item length not valid: 7 > 10. Aborting!"),
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 7 > 3. "
                     "Aborting!"),
            warnLine("TNITTable::parse: read bytes different than network descriptors length (0 != "
                     "3)")}));
}

TEST(NIT, TransportStreamEntries) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // Five bytes left for an entry: the entry fails, then the table.
    Bytes shortEntry =
        longSection(0x40, 0x0001, 0, loop12({}) + loop12({0x00, 0x01, 0x00, 0x01, 0xF0}));
    EXPECT_EQ(parse(shortEntry, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);

    // transport_descriptors_length beyond everything left: refused.
    Bytes tooLong = longSection(
        0x40, 0x0001, 0,
        loop12({}) + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x0B, 0xCD, 0x02, 0x00, 0x00}));
    EXPECT_EQ(parse(tooLong, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);

    // Longer than the entry's bytes but not than the whole rest: clamped to
    // the loop (a TS information descriptor of 4 bytes is still read), and
    // the entry takes every byte left.
    Bytes clamped = longSection(
        0x40, 0x0001, 0,
        loop12({}) + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x08, 0xCD, 0x02, 0x07, 0x00}));
    TNITTable* t = parse(clamped, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    const TTSInformationDescriptor* info = static_cast<const TTSInformationDescriptor*>(
        t->getTransportStreamInfo(1)->getDescriptor(0xCD));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->getRemoteControlKeyID(), 7);
    delete t;

    // A repeated transport_stream_id: the later entry stays.
    Bytes twice =
        longSection(0x40, 0x0001, 0,
                    loop12({}) + loop12(tsEntry(0x0002, 0x0010, {}) + tsEntry(0x0002, 0x0020, {})));
    t = parse(twice, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getTransportStreamLoopSize(), 1);
    EXPECT_EQ(t->getTransportStreamInfo(2)->getOriginalNetworkID(), 0x0020);
    delete t;

    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TNITTransportStreamInfo::parse: Item length not valid: 5. Aborting!"),
            warnLine("TNITTable::parse: Invalid item. Aborting!"),
            warnLine("TNITTransportStreamInfo::parse: Item length not valid: 11 > 10. Aborting!"),
            warnLine("TNITTable::parse: Invalid item. Aborting!"),
            warnLine("TNITTransportStreamInfo::parse: TS descriptor length bigger than data "
                     "length! (8 > 4)")}));
}
