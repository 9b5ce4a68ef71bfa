// The download trigger (SDTT), datacaster carousel (DCT) and DSM-CC tables:
// their JSON shows the header only, so the tests render their contents.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "SectionParse.h"
#include "TDCTTable.h"
#include "TDDBTable.h"
#include "TDSMCCSectionTable.h"
#include "TDsiDiiTable.h"
#include "TSDTTTable.h"

using namespace Sarn;

namespace {

/** The header, the fixed fields and every content with its schedules and descriptor. */
std::string sdttText(const TISDBTTable& table) {
    const auto& t = static_cast<const TSDTTTable&>(table);
    std::string s = t.toJSON() + " maker " + std::to_string(t.getMakerID()) + " model " +
                    std::to_string(t.getModelID()) + " ts " +
                    std::to_string(t.getTransportStreamID()) + " onid " +
                    std::to_string(t.getOriginalNetworkID()) + " service " +
                    std::to_string(t.getServiceID());
    for (int i = 0; i < t.getDownloadContentSize(); ++i) {
        const TDownloadContent* c = t.getDownloadContent(static_cast<unsigned char>(i));
        s += " | group " + std::to_string(c->getGroup()) + " versions " +
             std::to_string(c->getTargetVersion()) + ">" + std::to_string(c->getNewVersion()) +
             " level " + std::to_string(c->getDownloadLevel()) + " indicator " +
             std::to_string(c->getVersionIndicator()) + " shift " +
             std::to_string(c->getScheduleTimeShiftInfo());
        for (int k = 0; k < c->getScheduleInfoSize(); ++k)
            s += " @" +
                 std::to_string(c->getScheduleInfo(static_cast<unsigned char>(k))->getStartTime()) +
                 "+" +
                 std::to_string(c->getScheduleInfo(static_cast<unsigned char>(k))->getDuration());
        if (c->getDownloadContentDescriptor() != nullptr)
            s += " {" + c->getDownloadContentDescriptor()->toJSON() + "}";
    }
    return s;
}

/** The header and every carousel. */
std::string dctText(const TISDBTTable& table) {
    const auto& t = static_cast<const TDCTTable&>(table);
    std::string s = t.toJSON();
    for (int i = 0; i < t.getDatacasterCarouselSize(); ++i) {
        const TDatacasterCarousel* c = t.getDatacasterCarousel(static_cast<unsigned char>(i));
        s += " | pid " + std::to_string(c->getPID()) + " version " +
             std::to_string(c->getVersion()) + " carousel " + std::to_string(c->getCarouselID()) +
             " tag " + std::to_string(c->getComponentTag()) + " \"" + c->getApplicationName() +
             "\"";
    }
    return s;
}

/** The header, the event ids and every descriptor slot by tag. */
std::string dsmccText(const TISDBTTable& table) {
    const auto& t = static_cast<const TDSMCCSectionTable&>(table);
    std::string s = t.toJSON() + " event " + std::to_string(t.getDataEventID()) + " group " +
                    std::to_string(t.getEventMsgGroupID());
    for (unsigned char tag : t.getDescriptorTags())
        s += " {" + t.getDescriptor(tag)->toJSON() + "}";
    return s;
}

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

// group 2, both versions 0xFFF, level 3, indicator 2, nothing else.
const Bytes kBareContent = {0x2F, 0xFF, 0xFF, 0xFE, 0x00, 0x0F, 0x00, 0x00};

Bytes sdtt(const Bytes& body) {
    return longSection(0xC3, 0x0101, 0, body);
}

Bytes dct(unsigned short loopLength, const Bytes& entries) {
    return longSection(0x99, 0x0101, 0,
                       Bytes{static_cast<unsigned char>(0xF0 | loopLength >> 8),
                             static_cast<unsigned char>(loopLength)} +
                           entries);
}

Bytes dsmcc(const Bytes& descriptors) {
    return longSection(0x3D, 0x0101, 0, descriptors);
}

/** The long header of the sections above (extension 0x0101, version 0). */
std::string header(unsigned int tableId, unsigned int sectionLength) {
    return "\"table_id\":" + std::to_string(tableId) +
           ",\"section_length\":" + std::to_string(sectionLength) +
           ",\"table_id_extension\":257,\"version_number\":0,\"current_next_indicator\":1,"
           "\"section_number\":0,\"last_section_number\":0";
}

}  // namespace

