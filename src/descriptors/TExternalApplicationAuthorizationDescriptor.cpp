#include "TExternalApplicationAuthorizationDescriptor.h"

#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

TExternalApplicationAuthorizationDescriptorItem::TExternalApplicationAuthorizationDescriptorItem(
    TApplicationIdentifier* identifier, unsigned char priority)
    : applicationIdentifier(identifier), applicationPriority(priority) {}

TExternalApplicationAuthorizationDescriptorItem::TExternalApplicationAuthorizationDescriptorItem(
    const TExternalApplicationAuthorizationDescriptorItem* src)
    : applicationIdentifier(src->applicationIdentifier == nullptr
                                ? nullptr
                                : new TApplicationIdentifier(src->applicationIdentifier)),
      applicationPriority(src->applicationPriority) {}

TExternalApplicationAuthorizationDescriptorItem::
    ~TExternalApplicationAuthorizationDescriptorItem() {
    delete applicationIdentifier;
}

TExternalApplicationAuthorizationDescriptorItem*
TExternalApplicationAuthorizationDescriptorItem::parse(unsigned char* data, unsigned int len,
                                                       unsigned int* bytesRead,
                                                       unsigned short* err) {
    // application_identifier (6 bytes), application_priority
    if (data == nullptr || len < 7) {
        SARN_LOGW(
            "%s: TExternalApplicationAuthorizationDescriptorItem::parse: Item length not valid: "
            "%u. Aborting!",
            len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    unsigned int n = 0;
    TApplicationIdentifier* identifier = TApplicationIdentifier::parse(data, len, 1, &n, err);
    if (identifier == nullptr)
        return nullptr;
    if (bytesRead != nullptr)
        *bytesRead = 7;
    return new TExternalApplicationAuthorizationDescriptorItem(identifier, data[6]);
}

TExternalApplicationAuthorizationDescriptor::TExternalApplicationAuthorizationDescriptor(
    unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TExternalApplicationAuthorizationDescriptor::TExternalApplicationAuthorizationDescriptor(
    const TExternalApplicationAuthorizationDescriptor* src)
    : TISDBTDescriptor(*src) {
    owned::copyAll(src->items, items);
}

TExternalApplicationAuthorizationDescriptor::~TExternalApplicationAuthorizationDescriptor() {
    owned::deleteAll(items);
}

TExternalApplicationAuthorizationDescriptor* TExternalApplicationAuthorizationDescriptor::parse(
    unsigned char* data, unsigned int len, unsigned int* bytesRead, unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 0, DESCRIPTOR_TAG))
        return nullptr;
    TExternalApplicationAuthorizationDescriptor* d =
        new TExternalApplicationAuthorizationDescriptor(data, len);
    // The same application authorized twice keeps the later entry.
    auto store = [d](TExternalApplicationAuthorizationDescriptorItem* item) {
        owned::replace(d->items,
                       TApplicationIdentifier::calculateHashID(item->getApplicationIdentifier()),
                       item);
    };
    return parseItems<TExternalApplicationAuthorizationDescriptorItem>(
        d, "TExternalApplicationAuthorizationDescriptor", data + 2, data[1], bytesRead, err, store);
}

void TExternalApplicationAuthorizationDescriptor::add(
    TExternalApplicationAuthorizationDescriptorItem* item) {
    if (item != nullptr)
        items[TApplicationIdentifier::calculateHashID(item->getApplicationIdentifier())] = item;
}

TExternalApplicationAuthorizationDescriptorItem* TExternalApplicationAuthorizationDescriptor::get(
    const std::string& hashId) const {
    auto it = items.find(hashId);
    return it == items.end() ? nullptr : it->second;
}

std::list<std::string>
TExternalApplicationAuthorizationDescriptor::getApplicationIdentifierHashIDs() const {
    return owned::keys(items);
}

}  // namespace Sarn
