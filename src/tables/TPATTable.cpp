#include "TPATTable.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"

namespace Sarn {

TProgramAssociation::~TProgramAssociation() {}

TPATTable::TPATTable(unsigned char* bytes, unsigned int length)
    : TISDBTVersionedTable(TYPE_PAT, 12, 0x00, bytes, length), networkPid(0) {}

TPATTable::~TPATTable() {
    for (auto& entry : programs)
        delete entry.second;
}

TPATTable* TPATTable::parse(unsigned char* bytes, unsigned int length, int, int checkCrc,
                            unsigned short* error, TPATTable* previous) {
    TPATTable* table = new TPATTable(bytes, length);
    unsigned short remaining = 0;
    if (!table->parseCommonHeader(bytes, length, checkCrc, error, &remaining, previous)) {
        delete table;
        return nullptr;
    }
    // Four-byte entries from byte 8 up to the CRC; a partial entry is ignored.
    const unsigned int end = bodyEnd(8, remaining, length);
    for (unsigned int p = 8; p + 4 <= end; p += 4) {
        const unsigned short programNumber = bytes::be16(bytes + p);
        const unsigned short pid = bytes::pid13(bytes + p + 2);
        if (programNumber == 0) {
            table->networkPid = pid;
            continue;
        }
        // A repeated program_number replaces the earlier entry, which nobody
        // else can hold yet.
        auto inserted = table->programs.emplace(programNumber, nullptr);
        delete inserted.first->second;
        inserted.first->second = new TProgramAssociation(programNumber, pid);
    }
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

void TPATTable::add(TProgramAssociation* entry) {
    if (entry != nullptr)
        programs[entry->getProgramNumber()] = entry;
}

TProgramAssociation* TPATTable::get(unsigned short programNumber) const {
    auto it = programs.find(programNumber);
    return it == programs.end() ? nullptr : it->second;
}

std::list<unsigned short> TPATTable::getProgramNumbers() const {
    std::list<unsigned short> numbers;
    for (const auto& entry : programs)
        numbers.push_back(entry.first);
    return numbers;
}

bool TPATTable::remove(unsigned short programNumber) {
    auto it = programs.find(programNumber);
    if (it == programs.end())
        return false;
    delete it->second;
    programs.erase(it);
    return true;
}

std::string TPATTable::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "{\"transportStreamId\":" << tableIdExtension << ",\"programs\":[";
    bool first = true;
    for (const auto& entry : programs) {
        if (!first)
            o << ',';
        first = false;
        o << "{\"programNumber\":" << entry.second->getProgramNumber()
          << ",\"networkPid\":" << networkPid
          << ",\"programMapPid\":" << entry.second->getProgramMapPid() << '}';
    }
    o << "]}";
    return out;
}

}  // namespace Sarn
