// Software download trigger table with its download contents and schedules.
#include "TSDTTTable.h"

#include "Arena.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

TScheduleInfo::~TScheduleInfo() {}

TScheduleInfo* TScheduleInfo::parse(unsigned char* data, unsigned int length,
                                    unsigned int* bytesRead, unsigned short* error) {
    bytes::Reader in(data, length);
    if (!tables::hasFixed(in, 8, "TScheduleInfo", in.remaining(), error))
        return nullptr;
    // start_time: MJD(16) and BCD hour, minute, second, taken as UTC.
    // duration: BCD hhmmss, kept as the raw 24-bit number.
    std::unique_ptr<TScheduleInfo> schedule(new TScheduleInfo());
    schedule->startTime = in.mjdTime();
    schedule->duration = in.u24();
    return tables::finish(in, bytesRead, error, schedule);
}

// ---------------------------------------------------------------------------

TDownloadContent::TDownloadContent()
    : parent(nullptr),
      group(0),
      targetVersion(0),
      newVersion(0),
      downloadLevel(0),
      versionIndicator(0),
      scheduleTimeShiftInfo(0),
      descriptor(nullptr) {}

TDownloadContent::~TDownloadContent() {
    delete descriptor;
    owned::deleteAll(schedules);
}

SARN_ENTRY_PARSE(TDownloadContent, arena, data, length, bytesRead, error) {
    bytes::Reader in(data, length);
    if (!tables::hasFixed(in, 8, "TDownloadContent", in.remaining(), error))
        return nullptr;
    // group(4) target_version(12) new_version(12) download_level(2)
    // version_indicator(2) content_description_length(12) reserved(4)
    // schedule_description_length(12) schedule_timeshift_information(4).
    std::unique_ptr<TDownloadContent> content(memory::make<TDownloadContent>(arena));
    const unsigned int versions = in.u32();
    content->group = static_cast<unsigned char>(versions >> 28);
    content->targetVersion = static_cast<unsigned short>((versions >> 16) & 0x0FFF);
    content->newVersion = static_cast<unsigned short>((versions >> 4) & 0x0FFF);
    content->downloadLevel = static_cast<unsigned char>((versions >> 2) & 0x03);
    content->versionIndicator = static_cast<unsigned char>(versions & 0x03);
    const unsigned int lengths = in.u32();
    // The content description covers the schedules and the descriptors.
    unsigned short contentLength = static_cast<unsigned short>(lengths >> 20);
    unsigned short scheduleLength = static_cast<unsigned short>((lengths >> 4) & 0x0FFF);
    content->scheduleTimeShiftInfo = static_cast<unsigned char>(lengths & 0x0F);

    if (!in.has(contentLength)) {
        SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u > %u. Aborting!",
                  static_cast<unsigned int>(contentLength), in.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    // Eight bytes per schedule. The counters run down to exactly 0: a
    // schedule length that is not a multiple of 8 or that overruns the
    // content wraps them, and the walk then ends where the bytes end: a
    // schedule short of its eight bytes makes the content too short.
    while (scheduleLength != 0) {
        if (!tables::hasFixed(in, 8, "TDownloadContent", in.remaining(), error))
            return nullptr;
        TScheduleInfo* schedule = TScheduleInfo::parse(in.mutableCurrent(), 8, nullptr, error);
        if (schedule == nullptr) {
            SARN_LOGW("%s: TDownloadContent::parse: Invalid item. Aborting!");
            return parse::fail(error, ERROR_INVALID_ITEM);
        }
        content->schedules.push_back(schedule);
        in.skip(8);
        scheduleLength = static_cast<unsigned short>(scheduleLength - 8);
        contentLength = static_cast<unsigned short>(contentLength - 8);
    }
    while (contentLength != 0) {
        // Not even a descriptor header left: only a wrapped counter gets here.
        if (!tables::hasFixed(in, 2, "TDownloadContent", in.remaining(), error))
            return nullptr;
        const unsigned char tag = in.peek(0);
        const unsigned int descriptorLength = in.peek(1);
        if (!in.has(descriptorLength + 2)) {
            SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u > %u. Aborting!",
                      descriptorLength, in.remaining() - 2);
            return parse::fail(error, ERROR_DATA_TOO_SHORT);
        }
        unsigned char* descriptorBytes = in.mutableCurrent();
        in.skip(descriptorLength + 2);
        if (tag == TDownloadContentDescriptor::DESCRIPTOR_TAG) {
            TDownloadContentDescriptor* d = TDownloadContentDescriptor::parse(
                descriptorBytes, descriptorLength + 2, nullptr, error);
            // A failed descriptor logged its reason and left its code.
            if (d == nullptr)
                return nullptr;
            // A second descriptor replaces the first, which nobody holds yet.
            delete content->descriptor;
            content->descriptor = d;
        } else {
            SARN_LOGW("%s: TDownloadContent::parse: Unknown descriptor: 0x%02X. Ignored!",
                      static_cast<unsigned int>(tag));
        }
        contentLength = static_cast<unsigned short>(contentLength - (descriptorLength + 2));
    }
    return tables::finish(in, bytesRead, error, content);
}

