#include "AITDescriptorSlots.h"

#include "DescriptorFactories.h"
#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "TApplicationDescriptor.h"
#include "TApplicationIconDescriptor.h"
#include "TApplicationNameDescriptor.h"
#include "TDIILocationDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TGingaHtml5ApplicationDescriptor.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TPrefetchDescriptor.h"
#include "TTransportProtocolDescriptor.h"

namespace Sarn {
namespace ait {

namespace {

constexpr unsigned char kStuffingTag = 0x42;

template <class T>
TISDBTDescriptor* copyAs(const TISDBTDescriptor* d) {
    const T* variant = dynamic_cast<const T*>(d);
    return variant == nullptr ? nullptr : new T(variant);
}

TISDBTDescriptor* cloneTransport(const TISDBTDescriptor* d) {
    const auto* transport = dynamic_cast<const TTransportProtocolDescriptor*>(d);
    return TTransportProtocolDescriptor::clone(
        const_cast<TTransportProtocolDescriptor*>(transport));
}

/**
 * One descriptor kind of the AIT loops: where it is kept and what it means to
 * its owner. The class that parses it comes from the registry of descriptor
 * kinds.
 */
struct Kind {
    unsigned char tag;
    Slot slot;
    TISDBTDescriptor* (*copy)(const TISDBTDescriptor* d);
    /** The application_type an application takes from it (Java 1, NCL 9, HTML5 11); 0: none. */
    unsigned short applicationType;
    /** What the table says it does not handle yet in its common loop; null: nothing. */
    const char* tableNote;
};

template <class T>
constexpr Kind kind(Slot slot, unsigned short applicationType = 0,
                    const char* tableNote = nullptr) {
    return Kind{T::DESCRIPTOR_TAG, slot, copyAs<T>, applicationType, tableNote};
}

const Kind kKinds[] = {
    kind<TApplicationDescriptor>(SLOT_APPLICATION),
    kind<TApplicationNameDescriptor>(SLOT_NAME),
    {TTransportProtocolDescriptor::DESCRIPTOR_TAG, SLOT_TRANSPORT, cloneTransport, 0, nullptr},
    kind<TGingaJavaApplicationDescriptor>(SLOT_GINGA, 1, "Ginga Java Application Descriptor"),
    kind<TGingaJavaApplicationLocationDescriptor>(SLOT_GINGA_LOCATION, 1,
                                                  "Ginga Java Application Location Descriptor"),
    kind<TExternalApplicationAuthorizationDescriptor>(SLOT_AUTHORIZATION),
    kind<TGingaNCLApplicationDescriptor>(SLOT_GINGA, 9, "Ginga NCL Application Descriptor"),
    kind<TGingaNCLApplicationLocationDescriptor>(SLOT_GINGA_LOCATION, 9,
                                                 "Ginga NCL Application Location Descriptor"),
    kind<TApplicationIconDescriptor>(SLOT_ICON),
    kind<TPrefetchDescriptor>(SLOT_PREFETCH),
    kind<TDIILocationDescriptor>(SLOT_DII_LOCATION),
    kind<TGingaHtml5ApplicationDescriptor>(SLOT_GINGA, 11),
    kind<TGingaHtml5ApplicationLocationDescriptor>(SLOT_GINGA_LOCATION, 11),
    kind<TIPSignalingDescriptor>(SLOT_IP_SIGNALING),
};

const Kind* kindOf(unsigned char tag) {
    for (const Kind& k : kKinds)
        if (k.tag == tag)
            return &k;
    return nullptr;
}

/** True when d holds a descriptor with that tag. */
inline bool hasTag(const TISDBTDescriptor* d, unsigned char tag) {
    return d != nullptr && d->getDescriptorTag() == tag;
}

}  // namespace

bool walkDescriptorLoop(memory::Arena* arena, bytes::Reader& r, unsigned short loopLength,
                        Slots& slots, unsigned short* err, unsigned short* applicationType) {
    const bool table = applicationType == nullptr;
    const char* owner = table ? "TAITTable" : "TApplication";
    // A 16-bit count, as on the wire; it only ends the loop when a
    // descriptor ends exactly on it, and the checks against what the reader
    // has left keep the walk inside the owner's bytes in any case.
    const DescriptorFactoryTable& factories = descriptorFactories(PLACE_AIT);
    unsigned short loop = loopLength;
    while (loop != 0) {
        const unsigned int headroom = r.remaining() - 2u;  // wraps below 2, as the check expects
        if (!r.has(2) || r.peek(1) > headroom) {
            // The table reports the loop length left, an application the
            // descriptor's own length.
            const unsigned int shown = table || !r.has(2) ? loop : r.peek(1);
            SARN_LOGW("%s: %s::parse: Item length not valid: %u > %u. Aborting!", owner, shown,
                      headroom);
            parse::fail(err, ERROR_DATA_TOO_SHORT);
            return false;
        }
        const unsigned char tag = r.peek(0);
        const unsigned int n = r.peek(1) + 2u;
        unsigned char* d = r.mutableCurrent();
        r.skip(n);
        const Kind* k = factories.at[tag] != nullptr ? kindOf(tag) : nullptr;
        if (k == nullptr) {
            if (tag != kStuffingTag)
                SARN_LOGW("%s: %s::parse: Unknown descriptor: 0x%02X. Ignored!", owner,
                          static_cast<unsigned int>(tag));
        } else {
            if (table && k->tableNote != nullptr)
                SARN_LOGW("%s: TAITTable::parse: %s... WHAT TO DO????", k->tableNote);
            if (!table && k->applicationType != 0)
                *applicationType = k->applicationType;
            TISDBTDescriptor* descriptor = factories.at[tag](arena, d, n, nullptr, err);
            if (descriptor == nullptr)
                return false;  // the descriptor's class has logged and set the code
            // A second descriptor of a kind replaces the first.
            delete slots[k->slot];
            slots[k->slot] = descriptor;
        }
        loop = static_cast<unsigned short>(loop - n);
    }
    return true;
}

TISDBTDescriptor* lookup(const Slots& slots, unsigned char tag, bool table) {
    const Kind* k = kindOf(tag);
    if (k == nullptr)
        return nullptr;
    Slot slot = k->slot;
    unsigned char held = tag;
    if (tag == TGingaHtml5ApplicationLocationDescriptor::DESCRIPTOR_TAG && table) {
        slot = SLOT_GINGA;
    } else if (tag == TGingaHtml5ApplicationDescriptor::DESCRIPTOR_TAG && !table) {
        slot = SLOT_GINGA_LOCATION;
        held = TGingaHtml5ApplicationLocationDescriptor::DESCRIPTOR_TAG;
    }
    if (slot != SLOT_GINGA && slot != SLOT_GINGA_LOCATION)
        return slots[slot];
    return hasTag(slots[slot], held) ? slots[slot] : nullptr;
}

std::list<unsigned char> tagsOf(const Slots& slots) {
    std::list<unsigned char> tags;
    for (const TISDBTDescriptor* d : slots)
        if (d != nullptr)
            tags.push_back(d->getDescriptorTag());
    return tags;
}

void appendSlotsJSON(json::Out& o, const Slots& slots, bool table) {
    const TISDBTDescriptor* found[SLOT_COUNT];
    int n = 0;
    for (const TISDBTDescriptor* d : slots)
        if (d != nullptr)
            found[n++] = lookup(slots, d->getDescriptorTag(), table);
    json::appendDescriptorArray(o, found, found + n);
}

TISDBTDescriptor* copyDescriptor(const TISDBTDescriptor* d) {
    const Kind* k = d == nullptr ? nullptr : kindOf(d->getDescriptorTag());
    return k == nullptr ? nullptr : k->copy(d);
}

void deleteSlots(Slots& slots) {
    for (TISDBTDescriptor*& d : slots) {
        delete d;
        d = nullptr;
    }
}

}  // namespace ait
}  // namespace Sarn
