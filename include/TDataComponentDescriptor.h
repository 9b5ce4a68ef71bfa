#ifndef SARN_TDATACOMPONENTDESCRIPTOR_H
#define SARN_TDATACOMPONENTDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Data component descriptor (tag 0xFD): the data_component_id of a data
 * stream (0x00A0 Ginga carousel, 0x00A3 AIT, ...) and its additional
 * component information bytes.
 */
class TDataComponentDescriptor : public TISDBTDescriptor {
  public:
    static TDataComponentDescriptor* parse(unsigned char* data, unsigned int length,
                                           unsigned int* bytesRead, unsigned short* error);

    TDataComponentDescriptor(unsigned char* data, unsigned int length);
    TDataComponentDescriptor(const TDataComponentDescriptor&) = delete;
    TDataComponentDescriptor& operator=(const TDataComponentDescriptor&) = delete;
    ~TDataComponentDescriptor() override;

    unsigned short getDataComponentID() const { return dataComponentId; }
    unsigned char getAdditionalDataSize() const { return additionalDataSize; }
    unsigned char* getAdditionalData() const { return additionalData; }

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TDataComponentDescriptor)
    unsigned short dataComponentId = 0;
    unsigned char additionalDataSize = 0;
    unsigned char* additionalData = nullptr;
};

}  // namespace Sarn

#endif
