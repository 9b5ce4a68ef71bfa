#ifndef SARN_TDCTTABLE_H
#define SARN_TDCTTABLE_H

#include <vector>

#include "TDatacasterCarousel.h"
#include "TISDBTVersionedTable.h"

namespace Sarn {

/**
 * Datacaster carousel table, a private section with table_id 0x99 that lists
 * the data carousels of one service (the table_id_extension): for each, its
 * PID, version, carousel id, component tag and application name. Renders
 * the section header only.
 */
class TDCTTable : public TISDBTVersionedTable {
  public:
    /**
     * The CRC is checked when checkCrc (the first integer) is 1; the second
     * is not used. A carousel that fails makes the table fail with 2570.
     */
    static TDCTTable* parse(unsigned char* data, unsigned int length, int checkCrc, int,
                            unsigned short* error, TDCTTable* previous);

    TDCTTable(unsigned char* data, unsigned int length);
    TDCTTable(const TDCTTable&) = delete;
    TDCTTable& operator=(const TDCTTable&) = delete;
    ~TDCTTable() override;

    unsigned short getServiceID() const { return tableIdExtension; }

    int getDatacasterCarouselSize() const { return static_cast<int>(carousels.size()); }
    /** Appends a carousel, which the table then owns (its parent is not set). */
    void addDatacasterCarousel(TDatacasterCarousel* carousel);
    /** The carousel at that position, or null at or beyond the end. */
    TDatacasterCarousel* getDatacasterCarousel(unsigned char index) const;
    /** Deletes the carousel at that position; false when there is none. */
    bool removeDatacasterCarousel(unsigned char index);

  private:
    std::vector<TDatacasterCarousel*> carousels;
};

}  // namespace Sarn

#endif
