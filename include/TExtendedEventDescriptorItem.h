#ifndef SARN_TEXTENDEDEVENTDESCRIPTORITEM_H
#define SARN_TEXTENDEDEVENTDESCRIPTORITEM_H

#include <string>

#include "SarnAllocation.h"

namespace Sarn {

/** One item of an extended event descriptor: a name ("Director") and its value. */
class TExtendedEventDescriptorItem {
  public:
    /**
     * data points at item_description_length; len is every byte available
     * from there. *bytesRead receives the sizes of the two stored strings
     * plus their two length bytes.
     */
    static TExtendedEventDescriptorItem* parse(unsigned char* data, unsigned int len,
                                               unsigned int* bytesRead, unsigned short* err);

    TExtendedEventDescriptorItem() {}
    virtual ~TExtendedEventDescriptorItem();

    std::string getDescription() const { return description.str(); }
    std::string getText() const { return text.str(); }

  private:
    friend class TExtendedEventDescriptor;

    memory::Text description;
    memory::Text text;
};

}  // namespace Sarn

#endif
