#include "TServiceDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TServiceDescriptor::TServiceDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x48, bytes, length), service_type(0) {}

TServiceDescriptor::~TServiceDescriptor() {}

TServiceDescriptor* TServiceDescriptor::parse(unsigned char* bytes, unsigned int length,
                                              unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 3, 0x48))
        return nullptr;
    TServiceDescriptor* d = new TServiceDescriptor(bytes, length);
    d->service_type = bytes[2];
    // service_provider_name_length + name, then service_name_length + name.
    const int provider = ParserUtils::parseStr(bytes + 3, d->serviceProvider, 0, length - 3);
    if (provider < 0) {
        SARN_LOGW(
            "%s: TServiceDescriptor:: parse: ERROR: parsing Service Provider Name. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // The count is kept in 8 bits; it never exceeds the bytes after byte 3.
    const unsigned char c1 = static_cast<unsigned char>(provider);
    const unsigned int rest = length - 3 - c1;
    if (rest == 0) {
        SARN_LOGW(
            "%s: TServiceDescriptor::parse: Longer data length is required: %u < %u. "
            "Aborting!",
            rest, 1u);
        ISDBTUtils::setErrorCode(error, ERROR_DESCRIPTOR_LENGTH);
        delete d;
        return nullptr;
    }
    const int name = ParserUtils::parseStr(bytes + 3 + c1, d->serviceName, 0, rest);
    if (name < 0) {
        SARN_LOGW("%s: TServiceDescriptor:: parse: ERROR: parsing Service Name. Aborting!");
        ISDBTUtils::setErrorCode(error, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // Only the two names are counted, not the three leading bytes.
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned char>(c1 + name);
    ISDBTUtils::setErrorCode(error, ERROR_NONE);
    return d;
}

std::string TServiceDescriptor::toJSON() const {
    std::string out;
    json::Out(out) << "\"name\":\"serviceDescriptor\",\"serviceType\":" << service_type
                   << ",\"serviceProvider\":\"" << serviceProvider << "\",\"serviceName\":\""
                   << serviceName << '"';
    return out;
}

}  // namespace Sarn
