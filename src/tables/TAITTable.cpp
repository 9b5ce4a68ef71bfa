#include "TAITTable.h"

#include <memory>

#include "AITDescriptorSlots.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Owned.h"
#include "TableParse.h"

namespace Sarn {

TAITTable::TAITTable(unsigned char* bytes, unsigned int len)
    : TISDBTVersionedTable(TYPE_AIT, 4, 0x74, bytes, len), descriptors{} {}

TAITTable::~TAITTable() {
    ait::deleteSlots(descriptors);
    owned::deleteAll(applications);
}

namespace {
bool tooShort(unsigned int shown, unsigned int available, unsigned short* err) {
    SARN_LOGW("%s: TAITTable::parse: Item length not valid: %u > %u. Aborting!", shown, available);
    return parse::refuse(err, ERROR_DATA_TOO_SHORT);
}
}  // namespace

TAITTable* TAITTable::parse(unsigned char* data, unsigned int len, int, int checkCrc,
                            unsigned short* err, TAITTable* previous) {
    memory::Arena arena(tables::blockFor(len));
    return tables::parse(
        tables::build<TAITTable>(arena, data, len), data, len, checkCrc, err, previous,
        [&](TAITTable& table, unsigned short body) {
            // The body runs from byte 8 to the CRC; never past the bytes handed in,
            // even when a section_length below 4 made the count wrap. Descriptors and
            // applications point into the caller's bytes.
            bytes::Reader r(data, bodyEnd(8, body, len));
            r.skip(8);

            // common_descriptors_length (12 bits after 4 reserved bits) and the loop
            if (!r.has(2))
                return tooShort(2, r.remaining(), err);
            const unsigned short commonLength = r.length12();
            if (commonLength > r.remaining())
                return tooShort(commonLength, r.remaining(), err);
            if (!ait::walkDescriptorLoop(&arena, r, commonLength, table.descriptors, err, nullptr))
                return false;

            // application_loop_length (12 bits after 4 reserved bits) and the applications
            if (!r.has(2))
                return tooShort(2, r.remaining(), err);
            const unsigned short appLoop = r.length12();
            if (appLoop > r.remaining())
                return tooShort(appLoop, r.remaining(), err);
            return tables::readLoop<TApplication>(
                arena, r, appLoop, "TAITTable", err, [&](TApplication* app) {
                    app->setParentAITTable(&table);
                    // The table's application_type is authoritative for its applications.
                    app->setApplicationType(table.getApplicationType());
                    // The same application twice in one section: the later one stays.
                    owned::replace(table.applications, app->getHashID(), app);
                });
        });
}

// Each typed getter hands out the descriptor of its slot, which only ever
// holds that class.
#define SARN_AIT_SLOT_GETTER(Type, name, slot)             \
    Type* TAITTable::name() const {                        \
        return static_cast<Type*>(descriptors[ait::slot]); \
    }
SARN_AIT_SLOT_GETTER(TApplicationDescriptor, getApplicationDescriptor, SLOT_APPLICATION)
SARN_AIT_SLOT_GETTER(TApplicationNameDescriptor, getApplicationNameDescriptor, SLOT_NAME)
SARN_AIT_SLOT_GETTER(TApplicationIconDescriptor, getApplicationIconDescriptor, SLOT_ICON)
SARN_AIT_SLOT_GETTER(TExternalApplicationAuthorizationDescriptor,
                     getExternalApplicationAuthorizationDescriptor, SLOT_AUTHORIZATION)
SARN_AIT_SLOT_GETTER(TTransportProtocolDescriptor, getTransportProtocolDescriptor, SLOT_TRANSPORT)
SARN_AIT_SLOT_GETTER(TIPSignalingDescriptor, getIPSignalingDescriptor, SLOT_IP_SIGNALING)
SARN_AIT_SLOT_GETTER(TPrefetchDescriptor, getPrefetchDescriptor, SLOT_PREFETCH)
SARN_AIT_SLOT_GETTER(TDIILocationDescriptor, getDIILocationDescriptor, SLOT_DII_LOCATION)
SARN_AIT_SLOT_GETTER(TGingaApplicationDescriptor, getGingaApplicationDescriptor, SLOT_GINGA)
SARN_AIT_SLOT_GETTER(TGingaApplicationLocationDescriptor, getGingaApplicationLocationDescriptor,
                     SLOT_GINGA_LOCATION)
#undef SARN_AIT_SLOT_GETTER

TISDBTDescriptor* TAITTable::getDescriptor(unsigned char tag) const {
    return ait::lookup(descriptors, tag, true);
}

std::list<unsigned char> TAITTable::getDescriptorTags() const {
    return ait::tagsOf(descriptors);
}

SARN_OWNED_MAP_METHODS(TAITTable, std::string, TApplication, applications, getHashID,
                       addApplication, getApplication, getApplicationsIDs, removeApplication)

std::string TAITTable::toJSON() const {
    std::string out = json::tableText(dataLength);
    out.push_back('{');
    appendHeaderJSON(out);
    json::Out o(out);
    o << ",\"descriptors\":";
    ait::appendSlotsJSON(o, descriptors, true);
    o << ",\"application_loop\":";
    json::appendArray(o, applications, [&](const auto& entry) {
        const TApplication* app = entry.second;
        const TApplicationIdentifier* id = app->applicationIdentifier;
        o << "{\"application_identifier\":{\"organization_id\":"
          << (id == nullptr ? 0u : id->getOrganizationID())
          << ",\"application_id\":" << (id == nullptr ? 0 : id->getApplicationID())
          << "},\"application_control_code\":" << app->controlCode
          << ",\"recommended_resolution\":" << app->recommendedResolution << ",\"descriptors\":";
        ait::appendSlotsJSON(o, app->descriptors, false);
        o << '}';
    });
    o << '}';
    return out;
}

}  // namespace Sarn
