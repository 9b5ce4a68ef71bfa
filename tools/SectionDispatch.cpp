#include "SectionDispatch.h"

namespace sarntool {

SectionDispatch::~SectionDispatch() {
    for (auto& entry : previous)
        delete entry.second;
}

SectionResult SectionDispatch::handle(unsigned int pid, unsigned char* section,
                                      unsigned int length) {
    SectionResult result;
    if (length < 8)
        return result;
    const unsigned int tableId = section[0];
    const unsigned int extension = (section[3] << 8) | section[4];
    result.sectionNumber = section[6];
    Key key{pid, tableId, extension, section[6]};
    auto slot = previous.find(key);
    Sarn::TISDBTTable* before = slot == previous.end() ? nullptr : slot->second;

    Sarn::TISDBTTable* table = nullptr;
    if (pid == 0x0000 && tableId == 0x00) {
        result.known = true;
        table = Sarn::TPATTable::parse(section, length, 0, 1, &result.error,
                                       static_cast<Sarn::TPATTable*>(before));
    }
    // Tables that render only their section header return the members
    // without braces; the dump wraps them into an object.
    bool headerOnly = false;
    if ((pid == 0x0023 || pid == 0x0028) && tableId == 0xC3) {
        result.known = headerOnly = true;
        table = Sarn::TSDTTTable::parse(section, length, 1, 0, &result.error,
                                        static_cast<Sarn::TSDTTTable*>(before));
    }
    if (tableId == 0x3B) {
        result.known = headerOnly = true;
        table = Sarn::TDsiDiiTable::parse(section, length, 1, 0, &result.error,
                                          static_cast<Sarn::TDsiDiiTable*>(before));
    } else if (tableId == 0x3C) {
        result.known = headerOnly = true;
        table = Sarn::TDDBTable::parse(section, length, 1, 0, &result.error,
                                       static_cast<Sarn::TDDBTable*>(before));
    } else if (tableId == 0x3D) {
        result.known = headerOnly = true;
        table = Sarn::TDSMCCSectionTable::parse(section, length, 1, 0, &result.error,
                                                static_cast<Sarn::TDSMCCSectionTable*>(before));
    }
    if (tableId == 0x99) {
        result.known = headerOnly = true;
        table = Sarn::TDCTTable::parse(section, length, 1, 0, &result.error,
                                       static_cast<Sarn::TDCTTable*>(before));
    }
    if (table != nullptr) {
        result.json = headerOnly ? "{" + table->toJSON() + "}" : table->toJSON();
        delete before;
        previous[key] = table;
    }
    return result;
}

}  // namespace sarntool
