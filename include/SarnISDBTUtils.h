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
#include "TPATTable.h"
#include "TProgramAssociation.h"
// DSM-CC sections, software download trigger and datacaster carousel tables
#include "TDCTTable.h"
#include "TDDBTable.h"
#include "TDSMCCSectionTable.h"
#include "TDatacasterCarousel.h"
#include "TDownloadContent.h"
#include "TDsiDiiTable.h"
#include "TSDTTTable.h"
#include "TScheduleInfo.h"

// DSM-CC stream descriptors and download descriptors
#include "TCompatibilityDescriptor.h"
#include "TCompatibilityDescriptorItem.h"
#include "TCompatibilityDescriptorSubItem.h"
#include "TDownloadContentDescriptor.h"
#include "TDownloadContentDescriptorItem.h"
#include "TNPTEndpointDescriptor.h"
#include "TNPTReferenceDescriptor.h"
#include "TStreamEventDescriptor.h"
#include "TStreamModeDescriptor.h"

#endif
