#include "TDDBTable.h"

#include "ISDBTUtils.h"

namespace Sarn {

TDDBTable::TDDBTable(unsigned char* bytes, unsigned int length)
    : TISDBTTable(TYPE_DDB, 1, 0x3C, bytes, length) {}

TDDBTable::~TDDBTable() {}

TDDBTable* TDDBTable::parse(unsigned char* bytes, unsigned int length, int, int,
                            unsigned short* error, TDDBTable* /*previous*/) {
    // Data blocks are handed on whole: the copy is all there is.
    TDDBTable* table = new TDDBTable(bytes, length);
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return table;
}

}  // namespace Sarn
