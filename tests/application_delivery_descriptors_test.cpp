// External application authorization, prefetch, DII location and IP signalling descriptors.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TDIILocationDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TPrefetchDescriptor.h"

using namespace Sarn;

namespace {
template <class T>
T* parseWhole(Bytes& b, unsigned short* code, unsigned int* bytesRead = nullptr) {
    return T::parse(b.data(), static_cast<unsigned int>(b.size()), bytesRead, code);
}
}  // namespace

TEST(ExternalApplicationAuthorizationDescriptor, ItemsByHashIdLaterWins) {
    LogCapture log;
    // 0x0000000A/0x0002 priority 5, 0x0000000A/0x0001 priority 1, then
    // 0x0000000A/0x0002 again with priority 9.
    Bytes b = {0x05, 0x15, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x05, 0x00, 0x00, 0x00,
               0x0A, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x09};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    auto* d = parseWhole<TExternalApplicationAuthorizationDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 7u);  // the last item's size
    EXPECT_EQ(d->getApplicationIdentifierHashIDs(),
              (std::list<std::string>{"0000000A0001", "0000000A0002"}));
    EXPECT_EQ(d->get("0000000A0002")->getPriority(), 9);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":5,\"descriptor_length\":21,\"descriptor_content\":"
              "\"0x0000000a0002050000000a0001010000000a000209\"");
    TExternalApplicationAuthorizationDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.get("0000000A0001")->getApplicationIdentifier()->getOrganizationID(), 10u);
    EXPECT_EQ(copy.size(), 2);

    Bytes empty = {0x05, 0x00};
    n = 99;
    d = parseWhole<TExternalApplicationAuthorizationDescriptor>(empty, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->size(), 0);
    EXPECT_EQ(n, 0u);
    delete d;
    EXPECT_TRUE(log.lines().empty());

    Bytes trailing = {0x05, 0x0A, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x05, 0x01, 0x02, 0x03};
    EXPECT_EQ(parseWhole<TExternalApplicationAuthorizationDescriptor>(trailing, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TExternalApplicationAuthorizationDescriptorItem::parse: Item length not "
                     "valid: 3. Aborting!"),
            warnLine("TExternalApplicationAuthorizationDescriptor::parse: Invalid item. "
                     "Aborting!")}));
}

TEST(PrefetchDescriptor, LabelsPrioritiesAndFailures) {
    LogCapture log;
    // Transport label 1; "main" priority 100, "img" priority 1.
    Bytes b = {0x0C, 0x0C, 0x01, 0x04, 'm', 'a', 'i', 'n', 0x64, 0x03, 'i', 'm', 'g', 0x01};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TPrefetchDescriptor* d = parseWhole<TPrefetchDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 5u);
    EXPECT_EQ(d->getTransportProtocolLabel(), 1);
    ASSERT_EQ(d->size(), 2u);
    EXPECT_EQ(d->get(0)->getLabel(), "main");
    EXPECT_EQ(d->get(0)->getPriority(), 100);
    EXPECT_EQ(d->get(1)->getLabel(), "img");
    EXPECT_EQ(d->get(2), nullptr);
    TPrefetchDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.get(1)->getPriority(), 1);
    EXPECT_EQ(copy.toJSON(),
              "\"errors\":0,\"descriptor_tag\":12,\"descriptor_length\":12,\"descriptor_content\":"
              "\"0x01046d61696e6403696d6701\"");
    EXPECT_TRUE(log.lines().empty());

    // The label fills the rest of the descriptor: no priority byte.
    Bytes noPriority = {0x0C, 0x04, 0x01, 0x02, 'a', 'b'};
    EXPECT_EQ(parseWhole<TPrefetchDescriptor>(noPriority, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    Bytes badLabel = {0x0C, 0x04, 0x01, 0x07, 'a', 'b'};
    EXPECT_EQ(parseWhole<TPrefetchDescriptor>(badLabel, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TPrefetchDescriptorItem::parse: Item length not valid: 0. Aborting!"),
            warnLine("TPrefetchDescriptor::parse: Invalid item. Aborting!"),
            warnLine(
                "ParserUtils::parseStr: ERROR: String length exceeds available data length: 7 > "
                "2. Aborting!"),
            warnLine("TPrefetchDescriptorItem:: parse: ERROR: parsing Label. Aborting!"),
            warnLine("TPrefetchDescriptor::parse: Invalid item. Aborting!")}));
}

TEST(DIILocationDescriptor, ItemsAndShortItem) {
    LogCapture log;
    // Reserved bit set on the DII identification; association tag 0x0014.
    Bytes one = {0x0D, 0x05, 0x02, 0x80, 0x01, 0x00, 0x14};
    unsigned short code = 0xFFFF;
    TDIILocationDescriptor* d = parseWhole<TDIILocationDescriptor>(one, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getTransportProtocolLabel(), 2);
    ASSERT_EQ(d->size(), 1u);
    EXPECT_EQ(d->get(0)->getDIIIdentification(), 1);
    EXPECT_EQ(d->get(0)->getAssociationTag(), 0x14);
    TDIILocationDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.get(0)->getAssociationTag(), 0x14);
    EXPECT_TRUE(log.lines().empty());

    Bytes seven = {0x0D, 0x07, 0x02, 0x00, 0x01, 0x00, 0x14, 0x00, 0x02};
    EXPECT_EQ(parseWhole<TDIILocationDescriptor>(seven, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TDIILocationDescriptorItem::parse: Item length not valid: 2. Aborting!"),
            warnLine("TDIILocationDescriptor::parse: Invalid item. Aborting!")}));
}

TEST(IPSignalingDescriptor, PlatformId) {
    Bytes b = {0x11, 0x03, 0x45, 0x67, 0x89};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TIPSignalingDescriptor* d = parseWhole<TIPSignalingDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 3u);
    EXPECT_EQ(d->getPlatformID(), 0x456789u);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":17,\"descriptor_length\":3,\"descriptor_content\":"
              "\"0x456789\"");
    TIPSignalingDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.getPlatformID(), 0x456789u);

    Bytes shortOne = {0x11, 0x02, 0x45, 0x67};
    EXPECT_EQ(parseWhole<TIPSignalingDescriptor>(shortOne, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
}
