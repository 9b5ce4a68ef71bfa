#include "TApplicationDescriptor.h"

#include <memory>

#include "DescriptorFields.h"
#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "Json.h"
#include "Log.h"
#include "Owned.h"
#include "Reader.h"

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
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader r(data, len);
    const unsigned short profile = r.u16();
    const unsigned char major = r.u8();
    const unsigned char minor = r.u8();
    const unsigned char micro = r.u8();
    if (bytesRead != nullptr)
        *bytesRead = r.position();
    // The code is left as it stands.
    return new TApplicationDescriptorProfile(profile, major, minor, micro);
}

TApplicationDescriptor::TApplicationDescriptor(unsigned char* bytes, unsigned int len)
    : TISDBTDescriptor(DESCRIPTOR_TAG, bytes, len) {}

TApplicationDescriptor::TApplicationDescriptor(const TApplicationDescriptor* src)
    : TISDBTDescriptor(*src),
      serviceBound(src->serviceBound),
      visibility(src->visibility),
      applicationPriority(src->applicationPriority),
      visibleForUsers(src->visibleForUsers),
      visibleForApplications(src->visibleForApplications),
      transportProtocolLabelCount(src->transportProtocolLabelCount),
      transportProtocolLabels(fields::copyBytes(nullptr, src->transportProtocolLabels,
                                                src->transportProtocolLabelCount)) {
    owned::copyAll(src->profiles, profiles);
}

TApplicationDescriptor::~TApplicationDescriptor() {
    owned::deleteAll(profiles);
    releaseObject(transportProtocolLabels);
}

SARN_DESCRIPTOR_PARSE(TApplicationDescriptor, arena, data, len, bytesRead, err) {
    SARN_OPEN_OR_RETURN(arena, d, r, TApplicationDescriptor, data, len, err, 3, DESCRIPTOR_TAG);
    // The body is descriptor_length bytes; the header check made sure they are there.
    const unsigned char length = d->getDescriptorLength();
    bytes::Reader body = r.sub(length);

    const unsigned char profilesLength = body.u8();
    if (profilesLength > body.remaining()) {
        SARN_LOGW(
            "%s: TApplicationDescriptor:: parse: Application Profiles Length exceeds Descriptor "
            "Length: %u > %u. Aborting!",
            static_cast<unsigned int>(profilesLength), body.remaining());
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    bytes::Reader profiles = body.sub(profilesLength);
    while (!profiles.atEnd()) {
        unsigned int consumed = 0;
        TApplicationDescriptorProfile* profile = TApplicationDescriptorProfile::parse(
            profiles.mutableCurrent(), profiles.remaining(), &consumed, err);
        if (profile == nullptr)
            return nullptr;  // the profile has logged and set the code
        // A repeated application_profile replaces the earlier profile.
        owned::replace(d->profiles, profile->getApplicationProfile(), profile);
        profiles.skip(consumed);
    }
    if (body.remaining() < 2) {
        SARN_LOGW("%s: TApplicationDescriptor:: parse: Section length exceeded. Aborting!");
        return parse::fail(err, ERROR_DATA_TOO_SHORT);
    }
    const unsigned char flags = body.u8();
    d->serviceBound = (flags >> 7) & 0x01;
    d->visibility = static_cast<unsigned char>((flags >> 5) & 0x03);
    d->visibleForUsers = (d->visibility >> 1) & 0x01;
    d->visibleForApplications = d->visibility & 0x01;
    d->applicationPriority = body.u8();

    // Everything after the priority is a list of one-byte transport protocol labels.
    d->transportProtocolLabelCount = static_cast<unsigned char>(body.remaining());
    d->transportProtocolLabels = fields::copyBytes(
        arena, body.bytes(d->transportProtocolLabelCount), d->transportProtocolLabelCount);
    return parse::done(err, d, bytesRead, length);
}

void TApplicationDescriptor::addProfile(TApplicationDescriptorProfile* profile) {
    if (profile != nullptr)
        owned::assign(profiles, profile->getApplicationProfile(), profile);
}

TApplicationDescriptorProfile* TApplicationDescriptor::getProfile(
    unsigned short applicationProfile) const {
    return owned::find(profiles, applicationProfile);
}

std::list<TApplicationDescriptorProfile*> TApplicationDescriptor::getProfiles() const {
    std::list<TApplicationDescriptorProfile*> all;
    for (const auto& entry : profiles)
        all.push_back(entry.second);
    return all;
}

bool TApplicationDescriptor::removeProfile(unsigned short applicationProfile) {
    return owned::erase(profiles, applicationProfile);
}

void TApplicationDescriptor::appendJSON(std::string& out) const {
    appendBaseJSON(out, 0);
    json::Out o(out);
    o << ",\"profile_loop\":";
    json::appendArray(o, profiles, [&o](const auto& entry) {
        const TApplicationDescriptorProfile* profile = entry.second;
        o << "{\"application_profile\":" << profile->getApplicationProfile()
          << ",\"version.major\":" << profile->getVersionMajor()
          << ",\"version.minor\":" << profile->getVersionMinor()
          << ",\"version.micro\":" << profile->getVersionMicro() << '}';
    });
    o << ",\"service_bound_flag\":" << serviceBound << ",\"visibility\":" << visibility
      << ",\"application_priority\":" << applicationPriority << ",\"transport_protocol_label\":\"";
    if (transportProtocolLabelCount != 0 && transportProtocolLabels != nullptr) {
        o << "0x";
        for (unsigned int i = 0; i < transportProtocolLabelCount; ++i)
            o.hex2(transportProtocolLabels[i]);
    }
    o << '"';
}

std::string TApplicationDescriptor::toJSON() const {
    return TISDBTDescriptor::toJSON();
}

}  // namespace Sarn
