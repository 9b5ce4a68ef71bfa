#ifndef SARN_TSTREAMIDENTIFIERDESCRIPTOR_H
#define SARN_TSTREAMIDENTIFIERDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Stream identifier descriptor (tag 0x52): the component_tag by which the
 * EIT's component descriptors and the data broadcast refer to an elementary
 * stream of the PMT.
 */
class TStreamIdentifierDescriptor : public TISDBTDescriptor {
  public:
    /** *bytesRead receives 1, the size of the payload (not of the whole descriptor). */
    static TStreamIdentifierDescriptor* parse(unsigned char* data, unsigned int length,
                                              unsigned int* bytesRead, unsigned short* error);

    TStreamIdentifierDescriptor(unsigned char* data, unsigned int length);
    ~TStreamIdentifierDescriptor() override;

    unsigned char getComponentTag() const { return componentTag; }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TStreamIdentifierDescriptor)
    unsigned char componentTag = 0;
};

}  // namespace Sarn

#endif
