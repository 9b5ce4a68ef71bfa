#include "TSDTTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

namespace {

// Descriptors a service of the SDT may legally carry.
constexpr DescriptorTagSet kServiceTags = {0x48, 0x47, 0x49, 0x4A, 0xC1, 0xCF,
                                           0xDE, 0x4B, 0x4C, 0x51, 0x53};

// The service loop starts after original_network_id and a reserved byte.
constexpr unsigned int kServiceLoopStart = 11;

}  // namespace

TServiceDescription::TServiceDescription()
    : DescriptorLoop(kServiceTags),
      service_id(0),
      eitSchedule(0),
      eitPresentFollowing(0),
      running_status(0),
      free_CA_mode(0) {}

TServiceDescription::~TServiceDescription() {}

TServiceDescription* TServiceDescription::parse(unsigned char* bytes, unsigned int length, int,
                                                unsigned int* bytesRead, unsigned short* error) {
    if (bytes == nullptr || length < 5) {
        SARN_LOGW("%s: TServiceDescription::parse: Item length not valid: %u. Aborting!", length);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    const unsigned int loopLength = bytes::len12(bytes + 3);
    if (loopLength > length - 5) {
        SARN_LOGW("%s: TServiceDescription::parse: Item length not valid: %u > %u. Aborting!",
                  loopLength, length - 5);
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TServiceDescription* entry = new TServiceDescription();
    entry->service_id = bytes::be16(bytes);
    entry->eitSchedule = (bytes[2] & 0x02) != 0 ? 1 : 0;
    entry->eitPresentFollowing = bytes[2] & 0x01;
    entry->running_status = static_cast<unsigned char>(bytes[3] >> 5);
    entry->free_CA_mode = static_cast<unsigned char>((bytes[3] & 0x10) >> 4);
    const unsigned int read = entry->parseDescriptorsLoop(bytes + 5, loopLength);
    if (read != loopLength)
        SARN_LOGW("%s: TServiceDescription::parse: readbytes != desc loop length (%d != %d)",
                  static_cast<int>(read), static_cast<int>(loopLength));
    if (bytesRead != nullptr)
        *bytesRead = 5 + loopLength;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return entry;
}

TSDTTable::TSDTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_SDT, 15, 0x42, bytes, length), original_network_id(0) {}

TSDTTable::~TSDTTable() {
    owned::deleteAll(services);
}

TSDTTable* TSDTTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TSDTTable* previous) {
    TSDTTable* table = new TSDTTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    table->original_network_id = bytes::be16(bytes + 8);
    // Bytes of the service loop, counted in 16 bits: a body shorter than
    // original_network_id and the reserved byte wraps the count, which is
    // then bounded by the bytes handed in.
    unsigned short count = static_cast<unsigned short>(remaining - 3);
    if (!bytes::fits(kServiceLoopStart, count, length))
        count = static_cast<unsigned short>(length - kServiceLoopStart);
    unsigned int pos = kServiceLoopStart;
    while (count != 0) {
        unsigned int n = 0;
        TServiceDescription* entry = TServiceDescription::parse(bytes + pos, count, 1, &n, error);
        if (entry == nullptr) {
            SARN_LOGW("%s: TSDTTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(error, ERROR_INVALID_ITEM);
            delete table;
            return nullptr;
        }
        owned::replace(table->services, entry->service_id, entry);
        pos += n;
        count = static_cast<unsigned short>(count - n);
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

void TSDTTable::addServiceDescription(TServiceDescription* entry) {
    if (entry != nullptr)
        services[entry->getServiceID()] = entry;
}

TServiceDescription* TSDTTable::getServiceDescription(unsigned short serviceId) const {
    return owned::find(services, serviceId);
}

std::list<unsigned short> TSDTTable::getServiceIDs() const {
    return owned::keys(services);
}

bool TSDTTable::removeServiceDescription(unsigned short serviceId) {
    return owned::erase(services, serviceId);
}

std::string TSDTTable::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "{\"transportStreamId\":" << tableIdExtension
      << ",\"originalNetworkId\":" << original_network_id << ",\"services\":[";
    bool first = true;
    for (const auto& item : services) {
        const TServiceDescription* entry = item.second;
        if (!first)
            o << ',';
        first = false;
        o << "{\"serviceId\":" << entry->service_id << ",\"eitScheduleFlag\":" << entry->eitSchedule
          << ",\"eitPresentFollowingFlag\":" << entry->eitPresentFollowing
          << ",\"runningStatus\":" << entry->running_status
          << ",\"freeCaMode\":" << entry->free_CA_mode << ",\"serviceDescriptors\":";
        entry->appendDescriptorsJSON(out);
        o << '}';
    }
    o << "]}";
    return out;
}

}  // namespace Sarn
