#include "DescriptorLoop.h"

#include "DescriptorFactories.h"
#include "Json.h"
#include "Log.h"

namespace Sarn {

namespace {

// The descriptor classes a generic loop knows how to build come, by tag, from
// the registry of the descriptors layer. Every other tag, accepted or not, is
// stepped over without a message. A descriptor that fails its own checks
// logs its reason and is dropped; its failure never reaches the owner's
// caller (no byte count, no error code are passed).
inline const DescriptorFactoryTable& known() {
    return descriptorFactories(PLACE_SI_LOOP);
}

/** Whether a loop walk creates an object for this tag. */
inline bool builds(const DescriptorFactoryTable& kinds, const DescriptorTagSet* accepted,
                   unsigned char tag) {
    return accepted != nullptr && accepted->contains(tag) && kinds.at[tag] != nullptr;
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
    const DescriptorFactoryTable& kinds = known();
    unsigned int expected = 0;
    for (unsigned int q = 0; q + 1 < length; q += data[q + 1] + 2u)
        expected += builds(kinds, acceptedTags, data[q]) ? 1u : 0u;
    if (expected > 1)
        descriptors.reserve(descriptors.size() + expected);
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
    const DescriptorFactoryTable& kinds = known();
    if (!builds(kinds, acceptedTags, data[0]))
        return;
    if (TISDBTDescriptor* d = kinds.at[data[0]](data, length, nullptr, nullptr))
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
