// Descriptor objects after parsing: editing their lists, the item parsers on
// their own, and sizes kept in eight bits.
#include <gtest/gtest.h>

#include <memory>

#include "DescriptorParse.h"
#include "SarnISDBTUtils.h"
#include "SectionParse.h"

using namespace Sarn;

TEST(DescriptorLists, AddRemoveAndLookUp) {
    LogCapture log;
    ParsedDescriptor<TApplicationDescriptor> app(
        fromHex("00 0F 0A 0002 010300 0001 010000 FF C8 01 0A"));
    EXPECT_TRUE(app.d->removeProfile(2));
    EXPECT_FALSE(app.d->removeProfile(2));
    EXPECT_EQ(app.d->getProfilesCount(), 1);
    EXPECT_EQ(app.d->getProfile(1)->getVersionMajor(), 1);
    app.d->addProfile(nullptr);
    app.d->addProfile(new TApplicationDescriptorProfile(7, 2, 0, 1));
    EXPECT_EQ(app.d->getProfilesCount(), 2);
    EXPECT_EQ(app.d->getProfile(7)->getVersionMajor(), 2);

    ParsedDescriptor<TApplicationNameDescriptor> names(
        fromHex("01 0F 706F72 03 417070 656E67 04 4E657773"));
    EXPECT_EQ(names.d->get("eng")->getName(), "News");
    EXPECT_EQ(names.d->get("spa"), nullptr);
    EXPECT_EQ(names.d->getLanguageCodes(), (std::list<std::string>{"eng", "por"}));
    Bytes spanish = fromHex("737061 02 4F6C");  // "spa", "Ol"
    names.d->add(TApplicationNameDescriptorItem::parse(spanish.data(), 6, nullptr, nullptr));
    names.d->add(nullptr);
    EXPECT_EQ(names.d->get("spa")->getName(), "Ol");

    ParsedDescriptor<TExtendedEventDescriptor> event(
        fromHex("4E 0F 12 706F72 09 01 61 01 62 02 6364 01 65 00"));
    ASSERT_EQ(event.d->size(), 2);
    EXPECT_EQ(event.d->get(1)->getDescription(), "cd");
    EXPECT_EQ(event.d->get(2), nullptr);

    ParsedDescriptor<TGingaNCLApplicationDescriptor> ginga(fromHex("06 06 01 61 00 02 62 63"));
    EXPECT_TRUE(ginga.d->remove(0));
    EXPECT_FALSE(ginga.d->remove(2));
    EXPECT_EQ(ginga.d->get(1), "bc");
    EXPECT_EQ(ginga.d->get(2), "");

    ParsedDescriptor<TExternalApplicationAuthorizationDescriptor> auth(fromHex("05 00"));
    auth.d->add(nullptr);
    auth.d->add(
        new TExternalApplicationAuthorizationDescriptorItem(new TApplicationIdentifier(11, 3), 4));
    EXPECT_EQ(auth.d->size(), 1);
    EXPECT_EQ(auth.d->get("0000000B0003")->getPriority(), 4);

    ParsedDescriptor<TPrefetchDescriptor> prefetch(fromHex("0C 07 01 04 6D61696E 64"));
    Bytes image = fromHex("03 696D67 01");  // "img", priority 1
    prefetch.d->add(TPrefetchDescriptorItem::parse(image.data(), 5, nullptr, nullptr));
    prefetch.d->add(nullptr);
    ASSERT_EQ(prefetch.d->size(), 2u);
    EXPECT_EQ(prefetch.d->get(1)->getLabel(), "img");

    ParsedDescriptor<TDIILocationDescriptor> dii(fromHex("0D 05 02 0001 0014"));
    dii.d->add(nullptr);
    dii.d->add(new TDIILocationDescriptorItem(0x0002, 0x0015));
    ASSERT_EQ(dii.d->size(), 2u);
    EXPECT_EQ(dii.d->get(1)->getAssociationTag(), 0x15);

    ParsedDescriptor<TTransportProtocolDescriptor> ip(
        fromHex("02 10 0002 01 80 0001 0002 0003 00 02 6162 01 63"));
    auto* urls = dynamic_cast<TTransportProtocolDescriptorIP*>(ip.d);
    ASSERT_NE(urls, nullptr);
    EXPECT_TRUE(urls->removeURL(0));
    EXPECT_FALSE(urls->removeURL(1));
    EXPECT_EQ(urls->getURLCount(), 1);
    EXPECT_EQ(urls->getURL(0), "c");

    ParsedDescriptor<TServiceListDescriptor> list(fromHex("41 06 5C38 C0 5C20 01"));
    EXPECT_TRUE(list.d->remove(0x5C20));
    EXPECT_FALSE(list.d->remove(0x5C20));
    EXPECT_EQ(list.d->get(0x5C20), nullptr);
    list.d->add(nullptr);
    list.d->add(new TServiceListDescriptorItem(0x0001, 0x01));
    EXPECT_EQ(list.d->toJSON(),
              "\"name\":\"serviceListDescriptor\",,\"loop\":[{\"serviceId\":1,\"serviceType\":1},"
              "{\"serviceId\":23608,\"serviceType\":192}]");

    ParsedDescriptor<TCountryAvailabilityDescriptor> countries(fromHex("49 07 FF 425241 4A504E"));
    EXPECT_EQ(countries.d->get(1), 0x4A504Eu);
    EXPECT_TRUE(countries.d->remove(0));
    EXPECT_FALSE(countries.d->remove(1));
    EXPECT_EQ(countries.d->get(1), 0u);
    EXPECT_EQ(countries.d->get(0), 0x4A504Eu);

    ParsedDescriptor<TParentalRatingDescriptor> rating(fromHex("55 08 425241 2A 415247 01"));
    EXPECT_FALSE(rating.d->remove(2));
    EXPECT_TRUE(rating.d->remove(0));
    Bytes more = fromHex("555259 13");
    TParentalRatingDescriptorItem* extra =
        TParentalRatingDescriptorItem::parse(more.data(), 4, nullptr, nullptr);
    rating.d->add(&extra);
    rating.d->add(nullptr);
    EXPECT_EQ(rating.d->toJSON(),
              "\"name:\":\"parentalRatingDescriptor\",\"parentalRatings:\":["
              "{\"countryCode\":\"ARG\",\"rating\":0},{\"countryCode\":\"URY\",\"rating\":1}]");

    ParsedDescriptor<TDigitalCopyControlDescriptor> copy(fromHex("C1 06 BD 32 03 10 A6 28"));
    Bytes item = fromHex("11 C0");
    copy.d->add(TDigitalCopyControlDescriptorItem::parse(item.data(), 2, nullptr, nullptr));
    copy.d->add(nullptr);
    EXPECT_EQ(copy.d->size(), 2);
    EXPECT_FALSE(copy.d->remove(2));
    EXPECT_TRUE(copy.d->remove(0));
    EXPECT_EQ(copy.d->get(0)->getComponentTag(), 0x11);
    EXPECT_EQ(copy.d->get(0)->getDigitalRecordingControlData(), 3);

    ParsedDescriptor<TEmergencyInformationDescriptor> alarm(
        fromHex("FC 0C 5C38 3F 00 5C20 80 04 A5AF 0FF0"));
    Bytes areas = fromHex("5C39 80 02 0101");
    alarm.d->add(TEmergencyInformationDescriptorItem::parse(areas.data(), 6, nullptr, nullptr));
    alarm.d->add(nullptr);
    EXPECT_EQ(alarm.d->size(), 3);
    EXPECT_EQ(alarm.d->get(2)->getAreaCodes()[0], 0x010);
    EXPECT_TRUE(alarm.d->remove(2));
    EXPECT_TRUE(alarm.d->remove(0));
    EXPECT_FALSE(alarm.d->remove(1));
    EXPECT_EQ(alarm.d->get(0)->getServiceID(), 0x5C20);
    EXPECT_EQ(alarm.d->get(1), nullptr);

    ParsedDescriptor<TLocalTimeOffsetDescriptor> offsets(
        fromHex("58 1A 425241 03 0300 E14D 000000 0200 415247 0A 0330 0000 000000 1030"));
    EXPECT_FALSE(offsets.d->remove("URY"));
    EXPECT_TRUE(offsets.d->remove("ARG"));
    EXPECT_EQ(offsets.d->get("ARG"), nullptr);
    EXPECT_EQ(offsets.d->size(), 1);
    EXPECT_EQ(offsets.d->get("BRA")->getTimeOfChange(), 1476576000u);
    Bytes uruguay = fromHex("555259 03 0300 E14D 000000 0200");
    offsets.d->add(TLocalTimeOffsetDescriptorItem::parse(uruguay.data(), 13, nullptr, nullptr));
    offsets.d->add(nullptr);
    EXPECT_EQ(offsets.d->getCountryCodes(), (std::list<std::string>{"BRA", "URY"}));

    ParsedDescriptor<TTSInformationDescriptor> ts(
        fromHex("CD 11 05 12 5341524E 0F 01 C858 AF 02 C840 C841 FF"));
    EXPECT_FALSE(ts.d->removeTransmissionType(2));
    EXPECT_TRUE(ts.d->removeTransmissionType(0));
    ts.d->addTransmissionType(nullptr);
    EXPECT_EQ(ts.d->getTransmissionTypeCount(), 1);
    TTSInformationDescriptorItem* added = new TTSInformationDescriptorItem();
    ts.d->addTransmissionType(added);
    EXPECT_EQ(ts.d->getTransmissionType(1), added);
    EXPECT_EQ(ts.d->getTransmissionType(0)->getTransmissionTypeInfo(), 0xAF);
    EXPECT_TRUE(log.lines().empty());
}

