// Content availability (inverted flags) and time-shifted service descriptors.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TContentAvailabilityDescriptor.h"
#include "TTimeShiftedServiceDescriptor.h"

using namespace Sarn;

TEST(ContentAvailabilityDescriptor, FlagsAreInvertedWireBits) {
    struct Case {
        unsigned char wire;
        const char* json;
    };
    const Case cases[] = {
        {0x3F,
         "\"name\":\"contentAvailabilityDescriptor\",\"imageConstraintToken\":0,"
         "\"retentionMode\":0,\"retentionState\":7,\"encryptionMode\":0"},
        {0xC0,
         "\"name\":\"contentAvailabilityDescriptor\",\"imageConstraintToken\":1,"
         "\"retentionMode\":1,\"retentionState\":0,\"encryptionMode\":1"},
        // Copy-once style: retention allowed, state 3, encryption on the wire.
        {0xE7,
         "\"name\":\"contentAvailabilityDescriptor\",\"imageConstraintToken\":0,"
         "\"retentionMode\":1,\"retentionState\":3,\"encryptionMode\":0"},
    };
    for (const Case& c : cases) {
        Bytes b = {0xDE, 0x01, c.wire};
        unsigned int read = 0;
        unsigned short code = 0xBEEF;
        TContentAvailabilityDescriptor* d =
            TContentAvailabilityDescriptor::parse(b.data(), 3, &read, &code);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(read, 3u);
        EXPECT_EQ(code, ERROR_NONE);
        EXPECT_EQ(d->toJSON(), c.json);
        delete d;
    }
}

TEST(TimeShiftedServiceDescriptor, ReferenceServiceAndBaseRendering) {
    Bytes b = {0x4C, 0x02, 0x04, 0xD2};
    unsigned int read = 0;
    unsigned short code = 0xBEEF;
    TTimeShiftedServiceDescriptor* d =
        TTimeShiftedServiceDescriptor::parse(b.data(), 4, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 2u);
    EXPECT_EQ(code, ERROR_NONE);
    EXPECT_EQ(d->getReferenceServiceID(), 1234);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":76,\"descriptor_length\":2,"
              "\"descriptor_content\":\"0x04d2\"");
    delete d;

    LogCapture log;
    Bytes shortOne = {0x4C, 0x01, 0x04};
    EXPECT_EQ(TTimeShiftedServiceDescriptor::parse(shortOne.data(), 3, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(), std::vector<std::string>{
                               "5 SarnISDBTUtils: TISDBTDescriptor::parseCommonHeader: (2) Longer "
                               "data length is required: 3 < 4. Aborting!"});
}
