// Event information table: events, times, the descriptors each variant
// keeps, and broken event areas.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "SectionParse.h"
#include "TEITTable.h"

using namespace Sarn;

namespace {

// One event: id, MJD + BCD start, BCD duration, running_status, the
// free_CA_mode bit, and its descriptor loop.
Bytes event(unsigned short id, Bytes start, Bytes duration, int running, bool scrambled,
            const Bytes& descriptors) {
    const size_t n = descriptors.size();
    return be16(id) + start + duration +
           Bytes{static_cast<unsigned char>(running << 5 | (scrambled ? 0x10 : 0) | (n >> 8)),
                 static_cast<unsigned char>(n)} +
           descriptors;
}

// 2021-06-27 16:00:00 for 30 minutes, running.
Bytes plainEvent(unsigned short id, const Bytes& descriptors) {
    return event(id, {0xE8, 0x00, 0x16, 0x00, 0x00}, {0x00, 0x30, 0x00}, 4, false, descriptors);
}

// A whole section around an event area: service 0x5C20, version 1, section
// sectionNumber of 0 and 1, TS 0x02E1, original network 0x0640.
Bytes section(unsigned char tableId, unsigned char sectionNumber, const Bytes& events) {
    return longSection(tableId, 0x5C20, 1, Bytes{0x02, 0xE1, 0x06, 0x40, 0x01, tableId} + events,
                       sectionNumber, 1);
}

/** The table's JSON from its event loop on. */
std::string eventLoop(const TISDBTTable& t) {
    const std::string json = t.toJSON();
    return json.substr(json.find("\"event_loop\""));
}

/** Each event as "<event_id>: <tags of the descriptors it keeps>;". */
std::string eventTags(const TISDBTTable& t) {
    const TEITTable& eit = static_cast<const TEITTable&>(t);
    std::string tags;
    for (unsigned short id : eit.getEventsIDs()) {
        tags += std::to_string(id) + ":";
        for (TISDBTDescriptor* d : eit.getEvent(id)->getDescriptorList())
            tags += " " + std::to_string(d->getDescriptorTag());
        tags += ";";
    }
    return tags;
}

const Bytes kShortEvent = {0x4D, 0x0A, 'p', 'o', 'r', 0x03, 'N', 'o', 't', 0x02, 'H', 'i'};
const Bytes kExtendedEvent = {0x4E, 0x06, 0x00, 'p', 'o', 'r', 0x00, 0x00};
const Bytes kComponent = {0x50, 0x06, 0x01, 0xB3, 0x00, 'p', 'o', 'r'};
const Bytes kContent = {0x54, 0x02, 0x02, 0x00};
const Bytes kParentalRating = {0x55, 0x04, 'B', 'R', 'A', 0x2A};
const Bytes kCopyControl = {0xC1, 0x01, 0x08};
const Bytes kAudio = {0xC4, 0x09, 0x02, 0x03, 0x10, 0x11, 0xFF, 0x5F, 'p', 'o', 'r'};
// Every event descriptor with a class, in tag order, among tags that an
// event accepts but no class of the loop builds (stuffing, content
// availability, 0xD9) and one it does not accept (stream identifier).
const Bytes kEveryEventDescriptor = Bytes{0x42, 0x00} + kShortEvent + kExtendedEvent + kComponent +
                                    Bytes{0x52, 0x01, 0x07} + kContent + kParentalRating +
                                    kCopyControl + kAudio + Bytes{0xD9, 0x00, 0xDE, 0x01, 0x00};

}  // namespace

