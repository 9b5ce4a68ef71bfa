#ifndef SARN_TDDBTABLE_H
#define SARN_TDDBTABLE_H

#include "TISDBTTable.h"

namespace Sarn {

/**
 * DSM-CC section with table_id 0x3C: one DownloadDataBlock of a data
 * carousel module. The section is only kept: nothing is parsed or checked,
 * so getData() holds the caller's bytes while table_id and section_length
 * stay 0.
 */
class TDDBTable : public TISDBTTable {
  public:
    /** Keeps a copy of the bytes and reports success; the other arguments are not used. */
    static TDDBTable* parse(unsigned char* data, unsigned int length, int, int,
                            unsigned short* error, TDDBTable* previous);

    TDDBTable(unsigned char* data, unsigned int length);
    ~TDDBTable() override;
};

}  // namespace Sarn

#endif
