#ifndef SARN_TLOCALTIMEOFFSETDESCRIPTORITEM_H
#define SARN_TLOCALTIMEOFFSETDESCRIPTORITEM_H

#include <string>

namespace Sarn {

/**
 * One 13-byte entry of the local time offset descriptor: a country (and
 * region), its current offset from UTC, and when and to what it changes next.
 */
class TLocalTimeOffsetDescriptorItem {
  public:
    static TLocalTimeOffsetDescriptorItem* parse(unsigned char* data, unsigned int length,
                                                 unsigned int* bytesRead, unsigned short* error);

    TLocalTimeOffsetDescriptorItem();
    virtual ~TLocalTimeOffsetDescriptorItem();

    /** The three-letter country code (ISO 3166 alpha-3, e.g. "BRA"). */
    std::string getCountryCode() const { return countryCode; }
    unsigned char getCountryRegionID() const { return countryRegionId; }
    /** 0: local time is ahead of UTC; 1: behind. */
    unsigned short getLocalTimeOffsetPolarity() const { return localTimeOffsetPolarity; }
    /** Seconds. */
    unsigned short getLocalTimeOffset() const { return localTimeOffset; }
    /** Seconds since 1970-01-01 00:00:00, the broadcast time taken as UTC. */
    unsigned int getTimeOfChange() const { return timeOfChange; }
    /** Seconds. */
    unsigned short getNextTimeOffset() const { return nextTimeOffset; }

  private:
    char countryCode[4];
    unsigned char countryRegionId;
    unsigned short localTimeOffsetPolarity;
    unsigned short localTimeOffset;
    unsigned int timeOfChange;
    unsigned short nextTimeOffset;
};

}  // namespace Sarn

#endif
