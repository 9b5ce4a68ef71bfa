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
#include "TDDBTable.h"
#include "TDSMCCSectionTable.h"
#include "TDsiDiiTable.h"
#include "TPATTable.h"
#include "TProgramAssociation.h"

// Descriptors
#include "TNPTEndpointDescriptor.h"
#include "TNPTReferenceDescriptor.h"
#include "TStreamEventDescriptor.h"
#include "TStreamModeDescriptor.h"

#endif
