// Stand-alone elementary-stream and conditional-access descriptors.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TAACDescriptor.h"
#include "TAVCTimingAndHRDDescriptor.h"
#include "TAVCVideoDescriptor.h"
#include "TCAIdentifierDescriptor.h"
#include "TCarouselCompatibleCompositeDescriptor.h"
#include "TConditionalPlaybackDescriptor.h"
#include "TCopyrightDescriptor.h"
#include "THierarchicalTransmissionDescriptor.h"
#include "TVideoDecodeControlDescriptor.h"

using namespace Sarn;

TEST(AACDescriptor, TypeFlagAdditionalInfoAndShortData) {
    LogCapture log;
    ParsedDescriptor<TAACDescriptor> noType({0x7C, 0x02, 0x10, 0x80});
    EXPECT_EQ(noType.d, nullptr);
    EXPECT_EQ(noType.code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(), std::vector<std::string>{warnLine(
                               "TAACDescriptor::parse: Longer data length is required: 0 < 1. "
                               "Aborting!")});

    ParsedDescriptor<TAACDescriptor> typed({0x7C, 0x03, 0x10, 0x80, 0x05});
    ASSERT_NE(typed.d, nullptr);
    EXPECT_EQ(typed.code, ERROR_NONE);
    EXPECT_EQ(typed.read, 3u);
    EXPECT_EQ(typed.d->getAACType(), 5);
    EXPECT_EQ(typed.d->getAdditionalInfo(), nullptr);
    EXPECT_EQ(typed.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":3,"
              "\"profile_and_level\":16,\"AAC_type_flag\":1,\"AAC_type\":5");

    // Without the flag the rest of byte 3 is skipped and byte 4 onward is
    // additional info.
    ParsedDescriptor<TAACDescriptor> info({0x7C, 0x04, 0x58, 0x7F, 0x0A, 0xB1});
    ASSERT_NE(info.d, nullptr);
    EXPECT_EQ(info.read, 4u);
    EXPECT_EQ(info.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":4,"
              "\"profile_and_level\":88,\"AAC_type_flag\":0,\"additional_info\":\"0x0ab1\"");
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST(AVCDescriptors, VideoAndTimingFields) {
    EXPECT_EQ(outcome<TAVCVideoDescriptor>({0x28, 0x04, 0x64, 0xE3, 0x28, 0x80}),
              "read=4 "
              "\"name\":\"avcVideoDescriptor\",\"profileIdc\":100,\"constraintSet0Flag\":1,"
              "\"constraintSet1Flag\":1,\"constraintSet2Flag\":1,\"avcCompatibleFlags\":3,"
              "\"levelIdc\":40,\"avcStillPresent\":1,\"avc24HourPictureFlag\":0");

    LogCapture log;
    // No timing information: the flags come from the byte after the first.
    EXPECT_EQ(outcome<TAVCTimingAndHRDDescriptor>({0x2A, 0x02, 0x80, 0x00}),
              "read=2 "
              "\"name\":\"avcTimingAndHrdDescriptor\",\"hrdManagementValidFlag\":1,"
              "\"fixedFrameRateFlag\":0,\"temporalPocFlag\":0,"
              "\"pictureToDisplayConversionFlag\":0,\"flag90kHz\":0,\"n\":0,\"k\":0,"
              "\"numUnitsInTick\":0");

    // Timing information without N and K: the flags are the top bits of
    // num_units_in_tick, which prints as a signed number.
    ParsedDescriptor<TAVCTimingAndHRDDescriptor> timing(
        {0x2A, 0x07, 0x01, 0x7F, 0xE0, 0x00, 0x03, 0xE9, 0x00});
    ASSERT_NE(timing.d, nullptr);
    EXPECT_EQ(timing.read, 3u);
    EXPECT_EQ(timing.d->getNumUnitsInTick(), 0xE00003E9u);
    EXPECT_EQ(timing.d->toJSON(),
              "\"name\":\"avcTimingAndHrdDescriptor\",\"hrdManagementValidFlag\":0,"
              "\"fixedFrameRateFlag\":1,\"temporalPocFlag\":1,"
              "\"pictureToDisplayConversionFlag\":1,\"flag90kHz\":0,\"n\":0,\"k\":0,"
              "\"numUnitsInTick\":-536869911");

    // 90 kHz: N and K, then num_units_in_tick at byte 12.
    ParsedDescriptor<TAVCTimingAndHRDDescriptor> clock({0x2A, 0x0F, 0x81, 0x80, 0x00, 0x00, 0x00,
                                                        0x01, 0x00, 0x00, 0x01, 0x2C, 0x40, 0x00,
                                                        0x05, 0xDD, 0x00});
    ASSERT_NE(clock.d, nullptr);
    EXPECT_EQ(clock.read, 11u);
    EXPECT_EQ(clock.d->toJSON(),
              "\"name\":\"avcTimingAndHrdDescriptor\",\"hrdManagementValidFlag\":1,"
              "\"fixedFrameRateFlag\":0,\"temporalPocFlag\":1,"
              "\"pictureToDisplayConversionFlag\":0,\"flag90kHz\":1,\"n\":1,\"k\":300,"
              "\"numUnitsInTick\":1073743325");
    EXPECT_TRUE(log.lines().empty());

    ParsedDescriptor<TAVCTimingAndHRDDescriptor> shortTiming({0x2A, 0x02, 0x01, 0x80});
    EXPECT_EQ(shortTiming.d, nullptr);
    EXPECT_EQ(shortTiming.code, ERROR_DESCRIPTOR_LENGTH);
    // One byte short of num_units_in_tick after N and K.
    Bytes cut = clock.bytes;
    cut.pop_back();
    cut[1] = 0x0E;
    ParsedDescriptor<TAVCTimingAndHRDDescriptor> shortClock(cut);
    EXPECT_EQ(shortClock.d, nullptr);
    EXPECT_EQ(shortClock.code, ERROR_DESCRIPTOR_LENGTH);
    const std::string prefix =
        "TAVCTimingAndHRDDescriptor::parse: Longer data length is required: ";
    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(prefix + "1 < 6. Aborting!"),
                                                     warnLine(prefix + "12 < 13. Aborting!")}));
}

