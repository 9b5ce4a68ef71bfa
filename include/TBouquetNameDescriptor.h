#ifndef SARN_TBOUQUETNAMEDESCRIPTOR_H
#define SARN_TBOUQUETNAMEDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/** Bouquet name descriptor (tag 0x47): the name as raw broadcast bytes less control codes. */
class TBouquetNameDescriptor : public TISDBTDescriptor {
  public:
    static TBouquetNameDescriptor* parse(unsigned char* data, unsigned int length,
                                         unsigned int* bytesRead, unsigned short* error);

    TBouquetNameDescriptor(unsigned char* data, unsigned int length);
    ~TBouquetNameDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    std::string getBouquetName() const { return bouquetName.str(); }

  private:
    SARN_DESCRIPTOR_BUILD(TBouquetNameDescriptor)
    memory::Text bouquetName;
};

}  // namespace Sarn

#endif
