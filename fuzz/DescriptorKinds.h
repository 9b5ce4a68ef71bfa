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

inline const DescriptorKind kDescriptorKinds[] = {
    {-1, runEntry<Sarn::TDownloadContent>},
    SARN_FUZZ_DESCRIPTOR(-1, TScheduleInfo),
    {-1, runEntry<Sarn::TDatacasterCarousel>},
    SARN_FUZZ_DESCRIPTOR(0x01, TNPTReferenceDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x02, TNPTEndpointDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x03, TStreamModeDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x04, TStreamEventDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xC9, TDownloadContentDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TDownloadContentDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(-1, TCompatibilityDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TCompatibilityDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(-1, TCompatibilityDescriptorSubItem),
    {-1, runEntry<Sarn::TProgramMap>},
    {-1, runEntry<Sarn::TTransportStreamInfo>},
    {-1, runEntry<Sarn::TServiceDescription>},
    {-1, runApplication},
    {-1, runEntry<Sarn::TApplicationIdentifier>},
    SARN_FUZZ_DESCRIPTOR(0x0A, TISO639LanguageDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x13, TCarouselIdentifierDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x52, TStreamIdentifierDescriptor),
    SARN_FUZZ_DESCRIPTOR(0xFD, TDataComponentDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x40, TNetworkNameDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x48, TServiceDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x58, TLocalTimeOffsetDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TLocalTimeOffsetDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0xCD, TTSInformationDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TTSInformationDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x00, TApplicationDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TApplicationDescriptorProfile),
    SARN_FUZZ_DESCRIPTOR(0x0B, TApplicationIconDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x01, TApplicationNameDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TApplicationNameDescriptorItem),
    {0x02, runTransportProtocol},
    SARN_FUZZ_DESCRIPTOR(0x03, TGingaJavaApplicationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x04, TGingaJavaApplicationLocationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x06, TGingaNCLApplicationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x07, TGingaNCLApplicationLocationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x0E, TGingaHtml5ApplicationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x0F, TGingaHtml5ApplicationLocationDescriptor),
    SARN_FUZZ_DESCRIPTOR(0x05, TExternalApplicationAuthorizationDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TExternalApplicationAuthorizationDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x0C, TPrefetchDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TPrefetchDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x0D, TDIILocationDescriptor),
    SARN_FUZZ_DESCRIPTOR(-1, TDIILocationDescriptorItem),
    SARN_FUZZ_DESCRIPTOR(0x11, TIPSignalingDescriptor),
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
