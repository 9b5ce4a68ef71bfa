#ifndef SARN_FUZZ_FUZZDESCRIPTORS_H
#define SARN_FUZZ_FUZZDESCRIPTORS_H

// What fuzz_descriptors drives: every descriptor class of the library's
// registry (src/descriptors/DescriptorKinds.h), then the item and loop-entry
// classes, which no registry holds. The harness picks one by a selector byte
// (registry kinds first, then the extras); the seed generator files each
// captured descriptor under the classes whose tag it carries.

#include <SarnISDBTUtils.h>

#include "DescriptorKinds.h"

#include <type_traits>

namespace sarnfuzz {

template <typename T, typename = void>
struct HasToJSON : std::false_type {};
template <typename T>
struct HasToJSON<T, std::void_t<decltype(std::declval<const T&>().toJSON())>> : std::true_type {};

/** Renders what a parse returned, when its class renders, and deletes it. */
template <typename T>
void renderAndDelete(T* parsed) {
    if (parsed == nullptr)
        return;
    if constexpr (HasToJSON<T>::value) {
        volatile size_t sink = parsed->toJSON().size();
        (void)sink;
    }
    delete parsed;
}

template <typename T>
void runDescriptor(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    renderAndDelete(T::parse(data, length, &bytesRead, &error));
}

struct ExtraKind {
    int tag;  // -1: an item class, seeded from descriptor payloads
    void (*run)(unsigned char*, unsigned int);
};

#define SARN_FUZZ_ITEM(cls) \
    { -1, runDescriptor<Sarn::cls> }

// Loop entries take more than the common arguments.
inline void runEventItem(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    // The variant, table_id and section_number pick the accepted tags: vary them
    // with the length so that every combination is reached.
    Sarn::TEventItem* item = Sarn::TEventItem::parse(
        data, length, length & 1, 0x4E + (length & 0x1F), (length >> 5) & 1, &bytesRead, &error);
    delete item;
}

/** A loop entry whose parse takes an unused integer before the common arguments. */
template <typename T>
void runEntry(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    renderAndDelete(T::parse(data, length, 1, &bytesRead, &error));
}

/** An AIT application, also copied with and without inheritance. */
inline void runApplication(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    Sarn::TApplication* app = Sarn::TApplication::parse(data, length, 1, &bytesRead, &error);
    if (app == nullptr)
        return;
    Sarn::TApplication* inherited = new Sarn::TApplication(app, 1);
    Sarn::TApplication* plain = new Sarn::TApplication(app, 0);
    delete plain;
    delete inherited;
    delete app;
}

/** A transport protocol descriptor, cloned as well. */
inline void runTransportProtocol(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    Sarn::TTransportProtocolDescriptor* d =
        Sarn::TTransportProtocolDescriptor::parse(data, length, &bytesRead, &error);
    if (d == nullptr)
        return;
    Sarn::TTransportProtocolDescriptor* copy = Sarn::TTransportProtocolDescriptor::clone(d);
    volatile size_t sink = d->toJSON().size();
    if (copy != nullptr)
        sink = copy->toJSON().size();
    (void)sink;
    delete copy;
    delete d;
}

/** A class of the registry: parsed through its factory, rendered and deleted. */
inline void runRegistered(const Sarn::DescriptorKind& kind, unsigned char* data,
                          unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    Sarn::TISDBTDescriptor* d = kind.parse(nullptr, data, length, &bytesRead, &error);
    if (d == nullptr)
        return;
    volatile size_t sink = d->toJSON().size();
    (void)sink;
    delete d;
}

inline const ExtraKind kExtraKinds[] = {
    {-1, runEntry<Sarn::TDownloadContent>},
    SARN_FUZZ_ITEM(TScheduleInfo),
    {-1, runEntry<Sarn::TDatacasterCarousel>},
    SARN_FUZZ_ITEM(TDownloadContentDescriptorItem),
    SARN_FUZZ_ITEM(TCompatibilityDescriptor),
    SARN_FUZZ_ITEM(TCompatibilityDescriptorItem),
    SARN_FUZZ_ITEM(TCompatibilityDescriptorSubItem),
    {-1, runEntry<Sarn::TProgramMap>},
    {-1, runEntry<Sarn::TTransportStreamInfo>},
    {-1, runEntry<Sarn::TServiceDescription>},
    {-1, runApplication},
    {-1, runEntry<Sarn::TApplicationIdentifier>},
    SARN_FUZZ_ITEM(TLocalTimeOffsetDescriptorItem),
    SARN_FUZZ_ITEM(TTSInformationDescriptorItem),
    SARN_FUZZ_ITEM(TApplicationDescriptorProfile),
    SARN_FUZZ_ITEM(TApplicationNameDescriptorItem),
    {0x02, runTransportProtocol},
    SARN_FUZZ_ITEM(TExternalApplicationAuthorizationDescriptorItem),
    SARN_FUZZ_ITEM(TPrefetchDescriptorItem),
    SARN_FUZZ_ITEM(TDIILocationDescriptorItem),
    {-1, runEventItem},
    SARN_FUZZ_ITEM(TExtendedEventDescriptorItem),
    SARN_FUZZ_ITEM(TParentalRatingDescriptorItem),
    SARN_FUZZ_ITEM(TDigitalCopyControlDescriptorItem),
    SARN_FUZZ_ITEM(TEmergencyInformationDescriptorItem),
    SARN_FUZZ_ITEM(TServiceListDescriptorItem),
};
constexpr unsigned int kExtraKindCount = sizeof kExtraKinds / sizeof kExtraKinds[0];

#undef SARN_FUZZ_ITEM

/** Every selector: the registry's kinds, then the extras. */
inline unsigned int kindCount() {
    return Sarn::kDescriptorKindCount + kExtraKindCount;
}

/** The tag of selector k (-1 for an item class). */
inline int tagOf(unsigned int k) {
    return k < Sarn::kDescriptorKindCount ? Sarn::kDescriptorKinds[k].tag
                                          : kExtraKinds[k - Sarn::kDescriptorKindCount].tag;
}

/** Runs selector k over the descriptor bytes. */
inline void run(unsigned int k, unsigned char* data, unsigned int length) {
    if (k < Sarn::kDescriptorKindCount)
        runRegistered(Sarn::kDescriptorKinds[k], data, length);
    else
        kExtraKinds[k - Sarn::kDescriptorKindCount].run(data, length);
}

}  // namespace sarnfuzz

#endif
