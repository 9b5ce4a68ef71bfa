#include "TNetworkNameDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TNetworkNameDescriptor::TNetworkNameDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x40, bytes, length) {}

TNetworkNameDescriptor::~TNetworkNameDescriptor() {}

TNetworkNameDescriptor* TNetworkNameDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 0, 0x40))
        return nullptr;
    TNetworkNameDescriptor* d = new TNetworkNameDescriptor(bytes, length);
    // The name fills the payload; it has no length byte of its own.
    const unsigned int payload = length - 2;
    if (ParserUtils::parseStr(bytes + 2, d->networkName, payload, payload) !=
        static_cast<int>(payload)) {
        SARN_LOGW("%s: TNetworkNameDescriptor:: parse: ERROR: parsing Network Name. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = payload;
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

std::string TNetworkNameDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"networkNameDescriptor\",\"networkName\":\"" << networkName << '"';
    return out;
}

}  // namespace Sarn
