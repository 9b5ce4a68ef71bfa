#include "TPATTable.h"

#include "Arena.h"
#include "Bytes.h"
#include "Json.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

TProgramAssociation::~TProgramAssociation() {}

TPATTable::TPATTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_PAT, 12, 0x00, bytes, length), networkPid(0) {}

TPATTable::~TPATTable() {
    owned::deleteAll(programs);
}

TPATTable* TPATTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPATTable* previous) {
    memory::Arena arena(tables::blockFor(length, 12));
    // Four-byte entries from byte 8 up to the CRC; a partial entry is ignored.
    auto entries = [&](TPATTable& table, unsigned short remaining) {
        const memory::VectorInArena<decltype(table.programs)> inArena(table.programs, &arena);
        bytes::Reader in = tables::afterHeader(bytes, length).subAtMost(remaining);
        table.programs.reserve(in.remaining() / 4);
        while (in.has(4)) {
            const unsigned char* entry = in.bytes(4);
            const unsigned short programNumber = bytes::be16(entry);
            const unsigned short pid = bytes::pid13(entry + 2);
            if (programNumber == 0) {
                table.networkPid = pid;
                continue;
            }
            owned::replace(table.programs, programNumber,
                           new (arena) TProgramAssociation(programNumber, pid));
        }
        return true;
    };
    return tables::parse(tables::build<TPATTable>(arena, bytes, length), bytes, length, checkCrc,
                         error, previous, entries);
}

SARN_OWNED_MAP_METHODS(TPATTable, unsigned short, TProgramAssociation, programs, getProgramNumber,
                       add, get, getProgramNumbers, remove)

std::string TPATTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    json::Out o(out);
    o << "{\"transportStreamId\":" << tableIdExtension << ",\"programs\":";
    json::appendArray(o, programs, [&](const auto& entry) {
        o << "{\"programNumber\":" << entry.second->getProgramNumber()
          << ",\"networkPid\":" << networkPid
          << ",\"programMapPid\":" << entry.second->getProgramMapPid() << '}';
    });
    o << '}';
    return out;
}

}  // namespace Sarn