TEST(SDTT, ContentsSchedulesAndDescriptors) {
    // group 1, target_version 0x023, new_version 0x045, download_level 2,
    // version_indicator 1, two schedules (timeshift 3), an unknown
    // descriptor and a download content descriptor; then a bare content.
    Bytes b = longSection(
        0xC3, 0x1234, 1,
        join({fixedFields(2),
              {0x10, 0x23, 0x04, 0x59, 0x02, 0x8F, 0x01, 0x03},
              {0xEB, 0xE0, 0x12, 0x34, 0x56, 0x01, 0x30, 0x00},  // 2024-03-15 12:34:56, 1h30
              {0xEB, 0xE1, 0x23, 0x59, 0x59, 0x00, 0x00, 0x30},  // 2024-03-16 23:59:59, 30s
              {0x40, 0x02, 0x41, 0x42},
              downloadDescriptor(0x50),
              kBareContent}));
    const std::string download =
        "{\"errors\":0,\"descriptor_tag\":201,\"descriptor_length\":18,\"descriptor_content\":"
        "\"0x800000040000000007000000000000005000\"}";
    // The schedule durations stay raw BCD (0x013000, not 5400 s).
    EXPECT_EQ(sectionOutcome(b, sdttText),
              "\"table_id\":195,\"section_length\":72,\"table_id_extension\":4660,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0 maker 18 model 52 ts 1024 onid 32736 service 65520"
              " | group 1 versions 35>69 level 2 indicator 1 shift 3 @1710506096+77824"
              " @1710633599+48 " +
                  download + " | group 2 versions 4095>4095 level 3 indicator 2 shift 0" + kWarn +
                  "TDownloadContent::parse: Unknown descriptor: 0x40. Ignored!");

    unsigned short code = 0;
    TSDTTTable* t = TSDTTTable::parse(b.data(), length(b), 1, 0, &code, nullptr);
    ASSERT_NE(t, nullptr);
    TDownloadContent* c = t->getDownloadContent(0);
    EXPECT_EQ(c->getScheduleInfo(2), nullptr);
    EXPECT_EQ(c->getDescriptor(0xC9), c->getDownloadContentDescriptor());
    EXPECT_EQ(c->getDescriptor(0x40), nullptr);
    EXPECT_EQ(c->getDescriptorTags(), (std::list<unsigned char>{0xC9}));
    EXPECT_TRUE(t->getDownloadContent(1)->getDescriptorTags().empty());
    // The descriptor lies in the table's own copy of the section.
    EXPECT_EQ(c->getDownloadContentDescriptor()->getData(), t->getData() + 15 + 8 + 16 + 4);
    // Removing deletes; an added content is owned by the table.
    TDownloadContent* bare = t->getDownloadContent(1);
    EXPECT_FALSE(t->removeDownloadContent(2));
    EXPECT_TRUE(t->removeDownloadContent(0));
    EXPECT_EQ(t->getDownloadContent(0), bare);
    t->addDownloadContent(new TDownloadContent());
    EXPECT_EQ(t->getDownloadContentSize(), 2);
    delete t;

    const std::string none = " maker 1 model 1 ts 1024 onid 32736 service 65520";
    const std::string invalid = kWarn + "TSDTTTable::parse: Invalid item. Aborting!";
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {join({fixedFields(0), {0xAA, 0xBB}}), header(195, 18) + none},
        // Two download content descriptors in one content: the later one stays.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x02, 0x8F, 0x00, 0x00},
               downloadDescriptor(0x11),
               downloadDescriptor(0x22)}),
         header(195, 64) + none +
             " | group 0 versions 0>0 level 0 indicator 0 shift 0 {\"errors\":0,\"descriptor_tag\":"
             "201,\"descriptor_length\":18,\"descriptor_content\":"
             "\"0x800000040000000007000000000000002200\"}"},
        // content_description_length 32 with nothing after the fixed part.
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x02, 0x0F, 0x00, 0x00}}),
         "null code=2570" + kWarn +
             "TDownloadContent::parse: Item length not valid: 32 > 0. Aborting!" + invalid},
        // schedule_description_length 4 (not a whole schedule) in a content
        // of 12 bytes: the second schedule has only 4 bytes left.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x00, 0xCF, 0x00, 0x40},
               {0xEB, 0xE0, 0x12, 0x00, 0x00, 0x00, 0x01, 0x00, 0x40, 0x02, 0x00, 0x00}}),
         "null code=2570" + kWarn + "TDownloadContent::parse: Item length not valid: 4. Aborting!" +
             invalid},
        // schedule_description_length 9: one schedule, then one more is due.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x90},
               {0xEB, 0xE0, 0x12, 0x00, 0x00, 0x00, 0x01, 0x00}}),
         "null code=2570" + kWarn + "TDownloadContent::parse: Item length not valid: 0. Aborting!" +
             invalid},
        // A download content descriptor one byte short of its fixed part.
        {join({fixedFields(1),
               {0x00, 0x00, 0x00, 0x00, 0x01, 0x3F, 0x00, 0x00},
               {0xC9, 0x11},
               Bytes(17, 0x00)}),
         "null code=2570" + kWarn +
             "TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 19 < 20. "
             "Aborting!" +
             invalid},
        // A descriptor loop of a single byte; a descriptor longer than the content.
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x00, 0x1F, 0x00, 0x00, 0xC9}}),
         "null code=2570" + kWarn + "TDownloadContent::parse: Item length not valid: 1. Aborting!" +
             invalid},
        {join({fixedFields(1), {0x00, 0x00, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x40, 0x05, 1}}),
         "null code=2570" + kWarn +
             "TDownloadContent::parse: Item length not valid: 5 > 1. Aborting!" + invalid},
        // Two contents announced, one there; no room for the fixed fields.
        {join({fixedFields(2), kBareContent}),
         "null code=2570" + kWarn + "TDownloadContent::parse: Item length not valid: 0. Aborting!" +
             invalid},
        {{}, "null code=2563" + kWarn + "TSDTTTable::parse: Item length not valid: 12. Aborting!"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sectionOutcome(sdtt(c.first), sdttText), c.second);
    // section_length 2 wraps the body count: contents are read up to the four
    // bytes before the end of the buffer and no further.
    EXPECT_EQ(sectionOutcome(join({{0xC3, 0xB0, 0x02, 0x01, 0x01, 0xC1, 0x00, 0x00},
                                   fixedFields(1),
                                   kBareContent,
                                   {0xDE, 0xAD, 0xBE, 0xEF}}),
                             sdttText, 0, 0),
              header(195, 2) + none + " | group 2 versions 4095>4095 level 3 indicator 2 shift 0");
}

