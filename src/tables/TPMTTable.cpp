#include "TPMTTable.h"

#include "Arena.h"
#include "Bytes.h"
#include "Json.h"
#include "Owned.h"
#include "TDataComponentDescriptor.h"
#include "TStreamIdentifierDescriptor.h"
#include "TableParse.h"

namespace Sarn {

namespace {

// Descriptors an elementary stream or its program may legally carry (the
// loop builds objects only for those of them the library knows).
constexpr DescriptorTagSet kProgramMapTags = {0x53, 0x0D, 0x49, 0x4A, 0x50, 0x51, 0x52, 0x55,
                                              0xC0, 0xC1, 0xFC, 0xFD, 0xFE, 0xC6, 0xC8, 0xDE,
                                              0xF7, 0xF8, 0x28, 0x2A, 0x7C, 0x13, 0x0A};

// The loop creates only TStreamIdentifierDescriptor objects for tag 0x52 and
// TDataComponentDescriptor objects for 0xFD.
const TStreamIdentifierDescriptor* streamIdentifier(const TProgramMap* map) {
    return static_cast<const TStreamIdentifierDescriptor*>(map->getDescriptor(0x52));
}
const TDataComponentDescriptor* dataComponent(const TProgramMap* map) {
    return static_cast<const TDataComponentDescriptor*>(map->getDescriptor(0xFD));
}

/** The streams keep accepts, in wire order. */
template <class Keep>
std::list<TProgramMap*> select(const memory::BlockVector<TProgramMap*>& maps, Keep keep) {
    std::list<TProgramMap*> found;
    for (TProgramMap* map : maps)
        if (keep(map))
            found.push_back(map);
    return found;
}

}  // namespace

TProgramMap::TProgramMap() : DescriptorLoop(kProgramMapTags), streamType(0), elementaryPid(0) {}

TProgramMap::~TProgramMap() {}

SARN_ENTRY_PARSE(TProgramMap, arena, bytes, length, bytesRead, error) {
    bytes::Reader in(bytes, length);
    if (!tables::hasFixed(in, 5, "TProgramMap", length, error))
        return nullptr;
    // stream_type, elementary_PID (13 bits), ES_info_length (12 bits).
    const unsigned char* fixed = in.bytes(5);
    const unsigned int esInfoLength = bytes::len12(fixed + 3);
    if (!in.has(esInfoLength)) {
        SARN_LOGW("%s: TProgramMap::parse: ESInfoLength not valid: %u + %u > %u. Aborting!", 5u,
                  esInfoLength, length);
        return parse::fail(error, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TProgramMap> map(memory::make<TProgramMap>(arena));
    map->streamType = fixed[0];
    map->elementaryPid = bytes::pid13(fixed + 1);
    const unsigned int read = tables::readDescriptors(arena, *map, in, esInfoLength);
    if (read != esInfoLength)
        SARN_LOGW(
            "%s: TProgramMap:parse: read bytes different than network descriptors length (%d != "
            "%d)",
            static_cast<int>(read), static_cast<int>(esInfoLength));
    return tables::finish(in, bytesRead, error, map);
}

TPMTTable::TPMTTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_PMT, 16, 0x02, bytes, length),
      DescriptorLoop(kProgramMapTags),
      pcrPid(0) {}

TPMTTable::~TPMTTable() {
    owned::deleteAll(programMaps);
}

TPMTTable* TPMTTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPMTTable* previous) {
    memory::Arena arena(tables::blockFor(length, 18));
    return tables::parse(
        tables::build<TPMTTable>(arena, bytes, length), bytes, length, checkCrc, error, previous,
        [&](TPMTTable& table, unsigned short remaining) {
            const memory::VectorInArena<decltype(table.programMaps)> inArena(table.programMaps,
                                                                             &arena);
            bytes::Reader section = tables::afterHeader(bytes, length);
            // PCR_PID and program_info_length lie within the minimum length, even in
            // a section whose section_length is too short for them.
            bytes::Reader fixed = section;
            table.pcrPid = fixed.pid();
            const unsigned int programInfoLength = fixed.length12();
            // The streams run up to the CRC32; a wrapped body counter stops at the
            // end of the bytes handed in.
            bytes::Reader body = section.subAtMost(remaining);
            if (!body.has(4 + programInfoLength)) {
                SARN_LOGW(
                    "%s: TPMTTable::parse: Longer data length is required: (%u + %u) >(%u). "
                    "Aborting!",
                    12u, programInfoLength, static_cast<unsigned int>(remaining));
                return parse::refuse(error, ERROR_DESCRIPTOR_LENGTH);
            }
            body.skip(4);
            const unsigned int read =
                tables::readDescriptors(&arena, table, body, programInfoLength);
            if (read != programInfoLength)
                SARN_LOGW("%s: TPMTTable::parse: readBytes != l_iProgramInfoLength! (%u != %u)",
                          read, programInfoLength);

            // Every stream takes at least its five fixed bytes: room for as many
            // as could fit, so that the list is allocated once.
            table.programMaps.reserve(body.remaining() / 5);
            return tables::readToEnd<TProgramMap>(
                arena, body, "TPMTTable", error,
                [&](TProgramMap* map) { table.programMaps.push_back(map); });
        });
}

SARN_OWNED_LIST_METHODS(TPMTTable, TProgramMap, programMaps, addProgramMap, getProgramMap,
                        removeProgramMap)

std::list<TProgramMap*> TPMTTable::getProgramMapByStreamType(unsigned char streamType) const {
    return select(programMaps,
                  [&](const TProgramMap* map) { return map->getStreamType() == streamType; });
}

std::list<TProgramMap*> TPMTTable::getProgramMapsByStreamType(unsigned char streamType) const {
    return getProgramMapByStreamType(streamType);
}

std::list<TProgramMap*> TPMTTable::getProgramMapByComponentTag(unsigned char componentTag) const {
    return select(programMaps, [&](const TProgramMap* map) {
        const TStreamIdentifierDescriptor* sid = streamIdentifier(map);
        return sid != nullptr && sid->getComponentTag() == componentTag;
    });
}

std::list<TProgramMap*> TPMTTable::getProgramMap(unsigned char streamType,
                                                 unsigned char dataComponentId) const {
    return select(programMaps, [&](const TProgramMap* map) {
        if (map->getStreamType() != streamType)
            return false;
        const TDataComponentDescriptor* dc = dataComponent(map);
        return dc != nullptr && dc->getDataComponentID() == dataComponentId;
    });
}

std::list<ProgramData> TPMTTable::getAllPrograms() const {
    std::list<ProgramData> all;
    for (TProgramMap* map : programMaps) {
        const TStreamIdentifierDescriptor* sid = streamIdentifier(map);
        if (sid != nullptr)
            all.push_back({map->getElementaryPID(), map->getStreamType(), sid->getComponentTag()});
    }
    return all;
}

std::string TPMTTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    json::Out o(out);
    o << "{\"programNumber\":" << tableIdExtension << ",\"pcrPid\":" << pcrPid
      << ",\"programInfoDescriptors\":";
    appendDescriptorsJSON(out);
    o << ",\"elementaryStreams\":";
    json::appendArray(o, programMaps, [&](const TProgramMap* map) {
        o << "{\"streamType\":" << map->streamType << ",\"elementaryPid\":" << map->elementaryPid
          << ",\"esInfoDescriptors\":";
        map->appendDescriptorsJSON(out);
        o << '}';
    });
    o << '}';
    return out;
}

}  // namespace Sarn
