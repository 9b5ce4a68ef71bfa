#ifndef SARN_SARNISDBTUTILS_H
#define SARN_SARNISDBTUTILS_H

// Umbrella header: every public class of libSarnISDBTUtils.

#include "DescriptorLoop.h"
#include "ISDBTUtils.h"
#include "ParserUtils.h"
#include "TISDBTDataHolder.h"
#include "TISDBTDescriptor.h"
#include "TISDBTTable.h"
#include "TISDBTVersionedTable.h"

// Event descriptors
#include "TAudioComponentDescriptor.h"
#include "TComponentDescriptor.h"
#include "TContentDescriptor.h"
#include "TDigitalCopyControlDescriptor.h"
#include "TDigitalCopyControlDescriptorItem.h"
#include "TExtendedEventDescriptor.h"
#include "TExtendedEventDescriptorItem.h"
#include "TParentalRatingDescriptor.h"
#include "TParentalRatingDescriptorItem.h"
#include "TShortEventDescriptor.h"

// Tables
#include "TAITTable.h"
#include "TApplication.h"
#include "TApplicationIdentifier.h"
#include "TEITTable.h"
#include "TEventItem.h"
#include "TPATTable.h"
#include "TProgramAssociation.h"

// Stand-alone stream descriptors
#include "TAACDescriptor.h"
#include "TAVCTimingAndHRDDescriptor.h"
#include "TAVCVideoDescriptor.h"
#include "TCAIdentifierDescriptor.h"
#include "TCarouselCompatibleCompositeDescriptor.h"
#include "TConditionalPlaybackDescriptor.h"
#include "TCopyrightDescriptor.h"
#include "THierarchicalTransmissionDescriptor.h"
#include "TVideoDecodeControlDescriptor.h"

// Stand-alone network and service descriptors
#include "TBouquetNameDescriptor.h"
#include "TCountryAvailabilityDescriptor.h"
#include "TPartialReceptionDescriptor.h"
#include "TServiceListDescriptor.h"
#include "TServiceListDescriptorItem.h"
#include "TSystemManagementDescriptor.h"
#include "TTerrestrialDeliverySystemDescriptor.h"

// Emergency warning broadcast
#include "TEmergencyInformationDescriptor.h"
#include "TEmergencyInformationDescriptorItem.h"

// Libras (sign language) descriptors
#include "TLCMDescriptor.h"
#include "TLDMDescriptor.h"

// Content availability and time-shifted service descriptors
#include "TContentAvailabilityDescriptor.h"
#include "TTimeShiftedServiceDescriptor.h"

// Application information table descriptors
#include "TApplicationDescriptor.h"
#include "TApplicationDescriptorProfile.h"
#include "TApplicationIconDescriptor.h"
#include "TApplicationNameDescriptor.h"
#include "TApplicationNameDescriptorItem.h"
#include "TCarouselSelector.h"
#include "TDIILocationDescriptor.h"
#include "TDIILocationDescriptorItem.h"
#include "TExternalApplicationAuthorizationDescriptor.h"
#include "TExternalApplicationAuthorizationDescriptorItem.h"
#include "TGingaApplicationDescriptor.h"
#include "TGingaApplicationLocationDescriptor.h"
#include "TGingaHtml5ApplicationDescriptor.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"
#include "TIPSignalingDescriptor.h"
#include "TPrefetchDescriptor.h"
#include "TPrefetchDescriptorItem.h"
#include "TTransportProtocolDescriptor.h"
#include "TTransportProtocolDescriptorDC.h"
#include "TTransportProtocolDescriptorIC.h"
#include "TTransportProtocolDescriptorIP.h"
#include "TTransportProtocolDescriptorOC.h"
#include "TTransportProtocolDescriptorPC.h"

#endif
