#ifndef SARN_TTOTTABLE_H
#define SARN_TTOTTABLE_H

#include <string>

#include "DescriptorLoop.h"
#include "TISDBTTable.h"

namespace Sarn {

/**
 * Time offset table (table_id 0x73): the broadcast date and time and the
 * local time offset descriptors. Brazilian broadcasters send their wall
 * clock (UTC-3) in the time field; the table decodes it as it stands and
 * renders it with UTC rules, applying no offset of its own.
 *
 * The descriptor loop is read from the table's own copy of the section, so
 * its descriptors stay valid for the table's lifetime.
 */
class TTOTTable : public TISDBTTable, public DescriptorLoop {
  public:
    /**
     * The CRC is checked when checkCrc is 1; the descriptor loop is read
     * when parseDescriptors is non-zero. A TOT never repeats a table:
     * previous is not used.
     */
    static TTOTTable* parse(unsigned char* data, unsigned int length, int checkCrc,
                            int parseDescriptors, unsigned short* error, TTOTTable* previous);

    TTOTTable(unsigned char* data, unsigned int length);
    TTOTTable(const TTOTTable&) = delete;
    TTOTTable& operator=(const TTOTTable&) = delete;
    ~TTOTTable() override;

    std::string toJSON() const override;

    /** Seconds since 1970-01-01 00:00:00 of the time field, a time_t-compatible count. */
    int getUnixTime() const { return unixTime; }

  private:
    int unixTime;
};

}  // namespace Sarn

#endif
