#include "TEITTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"

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
      startHour(0),
      startMinute(0),
      durationHours(0),
      durationMinutes(0),
      sectionNumber(section),
      tableId(table),
      dataLength(0) {}

TEventItem::~TEventItem() {}

TEventItem* TEventItem::parse(unsigned char* data, unsigned int len, int fullSegment,
                              unsigned char tableId, unsigned char sectionNumber,
                              unsigned int* bytesRead, unsigned short* err) {
    if (data == nullptr)
        len = 0;  // nothing to read
    if (len < 12) {
        SARN_LOGW("%s: TEventItem::parse: Descriptor length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TEventItem* e = new TEventItem(fullSegment, tableId, sectionNumber);
    e->dataLength = len;
    e->eventId = bytes::be16(data);

    // The wall-clock start is taken as UTC; an undefined start (all ones) is
    // decoded like any other value.
    const unsigned int hour = ISDBTUtils::bcd2U8(data[4]);
    const unsigned int minute = ISDBTUtils::bcd2U8(data[5]);
    const unsigned int second = ISDBTUtils::bcd2U8(data[6]);
    e->startTime =
        ISDBTUtils::mjd2unix(bytes::be16(data + 2)) + second + minute * 60u + hour * 3600u;
    e->startHour = static_cast<unsigned char>(hour);
    e->startMinute = static_cast<unsigned char>(minute);

    const unsigned int hours = ISDBTUtils::bcd2U8(data[7]);
    const unsigned int minutes = ISDBTUtils::bcd2U8(data[8]);
    e->duration = ISDBTUtils::bcd2U8(data[9]) + minutes * 60u + hours * 3600u;
    e->durationHours = static_cast<unsigned char>(hours);
    e->durationMinutes = static_cast<unsigned char>(minutes);

    e->runningStatus = static_cast<unsigned char>(data[10] >> 5);
    // The free_CA_mode bit is shifted out on purpose: this library reports
    // every event as free to air (0), and receivers built on it expect that.
    e->freeCAMode = (data[10] & 0x10) >> 5;

    const unsigned int loopLength = bytes::len12(data + 10);
    if (loopLength > len - 12) {
        SARN_LOGW(
            "%s: TEventItem::parse: Loop length is greater than buffer length (%d > %u). "
            "Aborting!",
            static_cast<int>(loopLength), len - 12);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete e;
        return nullptr;
    }
    // The next event starts where the descriptor walk stopped, which is short
    // of loopLength when the loop ends in a stray byte or an overrun.
    const unsigned int consumed = e->parseDescriptorsLoop(data + 12, loopLength);
    if (bytesRead != nullptr)
        *bytesRead = 12 + consumed;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return e;
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
    for (auto& entry : events)
        delete entry.second;
}

TEITTable* TEITTable::parse(unsigned char* bytes, unsigned int len, int fullSegment, int checkCrc,
                            int, unsigned short* err, TEITTable* previous) {
    TEITTable* table = new TEITTable(fullSegment ? TYPE_EIT_12 : TYPE_EIT_27, bytes, len);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, len, checkCrc, err, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    // Events and their descriptors are read from the table's own copy, so
    // they stay valid for as long as the table lives. The minimum length of
    // 14 covers the fixed fields after the long header.
    unsigned char* s = table->data;
    table->transportStreamId = bytes::be16(s + 8);
    table->originalNetworkId = bytes::be16(s + 10);
    table->segmentLastSectionNumber = s[12];
    table->lastTableId = s[13];

    const unsigned int end = bodyEnd(8, remaining, len);
    for (unsigned int offset = 14; offset < end;) {
        unsigned int read = 0;
        TEventItem* item = TEventItem::parse(s + offset, end - offset, fullSegment, table->tableId,
                                             table->sectionNumber, &read, err);
        if (item == nullptr) {
            SARN_LOGW("%s: TEITTable::parse: TEITTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_DESCRIPTOR_LENGTH);
            delete table;
            return nullptr;
        }
        // A repeated event_id replaces the earlier event, which nobody else
        // can hold yet.
        auto inserted = table->events.emplace(item->eventId, item);
        if (!inserted.second) {
            delete inserted.first->second;
            inserted.first->second = item;
        }
        offset += read;
    }
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return table;
}

void TEITTable::addItem(TEventItem* item) {
    if (item != nullptr)
        events[item->eventId] = item;
}

std::list<unsigned short> TEITTable::getEventsIDs() const {
    std::list<unsigned short> ids;
    for (const auto& entry : events)
        ids.push_back(entry.first);
    return ids;
}

TEventItem* TEITTable::getEvent(unsigned short eventId) const {
    auto it = events.find(eventId);
    return it == events.end() ? nullptr : it->second;
}

std::string TEITTable::toJSON() const {
    std::string out;
    out.push_back('{');
    appendHeaderJSON(out);
    json::Out o(out);
    o << ",\"transport_stream_id\":" << transportStreamId
      << ",\"original_network_id\":" << originalNetworkId
      << ",\"segment_last_section_number\":" << segmentLastSectionNumber
      << ",\"last_table_id\":" << lastTableId << ",\"event_loop\":[";
    bool first = true;
    for (const auto& entry : events) {
        if (!first)
            o << ',';
        first = false;
        entry.second->appendJSON(out);
    }
    o << "]}";
    return out;
}

}  // namespace Sarn