TEST(DCT, CarouselsOfAService) {
    // PID 0x1F0 (reserved bits set), version 3, carousel 10, component tag
    // 0x40, "Ginga"; then PID 0x200, version 0, carousel 0xFFFFFFFF, tag
    // 0x41, no name.
    const Bytes two = {0xE1, 0xF0, 0x03, 0x00, 0x00, 0x00, 0x0A, 0x40, 0x05, 'G',  'i', 'n',
                       'g',  'a',  0xE2, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0x00};
    Bytes b = dct(23, two);
    EXPECT_EQ(sectionOutcome(b, dctText),
              header(153, 34) +
                  " | pid 496 version 3 carousel 10 tag 64 \"Ginga\" | pid 512 version 0 carousel "
                  "4294967295 tag 65 \"\"");
    const std::string invalid = kWarn + "TDCTTable::parse: Invalid item. Aborting!";
    const Bytes unnamed = {0xE2, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x41, 0x00};
    const std::vector<std::pair<Bytes, std::string>> cases = {
        {dct(0, {}), header(153, 11)},
        // The name length points past the body.
        {dct(9, {0xE2, 0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x41, 0x08}),
         "null code=2570" + kWarn +
             "ParserUtils::parseStr: ERROR: String length exceeds available data length: 8 > 0. "
             "Aborting!" +
             kWarn + "TDatacasterCarousel:: parse: ERROR: parsing ApplicationName. Aborting!" +
             invalid},
        // A loop length that is not a sum of whole entries goes on past the last one.
        {dct(10, unnamed), "null code=2570" + kWarn +
                               "TDatacasterCarousel::parse: Item length not valid: 0. Aborting!" +
                               invalid},
        // The byte after a name is not the entry's; an entry that ends before
        // its name length has an empty name.
        {dct(11, {0xFF, 0xFF, 0x07, 0x12, 0x34, 0x56, 0x78, 0x99, 0x02, 'a', 'b', 'c'}),
         header(153, 23) + " | pid 8191 version 7 carousel 305419896 tag 153 \"ab\""},
        {dct(8, {0xFF, 0xFF, 0x07, 0x12, 0x34, 0x56, 0x78, 0x99}),
         header(153, 19) + " | pid 8191 version 7 carousel 305419896 tag 153 \"\""},
        // An entry cut short inside its fixed part.
        {dct(2, {0xE2, 0x00}),
         "null code=2570" + kWarn +
             "TDatacasterCarousel::parse: Item length not valid: 2. Aborting!" + invalid},
        {dct(9, {0xE2, 0x00, 0x00, 0x00, 0x00}),
         "null code=2570" + kWarn +
             "TDatacasterCarousel::parse: Item length not valid: 5. Aborting!" + invalid},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sectionOutcome(c.first, dctText), c.second);
    // section_length 0 in an eight-byte buffer: the loop length is not there.
    EXPECT_EQ(sectionOutcome({0x99, 0xB0, 0x00, 0x01, 0x01, 0xC1, 0x00, 0x00}, dctText, 0, 0),
              "null code=2563" + kWarn + "TDCTTable::parse: Item length not valid: 8. Aborting!");

    unsigned short code = 0;
    TDCTTable* t = TDCTTable::parse(b.data(), length(b), 1, 0, &code, nullptr);
    ASSERT_NE(t, nullptr);
    TDatacasterCarousel* second = t->getDatacasterCarousel(1);
    EXPECT_EQ(second->getParentDCTTable(), nullptr);
    EXPECT_EQ(t->getDatacasterCarousel(2), nullptr);
    EXPECT_FALSE(t->removeDatacasterCarousel(2));
    EXPECT_TRUE(t->removeDatacasterCarousel(0));
    EXPECT_EQ(t->getDatacasterCarousel(0), second);
    second->setParentDCTTable(t);
    EXPECT_EQ(second->getParentDCTTable(), t);
    t->addDatacasterCarousel(new TDatacasterCarousel());
    EXPECT_EQ(t->getDatacasterCarouselSize(), 2);
    delete t;
}

