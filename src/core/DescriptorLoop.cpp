#include "DescriptorLoop.h"

#include "Json.h"
#include "Log.h"
#include "Reader.h"
#include "TAudioComponentDescriptor.h"
#include "TCarouselIdentifierDescriptor.h"
#include "TComponentDescriptor.h"
#include "TContentDescriptor.h"
#include "TDataComponentDescriptor.h"
#include "TDigitalCopyControlDescriptor.h"
#include "TExtendedEventDescriptor.h"
#include "TISO639LanguageDescriptor.h"
#include "TLocalTimeOffsetDescriptor.h"
#include "TNetworkNameDescriptor.h"
#include "TParentalRatingDescriptor.h"
#include "TServiceDescriptor.h"
#include "TShortEventDescriptor.h"
#include "TStreamIdentifierDescriptor.h"
#include "TTSInformationDescriptor.h"

namespace Sarn {

namespace {

// The descriptor classes a generic loop knows how to build, by tag. Every
// other tag, accepted or not, is stepped over without a message. A
// descriptor that fails its own checks logs its reason and is dropped; its
// failure never reaches the owner's caller (no byte count, no error code are
// passed).
using Factory = TISDBTDescriptor* (*)(unsigned char*, unsigned int);

template <typename T>
TISDBTDescriptor* make(unsigned char* data, unsigned int length) {
    return T::parse(data, length, nullptr, nullptr);
}

struct DispatchTable {
    Factory at[256];
    constexpr DispatchTable() : at{} {
        at[0x0A] = make<TISO639LanguageDescriptor>;
        at[0x13] = make<TCarouselIdentifierDescriptor>;
        at[0x40] = make<TNetworkNameDescriptor>;
        at[0x48] = make<TServiceDescriptor>;
        at[0x4D] = make<TShortEventDescriptor>;
        at[0x4E] = make<TExtendedEventDescriptor>;
        at[0x50] = make<TComponentDescriptor>;
        at[0x52] = make<TStreamIdentifierDescriptor>;
        at[0x54] = make<TContentDescriptor>;
        at[0x55] = make<TParentalRatingDescriptor>;
        at[0x58] = make<TLocalTimeOffsetDescriptor>;
        at[0xC1] = make<TDigitalCopyControlDescriptor>;
        at[0xC4] = make<TAudioComponentDescriptor>;
        at[0xCD] = make<TTSInformationDescriptor>;
        at[0xFD] = make<TDataComponentDescriptor>;
    }
};

constexpr DispatchTable kDispatch;

/** Whether a loop walk creates an object for this tag. */
inline bool builds(const DescriptorTagSet* accepted, unsigned char tag) {
    return accepted != nullptr && accepted->contains(tag) && kDispatch.at[tag] != nullptr;
}

}  // namespace

DescriptorLoop::DescriptorLoop() : acceptedTags(nullptr) {}

DescriptorLoop::DescriptorLoop(const DescriptorTagSet& accepted) : acceptedTags(&accepted) {}

DescriptorLoop::~DescriptorLoop() {
    for (TISDBTDescriptor* d : descriptors)
        delete d;
}

unsigned int DescriptorLoop::parseDescriptorsLoop(unsigned char* data, unsigned int length) {
    if (length == 0 || data == nullptr)
        return 0;
    // A quick look over the headers first, so that the list grows once per
    // loop instead of doubling its way up (the walk below does the checks).
    unsigned int expected = 0;
    for (bytes::Reader look(data, length); look.has(2);) {
        const unsigned char tag = look.u8();
        look.skip(look.u8());
        expected += builds(acceptedTags, tag) ? 1u : 0u;
    }
    if (expected > 1)
        descriptors.reserve(descriptors.size() + expected);
    bytes::Reader in(data, length);
    // A single trailing byte cannot hold a header and is ignored.
    while (in.has(2)) {
        const unsigned int n = in.peek(1) + 2u;
        if (!in.has(n)) {
            SARN_LOGW(
                "%s: DescriptorLoop::parseDescriptorsLoop: Item length not valid: %u + %u > %d. "
                "Aborting!",
                in.position(), n, static_cast<int>(length));
            return in.position();
        }
        unsigned char* descriptor = in.mutableCurrent();
        in.skip(n);
        parseDescriptor(descriptor, n);
    }
    return in.position();
}

void DescriptorLoop::parseDescriptor(unsigned char* data, unsigned int length) {
    const bytes::Reader in(data, length);
    if (in.atEnd())
        return;
    const unsigned char tag = in.peek();
    if (!builds(acceptedTags, tag))
        return;
    if (TISDBTDescriptor* d = kDispatch.at[tag](data, length))
        descriptors.push_back(d);
}

TISDBTDescriptor* DescriptorLoop::getDescriptor(unsigned char tag) const {
    for (TISDBTDescriptor* d : descriptors)
        if (d->getDescriptorTag() == tag)
            return d;
    return nullptr;
}

std::list<TISDBTDescriptor*> DescriptorLoop::getDescriptors(unsigned char tag) const {
    std::list<TISDBTDescriptor*> found;
    for (TISDBTDescriptor* d : descriptors)
        if (d->getDescriptorTag() == tag)
            found.push_back(d);
    return found;
}

std::list<TISDBTDescriptor*> DescriptorLoop::getDescriptorList() const {
    return std::list<TISDBTDescriptor*>(descriptors.begin(), descriptors.end());
}

void DescriptorLoop::appendDescriptorsJSON(std::string& out) const {
    json::Out o(out);
    json::appendDescriptorArray(o, descriptors.begin(), descriptors.end());
}

}  // namespace Sarn
