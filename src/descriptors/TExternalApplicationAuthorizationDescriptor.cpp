#include "TExternalApplicationAuthorizationDescriptor.h"

#include <memory>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "ItemLoop.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

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
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    unsigned int n = 0;
    TApplicationIdentifier* identifier =
        TApplicationIdentifier::parse(r.mutableCurrent(), r.remaining(), 1, &n, err);
    if (identifier == nullptr)
        return nullptr;
    r.skip(n);
    const unsigned char priority = r.u8();
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    return new TExternalApplicationAuthorizationDescriptorItem(identifier, priority);
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

SARN_DESCRIPTOR_PARSE(TExternalApplicationAuthorizationDescriptor, arena, data, len, bytesRead,
                      err) {
    SARN_OPEN_OR_RETURN(arena, d, r, TExternalApplicationAuthorizationDescriptor, data, len, err, 0,
                        DESCRIPTOR_TAG);
    bytes::Reader body = r.sub(d->getDescriptorLength());
    // The same application authorized twice keeps the later entry.
    TExternalApplicationAuthorizationDescriptor* authorization = d.get();
    auto store = [authorization](TExternalApplicationAuthorizationDescriptorItem* item) {
        owned::replace(authorization->items,
                       TApplicationIdentifier::calculateHashID(item->getApplicationIdentifier()),
                       item);
    };
    return parseItems<TExternalApplicationAuthorizationDescriptorItem>(
        d, "TExternalApplicationAuthorizationDescriptor", body, bytesRead, err, store);
}

void TExternalApplicationAuthorizationDescriptor::add(
    TExternalApplicationAuthorizationDescriptorItem* item) {
    if (item != nullptr)
        owned::assign(
            items, TApplicationIdentifier::calculateHashID(item->getApplicationIdentifier()), item);
}

TExternalApplicationAuthorizationDescriptorItem* TExternalApplicationAuthorizationDescriptor::get(
    const std::string& hashId) const {
    return owned::find(items, hashId);
}

std::list<std::string>
TExternalApplicationAuthorizationDescriptor::getApplicationIdentifierHashIDs() const {
    return owned::keys(items);
}

}  // namespace Sarn
