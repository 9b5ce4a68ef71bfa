#ifndef SARN_THIERARCHICALTRANSMISSIONDESCRIPTOR_H
#define SARN_THIERARCHICALTRANSMISSIONDESCRIPTOR_H

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Hierarchical transmission descriptor (tag 0xC0): quality level of a stream
 * and the PID of its reference stream. Renders through the base JSON.
 */
class THierarchicalTransmissionDescriptor : public TISDBTDescriptor {
  public:
    static THierarchicalTransmissionDescriptor* parse(unsigned char* data, unsigned int length,
                                                      unsigned int* bytesRead,
                                                      unsigned short* error);

    THierarchicalTransmissionDescriptor(unsigned char* data, unsigned int length);
    ~THierarchicalTransmissionDescriptor() override;

    unsigned char getQualityLevel() const { return qualityLevel; }
    unsigned short getReferencePID() const { return referencePid; }

  private:
    SARN_DESCRIPTOR_BUILD(THierarchicalTransmissionDescriptor)
    unsigned char qualityLevel = 0;
    unsigned short referencePid = 0;
};

}  // namespace Sarn

#endif
