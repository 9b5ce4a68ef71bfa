// Software download trigger table: contents, schedules and their descriptors.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TSDTTTable.h"

using namespace Sarn;

namespace {

// transport_stream_id 0x0400, original_network_id 0x7FE0, service 0xFFF0,
// then num_of_contents.
Bytes fixedFields(unsigned char contents) {
    return {0x04, 0x00, 0x7F, 0xE0, 0xFF, 0xF0, contents};
}

// A download content descriptor with only the reboot flag, component_size
// 1024, download_id 7 and the given component_tag.
Bytes downloadDescriptor(unsigned char componentTag) {
    return {0xC9, 0x12, 0x80, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00,         0x00,
            0x07, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, componentTag, 0x00};
}

// group 1, target_version 0x023, new_version 0x045, download_level 2,
// version_indicator 1, two schedules (timeshift 3), an unknown descriptor
// and a download content descriptor.
Bytes fullContent() {
    return join({{0x10, 0x23, 0x04, 0x59, 0x02, 0x8F, 0x01, 0x03},
                 {0xEB, 0xE0, 0x12, 0x34, 0x56, 0x01, 0x30, 0x00},  // 2024-03-15 12:34:56, 1h30
                 {0xEB, 0xE1, 0x23, 0x59, 0x59, 0x00, 0x00, 0x30},  // 2024-03-16 23:59:59, 30s
                 {0x40, 0x02, 0x41, 0x42},
                 downloadDescriptor(0x50)});
}

// group 2, both versions 0xFFF, level 3, indicator 2, nothing else.
const Bytes kBareContent = {0x2F, 0xFF, 0xFF, 0xFE, 0x00, 0x0F, 0x00, 0x00};

struct Parsed {
    TSDTTTable* t;
    unsigned short code;
};

Parsed parse(Bytes& b, int checkCrc = 1, int second = 0) {
    Parsed r{nullptr, 0xFFFF};
    r.t = TSDTTTable::parse(b.data(), static_cast<unsigned int>(b.size()), checkCrc, second,
                            &r.code, nullptr);
    return r;
}

}  // namespace

