// Emergency information descriptor: services, start/end, signal level and
// area codes, and the ways a broken item fails the whole descriptor.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TEmergencyInformationDescriptor.h"

using namespace Sarn;

namespace {
using Parsed = ParsedDescriptor<TEmergencyInformationDescriptor>;

const std::string kItemShort =
    "5 SarnISDBTUtils: TEmergencyInformationDescriptorItem::parse: Item length not valid: ";
const std::string kInvalid =
    "5 SarnISDBTUtils: TEmergencyInformationDescriptor::parse: Invalid item. Aborting!";
}  // namespace

TEST(EmergencyInformationDescriptor, ServicesAndAreaCodes) {
    LogCapture log;
    Parsed one({0xFC, 0x06, 0x00, 0x01, 0xC0, 0x02, 0x12, 0x3F});
    ASSERT_NE(one.d, nullptr);
    EXPECT_EQ(one.code, ERROR_NONE);
    EXPECT_EQ(one.read, 6u);
    EXPECT_EQ(one.d->toJSON(),
              "\"name\":\"emergencyInformationDescriptor\",\"loop\":[{\"serviceId\":1,\"start\":1,"
              "\"signalLevel\":1,\"areaCodes\":[291]}]");

    // A warning ending with no area codes, then one starting at level 0 for
    // two areas: the byte count is the last item's.
    Parsed two(
        {0xFC, 0x0C, 0x5C, 0x38, 0x3F, 0x00, 0x5C, 0x20, 0x80, 0x04, 0xA5, 0xAF, 0x0F, 0xF0});
    ASSERT_NE(two.d, nullptr);
    EXPECT_EQ(two.read, 8u);
    EXPECT_EQ(two.d->size(), 2);
    EXPECT_EQ(two.d->get(1)->getAreaCodeCounter(), 2);
    EXPECT_EQ(two.d->get(2), nullptr);
    EXPECT_EQ(two.d->toJSON(),
              "\"name\":\"emergencyInformationDescriptor\",\"loop\":[{\"serviceId\":23608,"
              "\"start\":0,\"signalLevel\":0,\"areaCodes\":[]},{\"serviceId\":23584,\"start\":1,"
              "\"signalLevel\":0,\"areaCodes\":[2650,255]}]");
    EXPECT_TRUE(two.d->remove(0));
    EXPECT_FALSE(two.d->remove(1));
    EXPECT_EQ(two.d->get(0)->getServiceID(), 0x5C20);
    EXPECT_TRUE(log.lines().empty());
}

TEST(EmergencyInformationDescriptor, BrokenItemsFailTheDescriptor) {
    LogCapture log;
    // A last item without area codes needs two more bytes after it.
    Parsed bare({0xFC, 0x04, 0x00, 0x01, 0xC0, 0x00});
    EXPECT_EQ(bare.d, nullptr);
    EXPECT_EQ(bare.code, ERROR_DESCRIPTOR_LENGTH);

    // The item alone reports its own code.
    Bytes odd = {0x00, 0x01, 0xC0, 0x03, 0x12, 0x34, 0x56};
    unsigned short code = 0;
    EXPECT_EQ(TEmergencyInformationDescriptorItem::parse(odd.data(), 7, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);

    // Area codes announced beyond the bytes handed in are not read.
    Parsed beyond({0xFC, 0x06, 0x00, 0x01, 0xC0, 0x08, 0x12, 0x3F});
    EXPECT_EQ(beyond.d, nullptr);
    EXPECT_EQ(beyond.code, ERROR_DESCRIPTOR_LENGTH);

    // No data: refused with the length handed in.
    code = 0;
    EXPECT_EQ(TEmergencyInformationDescriptorItem::parse(nullptr, 9, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  kItemShort + "4. Aborting!", kInvalid,
                  "6 SarnISDBTUtils: TEmergencyInformationDescriptorItem::parse The area code "
                  "length is not a multiple of 2 (value: 3)",
                  kItemShort + "6. Aborting!", kInvalid, kItemShort + "9. Aborting!"}));
    EXPECT_EQ(log.lines()[2].priority, 6);
}
