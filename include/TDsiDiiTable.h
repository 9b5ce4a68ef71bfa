#ifndef SARN_TDSIDIITABLE_H
#define SARN_TDSIDIITABLE_H

#include "TISDBTTable.h"

namespace Sarn {

/**
 * DSM-CC section with table_id 0x3B: the download control messages of a data
 * carousel (DownloadServerInitiate, DownloadInfoIndication). The section is
 * only kept: nothing is parsed or checked, so getData() holds the caller's
 * bytes while table_id and section_length stay 0.
 */
class TDsiDiiTable : public TISDBTTable {
  public:
    /** Keeps a copy of the bytes and reports success; the other arguments are not used. */
    static TDsiDiiTable* parse(unsigned char* data, unsigned int length, int, int,
                               unsigned short* error, TDsiDiiTable* previous);

    TDsiDiiTable(unsigned char* data, unsigned int length);
    ~TDsiDiiTable() override;
};

}  // namespace Sarn

#endif