TEST(DsmccSection, StreamDescriptorsIntoSlots) {
    // NPT reference, stream mode, a stream event under the standard tag
    // 0x1A, an unknown tag 0x17 and an NPT endpoint.
    const Bytes descriptors = {
        0x01, 0x12, 0x85, 0xFF, 0x12, 0x34, 0x56, 0x78, 0xFF, 0xFF, 0xFF, 0xFE,  //
        0x00, 0x00, 0x10, 0x00, 0x00, 0x01, 0x00, 0x02,                          //
        0x03, 0x02, 0x01, 0xFF,                                                  //
        0x1A, 0x0E, 0x00, 0x2A, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x01, 0x86, 0xA0,  //
        'a',  'b',  'c',  'd',                                                   //
        0x17, 0x01, 0x00,                                                        //
        0x02, 0x0E, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x64, 0xFF, 0xFF, 0xFF, 0xFE,  //
        0x00, 0x00, 0x03, 0xE8};
    constexpr unsigned int kStreamEventAt = 8 + 20 + 4;
    Bytes b = longSection(0x3D, 0x2123, 1, descriptors);
    EXPECT_EQ(sectionOutcome(b, dsmccText),
              "\"table_id\":61,\"section_length\":68,\"table_id_extension\":8483,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0 event 2 group 291 {\"errors\":0,\"descriptor_tag\":1,"
              "\"descriptor_length\":18,\"descriptor_content\":"
              "\"0x85ff12345678fffffffe0000100000010002\"} {\"errors\":0,\"descriptor_tag\":2,"
              "\"descriptor_length\":14,\"descriptor_content\":\"0xffff00000064fffffffe000003e8\"} "
              "{\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,\"descriptor_content\":"
              "\"0x01ff\"} {\"errors\":0,\"descriptor_tag\":4,\"descriptor_length\":14,"
              "\"descriptor_content\":\"0x002affffffff000186a061626364\"}" +
                  kWarn + "TDSMCCSectionTable::parse: Unknown descriptor: 0x17. Ignored!");

    unsigned short code = 0xFFFF;
    TDSMCCSectionTable* t = TDSMCCSectionTable::parse(b.data(), length(b), 1, 0, &code, nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getDescriptor(1), t->getNPTReferenceDescriptor());
    EXPECT_EQ(t->getDescriptor(2), t->getNPTEndpointDescriptor());
    EXPECT_EQ(t->getDescriptor(3), t->getStreamModeDescriptor());
    EXPECT_EQ(t->getDescriptor(4), t->getStreamEventDescriptor());
    EXPECT_EQ(t->getDescriptor(0), nullptr);
    EXPECT_EQ(t->getDescriptor(5), nullptr);
    EXPECT_EQ(t->getDescriptor(0x1A), nullptr);
    // The 0x1A tag was rewritten in the caller's buffer, and the descriptors
    // point into that buffer rather than into the table's copy.
    EXPECT_EQ(b[kStreamEventAt], 0x04);
    EXPECT_EQ(t->getStreamEventDescriptor()->getData(), b.data() + kStreamEventAt);
    EXPECT_EQ(t->getData()[kStreamEventAt], 0x1A);
    // The same section again, as broadcast: same version and CRC. Its
    // buffer, rewritten by the first parse, no longer matches its CRC.
    EXPECT_EQ(sectionOutcome(longSection(0x3D, 0x2123, 1, descriptors), nullptr, 0, 1, t),
              "null code=2561");
    EXPECT_EQ(sectionOutcome(b, nullptr, 0, 1, t).substr(0, 14), "null code=2566");
    delete t;

    Bytes unchecked = dsmcc({0x03, 0x02, 0x02, 0xFF});
    unchecked.back() ^= 0xFF;
    const std::vector<std::pair<std::string, std::string>> cases = {
        // A repeated tag keeps the later descriptor.
        {sectionOutcome(dsmcc({0x03, 0x02, 0x01, 0xFF, 0x03, 0x02, 0x09, 0xFF}), dsmccText),
         header(61, 17) + " event 0 group 257 "
                          "{\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,\"descriptor_"
                          "content\":\"0x09ff\"}"},
        // The CRC switch is the first integer; unchecked, the walk still ends
        // at the section's end, whatever follows it in the buffer.
        {sectionOutcome(unchecked + Bytes{0x03, 0x02, 0x07, 0xFF}, dsmccText, 0, 0),
         header(61, 13) + " event 0 group 257 "
                          "{\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,\"descriptor_"
                          "content\":\"0x02ff\"}"},
        // Unchecked, a section_length of 2 wraps the body count: the walk
        // ends where the CRC of the buffer would be.
        {sectionOutcome({0x3D, 0xB0, 0x02, 0x00, 0x01, 0xC1, 0x00, 0x00, 0x03, 0x02, 0x07, 0xFF,
                         0xDE, 0xAD, 0xBE, 0xEF},
                        dsmccText, 0, 0),
         "\"table_id\":61,\"section_length\":2,\"table_id_extension\":1,\"version_number\":0,"
         "\"current_next_indicator\":1,\"section_number\":0,\"last_section_number\":0 event 0 "
         "group 1 {\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,"
         "\"descriptor_content\":\"0x07ff\"}"},
        // A descriptor longer than what is left: the line shows the tag, not
        // the length, and the room left.
        {sectionOutcome(dsmcc({0x03, 0x02, 0x01, 0xFF, 0x03, 0x05, 0x01})),
         "null code=2563" + kWarn +
             "TDSMCCSectionTable::parse: Item length not valid: 3 > 1. Aborting!"},
        // One stray byte before the CRC: its length byte would be the CRC's.
        {sectionOutcome(dsmcc({0x03, 0x02, 0x01, 0xFF, 0x02})),
         "null code=2563" + kWarn +
             "TDSMCCSectionTable::parse: Item length not valid: 2 > 4294967295. Aborting!"},
        // A stream descriptor failing its own checks takes its code to the caller.
        {sectionOutcome(dsmcc({0x02, 0x0D, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})),
         "null code=2568" + kWarn +
             "TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 15 < 16. "
             "Aborting!"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.first, c.second);
}

TEST(DataTables, FreshTablesAndEntriesRenderZerosAndParsedOnesFreeWhatTheyHold) {
    TSDTTTable fresh(nullptr, 0);
    fresh.addDownloadContent(new TDownloadContent());
    TDCTTable carousels(nullptr, 0);
    carousels.addDatacasterCarousel(new TDatacasterCarousel());
    for (const std::string& text :
         {sdttText(fresh), dctText(carousels), dsmccText(TDSMCCSectionTable(nullptr, 0))})
        EXPECT_TRUE(onlyZeros(text)) << text;
    // A download content with schedules and a descriptor, two carousels, a
    // DSM-CC section with every stream descriptor.
    EXPECT_TRUE(leavesTheHeapAsItWas(sdtt(join({fixedFields(2),
                                                {0x00, 0x00, 0x00, 0x00, 0x02, 0x88, 0x00, 0x10},
                                                {0xEB, 0xE0, 0x12, 0x34, 0x56, 0x01, 0x30, 0x00},
                                                downloadDescriptor(0x50),
                                                kBareContent}))));
    EXPECT_TRUE(leavesTheHeapAsItWas(dct(20, Bytes(10, 0x00) + Bytes(10, 0x00))));
}
