#ifndef SARN_TAPPLICATIONNAMEDESCRIPTOR_H
#define SARN_TAPPLICATIONNAMEDESCRIPTOR_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TApplicationNameDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/** Application name descriptor (AIT tag 0x01): the application's name per language. */
class TApplicationNameDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x01;

    static TApplicationNameDescriptor* parse(unsigned char* data, unsigned int len,
                                             unsigned int* bytesRead, unsigned short* err);

    TApplicationNameDescriptor(unsigned char* data, unsigned int len);
    /** Deep copy: the items are duplicated, the bytes are shared. */
    explicit TApplicationNameDescriptor(const TApplicationNameDescriptor* src);
    TApplicationNameDescriptor(const TApplicationNameDescriptor&) = delete;
    TApplicationNameDescriptor& operator=(const TApplicationNameDescriptor&) = delete;
    ~TApplicationNameDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int size() const { return static_cast<int>(items.size()); }
    /**
     * Stores item under its language code. An item already stored under that
     * code is replaced, not deleted: a caller that holds it owns it.
     */
    void add(TApplicationNameDescriptorItem* item);
    /** The item of that language code, or null. */
    TApplicationNameDescriptorItem* get(const std::string& languageCode) const;
    /** The language codes in ascending order. */
    std::list<std::string> getLanguageCodes() const;

  private:
    SARN_DESCRIPTOR_BUILD(TApplicationNameDescriptor)
    std::vector<std::pair<std::string, TApplicationNameDescriptorItem*>> items;
};

}  // namespace Sarn

#endif
