#ifndef SARN_TEXTERNALAPPLICATIONAUTHORIZATIONDESCRIPTORITEM_H
#define SARN_TEXTERNALAPPLICATIONAUTHORIZATIONDESCRIPTORITEM_H

#include "TApplicationIdentifier.h"

namespace Sarn {

/** One authorized application: its identifier and its priority. Seven bytes on the wire. */
class TExternalApplicationAuthorizationDescriptorItem {
  public:
    static TExternalApplicationAuthorizationDescriptorItem* parse(unsigned char* data,
                                                                  unsigned int len,
                                                                  unsigned int* bytesRead,
                                                                  unsigned short* err);

    TExternalApplicationAuthorizationDescriptorItem(TApplicationIdentifier* identifier,
                                                    unsigned char priority);
    explicit TExternalApplicationAuthorizationDescriptorItem(
        const TExternalApplicationAuthorizationDescriptorItem* src);
    TExternalApplicationAuthorizationDescriptorItem(
        const TExternalApplicationAuthorizationDescriptorItem&) = delete;
    TExternalApplicationAuthorizationDescriptorItem& operator=(
        const TExternalApplicationAuthorizationDescriptorItem&) = delete;
    virtual ~TExternalApplicationAuthorizationDescriptorItem();

    TApplicationIdentifier* getApplicationIdentifier() const { return applicationIdentifier; }
    unsigned char getPriority() const { return applicationPriority; }

  private:
    TApplicationIdentifier* applicationIdentifier;
    unsigned char applicationPriority;
};

}  // namespace Sarn

#endif
