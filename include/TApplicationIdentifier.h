#ifndef SARN_TAPPLICATIONIDENTIFIER_H
#define SARN_TAPPLICATIONIDENTIFIER_H

#include <string>

namespace Sarn {

/**
 * Application identifier of the AIT: organization_id (32 bits) and
 * application_id (16 bits). Applications are keyed by the 12-character
 * hash ID "%08X%04X" of the two, so keys sort by organization, then
 * application.
 */
class TApplicationIdentifier {
  public:
    static TApplicationIdentifier* parse(unsigned char* data, unsigned int len, int,
                                         unsigned int* bytesRead, unsigned short* err);
    static std::string calculateHashID(unsigned int organizationId, unsigned short applicationId);
    /** Hash ID of identifier ("000000000000" for null). */
    static std::string calculateHashID(const TApplicationIdentifier* identifier);

    TApplicationIdentifier();
    TApplicationIdentifier(unsigned int organizationId, unsigned short applicationId);
    explicit TApplicationIdentifier(const TApplicationIdentifier* src);
    virtual ~TApplicationIdentifier();

    unsigned int getOrganizationID() const { return organizationId; }
    unsigned short getApplicationID() const { return applicationId; }

  private:
    unsigned int organizationId;
    unsigned short applicationId;
};

}  // namespace Sarn

#endif
