// Download content descriptor (0xC9) with its modules and compatibility structure.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TCompatibilityDescriptorSubItem.h"
#include "TDownloadContentDescriptor.h"

using namespace Sarn;

namespace {

const std::string kNoTarget = "ParserUtils::parseByteArray: ERROR: Invalid data target. Aborting!";

// flags, component_size, download_id, time_out_value_DII, leak_rate and
// component_tag, all zero but the flags.
Bytes fixedPart(unsigned char flags) {
    Bytes b(17, 0x00);
    b[0] = flags;
    return b;
}

// A 0xC9 descriptor around the payload.
Bytes descriptor(const Bytes& payload) {
    return join({{0xC9, static_cast<unsigned char>(payload.size())}, payload});
}

struct Parsed {
    TDownloadContentDescriptor* d;
    unsigned short code;
    unsigned int read;
};

Parsed parse(Bytes& b) {
    Parsed r{nullptr, 0xFFFF, 0xFFFFFFFF};
    r.d = TDownloadContentDescriptor::parse(b.data(), static_cast<unsigned int>(b.size()), &r.read,
                                            &r.code);
    return r;
}

}  // namespace

TEST(DownloadContentDescriptor, EveryPartOfAFullDescriptor) {
    LogCapture log;
    Bytes b =
        descriptor({0xB8,                    // reboot, compatibility, module info and text info
                    0x00, 0x10, 0x00, 0x00,  // component_size 1 MiB
                    0x00, 0x00, 0x00, 0x2A,  // download_id
                    0x00, 0x00, 0x75, 0x30,  // time_out_value_DII 30000 ms
                    0x04, 0x8D, 0x17,        // leak_rate 0x12345, reserved 11
                    0x40,                    // component_tag
                    // Compatibility structure: length 0x0111, of which only the low byte counts.
                    0x01, 0x11, 0x00, 0x01,                                      //
                    0x01, 0x0D, 0x01, 0x00, 0x00, 0x0F, 0x01, 0x02, 0x03, 0x01,  //
                    0x01, 0x02, 0x02, 0xAA, 0xBB,                                //
                    // Two modules, the first without module info.
                    0x00, 0x02,                                //
                    0x34, 0x12, 0x00, 0x00, 0x10, 0x00, 0x00,  //
                    0x01, 0x00, 0x00, 0x00, 0x00, 0x20, 0x02, 0xCA, 0xFE,
                    // Private data, language code and text.
                    0x03, 0x01, 0x02, 0x03,  //
                    'p', 'o', 'r', 0x05, 'H', 'e', 'l', 'l', 'o'});
    Parsed r = parse(b);
    ASSERT_NE(r.d, nullptr);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.read, 67u);
    TDownloadContentDescriptor* d = r.d;
    EXPECT_EQ(d->getReboot(), 1);
    EXPECT_EQ(d->getAddOn(), 0);
    EXPECT_EQ(d->getCompatibilityFlag(), 1);
    EXPECT_EQ(d->getModuleInfoFlag(), 1);
    EXPECT_EQ(d->getTextInfoFlag(), 1);
    EXPECT_EQ(d->getComponentSize(), 1048576u);
    EXPECT_EQ(d->getDownloadID(), 42u);
    EXPECT_EQ(d->getTimeOutValueDII(), 30000u);
    EXPECT_EQ(d->getLeakRate(), 0x12345u);
    EXPECT_EQ(d->getComponentTag(), 0x40);

    TCompatibilityDescriptor* c = d->getCompatibilityDescriptor();
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->getCompatibilityDescriptorItemSize(), 1);
    TCompatibilityDescriptorItem* item = c->getCompatibilityDescriptorItem(0);
    EXPECT_EQ(item->getDescriptorType(), 1);
    EXPECT_EQ(item->getSpecifierType(), 1);
    EXPECT_EQ(item->getSpecifierData(), 0x00000Fu);
    EXPECT_EQ(item->getModel(), 4);    // 1 << 2
    EXPECT_EQ(item->getVersion(), 6);  // 3 << 1
    ASSERT_EQ(item->getCompatibilityDescriptorSubItemSize(), 1);
    TCompatibilityDescriptorSubItem* sub = item->getCompatibilityDescriptorSubItem(0);
    EXPECT_EQ(sub->getSubDescriptorType(), 2);
    ASSERT_EQ(sub->getAdditionalInformationLength(), 2);
    EXPECT_EQ(sub->getAdditionalInformation()[1], 0xBB);

    ASSERT_EQ(d->getDownloadContentDescriptorItemSize(), 2);
    TDownloadContentDescriptorItem* m0 = d->getDownloadContentDescriptorItem(0);
    TDownloadContentDescriptorItem* m1 = d->getDownloadContentDescriptorItem(1);
    EXPECT_EQ(m0->getModuleID(), 0x1234);  // least significant byte first
    EXPECT_EQ(m0->getModuleSize(), 4096u);
    EXPECT_EQ(m0->getModuleInfo(), nullptr);
    EXPECT_EQ(m1->getModuleID(), 0x0001);
    EXPECT_EQ(m1->getModuleSize(), 32u);
    ASSERT_EQ(m1->getModuleInfoLength(), 2);
    EXPECT_EQ(m1->getModuleInfo()[0], 0xCA);
    EXPECT_EQ(d->getDownloadContentDescriptorItem(2), nullptr);

    ASSERT_EQ(d->getPrivateDataLength(), 3);
    EXPECT_EQ(d->getPrivateData()[2], 0x03);
    EXPECT_EQ(d->getLanguageCode(), "por");
    EXPECT_EQ(d->getText(), "Hello");
    // Every byte array read logs the (harmless) null target message.
    EXPECT_EQ(log.texts(), (std::vector<std::string>(3, warnLine(kNoTarget))));

    delete d;
}

