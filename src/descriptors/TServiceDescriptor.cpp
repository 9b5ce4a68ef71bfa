#include "TServiceDescriptor.h"

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TServiceDescriptor::TServiceDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x48, bytes, length) {}

TServiceDescriptor::~TServiceDescriptor() {}

SARN_DESCRIPTOR_PARSE(TServiceDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, names, TServiceDescriptor, bytes, length, error, 3, 0x48);
    d->serviceType = names.u8();
    // service_provider_name_length + name, then service_name_length + name.
    bytes::Reader provider = names;
    const int providerSize = provider.string(d->serviceProvider, 0, arena);
    if (providerSize < 0) {
        SARN_LOGW(
            "%s: TServiceDescriptor:: parse: ERROR: parsing Service Provider Name. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    // The service name starts that many bytes further, the count kept in 8
    // bits; it never exceeds the bytes after service_type.
    const unsigned char c1 = static_cast<unsigned char>(providerSize);
    names.skip(c1);
    if (names.remaining() == 0) {
        SARN_LOGW(
            "%s: TServiceDescriptor::parse: Longer data length is required: %u < %u. "
            "Aborting!",
            names.remaining(), 1u);
        return parse::fail(error, ERROR_DESCRIPTOR_LENGTH);
    }
    const int name = names.string(d->serviceName, 0, arena);
    if (name < 0) {
        SARN_LOGW("%s: TServiceDescriptor:: parse: ERROR: parsing Service Name. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    // Only the two names are counted, not the three leading bytes.
    return parse::done(error, d, bytesRead, static_cast<unsigned char>(c1 + name));
}

void TServiceDescriptor::appendJSON(std::string& out) const {
    json::Out(out) << "\"name\":\"serviceDescriptor\",\"serviceType\":" << serviceType
                   << ",\"serviceProvider\":\"" << serviceProvider << "\",\"serviceName\":\""
                   << serviceName << '"';
}

std::string TServiceDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
