#ifndef SARN_TPARENTALRATINGDESCRIPTOR_H
#define SARN_TPARENTALRATINGDESCRIPTOR_H

#include <string>
#include <vector>

#include "TISDBTDescriptor.h"
#include "TParentalRatingDescriptorItem.h"

namespace Sarn {

/**
 * Parental rating descriptor (tag 0x55): one rating per country. Its JSON
 * has a name entry and no base members, and shows each item's
 * content-warning nibble under "rating".
 */
class TParentalRatingDescriptor : public TISDBTDescriptor {
  public:
    static TParentalRatingDescriptor* parse(unsigned char* data, unsigned int len,
                                            unsigned int* bytesRead, unsigned short* err);

    TParentalRatingDescriptor(unsigned char* data, unsigned int len);
    TParentalRatingDescriptor(const TParentalRatingDescriptor&) = delete;
    TParentalRatingDescriptor& operator=(const TParentalRatingDescriptor&) = delete;
    ~TParentalRatingDescriptor() override;

    int size() const { return static_cast<int>(items.size()); }
    /** Appends the item the argument points to; the descriptor then owns it. */
    void add(TParentalRatingDescriptorItem** item);
    /** The item at that position, or null beyond the last one. */
    TParentalRatingDescriptorItem* get(unsigned char index) const;
    /** Deletes the item at that position; false when there is none. */
    bool remove(unsigned char index);

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TParentalRatingDescriptor)
    std::vector<TParentalRatingDescriptorItem*> items;  // owned, wire order
};

}  // namespace Sarn

#endif