TEST(DescriptorItems, ParsedOnTheirOwn) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    unsigned int read = 0;
    // Model and version: the first byte shifted left by the second, in 16 bits.
    Bytes entry = fromHex("01 09 01 00000F 0320 030F 00");
    TCompatibilityDescriptorItem* i =
        TCompatibilityDescriptorItem::parse(entry.data(), 11, &read, &code);
    ASSERT_NE(i, nullptr);
    EXPECT_EQ(read, 11u);
    EXPECT_EQ(i->getModel(), 0);
    EXPECT_EQ(i->getVersion(), 0x8000);
    delete i;
    Bytes bareSub = fromHex("01 00");
    TCompatibilityDescriptorSubItem* sub =
        TCompatibilityDescriptorSubItem::parse(bareSub.data(), 2, &read, &code);
    ASSERT_NE(sub, nullptr);
    EXPECT_EQ(read, 2u);
    delete sub;
    // The structure on its own: its length field is not counted.
    Bytes structure = fromHex("000D 0001") + entry;
    TCompatibilityDescriptor* c =
        TCompatibilityDescriptor::parse(structure.data(), 15, &read, &code);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(read, 13u);
    EXPECT_EQ(c->getCompatibilityDescriptorItem(1), nullptr);
    delete c;
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(TCompatibilityDescriptor::parse(nullptr, 15, &read, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    Bytes one = {0x00};
    EXPECT_EQ(TExtendedEventDescriptorItem::parse(one.data(), 1, nullptr, &code), nullptr);
    EXPECT_EQ(TExtendedEventDescriptorItem::parse(nullptr, 9, nullptr, nullptr), nullptr);
    code = 0;
    Bytes odd = fromHex("0001 C0 03 123456");
    EXPECT_EQ(TEmergencyInformationDescriptorItem::parse(odd.data(), 7, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    EXPECT_EQ(TEmergencyInformationDescriptorItem::parse(nullptr, 9, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TContentDescriptor::parse(nullptr, 4, nullptr, nullptr), nullptr);
    EXPECT_EQ(TStreamModeDescriptor::parse(nullptr, 4, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_DATA);
    TGingaNCLApplicationLocationDescriptor location(one.data(), 1);
    EXPECT_EQ(location.parseData(one.data(), 1, &read, &code), 0);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TCompatibilityDescriptor::parse: Item length not valid: 0. Aborting!"),
            warnLine("TExtendedEventDescriptorItem::parse invalid data length 1"),
            warnLine("TExtendedEventDescriptorItem::parse invalid data length 0"),
            logLine(6,
                    "TEmergencyInformationDescriptorItem::parse The area code length is not a "
                    "multiple of 2 (value: 3)"),
            warnLine("TEmergencyInformationDescriptorItem::parse: Item length not valid: 9. "
                     "Aborting!"),
            warnLine("TContentDescriptor::parse: Item length not valid: 0. Aborting!"),
            warnLine("TISDBTDescriptor::parseCommonHeader: (1) Invalid data. Aborting!"),
            warnLine("TGingaApplicationLocationDescriptor::parse: Item length not valid: 1. "
                     "Aborting!")}));
}

TEST(TransportProtocolSelectors, InteractionChannelAndProtocol5) {
    LogCapture log;
    // Two URL bases, the first with two extensions.
    Bytes b = fromHex("02 0D 0003 09 02 6874 02 01 78 00 01 75 00");
    TTransportProtocolDescriptorIC ic(b.data(), length(b));
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    ASSERT_EQ(ic.parseData(b.data() + 2, 13, &n, &code), 1);
    EXPECT_EQ(n, 13u);
    EXPECT_EQ(ic.getURLCount(), 2u);
    EXPECT_EQ(ic.getURLBase(0), "ht");
    EXPECT_EQ(ic.getURLExtensionCount(0), 2u);
    EXPECT_EQ(ic.getURLExtension(0, 0), "x");
    EXPECT_EQ(ic.getURLExtension(0, 1), "");
    EXPECT_EQ(ic.getURLBase(1), "u");
    EXPECT_EQ(ic.getURLExtensionCount(1), 0u);
    EXPECT_EQ(ic.getURLExtension(0, 2), "");
    EXPECT_EQ(ic.getURLExtension(1, 0), "");
    EXPECT_EQ(ic.getURLBase(2), "");
    EXPECT_EQ(ic.getTransportProtocolLabel(), 9);
    EXPECT_EQ(ic.getType(), TTransportProtocolDescriptor::TYPE_DC);
    EXPECT_EQ(TTransportProtocolDescriptor::clone(&ic), nullptr);
    TTransportProtocolDescriptorPC pc(b.data(), 2);
    EXPECT_EQ(pc.getProtocolID(), 5);
    EXPECT_EQ(pc.getType(), TTransportProtocolDescriptor::TYPE_OC);
    EXPECT_EQ(TTransportProtocolDescriptor::clone(&pc), nullptr);
    Bytes local = fromHex("0005 09 00 07");
    EXPECT_EQ(pc.parseData(local.data(), 5, &n, &code), 1);
    EXPECT_EQ(pc.getTransportProtocolLabel(), 9);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(pc.parseData(local.data(), 3, &n, &code), 0);
    // A selector parsed on its own writes 0 on success.
    Bytes url = fromHex("0002 07 00 80 01 61");
    TTransportProtocolDescriptorIP ip(url.data(), length(url));
    code = 0xFFFF;
    EXPECT_EQ(ip.parseData(url.data(), 7, &n, &code), 1);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(ip.getURL(0), "a");

    // Too short for the selector; too short for the label; a base with no byte for its extension
    // count; a URL base, then a URL extension, longer than the selector.
    TTransportProtocolDescriptorIC cut(b.data(), 2);
    EXPECT_EQ(cut.parseData(b.data() + 2, 3, &n, &code), 1);
    code = 0xFFFF;
    EXPECT_EQ(cut.parseData(b.data() + 2, 2, &n, &code), 0);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(cut.parseData(b.data() + 2, 6, &n, &code), 0);
    Bytes longBase = fromHex("0003 09 05 68");
    EXPECT_EQ(cut.parseData(longBase.data(), 5, &n, &code), 0);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    Bytes longExtension = fromHex("0003 09 01 68 01 04 78");
    code = 0xFFFF;
    EXPECT_EQ(cut.parseData(longExtension.data(), 8, &n, &code), 0);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    const std::string overrun =
        "ParserUtils::parseStr: ERROR: String length exceeds available data length: ";
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TTransportProtocolDescriptorPC::parse: Item length not valid: 3. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: Item length not valid: 2. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: Item length not valid: 0. Aborting!"),
            warnLine(overrun + "5 > 1. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Base. Aborting!"),
            warnLine(overrun + "4 > 1. Aborting!"),
            warnLine("TTransportProtocolDescriptorIC::parse: ERROR: parsing URL Extension. "
                     "Aborting!")}));
}

