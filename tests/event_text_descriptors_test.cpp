// Short and extended event descriptors: texts, items, escaping and failures.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TExtendedEventDescriptor.h"
#include "TShortEventDescriptor.h"

using namespace Sarn;

TEST(ShortEvent, TextsFilteredAndEscaped) {
    LogCapture log;
    // "por"; name 0E 'N' 'e' 'w' 's' '"' (the shift code is dropped);
    // description 'a' '\' 'b' LF A0 A1 (A0 dropped, LF and A1 kept).
    Bytes b = {0x4D, 0x11, 'p',  'o', 'r',  0x06, 0x0E, 'N',  'e', 'w',
               's',  '"',  0x06, 'a', '\\', 'b',  0x0A, 0xA0, 0xA1};
    unsigned int read = 0;
    unsigned short code = 0xFFFF;
    TShortEventDescriptor* d = TShortEventDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(read, 19u);
    EXPECT_EQ(d->getEventName(), "News\"");
    EXPECT_EQ(d->getEventDescription(), "a\\b\n\xA1");
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":77,\"descriptor_length\":17,"
              "\"ISO_639_language_code\":\"por\",\"event_name\":\"News\\\"\","
              "\"event_description\":\"a\\\\b\n\xA1\"");
    delete d;

    // Seven bytes: no text_length byte at all, still a valid descriptor.
    Bytes bare = {0x4D, 0x05, 'j', 'p', 'n', 0x00, 0x00};
    d = TShortEventDescriptor::parse(bare.data(), length(bare), nullptr, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":77,\"descriptor_length\":5,"
              "\"ISO_639_language_code\":\"jpn\",\"event_name\":\"\",\"event_description\":\"\"");
    delete d;
    EXPECT_TRUE(log.lines().empty());
}