TEST(DownloadContentDescriptor, MinimalDescriptorLengthsAndRendering) {
    LogCapture log;
    Bytes zero = descriptor(Bytes(18, 0x00));
    Parsed r = parse(zero);
    ASSERT_NE(r.d, nullptr);
    EXPECT_EQ(r.read, 18u);
    EXPECT_EQ(r.d->getDescriptorTag(), 0xC9);
    EXPECT_EQ(r.d->getComponentSize(), 0u);
    EXPECT_EQ(r.d->getCompatibilityDescriptor(), nullptr);
    EXPECT_EQ(r.d->getDownloadContentDescriptorItemSize(), 0);
    EXPECT_EQ(r.d->getPrivateData(), nullptr);
    EXPECT_EQ(r.d->getLanguageCode(), "");
    EXPECT_EQ(r.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":201,\"descriptor_length\":18,\"descriptor_content\":"
              "\"0x" +
                  std::string(36, '0') + "\"");
    delete r.d;

    // The compatibility length 0x0105 counts as 5: the count 0 and three
    // bytes more are stepped over before the private data length.
    Bytes compat =
        descriptor(join({fixedPart(0x20), {0x01, 0x05, 0x00, 0x00, 0xEE, 0xEE, 0xEE}, {0x00}}));
    r = parse(compat);
    ASSERT_NE(r.d, nullptr);
    EXPECT_EQ(r.read, 25u);
    EXPECT_EQ(r.d->getCompatibilityDescriptor()->getCompatibilityDescriptorItemSize(), 0);
    delete r.d;

    // A zero text length at the very end is an empty text.
    Bytes emptyText = descriptor(join({fixedPart(0x08), {0x00, 'e', 'n', 'g', 0x00}}));
    r = parse(emptyText);
    ASSERT_NE(r.d, nullptr);
    EXPECT_EQ(r.read, 22u);
    EXPECT_EQ(r.d->getLanguageCode(), "eng");
    EXPECT_EQ(r.d->getText(), "");
    delete r.d;
    EXPECT_TRUE(log.lines().empty());

    Bytes seventeen = descriptor(Bytes(17, 0x00));
    r = parse(seventeen);
    EXPECT_EQ(r.d, nullptr);
    EXPECT_EQ(r.code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(r.read, 0xFFFFFFFFu);
}

TEST(DownloadContentDescriptor, FieldsThatDoNotFitFailTheDescriptor) {
    LogCapture log;
    struct Case {
        Bytes payload;
        unsigned short code;
        std::vector<std::string> lines;
    };
    const std::vector<Case> cases = {
        // A zero text length followed by a byte: that byte is read as the length.
        {join({fixedPart(0x08), {0x00, 'e', 'n', 'g', 0x00, 'X'}}),
         ERROR_FIELD_PARSE,
         {warnLine(
              "ParserUtils::parseStr: ERROR: String length exceeds available data length: 88 > "
              "0. Aborting!"),
          warnLine("TComponentDescriptor:: parse: ERROR: parsing Text. Aborting!")}},
        // The language code runs past the end.
        {join({fixedPart(0x08), {0x00, 'e', 'n'}}),
         ERROR_FIELD_PARSE,
         {warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 > "
                   "2. Aborting!"),
          warnLine("TDownloadContentDescriptor:: parse: ERROR: parsing Language Code. Aborting!")}},
        // Five bytes of private data announced, none there.
        {join({fixedPart(0x00), {0x05}}),
         ERROR_FIELD_PARSE,
         {warnLine("TDownloadContentDescriptor:: parse: ERROR: parsing Private Data. Aborting!")}},
        // Two modules announced, one there.
        {join({fixedPart(0x10), {0x00, 0x02, 0x34, 0x12, 0x00, 0x00, 0x10, 0x00, 0x00}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContentDescriptorItem::parse: Item length not valid: 0. Aborting!"),
          warnLine("TDownloadContentDescriptor::parse: Invalid item. Aborting!")}},
        // Module info of nine bytes, two there.
        {join({fixedPart(0x10), {0x00, 0x01, 0x34, 0x12, 0x00, 0x00, 0x10, 0x00, 0x09, 1, 2}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContentDescriptorItem::parse: Item length not valid: 9. Aborting!"),
          warnLine("TDownloadContentDescriptor::parse: Invalid item. Aborting!")}},
        // A compatibility entry whose sub descriptor runs past the structure.
        {join({fixedPart(0x20),
               {0x00, 0x11, 0x00, 0x01, 0x01, 0x0D, 0x01, 0x00, 0x00, 0x0F, 0x01, 0x02, 0x03, 0x01,
                0x01, 0x02, 0x10, 0xAA, 0xBB},
               {0x00}}),
         ERROR_INVALID_ITEM,
         {warnLine("TCompatibilityDescriptorSubItem::parse: Item length not valid: 4. Aborting!"),
          warnLine("TCompatibilityDescriptorItem::parse: Invalid sub item. Aborting!"),
          warnLine("TCompatibilityDescriptor::parse: Invalid item. Aborting!")}},
        // The compatibility flag set, but no room left for its length field.
        {join({fixedPart(0x20), {0x00}}),
         ERROR_DATA_TOO_SHORT,
         {warnLine("TCompatibilityDescriptor::parse: Item length not valid: 1. Aborting!")}},
    };
    for (const Case& c : cases) {
        log.clear();
        Bytes b = descriptor(c.payload);
        Parsed r = parse(b);
        EXPECT_EQ(r.d, nullptr) << testing::PrintToString(c.lines);
        EXPECT_EQ(r.code, c.code) << testing::PrintToString(c.lines);
        EXPECT_EQ(log.texts(), c.lines);
        delete r.d;
    }
}

TEST(DownloadContentDescriptor, CompatibilityEntriesOnTheirOwn) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    // Model and version: first byte shifted left by the second, cut to 16 bits.
    Bytes item = {0x01, 0x09, 0x01, 0x00, 0x00, 0x0F, 0x03, 0x20, 0x03, 0x0F, 0x00};
    TCompatibilityDescriptorItem* i =
        TCompatibilityDescriptorItem::parse(item.data(), 11, &read, &code);
    ASSERT_NE(i, nullptr);
    EXPECT_EQ(read, 11u);
    EXPECT_EQ(i->getModel(), 0);
    EXPECT_EQ(i->getVersion(), 0x8000);
    delete i;
    // A sub-descriptor without additional information is two bytes.
    Bytes bareSub = {0x01, 0x00};
    TCompatibilityDescriptorSubItem* sub =
        TCompatibilityDescriptorSubItem::parse(bareSub.data(), 2, &read, &code);
    ASSERT_NE(sub, nullptr);
    EXPECT_EQ(read, 2u);
    delete sub;

    // The structure on its own: the length field is not counted in bytesRead.
    Bytes structure = join({{0x00, 0x0D, 0x00, 0x01}, item});
    TCompatibilityDescriptor* c =
        TCompatibilityDescriptor::parse(structure.data(), 15, &read, &code);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(read, 13u);
    EXPECT_EQ(c->getCompatibilityDescriptorItemSize(), 1);
    EXPECT_EQ(c->getCompatibilityDescriptorItem(1), nullptr);
    delete c;
    EXPECT_EQ(TCompatibilityDescriptor::parse(nullptr, 15, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(
                               "TCompatibilityDescriptor::parse: Item length not valid: 0. "
                               "Aborting!")}));
}
