// Network information table: network descriptors, transport streams, failures.
#include <gtest/gtest.h>

#include <memory>

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

TEST(NIT, LoopsAndEntriesThatDoNotFit) {
    // Network 1 around each body: the code and the log lines of each parse.
    struct Case {
        const char* what;
        Bytes body;
        unsigned short code;
        std::vector<std::string> log;
    };
    const Bytes none = loop12({});
    const std::vector<Case> cases = {
        {"network_descriptors_length reaching two bytes before the CRC (they are then read as "
         "transport_stream_loop_length)",
         {0xF0, 0x02, 0x53, 0x00, 0xF0, 0x00},
         ERROR_NONE,
         {}},
        {"one byte more",
         {0xF0, 0x03, 0x53, 0x00, 0xF0, 0x00},
         ERROR_DATA_TOO_SHORT,
         {warnLine("TNITTable::parse: NetDescLen not valid: 13 > 12. Aborting!")}},
        {"transport_stream_loop_length past the CRC",
         none + Bytes{0xF0, 0x07} + tsEntry(0x0001, 0x0001, {}),
         ERROR_DATA_TOO_SHORT,
         {warnLine("TNITTable::parse: Item length not valid: 7 > 10. Aborting!")}},
        {"a network descriptor overrunning its loop only warns",
         loop12({0x40, 0x05, 'A'}) + none,
         ERROR_NONE,
         {warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 7 > 3. "
                   "Aborting!"),
          warnLine("TNITTable::parse: read bytes different than network descriptors length (0 "
                   "!= 3)")}},
        {"five bytes left for an entry: the entry fails, then the table",
         none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0}),
         ERROR_INVALID_ITEM,
         {warnLine("TNITTransportStreamInfo::parse: Item length not valid: 5. Aborting!"),
          warnLine("TNITTable::parse: Invalid item. Aborting!")}},
        {"transport_descriptors_length beyond everything left",
         none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x0B, 0xCD, 0x02, 0x00, 0x00}),
         ERROR_INVALID_ITEM,
         {warnLine("TNITTransportStreamInfo::parse: Item length not valid: 11 > 10. Aborting!"),
          warnLine("TNITTable::parse: Invalid item. Aborting!")}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        LogCapture log;
        Bytes b = longSection(0x40, 0x0001, 0, c.body);
        unsigned short code = 0xFFFF;
        std::unique_ptr<TNITTable> t(parse(b, &code));
        EXPECT_EQ(code, c.code);
        EXPECT_EQ(t != nullptr, c.code == ERROR_NONE);
        EXPECT_EQ(log.texts(), c.log);
    }

    LogCapture log;
    unsigned short code = 0xFFFF;
    // No transport streams at all.
    Bytes empty = longSection(0x40, 0x0001, 0, none + none);
    std::unique_ptr<TNITTable> t(parse(empty, &code));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->toJSON(), "{\"networkId\":1,\"networkDescriptors\":[],\"transportStreams\":[]}");

    // transport_descriptors_length longer than the entry's bytes but not than
    // the whole rest: clamped to the loop (a TS information descriptor of 4
    // bytes is still read), and the entry takes every byte left.
    Bytes clamped =
        longSection(0x40, 0x0001, 0,
                    none + loop12({0x00, 0x01, 0x00, 0x01, 0xF0, 0x08, 0xCD, 0x02, 0x07, 0x00}));
    t.reset(parse(clamped, &code));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    const TTSInformationDescriptor* info = static_cast<const TTSInformationDescriptor*>(
        t->getTransportStreamInfo(1)->getDescriptor(0xCD));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->getRemoteControlKeyID(), 7);

    // A repeated transport_stream_id: the later entry stays.
    Bytes twice = longSection(
        0x40, 0x0001, 0, none + loop12(tsEntry(0x0002, 0x0010, {}) + tsEntry(0x0002, 0x0020, {})));
    t.reset(parse(twice, &code));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getTransportStreamLoopSize(), 1);
    EXPECT_EQ(t->getTransportStreamInfo(2)->getOriginalNetworkID(), 0x0020);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TNITTransportStreamInfo::parse: TS descriptor length bigger than data "
                           "length! (8 > 4)")}));
}
