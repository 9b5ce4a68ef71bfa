#include "DescriptorKinds.h"

#include "Arena.h"

#include "TAACDescriptor.h"
#include "TAVCTimingAndHRDDescriptor.h"
#include "TAVCVideoDescriptor.h"
#include "TApplicationDescriptor.h"
#include "TApplicationIconDescriptor.h"
#include "TApplicationNameDescriptor.h"
#include "TAudioComponentDescriptor.h"
#include "TBouquetNameDescriptor.h"
#include "TCAIdentifierDescriptor.h"
#include "TCarouselCompatibleCompositeDescriptor.h"
#include "TCarouselIdentifierDescriptor.h"
#include "TComponentDescriptor.h"
#include "TConditionalPlaybackDescriptor.h"
#include "TContentAvailabilityDescriptor.h"
#include "TContentDescriptor.h"
#include "TCopyrightDescriptor.h"
#include "TCountryAvailabilityDescriptor.h"
#include "TDIILocationDescriptor.h"
#include "TDataComponentDescriptor.h"
#include "TDigitalCopyControlDescriptor.h"
#include "TDownloadContentDescriptor.h"
#include "TEmergencyInformationDescriptor.h"
#include "TExtendedEventDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TGingaHtml5ApplicationDescriptor.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"
#include "THierarchicalTransmissionDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TISO639LanguageDescriptor.h"
#include "TLCMDescriptor.h"
#include "TLDMDescriptor.h"
#include "TLocalTimeOffsetDescriptor.h"
#include "TNPTEndpointDescriptor.h"
#include "TNPTReferenceDescriptor.h"
#include "TNetworkNameDescriptor.h"
#include "TParentalRatingDescriptor.h"
#include "TPartialReceptionDescriptor.h"
#include "TPrefetchDescriptor.h"
#include "TServiceDescriptor.h"
#include "TServiceListDescriptor.h"
#include "TShortEventDescriptor.h"
#include "TStreamEventDescriptor.h"
#include "TStreamIdentifierDescriptor.h"
#include "TStreamModeDescriptor.h"
#include "TSystemManagementDescriptor.h"
#include "TTSInformationDescriptor.h"
#include "TTerrestrialDeliverySystemDescriptor.h"
#include "TTimeShiftedServiceDescriptor.h"
#include "TTransportProtocolDescriptor.h"
#include "TVideoDecodeControlDescriptor.h"

