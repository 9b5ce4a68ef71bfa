#ifndef SARN_TAPPLICATIONDESCRIPTORPROFILE_H
#define SARN_TAPPLICATIONDESCRIPTORPROFILE_H

namespace Sarn {

/**
 * One profile entry of the application descriptor: the application_profile
 * the application needs and the lowest middleware version (major, minor,
 * micro) that implements it. Five bytes on the wire.
 */
class TApplicationDescriptorProfile {
  public:
    static TApplicationDescriptorProfile* parse(unsigned char* data, unsigned int len,
                                                unsigned int* bytesRead, unsigned short* err);

    TApplicationDescriptorProfile(unsigned short applicationProfile, unsigned char versionMajor,
                                  unsigned char versionMinor, unsigned char versionMicro);
    explicit TApplicationDescriptorProfile(const TApplicationDescriptorProfile* src);
    virtual ~TApplicationDescriptorProfile();

    unsigned short getApplicationProfile() const { return applicationProfile; }
    unsigned char getVersionMajor() const { return versionMajor; }
    unsigned char getVersionMinor() const { return versionMinor; }
    unsigned char getVersionMicro() const { return versionMicro; }

  private:
    unsigned short applicationProfile;
    unsigned char versionMajor;
    unsigned char versionMinor;
    unsigned char versionMicro;
};

}  // namespace Sarn

#endif