TEST(ConditionalAccessDescriptors, IdsPidsAndPrivateBytes) {
    // An odd trailing byte is ignored.
    ParsedDescriptor<TCAIdentifierDescriptor> ca({0x53, 0x05, 0x00, 0x01, 0x00, 0x02, 0x07});
    ASSERT_NE(ca.d, nullptr);
    EXPECT_EQ(ca.read, 5u);
    EXPECT_EQ(ca.d->getCASystemIDCount(), 2);
    EXPECT_EQ(ca.d->toJSON(), "\"name\":\"caIdentifierDescriptor\",\"caSystemId\":[1,2]");

    EXPECT_EQ(
        outcome<TConditionalPlaybackDescriptor>({0xF8, 0x06, 0x00, 0x05, 0xE1, 0x23, 0x41, 0x42}),
        "read=6 "
        "\"name:\":\"conditionalPlaybackDescriptor\",\"caSystemId\":5,\"caPid\":291,"
        "\"privateData\":\"AB\"");
    ParsedDescriptor<TConditionalPlaybackDescriptor> cut(
        {0xF8, 0x07, 0x00, 0x05, 0xE1, 0x23, 0x41, 0x00, 0x42});
    ASSERT_NE(cut.d, nullptr);
    EXPECT_EQ(cut.d->getPrivateDataSize(), 3);
    EXPECT_EQ(cut.d->toJSON(),
              "\"name:\":\"conditionalPlaybackDescriptor\",\"caSystemId\":5,\"caPid\":291,"
              "\"privateData\":\"A\"");
    ParsedDescriptor<TConditionalPlaybackDescriptor> none({0xF8, 0x04, 0x4A, 0x60, 0xFF, 0xFF});
    ASSERT_NE(none.d, nullptr);
    EXPECT_EQ(none.d->getPrivateData(), nullptr);
    EXPECT_EQ(none.d->toJSON(),
              "\"name:\":\"conditionalPlaybackDescriptor\",\"caSystemId\":19040,\"caPid\":8191,"
              "\"privateData\":\"\"");

    ParsedDescriptor<TCopyrightDescriptor> copyright(
        {0x0D, 0x06, 0xFF, 0xFF, 0xFF, 0xFE, 0x48, 0x49});
    ASSERT_NE(copyright.d, nullptr);
    EXPECT_EQ(copyright.read, 6u);
    EXPECT_EQ(copyright.d->getCopyrightID(), 0xFFFFFFFEu);
    EXPECT_EQ(copyright.d->toJSON(),
              "\"name:\":\"copyrightDescriptor\",\"copyrightId\":-2,"
              "\"copyrightAdditionalInfo\":\"HI\"");
    EXPECT_EQ(outcome<TCopyrightDescriptor>({0x0D, 0x04, 0x43, 0x55, 0x45, 0x49}),
              "read=4 "
              "\"name:\":\"copyrightDescriptor\",\"copyrightId\":1129661769,"
              "\"copyrightAdditionalInfo\":\"\"");

    ParsedDescriptor<TCopyrightDescriptor> wrongTag({0x0E, 0x04, 0x43, 0x55, 0x45, 0x49});
    EXPECT_EQ(wrongTag.d, nullptr);
    EXPECT_EQ(wrongTag.code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
}

TEST(StreamControlDescriptors, BaseRenderingAndVideoDecodeMask) {
    LogCapture log;
    EXPECT_EQ(outcome<TCarouselCompatibleCompositeDescriptor>({0xF7, 0x04, 0x00, 0x00, 0x00, 0x00}),
              "read=6 "
              "\"errors\":0,\"descriptor_tag\":247,\"descriptor_length\":4,"
              "\"descriptor_content\":\"0x00000000\"");
    EXPECT_EQ(log.texts(),
              std::vector<std::string>{warnLine(
                  "TCarouselCompatibleCompositeDescriptor::parse: TODO: Descriptor not "
                  "implemented yet. If you really need this descriptor, please contact support.")});

    ParsedDescriptor<THierarchicalTransmissionDescriptor> layer({0xC0, 0x03, 0xFF, 0xE0, 0x64});
    ASSERT_NE(layer.d, nullptr);
    EXPECT_EQ(layer.read, 3u);
    EXPECT_EQ(layer.d->getQualityLevel(), 1);
    EXPECT_EQ(layer.d->getReferencePID(), 100);
    EXPECT_EQ(layer.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":192,\"descriptor_length\":3,"
              "\"descriptor_content\":\"0xffe064\"");

    // 0x3C under the 0x2C mask gives 11, not 15.
    EXPECT_EQ(outcome<TVideoDecodeControlDescriptor>({0xC8, 0x01, 0xBC}),
              "read=1 "
              "\"name:\":\"videoDecodeControlDescriptor\",\"stillPictureFlag\":1,"
              "\"sequenceEndCodeFlag\":0,\"videoEncodeFormat\":11");
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST(StreamDescriptorSizes, PayloadSizesFollowTheBytesHandedInInEightBits) {
    // The sizes come from the bytes handed in, not from descriptor_length,
    // and are kept in 8 bits: 258 bytes of AAC additional info keep 2.
    Bytes aac = {0x7C, 0x04, 0x10, 0x00};
    for (unsigned int i = 0; i < 258; ++i)
        aac.push_back(static_cast<unsigned char>(0xA0 + i));
    ParsedDescriptor<TAACDescriptor> longAac(aac);
    ASSERT_NE(longAac.d, nullptr);
    EXPECT_EQ(longAac.read, 4u);
    EXPECT_EQ(longAac.d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":124,\"descriptor_length\":4,"
              "\"profile_and_level\":16,\"AAC_type_flag\":0,\"additional_info\":\"0xa0a1\"");

    // 257 bytes of copyright info keep 1.
    Bytes copyright = {0x0D, 0x04, 0x00, 0x00, 0x00, 0x07};
    copyright.insert(copyright.end(), 257, 0x5A);
    ParsedDescriptor<TCopyrightDescriptor> longCopyright(copyright);
    ASSERT_NE(longCopyright.d, nullptr);
    EXPECT_EQ(longCopyright.read, 5u);
    EXPECT_EQ(longCopyright.d->toJSON(),
              "\"name:\":\"copyrightDescriptor\",\"copyrightId\":7,"
              "\"copyrightAdditionalInfo\":\"Z\"");

    // 257 CA_system_ids keep a count of 1, while the byte count is the whole
    // payload.
    Bytes ca = {0x53, 0x02};
    for (unsigned int i = 0; i < 257; ++i) {
        ca.push_back(0x0B);
        ca.push_back(static_cast<unsigned char>(i));
    }
    ParsedDescriptor<TCAIdentifierDescriptor> longCa(ca);
    ASSERT_NE(longCa.d, nullptr);
    EXPECT_EQ(longCa.read, 514u);
    EXPECT_EQ(longCa.d->toJSON(), "\"name\":\"caIdentifierDescriptor\",\"caSystemId\":[2816]");
}
