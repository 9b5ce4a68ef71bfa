#ifndef SARN_TAPPLICATIONDESCRIPTOR_H
#define SARN_TAPPLICATIONDESCRIPTOR_H

#include <list>
#include <string>
#include <utility>
#include <vector>

#include "TApplicationDescriptorProfile.h"
#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Application descriptor (AIT tag 0x00): the profiles the application runs
 * on, whether it is bound to the service, its visibility and priority, and
 * the labels of the transport protocols that carry it.
 */
class TApplicationDescriptor : public TISDBTDescriptor {
  public:
    static constexpr unsigned char DESCRIPTOR_TAG = 0x00;

    static TApplicationDescriptor* parse(unsigned char* data, unsigned int len,
                                         unsigned int* bytesRead, unsigned short* err);

    TApplicationDescriptor(unsigned char* data, unsigned int len);
    /** Deep copy: profiles and labels are duplicated, the bytes are shared. */
    explicit TApplicationDescriptor(const TApplicationDescriptor* src);
    TApplicationDescriptor(const TApplicationDescriptor&) = delete;
    TApplicationDescriptor& operator=(const TApplicationDescriptor&) = delete;
    ~TApplicationDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;

    int getProfilesCount() const { return static_cast<int>(profiles.size()); }
    /**
     * Stores profile under its application_profile. A profile already stored
     * under that key is replaced, not deleted: a caller that holds it owns it.
     */
    void addProfile(TApplicationDescriptorProfile* profile);
    /** The profile with that application_profile, or null. */
    TApplicationDescriptorProfile* getProfile(unsigned short applicationProfile) const;
    /** Every profile in ascending application_profile (still owned here). */
    std::list<TApplicationDescriptorProfile*> getProfiles() const;
    /** Erases and deletes the profile; false when there is none. */
    bool removeProfile(unsigned short applicationProfile);

    bool isServiceBound() const { return serviceBound != 0; }
    unsigned char getVisibility() const { return visibility; }
    bool isVisibileForUsers() const { return visibleForUsers != 0; }
    bool isVisibileForApplications() const { return visibleForApplications != 0; }
    unsigned char getApplicationPriority() const { return applicationPriority; }
    unsigned char getTransportProtocolsCount() const { return transportProtocolLabelCount; }
    /** The transport_protocol_label bytes (getTransportProtocolsCount() of them), or null. */
    const unsigned char* getTransportProtocols() const { return transportProtocolLabels; }

  private:
    SARN_DESCRIPTOR_BUILD(TApplicationDescriptor)
    std::vector<std::pair<unsigned short, TApplicationDescriptorProfile*>> profiles;
    int serviceBound = 0;
    unsigned char visibility = 0;
    unsigned char applicationPriority = 0;
    int visibleForUsers = 0;
    int visibleForApplications = 0;
    unsigned char transportProtocolLabelCount = 0;
    unsigned char* transportProtocolLabels = nullptr;
};

}  // namespace Sarn

#endif
