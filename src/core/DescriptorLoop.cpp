#include "DescriptorLoop.h"

#include "Arena.h"
#include "DescriptorFactories.h"
#include "Json.h"
#include "Log.h"
#include "Reader.h"

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
    return parseDescriptorsLoop(nullptr, data, length);
}

unsigned int DescriptorLoop::parseDescriptorsLoop(memory::Arena* arena, unsigned char* data,
                                                  unsigned int length) {
    if (length == 0 || data == nullptr)
        return 0;
    const DescriptorFactoryTable& kinds = known();
    // Room for as many descriptors as two-byte headers could fill, up to
    // eight, taken once; a longer list grows as it needs.
    const memory::VectorInArena<decltype(descriptors)> inArena(descriptors, arena);
    descriptors.reserve(descriptors.size() + (length < 16 ? length / 2 : 8));
    bytes::Reader in(data, length);
    // A single trailing byte cannot hold a header and is ignored.
    for (unsigned char tag = 0, size = 0; in.peekHeader(tag, size);) {
        const unsigned int n = size + 2u;
        if (!in.has(n)) {
            SARN_LOGW(
                "%s: DescriptorLoop::parseDescriptorsLoop: Item length not valid: %u + %u > %d. "
                "Aborting!",
                in.position(), n, static_cast<int>(length));
            return in.position();
        }
        unsigned char* descriptor = in.mutableCurrent();
        in.skip(n);
        // As parseDescriptor, without looking the table up again.
        if (builds(kinds, acceptedTags, tag))
            if (TISDBTDescriptor* d = kinds.at[tag](arena, descriptor, n, nullptr, nullptr))
                descriptors.push_back(d);
    }
    return in.position();
}

void DescriptorLoop::parseDescriptor(unsigned char* data, unsigned int length) {
    const bytes::Reader in(data, length);
    if (in.atEnd())
        return;
    const DescriptorFactoryTable& kinds = known();
    const unsigned char tag = in.peek();
    if (!builds(kinds, acceptedTags, tag))
        return;
    if (TISDBTDescriptor* d = kinds.at[tag](nullptr, data, length, nullptr, nullptr))
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
