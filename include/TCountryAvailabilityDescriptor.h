#ifndef SARN_TCOUNTRYAVAILABILITYDESCRIPTOR_H
#define SARN_TCOUNTRYAVAILABILITYDESCRIPTOR_H

#include <list>
#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Country availability descriptor (tag 0x49): the countries in which a
 * service is (flag 1) or is not (flag 0) intended to be received. Each code
 * holds its three ISO 3166 letters as a 24-bit big-endian number.
 */
class TCountryAvailabilityDescriptor : public TISDBTDescriptor {
  public:
    /** bytesRead receives 0. */
    static TCountryAvailabilityDescriptor* parse(unsigned char* data, unsigned int length,
                                                 unsigned int* bytesRead, unsigned short* error);

    TCountryAvailabilityDescriptor(unsigned char* data, unsigned int length);
    ~TCountryAvailabilityDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    bool getCountryAvailabilityFlag() const { return countryAvailabilityFlag; }
    int size() const { return static_cast<int>(countryCodes.size()); }
    void add(unsigned int code) { countryCodes.push_back(code); }
    /** The code at that position, or 0 beyond the end. */
    unsigned int get(unsigned int index) const;
    /** Erases the code at that position; false beyond the end. */
    bool remove(unsigned int index);

  private:
    SARN_DESCRIPTOR_BUILD(TCountryAvailabilityDescriptor)
    bool countryAvailabilityFlag = false;
    std::list<unsigned int> countryCodes;
};

}  // namespace Sarn

#endif
