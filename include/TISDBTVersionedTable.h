#ifndef SARN_TISDBTVERSIONEDTABLE_H
#define SARN_TISDBTVERSIONEDTABLE_H

#include "TISDBTTable.h"

namespace Sarn {

/**
 * Base of the tables with the long-form section header (table_id_extension,
 * version_number, current_next_indicator, section_number,
 * last_section_number). Compares a new section with a previously received
 * table so that a repeated table is reported (code 2561) instead of re-parsed.
 */
class TISDBTVersionedTable : public TISDBTTable {
  public:
    TISDBTVersionedTable(Type type, unsigned int minLength, unsigned short expectedTableId,
                         unsigned char* data, unsigned int length);
    ~TISDBTVersionedTable() override;

    std::string toJSON() const override;
    bool parseCommonHeader(unsigned char* data, unsigned int length, int checkCrc,
                           unsigned short* error, unsigned short* remaining,
                           TISDBTTable* previous) override;

    unsigned short getGenericDataField() const { return tableIdExtension; }
    unsigned char getVersion() const { return version; }
    int getCurrentIndicator() const { return currentNextIndicator; }
    unsigned char getSectionNumber() const { return sectionNumber; }
    unsigned char getLastSectionNumber() const { return lastSectionNumber; }

  protected:
    /** Appends the short and long header members (no braces) to out. */
    void appendHeaderJSON(std::string& out) const;

    unsigned short tableIdExtension;
    unsigned char version;
    int currentNextIndicator;
    unsigned char sectionNumber;
    unsigned char lastSectionNumber;
};

}  // namespace Sarn

#endif
