#include "TApplicationDescriptor.h"

#include <cstring>

#include "Bytes.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"

namespace Sarn {

TApplicationDescriptorProfile::TApplicationDescriptorProfile(unsigned short profile,
                                                             unsigned char major,
                                                             unsigned char minor,
                                                             unsigned char micro)
    : applicationProfile(profile), versionMajor(major), versionMinor(minor), versionMicro(micro) {}

TApplicationDescriptorProfile::TApplicationDescriptorProfile(
    const TApplicationDescriptorProfile* src)
    : TApplicationDescriptorProfile(src->applicationProfile, src->versionMajor, src->versionMinor,
                                    src->versionMicro) {}

TApplicationDescriptorProfile::~TApplicationDescriptorProfile() {}

TApplicationDescriptorProfile* TApplicationDescriptorProfile::parse(unsigned char* data,
                                                                    unsigned int len,
                                                                    unsigned int* bytesRead,
                                                                    unsigned short* err) {
    // application_profile (16), version.major, version.minor, version.micro
    if (data == nullptr || len < 5) {
        SARN_LOGW("%s: TApplicationDescriptorProfile::parse: Item length not valid: %u. Aborting!",
                  len);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    if (bytesRead != nullptr)
        *bytesRead = 5;
    return new TApplicationDescriptorProfile(bytes::be16(data), data[2], data[3], data[4]);
}

TApplicationDescriptor::TApplicationDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len),
      serviceBound(0),
      visibility(0),
      applicationPriority(0),
      visibleForUsers(0),
      visibleForApplications(0),
      transportProtocolLabelCount(0),
      transportProtocolLabels(nullptr) {}

TApplicationDescriptor::TApplicationDescriptor(const TApplicationDescriptor* src)
    : TISDBTDescriptor(*src),
      serviceBound(src->serviceBound),
      visibility(src->visibility),
      applicationPriority(src->applicationPriority),
      visibleForUsers(src->visibleForUsers),
      visibleForApplications(src->visibleForApplications),
      transportProtocolLabelCount(src->transportProtocolLabelCount),
      transportProtocolLabels(nullptr) {
    owned::copyAll(src->profiles, profiles);
    if (src->transportProtocolLabels != nullptr && transportProtocolLabelCount != 0) {
        transportProtocolLabels = new unsigned char[transportProtocolLabelCount];
        std::memcpy(transportProtocolLabels, src->transportProtocolLabels,
                    transportProtocolLabelCount);
    }
}

TApplicationDescriptor::~TApplicationDescriptor() {
    owned::deleteAll(profiles);
    delete[] transportProtocolLabels;
}

TApplicationDescriptor* TApplicationDescriptor::parse(unsigned char* data, unsigned int len,
                                                      unsigned int* bytesRead,
                                                      unsigned short* err) {
    if (!parseCommonHeader(data, len, err, 3, DESCRIPTOR_TAG))
        return nullptr;
    TApplicationDescriptor* d = new TApplicationDescriptor(data, len);
    // The body is descriptor_length bytes; the header check made sure they are there.
    unsigned char* p = data + 2;
    unsigned int remaining = data[1];

    unsigned char profilesLength = *p++;
    --remaining;
    if (profilesLength > remaining) {
        SARN_LOGW(
            "%s: TApplicationDescriptor:: parse: Application Profiles Length exceeds Descriptor "
            "Length: %u > %u. Aborting!",
            static_cast<unsigned int>(profilesLength), remaining);
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete d;
        return nullptr;
    }
    while (profilesLength != 0) {
        unsigned int consumed = 0;
        TApplicationDescriptorProfile* profile =
            TApplicationDescriptorProfile::parse(p, profilesLength, &consumed, err);
        if (profile == nullptr) {
            delete d;
            return nullptr;
        }
        // A repeated application_profile replaces the earlier profile.
        owned::replace(d->profiles, profile->getApplicationProfile(), profile);
        profilesLength = static_cast<unsigned char>(profilesLength - consumed);
        remaining -= consumed;
        p += consumed;
    }
    if (remaining < 2) {
        SARN_LOGW("%s: TApplicationDescriptor:: parse: Section length exceeded. Aborting!");
        ISDBTUtils::setErrorCode(err, ERROR_DATA_TOO_SHORT);
        delete d;
        return nullptr;
    }
    d->serviceBound = (p[0] >> 7) & 0x01;
    d->visibility = static_cast<unsigned char>((p[0] >> 5) & 0x03);
    d->visibleForUsers = (d->visibility >> 1) & 0x01;
    d->visibleForApplications = d->visibility & 0x01;
    d->applicationPriority = p[1];
    p += 2;
    remaining -= 2;

    // Everything after the priority is a list of one-byte transport protocol labels.
    d->transportProtocolLabelCount = static_cast<unsigned char>(remaining);
    if (d->transportProtocolLabelCount != 0) {
        d->transportProtocolLabels = new unsigned char[d->transportProtocolLabelCount];
        std::memcpy(d->transportProtocolLabels, p, d->transportProtocolLabelCount);
    }
    if (bytesRead != nullptr)
        *bytesRead = data[1];
    ISDBTUtils::setErrorCode(err, ERROR_NONE);
    return d;
}

void TApplicationDescriptor::addProfile(TApplicationDescriptorProfile* profile) {
    if (profile != nullptr)
        profiles[profile->getApplicationProfile()] = profile;
}

TApplicationDescriptorProfile* TApplicationDescriptor::getProfile(
    unsigned short applicationProfile) const {
    auto it = profiles.find(applicationProfile);
    return it == profiles.end() ? nullptr : it->second;
}

std::list<TApplicationDescriptorProfile*> TApplicationDescriptor::getProfiles() const {
    std::list<TApplicationDescriptorProfile*> all;
    for (const auto& entry : profiles)
        all.push_back(entry.second);
    return all;
}

bool TApplicationDescriptor::removeProfile(unsigned short applicationProfile) {
    auto it = profiles.find(applicationProfile);
    if (it == profiles.end())
        return false;
    delete it->second;
    profiles.erase(it);
    return true;
}

std::string TApplicationDescriptor::toJSON() const {
    std::string out;
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"profile_loop\":[";
    bool first = true;
    for (const auto& entry : profiles) {
        const TApplicationDescriptorProfile* profile = entry.second;
        if (!first)
            o << ',';
        first = false;
        o << "{\"application_profile\":" << profile->getApplicationProfile()
          << ",\"version.major\":" << profile->getVersionMajor()
          << ",\"version.minor\":" << profile->getVersionMinor()
          << ",\"version.micro\":" << profile->getVersionMicro() << '}';
    }
    o << "],\"service_bound_flag\":" << serviceBound << ",\"visibility\":" << visibility
      << ",\"application_priority\":" << applicationPriority << ",\"transport_protocol_label\":\"";
    if (transportProtocolLabelCount != 0 && transportProtocolLabels != nullptr) {
        o << "0x";
        for (unsigned int i = 0; i < transportProtocolLabelCount; ++i)
            o.hex2(transportProtocolLabels[i]);
    }
    o << '"';
    return out;
}

}  // namespace Sarn
