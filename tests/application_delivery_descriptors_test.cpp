// External application authorization, prefetch, DII location and IP signalling descriptors.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TApplicationIdentifier.h"
#include "TDIILocationDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TPrefetchDescriptor.h"

using namespace Sarn;

// Copies share the parsed bytes but own their items: each test deletes the
// original (p.d) before using its copy.

TEST(ExternalApplicationAuthorizationDescriptor, ItemsByHashIdLaterWins) {
    LogCapture log;
    // 0x0000000A/0x0002 priority 5, 0x0000000A/0x0001 priority 1, then
    // 0x0000000A/0x0002 again with priority 9.
    ParsedDescriptor<TExternalApplicationAuthorizationDescriptor> p(
        {0x05, 0x15, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x05, 0x00, 0x00, 0x00,
         0x0A, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x09});
    ASSERT_NE(p.d, nullptr);
    EXPECT_EQ(p.code, 0);
    EXPECT_EQ(p.read, 7u);  // the last item's size
    EXPECT_EQ(p.d->getApplicationIdentifierHashIDs(),
              (std::list<std::string>{"0000000A0001", "0000000A0002"}));
    EXPECT_EQ(p.d->get("0000000A0002")->getPriority(), 9);
    EXPECT_EQ(p.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":5,\"descriptor_length\":21,\"descriptor_content\":"
              "\"0x0000000a0002050000000a0001010000000a000209\"");
    TExternalApplicationAuthorizationDescriptor copy(p.d);
    delete p.d;
    p.d = nullptr;
    EXPECT_EQ(copy.get("0000000A0001")->getApplicationIdentifier()->getOrganizationID(), 10u);
    EXPECT_EQ(copy.size(), 2);
    // add() keeps an item by its hash id (the caller's item, now owned) and ignores null.
    copy.add(nullptr);
    EXPECT_EQ(copy.size(), 2);
    copy.add(
        new TExternalApplicationAuthorizationDescriptorItem(new TApplicationIdentifier(11, 3), 4));
    EXPECT_EQ(copy.size(), 3);
    EXPECT_EQ(copy.get("0000000B0003")->getPriority(), 4);

    ParsedDescriptor<TExternalApplicationAuthorizationDescriptor> empty({0x05, 0x00});
    ASSERT_NE(empty.d, nullptr);
    EXPECT_EQ(empty.d->size(), 0);
    EXPECT_EQ(empty.read, 0u);
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(ParsedDescriptor<TExternalApplicationAuthorizationDescriptor>(
                  {0x05, 0x0A, 0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x05, 0x01, 0x02, 0x03})
                  .code,
              ERROR_DESCRIPTOR_LENGTH);
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
    ParsedDescriptor<TPrefetchDescriptor> p(
        {0x0C, 0x0C, 0x01, 0x04, 'm', 'a', 'i', 'n', 0x64, 0x03, 'i', 'm', 'g', 0x01});
    ASSERT_NE(p.d, nullptr);
    EXPECT_EQ(p.code, 0);
    EXPECT_EQ(p.read, 5u);
    EXPECT_EQ(p.d->getTransportProtocolLabel(), 1);
    ASSERT_EQ(p.d->size(), 2u);
    EXPECT_EQ(p.d->get(0)->getLabel(), "main");
    EXPECT_EQ(p.d->get(0)->getPriority(), 100);
    EXPECT_EQ(p.d->get(1)->getLabel(), "img");
    EXPECT_EQ(p.d->get(2), nullptr);
    TPrefetchDescriptor copy(p.d);
    delete p.d;
    p.d = nullptr;
    EXPECT_EQ(copy.get(1)->getPriority(), 1);
    EXPECT_EQ(copy.toJSON(),
              "\"errors\":0,\"descriptor_tag\":12,\"descriptor_length\":12,\"descriptor_content\":"
              "\"0x01046d61696e6403696d6701\"");
    // The shortest item, an empty label and its priority, ends the loop.
    ParsedDescriptor<TPrefetchDescriptor> empty({0x0C, 0x05, 0x01, 0x00, 0x07, 0x00, 0x00});
    ASSERT_NE(empty.d, nullptr);
    ASSERT_EQ(empty.d->size(), 2u);
    EXPECT_EQ(empty.d->get(1)->getPriority(), 0);
    EXPECT_TRUE(log.lines().empty());

    // The label fills the rest of the descriptor: no priority byte. Then a
    // label longer than the descriptor.
    EXPECT_EQ(ParsedDescriptor<TPrefetchDescriptor>({0x0C, 0x04, 0x01, 0x02, 'a', 'b'}).code,
              ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(ParsedDescriptor<TPrefetchDescriptor>({0x0C, 0x04, 0x01, 0x07, 'a', 'b'}).code,
              ERROR_DESCRIPTOR_LENGTH);
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
    ParsedDescriptor<TDIILocationDescriptor> p({0x0D, 0x05, 0x02, 0x80, 0x01, 0x00, 0x14});
    ASSERT_NE(p.d, nullptr);
    EXPECT_EQ(p.d->getTransportProtocolLabel(), 2);
    ASSERT_EQ(p.d->size(), 1u);
    EXPECT_EQ(p.d->get(0)->getDIIIdentification(), 1);
    EXPECT_EQ(p.d->get(0)->getAssociationTag(), 0x14);
    TDIILocationDescriptor copy(p.d);
    delete p.d;
    p.d = nullptr;
    EXPECT_EQ(copy.get(0)->getAssociationTag(), 0x14);
    EXPECT_TRUE(log.lines().empty());

    // Seven bytes: one item and two left over.
    EXPECT_EQ(ParsedDescriptor<TDIILocationDescriptor>(
                  {0x0D, 0x07, 0x02, 0x00, 0x01, 0x00, 0x14, 0x00, 0x02})
                  .code,
              ERROR_DESCRIPTOR_LENGTH);
    // The shortest descriptor the header lets through: three bytes of an item.
    EXPECT_EQ(ParsedDescriptor<TDIILocationDescriptor>({0x0D, 0x04, 0x02, 0x00, 0x01, 0x00}).code,
              ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TDIILocationDescriptorItem::parse: Item length not valid: 2. Aborting!"),
            warnLine("TDIILocationDescriptor::parse: Invalid item. Aborting!"),
            warnLine("TDIILocationDescriptorItem::parse: Item length not valid: 3. Aborting!"),
            warnLine("TDIILocationDescriptor::parse: Invalid item. Aborting!")}));
}

TEST(IPSignalingDescriptor, PlatformId) {
    ParsedDescriptor<TIPSignalingDescriptor> p({0x11, 0x03, 0x45, 0x67, 0x89});
    ASSERT_NE(p.d, nullptr);
    EXPECT_EQ(p.code, 0);
    EXPECT_EQ(p.read, 3u);
    EXPECT_EQ(p.d->getPlatformID(), 0x456789u);
    EXPECT_EQ(p.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":17,\"descriptor_length\":3,\"descriptor_content\":"
              "\"0x456789\"");
    TIPSignalingDescriptor copy(p.d);
    EXPECT_EQ(copy.getPlatformID(), 0x456789u);

    EXPECT_EQ(ParsedDescriptor<TIPSignalingDescriptor>({0x11, 0x02, 0x45, 0x67}).code,
              ERROR_DESCRIPTOR_LENGTH);
}
