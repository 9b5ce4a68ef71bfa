#ifndef SARN_TPREFETCHDESCRIPTORITEM_H
#define SARN_TPREFETCHDESCRIPTORITEM_H

#include <string>

namespace Sarn {

/** One prefetch hint: a length-prefixed label and its prefetch priority. */
class TPrefetchDescriptorItem {
  public:
    static TPrefetchDescriptorItem* parse(unsigned char* data, unsigned int len,
                                          unsigned int* bytesRead, unsigned short* err);

    TPrefetchDescriptorItem();
    explicit TPrefetchDescriptorItem(const TPrefetchDescriptorItem* src);
    virtual ~TPrefetchDescriptorItem();

    const std::string& getLabel() const { return label; }
    unsigned char getPriority() const { return prefetchPriority; }

  private:
    std::string label;
    unsigned char prefetchPriority = 0;
};

}  // namespace Sarn

#endif
