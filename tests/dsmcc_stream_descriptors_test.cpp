// DSM-CC stream descriptors on their own (their fields are checked through
// the section table in dsmcc_test.cpp).
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TStreamEventDescriptor.h"
#include "TStreamModeDescriptor.h"

using namespace Sarn;

TEST(DsmccStreamDescriptors, StreamEventSizesTagsAndByteCounts) {
    LogCapture log;
    // event_id 42 and its NPT, no private data.
    Bytes ev = {0x04, 0x0A, 0x00, 0x2A, 0xFF, 0xFF, 0xFF, 0xFE, 0x00, 0x00, 0x00, 0x10};
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    TStreamEventDescriptor* d = TStreamEventDescriptor::parse(ev.data(), 12, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 10u);
    EXPECT_EQ(d->getPrivateDataSize(), 0);
    EXPECT_EQ(d->getPrivateData(), nullptr);
    delete d;

    // Only the stream event descriptor reports a byte count.
    Bytes mode = {0x03, 0x02, 0x07, 0xFF};
    read = 1234;
    TStreamModeDescriptor* m = TStreamModeDescriptor::parse(mode.data(), 4, &read, &code);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(read, 1234u);
    EXPECT_EQ(m->toJSON(),
              "\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":2,\"descriptor_content\":"
              "\"0x07ff\"");
    delete m;
    EXPECT_TRUE(log.lines().empty());

    // The classes take only their own small tags: 0x1A is the section table's to map.
    ev[0] = 0x1A;
    EXPECT_EQ(TStreamEventDescriptor::parse(ev.data(), 12, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    EXPECT_EQ(TStreamModeDescriptor::parse(nullptr, 4, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    EXPECT_EQ(log.lines().size(), 2u);
}
