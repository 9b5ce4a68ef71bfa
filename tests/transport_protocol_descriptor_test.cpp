// Transport protocol descriptor: protocol_id dispatch, selectors and clone.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TTransportProtocolDescriptorDC.h"
#include "TTransportProtocolDescriptorIC.h"
#include "TTransportProtocolDescriptorIP.h"
#include "TTransportProtocolDescriptorOC.h"
#include "TTransportProtocolDescriptorPC.h"

using namespace Sarn;

namespace {

// Descriptors point into the bytes they were parsed from: b outlives the result.
TTransportProtocolDescriptor* parse(const Bytes& bytes, Bytes& b, unsigned short* code,
                                    unsigned int* n = nullptr) {
    b = bytes;
    return TTransportProtocolDescriptor::parse(b.data(), static_cast<unsigned int>(b.size()), n,
                                               code);
}
}  // namespace

TEST(TransportProtocolDescriptor, ObjectCarouselLocalAndRemote) {
    LogCapture log;
    Bytes local = {0x02, 0x05, 0x00, 0x01, 0x05, 0x00, 0x07};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TTransportProtocolDescriptor* d =
        TTransportProtocolDescriptor::parse(local.data(), 7, &n, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 5u);
    EXPECT_EQ(d->getType(), TTransportProtocolDescriptor::TYPE_OC);
    auto* oc = dynamic_cast<TTransportProtocolDescriptorOC*>(d);
    ASSERT_NE(oc, nullptr);
    EXPECT_FALSE(oc->isRemoteConnection());
    EXPECT_EQ(oc->getComponentTag(), 7);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":1,"
              "\"transport_protocol_label\":5");
    delete d;

    // Remote carousel on service 0x0641/0x0641/0xC840, component 0x41, label 1.
    Bytes remote = {0x02, 0x0B, 0x00, 0x01, 0x01, 0x80, 0x06, 0x41, 0x06, 0x41, 0xC8, 0x40, 0x41};
    d = TTransportProtocolDescriptor::parse(remote.data(), 13, &n, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(n, 11u);
    TTransportProtocolDescriptor* copy = TTransportProtocolDescriptor::clone(d);
    delete d;
    oc = dynamic_cast<TTransportProtocolDescriptorOC*>(copy);
    ASSERT_NE(oc, nullptr);
    EXPECT_TRUE(oc->isRemoteConnection());
    EXPECT_EQ(oc->getOriginalNetworkID(), 0x0641);
    EXPECT_EQ(oc->getTransportStreamID(), 0x0641);
    EXPECT_EQ(oc->getServiceID(), 0xC840);
    EXPECT_EQ(oc->getComponentTag(), 0x41);
    EXPECT_EQ(oc->getTransportProtocolLabel(), 1);
    delete copy;
    EXPECT_TRUE(log.lines().empty());

    // Remote with six selector bytes after the flag byte.
    Bytes cut = {0x02, 0x0A, 0x00, 0x01, 0x05, 0x80, 1, 2, 3, 4, 5, 6};
    EXPECT_EQ(TTransportProtocolDescriptor::parse(cut.data(), 12, &n, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    Bytes dcShort = {0x02, 0x04, 0x00, 0x04, 0x01, 0x00};
    EXPECT_EQ(TTransportProtocolDescriptor::parse(dcShort.data(), 6, &n, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TTransportProtocolDescriptorOC::parse: Item length not valid: 6. Aborting!"),
            warnLine(
                "TTransportProtocolDescriptorDC::parse: Item length not valid: 4. Aborting!")}));
}

TEST(TransportProtocolDescriptor, ProtocolIdDispatch) {
    LogCapture log;
    Bytes wire;
    unsigned short code = 0xFFFF;
    // Protocol 5 is read as an object carousel and keeps its protocol_id.
    TTransportProtocolDescriptor* d =
        parse({0x02, 0x05, 0x00, 0x05, 0x03, 0x00, 0x09}, wire, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_NE(dynamic_cast<TTransportProtocolDescriptorOC*>(d), nullptr);
    EXPECT_EQ(d->getProtocolID(), 5);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":5,"
              "\"transport_protocol_label\":3");
    delete d;
    // Data carousel.
    d = parse({0x02, 0x05, 0x00, 0x04, 0x02, 0x00, 0x0C}, wire, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getType(), TTransportProtocolDescriptor::TYPE_DC);
    TTransportProtocolDescriptor* copy = TTransportProtocolDescriptor::clone(d);
    ASSERT_NE(dynamic_cast<TTransportProtocolDescriptorDC*>(copy), nullptr);
    EXPECT_EQ(copy->toJSON(), d->toJSON());
    delete copy;
    delete d;
    EXPECT_TRUE(log.lines().empty());

    // Interaction channel: refused silently; the header check's 0 stays.
    code = 0xBEEF;
    EXPECT_EQ(parse({0x02, 0x05, 0x00, 0x03, 0x01, 0x00, 0x00}, wire, &code), nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(log.lines().empty());
    code = 0xBEEF;
    EXPECT_EQ(parse({0x02, 0x05, 0x00, 0x06, 0x01, 0x00, 0x00}, wire, &code), nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(parse({0x02, 0x02, 0x00, 0x01}, wire, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(TTransportProtocolDescriptor::clone(nullptr), nullptr);
    ASSERT_EQ(log.texts().size(), 2u);
    EXPECT_EQ(
        log.texts()[0],
        warnLine("TTransportProtocolDescriptor::parse: Unknown protocol ID: 0x0006. Aborting!"));
}

TEST(TransportProtocolDescriptor, IpSelectorUrls) {
    LogCapture log;
    Bytes wire;
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    // Not remote, aligned, one empty URL.
    TTransportProtocolDescriptor* d =
        parse({0x02, 0x06, 0x00, 0x02, 0x07, 0x00, 0x80, 0x00}, wire, &code, &n);
    auto* ip = dynamic_cast<TTransportProtocolDescriptorIP*>(d);
    ASSERT_NE(ip, nullptr);
    EXPECT_EQ(n, 6u);
    EXPECT_TRUE(ip->isAligned());
    EXPECT_FALSE(ip->isRemoteConnection());
    ASSERT_EQ(ip->getURLCount(), 1);
    EXPECT_EQ(ip->getURL(0), "");
    EXPECT_EQ(ip->getTransportProtocolLabel(), 7);
    delete d;

    // Remote, not aligned, two URLs.
    d = parse({0x02, 0x10, 0x00, 0x02, 0x01, 0x80, 0x00, 0x01, 0x00, 0x02, 0x00, 0x03, 0x00, 0x02,
               'a', 'b', 0x01, 'c'},
              wire, &code, &n);
    ip = dynamic_cast<TTransportProtocolDescriptorIP*>(d);
    ASSERT_NE(ip, nullptr);
    EXPECT_EQ(n, 16u);
    EXPECT_EQ(ip->getServiceID(), 3);
    EXPECT_FALSE(ip->isAligned());
    TTransportProtocolDescriptor* copy = TTransportProtocolDescriptor::clone(d);
    delete d;
    ip = dynamic_cast<TTransportProtocolDescriptorIP*>(copy);
    ASSERT_NE(ip, nullptr);
    EXPECT_EQ(ip->getURL(1), "c");
    EXPECT_TRUE(ip->removeURL(0));
    EXPECT_FALSE(ip->removeURL(1));
    EXPECT_EQ(ip->getURL(0), "c");
    delete copy;
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(parse({0x02, 0x06, 0x00, 0x02, 0x07, 0x00, 0x80, 0x04}, wire, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    EXPECT_EQ(log.texts().back(),
              warnLine("TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!"));

    // Remote, but the carrying service and the alignment byte are cut short.
    EXPECT_EQ(parse({0x02, 0x08, 0x00, 0x02, 0x07, 0x80, 0x00, 0x01, 0x00, 0x02}, wire, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(
        log.texts().back(),
        warnLine("TTransportProtocolDescriptorIP::parse: Item length not valid: 4. Aborting!"));
}

TEST(TransportProtocolDescriptor, InteractionChannelAndProtocol5ClassesAreNotCloned) {
    LogCapture log;
    // An interaction channel selector read by hand: two bases, the first
    // with two extensions.
    Bytes b = {0x02, 0x0D, 0x00, 0x03, 0x09, 0x02, 'h', 't',
               0x02, 0x01, 'x',  0x00, 0x01, 'u',  0x00};
    TTransportProtocolDescriptorIC ic(b.data(), static_cast<unsigned int>(b.size()));
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    ASSERT_EQ(ic.parseData(b.data() + 2, 13, &n, &code), 1);
    EXPECT_EQ(n, 13u);
    EXPECT_EQ(ic.getURLCount(), 2u);
    EXPECT_EQ(ic.getURLBase(0), "ht");
    EXPECT_EQ(ic.getURLExtensionCount(0), 2u);
    EXPECT_EQ(ic.getURLExtension(0, 0), "x");
    EXPECT_EQ(ic.getURLExtension(0, 1), "");
    EXPECT_EQ(ic.getURLBase(1), "u");
    EXPECT_EQ(ic.getURLExtensionCount(1), 0u);
    EXPECT_EQ(ic.getURLBase(2), "");
    EXPECT_EQ(ic.getTransportProtocolLabel(), 9);
    EXPECT_EQ(ic.getType(), TTransportProtocolDescriptor::TYPE_DC);
    EXPECT_EQ(TTransportProtocolDescriptor::clone(&ic), nullptr);

    TTransportProtocolDescriptorPC pc(b.data(), 2);
    EXPECT_EQ(pc.getProtocolID(), 5);
    EXPECT_EQ(pc.getType(), TTransportProtocolDescriptor::TYPE_OC);
    EXPECT_EQ(TTransportProtocolDescriptor::clone(&pc), nullptr);
    EXPECT_TRUE(log.lines().empty());

    // A base that leaves no byte for its extension count.
    TTransportProtocolDescriptorIC cut(b.data(), 2);
    EXPECT_EQ(cut.parseData(b.data() + 2, 6, &n, &code), 0);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    // A URL base, then a URL extension, longer than the selector.
    Bytes longBase = {0x00, 0x03, 0x09, 0x05, 'h'};
    EXPECT_EQ(cut.parseData(longBase.data(), 5, &n, &code), 0);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    Bytes longExtension = {0x00, 0x03, 0x09, 0x01, 'h', 0x01, 0x04, 'x'};
    code = 0xFFFF;
    EXPECT_EQ(cut.parseData(longExtension.data(), 8, &n, &code), 0);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    const std::string overrun =
        "ParserUtils::parseStr: ERROR: String length exceeds available data length: ";
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TTransportProtocolDescriptorIC::parse: Item length not valid: 0. Aborting!"),
            warnLine(overrun + "5 > 1. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Base. Aborting!"),
            warnLine(overrun + "4 > 1. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Extension. "
                     "Aborting!")}));
}
