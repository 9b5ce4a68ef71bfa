#include "TContentDescriptor.h"

#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"

namespace Sarn {

TContentDescriptor::TContentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x54, bytes, len),
      contentNibbleLevel1(0),
      contentNibbleLevel2(0),
      userByte(0) {}

TContentDescriptor::~TContentDescriptor() {}

TContentDescriptor* TContentDescriptor::parse(unsigned char* data, unsigned int len,
                                              unsigned int* /*bytesRead*/, unsigned short* err) {
    // tag, length, then two-byte genre entries (content nibbles, user nibbles).
    // The header is taken as it comes; only the first entry is read. The byte
    // count and, on success, the error code are left untouched.
    if (data == nullptr)
        len = 0;  // nothing to read
    if (len < 4) {
        SARN_LOGW("%s: TContentDescriptor::parse: Item length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TContentDescriptor* d = new TContentDescriptor(data, len);
    d->contentNibbleLevel1 = static_cast<unsigned char>(data[2] >> 4);
    d->contentNibbleLevel2 = static_cast<unsigned char>(data[2] & 0x0F);
    d->userByte = data[3];
    return d;
}

std::string TContentDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"content_nibble_level_1\":" << contentNibbleLevel1
                   << ",\"content_nibble_level_2\":" << contentNibbleLevel2
                   << ",\"user_nibble\":" << userByte;
    return out;
}

}  // namespace Sarn
