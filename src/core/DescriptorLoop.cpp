#include "DescriptorLoop.h"

#include "Json.h"
#include "Log.h"
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

// The descriptor classes a generic loop knows how to build. Every other tag,
// accepted or not, is stepped over without a message. A descriptor that fails
// its own checks logs its reason and is dropped; its failure never reaches
// the owner's caller (no byte count, no error code are passed).
TISDBTDescriptor* createDescriptor(unsigned char* data, unsigned int length) {
    switch (data[0]) {
        case 0x0A:
            return TISO639LanguageDescriptor::parse(data, length, nullptr, nullptr);
        case 0x13:
            return TCarouselIdentifierDescriptor::parse(data, length, nullptr, nullptr);
        case 0x40:
            return TNetworkNameDescriptor::parse(data, length, nullptr, nullptr);
        case 0x48:
            return TServiceDescriptor::parse(data, length, nullptr, nullptr);
        case 0x4D:
            return TShortEventDescriptor::parse(data, length, nullptr, nullptr);
        case 0x4E:
            return TExtendedEventDescriptor::parse(data, length, nullptr, nullptr);
        case 0x50:
            return TComponentDescriptor::parse(data, length, nullptr, nullptr);
        case 0x52:
            return TStreamIdentifierDescriptor::parse(data, length, nullptr, nullptr);
        case 0x54:
            return TContentDescriptor::parse(data, length, nullptr, nullptr);
        case 0x55:
            return TParentalRatingDescriptor::parse(data, length, nullptr, nullptr);
        case 0x58:
            return TLocalTimeOffsetDescriptor::parse(data, length, nullptr, nullptr);
        case 0xC1:
            return TDigitalCopyControlDescriptor::parse(data, length, nullptr, nullptr);
        case 0xC4:
            return TAudioComponentDescriptor::parse(data, length, nullptr, nullptr);
        case 0xCD:
            return TTSInformationDescriptor::parse(data, length, nullptr, nullptr);
        case 0xFD:
            return TDataComponentDescriptor::parse(data, length, nullptr, nullptr);
        default:
            (void)length;
            return nullptr;
    }
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
    unsigned int p = 0;
    // A single trailing byte cannot hold a header and is ignored.
    while (p < length - 1) {
        const unsigned int n = data[p + 1] + 2u;
        if (p + n > length) {
            SARN_LOGW(
                "%s: DescriptorLoop::parseDescriptorsLoop: Item length not valid: %u + %u > %d. "
                "Aborting!",
                p, n, static_cast<int>(length));
            return p;
        }
        parseDescriptor(data + p, n);
        p += n;
    }
    return p;
}

void DescriptorLoop::parseDescriptor(unsigned char* data, unsigned int length) {
    if (length == 0 || data == nullptr)
        return;
    if (acceptedTags == nullptr || !acceptedTags->contains(data[0]))
        return;
    if (TISDBTDescriptor* d = createDescriptor(data, length))
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
