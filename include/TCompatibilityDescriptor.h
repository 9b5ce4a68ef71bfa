#ifndef SARN_TCOMPATIBILITYDESCRIPTOR_H
#define SARN_TCOMPATIBILITYDESCRIPTOR_H

#include <vector>

#include "TCompatibilityDescriptorItem.h"

namespace Sarn {

/**
 * The compatibility structure (ISO/IEC 13818-6 compatibilityDescriptor())
 * embedded in a download content descriptor: the receivers a download is
 * meant for.
 */
class TCompatibilityDescriptor {
  public:
    /**
     * data starts at the 16-bit compatibility length, length counts those
     * two bytes too. Reads descriptorCount and the entries; *bytesRead (when
     * asked) receives the bytes read after the length field. Fails with 2563
     * when the count is not there, with 2570 when an entry fails.
     */
    static TCompatibilityDescriptor* parse(unsigned char* data, unsigned int length,
                                           unsigned int* bytesRead, unsigned short* error);

    /** Neither argument is kept. */
    TCompatibilityDescriptor(unsigned char* data, unsigned int length);
    TCompatibilityDescriptor(const TCompatibilityDescriptor&) = delete;
    TCompatibilityDescriptor& operator=(const TCompatibilityDescriptor&) = delete;
    virtual ~TCompatibilityDescriptor();

    int getCompatibilityDescriptorItemSize() const { return static_cast<int>(items.size()); }
    /** The entry at that position, or null at or beyond the end. */
    TCompatibilityDescriptorItem* getCompatibilityDescriptorItem(unsigned char index) const;
    /** Appends an entry, which the structure then owns. */
    void addCompatibilityDescriptorItem(TCompatibilityDescriptorItem* item);
    /** Deletes the entry at that position; false when there is none. */
    bool removeCompatibilityDescriptorItem(unsigned char index);

  private:
    std::vector<TCompatibilityDescriptorItem*> items;
};

}  // namespace Sarn

#endif
