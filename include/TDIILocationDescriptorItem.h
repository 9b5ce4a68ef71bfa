#ifndef SARN_TDIILOCATIONDESCRIPTORITEM_H
#define SARN_TDIILOCATIONDESCRIPTORITEM_H

namespace Sarn {

/** One DII location: DII_identification (15 bits) and association_tag. Four bytes on the wire. */
class TDIILocationDescriptorItem {
  public:
    static TDIILocationDescriptorItem* parse(unsigned char* data, unsigned int len,
                                             unsigned int* bytesRead, unsigned short* err);

    TDIILocationDescriptorItem(unsigned short diiIdentification, unsigned short associationTag);
    explicit TDIILocationDescriptorItem(const TDIILocationDescriptorItem* src);
    virtual ~TDIILocationDescriptorItem();

    unsigned short getDIIIdentification() const { return diiIdentification; }
    unsigned short getAssociationTag() const { return associationTag; }

  private:
    unsigned short diiIdentification;
    unsigned short associationTag;
};

}  // namespace Sarn

#endif