TEST(SDTT, ContentsSchedulesAndDescriptor) {
    LogCapture log;
    Bytes b = longSection(0xC3, 0x1234, 1, join({fixedFields(2), fullContent(), kBareContent}));
    Parsed r = parse(b);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.code, 0);
    TSDTTTable* t = r.t;
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_SDTT);
    EXPECT_EQ(t->getMakerID(), 0x12);
    EXPECT_EQ(t->getModelID(), 0x34);
    EXPECT_EQ(t->getTableIDExtension(), 0x1234);
    EXPECT_EQ(t->getTransportStreamID(), 0x0400);
    EXPECT_EQ(t->getOriginalNetworkID(), 0x7FE0);
    EXPECT_EQ(t->getServiceID(), 0xFFF0);
    ASSERT_EQ(t->getDownloadContentSize(), 2);
    EXPECT_EQ(t->toJSON(),
              "\"table_id\":195,\"section_length\":72,\"table_id_extension\":4660,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0");

    TDownloadContent* c = t->getDownloadContent(0);
    EXPECT_EQ(c->getParentSDTTTable(), nullptr);
    EXPECT_EQ(c->getGroup(), 1);
    EXPECT_EQ(c->getTargetVersion(), 0x023);
    EXPECT_EQ(c->getNewVersion(), 0x045);
    EXPECT_EQ(c->getDownloadLevel(), 2);
    EXPECT_EQ(c->getVersionIndicator(), 1);
    EXPECT_EQ(c->getScheduleTimeShiftInfo(), 3);
    ASSERT_EQ(c->getScheduleInfoSize(), 2);
    EXPECT_EQ(c->getScheduleInfo(0)->getStartTime(), 1710506096u);
    EXPECT_EQ(c->getScheduleInfo(0)->getDuration(), 0x013000u);  // raw BCD, not 5400 s
    EXPECT_EQ(c->getScheduleInfo(1)->getStartTime(), 1710633599u);
    EXPECT_EQ(c->getScheduleInfo(1)->getDuration(), 0x30u);
    EXPECT_EQ(c->getScheduleInfo(2), nullptr);

    TDownloadContentDescriptor* d = c->getDownloadContentDescriptor();
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getReboot(), 1);
    EXPECT_EQ(d->getComponentSize(), 1024u);
    EXPECT_EQ(d->getDownloadID(), 7u);
    EXPECT_EQ(d->getComponentTag(), 0x50);
    EXPECT_EQ(c->getDescriptor(0xC9), d);
    EXPECT_EQ(c->getDescriptor(0x40), nullptr);
    EXPECT_EQ(c->getDescriptorTags(), (std::list<unsigned char>{0xC9}));
    // The descriptor lies in the table's own copy of the section.
    EXPECT_EQ(d->getData(), t->getData() + 15 + 8 + 16 + 4);
    b[15 + 8 + 16 + 4 + 2] = 0x00;
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":201,\"descriptor_length\":18,\"descriptor_content\":"
              "\"0x800000040000000007000000000000005000\"");

    TDownloadContent* bare = t->getDownloadContent(1);
    EXPECT_EQ(bare->getGroup(), 2);
    EXPECT_EQ(bare->getTargetVersion(), 0xFFF);
    EXPECT_EQ(bare->getNewVersion(), 0xFFF);
    EXPECT_EQ(bare->getDownloadLevel(), 3);
    EXPECT_EQ(bare->getVersionIndicator(), 2);
    EXPECT_EQ(bare->getScheduleInfoSize(), 0);
    EXPECT_EQ(bare->getDownloadContentDescriptor(), nullptr);
    EXPECT_TRUE(bare->getDescriptorTags().empty());

    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(
                               "TDownloadContent::parse: Unknown descriptor: 0x40. Ignored!")}));

    // Removing deletes; an added content is owned by the table.
    EXPECT_FALSE(t->removeDownloadContent(2));
    EXPECT_TRUE(t->removeDownloadContent(0));
    EXPECT_EQ(t->getDownloadContent(0), bare);
    t->addDownloadContent(new TDownloadContent());
    delete t;
}

TEST(SDTT, CrcSwitchEmptyTablesAndRepeatedDescriptors) {
    LogCapture log;
    Bytes empty = longSection(0xC3, 0x0101, 0, join({fixedFields(0), {0xAA, 0xBB}}));
    Parsed r = parse(empty);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.t->getDownloadContentSize(), 0);
    delete r.t;

    // The CRC switch is the first integer; the second is never read.
    empty[empty.size() - 1] ^= 0x01;
    r = parse(empty, 0, 1);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.t->getTableCRC32(), 0u);
    delete r.t;
    r = parse(empty, 1, 0);
    EXPECT_EQ(r.t, nullptr);
    EXPECT_EQ(r.code, ERROR_CRC32);

    // Two download content descriptors in one content: the later one stays.
    Bytes twice = longSection(0xC3, 0x0101, 0,
                              join({fixedFields(1),
                                    {0x00, 0x00, 0x00, 0x00, 0x02, 0x8F, 0x00, 0x00},
                                    downloadDescriptor(0x11),
                                    downloadDescriptor(0x22)}));
    r = parse(twice);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.t->getDownloadContent(0)->getDownloadContentDescriptor()->getComponentTag(), 0x22);
    delete r.t;
    EXPECT_EQ(log.lines().size(), 1u);  // the CRC failure
}

