#include "TCountryAvailabilityDescriptor.h"

#include <iterator>
#include <memory>

#include "Json.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

TCountryAvailabilityDescriptor::TCountryAvailabilityDescriptor(unsigned char* bytes,
                                                               unsigned int length)
    : TISDBTDescriptor(0x49, bytes, length), countryAvailabilityFlag(false) {}

TCountryAvailabilityDescriptor::~TCountryAvailabilityDescriptor() {}

TCountryAvailabilityDescriptor* TCountryAvailabilityDescriptor::parse(unsigned char* bytes,
                                                                      unsigned int length,
                                                                      unsigned int* bytesRead,
                                                                      unsigned short* error) {
    if (!parseCommonHeader(bytes, length, error, 4, 0x49))
        return nullptr;
    std::unique_ptr<TCountryAvailabilityDescriptor> d(
        new TCountryAvailabilityDescriptor(bytes, length));
    bytes::Reader r(bytes, length);
    r.skip(2);
    d->countryAvailabilityFlag = r.u8() >= 0x80;
    // Three-letter codes up to the end of the bytes handed in; a trailing
    // partial code (one or two bytes) is not read.
    while (r.has(3))
        d->countryCodes.push_back(r.u24());
    if (bytesRead != nullptr)
        *bytesRead = 0;
    return parse::done(error, d);
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

std::string TCountryAvailabilityDescriptor::toJSON() const {
    std::string out;
    json::Out o(out);
    o << "\"name\":\"countryAvailabilityDescriptor\",\"countryAvailabilityFlag\":"
      << countryAvailabilityFlag << ",\"countryCode\":[";
    bool first = true;
    for (unsigned int code : countryCodes) {
        if (!first)
            o << ',';
        first = false;
        // The three letters as plain characters, without quotes.
        o << static_cast<char>(code >> 16) << static_cast<char>(code >> 8)
          << static_cast<char>(code);
    }
    o << ']';
    return out;
}

}  // namespace Sarn
