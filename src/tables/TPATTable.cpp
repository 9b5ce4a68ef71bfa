#include "TPATTable.h"

#include "Json.h"
#include "Owned.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TProgramAssociation::~TProgramAssociation() {}

TPATTable::TPATTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_PAT, 12, 0x00, bytes, length), networkPid(0) {}

TPATTable::~TPATTable() {
    owned::deleteAll(programs);
}

TPATTable* TPATTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPATTable* previous) {
    std::unique_ptr<TPATTable> table(new TPATTable(bytes, length));
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous))
        return nullptr;
    // Four-byte entries from byte 8 up to the CRC; a partial entry is ignored.
    bytes::Reader section(bytes, length);
    section.skip(8);
    bytes::Reader in = section.subAtMost(remaining);
    while (in.has(4)) {
        const unsigned short programNumber = in.u16();
        const unsigned short pid = in.pid();
        if (programNumber == 0) {
            table->networkPid = pid;
            continue;
        }
        owned::replace(table->programs, programNumber, new TProgramAssociation(programNumber, pid));
    }
    return parse::done(error, table);
}

void TPATTable::add(TProgramAssociation* entry) {
    if (entry != nullptr)
        programs[entry->getProgramNumber()] = entry;
}

TProgramAssociation* TPATTable::get(unsigned short programNumber) const {
    return owned::find(programs, programNumber);
}

std::list<unsigned short> TPATTable::getProgramNumbers() const {
    return owned::keys(programs);
}

bool TPATTable::remove(unsigned short programNumber) {
    return owned::erase(programs, programNumber);
}

std::string TPATTable::toJSON() const {
    std::string out;
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
