#ifndef SARN_TDOWNLOADCONTENT_H
#define SARN_TDOWNLOADCONTENT_H

#include <list>
#include <vector>
#include "SarnAllocation.h"

#include "TDownloadContentDescriptor.h"
#include "TScheduleInfo.h"

namespace Sarn {

class TSDTTTable;

/**
 * One download content of a software download trigger table: the receiver
 * group and software versions it applies to, how urgent it is, when it is
 * broadcast (schedules) and, optionally, a download content descriptor.
 */
class TDownloadContent {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * Reads one content from data, with length bytes available. Fails with
     * 2563 when the content does not fit, with 2570 when a schedule fails and
     * with the download content descriptor's code when that fails. Other
     * descriptors are logged and skipped. The third argument is not used.
     */
    static TDownloadContent* parse(unsigned char* data, unsigned int length, int,
                                   unsigned int* bytesRead, unsigned short* error);

    TDownloadContent();
    TDownloadContent(const TDownloadContent&) = delete;
    TDownloadContent& operator=(const TDownloadContent&) = delete;
    virtual ~TDownloadContent();

    /** The table this content belongs to, when set (parse does not set it). */
    TSDTTTable* getParentSDTTTable() const { return parent; }
    void setParentSDTTTable(TSDTTTable* table) { parent = table; }

    unsigned char getGroup() const { return group; }
    unsigned short getTargetVersion() const { return targetVersion; }
    unsigned short getNewVersion() const { return newVersion; }
    unsigned char getDownloadLevel() const { return downloadLevel; }
    unsigned char getVersionIndicator() const { return versionIndicator; }
    unsigned short getScheduleTimeShiftInfo() const { return scheduleTimeShiftInfo; }

    TDownloadContentDescriptor* getDownloadContentDescriptor() const { return descriptor; }
    /** The download content descriptor for its tag 0xC9, else null. */
    TISDBTDescriptor* getDescriptor(unsigned char tag) const;
    /** 0xC9 when the content has a download content descriptor, else empty. */
    std::list<unsigned char> getDescriptorTags() const;

    int getScheduleInfoSize() const { return static_cast<int>(schedules.size()); }
    /** Appends a schedule, which the content then owns. */
    void addScheduleInfo(TScheduleInfo* schedule);
    /** The schedule at that position, or null at or beyond the end. */
    TScheduleInfo* getScheduleInfo(unsigned char index) const;
    /** Deletes the schedule at that position; false when there is none. */
    bool removeScheduleInfo(unsigned char index);

  private:
    SARN_ENTRY_BUILD(TDownloadContent)
    TSDTTTable* parent;
    unsigned char group;
    unsigned short targetVersion;
    unsigned short newVersion;
    unsigned char downloadLevel;
    unsigned char versionIndicator;
    unsigned short scheduleTimeShiftInfo;
    TDownloadContentDescriptor* descriptor;
    std::vector<TScheduleInfo*> schedules;
};

}  // namespace Sarn

#endif
