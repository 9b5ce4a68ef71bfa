#include "TApplicationIdentifier.h"

#include <cstdio>
#include <memory>

#include "ISDBTUtils.h"
#include "Log.h"
#include "Parse.h"
#include "Reader.h"

namespace Sarn {

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
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    const unsigned int organization = r.u32();
    const unsigned short application = r.u16();
    std::unique_ptr<TApplicationIdentifier> id(
        new TApplicationIdentifier(organization, application));
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    return parse::done(err, id);
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

}  // namespace Sarn
