// Elementary-stream descriptors: ISO 639 language, carousel identifier,
// stream identifier and data component.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TCarouselIdentifierDescriptor.h"
#include "TDataComponentDescriptor.h"
#include "TISO639LanguageDescriptor.h"
#include "TStreamIdentifierDescriptor.h"

using namespace Sarn;

TEST(ISO639Language, EntriesAndShortPayloads) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // Portuguese main audio and English for the visually impaired; two
    // trailing bytes short of an entry are ignored.
    Bytes b = {0x0A, 0x0A, 'p', 'o', 'r', 0x00, 'e', 'n', 'g', 0x03, 0xAA, 0xBB};
    TISO639LanguageDescriptor* d =
        TISO639LanguageDescriptor::parse(b.data(), length(b), nullptr, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(d->getLoopSize(), 2);
    EXPECT_EQ(d->getLoopItems()[1].languageCode, "eng");
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":10,\"descriptor_length\":10,\"language_loop\":["
              "{\"language_code\":\"por\",\"audio_type\":0},"
              "{\"language_code\":\"eng\",\"audio_type\":3}]");
    delete d;

    for (Bytes shortOne : {Bytes{0x0A, 0x00}, Bytes{0x0A, 0x03, 'e', 'n', 'g'}}) {
        d = TISO639LanguageDescriptor::parse(shortOne.data(), length(shortOne), nullptr, &code);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->getLoopSize(), 0);
        EXPECT_EQ(d->getLoopItems(), nullptr);
        EXPECT_NE(d->toJSON().find(",\"language_loop\":[]"), std::string::npos);
        delete d;
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(StreamIdentifierAndCarousel, FieldsByteCountsAndJson) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    Bytes s = {0x52, 0x01, 0x07};
    TStreamIdentifierDescriptor* sid =
        TStreamIdentifierDescriptor::parse(s.data(), 3, &read, &code);
    ASSERT_NE(sid, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 1u);
    EXPECT_EQ(sid->getComponentTag(), 7);
    EXPECT_EQ(sid->toJSON(), "\"name\":\"streamIdentifierDescriptor\",\"component_tag\":7");
    delete sid;

    Bytes c = {0x13, 0x04, 0x00, 0x00, 0x00, 0x05};
    TCarouselIdentifierDescriptor* car =
        TCarouselIdentifierDescriptor::parse(c.data(), 6, &read, &code);
    ASSERT_NE(car, nullptr);
    EXPECT_EQ(read, 4u);
    EXPECT_EQ(car->getCarouselID(), 5u);
    EXPECT_EQ(car->getPrivateDataSize(), 0);
    EXPECT_EQ(car->getPrivateData(), nullptr);
    EXPECT_EQ(car->toJSON(), "\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":5");
    delete car;

    // A format specifier after carousel_id is kept as private data, undecoded.
    Bytes fmt = {0x13, 0x07, 0x12, 0x34, 0x56, 0x78, 0x01, 0x02, 0x03};
    car = TCarouselIdentifierDescriptor::parse(fmt.data(), length(fmt), &read, &code);
    ASSERT_NE(car, nullptr);
    EXPECT_EQ(car->getCarouselID(), 0x12345678u);
    EXPECT_EQ(read, 7u);
    ASSERT_EQ(car->getPrivateDataSize(), 3);
    EXPECT_EQ(Bytes(car->getPrivateData(), car->getPrivateData() + 3), (Bytes{1, 2, 3}));
    EXPECT_EQ(car->getFormatID(), 0);
    EXPECT_EQ(car->getObjectKeyData(), nullptr);
    delete car;
    EXPECT_TRUE(log.lines().empty());

    Bytes tooShort = {0x13, 0x03, 0x00, 0x00, 0x01};
    EXPECT_EQ(TCarouselIdentifierDescriptor::parse(tooShort.data(), 5, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(TStreamIdentifierDescriptor::parse(c.data(), 6, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 5 "
                     "< 6. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (3) Unexpected Descriptor Tag. Got "
                     "0x13, instead of 0x52. Aborting!")}));
}

TEST(DataComponent, IdAndAdditionalInfoText) {
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    Bytes plain = {0xFD, 0x02, 0x00, 0x0C};
    TDataComponentDescriptor* d = TDataComponentDescriptor::parse(plain.data(), 4, &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 2u);
    EXPECT_EQ(d->getDataComponentID(), 12);
    EXPECT_EQ(d->getAdditionalDataSize(), 0);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"dataComponentDescriptor\",\"dataComponentId\":12,"
              "\"additionalDataComponentInfo\":\"\"");
    delete d;

    // The info text stops at the first zero byte...
    Bytes withZero = {0xFD, 0x06, 0x00, 0xA3, 'A', 'I', 0x00, 'T'};
    d = TDataComponentDescriptor::parse(withZero.data(), length(withZero), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 6u);
    EXPECT_EQ(d->getAdditionalDataSize(), 4);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"dataComponentDescriptor\",\"dataComponentId\":163,"
              "\"additionalDataComponentInfo\":\"AI\"");
    delete d;
    // ...or at the end of the bytes when there is none.
    Bytes noZero = {0xFD, 0x04, 0x01, 0x00, 0x3D, 0x2F};
    d = TDataComponentDescriptor::parse(noZero.data(), length(noZero), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getDataComponentID(), 256);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"dataComponentDescriptor\",\"dataComponentId\":256,"
              "\"additionalDataComponentInfo\":\"=/\"");
    delete d;
}
