#ifndef SARN_TSCHEDULEINFO_H
#define SARN_TSCHEDULEINFO_H

namespace Sarn {

/** One broadcast schedule of a software download: when it starts and how long it lasts. */
class TScheduleInfo {
  public:
    /** Reads the eight bytes start_time(40) duration(24); fails with 2563 when they are not there.
     */
    static TScheduleInfo* parse(unsigned char* data, unsigned int length, unsigned int* bytesRead,
                                unsigned short* error);

    TScheduleInfo() : startTime(0), duration(0) {}
    virtual ~TScheduleInfo();

    /** Seconds since 1970 of the broadcast wall-clock start time (MJD and BCD, no zone shift). */
    unsigned int getStartTime() const { return startTime; }
    /** The 24-bit duration as broadcast: three BCD bytes hhmmss kept as one number. */
    unsigned int getDuration() const { return duration; }

  private:
    unsigned int startTime;
    unsigned int duration;
};

}  // namespace Sarn

#endif
