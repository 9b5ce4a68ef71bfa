#include "TContentDescriptor.h"

#include <memory>

#include "Arena.h"
#include "Json.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TContentDescriptor::TContentDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(0x54, bytes, len) {}

TContentDescriptor::~TContentDescriptor() {}

SARN_DESCRIPTOR_PARSE(TContentDescriptor, arena, data, len, bytesRead, err) {
    // tag, length, then two-byte genre entries (content nibbles, user nibbles).
    // The header is taken as it comes; only the first entry is read. The byte
    // count and, on success, the error code are left untouched.
    bytes::Reader r(data, len);  // no bytes at all without data
    if (!r.has(4)) {
        SARN_LOGW("%s: TContentDescriptor::parse: Item length not valid: %u. Aborting!",
                  r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    std::unique_ptr<TContentDescriptor> d(memory::make<TContentDescriptor>(arena, data, len));
    r.skip(2);
    const unsigned char nibbles = r.u8();
    d->contentNibbleLevel1 = static_cast<unsigned char>(nibbles >> 4);
    d->contentNibbleLevel2 = static_cast<unsigned char>(nibbles & 0x0F);
    d->userByte = r.u8();
    return d.release();  // the error code stays as it was
}

void TContentDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out(out) << ",\"content_nibble_level_1\":" << contentNibbleLevel1
                   << ",\"content_nibble_level_2\":" << contentNibbleLevel2
                   << ",\"user_nibble\":" << userByte;
}

std::string TContentDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
