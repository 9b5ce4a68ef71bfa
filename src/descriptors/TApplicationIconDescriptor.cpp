#include "TApplicationIconDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Reader.h"

namespace Sarn {

TApplicationIconDescriptor::TApplicationIconDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TApplicationIconDescriptor::TApplicationIconDescriptor(const TApplicationIconDescriptor* src)
    : TISDBTDescriptor(*src), iconLocator(src->iconLocator), iconFlags(src->iconFlags) {}

TApplicationIconDescriptor::~TApplicationIconDescriptor() {}

SARN_DESCRIPTOR_PARSE(TApplicationIconDescriptor, arena, data, len, bytesRead, err) {
    // icon_locator_length, icon_locator, icon_flags (16), reserved bytes
    SARN_OPEN_OR_RETURN(arena, d, r, TApplicationIconDescriptor, data, len, err, 2, DESCRIPTOR_TAG);
    const unsigned char length = d->getDescriptorLength();
    bytes::Reader body = r.sub(length);
    if (body.string(d->iconLocator, 0) < 0) {
        SARN_LOGW("%s: TApplicationIconDescriptor:: parse: ERROR: parsing Icon Locator. Aborting!");
        return parse::fail(err, ERROR_FIELD_PARSE);
    }
    // The two flag bytes must follow the locator inside the descriptor.
    if (!body.has(2)) {
        SARN_LOGW("%s: TApplicationIconDescriptor:: parse: Item length not valid: %u. Aborting!",
                  body.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    d->iconFlags = body.u16();
    return parse::done(err, d, bytesRead, static_cast<unsigned char>(length + 2));
}

}  // namespace Sarn
