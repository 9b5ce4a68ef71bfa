#include "TApplication.h"

#include <memory>

#include "AITDescriptorSlots.h"
#include "Arena.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"
#include "TAITTable.h"

namespace Sarn {

static_assert(sizeof(ait::Slots) == sizeof(TISDBTDescriptor* [10]), "one slot per AIT kind");

TApplication::TApplication(unsigned char* bytes, unsigned int len)
    : TISDBTDataHolder(bytes, len, 0),
      parent(nullptr),
      controlCode(0),
      recommendedResolution(0),
      applicationType(0),
      applicationIdentifier(nullptr),
      descriptors{} {}

TApplication::TApplication(TApplication* src, int inherit)
    : TISDBTDataHolder(src == nullptr ? nullptr : src->data, src == nullptr ? 0 : src->dataLength,
                       0),
      parent(nullptr),
      controlCode(0),
      recommendedResolution(0),
      applicationType(0),
      applicationIdentifier(nullptr),
      descriptors{} {
    if (src == nullptr)
        return;
    hashId = src->hashId;
    controlCode = src->controlCode;
    recommendedResolution = src->recommendedResolution;
    applicationType = src->applicationType;
    if (src->applicationIdentifier != nullptr)
        applicationIdentifier = new TApplicationIdentifier(src->applicationIdentifier);
    for (int i = 0; i < ait::SLOT_COUNT; ++i)
        descriptors[i] = ait::copyDescriptor(src->slot(i, inherit, nullptr));
}

TApplication::~TApplication() {
    delete applicationIdentifier;
    ait::deleteSlots(descriptors);
}

namespace {
std::nullptr_t tooShort(unsigned int len, unsigned short* err) {
    SARN_LOGW("%s: TApplication::parse: Item length not valid: %u. Aborting!", len);
    return parse::fail(err, ERROR_DATA_TOO_SHORT);
}
}  // namespace

SARN_ENTRY_PARSE(TApplication, arena, data, len, bytesRead, err) {
    // application_identifier (6 bytes), application_control_code, 4 bits
    // kept as the recommended resolution, application_descriptors_loop_length
    // (12 bits), descriptors.
    if (data == nullptr || len < 6)
        return tooShort(len, err);
    std::unique_ptr<TApplication> app(memory::make<TApplication>(arena, data, len));
    bytes::Reader r(data, len);
    unsigned int consumed = 0;
    app->applicationIdentifier =
        TApplicationIdentifier::parse(r.mutableCurrent(), r.remaining(), 1, &consumed, err);
    if (app->applicationIdentifier == nullptr) {
        SARN_LOGW("%s: TApplication::parse: Invalid Application Identifier. Aborting!");
        return parse::fail(err, ERROR_INVALID_ITEM);
    }
    r.skip(consumed);
    app->hashId = TApplicationIdentifier::calculateHashID(app->applicationIdentifier);
    if (!r.has(3))
        return tooShort(len, err);  // control code and loop length are not in the bytes
    app->controlCode = r.u8();
    app->recommendedResolution = static_cast<unsigned char>(r.peek() >> 4);
    const unsigned short loopLength = r.length12();
    if (loopLength > r.remaining()) {
        SARN_LOGW("%s: TApplication::parse: Item length not valid: %u > %u. Aborting!",
                  static_cast<unsigned int>(loopLength), r.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    if (!ait::walkDescriptorLoop(arena, r, loopLength, app->descriptors, err,
                                 &app->applicationType))
        return nullptr;
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    return parse::done(err, app);
}

TISDBTDescriptor* TApplication::slot(int index, int inherit, int* fromTable) const {
    TISDBTDescriptor* own = descriptors[index];
    if (own != nullptr || inherit == 0 || parent == nullptr)
        return own;
    TISDBTDescriptor* common = parent->descriptors[index];
    if (common != nullptr && fromTable != nullptr)
        *fromTable = 1;
    return common;
}

TApplicationDescriptor* TApplication::getApplicationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TApplicationDescriptor*>(slot(ait::SLOT_APPLICATION, inherit, fromTable));
}
TApplicationNameDescriptor* TApplication::getApplicationNameDescriptor(int inherit,
                                                                       int* fromTable) const {
    return static_cast<TApplicationNameDescriptor*>(slot(ait::SLOT_NAME, inherit, fromTable));
}
TApplicationIconDescriptor* TApplication::getApplicationIconDescriptor(int inherit,
                                                                       int* fromTable) const {
    return static_cast<TApplicationIconDescriptor*>(slot(ait::SLOT_ICON, inherit, fromTable));
}
TExternalApplicationAuthorizationDescriptor*
TApplication::getExternalApplicationAuthorizationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TExternalApplicationAuthorizationDescriptor*>(
        slot(ait::SLOT_AUTHORIZATION, inherit, fromTable));
}
TTransportProtocolDescriptor* TApplication::getTransportProtocolDescriptor(int inherit,
                                                                           int* fromTable) const {
    return static_cast<TTransportProtocolDescriptor*>(
        slot(ait::SLOT_TRANSPORT, inherit, fromTable));
}
TIPSignalingDescriptor* TApplication::getIPSignalingDescriptor(int inherit, int* fromTable) const {
    return static_cast<TIPSignalingDescriptor*>(slot(ait::SLOT_IP_SIGNALING, inherit, fromTable));
}
TPrefetchDescriptor* TApplication::getPrefetchDescriptor(int inherit, int* fromTable) const {
    return static_cast<TPrefetchDescriptor*>(slot(ait::SLOT_PREFETCH, inherit, fromTable));
}
TDIILocationDescriptor* TApplication::getDIILocationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TDIILocationDescriptor*>(slot(ait::SLOT_DII_LOCATION, inherit, fromTable));
}
TGingaApplicationDescriptor* TApplication::getGingaApplicationDescriptor(int inherit,
                                                                         int* fromTable) const {
    return static_cast<TGingaApplicationDescriptor*>(slot(ait::SLOT_GINGA, inherit, fromTable));
}
TGingaApplicationLocationDescriptor* TApplication::getGingaApplicationLocationDescriptor(
    int inherit, int* fromTable) const {
    return static_cast<TGingaApplicationLocationDescriptor*>(
        slot(ait::SLOT_GINGA_LOCATION, inherit, fromTable));
}

TISDBTDescriptor* TApplication::getDescriptor(unsigned char tag) const {
    return ait::lookup(descriptors, tag, false);
}

std::list<unsigned char> TApplication::getDescriptorTags() const {
    return ait::tagsOf(descriptors);
}

}  // namespace Sarn