namespace Sarn {

namespace {

template <typename T>
TISDBTDescriptor* factory(memory::Arena* arena, unsigned char* data, unsigned int length,
                          unsigned int* bytesRead, unsigned short* error) {
    return memory::Builder::build<T>(arena, data, length, bytesRead, error);
}

constexpr unsigned char SI = PLACE_SI_LOOP;
constexpr unsigned char AIT = PLACE_AIT;
constexpr unsigned char DSMCC = PLACE_DSMCC;
constexpr unsigned char CALLER = 0;

#define SARN_DESCRIPTOR_KIND(tag, cls, places) \
    { tag, #cls, factory<cls>, places }

}  // namespace

constexpr DescriptorKind kDescriptorKinds[] = {
    // The generic loop of the PSI/SI tables (each owner further picks its tags).
    SARN_DESCRIPTOR_KIND(0x0A, TISO639LanguageDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x13, TCarouselIdentifierDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x40, TNetworkNameDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x48, TServiceDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x4D, TShortEventDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x4E, TExtendedEventDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x50, TComponentDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x52, TStreamIdentifierDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x54, TContentDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x55, TParentalRatingDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0x58, TLocalTimeOffsetDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0xC1, TDigitalCopyControlDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0xC4, TAudioComponentDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0xCD, TTSInformationDescriptor, SI),
    SARN_DESCRIPTOR_KIND(0xFD, TDataComponentDescriptor, SI),
    // The AIT's loops.
    SARN_DESCRIPTOR_KIND(0x00, TApplicationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x01, TApplicationNameDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x02, TTransportProtocolDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x03, TGingaJavaApplicationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x04, TGingaJavaApplicationLocationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x05, TExternalApplicationAuthorizationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x06, TGingaNCLApplicationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x07, TGingaNCLApplicationLocationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x0B, TApplicationIconDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x0C, TPrefetchDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x0D, TDIILocationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x0E, TGingaHtml5ApplicationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x0F, TGingaHtml5ApplicationLocationDescriptor, AIT),
    SARN_DESCRIPTOR_KIND(0x11, TIPSignalingDescriptor, AIT),
    // DSM-CC sections (the section rewrites a stream event tag 0x1A to 0x04 first).
    SARN_DESCRIPTOR_KIND(0x01, TNPTReferenceDescriptor, DSMCC),
    SARN_DESCRIPTOR_KIND(0x02, TNPTEndpointDescriptor, DSMCC),
    SARN_DESCRIPTOR_KIND(0x03, TStreamModeDescriptor, DSMCC),
    SARN_DESCRIPTOR_KIND(0x04, TStreamEventDescriptor, DSMCC),
    // Parsed by the caller on the bytes of one descriptor. Three classes share
    // 0x7C (AAC, and the Libras LCM and LDM): the stream says which it carries.
    SARN_DESCRIPTOR_KIND(0x0D, TCopyrightDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x28, TAVCVideoDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x2A, TAVCTimingAndHRDDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x41, TServiceListDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x47, TBouquetNameDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x49, TCountryAvailabilityDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x4C, TTimeShiftedServiceDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x53, TCAIdentifierDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x7C, TAACDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x7C, TLCMDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0x7C, TLDMDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xC0, THierarchicalTransmissionDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xC8, TVideoDecodeControlDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xC9, TDownloadContentDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xDE, TContentAvailabilityDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xF7, TCarouselCompatibleCompositeDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xF8, TConditionalPlaybackDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xFA, TTerrestrialDeliverySystemDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xFB, TPartialReceptionDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xFC, TEmergencyInformationDescriptor, CALLER),
    SARN_DESCRIPTOR_KIND(0xFE, TSystemManagementDescriptor, CALLER),
};

#undef SARN_DESCRIPTOR_KIND

constexpr unsigned int kDescriptorKindCount = sizeof kDescriptorKinds / sizeof kDescriptorKinds[0];

namespace {

constexpr const DescriptorKind* kKinds = kDescriptorKinds;
constexpr unsigned int kCount = kDescriptorKindCount;

/** Whether every tag names one class at most in each place. */
constexpr bool eachTagOncePerPlace() {
    for (unsigned int i = 0; i < kCount; ++i)
        for (unsigned int j = i + 1; j < kCount; ++j)
            if (kKinds[i].tag == kKinds[j].tag && (kKinds[i].places & kKinds[j].places) != 0)
                return false;
    return true;
}
static_assert(eachTagOncePerPlace(), "two descriptor classes for one tag in one place");

/** The per-place lookup tables, made from the list at compile time. */
struct PlaceTables {
    DescriptorFactoryTable none, si, ait, dsmcc;
    constexpr PlaceTables() : none{}, si{}, ait{}, dsmcc{} {
        for (unsigned int i = 0; i < kCount; ++i) {
            const DescriptorKind& k = kKinds[i];
            if (k.places & PLACE_SI_LOOP)
                si.at[k.tag] = k.parse;
            if (k.places & PLACE_AIT)
                ait.at[k.tag] = k.parse;
            if (k.places & PLACE_DSMCC)
                dsmcc.at[k.tag] = k.parse;
        }
    }
};

constexpr PlaceTables kPlaces;

}  // namespace

const DescriptorFactoryTable& descriptorFactories(DescriptorPlace place) {
    switch (place) {
        case PLACE_SI_LOOP:
            return kPlaces.si;
        case PLACE_AIT:
            return kPlaces.ait;
        case PLACE_DSMCC:
            return kPlaces.dsmcc;
    }
    return kPlaces.none;
}

}  // namespace Sarn