TISDBTDescriptor* TDownloadContent::getDescriptor(unsigned char tag) const {
    return tag == TDownloadContentDescriptor::DESCRIPTOR_TAG ? descriptor : nullptr;
}

std::list<unsigned char> TDownloadContent::getDescriptorTags() const {
    std::list<unsigned char> tags;
    if (descriptor != nullptr)
        tags.push_back(TDownloadContentDescriptor::DESCRIPTOR_TAG);
    return tags;
}

SARN_OWNED_LIST_METHODS(TDownloadContent, TScheduleInfo, schedules, addScheduleInfo,
                        getScheduleInfo, removeScheduleInfo)

// ---------------------------------------------------------------------------

TSDTTTable::TSDTTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_SDTT, 4, 0xC3, bytes, length),
      transportStreamId(0),
      originalNetworkId(0),
      serviceId(0) {}

TSDTTTable::~TSDTTTable() {
    owned::deleteAll(contents);
}

TSDTTTable* TSDTTTable::parse(unsigned char* bytes, unsigned int length, int checkCrc, int,
                              unsigned short* error, TSDTTTable* previous) {
    memory::Arena arena(tables::blockFor(length));
    return tables::parse(
        tables::build<TSDTTTable>(arena, bytes, length), bytes, length, checkCrc, error, previous,
        [&](TSDTTTable& table, unsigned short remaining) {
            // The body is read from the table's own copy.
            bytes::Reader section = tables::afterHeader(table.data, table.dataLength);
            // transport_stream_id(16) original_network_id(16) service_id(16)
            // num_of_contents(8): read even when section_length is too small for
            // them, as long as the bytes are there.
            if (!section.has(7)) {
                SARN_LOGW("%s: TSDTTTable::parse: Item length not valid: %u. Aborting!", length);
                return parse::refuse(error, ERROR_DATA_TOO_SHORT);
            }
            table.transportStreamId = section.u16();
            table.originalNetworkId = section.u16();
            table.serviceId = section.u16();
            unsigned int count = section.u8();
            // Each content gets the rest of the body; a counter wrapped by a short
            // section_length still stops at the end of the buffer.
            bytes::Reader body = section.subAtMost(static_cast<unsigned short>(remaining - 7));
            for (; count != 0; --count) {
                TDownloadContent* content =
                    tables::nextEntry<TDownloadContent>(arena, body, "TSDTTTable", error);
                if (content == nullptr)
                    return false;
                table.contents.push_back(content);
            }
            // Bytes after the last content are not looked at.
            return true;
        });
}

SARN_OWNED_LIST_METHODS(TSDTTTable, TDownloadContent, contents, addDownloadContent,
                        getDownloadContent, removeDownloadContent)

}  // namespace Sarn
