#ifndef SARN_TISDBTDATAHOLDER_H
#define SARN_TISDBTDATAHOLDER_H

#include "SarnAllocation.h"
namespace Sarn {

/**
 * Holds the bytes of a section or a descriptor, beginning at its table_id or
 * descriptor_tag byte. Tables keep a private copy of the section (copy != 0);
 * descriptors point into the bytes their owner walked (copy == 0).
 */
class TISDBTDataHolder {
  public:
    SARN_ALLOCATION_FUNCTIONS

    TISDBTDataHolder(unsigned char* data, unsigned int length, int copy);
    TISDBTDataHolder(const TISDBTDataHolder& other);
    TISDBTDataHolder& operator=(const TISDBTDataHolder&) = delete;
    virtual ~TISDBTDataHolder();

    unsigned char* getData() const { return data; }
    unsigned int getDataLength() const { return dataLength; }

  protected:
    unsigned char* data;
    unsigned int dataLength;
    /** 0: refers to the bytes; 1: owns a copy on the heap; 2: its copy lies in its own room. */
    int ownsData;

  private:
    friend class memory::Arena;  // gives a parsed table its copy of the section
};

}  // namespace Sarn

#endif
