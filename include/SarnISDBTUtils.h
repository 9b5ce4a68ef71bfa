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

// Tables
#include "TAITTable.h"
#include "TApplication.h"
#include "TApplicationIdentifier.h"
#include "TPATTable.h"
#include "TProgramAssociation.h"

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
