#ifndef SARN_TLOCALTIMEOFFSETDESCRIPTOR_H
#define SARN_TLOCALTIMEOFFSETDESCRIPTOR_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TISDBTDescriptor.h"
#include "TLocalTimeOffsetDescriptorItem.h"

namespace Sarn {

/**
 * Local time offset descriptor (tag 0x58, carried by the TOT): one entry per
 * country code, kept in ascending order of the code. Owns its entries.
 */
class TLocalTimeOffsetDescriptor : public TISDBTDescriptor {
  public:
    static TLocalTimeOffsetDescriptor* parse(unsigned char* data, unsigned int length,
                                             unsigned int* bytesRead, unsigned short* error);

    TLocalTimeOffsetDescriptor(unsigned char* data, unsigned int length);
    TLocalTimeOffsetDescriptor(const TLocalTimeOffsetDescriptor&) = delete;
    TLocalTimeOffsetDescriptor& operator=(const TLocalTimeOffsetDescriptor&) = delete;
    ~TLocalTimeOffsetDescriptor() override;

    int size() const { return static_cast<int>(items.size()); }
    /**
     * Stores item under its country code. An entry already stored under that
     * code is replaced, not deleted: a caller that still holds it owns it.
     */
    void add(TLocalTimeOffsetDescriptorItem* item);
    TLocalTimeOffsetDescriptorItem* get(std::string countryCode) const;
    std::list<std::string> getCountryCodes() const;
    bool remove(std::string countryCode);

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

  private:
    SARN_DESCRIPTOR_BUILD(TLocalTimeOffsetDescriptor)
    std::vector<std::pair<std::string, TLocalTimeOffsetDescriptorItem*>> items;
};

}  // namespace Sarn

#endif
