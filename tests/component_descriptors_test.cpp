// Component and audio component descriptors.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TAudioComponentDescriptor.h"
#include "TComponentDescriptor.h"

using namespace Sarn;

TEST(Component, VideoComponentWithRawText) {
    LogCapture log;
    // Reserved nibble set, video (1), 1080i 16:9 (0xB3), tag 0; text with a
    // shift code (dropped) and double quotes (written unescaped).
    Bytes b = {0x50, 0x0C, 0xF1, 0xB3, 0x00, 'p', 'o', 'r', 0x0E, '"', 'H', 'D', '"', 0xE9};
    unsigned int read = 0;
    unsigned short code = 0xFFFF;
    TComponentDescriptor* d = TComponentDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 9u);  // the language code and the text bytes only
    EXPECT_EQ(d->getStreamContentComponentType(), 0x01B3);
    EXPECT_EQ(d->toJSON(),
              "\"name\":\"componentDescriptor\",\"streamContent\":1,\"componentType\":179,"
              "\"componentTag\":0,\"iso639LanguageCode\":\"por\",\"text\":\"\"HD\"\xE9\"");
    delete d;

    Bytes bare = {0x50, 0x06, 0x01, 0x03, 0x01, 'j', 'p', 'n'};
    d = TComponentDescriptor::parse(bare.data(), length(bare), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 3u);
    EXPECT_EQ(d->getText(), "");
    delete d;
    EXPECT_TRUE(log.lines().empty());

    Bytes tooShort = {0x50, 0x05, 0x01, 0x03, 0x01, 'j', 'p'};
    EXPECT_EQ(TComponentDescriptor::parse(tooShort.data(), length(tooShort), nullptr, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(
                               "TISDBTDescriptor::parseCommonHeader: (2) Longer data length "
                               "is required: 7 < 8. Aborting!")}));
}

TEST(AudioComponent, FlagsLanguagesAndText) {
    LogCapture log;
    // AAC stereo, LATM (0x11), no simulcast group, main component, quality 1,
    // 48 kHz (code 7); the text keeps every byte, control codes included.
    Bytes b = {0xC4, 0x0D, 0xF2, 0x03, 0x10, 0x11, 0xFF, 0x5F, 'p', 'o', 'r', 'E', 0x0E, '"', 'o'};
    unsigned short code = 0xFFFF;
    unsigned int read = 5;
    TAudioComponentDescriptor* d =
        TAudioComponentDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 5u);
    EXPECT_EQ(d->getMainComponent(), 1);
    EXPECT_EQ(d->getQualityIndicator(), 1);
    EXPECT_EQ(d->getSamplingRate(), 7);
    EXPECT_EQ(d->getText(), std::string("E\x0E\"o"));
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":196,\"descriptor_length\":13,\"stream_content\":2,"
              "\"component_type\":3,\"component_tag\":16,\"stream_type\":17,"
              "\"simulcast_group_tag\":255,\"ES_multi_lingual_flag\":0,\"main_component_flag\":1,"
              "\"quality_indicator\":1,\"sampling_rate\":7,\"ISO_639_language_code\":\"por\","
              "\"text\":\"E\x0E\"o\"");
    delete d;

    // Bilingual (dual mono), both codes, then text.
    Bytes dual = {0xC4, 0x0D, 0x02, 0x02, 0x10, 0x11, 0x00, 0xFF,
                  'j',  'p',  'n',  'e',  'n',  'g',  '!'};
    d = TAudioComponentDescriptor::parse(dual.data(), length(dual), nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":196,\"descriptor_length\":13,\"stream_content\":2,"
              "\"component_type\":2,\"component_tag\":16,\"stream_type\":17,"
              "\"simulcast_group_tag\":0,\"ES_multi_lingual_flag\":1,\"main_component_flag\":1,"
              "\"quality_indicator\":3,\"sampling_rate\":7,\"ISO_639_language_code\":\"jpn\","
              "\"ISO_639_language_code_2\":\"eng\",\"text\":\"!\"");
    delete d;

    // Bilingual without room for the second code: both it and the text stay empty.
    Bytes noRoom = {0xC4, 0x0A, 0x02, 0x02, 0x10, 0x11, 0x00, 0x80, 'j', 'p', 'n', 'e'};
    d = TAudioComponentDescriptor::parse(noRoom.data(), length(noRoom), nullptr, nullptr);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getEsMultiLingual(), 1);
    EXPECT_EQ(d->getLanguageCode2(), "");
    EXPECT_NE(d->toJSON().find("\"ISO_639_language_code_2\":\"\",\"text\":\"\""),
              std::string::npos);
    delete d;
    EXPECT_TRUE(log.lines().empty());

    Bytes shortOne = {0xC4, 0x08, 0x02, 0x02, 0x10, 0x11, 0x00, 0x80, 'j', 'p'};
    EXPECT_EQ(TAudioComponentDescriptor::parse(shortOne.data(), length(shortOne), nullptr, &code),
              nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{warnLine(
                               "TISDBTDescriptor::parseCommonHeader: (2) Longer data length "
                               "is required: 10 < 11. Aborting!")}));
}
