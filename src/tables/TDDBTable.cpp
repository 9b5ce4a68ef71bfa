#include "TDDBTable.h"

#include "Parse.h"
#include "TableParse.h"

namespace Sarn {

TDDBTable::TDDBTable(unsigned char* bytes, unsigned int length)
    : TISDBTTable(TYPE_DDB, 1, 0x3C, bytes, length) {}

TDDBTable::~TDDBTable() {}

TDDBTable* TDDBTable::parse(unsigned char* bytes, unsigned int length, int, int,
                            unsigned short* error, TDDBTable* /*previous*/) {
    memory::Arena arena(tables::blockFor(length));
    // Data blocks are handed on whole: the copy is all there is.
    std::unique_ptr<TDDBTable> table(tables::build<TDDBTable>(arena, bytes, length));
    return parse::done(error, table);
}

}  // namespace Sarn
