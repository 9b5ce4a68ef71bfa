#ifndef SARN_TEXTERNALAPPLICATIONAUTHORIZATIONDESCRIPTOR_H
#define SARN_TEXTERNALAPPLICATIONAUTHORIZATIONDESCRIPTOR_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TExternalApplicationAuthorizationDescriptorItem.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * External application authorization descriptor (AIT tag 0x05): applications
 * signalled elsewhere that may run alongside this service, each with a
 * priority. Items are keyed by the hash ID of their application identifier.
 * Renders with the base members and the raw content.
 */
class TExternalApplicationAuthorizationDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x05;

    static TExternalApplicationAuthorizationDescriptor* parse(unsigned char* data, unsigned int len,
                                                              unsigned int* bytesRead,
                                                              unsigned short* err);

    TExternalApplicationAuthorizationDescriptor(unsigned char* data, unsigned int len);
    explicit TExternalApplicationAuthorizationDescriptor(
        const TExternalApplicationAuthorizationDescriptor* src);
    TExternalApplicationAuthorizationDescriptor(
        const TExternalApplicationAuthorizationDescriptor&) = delete;
    TExternalApplicationAuthorizationDescriptor& operator=(
        const TExternalApplicationAuthorizationDescriptor&) = delete;
    ~TExternalApplicationAuthorizationDescriptor() override;

    int size() const { return static_cast<int>(items.size()); }
    /**
     * Stores item under its identifier's hash ID. An item already stored
     * under that key is replaced, not deleted: a caller that holds it owns it.
     */
    void add(TExternalApplicationAuthorizationDescriptorItem* item);
    /** The item of that hash ID, or null. */
    TExternalApplicationAuthorizationDescriptorItem* get(const std::string& hashId) const;
    /** The hash IDs in ascending order. */
    std::list<std::string> getApplicationIdentifierHashIDs() const;

  private:
    SARN_DESCRIPTOR_BUILD(TExternalApplicationAuthorizationDescriptor)
    std::vector<std::pair<std::string, TExternalApplicationAuthorizationDescriptorItem*>> items;
};

}  // namespace Sarn

#endif
