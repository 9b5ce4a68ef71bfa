// Content (genre) and parental rating descriptors.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TContentDescriptor.h"
#include "TParentalRatingDescriptor.h"

using namespace Sarn;

TEST(Content, FirstGenreOnlyAndNoHeaderCheck) {
    LogCapture log;
    // Two genre entries (news 0x12/0xAB, then sports 0x30/0x00): the first counts.
    Bytes b = {0x54, 0x04, 0x12, 0xAB, 0x30, 0x00};
    unsigned int read = 77;
    unsigned short code = 0xBEEF;
    TContentDescriptor* d = TContentDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getContentNibbleLevel1(), 1);
    EXPECT_EQ(d->getContentNibbleLevel2(), 2);
    EXPECT_EQ(d->getUserByte(), 0xAB);
    // Neither the byte count nor the code is written on success.
    EXPECT_EQ(read, 77u);
    EXPECT_EQ(code, 0xBEEF);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":84,\"descriptor_length\":4,"
              "\"content_nibble_level_1\":1,\"content_nibble_level_2\":2,\"user_nibble\":171");
    delete d;

    // Another tag and a length that overruns: still read as a content descriptor.
    Bytes odd = {0x4D, 0x09, 0xF0, 0x01};
    d = TContentDescriptor::parse(odd.data(), length(odd), nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getDescriptorTag(), 0x54);
    EXPECT_EQ(d->getContentNibbleLevel1(), 15);
    delete d;
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(TContentDescriptor::parse(odd.data(), 3, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TContentDescriptor::parse(nullptr, 4, nullptr, nullptr), nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TContentDescriptor::parse: Item length not valid: 3. Aborting!"),
                  warnLine("TContentDescriptor::parse: Item length not valid: 0. Aborting!")}));
}

TEST(ParentalRating, ItemsAndTheRatingKey) {
    LogCapture log;
    // Brazil: 0x2A = violence (2) and age class 10 (14 years); Argentina 0x01.
    Bytes b = {0x55, 0x08, 'B', 'R', 'A', 0x2A, 'A', 'R', 'G', 0x01};
    unsigned int read = 0;
    unsigned short code = 0xFFFF;
    TParentalRatingDescriptor* d =
        TParentalRatingDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 8u);
    ASSERT_EQ(d->size(), 2);
    EXPECT_EQ(d->get(0)->getCountryCode(), "BRA");
    EXPECT_EQ(d->get(0)->getRating(), 10);
    EXPECT_EQ(d->get(0)->getRatingContent(), 2);
    EXPECT_EQ(d->get(2), nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":["
              "{\"countryCode\":\"BRA\",\"rating\":2},{\"countryCode\":\"ARG\",\"rating\":0}]");

    EXPECT_FALSE(d->remove(2));
    EXPECT_TRUE(d->remove(0));
    EXPECT_EQ(d->get(0)->getCountryCode(), "ARG");
    Bytes more = {'U', 'R', 'Y', 0x13};
    TParentalRatingDescriptorItem* extra =
        TParentalRatingDescriptorItem::parse(more.data(), 4, nullptr, nullptr);
    d->add(&extra);
    d->add(nullptr);
    EXPECT_EQ(d->size(), 2);
    EXPECT_EQ(d->toJSON(),
              "\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":["
              "{\"countryCode\":\"ARG\",\"rating\":0},{\"countryCode\":\"URY\",\"rating\":1}]");
    delete d;

    Bytes none = {0x55, 0x00};
    d = TParentalRatingDescriptor::parse(none.data(), 2, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 0u);
    EXPECT_EQ(d->toJSON(), "\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":[]");
    delete d;
    EXPECT_TRUE(log.lines().empty());
}

TEST(ParentalRating, ShortTailsAndBadHeaders) {
    LogCapture log;
    unsigned short code = 0;
    // Seven bytes of items: the second item has three.
    Bytes tail = {0x55, 0x07, 'B', 'R', 'A', 0x02, 'A', 'R', 'G'};
    EXPECT_EQ(TParentalRatingDescriptor::parse(tail.data(), length(tail), nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    Bytes wrongTag = {0x54, 0x00};
    EXPECT_EQ(TParentalRatingDescriptor::parse(wrongTag.data(), 2, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine(
                "TParentalRatingDescriptorItem::parse: Descriptor length not valid: 3. Aborting!"),
            warnLine("TParentalRatingDescriptor::parse: Invalid item. Aborting!"),
            warnLine(
                "TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got 0x54, "
                "instead of 0x55. Aborting!"),
            warnLine(
                "TParentalRatingDescriptor::parse: parseCommonHeader: Invalid item. Aborting!")}));
}
