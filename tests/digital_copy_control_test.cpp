// Digital copy control descriptor and its per-component items.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TDigitalCopyControlDescriptor.h"

using namespace Sarn;

TEST(DigitalCopyControl, ControlByteBitrateAndComponents) {
    LogCapture log;
    unsigned int read = 0;
    unsigned short code = 0xFFFF;
    // Copy freely, nothing else; the APS bits without a copy_control_type are ignored.
    Bytes plain = {0xC1, 0x01, 0x03};
    TDigitalCopyControlDescriptor* d =
        TDigitalCopyControlDescriptor::parse(plain.data(), length(plain), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 1u);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"digitalCopyControlDescriptor\",\"digitalRecordingControlData\":0,"
              "\"maximumBitrateFlag\":0,\"componentControlFlag\":0,\"copyControlType\":0,"
              "\"apsControlData\":0,\"maximumBitrate\":0,\"loop\":[]");
    delete d;

    // Copy one generation (2), a maximum bitrate of 50 (12.5 Mbit/s),
    // copy_control_type 3 with APS 1, and one component (tag 0x10) with its
    // own bitrate and copy_control_type 1 with APS 2.
    Bytes full = {0xC1, 0x06, 0xBD, 0x32, 0x03, 0x10, 0xA6, 0x28};
    d = TDigitalCopyControlDescriptor::parse(full.data(), length(full), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 6u);
    ASSERT_EQ(d->size(), 1);
    EXPECT_EQ(d->get(0)->getComponentTag(), 0x10);
    EXPECT_EQ(d->get(1), nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"digitalCopyControlDescriptor\",\"digitalRecordingControlData\":2,"
              "\"maximumBitrateFlag\":1,\"componentControlFlag\":1,\"copyControlType\":3,"
              "\"apsControlData\":1,\"maximumBitrate\":50,\"loop\":[{"
              "\"digitalRecordingControlData\":2,\"maximumBitrateFlag\":1,\"copyControlType\":1,"
              "\"apsControlData\":2,\"maximumBitrate\":40,\"reservedFutureUse\":[]}]");

    Bytes more = {0x11, 0xC0};
    d->add(TDigitalCopyControlDescriptorItem::parse(more.data(), 2, nullptr, nullptr));
    d->add(nullptr);
    EXPECT_EQ(d->size(), 2);
    EXPECT_FALSE(d->remove(2));
    EXPECT_TRUE(d->remove(0));
    EXPECT_EQ(d->get(0)->getDigitalRecordingControlData(), 3);
    delete d;
    EXPECT_TRUE(log.lines().empty());
}

TEST(DigitalCopyControl, ShortDataAndTheWrappingComponentCounter) {
    LogCapture log;
    unsigned short code = 0;
    auto fails = [&](Bytes b) {
        code = 0;
        EXPECT_EQ(TDigitalCopyControlDescriptor::parse(b.data(), length(b), nullptr, &code),
                  nullptr);
        EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    };
    fails({0xC1, 0x01, 0x20});                    // bitrate flagged, no byte
    fails({0xC1, 0x01, 0x10});                    // components flagged, no length
    fails({0xC1, 0x04, 0x10, 0x05, 0x01, 0x00});  // five bytes declared, two there
    // Two bytes declared, but the item reads three: the counter wraps to 255
    // and the walk fails once no bytes are left.
    fails({0xC1, 0x05, 0x10, 0x02, 0x01, 0x20, 0x10});
    // An item flagging a bitrate with no byte for it.
    fails({0xC1, 0x04, 0x10, 0x02, 0x01, 0x20});
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < 1. "
                     "Aborting!"),
            warnLine("TDigitalCopyControlDescriptor::parse: Longer data length is required: 0 < 1. "
                     "Aborting!"),
            warnLine("TDigitalCopyControlDescriptor::parse: Longer data length is required: 2 < 1. "
                     "Aborting!"),
            warnLine(
                "TDigitalCopyControlDescriptorItem::parse: Item length not valid: 0. Aborting!"),
            warnLine("TDigitalCopyControlDescriptor::parse: Invalid item. Aborting!"),
            warnLine(
                "TDigitalCopyControlDescriptorItem::parse: Longer data length is required: 0 < "
                "1. Aborting!"),
            warnLine("TDigitalCopyControlDescriptor::parse: Invalid item. Aborting!"),
        }));
}
