#include "TEITTable.h"

#include "Arena.h"
#include "Json.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

namespace {

// Descriptors an event may carry, by EIT variant, table_id and
// section_number. Only some of them have classes; the others are accepted and
// stepped over.
//
// Full segment, present/following (0x4E).
constexpr DescriptorTagSet kFullSegmentPresentFollowing = {0x4D, 0x4E, 0x50, 0x54, 0xC1, 0xC4, 0xC7,
                                                           0xD5, 0xD6, 0x55, 0xDE, 0x42, 0xD9};
// Full segment, basic schedule (0x50-0x57): no extended texts.
constexpr DescriptorTagSet kFullSegmentBasicSchedule = {0x4D, 0x50, 0x54, 0xC1, 0xC4, 0xC7,
                                                        0xD5, 0xD6, 0x55, 0xDE, 0x42, 0xD9};
// Full segment, extended schedule (0x58-0x5F): the extended texts only.
constexpr DescriptorTagSet kFullSegmentExtendedSchedule = {0x4E, 0x42, 0xD9};
// One segment, present/following, sections 0 and 1.
constexpr DescriptorTagSet kOneSegmentPresentFollowing = {0x4D, 0x54, 0xC1, 0x55, 0xDE, 0x42, 0xD9};
// One segment, present/following, sections 2 and 3: no parental rating.
constexpr DescriptorTagSet kOneSegmentLaterSections = {0x4D, 0x54, 0xC1, 0xDE, 0x42, 0xD9};
// Every other table_id (and one-segment sections from 4 on): no descriptors.
constexpr DescriptorTagSet kNoEventDescriptors = {};

const DescriptorTagSet& eventTags(int fullSegment, unsigned char tableId,
                                  unsigned char sectionNumber) {
    if (fullSegment) {
        if (tableId == 0x4E)
            return kFullSegmentPresentFollowing;
        if (tableId >= 0x50 && tableId <= 0x57)
            return kFullSegmentBasicSchedule;
        if (tableId >= 0x58 && tableId <= 0x5F)
            return kFullSegmentExtendedSchedule;
        return kNoEventDescriptors;
    }
    if (tableId != 0x4E || sectionNumber > 3)
        return kNoEventDescriptors;
    return sectionNumber <= 1 ? kOneSegmentPresentFollowing : kOneSegmentLaterSections;
}

}  // namespace

// ---------------------------------------------------------------------------
// Event: event_id, start_time (MJD + BCD hh:mm:ss), duration (BCD hh:mm:ss),
// running_status (3 bits), free_CA_mode (1), descriptors_loop_length (12).
// ---------------------------------------------------------------------------

TEventItem::TEventItem(int fullSegment, unsigned char table, unsigned char section)
    : DescriptorLoop(eventTags(fullSegment, table, section)),
      eventId(0),
      startTime(0),
      duration(0),
      runningStatus(0),
      freeCAMode(0),
      sectionNumber(section),
      tableId(table),
      dataLength(0) {}

TEventItem::~TEventItem() {}

TEventItem* TEventItem::parse(unsigned char* data, unsigned int len, int fullSegment,
                              unsigned char tableId, unsigned char sectionNumber,
                              unsigned int* bytesRead, unsigned short* err) {
    return build(nullptr, data, len, fullSegment, tableId, sectionNumber, bytesRead, err);
}

