#include "TStreamEventDescriptor.h"

#include <cstring>

#include "Bytes.h"

namespace Sarn {

TStreamEventDescriptor::TStreamEventDescriptor(unsigned char* bytes, unsigned int length)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, length),
      eventId(0),
      eventNptH(0),
      eventNptL(0),
      privateDataSize(0),
      privateData(nullptr) {}

TStreamEventDescriptor::~TStreamEventDescriptor() {
    delete[] privateData;
}

TStreamEventDescriptor* TStreamEventDescriptor::parse(unsigned char* bytes, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 10, DESCRIPTOR_TAG))
        return nullptr;
    // event_id(16), reserved(31) eventNPT(33), then private data up to the end
    // of the bytes given (the section table gives exactly the descriptor).
    TStreamEventDescriptor* d = new TStreamEventDescriptor(bytes, length);
    d->eventId = bytes::be16(bytes + 2);
    d->eventNptH = bytes[7] & 0x01;
    d->eventNptL = bytes::be32(bytes + 8);
    // The size is kept in one byte, like descriptor_length; the copy never
    // holds more than that byte says, so it stays inside the bytes given.
    d->privateDataSize = static_cast<unsigned char>(length - 12);
    if (d->privateDataSize != 0) {
        d->privateData = new unsigned char[d->privateDataSize];
        std::memcpy(d->privateData, bytes + 12, d->privateDataSize);
    }
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return d;
}

}  // namespace Sarn