TEST(EIT, EventsTimesDescriptorsAndJson) {
    // Event 0x0102 first on the wire: 1993-10-13 12:34:56 for 1:30, running,
    // free_CA_mode set (reported as 0), every event descriptor. Event 0x0101:
    // MJD 40587 at 20:00, 99:59:59. Event 3: a start beyond 2038 wraps as a
    // signed 32-bit time; hours of a duration above 99 are written in full.
    Bytes b = section(
        0x4E, 0,
        event(0x0102, {0xC0, 0x79, 0x12, 0x34, 0x56}, {0x01, 0x30, 0x00}, 4, true,
              kEveryEventDescriptor) +
            event(0x0101, {0x9E, 0x8B, 0x20, 0x00, 0x00}, {0x99, 0x59, 0x59}, 1, false, {}) +
            event(3, {0xFF, 0xFF, 0x00, 0x00, 0x00}, {0xFF, 0x00, 0x00}, 0, false, {}));
    EXPECT_EQ(
        sectionOutcome(b),
        "{\"table_id\":78,\"section_length\":113,\"table_id_extension\":23584,"
        "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
        "\"last_section_number\":1,\"transport_stream_id\":737,\"original_network_id\":1600,"
        "\"segment_last_section_number\":1,\"last_table_id\":78,\"event_loop\":["
        "{\"event_id\":3,\"start_time\":\"1902-03-16 17:31:44\",\"duration\":\"165:00:00\","
        "\"running_status\":0,\"free_CA_mode\":0,\"descriptors\":[]},"
        "{\"event_id\":257,\"start_time\":\"1970-01-01 20:00:00\",\"duration\":\"99:59:59\","
        "\"running_status\":1,\"free_CA_mode\":0,\"descriptors\":[]},"
        "{\"event_id\":258,\"start_time\":\"1993-10-13 12:34:56\",\"duration\":\"01:30:00\","
        "\"running_status\":4,\"free_CA_mode\":0,\"descriptors\":["
        "{\"errors\":0,\"descriptor_tag\":77,\"descriptor_length\":10,"
        "\"ISO_639_language_code\":\"por\",\"event_name\":\"Not\",\"event_description\":\"Hi\"},"
        "{\"errors\":0,\"descriptor_tag\":78,\"descriptor_length\":6,"
        "\"descriptor_number\":0,\"last_descriptor_number\":0,"
        "\"ISO_639_language_code\":\"por\",\"items\":[],\"text\":\"\"},"
        "{\"name\":\"componentDescriptor\",\"streamContent\":1,\"componentType\":179,"
        "\"componentTag\":0,\"iso639LanguageCode\":\"por\",\"text\":\"\"},"
        "{\"errors\":0,\"descriptor_tag\":84,\"descriptor_length\":2,"
        "\"content_nibble_level_1\":0,\"content_nibble_level_2\":2,\"user_nibble\":0},"
        "{\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":["
        "{\"countryCode\":\"BRA\",\"rating\":2}]},"
        "{\"name\":\"digitalCopyControlDescriptor\",\"digitalRecordingControlData\":0,"
        "\"maximumBitrateFlag\":0,\"componentControlFlag\":0,\"copyControlType\":2,"
        "\"apsControlData\":0,\"maximumBitrate\":0,\"loop\":[]},"
        "{\"errors\":0,\"descriptor_tag\":196,\"descriptor_length\":9,"
        "\"stream_content\":2,\"component_type\":3,\"component_tag\":16,"
        "\"stream_type\":17,\"simulcast_group_tag\":255,\"ES_multi_lingual_flag\":0,"
        "\"main_component_flag\":1,\"quality_indicator\":1,\"sampling_rate\":7,"
        "\"ISO_639_language_code\":\"por\",\"text\":\"\"}]}]}");

    unsigned short code = 0xFFFF;
    TEITTable* t = TEITTable::parse(b.data(), length(b), 1, 1, 0, &code, nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getEvent(0x0102)->getDataLength(), 98u);
    EXPECT_EQ(t->getEvent(0x0101)->getDataLength(), 24u);
    EXPECT_EQ(t->getEvent(0x0103), nullptr);

    // Handing in an event with an id already present replaces it; the caller
    // keeps the one it displaced.
    TEventItem* displaced = t->getEvent(3);
    Bytes raw = event(3, {0xE8, 0x00, 0x12, 0x00, 0x00}, {0x00, 0x05, 0x00}, 2, false, {});
    TEventItem* replacement =
        TEventItem::parse(raw.data(), length(raw), 1, 0x4E, 0, nullptr, &code);
    ASSERT_NE(replacement, nullptr);
    EXPECT_TRUE(*replacement == *displaced);
    t->addItem(replacement);
    t->addItem(nullptr);
    EXPECT_EQ(t->getEvent(3), replacement);
    EXPECT_EQ(t->getEventsIDs(), (std::list<unsigned short>{3, 0x0101, 0x0102}));
    delete displaced;
    delete t;
}

TEST(EIT, VariantTableIdAndSectionChooseTheEventDescriptors) {
    const Bytes every = plainEvent(7, kEveryEventDescriptor);
    auto tags = [&](unsigned int pid, unsigned char tableId, unsigned char sectionNumber) {
        return sectionOutcome(section(tableId, sectionNumber, every), eventTags, pid);
    };
    const unsigned int full = 0x0012, one = 0x0027;
    EXPECT_EQ(tags(full, 0x4E, 0), "7: 77 78 80 84 85 193 196;");
    EXPECT_EQ(tags(full, 0x4E, 9), "7: 77 78 80 84 85 193 196;");
    EXPECT_EQ(tags(full, 0x50, 0), "7: 77 80 84 85 193 196;");
    EXPECT_EQ(tags(full, 0x57, 0), "7: 77 80 84 85 193 196;");
    EXPECT_EQ(tags(full, 0x58, 0), "7: 78;");
    EXPECT_EQ(tags(full, 0x5F, 0), "7: 78;");
    EXPECT_EQ(tags(full, 0x4F, 0), "7:;");
    EXPECT_EQ(tags(full, 0x60, 0), "7:;");
    // One segment: no extended texts, components or audio components;
    // parental rating in sections 0 and 1 only; nothing from section 4 on.
    EXPECT_EQ(tags(one, 0x4E, 0), "7: 77 84 85 193;");
    EXPECT_EQ(tags(one, 0x4E, 1), "7: 77 84 85 193;");
    EXPECT_EQ(tags(one, 0x4E, 2), "7: 77 84 193;");
    EXPECT_EQ(tags(one, 0x4E, 3), "7: 77 84 193;");
    EXPECT_EQ(tags(one, 0x4E, 4), "7:;");
    EXPECT_EQ(tags(one, 0x4F, 0), "7:;");
    EXPECT_EQ(tags(one, 0x50, 0), "7:;");
    EXPECT_EQ(tags(one, 0x58, 0), "7:;");
}

TEST(EIT, BadEventAreas) {
    const std::string invalid =
        kWarn + "TEITTable::parse: TEITTable::parse: Invalid item. Aborting!";
    const Bytes plain = plainEvent(1, {});
    Bytes overrun = plain;
    overrun[11] = 3;
    Bytes one = plain;
    one[11] = 1;
    // The last 12 bytes of a descriptor that overruns its event's loop.
    const Bytes ghost = {0x4D, 0xFF, 0xE8, 0x00, 0x10, 0x00, 0x00, 0x00, 0x30, 0x00, 0x80, 0x00};
    const std::vector<std::pair<std::string, std::string>> cases = {
        {sectionOutcome(section(0x60, 0, {}), eventLoop), "\"event_loop\":[]}"},
        // Eleven stray bytes after an event.
        {sectionOutcome(section(0x4E, 0, plain + Bytes(11, 0xFF)), eventLoop),
         "null code=2568" + kWarn +
             "TEventItem::parse: Descriptor length not valid: 11. Aborting!" + invalid},
        // A descriptors_loop_length of 3 with two bytes left.
        {sectionOutcome(section(0x4E, 0, overrun + Bytes{0x4D, 0x00}), eventLoop),
         "null code=2568" + kWarn +
             "TEventItem::parse: Loop length is greater than buffer length (3 > 2). Aborting!" +
             invalid},
        // A descriptor overrunning its event's loop: the walk stops there, the
        // event keeps what came before, and the next event starts where the
        // walk stopped, inside the loop: its last 12 bytes make an event 0x4DFF.
        {sectionOutcome(section(0x4E, 0, plainEvent(1, kShortEvent + ghost)), eventTags),
         "1: 77;19967:;" + kWarn +
             "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 12 + 257 > 24. "
             "Aborting!"},
        // One stray byte in a loop becomes the first byte of the next event.
        {sectionOutcome(section(0x4E, 0, one + plainEvent(2, {})), eventLoop),
         "\"event_loop\":[{\"event_id\":1,\"start_time\":\"2021-06-27 16:00:00\",\"duration\":"
         "\"00:30:00\",\"running_status\":4,\"free_CA_mode\":0,\"descriptors\":[]},"
         "{\"event_id\":2,\"start_time\":\"2021-06-27 16:00:00\",\"duration\":\"00:30:00\","
         "\"running_status\":4,\"free_CA_mode\":0,\"descriptors\":[]}]}"},
        // Two events with id 9: the later one (running status 1) is kept, once.
        {sectionOutcome(
             section(0x4E, 0,
                     plainEvent(9, kShortEvent) + event(9, {0xE8, 0x00, 0x16, 0x00, 0x00},
                                                        {0x00, 0x30, 0x00}, 1, false, {})),
             eventLoop),
         "\"event_loop\":[{\"event_id\":9,\"start_time\":\"2021-06-27 16:00:00\",\"duration\":"
         "\"00:30:00\",\"running_status\":1,\"free_CA_mode\":0,\"descriptors\":[]}]}"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.first, c.second);
    // Any table_id is taken; a section_length below 4 wraps the body count
    // and the walk stops at the end of the bytes handed in.
    LogCapture log;
    Bytes wrapped = {0x77, 0xF0, 0x02, 0x5C, 0x20, 0xC3, 0x00, 0x00, 0x02,
                     0xE1, 0x06, 0x40, 0x01, 0x4E, 0x00, 0x01, 0x02, 0x03};
    unsigned short code = 0;
    EXPECT_EQ(TEITTable::parse(wrapped.data(), length(wrapped), 1, 0, 0, &code, nullptr), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TEventItem::parse: Descriptor length not valid: 4. Aborting!"),
                  warnLine("TEITTable::parse: TEITTable::parse: Invalid item. Aborting!")}));
}
