#include "TAITTable.h"

#include <cstdio>

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "TGingaHtml5ApplicationDescriptor.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"

namespace Sarn {

namespace {

// The table and every application keep the AIT descriptors in ten slots, one
// per kind; the two Ginga slots hold the Java, NCL or HTML5 variant.
enum Slot {
    SLOT_APPLICATION,
    SLOT_NAME,
    SLOT_ICON,
    SLOT_AUTHORIZATION,
    SLOT_TRANSPORT,
    SLOT_IP_SIGNALING,
    SLOT_PREFETCH,
    SLOT_DII_LOCATION,
    SLOT_GINGA,
    SLOT_GINGA_LOCATION,
    SLOT_COUNT
};
using Slots = TISDBTDescriptor* [SLOT_COUNT];

constexpr unsigned char kStuffingTag = 0x42;

/** Which class parses the tag and where it is kept; slot -1 for no class. */
TISDBTDescriptor* parseDescriptor(unsigned char* d, unsigned int n, unsigned short* err,
                                  int* slot) {
    switch (d[0]) {
        case 0x00:
            *slot = SLOT_APPLICATION;
            return TApplicationDescriptor::parse(d, n, nullptr, err);
        case 0x01:
            *slot = SLOT_NAME;
            return TApplicationNameDescriptor::parse(d, n, nullptr, err);
        case 0x02:
            *slot = SLOT_TRANSPORT;
            return TTransportProtocolDescriptor::parse(d, n, nullptr, err);
        case 0x03:
            *slot = SLOT_GINGA;
            return TGingaJavaApplicationDescriptor::parse(d, n, nullptr, err);
        case 0x04:
            *slot = SLOT_GINGA_LOCATION;
            return TGingaJavaApplicationLocationDescriptor::parse(d, n, nullptr, err);
        case 0x05:
            *slot = SLOT_AUTHORIZATION;
            return TExternalApplicationAuthorizationDescriptor::parse(d, n, nullptr, err);
        case 0x06:
            *slot = SLOT_GINGA;
            return TGingaNCLApplicationDescriptor::parse(d, n, nullptr, err);
        case 0x07:
            *slot = SLOT_GINGA_LOCATION;
            return TGingaNCLApplicationLocationDescriptor::parse(d, n, nullptr, err);
        case 0x0B:
            *slot = SLOT_ICON;
            return TApplicationIconDescriptor::parse(d, n, nullptr, err);
        case 0x0C:
            *slot = SLOT_PREFETCH;
            return TPrefetchDescriptor::parse(d, n, nullptr, err);
        case 0x0D:
            *slot = SLOT_DII_LOCATION;
            return TDIILocationDescriptor::parse(d, n, nullptr, err);
        case 0x0E:
            *slot = SLOT_GINGA;
            return TGingaHtml5ApplicationDescriptor::parse(d, n, nullptr, err);
        case 0x0F:
            *slot = SLOT_GINGA_LOCATION;
            return TGingaHtml5ApplicationLocationDescriptor::parse(d, n, nullptr, err);
        case 0x11:
            *slot = SLOT_IP_SIGNALING;
            return TIPSignalingDescriptor::parse(d, n, nullptr, err);
        default:
            *slot = -1;
            return nullptr;
    }
}

/** The table says what it does not handle yet for the Java and NCL descriptors. */
void logCommonGingaDescriptor(unsigned char tag) {
    switch (tag) {
        case 0x03:
            SARN_LOGW("%s: TAITTable::parse: Ginga Java Application Descriptor... WHAT TO DO????");
            break;
        case 0x04:
            SARN_LOGW(
                "%s: TAITTable::parse: Ginga Java Application Location Descriptor... WHAT TO "
                "DO????");
            break;
        case 0x06:
            SARN_LOGW("%s: TAITTable::parse: Ginga NCL Application Descriptor... WHAT TO DO????");
            break;
        case 0x07:
            SARN_LOGW(
                "%s: TAITTable::parse: Ginga NCL Application Location Descriptor... WHAT TO "
                "DO????");
            break;
        default:
            break;
    }
}

/** An application takes its type from its Ginga descriptors (Java 1, NCL 9, HTML5 11). */
void takeApplicationType(unsigned char tag, unsigned short* applicationType) {
    switch (tag) {
        case 0x03:
        case 0x04:
            *applicationType = 1;
            break;
        case 0x06:
        case 0x07:
            *applicationType = 9;
            break;
        case 0x0E:
        case 0x0F:
            *applicationType = 11;
            break;
        default:
            break;
    }
}

/**
 * Walks one AIT descriptor loop of loopLength bytes from data + *pos, where
 * *remaining bytes are left for the rest of the owner. The owner is the
 * table (applicationType null) or an application. Returns false, logged and
 * with the code set, when a descriptor overruns or fails.
 */
bool walkDescriptorLoop(unsigned char* data, unsigned int* pos, unsigned int* remaining,
                        unsigned short loopLength, Slots& slots, unsigned short* err,
                        unsigned short* applicationType) {
    const bool table = applicationType == nullptr;
    const char* owner = table ? "TAITTable" : "TApplication";
    // A 16-bit count, as on the wire; it only ends the loop when a
    // descriptor ends exactly on it, and the checks against *remaining keep
    // the walk inside the bytes in any case.
    unsigned short loop = loopLength;
    while (loop != 0) {
        unsigned char* d = data + *pos;
        const unsigned int headroom = *remaining - 2u;  // wraps below 2, as the check expects
        if (*remaining < 2 || d[1] > headroom) {
            // The table reports the loop length left, an application the
            // descriptor's own length.
            const unsigned int shown = table || *remaining < 2 ? loop : d[1];
            SARN_LOGW("%s: %s::parse: Item length not valid: %u > %u. Aborting!", owner, shown,
                      headroom);
            ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
            return false;
        }
        const unsigned int n = d[1] + 2u;
        if (table)
            logCommonGingaDescriptor(d[0]);
        else
            takeApplicationType(d[0], applicationType);
        int slot = -1;
        TISDBTDescriptor* descriptor = parseDescriptor(d, n, err, &slot);
        if (slot >= 0) {
            if (descriptor == nullptr)
                return false;  // the descriptor's class has logged and set the code
            // A second descriptor of a kind replaces the first.
            delete slots[slot];
            slots[slot] = descriptor;
        } else if (d[0] != kStuffingTag) {
            SARN_LOGW("%s: %s::parse: Unknown descriptor: 0x%02X. Ignored!", owner,
                      static_cast<unsigned int>(d[0]));
        }
        *pos += n;
        *remaining -= n;
        loop = static_cast<unsigned short>(loop - n);
    }
    return true;
}

/** True when d holds a descriptor with that tag. */
inline bool hasTag(const TISDBTDescriptor* d, unsigned char tag) {
    return d != nullptr && d->getDescriptorTag() == tag;
}

/**
 * Lookup by tag shared by the table and the applications. The HTML5 tags
 * differ by owner: the table looks for 0x0F in the Ginga application slot,
 * an application answers 0x0E and 0x0F from the location slot holding 0x0F.
 */
TISDBTDescriptor* lookup(const Slots& slots, unsigned char tag, bool table) {
    switch (tag) {
        case 0x00:
            return slots[SLOT_APPLICATION];
        case 0x01:
            return slots[SLOT_NAME];
        case 0x02:
            return slots[SLOT_TRANSPORT];
        case 0x05:
            return slots[SLOT_AUTHORIZATION];
        case 0x0B:
            return slots[SLOT_ICON];
        case 0x0C:
            return slots[SLOT_PREFETCH];
        case 0x0D:
            return slots[SLOT_DII_LOCATION];
        case 0x11:
            return slots[SLOT_IP_SIGNALING];
        case 0x03:
        case 0x06:
            return hasTag(slots[SLOT_GINGA], tag) ? slots[SLOT_GINGA] : nullptr;
        case 0x04:
        case 0x07:
            return hasTag(slots[SLOT_GINGA_LOCATION], tag) ? slots[SLOT_GINGA_LOCATION] : nullptr;
        case 0x0E:
            if (table)
                return hasTag(slots[SLOT_GINGA], 0x0E) ? slots[SLOT_GINGA] : nullptr;
            return hasTag(slots[SLOT_GINGA_LOCATION], 0x0F) ? slots[SLOT_GINGA_LOCATION] : nullptr;
        case 0x0F:
            if (table)
                return hasTag(slots[SLOT_GINGA], 0x0F) ? slots[SLOT_GINGA] : nullptr;
            return hasTag(slots[SLOT_GINGA_LOCATION], 0x0F) ? slots[SLOT_GINGA_LOCATION] : nullptr;
        default:
            return nullptr;
    }
}

std::list<unsigned char> tagsOf(const Slots& slots) {
    std::list<unsigned char> tags;
    for (const TISDBTDescriptor* d : slots)
        if (d != nullptr)
            tags.push_back(d->getDescriptorTag());
    return tags;
}

/**
 * Renders the descriptors as the tag list and the lookup see them: each
 * present slot in order, looked up by its tag. A lookup that finds nothing
 * (the HTML5 asymmetries) leaves its element out.
 */
void appendSlotsJSON(json::Out& o, const Slots& slots, bool table) {
    const TISDBTDescriptor* found[SLOT_COUNT];
    int n = 0;
    for (const TISDBTDescriptor* d : slots)
        if (d != nullptr)
            found[n++] = lookup(slots, d->getDescriptorTag(), table);
    json::appendDescriptorArray(o, found, found + n);
}

void deleteSlots(Slots& slots) {
    for (TISDBTDescriptor*& d : slots) {
        delete d;
        d = nullptr;
    }
}

template <class T, class Base>
Base* copyAs(const Base* d) {
    const T* variant = dynamic_cast<const T*>(d);
    return variant == nullptr ? nullptr : new T(variant);
}

TGingaApplicationDescriptor* copyGingaApplication(const TGingaApplicationDescriptor* d) {
    switch (d == nullptr ? -1 : d->getDescriptorTag()) {
        case 0x03:
            return copyAs<TGingaJavaApplicationDescriptor>(d);
        case 0x06:
            return copyAs<TGingaNCLApplicationDescriptor>(d);
        case 0x0E:
            return copyAs<TGingaHtml5ApplicationDescriptor>(d);
        default:
            return nullptr;
    }
}

TGingaApplicationLocationDescriptor* copyGingaLocation(
    const TGingaApplicationLocationDescriptor* d) {
    switch (d == nullptr ? -1 : d->getDescriptorTag()) {
        case 0x04:
            return copyAs<TGingaJavaApplicationLocationDescriptor>(d);
        case 0x07:
            return copyAs<TGingaNCLApplicationLocationDescriptor>(d);
        case 0x0F:
            return copyAs<TGingaHtml5ApplicationLocationDescriptor>(d);
        default:
            return nullptr;
    }
}

template <class T>
T* copyOf(const T* d) {
    return d == nullptr ? nullptr : new T(d);
}

}  // namespace

// --- TApplicationIdentifier -------------------------------------------------

TApplicationIdentifier::TApplicationIdentifier() : organizationId(0), applicationId(0) {}

TApplicationIdentifier::TApplicationIdentifier(unsigned int organization,
                                               unsigned short application)
    : organizationId(organization), applicationId(application) {}

TApplicationIdentifier::TApplicationIdentifier(const TApplicationIdentifier* src)
    : organizationId(src->organizationId), applicationId(src->applicationId) {}

TApplicationIdentifier::~TApplicationIdentifier() {}

TApplicationIdentifier* TApplicationIdentifier::parse(unsigned char* data, unsigned int len, int,
                                                      unsigned int* bytesRead,
                                                      unsigned short* err) {
    // organization_id (32), application_id (16)
    if (data == nullptr || len < 6) {
        SARN_LOGW("%s: TApplicationIdentifier::parse: Item length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = 6;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return new TApplicationIdentifier(bytes::be32(data), bytes::be16(data + 4));
}

std::string TApplicationIdentifier::calculateHashID(unsigned int organizationId,
                                                    unsigned short applicationId) {
    char key[16];
    std::snprintf(key, sizeof key, "%08X%04X", organizationId,
                  static_cast<unsigned int>(applicationId));
    return std::string(key);
}

std::string TApplicationIdentifier::calculateHashID(const TApplicationIdentifier* identifier) {
    return identifier == nullptr
               ? calculateHashID(0u, 0)
               : calculateHashID(identifier->organizationId, identifier->applicationId);
}

// --- TApplication -----------------------------------------------------------

TApplication::TApplication(unsigned char* bytes, unsigned int len)
    : TISDBTDataHolder(bytes, len, 0),
      parent(nullptr),
      controlCode(0),
      recommendedResolution(0),
      applicationType(0),
      applicationIdentifier(nullptr),
      descriptors{} {}

TApplication::TApplication(TApplication* src, int inherit)
    : TISDBTDataHolder(src == nullptr ? nullptr : src->data, src == nullptr ? 0 : src->dataLength,
                       0),
      parent(nullptr),
      controlCode(0),
      recommendedResolution(0),
      applicationType(0),
      applicationIdentifier(nullptr),
      descriptors{} {
    if (src == nullptr)
        return;
    hashId = src->hashId;
    controlCode = src->controlCode;
    recommendedResolution = src->recommendedResolution;
    applicationType = src->applicationType;
    applicationIdentifier = copyOf(src->applicationIdentifier);
    descriptors[SLOT_APPLICATION] = copyOf(src->getApplicationDescriptor(inherit, nullptr));
    descriptors[SLOT_NAME] = copyOf(src->getApplicationNameDescriptor(inherit, nullptr));
    descriptors[SLOT_ICON] = copyOf(src->getApplicationIconDescriptor(inherit, nullptr));
    descriptors[SLOT_AUTHORIZATION] =
        copyOf(src->getExternalApplicationAuthorizationDescriptor(inherit, nullptr));
    descriptors[SLOT_TRANSPORT] =
        TTransportProtocolDescriptor::clone(src->getTransportProtocolDescriptor(inherit, nullptr));
    descriptors[SLOT_IP_SIGNALING] = copyOf(src->getIPSignalingDescriptor(inherit, nullptr));
    descriptors[SLOT_PREFETCH] = copyOf(src->getPrefetchDescriptor(inherit, nullptr));
    descriptors[SLOT_DII_LOCATION] = copyOf(src->getDIILocationDescriptor(inherit, nullptr));
    descriptors[SLOT_GINGA] =
        copyGingaApplication(src->getGingaApplicationDescriptor(inherit, nullptr));
    descriptors[SLOT_GINGA_LOCATION] =
        copyGingaLocation(src->getGingaApplicationLocationDescriptor(inherit, nullptr));
}

TApplication::~TApplication() {
    delete applicationIdentifier;
    deleteSlots(descriptors);
}

TApplication* TApplication::parse(unsigned char* data, unsigned int len, int,
                                  unsigned int* bytesRead, unsigned short* err) {
    // application_identifier (6 bytes), application_control_code, 4 bits
    // kept as the recommended resolution, application_descriptors_loop_length
    // (12 bits), descriptors.
    if (data == nullptr || len < 6) {
        SARN_LOGW("%s: TApplication::parse: Item length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    TApplication* app = new TApplication(data, len);
    unsigned int consumed = 0;
    app->applicationIdentifier = TApplicationIdentifier::parse(data, len, 1, &consumed, err);
    if (app->applicationIdentifier == nullptr) {
        SARN_LOGW("%s: TApplication::parse: Invalid Application Identifier. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_INVALID_ITEM);
        delete app;
        return nullptr;
    }
    app->hashId = TApplicationIdentifier::calculateHashID(app->applicationIdentifier);
    if (len < 9) {
        // Control code and loop length are not in the bytes.
        SARN_LOGW("%s: TApplication::parse: Item length not valid: %u. Aborting!", len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete app;
        return nullptr;
    }
    app->controlCode = data[6];
    app->recommendedResolution = static_cast<unsigned char>(data[7] >> 4);
    const unsigned short loopLength = bytes::len12(data + 7);
    unsigned int pos = 9;
    unsigned int remaining = len - 9;
    if (loopLength > remaining) {
        SARN_LOGW("%s: TApplication::parse: Item length not valid: %u > %u. Aborting!",
                  static_cast<unsigned int>(loopLength), remaining);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete app;
        return nullptr;
    }
    if (!walkDescriptorLoop(data, &pos, &remaining, loopLength, app->descriptors, err,
                            &app->applicationType)) {
        delete app;
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = pos;
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return app;
}

TISDBTDescriptor* TApplication::slot(int index, int inherit, int* fromTable) const {
    TISDBTDescriptor* own = descriptors[index];
    if (own != nullptr || inherit == 0 || parent == nullptr)
        return own;
    TISDBTDescriptor* common = parent->descriptors[index];
    if (common != nullptr && fromTable != nullptr)
        *fromTable = 1;
    return common;
}

TApplicationDescriptor* TApplication::getApplicationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TApplicationDescriptor*>(slot(SLOT_APPLICATION, inherit, fromTable));
}
TApplicationNameDescriptor* TApplication::getApplicationNameDescriptor(int inherit,
                                                                       int* fromTable) const {
    return static_cast<TApplicationNameDescriptor*>(slot(SLOT_NAME, inherit, fromTable));
}
TApplicationIconDescriptor* TApplication::getApplicationIconDescriptor(int inherit,
                                                                       int* fromTable) const {
    return static_cast<TApplicationIconDescriptor*>(slot(SLOT_ICON, inherit, fromTable));
}
TExternalApplicationAuthorizationDescriptor*
TApplication::getExternalApplicationAuthorizationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TExternalApplicationAuthorizationDescriptor*>(
        slot(SLOT_AUTHORIZATION, inherit, fromTable));
}
TTransportProtocolDescriptor* TApplication::getTransportProtocolDescriptor(int inherit,
                                                                           int* fromTable) const {
    return static_cast<TTransportProtocolDescriptor*>(slot(SLOT_TRANSPORT, inherit, fromTable));
}
TIPSignalingDescriptor* TApplication::getIPSignalingDescriptor(int inherit, int* fromTable) const {
    return static_cast<TIPSignalingDescriptor*>(slot(SLOT_IP_SIGNALING, inherit, fromTable));
}
TPrefetchDescriptor* TApplication::getPrefetchDescriptor(int inherit, int* fromTable) const {
    return static_cast<TPrefetchDescriptor*>(slot(SLOT_PREFETCH, inherit, fromTable));
}
TDIILocationDescriptor* TApplication::getDIILocationDescriptor(int inherit, int* fromTable) const {
    return static_cast<TDIILocationDescriptor*>(slot(SLOT_DII_LOCATION, inherit, fromTable));
}
TGingaApplicationDescriptor* TApplication::getGingaApplicationDescriptor(int inherit,
                                                                         int* fromTable) const {
    return static_cast<TGingaApplicationDescriptor*>(slot(SLOT_GINGA, inherit, fromTable));
}
TGingaApplicationLocationDescriptor* TApplication::getGingaApplicationLocationDescriptor(
    int inherit, int* fromTable) const {
    return static_cast<TGingaApplicationLocationDescriptor*>(
        slot(SLOT_GINGA_LOCATION, inherit, fromTable));
}

TISDBTDescriptor* TApplication::getDescriptor(unsigned char tag) const {
    return lookup(descriptors, tag, false);
}

std::list<unsigned char> TApplication::getDescriptorTags() const {
    return tagsOf(descriptors);
}

// --- TAITTable --------------------------------------------------------------

TAITTable::TAITTable(unsigned char* bytes, unsigned int len)
    : TISDBTVersionedTable(TYPE_AIT, 4, 0x74, bytes, len), descriptors{} {}

TAITTable::~TAITTable() {
    deleteSlots(descriptors);
    owned::deleteAll(applications);
}

TAITTable* TAITTable::parse(unsigned char* data, unsigned int len, int, int checkCrc,
                            unsigned short* err, TAITTable* previous) {
    TAITTable* table = new TAITTable(data, len);
    unsigned short body = 0;
    if (!table->parseCommonHeader(data, len, checkCrc, err, &body, previous)) {
        delete table;
        return nullptr;
    }
    // The body runs from byte 8 to the CRC; never past the bytes handed in,
    // even when a section_length below 4 made the count wrap. Descriptors and
    // applications point into the caller's bytes.
    const unsigned int end = bodyEnd(8, body, len);
    unsigned int remaining = end > 8 ? end - 8 : 0;
    unsigned int pos = 8;
    auto fail = [table](unsigned int shown, unsigned int available, unsigned short* code) {
        SARN_LOGW("%s: TAITTable::parse: Item length not valid: %u > %u. Aborting!", shown,
                  available);
        ISDBTUtils::setErrorCode(code, ERROR_DATA_TOO_SHORT);
        delete table;
        return static_cast<TAITTable*>(nullptr);
    };

    // common_descriptors_length (12 bits after 4 reserved bits) and the loop
    if (remaining < 2)
        return fail(2, remaining, err);
    const unsigned short commonLength = bytes::len12(data + pos);
    pos += 2;
    remaining -= 2;
    if (commonLength > remaining)
        return fail(commonLength, remaining, err);
    if (!walkDescriptorLoop(data, &pos, &remaining, commonLength, table->descriptors, err,
                            nullptr)) {
        delete table;
        return nullptr;
    }

    // application_loop_length (12 bits after 4 reserved bits) and the applications
    if (remaining < 2)
        return fail(2, remaining, err);
    unsigned short appLoop = bytes::len12(data + pos);
    pos += 2;
    remaining -= 2;
    if (appLoop > remaining)
        return fail(appLoop, remaining, err);
    while (appLoop != 0) {
        unsigned int consumed = 0;
        TApplication* app = TApplication::parse(data + pos, remaining, 1, &consumed, err);
        if (app == nullptr) {
            SARN_LOGW("%s: TAITTable::parse: Invalid item. Aborting!");
            ISDBTUtils::setErrorCode(err, ERROR_INVALID_ITEM);
            delete table;
            return nullptr;
        }
        app->setParentAITTable(table);
        // The table's application_type is authoritative for its applications.
        app->setApplicationType(table->getApplicationType());
        // The same application twice in one section: the later one stays.
        owned::replace(table->applications, app->getHashID(), app);
        pos += consumed;
        remaining -= consumed;
        appLoop = static_cast<unsigned short>(appLoop - consumed);
    }
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return table;
}

TApplicationDescriptor* TAITTable::getApplicationDescriptor() const {
    return static_cast<TApplicationDescriptor*>(descriptors[SLOT_APPLICATION]);
}
TApplicationNameDescriptor* TAITTable::getApplicationNameDescriptor() const {
    return static_cast<TApplicationNameDescriptor*>(descriptors[SLOT_NAME]);
}
TApplicationIconDescriptor* TAITTable::getApplicationIconDescriptor() const {
    return static_cast<TApplicationIconDescriptor*>(descriptors[SLOT_ICON]);
}
TExternalApplicationAuthorizationDescriptor*
TAITTable::getExternalApplicationAuthorizationDescriptor() const {
    return static_cast<TExternalApplicationAuthorizationDescriptor*>(
        descriptors[SLOT_AUTHORIZATION]);
}
TTransportProtocolDescriptor* TAITTable::getTransportProtocolDescriptor() const {
    return static_cast<TTransportProtocolDescriptor*>(descriptors[SLOT_TRANSPORT]);
}
TIPSignalingDescriptor* TAITTable::getIPSignalingDescriptor() const {
    return static_cast<TIPSignalingDescriptor*>(descriptors[SLOT_IP_SIGNALING]);
}
TPrefetchDescriptor* TAITTable::getPrefetchDescriptor() const {
    return static_cast<TPrefetchDescriptor*>(descriptors[SLOT_PREFETCH]);
}
TDIILocationDescriptor* TAITTable::getDIILocationDescriptor() const {
    return static_cast<TDIILocationDescriptor*>(descriptors[SLOT_DII_LOCATION]);
}
TGingaApplicationDescriptor* TAITTable::getGingaApplicationDescriptor() const {
    return static_cast<TGingaApplicationDescriptor*>(descriptors[SLOT_GINGA]);
}
TGingaApplicationLocationDescriptor* TAITTable::getGingaApplicationLocationDescriptor() const {
    return static_cast<TGingaApplicationLocationDescriptor*>(descriptors[SLOT_GINGA_LOCATION]);
}

TISDBTDescriptor* TAITTable::getDescriptor(unsigned char tag) const {
    return lookup(descriptors, tag, true);
}

std::list<unsigned char> TAITTable::getDescriptorTags() const {
    return tagsOf(descriptors);
}

TApplication* TAITTable::getApplication(std::string hashId) const {
    auto it = applications.find(hashId);
    return it == applications.end() ? nullptr : it->second;
}

std::list<std::string> TAITTable::getApplicationsIDs() const {
    return owned::keys(applications);
}

void TAITTable::addApplication(TApplication* application) {
    if (application != nullptr)
        applications[application->getHashID()] = application;
}

bool TAITTable::removeApplication(std::string hashId) {
    auto it = applications.find(hashId);
    if (it == applications.end())
        return false;
    delete it->second;
    applications.erase(it);
    return true;
}

std::string TAITTable::toJSON() const {
    std::string out;
    out.push_back('{');
    appendHeaderJSON(out);
    json::Out o(out);
    o << ",\"descriptors\":";
    appendSlotsJSON(o, descriptors, true);
    o << ",\"application_loop\":[";
    bool first = true;
    for (const auto& entry : applications) {
        const TApplication* app = entry.second;
        const TApplicationIdentifier* id = app->applicationIdentifier;
        if (!first)
            o << ',';
        first = false;
        o << "{\"application_identifier\":{\"organization_id\":"
          << (id == nullptr ? 0u : id->getOrganizationID())
          << ",\"application_id\":" << (id == nullptr ? 0 : id->getApplicationID())
          << "},\"application_control_code\":" << app->controlCode
          << ",\"recommended_resolution\":" << app->recommendedResolution << ",\"descriptors\":";
        appendSlotsJSON(o, app->descriptors, false);
        o << '}';
    }
    o << "]}";
    return out;
}

}  // namespace Sarn