TEST(ShortEvent, StringsRunningPastTheDescriptor) {
    LogCapture log;
    unsigned short code = 0;
    // Name length 9 with four bytes left.
    Bytes name = {0x4D, 0x08, 'p', 'o', 'r', 0x09, 'a', 'b', 'c', 'd'};
    EXPECT_EQ(TShortEventDescriptor::parse(name.data(), length(name), nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    // Description length 3 with two bytes left.
    Bytes text = {0x4D, 0x07, 'p', 'o', 'r', 0x00, 0x03, 'x', 'y'};
    code = 0;
    EXPECT_EQ(TShortEventDescriptor::parse(text.data(), length(text), nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    // Content shorter than five bytes: the header check refuses it.
    Bytes tiny = {0x4D, 0x04, 'p', 'o', 'r', 0x00};
    EXPECT_EQ(TShortEventDescriptor::parse(tiny.data(), length(tiny), nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data length: 9 "
                     "> 4. Aborting!"),
            warnLine("TShortEventDescriptor:: parse: ERROR: parsing Event name. Aborting! "
                     "l_iStrLength: -1 event_name_lentgth: 9"),
            warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data length: 3 "
                     "> 2. Aborting!"),
            warnLine("TShortEventDescriptor:: parse: ERROR: parsing Event description. Aborting! "
                     "l_iStrLength: -1 event_descr_length: 3"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (2) Longer data length is required: 6 < "
                     "7. Aborting!"),
        }));
}

TEST(ExtendedEvent, ItemsAndText) {
    LogCapture log;
    Bytes b = {0x4E, 0x21, 0x12, 'p', 'o', 'r', 23,                            //
               7,    'D',  'i',  'r', 'e', 't', 'o', 'r', 3,   'A', 'n', 'a',  //
               6,    'E',  'l',  'e', 'n', 'c', 'o', 3,   'B', '"', 'C',       //
               4,    'F',  'i',  'm', '.'};
    unsigned int read = 0;
    unsigned short code = 0xFFFF;
    TExtendedEventDescriptor* d =
        TExtendedEventDescriptor::parse(b.data(), length(b), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    // Items and text, plus six: two less than the 35 bytes on the wire.
    EXPECT_EQ(read, 33u);
    EXPECT_EQ(d->getDescriptorNumber(), 1);
    EXPECT_EQ(d->getLastDescriptorNumber(), 2);
    ASSERT_EQ(d->size(), 2);
    EXPECT_EQ(d->get(1)->getDescription(), "Elenco");
    EXPECT_EQ(d->get(2), nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":78,\"descriptor_length\":33,\"descriptor_number\":1,"
              "\"last_descriptor_number\":2,\"ISO_639_language_code\":\"por\","
              "\"items\":[\"Diretor : Ana\",\"Elenco : B\\\"C\"],\"text\":\"Fim.\"");
    delete d;

    // No items and an empty text: the title-less form.
    Bytes empty = {0x4E, 0x06, 0x00, 'p', 'o', 'r', 0x00, 0x00};
    d = TExtendedEventDescriptor::parse(empty.data(), length(empty), &read, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(read, 6u);
    EXPECT_EQ(d->get(0), nullptr);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":78,\"descriptor_length\":6,\"descriptor_number\":0,"
              "\"last_descriptor_number\":0,\"ISO_639_language_code\":\"por\",\"items\":[],"
              "\"text\":\"\"");
    delete d;
    EXPECT_TRUE(log.lines().empty());
}

TEST(ExtendedEvent, ShortAreasAndItemFailures) {
    LogCapture log;
    unsigned short code = 0;
    auto fails = [&](Bytes b, unsigned short expected) {
        code = 0;
        EXPECT_EQ(TExtendedEventDescriptor::parse(b.data(), length(b), nullptr, &code), nullptr);
        EXPECT_EQ(code, expected);
    };
    // The items fill the descriptor: no text_length byte is left.
    fails({0x4E, 0x09, 0x00, 'p', 'o', 'r', 0x04, 0x01, 'a', 0x01, 'b'}, ERROR_DATA_TOO_SHORT);
    // length_of_items beyond the bytes after it.
    fails({0x4E, 0x07, 0x00, 'p', 'o', 'r', 0x09, 0x00, 0x00}, ERROR_INVALID_DATA);
    // An item whose description runs past the bytes.
    fails({0x4E, 0x08, 0x00, 'p', 'o', 'r', 0x03, 0x05, 'a', 0x00}, ERROR_INVALID_DATA);
    // An item with no byte left for its text length.
    fails({0x4E, 0x07, 0x00, 'p', 'o', 'r', 0x02, 0x01, 'a'}, ERROR_DATA_TOO_SHORT);
    // The text runs past the descriptor.
    fails({0x4E, 0x07, 0x00, 'p', 'o', 'r', 0x00, 0x05, 'a'}, ERROR_FIELD_PARSE);
    // A control byte in an item name shortens the step to the next item by
    // one: the walk then reads the item's value 'B' (66) as a name length.
    fails({0x4E, 0x0B, 0x00, 'p', 'o', 'r', 0x05, 0x02, 0x0E, 'A', 0x01, 'B', 0x00},
          ERROR_INVALID_DATA);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine(
                "TExtendedEventDescriptor::parse Missing bytes to read the text length field."),
            warnLine(
                "TExtendedEventDescriptor::parse Declared items length is larger than the buffer "
                "size (9 > 2)"),
            warnLine(
                "TExtendedEventDescriptorItem::parse Declared description length is larger than "
                "the buffer size (5 > 2)"),
            warnLine("TExtendedEventDescriptorItem::parse Missing bytes to read the text length"),
            warnLine("ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 "
                     "> 1. Aborting!"),
            warnLine("TExtendedEventDescriptor::parse error parsing text. Aborting!"),
            warnLine(
                "TExtendedEventDescriptorItem::parse Declared description length is larger than "
                "the buffer size (66 > 1)"),
        }));

    // Item parse on its own: fewer than two bytes.
    log.clear();
    Bytes one = {0x00};
    EXPECT_EQ(TExtendedEventDescriptorItem::parse(one.data(), 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TExtendedEventDescriptorItem::parse(nullptr, 9, nullptr, nullptr), nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TExtendedEventDescriptorItem::parse invalid data length 1"),
                  warnLine("TExtendedEventDescriptorItem::parse invalid data length 0")}));
}
