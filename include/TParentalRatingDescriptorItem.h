#ifndef SARN_TPARENTALRATINGDESCRIPTORITEM_H
#define SARN_TPARENTALRATINGDESCRIPTORITEM_H

#include <string>

namespace Sarn {

/**
 * One country's rating in a parental rating descriptor. In Brazil the rating
 * byte holds the content-warning bits (sex, violence, drugs) in the upper
 * nibble and the age class in the lower one.
 */
class TParentalRatingDescriptorItem {
  public:
    /** data points at country_code; four bytes are read. */
    static TParentalRatingDescriptorItem* parse(unsigned char* data, unsigned int len,
                                                unsigned int* bytesRead, unsigned short* err);

    TParentalRatingDescriptorItem() : rating(0), ratingContent(0) {}
    virtual ~TParentalRatingDescriptorItem();

    std::string getCountryCode() const { return countryCode; }
    /** The age class: the lower nibble of the rating byte. */
    unsigned char getRating() const { return rating; }
    /** The content-warning bits: the upper nibble of the rating byte. */
    unsigned char getRatingContent() const { return ratingContent; }

  private:
    friend class TParentalRatingDescriptor;

    std::string countryCode;
    unsigned char rating;
    unsigned char ratingContent;
};

}  // namespace Sarn

#endif
