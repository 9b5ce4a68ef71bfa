// Event information table: header, events, times, variants and bad event areas.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TEITTable.h"

using namespace Sarn;

namespace {

// One event: id, MJD + BCD start, BCD duration, running_status, the
// free_CA_mode bit, and its descriptor loop.
Bytes event(unsigned short id, Bytes start, Bytes duration, int running, bool scrambled,
            const Bytes& descriptors) {
    Bytes e = {static_cast<unsigned char>(id >> 8), static_cast<unsigned char>(id)};
    e.insert(e.end(), start.begin(), start.end());
    e.insert(e.end(), duration.begin(), duration.end());
    const size_t n = descriptors.size();
    e.push_back(static_cast<unsigned char>(running << 5 | (scrambled ? 0x10 : 0) | (n >> 8)));
    e.push_back(static_cast<unsigned char>(n));
    e.insert(e.end(), descriptors.begin(), descriptors.end());
    return e;
}

// A whole section around an event area: service 0x5C20, version 1, section
// sectionNumber of 0 and 1, TS 0x02E1, original network 0x0640.
Bytes section(unsigned char tableId, unsigned char sectionNumber, const Bytes& events) {
    return longSection(tableId, 0x5C20, 1, Bytes{0x02, 0xE1, 0x06, 0x40, 0x01, tableId} + events,
                       sectionNumber, 1);
}

TEITTable* parse(Bytes& b, int fullSegment, unsigned short* code, TEITTable* previous = nullptr) {
    return TEITTable::parse(b.data(), length(b), fullSegment, 1, 0, code, previous);
}

const Bytes kShortEvent = {0x4D, 0x0A, 'p', 'o', 'r', 0x03, 'N', 'o', 't', 0x02, 'H', 'i'};
const Bytes kExtendedEvent = {0x4E, 0x06, 0x00, 'p', 'o', 'r', 0x00, 0x00};
const Bytes kParentalRating = {0x55, 0x04, 'B', 'R', 'A', 0x2A};
const Bytes kComponent = {0x50, 0x06, 0x01, 0xB3, 0x00, 'p', 'o', 'r'};
const Bytes kContent = {0x54, 0x02, 0x02, 0x00};
const Bytes kCopyControl = {0xC1, 0x01, 0x08};
const Bytes kAudio = {0xC4, 0x09, 0x02, 0x03, 0x10, 0x11, 0xFF, 0x5F, 'p', 'o', 'r'};
}  // namespace

