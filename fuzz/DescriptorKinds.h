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

inline const DescriptorKind kDescriptorKinds[] = {
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
