// Stand-alone network and service descriptors on hand-built bytes.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TBouquetNameDescriptor.h"
#include "TCountryAvailabilityDescriptor.h"
#include "TPartialReceptionDescriptor.h"
#include "TServiceListDescriptor.h"
#include "TServiceListDescriptorItem.h"
#include "TSystemManagementDescriptor.h"
#include "TTerrestrialDeliverySystemDescriptor.h"

using namespace Sarn;

TEST(ServiceListDescriptor, EntriesByServiceIdAndBrokenEntries) {
    LogCapture log;
    ParsedDescriptor<TServiceListDescriptor> list({0x41, 0x06, 0x5C, 0x38, 0xC0, 0x5C, 0x20, 0x01});
    ASSERT_NE(list.d, nullptr);
    EXPECT_EQ(list.code, ERROR_NONE);
    EXPECT_EQ(list.read, 3u);
    EXPECT_EQ(list.d->toJSON(),
              "\"name\":\"serviceListDescriptor\",,\"loop\":[{\"serviceId\":23584,"
              "\"serviceType\":1},{\"serviceId\":23608,\"serviceType\":192}]");
    EXPECT_EQ(list.d->getServiceIDs(), (std::list<unsigned short>{0x5C20, 0x5C38}));
    EXPECT_TRUE(list.d->remove(0x5C20));
    EXPECT_FALSE(list.d->remove(0x5C20));
    EXPECT_EQ(list.d->get(0x5C20), nullptr);
    EXPECT_EQ(list.d->get(0x5C38)->getServiceType(), 0xC0);
    list.d->add(nullptr);
    list.d->add(new TServiceListDescriptorItem(0x0001, 0x01));
    EXPECT_EQ(list.d->getServiceIDs(), (std::list<unsigned short>{0x0001, 0x5C38}));

    // A service_id met twice keeps the later entry.
    ParsedDescriptor<TServiceListDescriptor> twice(
        {0x41, 0x06, 0x00, 0x01, 0x01, 0x00, 0x01, 0x02});
    ASSERT_NE(twice.d, nullptr);
    EXPECT_EQ(twice.d->size(), 1);
    EXPECT_EQ(twice.d->get(1)->getServiceType(), 2);
    EXPECT_TRUE(log.lines().empty());

    // Two bytes left over cannot hold an entry: the descriptor is refused.
    ParsedDescriptor<TServiceListDescriptor> partial({0x41, 0x05, 0x00, 0x01, 0x01, 0x00, 0x02});
    EXPECT_EQ(partial.d, nullptr);
    EXPECT_EQ(partial.code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TServiceListDescriptorItem::parse: Descriptor length not valid: 2. "
                           "Aborting!"),
                  warnLine("TServiceListDescriptor::parse: Invalid item. Aborting!")}));
}

TEST(DeliveryDescriptors, TerrestrialAndPartialReception) {
    // At least one frequency is required: area code and modes alone are refused.
    ParsedDescriptor<TTerrestrialDeliverySystemDescriptor> bare({0xFA, 0x02, 0x89, 0x16});
    EXPECT_EQ(bare.d, nullptr);
    EXPECT_EQ(bare.code, ERROR_DESCRIPTOR_LENGTH);

    EXPECT_EQ(outcome<TTerrestrialDeliverySystemDescriptor>(
                  {0xFA, 0x06, 0x89, 0x1F, 0x0F, 0x90, 0x0F, 0xA4}),
              "read=6 "
              "\"name\":\"terrestrialDeliverySystemDescriptor\",\"areaCode\":2193,"
              "\"guardInterval\":3,\"transmissionMode\":3,\"frequency\":[3984,4004]");
    // An odd trailing byte is not read as half a frequency.
    ParsedDescriptor<TTerrestrialDeliverySystemDescriptor> odd(
        {0xFA, 0x05, 0x89, 0x10, 0x0F, 0x90, 0x07});
    ASSERT_NE(odd.d, nullptr);
    EXPECT_EQ(odd.d->getFrequencyCounter(), 1);
    EXPECT_EQ(odd.d->getFrequencies()[0], 3984);

    EXPECT_EQ(outcome<TPartialReceptionDescriptor>({0xFB, 0x04, 0x5C, 0x38, 0x5C, 0x39}),
              "read=4 "
              "\"errors\":0,\"descriptor_tag\":251,\"descriptor_length\":4,"
              "\"name\":\"partialReceptionDescriptor\",\"service_id\":[23608,23609]");
    EXPECT_EQ(outcome<TPartialReceptionDescriptor>({0xFB, 0x00}),
              "read=0 "
              "\"errors\":0,\"descriptor_tag\":251,\"descriptor_length\":0,"
              "\"name\":\"partialReceptionDescriptor\",\"service_id\":[]");
}

TEST(NetworkNameDescriptors, SystemManagementBouquetAndCountries) {
    ParsedDescriptor<TSystemManagementDescriptor> system({0xFE, 0x03, 0xC5, 0x01, 0xAB});
    ASSERT_NE(system.d, nullptr);
    EXPECT_EQ(system.read, 3u);
    EXPECT_EQ(system.d->getSystemManagementID(), 0xC501);
    EXPECT_EQ(system.d->toJSON(),
              "\"name\":\"systemManagementDescriptor\",\"system_management_id\":{,"
              "\"broadcastingFlag\":192,\"broadcastingIdentifier\":5,"
              "\"additionalBroadcastingIdentification\":1},"
              "\"additional_identification_info\":\"0xab\"");

    // Control codes are dropped from the name; it is written without quotes.
    EXPECT_EQ(outcome<TBouquetNameDescriptor>({0x47, 0x05, 0x47, 0x0E, 0x6C, 0x6F, 0x62}),
              "read=5 "
              "\"name\":\"bouquetNameDescriptor\",\"bouquetName\":Glob");

    ParsedDescriptor<TCountryAvailabilityDescriptor> countries(
        {0x49, 0x07, 0xFF, 'B', 'R', 'A', 'J', 'P', 'N'});
    ASSERT_NE(countries.d, nullptr);
    EXPECT_EQ(countries.read, 0u);
    EXPECT_EQ(countries.d->get(1), 0x4A504Eu);
    EXPECT_EQ(countries.d->toJSON(),
              "\"name\":\"countryAvailabilityDescriptor\",\"countryAvailabilityFlag\":1,"
              "\"countryCode\":[BRA,JPN]");
    EXPECT_TRUE(countries.d->remove(0));
    EXPECT_FALSE(countries.d->remove(1));
    EXPECT_EQ(countries.d->get(1), 0u);
    // A trailing partial code is not read.
    ParsedDescriptor<TCountryAvailabilityDescriptor> partial(
        {0x49, 0x05, 0x7F, 'U', 'R', 'Y', 'A'});
    ASSERT_NE(partial.d, nullptr);
    EXPECT_EQ(partial.d->toJSON(),
              "\"name\":\"countryAvailabilityDescriptor\",\"countryAvailabilityFlag\":0,"
              "\"countryCode\":[URY]");
}
