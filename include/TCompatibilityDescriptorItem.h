#ifndef SARN_TCOMPATIBILITYDESCRIPTORITEM_H
#define SARN_TCOMPATIBILITYDESCRIPTORITEM_H

#include <vector>

#include "TCompatibilityDescriptorSubItem.h"

namespace Sarn {

/**
 * One entry of a compatibility descriptor: the kind of receiver component
 * (descriptorType), who names it (specifierType, specifierData, usually an
 * OUI) and its model and version, with optional sub descriptors.
 */
class TCompatibilityDescriptorItem {
  public:
    /**
     * Reads the eleven fixed bytes and the sub descriptors. Model and version
     * are each computed as their first byte shifted left by their second
     * (a shift of 16 or more gives 0). Fails with 2563 when the fixed bytes
     * are not there, with 2570 when a sub descriptor fails.
     */
    static TCompatibilityDescriptorItem* parse(unsigned char* data, unsigned int length,
                                               unsigned int* bytesRead, unsigned short* error);

    TCompatibilityDescriptorItem();
    TCompatibilityDescriptorItem(const TCompatibilityDescriptorItem&) = delete;
    TCompatibilityDescriptorItem& operator=(const TCompatibilityDescriptorItem&) = delete;
    virtual ~TCompatibilityDescriptorItem();

    unsigned char getDescriptorType() const { return descriptorType; }
    unsigned char getSpecifierType() const { return specifierType; }
    unsigned int getSpecifierData() const { return specifierData; }
    unsigned short getModel() const { return model; }
    unsigned short getVersion() const { return version; }

    int getCompatibilityDescriptorSubItemSize() const { return static_cast<int>(subItems.size()); }
    /** The sub item at that position, or null at or beyond the end. */
    TCompatibilityDescriptorSubItem* getCompatibilityDescriptorSubItem(unsigned char index) const;
    /** Appends a sub item, which the item then owns. */
    void addCompatibilityDescriptorSubItem(TCompatibilityDescriptorSubItem* subItem);
    /** Deletes the sub item at that position; false when there is none. */
    bool removeCompatibilityDescriptorSubItem(unsigned char index);

  private:
    unsigned char descriptorType = 0;
    unsigned char specifierType = 0;
    unsigned int specifierData = 0;
    unsigned short model = 0;
    unsigned short version = 0;
    std::vector<TCompatibilityDescriptorSubItem*> subItems;
};

}  // namespace Sarn

#endif
