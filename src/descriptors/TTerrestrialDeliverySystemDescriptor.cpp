#include "TTerrestrialDeliverySystemDescriptor.h"

#include "DescriptorFields.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TTerrestrialDeliverySystemDescriptor::TTerrestrialDeliverySystemDescriptor(unsigned char* bytes,
                                                                           unsigned int length)
    : TISDBTDescriptor(0xFA, bytes, length),
      areaCode(0),
      guardInterval(0),
      transmissionMode(0),
      frequencyCounter(0),
      frequencies(nullptr) {}

TTerrestrialDeliverySystemDescriptor::~TTerrestrialDeliverySystemDescriptor() {
    delete[] frequencies;
}

TTerrestrialDeliverySystemDescriptor* TTerrestrialDeliverySystemDescriptor::parse(
    unsigned char* bytes, unsigned int length, unsigned int* bytesRead, unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0xFA))
        return nullptr;
    std::unique_ptr<TTerrestrialDeliverySystemDescriptor> d(
        new TTerrestrialDeliverySystemDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    // area_code (12 bits), guard_interval (2), transmission_mode (2).
    const unsigned short area = r.u16();
    d->areaCode = static_cast<unsigned short>(area >> 4);
    d->guardInterval = static_cast<unsigned char>((area & 0x0C) >> 2);
    d->transmissionMode = area & 0x03;
    // Two bytes per frequency up to the end of the bytes handed in; an odd
    // trailing byte is not read. The count is kept in 8 bits; the array has
    // one slot per remaining byte, the unused ones zero.
    const unsigned int rest = r.remaining();
    if (rest != 0) {
        d->frequencyCounter = static_cast<unsigned char>(rest / 2);
        d->frequencies = fields::readBe16Array(r, rest / 2, rest);
    }
    if (bytesRead != nullptr)
        *bytesRead = length - 2;
    return parse::done(error, d);
}

std::string TTerrestrialDeliverySystemDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"terrestrialDeliverySystemDescriptor\",\"areaCode\":" << areaCode
      << ",\"guardInterval\":" << guardInterval << ",\"transmissionMode\":" << transmissionMode;
    if (frequencyCounter != 0) {
        o << ",\"frequency\":[";
        json::appendNumbers(o, frequencies, frequencyCounter);
        o << ']';
    }
    return out;
}

}  // namespace Sarn