TEST(SDTT, BrokenContentsFailTheTable) {
    LogCapture log;
    const std::string invalid = warnLine("TSDTTTable::parse: Invalid item. Aborting!");
    struct Case {
        Bytes body;
        unsigned short code;
        std::vector<std::string> lines;
    };
    const std::vector<Case> cases = {
        // content_description_length 32 with nothing after the fixed part.
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x02, 0x0F, 0x00, 0x00}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContent::parse: Item length not valid: 32 > 0. Aborting!"), invalid}},
        // schedule_description_length 4 (not a whole schedule) in a content of
        // 12 bytes: the second schedule has only 4 bytes left.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x00, 0xCF, 0x00, 0x40},
               {0xEB, 0xE0, 0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x40, 0x02, 0x00, 0x00}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContent::parse: Item length not valid: 4. Aborting!"), invalid}},
        // A download content descriptor one byte short of its fixed part.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x01, 0x3F, 0x00, 0x00},
               {0xC9, 0x11},
               Bytes(17, 0x00)}),
         ERROR_INVALID_ITEM,
         {warnLine("TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 19 < "
                   "20. Aborting!"),
          invalid}},
        // A descriptor loop of a single byte.
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x00, 0x1F, 0x00, 0x00, 0xC9}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContent::parse: Item length not valid: 1. Aborting!"), invalid}},
        // A descriptor longer than the content.
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x40, 0x05, 1}}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContent::parse: Item length not valid: 5 > 1. Aborting!"), invalid}},
        // Two contents announced, one there.
        {join({fixedFields(2), kBareContent}),
         ERROR_INVALID_ITEM,
         {warnLine("TDownloadContent::parse: Item length not valid: 0. Aborting!"), invalid}},
        // No room for the fixed fields at all.
        {{},
         ERROR_DATA_TOO_SHORT,
         {warnLine("TSDTTTable::parse: Item length not valid: 12. Aborting!")}},
    };
    for (const Case& c : cases) {
        log.clear();
        Bytes b = longSection(0xC3, 0x0101, 0, c.body);
        Parsed r = parse(b);
        EXPECT_EQ(r.t, nullptr) << testing::PrintToString(c.lines);
        EXPECT_EQ(r.code, c.code) << testing::PrintToString(c.lines);
        EXPECT_EQ(log.texts(), c.lines);
        delete r.t;
    }
}

TEST(SDTT, ContentsAndSchedulesOnTheirOwn) {
    LogCapture log;
    // section_length 2 wraps the body counter: contents are read up to the
    // four bytes before the end of the buffer and no further.
    Bytes wrapped = join({{0xC3, 0xB0, 0x02, 0x01, 0x01, 0xC1, 0x00, 0x00},
                          fixedFields(1),
                          kBareContent,
                          {0xDE, 0xAD, 0xBE, 0xEF}});
    Parsed r = parse(wrapped, 0);
    ASSERT_NE(r.t, nullptr);
    EXPECT_EQ(r.t->getDownloadContentSize(), 1);
    delete r.t;
    EXPECT_TRUE(log.lines().empty());

    Bytes b = join({fixedFields(1), kBareContent});
    unsigned short code = 0;
    EXPECT_EQ(TScheduleInfo::parse(nullptr, 8, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TDownloadContent::parse(b.data(), 7, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // A content on its own whose schedule length (4) is not whole schedules:
    // the second schedule would run past the bytes, and the content is too
    // short rather than holding a broken item.
    // One whole schedule in exactly the eight bytes left is fine.
    Bytes exact = {0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x80,
                   0xEB, 0xE0, 0x12, 0x00, 0x00, 0x00, 0x01, 0x00};
    TDownloadContent* one = TDownloadContent::parse(exact.data(), length(exact), 1, nullptr, &code);
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(code, ERROR_NONE);
    delete one;
    Bytes content = {0x00, 0x00, 0x00, 0x00, 0x00, 0xCF, 0x00, 0x40, 0xEB, 0xE0,
                     0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x40, 0x02, 0x00, 0x00};
    code = 0;
    EXPECT_EQ(TDownloadContent::parse(content.data(), static_cast<unsigned int>(content.size()), 1,
                                      nullptr, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TScheduleInfo::parse: Item length not valid: 0. Aborting!"),
                  warnLine("TDownloadContent::parse: Item length not valid: 7. Aborting!"),
                  warnLine("TDownloadContent::parse: Item length not valid: 4. Aborting!")}));
}