TEventItem* TEventItem::build(memory::Arena* arena, unsigned char* data, unsigned int len,
                              int fullSegment, unsigned char tableId, unsigned char sectionNumber,
                              unsigned int* bytesRead, unsigned short* err) {
    bytes::Reader in(data, len);
    if (!in.has(12)) {
        SARN_LOGW("%s: TEventItem::parse: Descriptor length not valid: %u. Aborting!",
                  in.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TEventItem> e(
        memory::make<TEventItem>(arena, fullSegment, tableId, sectionNumber));
    e->dataLength = in.remaining();
    e->eventId = in.u16();

    // The wall-clock start is taken as UTC; an undefined start (all ones) is
    // decoded like any other value.
    e->startTime = in.mjdTime();
    e->duration = in.bcdTime();

    const unsigned char status = in.peek();
    e->runningStatus = static_cast<unsigned char>(status >> 5);
    // The free_CA_mode bit is shifted out on purpose: this library reports
    // every event as free to air (0), and receivers built on it expect that.
    e->freeCAMode = (status & 0x10) >> 5;

    const unsigned int loopLength = in.length12();
    if (!in.has(loopLength)) {
        SARN_LOGW(
            "%s: TEventItem::parse: Loop length is greater than buffer length (%d > %u). "
            "Aborting!",
            static_cast<int>(loopLength), in.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    // The next event starts where the descriptor walk stopped, which is short
    // of loopLength when the loop ends in a stray byte or an overrun.
    const unsigned int consumed =
        memory::Builder::descriptors(arena, *e, in.mutableCurrent(), loopLength);
    if (bytesRead != nullptr)
        *bytesRead = in.position() + consumed;
    return parse::done(err, e);
}

void TEventItem::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "{\"event_id\":" << eventId << ",\"start_time\":\"";
    json::appendUtcTime(o, static_cast<int>(startTime));
    // Hours are not cut at two digits.
    o << "\",\"duration\":\"";
    o.zeroFilled(duration / 3600, 2) << ':';
    o.zeroFilled((duration % 3600) / 60, 2) << ':';
    o.zeroFilled(duration % 60, 2);
    o << "\",\"running_status\":" << runningStatus << ",\"free_CA_mode\":" << (freeCAMode != 0)
      << ",\"descriptors\":";
    appendDescriptorsJSON(out);
    o << '}';
}

// ---------------------------------------------------------------------------
// Table: long header (service_id as table_id_extension), transport_stream_id,
// original_network_id, segment_last_section_number, last_table_id, events.
// ---------------------------------------------------------------------------

TEITTable::TEITTable(TISDBTTable::Type tableType, unsigned char* bytes, unsigned int len)
    : TISDBTVersionedTable(tableType, 14, 0xFFFF, bytes, len),
      transportStreamId(0),
      originalNetworkId(0),
      segmentLastSectionNumber(0),
      lastTableId(0) {}

TEITTable::~TEITTable() {
    owned::deleteAll(events);
}

TEITTable* TEITTable::parse(unsigned char* bytes, unsigned int len, int fullSegment, int checkCrc,
                            int, unsigned short* err, TEITTable* previous) {
    memory::Arena arena(tables::blockFor(len, 8));
    return tables::parse(
        tables::build<TEITTable>(arena, bytes, len, fullSegment ? TYPE_EIT_12 : TYPE_EIT_27), bytes,
        len, checkCrc, err, previous, [&](TEITTable& table, unsigned short remaining) {
            const memory::VectorInArena<decltype(table.events)> inArena(table.events, &arena);
            // Events and their descriptors are read from the table's own copy, so
            // they stay valid for as long as the table lives. The minimum length of
            // 14 covers the fixed fields after the long header.
            bytes::Reader section = tables::afterHeader(table.data, table.dataLength);
            bytes::Reader fixed = section;
            table.transportStreamId = fixed.u16();
            table.originalNetworkId = fixed.u16();
            table.segmentLastSectionNumber = fixed.u8();
            table.lastTableId = fixed.u8();

            // Events run up to the CRC32, and never past the bytes handed in.
            bytes::Reader body = section.subAtMost(remaining);
            body.skip(6);
            while (!body.atEnd()) {
                unsigned int read = 0;
                TEventItem* item =
                    TEventItem::build(&arena, body.mutableCurrent(), body.remaining(), fullSegment,
                                      table.tableId, table.sectionNumber, &read, err);
                if (item == nullptr) {
                    SARN_LOGW("%s: TEITTable::parse: TEITTable::parse: Invalid item. Aborting!");
                    return parse::refuse(err, ERROR_DESCRIPTOR_LENGTH);
                }
                // A repeated event_id replaces the earlier event, which nobody else
                // can hold yet.
                owned::replace(table.events, item->eventId, item);
                body.skip(read);
            }
            return true;
        });
}

void TEITTable::addItem(TEventItem* item) {
    owned::put(events, item, &TEventItem::getEventId);
}

std::list<unsigned short> TEITTable::getEventsIDs() const {
    return owned::keys(events);
}

TEventItem* TEITTable::getEvent(unsigned short eventId) const {
    return owned::find(events, eventId);
}

std::string TEITTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    out.push_back('{');
    appendHeaderJSON(out);
    json::Out o(out);
    o << ",\"transport_stream_id\":" << transportStreamId
      << ",\"original_network_id\":" << originalNetworkId
      << ",\"segment_last_section_number\":" << segmentLastSectionNumber
      << ",\"last_table_id\":" << lastTableId << ",\"event_loop\":";
    json::appendArray(o, events, [&](const auto& entry) { entry.second->appendJSON(out); });
    o << '}';
    return out;
}

}  // namespace Sarn
