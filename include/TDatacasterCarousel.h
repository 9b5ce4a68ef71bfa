#ifndef SARN_TDATACASTERCAROUSEL_H
#define SARN_TDATACASTERCAROUSEL_H

#include <string>
#include "SarnAllocation.h"

namespace Sarn {

class TDCTTable;

/** One data carousel of a datacaster carousel table: where it is and which application it carries.
 */
class TDatacasterCarousel {
  public:
    SARN_ALLOCATION_FUNCTIONS

    /**
     * Reads PID(13) version(8) carousel_id(32) component_tag(8) and the
     * application name (one length byte, then the name). Fails with 2563
     * when the eight fixed bytes are not there, 2569 when the name does not
     * fit. The third argument is not used.
     */
    static TDatacasterCarousel* parse(unsigned char* data, unsigned int length, int,
                                      unsigned int* bytesRead, unsigned short* error);

    TDatacasterCarousel();
    virtual ~TDatacasterCarousel();

    /** The table this carousel belongs to, when set (parse does not set it). */
    TDCTTable* getParentDCTTable() const { return parent; }
    void setParentDCTTable(TDCTTable* table) { parent = table; }

    unsigned short getPID() const { return pid; }
    unsigned char getVersion() const { return version; }
    unsigned int getCarouselID() const { return carouselId; }
    unsigned char getComponentTag() const { return componentTag; }
    /** The name as broadcast, less control codes. */
    std::string getApplicationName() const { return applicationName; }

  private:
    SARN_ENTRY_BUILD(TDatacasterCarousel)
    TDCTTable* parent;
    unsigned short pid;
    unsigned char version;
    unsigned int carouselId;
    unsigned char componentTag;
    std::string applicationName;
};

}  // namespace Sarn

#endif
