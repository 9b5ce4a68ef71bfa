#ifndef SARN_FUZZ_DESCRIPTORKINDS_H
#define SARN_FUZZ_DESCRIPTORKINDS_H

// Every descriptor and item class with the common static factory shape
// parse(data, length, &bytesRead, &error). The harness picks one by a
// selector byte; the seed generator files each captured descriptor under the
// classes whose tag it carries.

#include <SarnISDBTUtils.h>

#include <type_traits>

namespace sarnfuzz {

template <typename T, typename = void>
struct HasToJSON : std::false_type {};
template <typename T>
struct HasToJSON<T, std::void_t<decltype(std::declval<const T&>().toJSON())>> : std::true_type {};

template <typename T>
void runDescriptor(unsigned char* data, unsigned int length) {
    unsigned int bytesRead = 0;
    unsigned short error = 0;
    T* parsed = T::parse(data, length, &bytesRead, &error);
    if (parsed == nullptr)
        return;
    if constexpr (HasToJSON<T>::value) {
        volatile size_t sink = parsed->toJSON().size();
        (void)sink;
    }
    delete parsed;
}

struct DescriptorKind {
    int tag;  // -1: an item class, seeded from descriptor payloads
    void (*run)(unsigned char*, unsigned int);
};

#define SARN_FUZZ_DESCRIPTOR(tag, cls) \
    { tag, runDescriptor<Sarn::cls> }

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

inline const DescriptorKind kDescriptorKinds[] = {
    {-1, runEventItem},
    SARN_FUZZ_DESCRIPTOR(0x4D, TShortEventDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x4E, TExtendedEventDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TExtendedEventDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x54, TContentDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x55, TParentalRatingDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TParentalRatingDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x50, TComponentDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xC4, TAudioComponentDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xC1, TDigitalCopyControlDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TDigitalCopyControlDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x7C, TAACDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x28, TAVCVideoDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x2A, TAVCTimingAndHRDDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x47, TBouquetNameDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x53, TCAIdentifierDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xF7, TCarouselCompatibleCompositeDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xF8, TConditionalPlaybackDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xDE, TContentAvailabilityDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x0D, TCopyrightDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x49, TCountryAvailabilityDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xFC, TEmergencyInformationDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TEmergencyInformationDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0xC0, THierarchicalTransmissionDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x7C, TLCMDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x7C, TLDMDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xFB, TPartialReceptionDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x41, TServiceListDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TServiceListDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0xFE, TSystemManagementDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xFA, TTerrestrialDeliverySystemDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x4C, TTimeShiftedServiceDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xC8, TVideoDecodeControlDescriptor),
};
constexpr unsigned int kDescriptorKindCount = sizeof kDescriptorKinds / sizeof kDescriptorKinds[0];

}  // namespace sarnfuzz

#endif
