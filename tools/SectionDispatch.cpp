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
    } else if (pid == 0x0010 && tableId == 0x40) {
        result.known = true;
        table = Sarn::TNITTable::parse(section, length, 1, 0, &result.error,
                                       static_cast<Sarn::TNITTable*>(before));
    } else if (pid == 0x0011 && tableId == 0x42) {
        result.known = true;
        table = Sarn::TSDTTable::parse(section, length, 0, 1, &result.error,
                                       static_cast<Sarn::TSDTTable*>(before));
    } else if (pid == 0x0014 && tableId == 0x73) {
        // A TOT has no version to compare and its bytes 3 to 7 are the time,
        // not a long header: every one is printed and none is kept.
        result.known = true;
        result.sectionNumber = 0;
        Sarn::TTOTTable* tot =
            Sarn::TTOTTable::parse(section, length, 1, 1, &result.error, nullptr);
        if (tot != nullptr)
            result.json = tot->toJSON();
        delete tot;
        return result;
    } else if (tableId == 0x02) {
        // Program map sections, on whatever PID the PAT gave them.
        result.known = true;
        table = Sarn::TPMTTable::parse(section, length, 0, 1, &result.error,
                                       static_cast<Sarn::TPMTTable*>(before));
    } else if (pid == 0x0012 || pid == 0x0026 || pid == 0x0027) {
        // Event information: full-segment on 0x0012, one-segment on 0x0026 and
        // 0x0027; every table_id is an EIT there.
        result.known = true;
        table = Sarn::TEITTable::parse(section, length, pid == 0x0012 ? 1 : 0, 1, 0, &result.error,
                                       static_cast<Sarn::TEITTable*>(before));
    } else if (tableId == 0x74) {
        // Application information tables come on the PIDs the PMTs announce.
        result.known = true;
        table = Sarn::TAITTable::parse(section, length, 0, 1, &result.error,
                                       static_cast<Sarn::TAITTable*>(before));
    }
    // Data broadcast: DSM-CC sections and the datacaster carousel table on
    // any PID, the software download trigger table on its two PIDs.
    bool headerOnly = false;
    if (!result.known) {
        headerOnly = true;
        switch (tableId) {
            case 0x3B:
                table = Sarn::TDsiDiiTable::parse(section, length, 1, 0, &result.error,
                                                  static_cast<Sarn::TDsiDiiTable*>(before));
                break;
            case 0x3C:
                table = Sarn::TDDBTable::parse(section, length, 1, 0, &result.error,
                                               static_cast<Sarn::TDDBTable*>(before));
                break;
            case 0x3D:
                table =
                    Sarn::TDSMCCSectionTable::parse(section, length, 1, 0, &result.error,
                                                    static_cast<Sarn::TDSMCCSectionTable*>(before));
                break;
            case 0x99:
                table = Sarn::TDCTTable::parse(section, length, 1, 0, &result.error,
                                               static_cast<Sarn::TDCTTable*>(before));
                break;
            case 0xC3:
                headerOnly = pid == 0x0023 || pid == 0x0028;
                if (headerOnly)
                    table = Sarn::TSDTTTable::parse(section, length, 1, 0, &result.error,
                                                    static_cast<Sarn::TSDTTTable*>(before));
                break;
            default:
                headerOnly = false;
        }
        result.known = headerOnly;
    }
    if (table != nullptr) {
        result.json = table->toJSON();
        Kept& kept = slot == previous.end() ? previous[key] : slot->second;
        delete kept.table;
        kept.table = table;
        kept.bytes.swap(scratch);
    }
    // These tables render only their section header, as members without
    // braces; the dump wraps them into an object.
    if (headerOnly && !result.json.empty())
        result.json = "{" + result.json + "}";
    return result;
}

}  // namespace sarntool
