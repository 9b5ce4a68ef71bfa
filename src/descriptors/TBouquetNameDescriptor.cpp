#include "TBouquetNameDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TBouquetNameDescriptor::TBouquetNameDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x47, bytes, length) {}

TBouquetNameDescriptor::~TBouquetNameDescriptor() {}

SARN_DESCRIPTOR_PARSE(TBouquetNameDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TBouquetNameDescriptor, bytes, length, error, 1, 0x47);
    // The name fills the rest of the bytes handed in.
    const int count = r.loggedString(d->bouquetName, r.remaining(), arena);
    if (count < 0) {
        SARN_LOGW("%s: TBouquetNameDescriptor:: parse: ERROR: parsing Bouquet Name. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    return parse::done(error, d, bytesRead, static_cast<unsigned char>(count));
}

void TBouquetNameDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    // The name is written without quotes around it, as receivers expect.
    o << "\"name\":\"bouquetNameDescriptor\",\"bouquetName\":" << bouquetName;
}

std::string TBouquetNameDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
