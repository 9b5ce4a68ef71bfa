// Software download trigger table with its download contents and schedules.
#include "TSDTTTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "OwnedItems.h"

namespace Sarn {

TScheduleInfo::~TScheduleInfo() {}

TScheduleInfo* TScheduleInfo::parse(unsigned char* data, unsigned int length,
                                    unsigned int* bytesRead, unsigned short* error) {
    if (data == nullptr)
        length = 0;
    if (length < 8) {
        SARN_LOGW("%s: TScheduleInfo::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    // start_time: MJD(16) and BCD hour, minute, second, taken as UTC.
    // duration: BCD hhmmss, kept as the raw 24-bit number.
    TScheduleInfo* schedule = new TScheduleInfo();
    schedule->startTime = ISDBTUtils::mjd2unix(bytes::be16(data)) + ISDBTUtils::bcd2U8(data[4]) +
                          ISDBTUtils::bcd2U8(data[3]) * 60u + ISDBTUtils::bcd2U8(data[2]) * 3600u;
    schedule->duration = bytes::be24(data + 5);
    if (bytesRead != nullptr)
        *bytesRead = 8;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return schedule;
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

TDownloadContent* TDownloadContent::parse(unsigned char* data, unsigned int length, int,
                                          unsigned int* bytesRead, unsigned short* error) {
    if (data == nullptr)
        length = 0;
    if (length < 8) {
        SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    // group(4) target_version(12) new_version(12) download_level(2)
    // version_indicator(2) content_description_length(12) reserved(4)
    // schedule_description_length(12) schedule_timeshift_information(4).
    TDownloadContent* content = new TDownloadContent();
    content->group = data[0] >> 4;
    content->targetVersion = static_cast<unsigned short>(((data[0] & 0x0F) << 8) | data[1]);
    content->newVersion = static_cast<unsigned short>((data[2] << 4) | (data[3] >> 4));
    content->downloadLevel = (data[3] & 0x0C) >> 2;
    content->versionIndicator = data[3] & 0x03;
    // The content description covers the schedules and the descriptors.
    unsigned short contentLength = static_cast<unsigned short>((data[4] << 4) | (data[5] >> 4));
    unsigned short scheduleLength = static_cast<unsigned short>((data[6] << 4) | (data[7] >> 4));
    content->scheduleTimeShiftInfo = data[7] & 0x0F;

    auto abandon = [content, error](unsigned short code) -> TDownloadContent* {
        ISDBTUtils::setErrorCode(error, code);
        delete content;
        return nullptr;
    };
    unsigned int p = 8;
    if (contentLength > length - p) {
        SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u > %u. Aborting!",
                  static_cast<unsigned int>(contentLength), length - p);
        return abandon(ERROR_DATA_TOO_SHORT);
    }
    // Eight bytes per schedule. The counters run down to exactly 0: a
    // schedule length that is not a multiple of 8 or that overruns the
    // content wraps them, and the walk then ends where the bytes end: a
    // schedule short of its eight bytes makes the content too short.
    while (scheduleLength != 0) {
        const unsigned int left = length - p;
        if (left < 8) {
            SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u. Aborting!", left);
            return abandon(ERROR_DATA_TOO_SHORT);
        }
        TScheduleInfo* schedule = TScheduleInfo::parse(data + p, 8, nullptr, error);
        if (schedule == nullptr) {
            SARN_LOGW("%s: TDownloadContent::parse: Invalid item. Aborting!");
            return abandon(ERROR_INVALID_ITEM);
        }
        content->schedules.push_back(schedule);
        p += 8;
        scheduleLength = static_cast<unsigned short>(scheduleLength - 8);
        contentLength = static_cast<unsigned short>(contentLength - 8);
    }
    while (contentLength != 0) {
        const unsigned int left = length - p;
        if (left < 2) {
            // Not even a descriptor header is left: only a wrapped counter
            // gets here.
            SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u. Aborting!", left);
            return abandon(ERROR_DATA_TOO_SHORT);
        }
        const unsigned char tag = data[p];
        const unsigned int descriptorLength = data[p + 1];
        if (descriptorLength > left - 2) {
            SARN_LOGW("%s: TDownloadContent::parse: Item length not valid: %u > %u. Aborting!",
                      descriptorLength, left - 2);
            return abandon(ERROR_DATA_TOO_SHORT);
        }
        if (tag == TDownloadContentDescriptor::DESCRIPTOR_TAG) {
            TDownloadContentDescriptor* d =
                TDownloadContentDescriptor::parse(data + p, descriptorLength + 2, nullptr, error);
            if (d == nullptr) {
                // The descriptor logged its reason and left its code.
                delete content;
                return nullptr;
            }
            // A second descriptor replaces the first, which nobody holds yet.
            delete content->descriptor;
            content->descriptor = d;
        } else {
            SARN_LOGW("%s: TDownloadContent::parse: Unknown descriptor: 0x%02X. Ignored!",
                      static_cast<unsigned int>(tag));
        }
        p += descriptorLength + 2;
        contentLength = static_cast<unsigned short>(contentLength - (descriptorLength + 2));
    }
    if (bytesRead != nullptr)
        *bytesRead = p;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return content;
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

void TDownloadContent::addScheduleInfo(TScheduleInfo* schedule) {
    owned::append(schedules, schedule);
}

TScheduleInfo* TDownloadContent::getScheduleInfo(unsigned char index) const {
    return owned::at(schedules, index);
}

bool TDownloadContent::removeScheduleInfo(unsigned char index) {
    return owned::removeAt(schedules, index);
}

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
    TSDTTTable* table = new TSDTTTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    // The body is read from the table's own copy.
    const unsigned char* b = table->data;
    // transport_stream_id(16) original_network_id(16) service_id(16)
    // num_of_contents(8): read even when section_length is too small for
    // them, as long as the bytes are there.
    if (!bytes::fits(8, 7, length)) {
        SARN_LOGW("%s: TSDTTTable::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        delete table;
        return nullptr;
    }
    table->transportStreamId = bytes::be16(b + 8);
    table->originalNetworkId = bytes::be16(b + 10);
    table->serviceId = bytes::be16(b + 12);
    unsigned int count = b[14];
    remaining = static_cast<unsigned short>(remaining - 7);
    unsigned int p = 15;
    for (; count != 0; --count) {
        // Each content gets the rest of the body; a counter wrapped by a
        // short section_length still stops at the end of the buffer.
        const unsigned int available = bodyEnd(p, remaining, length) - p;
        unsigned int read = 0;
        TDownloadContent* content =
            TDownloadContent::parse(table->data + p, available, 1, &read, error);
        if (content == nullptr) {
            SARN_LOGW("%s: TSDTTTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete table;
            return nullptr;
        }
        table->contents.push_back(content);
        p += read;
        remaining = static_cast<unsigned short>(remaining - read);
    }
    // Bytes after the last content are not looked at.
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

void TSDTTTable::addDownloadContent(TDownloadContent* content) {
    owned::append(contents, content);
}

TDownloadContent* TSDTTTable::getDownloadContent(unsigned char index) const {
    return owned::at(contents, index);
}

bool TSDTTTable::removeDownloadContent(unsigned char index) {
    return owned::removeAt(contents, index);
}

}  // namespace Sarn
