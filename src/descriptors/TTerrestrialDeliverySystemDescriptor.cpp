#include "TTerrestrialDeliverySystemDescriptor.h"

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "Reader.h"

namespace Sarn {

TTerrestrialDeliverySystemDescriptor::TTerrestrialDeliverySystemDescriptor(unsigned char* bytes,
                                                                           unsigned int length)
    : TISDBTDescriptor(0xFA, bytes, length) {}

TTerrestrialDeliverySystemDescriptor::~TTerrestrialDeliverySystemDescriptor() {
    releaseObject(frequencies);
}

SARN_DESCRIPTOR_PARSE(TTerrestrialDeliverySystemDescriptor, arena, bytes, length, bytesRead,
                      error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TTerrestrialDeliverySystemDescriptor, bytes, length, error, 4,
                        0xFA);
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
        d->frequencies = fields::readBe16Array(arena, r, rest / 2, rest);
    }
    return parse::done(error, d, bytesRead, length - 2);
}

void TTerrestrialDeliverySystemDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"terrestrialDeliverySystemDescriptor\",\"areaCode\":" << areaCode
      << ",\"guardInterval\":" << guardInterval << ",\"transmissionMode\":" << transmissionMode;
    if (frequencyCounter != 0) {
        o << ",\"frequency\":[";
        json::appendNumbers(o, frequencies, frequencyCounter);
        o << ']';
    }
}

std::string TTerrestrialDeliverySystemDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
