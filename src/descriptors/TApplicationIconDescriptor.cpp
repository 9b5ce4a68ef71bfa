#include "TApplicationIconDescriptor.h"

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "ParserUtils.h"

namespace Sarn {

TApplicationIconDescriptor::TApplicationIconDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len), iconFlags(0) {}

TApplicationIconDescriptor::TApplicationIconDescriptor(const TApplicationIconDescriptor* src)
    : TISDBTDescriptor(*src), iconLocator(src->iconLocator), iconFlags(src->iconFlags) {}

TApplicationIconDescriptor::~TApplicationIconDescriptor() {}

TApplicationIconDescriptor* TApplicationIconDescriptor::parse(unsigned char* data, unsigned int len,
                                                              unsigned int* bytesRead,
                                                              unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 2, DESCRIPTOR_TAG))
        return nullptr;
    // icon_locator_length, icon_locator, icon_flags (16), reserved bytes
    const unsigned int body = data[1];
    TApplicationIconDescriptor* d = new TApplicationIconDescriptor(data, len);
    const int locatorBytes = ParserUtils::parseStr(data + 2, d->iconLocator, 0, body);
    if (locatorBytes < 0) {
        SARN_LOGW("%s: TApplicationIconDescriptor:: parse: ERROR: parsing Icon Locator. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_FIELD_PARSE);
        delete d;
        return nullptr;
    }
    // The two flag bytes must follow the locator inside the descriptor.
    if (!bytes::fits(static_cast<unsigned int>(locatorBytes), 2, body)) {
        SARN_LOGW("%s: TApplicationIconDescriptor:: parse: Item length not valid: %u. Aborting!",
                  body - static_cast<unsigned int>(locatorBytes));
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete d;
        return nullptr;
    }
    d->iconFlags = bytes::be16(data + 2 + locatorBytes);
    if (bytesRead != nullptr)
        *bytesRead = static_cast<unsigned char>(body + 2);
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

}  // namespace Sarn
