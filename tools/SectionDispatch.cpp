#include "SectionDispatch.h"

#include <algorithm>

namespace sarntool {

SectionDispatch::~SectionDispatch() {
    for (auto& entry : previous)
        delete entry.second.table;
}

SectionResult SectionDispatch::handle(unsigned int pid, unsigned char* section,
                                      unsigned int length) {
    SectionResult result;
    if (length < 3)
        return result;
    const unsigned int tableId = section[0];
    // Only the long form (section_syntax_indicator set) has an extension and a section number.
    const bool longForm = (section[1] & 0x80) != 0 && length >= 8;
    const unsigned int extension = longForm ? (section[3] << 8) | section[4] : 0;
    result.sectionNumber = longForm ? section[6] : 0;
    const Key key{pid, tableId, extension, result.sectionNumber};
    auto slot = previous.find(key);
    Sarn::TISDBTTable* before = slot == previous.end() ? nullptr : slot->second.table;
    if (before != nullptr && result.sectionNumber != 0) {
        // The library compares only the first section of a table with its
        // predecessor; later sections are compared here the same way, by
        // version_number and CRC32.
        const std::vector<unsigned char>& old = slot->second.bytes;
        if (old.size() >= 8 && ((old[5] ^ section[5]) & 0x3E) == 0 &&
            std::equal(old.end() - 4, old.end(), section + length - 4)) {
            result.known = true;
            result.error = Sarn::ERROR_TABLE_UNCHANGED;
            return result;
        }
        before = nullptr;
    }
    // Tables may keep pointers into the bytes they were parsed from: parse a
    // copy that lives as long as the table.
    scratch.assign(section, section + length);
    section = scratch.data();

    Sarn::TISDBTTable* table = nullptr;
    if (pid == 0x0000 && tableId == 0x00) {
        result.known = true;
        table = Sarn::TPATTable::parse(section, length, 0, 1, &result.error,
                                       static_cast<Sarn::TPATTable*>(before));
    }
    if (table != nullptr) {
        result.json = table->toJSON();
        Kept& kept = slot == previous.end() ? previous[key] : slot->second;
        delete kept.table;
        kept.table = table;
        kept.bytes.swap(scratch);
    }
    return result;
}

}  // namespace sarntool
