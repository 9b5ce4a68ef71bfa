#ifndef SARN_TAVCTIMINGANDHRDDESCRIPTOR_H
#define SARN_TAVCTIMINGANDHRDDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * AVC timing and HRD descriptor (tag 0x2A): HRD management, the optional
 * 90 kHz N/K pair, num_units_in_tick and the frame-rate flags. Two fields are
 * located differently from the published layout on purpose (see parse).
 */
class TAVCTimingAndHRDDescriptor : public TISDBTDescriptor {
  public:
    static TAVCTimingAndHRDDescriptor* parse(unsigned char* data, unsigned int length,
                                             unsigned int* bytesRead, unsigned short* error);

    TAVCTimingAndHRDDescriptor(unsigned char* data, unsigned int length);
    ~TAVCTimingAndHRDDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int isHRDManagementValid() const { return hrdManagementValid; }
    int isPictureTimingInfoPresent() const { return pictureTimingInfoPresent; }
    int is90kHzFlag() const { return flag90kHz; }
    unsigned int getN() const { return n; }
    unsigned int getK() const { return k; }
    unsigned int getNumUnitsInTick() const { return numUnitsInTick; }
    int isFixedFrameRateFlag() const { return fixedFrameRate; }
    int isTemporalPOCFlag() const { return temporalPoc; }
    int isPictureToDisplayConversionFlag() const { return pictureToDisplayConversion; }

  private:
    SARN_DESCRIPTOR_BUILD(TAVCTimingAndHRDDescriptor)
    int hrdManagementValid = 0;
    int pictureTimingInfoPresent = 0;
    int flag90kHz = 0;
    unsigned int n = 0;
    unsigned int k = 0;
    unsigned int numUnitsInTick = 0;
    int fixedFrameRate = 0;
    int temporalPoc = 0;
    int pictureToDisplayConversion = 0;
};

}  // namespace Sarn

#endif
