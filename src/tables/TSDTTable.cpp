#include "TSDTTable.h"

#include "Arena.h"
#include "Bytes.h"
#include "Json.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

namespace {

// Descriptors a service of the SDT may legally carry.
constexpr DescriptorTagSet kServiceTags = {0x48, 0x47, 0x49, 0x4A, 0xC1, 0xCF,
                                           0xDE, 0x4B, 0x4C, 0x51, 0x53};

}  // namespace

TServiceDescription::TServiceDescription()
    : DescriptorLoop(kServiceTags),
      serviceId(0),
      eitSchedule(0),
      eitPresentFollowing(0),
      runningStatus(0),
      freeCAMode(0) {}

TServiceDescription::~TServiceDescription() {}

SARN_ENTRY_PARSE(TServiceDescription, arena, bytes, length, bytesRead, error) {
    bytes::Reader in(bytes, length);
    if (!tables::hasFixed(in, 5, "TServiceDescription", length, error))
        return nullptr;
    // service_id, reserved bits and the two EIT flags, then running_status
    // (3 bits) and free_CA_mode (1) ahead of descriptors_loop_length (12).
    const unsigned char* fixed = in.bytes(5);
    const unsigned int loopLength = bytes::len12(fixed + 3);
    if (!in.has(loopLength)) {
        SARN_LOGW("%s: TServiceDescription::parse: Item length not valid: %u > %u. Aborting!",
                  loopLength, in.remaining());
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TServiceDescription> entry(memory::make<TServiceDescription>(arena));
    entry->serviceId = bytes::be16(fixed);
    entry->eitSchedule = (fixed[2] & 0x02) != 0 ? 1 : 0;
    entry->eitPresentFollowing = fixed[2] & 0x01;
    entry->runningStatus = static_cast<unsigned char>(fixed[3] >> 5);
    entry->freeCAMode = static_cast<unsigned char>((fixed[3] & 0x10) >> 4);
    const unsigned int read = tables::readDescriptors(arena, *entry, in, loopLength);
    if (read != loopLength)
        SARN_LOGW("%s: TServiceDescription::parse: readbytes != desc loop length (%d != %d)",
                  static_cast<int>(read), static_cast<int>(loopLength));
    return tables::finish(in, bytesRead, error, entry);
}

TSDTTable::TSDTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_SDT, 15, 0x42, bytes, length), originalNetworkId(0) {}

TSDTTable::~TSDTTable() {
    owned::deleteAll(services);
}

TSDTTable* TSDTTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TSDTTable* previous) {
    memory::Arena arena(tables::blockFor(length, 16));
    return tables::parse(
        tables::build<TSDTTable>(arena, bytes, length), bytes, length, checkCrc, error, previous,
        [&](TSDTTable& table, unsigned short remaining) {
            const memory::VectorInArena<decltype(table.services)> inArena(table.services, &arena);
            // original_network_id and a reserved byte lie within the minimum length.
            bytes::Reader section = tables::afterHeader(bytes, length);
            table.originalNetworkId = section.u16();
            section.skip(1);
            // Bytes of the service loop, counted in 16 bits: a body shorter than
            // original_network_id and the reserved byte wraps the count, which is
            // then bounded by the bytes handed in.
            bytes::Reader loop = section.subAtMost(static_cast<unsigned short>(remaining - 3));
            return tables::readToEnd<TServiceDescription>(
                arena, loop, "TSDTTable", error,
                [&](auto* entry) { owned::replace(table.services, entry->serviceId, entry); });
        });
}

SARN_OWNED_MAP_METHODS(TSDTTable, unsigned short, TServiceDescription, services, getServiceID,
                       addServiceDescription, getServiceDescription, getServiceIDs,
                       removeServiceDescription)

std::string TSDTTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    json::Out o(out);
    o << "{\"transportStreamId\":" << tableIdExtension
      << ",\"originalNetworkId\":" << originalNetworkId << ",\"services\":";
    json::appendArray(o, services, [&](const auto& item) {
        const TServiceDescription* entry = item.second;
        o << "{\"serviceId\":" << entry->serviceId << ",\"eitScheduleFlag\":" << entry->eitSchedule
          << ",\"eitPresentFollowingFlag\":" << entry->eitPresentFollowing
          << ",\"runningStatus\":" << entry->runningStatus
          << ",\"freeCaMode\":" << entry->freeCAMode << ",\"serviceDescriptors\":";
        entry->appendDescriptorsJSON(out);
        o << '}';
    });
    o << '}';
    return out;
}

}  // namespace Sarn
