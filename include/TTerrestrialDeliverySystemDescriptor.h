#ifndef SARN_TTERRESTRIALDELIVERYSYSTEMDESCRIPTOR_H
#define SARN_TTERRESTRIALDELIVERYSYSTEMDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Terrestrial delivery system descriptor (tag 0xFA): area code, guard
 * interval, transmission mode and the centre frequencies of the network.
 */
class TTerrestrialDeliverySystemDescriptor : public TISDBTDescriptor {
  public:
    static TTerrestrialDeliverySystemDescriptor* parse(unsigned char* data, unsigned int length,
                                                       unsigned int* bytesRead,
                                                       unsigned short* error);

    TTerrestrialDeliverySystemDescriptor(unsigned char* data, unsigned int length);
    TTerrestrialDeliverySystemDescriptor(const TTerrestrialDeliverySystemDescriptor&) = delete;
    TTerrestrialDeliverySystemDescriptor& operator=(const TTerrestrialDeliverySystemDescriptor&) =
        delete;
    ~TTerrestrialDeliverySystemDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    /** The 12-bit area_code. */
    unsigned short getAreaCode() const { return areaCode; }
    unsigned char getGuardInterval() const { return guardInterval; }
    unsigned char getTransmissionMode() const { return transmissionMode; }
    unsigned char getFrequencyCounter() const { return frequencyCounter; }
    /** The frequency fields in wire order (units of 1/7 MHz), or null when there are none. */
    unsigned short* getFrequencies() const { return frequencies; }

  private:
    SARN_DESCRIPTOR_BUILD(TTerrestrialDeliverySystemDescriptor)
    unsigned short areaCode = 0;
    unsigned char guardInterval = 0;
    unsigned char transmissionMode = 0;
    unsigned char frequencyCounter = 0;
    unsigned short* frequencies = nullptr;
};

}  // namespace Sarn

#endif