TEST(EIT, EventsTimesDurationsAndJson) {
    LogCapture log;
    // Event 0x0102 first on the wire: 1993-10-13 12:34:56 for 1:30, running,
    // free_CA_mode set, a short event descriptor. Event 0x0101: MJD 40587 at
    // 20:00, 99:59:59, a stream identifier (not an event descriptor) and a
    // 0xC7 (accepted, no class).
    Bytes events =
        event(0x0102, {0xC0, 0x79, 0x12, 0x34, 0x56}, {0x01, 0x30, 0x00}, 4, true, kShortEvent) +
        event(0x0101, {0x9E, 0x8B, 0x20, 0x00, 0x00}, {0x99, 0x59, 0x59}, 1, false,
              {0x52, 0x01, 0x07, 0xC7, 0x02, 0xAA, 0xBB});
    Bytes b = section(0x4E, 0, events);
    unsigned short code = 0xFFFF;
    TEITTable* t = parse(b, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_EIT_12);
    EXPECT_EQ(t->getServiceId(), 0x5C20);
    EXPECT_EQ(t->getEventsIDs(), (std::list<unsigned short>{0x0101, 0x0102}));
    const TEventItem* first = t->getEvent(0x0102);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->getStartTime(), 750515696u);
    EXPECT_EQ(first->getDuration(), 5400u);
    EXPECT_EQ(first->getRunningStatus(), 4);
    EXPECT_EQ(first->getFreeCAMode(), 0);
    EXPECT_EQ(first->getDataLength(), 43u);
    EXPECT_EQ(t->getEvent(0x0101)->getDataLength(), 19u);
    EXPECT_EQ(t->getEvent(0x0101)->getStartTime(), 72000u);
    EXPECT_EQ(t->getEvent(0x0103), nullptr);
    EXPECT_EQ(t->toJSON(),
              "{\"table_id\":78,\"section_length\":58,\"table_id_extension\":23584,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":1,\"transport_stream_id\":737,\"original_network_id\":1600,"
              "\"segment_last_section_number\":1,\"last_table_id\":78,\"event_loop\":["
              "{\"event_id\":257,\"start_time\":\"1970-01-01 20:00:00\",\"duration\":\"99:59:59\","
              "\"running_status\":1,\"free_CA_mode\":0,\"descriptors\":[]},"
              "{\"event_id\":258,\"start_time\":\"1993-10-13 12:34:56\",\"duration\":\"01:30:00\","
              "\"running_status\":4,\"free_CA_mode\":0,\"descriptors\":[{\"errors\":0,"
              "\"descriptor_tag\":77,\"descriptor_length\":10,\"ISO_639_language_code\":\"por\","
              "\"event_name\":\"Not\",\"event_description\":\"Hi\"}]}]}");

    // The same section again with this table as previous: unchanged. As a
    // one-segment EIT it is a table of another kind.
    EXPECT_EQ(parse(b, 1, &code, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    EXPECT_EQ(parse(b, 0, &code, t), nullptr);
    EXPECT_EQ(code, ERROR_PREVIOUS_TABLE_TYPE);
    delete t;

    // Start times beyond 2038 wrap as a signed 32-bit time; hours of a
    // duration above 99 are written in full.
    Bytes late = section(
        0x4E, 0, event(1, {0xFF, 0xFF, 0x00, 0x00, 0x00}, {0xFF, 0x00, 0x00}, 0, false, {}));
    t = parse(late, 0, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_EIT_27);
    EXPECT_NE(t->toJSON().find("\"start_time\":\"1902-03-16 17:31:44\",\"duration\":\"165:00:00\""),
              std::string::npos)
        << t->toJSON();
    delete t;
    EXPECT_TRUE(log.lines().empty());
}

TEST(EIT, VariantTableIdAndSectionChooseTheEventDescriptors) {
    // Every event descriptor that has a class, in tag order.
    const Bytes both = event(7, {0xE8, 0x00, 0x10, 0x00, 0x00}, {0x00, 0x30, 0x00}, 4, false,
                             kShortEvent + kExtendedEvent + kComponent + kContent +
                                 kParentalRating + kCopyControl + kAudio);
    auto tags = [&](int fullSegment, unsigned char tableId, unsigned char sectionNumber) {
        Bytes b = section(tableId, sectionNumber, both);
        unsigned short code = 0xFFFF;
        TEITTable* t = parse(b, fullSegment, &code);
        std::string found;
        if (t == nullptr || code != 0)
            return std::string("failed");
        for (TISDBTDescriptor* d : t->getEvent(7)->getDescriptorList())
            found += std::to_string(d->getDescriptorTag()) + " ";
        delete t;
        return found;
    };
    EXPECT_EQ(tags(1, 0x4E, 0), "77 78 80 84 85 193 196 ");
    EXPECT_EQ(tags(1, 0x4E, 9), "77 78 80 84 85 193 196 ");
    EXPECT_EQ(tags(1, 0x50, 0), "77 80 84 85 193 196 ");
    EXPECT_EQ(tags(1, 0x57, 0), "77 80 84 85 193 196 ");
    EXPECT_EQ(tags(1, 0x58, 0), "78 ");
    EXPECT_EQ(tags(1, 0x5F, 0), "78 ");
    EXPECT_EQ(tags(1, 0x4F, 0), "");
    EXPECT_EQ(tags(1, 0x60, 0), "");
    // One segment: no extended texts, components or audio components;
    // parental rating in sections 0 and 1 only; nothing from section 4 on.
    EXPECT_EQ(tags(0, 0x4E, 0), "77 84 85 193 ");
    EXPECT_EQ(tags(0, 0x4E, 1), "77 84 85 193 ");
    EXPECT_EQ(tags(0, 0x4E, 2), "77 84 193 ");
    EXPECT_EQ(tags(0, 0x4E, 3), "77 84 193 ");
    EXPECT_EQ(tags(0, 0x4E, 4), "");
    EXPECT_EQ(tags(0, 0x50, 0), "");
    EXPECT_EQ(tags(0, 0x58, 0), "");
}

TEST(EIT, EveryEventDescriptorRendersInsideItsEvent) {
    LogCapture log;
    Bytes b = section(0x4E, 0,
                      event(0x0A0B, {0xE8, 0x00, 0x21, 0x00, 0x00}, {0x00, 0x45, 0x00}, 4, false,
                            kShortEvent + kExtendedEvent + kComponent + kContent + kParentalRating +
                                kCopyControl + kAudio));
    unsigned short code = 0xFFFF;
    TEITTable* t = parse(b, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    const std::string json = t->toJSON();
    const size_t at = json.find("\"event_loop\":");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(json.substr(at),
              "\"event_loop\":[{\"event_id\":2571,\"start_time\":\"2021-06-27 21:00:00\","
              "\"duration\":\"00:45:00\",\"running_status\":4,\"free_CA_mode\":0,"
              "\"descriptors\":["
              "{\"errors\":0,\"descriptor_tag\":77,\"descriptor_length\":10,"
              "\"ISO_639_language_code\":\"por\",\"event_name\":\"Not\",\"event_description\":"
              "\"Hi\"},"
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
    delete t;
    EXPECT_TRUE(log.lines().empty());
}

TEST(EIT, BadEventAreas) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    const Bytes plain = event(1, {0xE8, 0x00, 0x10, 0x00, 0x00}, {0x00, 0x30, 0x00}, 4, false, {});

    // No events at all.
    Bytes empty = section(0x60, 0, {});
    TEITTable* t = parse(empty, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_NE(t->toJSON().find(",\"last_table_id\":96,\"event_loop\":[]}"), std::string::npos);
    delete t;

    // Eleven stray bytes after an event.
    Bytes stray = section(0x4E, 0, plain + Bytes(11, 0xFF));
    EXPECT_EQ(parse(stray, 1, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    // A descriptors_loop_length of 3 with two bytes left.
    Bytes overrun = plain;
    overrun[11] = 3;
    overrun = section(0x4E, 0, overrun + Bytes{0x4D, 0x00});
    EXPECT_EQ(parse(overrun, 1, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TEventItem::parse: Descriptor length not valid: 11. Aborting!"),
                  warnLine("TEITTable::parse: TEITTable::parse: Invalid item. Aborting!"),
                  warnLine("TEventItem::parse: Loop length is greater than buffer length (3 > 2). "
                           "Aborting!"),
                  warnLine("TEITTable::parse: TEITTable::parse: Invalid item. Aborting!")}));

    // A descriptor overrunning its event's loop: the walk stops there, the
    // event keeps what came before, and the next event starts where the walk
    // stopped, inside the loop: its last 12 bytes become an event 0x4DFF.
    log.clear();
    const Bytes ghost = {0x4D, 0xFF, 0xE8, 0x00, 0x10, 0x00, 0x00, 0x00, 0x30, 0x00, 0x80, 0x00};
    Bytes cut = section(0x4E, 0,
                        event(1, {0xE8, 0x00, 0x10, 0x00, 0x00}, {0x00, 0x30, 0x00}, 4, false,
                              kShortEvent + ghost));
    t = parse(cut, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getEventsIDs(), (std::list<unsigned short>{1, 0x4DFF}));
    EXPECT_EQ(t->getEvent(1)->getDescriptorList().size(), 1u);
    EXPECT_NE(t->getEvent(1)->getDescriptor(0x4D), nullptr);
    delete t;
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{warnLine(
                  "DescriptorLoop::parseDescriptorsLoop: Item length not valid: 12 + 257 > "
                  "24. Aborting!")}));

    // One stray byte in a loop: it becomes the first byte of the next event.
    log.clear();
    Bytes one = plain;
    one[11] = 1;
    Bytes next = event(2, {0xE8, 0x00, 0x10, 0x00, 0x00}, {0x00, 0x30, 0x00}, 4, false, {});
    Bytes shifted = section(0x4E, 0, one + next);  // next[0] (0x00) is the stray byte
    t = parse(shifted, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getEventsIDs(), (std::list<unsigned short>{1, 2}));
    delete t;
    EXPECT_TRUE(log.lines().empty());
}

TEST(EIT, RepeatedEventIdsAndOddHeaders) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // Two events with id 9: the later one (30 minutes) is kept, once.
    Bytes twice = section(
        0x4E, 0,
        event(9, {0xE8, 0x00, 0x10, 0x00, 0x00}, {0x00, 0x10, 0x00}, 4, false, kShortEvent) +
            event(9, {0xE8, 0x00, 0x11, 0x00, 0x00}, {0x00, 0x30, 0x00}, 1, false, {}));
    TEITTable* t = parse(twice, 1, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getEventsIDs(), (std::list<unsigned short>{9}));
    EXPECT_EQ(t->getEvent(9)->getDuration(), 1800u);
    EXPECT_EQ(t->getEvent(9)->getDescriptorList().size(), 0u);

    // Handing in an event with an id already present replaces it; the caller
    // keeps the one it displaced.
    TEventItem* displaced = t->getEvent(9);
    Bytes raw = event(9, {0xE8, 0x00, 0x12, 0x00, 0x00}, {0x00, 0x05, 0x00}, 2, false, {});
    TEventItem* replacement =
        TEventItem::parse(raw.data(), length(raw), 1, 0x4E, 0, nullptr, &code);
    ASSERT_NE(replacement, nullptr);
    EXPECT_TRUE(*replacement == *displaced);
    t->addItem(replacement);
    t->addItem(nullptr);
    EXPECT_EQ(t->getEvent(9), replacement);
    EXPECT_EQ(t->getEventsIDs().size(), 1u);
    delete displaced;
    delete t;

    // Any table_id is taken; a section_length below 4 wraps the body counter
    // and the walk stops at the end of the bytes handed in.
    Bytes wrapped = {0x4E, 0xF0, 0x02, 0x5C, 0x20, 0xC3, 0x00, 0x00, 0x02,
                     0xE1, 0x06, 0x40, 0x01, 0x4E, 0x00, 0x01, 0x02, 0x03};
    EXPECT_EQ(TEITTable::parse(wrapped.data(), length(wrapped), 1, 0, 0, &code, nullptr), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TEventItem::parse: Descriptor length not valid: 4. Aborting!"),
                  warnLine("TEITTable::parse: TEITTable::parse: Invalid item. Aborting!")}));
}
