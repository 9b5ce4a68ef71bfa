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
#include "TEITTable.h"
#include "TEventItem.h"
#include "TPATTable.h"
#include "TProgramAssociation.h"

#endif
