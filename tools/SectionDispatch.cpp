#include "SectionDispatch.h"

#include <algorithm>

namespace sarntool {

namespace {

enum class Route { None, Table, Tot, EventPid, HeaderOnly };

/**
 * Which sections the tool hands to the library, as a receiver following the
 * ISDB-T PIDs does: the PAT, NIT, SDT and TOT on their own PIDs; program map
 * sections on whatever PID the PAT gave them; every section of the EIT PIDs
 * (0x0012 full-segment, 0x0026 and 0x0027 one-segment); the AIT, the DSM-CC
 * sections and the datacaster carousel table on any PID; the software
 * download trigger table on its two PIDs.
 */
Route routeOf(unsigned int pid, unsigned int tableId) {
    if ((pid == 0x0000 && tableId == 0x00) || (pid == 0x0010 && tableId == 0x40) ||
        (pid == 0x0011 && tableId == 0x42) || tableId == 0x02)
        return Route::Table;
    if (pid == 0x0014 && tableId == 0x73)
        return Route::Tot;
    if (pid == 0x0012 || pid == 0x0026 || pid == 0x0027)
        return Route::EventPid;
    if (tableId == 0x74)
        return Route::Table;
    if (tableId == 0x3B || tableId == 0x3C || tableId == 0x3D || tableId == 0x99 ||
        (tableId == 0xC3 && (pid == 0x0023 || pid == 0x0028)))
        return Route::HeaderOnly;
    return Route::None;
}

}  // namespace

SectionDispatch::~SectionDispatch() {
    for (auto& entry : previous)
        delete entry.second.table;
}

SectionResult SectionDispatch::handle(unsigned int pid, unsigned char* section,
                                      unsigned int length) {
    SectionResult result;
    lastTot.reset();
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

    const Route route = routeOf(pid, tableId);
    if (route == Route::None)
        return result;
    result.known = true;
    if (route == Route::Tot) {
        // A TOT has no version to compare and its bytes 3 to 7 are the time,
        // not a long header: every one is printed and none is kept.
        result.sectionNumber = 0;
        lastTot.reset(Sarn::parseSection(section, length, 1, &result.error, pid));
        if (lastTot != nullptr) {
            result.json = lastTot->toJSON();
            result.table = lastTot.get();
            result.bytes = section;
        }
        return result;
    }
    Sarn::TISDBTTable* table = nullptr;
    if (route == Route::EventPid && (tableId < 0x4E || tableId > 0x6F)) {
        // The event information class takes any table_id: on the EIT PIDs
        // the other table_ids (stuffing, say) go to it as well.
        table = Sarn::TEITTable::parse(section, length, pid == 0x0012 ? 1 : 0, 1, 0, &result.error,
                                       static_cast<Sarn::TEITTable*>(before));
    } else {
        table = Sarn::parseSection(section, length, 1, &result.error, pid, before);
    }
    if (table != nullptr) {
        result.json = table->toJSON();
        Kept& kept = slot == previous.end() ? previous[key] : slot->second;
        delete kept.table;
        kept.table = table;
        kept.bytes.swap(scratch);
        result.table = table;
        result.bytes = kept.bytes.data();
    }
    // These tables render only their section header, as members without
    // braces; the dump wraps them into an object.
    if (route == Route::HeaderOnly && !result.json.empty())
        result.json = "{" + result.json + "}";
    return result;
}

}  // namespace sarntool
