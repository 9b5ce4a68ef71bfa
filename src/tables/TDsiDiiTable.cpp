#include "TDsiDiiTable.h"

#include "Parse.h"

namespace Sarn {

TDsiDiiTable::TDsiDiiTable(unsigned char* bytes, unsigned int length)
    : TISDBTTable(TYPE_DSI_DII, 1, 0x3B, bytes, length) {}

TDsiDiiTable::~TDsiDiiTable() {}

TDsiDiiTable* TDsiDiiTable::parse(unsigned char* bytes, unsigned int length, int, int,
                                  unsigned short* error, TDsiDiiTable* /*previous*/) {
    // Carousel control messages are handed on whole: the copy is all there is.
    std::unique_ptr<TDsiDiiTable> table(new TDsiDiiTable(bytes, length));
    return parse::done(error, table);
}

}  // namespace Sarn