namespace {
// Blocks a parse and delete of T over b leave behind (a first run is not
// counted, so that what it sets up for good does not count).
template <typename T>
long blocksLeftBy(const Bytes& b) {
    { ParsedDescriptor<T> warm(b); }
    const long before = heapBlocksAlive();
    { ParsedDescriptor<T> p(b); }
    return heapBlocksAlive() - before;
}
}  // namespace

TEST(DescriptorLists, ItemsAreFreedAndLoopsFindEveryDescriptorOfATag) {
    EXPECT_EQ(blocksLeftBy<TPrefetchDescriptor>(fromHex("0C 0C 01 04 6D61696E 64 03 696D67 01")),
              0);
    EXPECT_EQ(blocksLeftBy<TApplicationNameDescriptor>(
                  fromHex("01 0F 706F72 03 417070 656E67 04 4E657773")),
              0);
    EXPECT_EQ(blocksLeftBy<TExtendedEventDescriptor>(
                  fromHex("4E 0F 12 706F72 09 01 61 01 62 02 6364 01 65 00")),
              0);

    // One video stream whose loop holds two stream identifiers (tags 0x52).
    Bytes b = longSection(
        0x02, 0x0001, 3,
        {0xE1, 0x00, 0xF0, 0x00, 0x1B, 0xE1, 0x11, 0xF0, 0x06, 0x52, 0x01, 0x00, 0x52, 0x01, 0x81});
    unsigned short code = 0xFFFF;
    std::unique_ptr<TISDBTTable> t(parseSection(b.data(), length(b), 1, &code, 0x0100));
    ASSERT_NE(t, nullptr);
    const TProgramMap* stream = static_cast<TPMTTable*>(t.get())->getProgramMap(0);
    ASSERT_NE(stream, nullptr);
    const std::list<TISDBTDescriptor*> ids = stream->getDescriptors(0x52);
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(static_cast<TStreamIdentifierDescriptor*>(ids.back())->getComponentTag(), 0x81);
    EXPECT_TRUE(stream->getDescriptors(0x53).empty());
}
