#include "TCountryAvailabilityDescriptor.h"

#include <iterator>
#include <memory>

#include "DescriptorParse.h"
#include "Json.h"
#include "Reader.h"

namespace Sarn {

TCountryAvailabilityDescriptor::TCountryAvailabilityDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0x49, bytes, length) {}

TCountryAvailabilityDescriptor::~TCountryAvailabilityDescriptor() {}

SARN_DESCRIPTOR_PARSE(TCountryAvailabilityDescriptor, arena, bytes, length, bytesRead, error) {
    SARN_OPEN_OR_RETURN(arena, d, r, TCountryAvailabilityDescriptor, bytes, length, error, 4, 0x49);
    d->countryAvailabilityFlag = r.u8() >= 0x80;
    // Three-letter codes up to the end of the bytes handed in; a trailing
    // partial code (one or two bytes) is not read.
    while (r.has(3))
        d->countryCodes.push_back(r.u24());
    return parse::done(error, d, bytesRead, 0);
}

unsigned int TCountryAvailabilityDescriptor::get(unsigned int index) const {
    if (index >= countryCodes.size())
        return 0;
    return *std::next(countryCodes.begin(), index);
}

bool TCountryAvailabilityDescriptor::remove(unsigned int index) {
    if (index >= countryCodes.size())
        return false;
    countryCodes.erase(std::next(countryCodes.begin(), index));
    return true;
}

void TCountryAvailabilityDescriptor::appendJSON(std::string& out) const {
    json::Out o(out);
    o << "\"name\":\"countryAvailabilityDescriptor\",\"countryAvailabilityFlag\":"
      << countryAvailabilityFlag << ",\"countryCode\":";
    json::appendArray(o, countryCodes, [&o](unsigned int code) {
        // The three letters as plain characters, without quotes.
        o << static_cast<char>(code >> 16) << static_cast<char>(code >> 8)
          << static_cast<char>(code);
    });
}

std::string TCountryAvailabilityDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
