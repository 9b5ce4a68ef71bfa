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

// Descriptors
#include "TCarouselIdentifierDescriptor.h"
#include "TDataComponentDescriptor.h"
#include "TISO639LanguageDescriptor.h"
#include "TLocalTimeOffsetDescriptor.h"
#include "TLocalTimeOffsetDescriptorItem.h"
#include "TNetworkNameDescriptor.h"
#include "TServiceDescriptor.h"
#include "TStreamIdentifierDescriptor.h"
#include "TTSInformationDescriptor.h"
#include "TTSInformationDescriptorItem.h"

// Tables
#include "ProgramData.h"
#include "TNITTable.h"
#include "TPATTable.h"
#include "TPMTTable.h"
#include "TProgramAssociation.h"
#include "TProgramMap.h"
#include "TSDTTable.h"
#include "TServiceDescription.h"
#include "TTOTTable.h"
#include "TTransportStreamInfo.h"

#endif
