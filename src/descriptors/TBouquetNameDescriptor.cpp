#include "TBouquetNameDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TBouquetNameDescriptor::TBouquetNameDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x47, bytes, length) {}

TBouquetNameDescriptor::~TBouquetNameDescriptor() {}

TBouquetNameDescriptor* TBouquetNameDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 1, 0x47))
        return nullptr;
    TBouquetNameDescriptor* d = new TBouquetNameDescriptor(bytes, length);
    // The name fills the rest of the bytes handed in.
    const int count = ParserUtils::parseStr(bytes + 2, d->bouquetName, length - 2, length - 2);
    if (count < 0) {
        SARN_LOGW("%s: TBouquetNameDescriptor:: parse: ERROR: parsing Bouquet Name. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned char>(count);
    return d;
}

std::string TBouquetNameDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    // The name is written without quotes around it, as receivers expect.
    o << "\"name\":\"bouquetNameDescriptor\",\"bouquetName\":" << bouquetName;
    return out;
}

}  // namespace Sarn
