#include "TNetworkNameDescriptor.h"

#include "DescriptorParse.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TNetworkNameDescriptor::TNetworkNameDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(0x40, bytes, length) {}

TNetworkNameDescriptor::~TNetworkNameDescriptor() {}

SARN_DESCRIPTOR_PARSE(TNetworkNameDescriptor, arena, bytes, length, bytesRead, error) {
    // The name fills the payload; it has no length byte of its own.
    SARN_OPEN_OR_RETURN(arena, d, r, TNetworkNameDescriptor, bytes, length, error, 0, 0x40);
    const unsigned int payload = r.remaining();
    if (r.string(d->networkName, payload, arena) != static_cast<int>(payload)) {
        SARN_LOGW("%s: TNetworkNameDescriptor:: parse: ERROR: parsing Network Name. Aborting!");
        return parse::fail(error, ERROR_FIELD_PARSE);
    }
    return parse::done(error, d, bytesRead, payload);
}

void TNetworkNameDescriptor::appendJSON(std::string& out) const {
    json::Out(out) << "\"name\":\"networkNameDescriptor\",\"networkName\":\"" << networkName << '"';
}

std::string TNetworkNameDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
