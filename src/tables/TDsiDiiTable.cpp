#include "TDsiDiiTable.h"

#include "Parse.h"
#include "TableParse.h"

namespace Sarn {

TDsiDiiTable::TDsiDiiTable(unsigned char* bytes, unsigned int length)
    : TISDBTTable(TYPE_DSI_DII, 1, 0x3B, bytes, length) {}

TDsiDiiTable::~TDsiDiiTable() {}

TDsiDiiTable* TDsiDiiTable::parse(unsigned char* bytes, unsigned int length, int, int,
                                  unsigned short* error, TDsiDiiTable* /*previous*/) {
    memory::Arena arena(tables::blockFor(length));
    // Carousel control messages are handed on whole: the copy is all there is.
    std::unique_ptr<TDsiDiiTable> table(tables::build<TDsiDiiTable>(arena, bytes, length));
    return parse::done(error, table);
}

}  // namespace Sarn
