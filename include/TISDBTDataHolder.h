#ifndef SARN_TISDBTDATAHOLDER_H
#define SARN_TISDBTDATAHOLDER_H

namespace Sarn {

/**
 * Holds the bytes of a section or a descriptor, beginning at its table_id or
 * descriptor_tag byte. Tables keep a private copy of the section (copy != 0);
 * descriptors point into the bytes their owner walked (copy == 0).
 */
class TISDBTDataHolder {
  public:
    TISDBTDataHolder(unsigned char* data, unsigned int length, int copy);
    TISDBTDataHolder(const TISDBTDataHolder& other);
    TISDBTDataHolder& operator=(const TISDBTDataHolder&) = delete;
    virtual ~TISDBTDataHolder();

    unsigned char* getData() const { return data; }
    unsigned int getDataLength() const { return dataLength; }

  protected:
    unsigned char* data;
    unsigned int dataLength;
    int ownsData;
};

}  // namespace Sarn

#endif
