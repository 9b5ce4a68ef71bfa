// Application information table: common loop, applications, inheritance, JSON.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TAITTable.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"
#include "TTransportProtocolDescriptorOC.h"

using namespace Sarn;

namespace {

TAITTable* parse(Bytes& b, unsigned short* code, TAITTable* previous = nullptr, int crc = 1) {
    return TAITTable::parse(b.data(), static_cast<unsigned int>(b.size()), 0, crc, code, previous);
}

void append(Bytes& to, const Bytes& more) {
    to.insert(to.end(), more.begin(), more.end());
}

/** An AIT section (application_type 9) with its two loops and a correct CRC. */
Bytes ait(const Bytes& common, const Bytes& applications, unsigned char version = 1) {
    return longSection(0x74, 0x0009, version, loop12(common) + loop12(applications));
}

/** One application of organization 10, control code 1, resolution 0. */
Bytes application(unsigned char applicationId, const Bytes& descriptors) {
    return Bytes{0x00, 0x00, 0x00, 0x0A, 0x00, applicationId, 0x01} + be16(descriptors.size()) +
           descriptors;
}

/** The JSON of every kind of descriptor the holder keeps, "-" for an empty slot. */
template <class Holder>
std::vector<std::string> slotsJson(const Holder& h) {
    std::vector<std::string> out;
    for (const TISDBTDescriptor* d : std::initializer_list<const TISDBTDescriptor*>{
             h.getApplicationDescriptor(), h.getApplicationNameDescriptor(),
             h.getApplicationIconDescriptor(), h.getExternalApplicationAuthorizationDescriptor(),
             h.getTransportProtocolDescriptor(), h.getIPSignalingDescriptor(),
             h.getPrefetchDescriptor(), h.getDIILocationDescriptor(),
             h.getGingaApplicationDescriptor(), h.getGingaApplicationLocationDescriptor()})
        out.push_back(d == nullptr ? "-" : d->toJSON());
    return out;
}

const Bytes kHtml5Application = {0x0E, 0x02, 0x01, 'p'};
const Bytes kHtml5Location = {0x0F, 0x06, 0x00, 0x00, 'a', '.', 'h', 't'};
}  // namespace

TEST(AIT, GingaNclSectionEndToEnd) {
    LogCapture log;
    Bytes b = withCrc({
        0x74, 0xF0, 0x64, 0x00, 0x09, 0xC7, 0x00, 0x00,  // application_type 9, version 3
        0xF0, 0x14,                                      // common descriptors
        0x02, 0x05, 0x00, 0x01, 0x01, 0x00, 0x41,        // object carousel, label 1, tag 0x41
        0x06, 0x04, 0x03, 'a', '=', '1',                 // Ginga-NCL application "a=1"
        0x42, 0x02, 0xFF, 0xFF,                          // stuffing
        0x10, 0x01, 0x00,                                // not an AIT descriptor we keep
        0xF0, 0x43,                                      // application loop
        // 0x0000000A/0x0002, present, resolution 3: HTML5 location, unknown 0x43
        0x00, 0x00, 0x00, 0x0A, 0x00, 0x02, 0x02, 0x30, 0x0A,  //
        0x0F, 0x06, 0x00, 0x00, 'a', '.', 'h', 't',            //
        0x43, 0x00,                                            //
        // 0x0000000A/0x0001, autostart, reserved bits set
        0x00, 0x00, 0x00, 0x0A, 0x00, 0x01, 0x01, 0xF0, 0x27,
        // application descriptor: profile 1 v1.0.0, bound, visible, priority 1, label 1
        0x00, 0x09, 0x05, 0x00, 0x01, 0x01, 0x00, 0x00, 0xFF, 0x01, 0x01,
        // name "SARN Info" in Portuguese
        0x01, 0x0D, 'p', 'o', 'r', 0x09, 'S', 'A', 'R', 'N', ' ', 'I', 'n', 'f', 'o',
        // Ginga-NCL location "/" + "main.ncl"
        0x07, 0x0B, 0x01, '/', 0x00, 'm', 'a', 'i', 'n', '.', 'n', 'c', 'l'  //
    });
    unsigned short code = 0xFFFF;
    TAITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(t->getType(), TISDBTTable::TYPE_AIT);
    EXPECT_EQ(t->getApplicationType(), 9);
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{0x02, 0x06}));
    EXPECT_EQ(t->getApplicationsIDs(), (std::list<std::string>{"0000000A0001", "0000000A0002"}));
    EXPECT_EQ(
        t->toJSON(),
        "{\"table_id\":116,\"section_length\":100,\"table_id_extension\":9,\"version_number\":3,"
        "\"current_next_indicator\":1,\"section_number\":0,\"last_section_number\":0,"
        "\"descriptors\":["
        "{\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":1,"
        "\"transport_protocol_label\":1},"
        "{\"errors\":0,\"descriptor_tag\":6,\"descriptor_length\":4,\"parameter_loop\":[\"a=1\"]}],"
        "\"application_loop\":["
        "{\"application_identifier\":{\"organization_id\":10,\"application_id\":1},"
        "\"application_control_code\":1,\"recommended_resolution\":15,\"descriptors\":["
        "{\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":9,\"profile_loop\":["
        "{\"application_profile\":1,\"version.major\":1,\"version.minor\":0,"
        "\"version.micro\":0}],\"service_bound_flag\":1,\"visibility\":3,"
        "\"application_priority\":1,\"transport_protocol_label\":\"0x01\"},"
        "{\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":13,\"name_loop\":["
        "{\"ISO_639_language_code\":\"por\",\"application_name\":\"SARN Info\"}]},"
        "{\"errors\":0,\"descriptor_tag\":7,\"descriptor_length\":11,\"base_directory\":\"/\","
        "\"entitypath_extension\":\"\",\"initial_entity\":\"main.ncl\"}]},"
        "{\"application_identifier\":{\"organization_id\":10,\"application_id\":2},"
        "\"application_control_code\":2,\"recommended_resolution\":3,\"descriptors\":["
        "{\"errors\":0,\"descriptor_tag\":15,\"descriptor_length\":6,\"base_directory\":\"\","
        "\"entitypath_extension\":\"\",\"initial_entity\":\"a.ht\"}]}]}");
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TAITTable::parse: Ginga NCL Application Descriptor... WHAT TO DO????"),
                  warnLine("TAITTable::parse: Unknown descriptor: 0x10. Ignored!"),
                  warnLine("TApplication::parse: Unknown descriptor: 0x43. Ignored!")}));

    // The HTML5 application took the table's type, not its own (11).
    TApplication* html5 = t->getApplication("0000000A0002");
    ASSERT_NE(html5, nullptr);
    EXPECT_EQ(html5->getApplicationType(), 9);
    EXPECT_EQ(html5->getRecommendedResolution(), 3);
    EXPECT_EQ(html5->getApplicationIdentifier()->getApplicationID(), 2);

    // Common descriptors are inherited on request only.
    int fromTable = 0;
    EXPECT_EQ(html5->getTransportProtocolDescriptor(0, &fromTable), nullptr);
    EXPECT_EQ(fromTable, 0);
    EXPECT_EQ(html5->getTransportProtocolDescriptor(1, &fromTable),
              t->getTransportProtocolDescriptor());
    EXPECT_EQ(fromTable, 1);
    TApplication* ncl = t->getApplication("0000000A0001");
    fromTable = 0;
    EXPECT_NE(ncl->getApplicationDescriptor(1, &fromTable), nullptr);
    EXPECT_EQ(fromTable, 0);
    EXPECT_EQ(ncl->getIPSignalingDescriptor(1, &fromTable), nullptr);
    EXPECT_EQ(fromTable, 0);

    // Copies: with inherit the common kinds come along; without, only its own.
    TApplication* inherited = new TApplication(html5, 1);
    TApplication* own = new TApplication(html5, 0);
    delete t;
    EXPECT_EQ(inherited->getDescriptorTags(), (std::list<unsigned char>{0x02, 0x06, 0x0F}));
    EXPECT_EQ(own->getDescriptorTags(), (std::list<unsigned char>{0x0F}));
    EXPECT_EQ(inherited->getHashID(), "0000000A0002");
    EXPECT_EQ(inherited->getControlCode(), 2);
    auto* oc = dynamic_cast<TTransportProtocolDescriptorOC*>(
        inherited->getTransportProtocolDescriptor(1, nullptr));
    ASSERT_NE(oc, nullptr);
    EXPECT_EQ(oc->getComponentTag(), 0x41);
    auto* params =
        dynamic_cast<TGingaNCLApplicationDescriptor*>(inherited->getGingaApplicationDescriptor());
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(params->get(0), "a=1");
    // No parent after copying: nothing more to inherit.
    EXPECT_EQ(own->getTransportProtocolDescriptor(1, nullptr), nullptr);
    delete inherited;
    delete own;
}

TEST(AIT, EmptyLoopsDuplicatesAndRepeats) {
    LogCapture log;
    Bytes empty = ait({}, {});
    unsigned short code = 0xFFFF;
    TAITTable* t = parse(empty, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->toJSON(),
              "{\"table_id\":116,\"section_length\":13,\"table_id_extension\":9,"
              "\"version_number\":1,\"current_next_indicator\":1,\"section_number\":0,"
              "\"last_section_number\":0,\"descriptors\":[],\"application_loop\":[]}");
    // The same section again: unchanged; a new version: a new table.
    EXPECT_EQ(parse(empty, &code, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    Bytes next = ait({}, {}, 2);
    TAITTable* t2 = parse(next, &code, t);
    ASSERT_NE(t2, nullptr);
    delete t2;
    delete t;

    // The same application twice and two transport descriptors: the later ones stay.
    Bytes apps = application(1, {});
    Bytes again = application(1, {0x02, 0x05, 0x00, 0x04, 0x07, 0x00, 0x0C});
    again[6] = 0x04;  // control code KILL
    append(apps, again);
    Bytes common = {0x02, 0x05, 0x00, 0x01, 0x01, 0x00, 0x41,
                    0x02, 0x05, 0x00, 0x01, 0x02, 0x00, 0x42};
    Bytes dup = ait(common, apps);
    t = parse(dup, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getApplicationsCount(), 1);
    EXPECT_EQ(t->getApplication("0000000A0001")->getControlCode(), 4);
    EXPECT_EQ(t->getApplication("0000000A0001")->getTransportProtocolDescriptor()->getProtocolID(),
              4);
    EXPECT_EQ(t->getTransportProtocolDescriptor()->getTransportProtocolLabel(), 2);
    EXPECT_EQ(t->getApplication("0000000A0003"), nullptr);
    EXPECT_FALSE(t->removeApplication("0000000A0003"));
    EXPECT_TRUE(t->removeApplication("0000000A0001"));
    EXPECT_EQ(t->getApplicationsCount(), 0);
    delete t;
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(10, 1), "0000000A0001");
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(0xFFFFFFFFu, 0xABCD), "FFFFFFFFABCD");
}

TEST(AIT, Html5LookupsAsymmetric) {
    LogCapture log;
    Bytes both = kHtml5Application;
    append(both, kHtml5Location);
    Bytes apps = application(1, kHtml5Application);
    append(apps, application(2, both));
    Bytes b = ait(kHtml5Location, apps);
    unsigned short code = 0xFFFF;
    TAITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    // The table keeps its HTML5 location but does not find it by tag.
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{0x0F}));
    EXPECT_NE(t->getGingaApplicationLocationDescriptor(), nullptr);
    EXPECT_EQ(t->getDescriptor(0x0F), nullptr);
    EXPECT_EQ(t->getDescriptor(0x07), nullptr);
    EXPECT_EQ(t->getDescriptor(0x10), nullptr);
    // An application answers 0x0E with its HTML5 location, if any.
    TApplication* onlyApp = t->getApplication("0000000A0001");
    EXPECT_EQ(onlyApp->getDescriptorTags(), (std::list<unsigned char>{0x0E}));
    EXPECT_EQ(onlyApp->getDescriptor(0x0E), nullptr);
    TApplication* withLocation = t->getApplication("0000000A0002");
    EXPECT_EQ(withLocation->getDescriptor(0x0E),
              withLocation->getGingaApplicationLocationDescriptor());
    EXPECT_EQ(withLocation->getDescriptor(0x0F),
              withLocation->getGingaApplicationLocationDescriptor());
    const std::string location =
        "{\"errors\":0,\"descriptor_tag\":15,\"descriptor_length\":6,\"base_directory\":\"\","
        "\"entitypath_extension\":\"\",\"initial_entity\":\"a.ht\"}";
    EXPECT_EQ(t->toJSON().substr(t->toJSON().find(",\"descriptors\"")),
              ",\"descriptors\":[],\"application_loop\":["
              "{\"application_identifier\":{\"organization_id\":10,\"application_id\":1},"
              "\"application_control_code\":1,\"recommended_resolution\":0,\"descriptors\":[]},"
              "{\"application_identifier\":{\"organization_id\":10,\"application_id\":2},"
              "\"application_control_code\":1,\"recommended_resolution\":0,\"descriptors\":[" +
                  location + "," + location + "]}]}");
    delete t;

    // Parsed on its own, an application keeps the type of its Ginga descriptor.
    Bytes alone = application(3, kHtml5Application);
    unsigned int n = 0;
    TApplication* a =
        TApplication::parse(alone.data(), static_cast<unsigned int>(alone.size()), 1, &n, &code);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(n, 13u);
    EXPECT_EQ(a->getApplicationType(), 11);
    EXPECT_EQ(a->getGingaApplicationDescriptor(1, nullptr)->getDescriptorTag(), 0x0E);
    delete a;
    // Each Ginga kind, application or location, gives its type: Java 1,
    // NCL 9, HTML5 11.
    const std::vector<std::pair<Bytes, int>> kinds = {
        {{0x03, 0x00}, 1},  {{0x04, 0x04, 0x00, 0x00, 'a', 'b'}, 1},
        {{0x06, 0x00}, 9},  {{0x07, 0x04, 0x00, 0x00, 'a', 'b'}, 9},
        {{0x0E, 0x00}, 11}, {{0x0F, 0x04, 0x00, 0x00, 'a', 'b'}, 11}};
    for (const auto& k : kinds) {
        Bytes one = application(4, k.first);
        a = TApplication::parse(one.data(), length(one), 1, &n, &code);
        ASSERT_NE(a, nullptr) << static_cast<int>(k.first[0]);
        EXPECT_EQ(a->getApplicationType(), k.second) << static_cast<int>(k.first[0]);
        delete a;
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(AIT, RefusalsWithCodesAndMessages) {
    LogCapture log;
    unsigned short code = 0;
    struct Case {
        Bytes section;
        unsigned short code;
    };
    // Common loop length 9 with 2 bytes of descriptors after it.
    Bytes commonTooLong = withCrc(
        {0x74, 0xF0, 0x0F, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x09, 0x42, 0x00, 0xF0, 0x00});
    // A descriptor running past the common loop and the section.
    Bytes overrun = ait({0x42, 0x09}, {});
    // A failing descriptor keeps its own code; protocol 3 leaves 0.
    Bytes badDescriptor = ait({0x00, 0x07, 0x05, 0x00, 0x01, 0x01, 0x00, 0x00, 0x80}, {});
    Bytes interaction = ait({0x02, 0x03, 0x00, 0x03, 0x01}, {});
    // An application whose descriptor fails: the table reports the item.
    Bytes badApplication = ait({}, application(1, {0x01, 0x04, 'p', 'o', 'r', 0x05}));
    // Application loop longer than the section; an application's loop too.
    Bytes appsTooLong = withCrc(
        {0x74, 0xF0, 0x10, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x00, 0xF0, 0x20, 0x00, 0x00, 0x00});
    Bytes appLoopTooLong = ait({}, {0x00, 0x00, 0x00, 0x0A, 0x00, 0x01, 0x01, 0x00, 0x05, 0x42});
    std::vector<Case> cases = {
        {commonTooLong, ERROR_DATA_TOO_SHORT}, {overrun, ERROR_DATA_TOO_SHORT},
        {badDescriptor, ERROR_DATA_TOO_SHORT}, {interaction, ERROR_NONE},
        {badApplication, ERROR_INVALID_ITEM},  {appsTooLong, ERROR_DATA_TOO_SHORT},
        {appLoopTooLong, ERROR_INVALID_ITEM}};
    for (Case& c : cases) {
        code = 0xBEEF;
        EXPECT_EQ(parse(c.section, &code), nullptr);
        EXPECT_EQ(code, c.code);
    }
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("TAITTable::parse: Item length not valid: 9 > 4. Aborting!"),
            warnLine("TAITTable::parse: Item length not valid: 2 > 2. Aborting!"),
            warnLine("TApplicationDescriptor:: parse: Section length exceeded. Aborting!"),
            warnLine(
                "ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > "
                "0. Aborting!"),
            warnLine("TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!"),
            warnLine("TApplicationNameDescriptor::parse: Invalid item. Aborting!"),
            warnLine("TAITTable::parse: Invalid item. Aborting!"),
            warnLine("TAITTable::parse: Item length not valid: 32 > 3. Aborting!"),
            warnLine("TApplication::parse: Item length not valid: 5 > 1. Aborting!"),
            warnLine("TAITTable::parse: Invalid item. Aborting!")}));
    log.clear();

    // Header failures: another table_id; a wrong CRC.
    Bytes pat = withCrc({0x00, 0xB0, 0x09, 0x00, 0x01, 0xC1, 0x00, 0x00});
    EXPECT_EQ(parse(pat, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_TABLE_ID);
    Bytes corrupt = ait({}, {});
    corrupt[9] ^= 0x01;
    EXPECT_EQ(parse(corrupt, &code), nullptr);
    EXPECT_EQ(code, ERROR_CRC32);
    // Without the CRC check the corrupted loop length is caught by the walk.
    EXPECT_EQ(parse(corrupt, &code, nullptr, 0), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);

    // Too short for an application: fewer than the identifier's six bytes,
    // then no room for the control code and loop length.
    Bytes five = {0, 0, 0, 10, 0};
    EXPECT_EQ(TApplication::parse(five.data(), 5, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    Bytes eight = {0, 0, 0, 10, 0, 1, 1, 0};
    EXPECT_EQ(TApplication::parse(eight.data(), 8, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts().back(),
              warnLine("TApplication::parse: Item length not valid: 8. Aborting!"));
    // Six bytes are a whole identifier.
    unsigned int n = 0;
    TApplicationIdentifier* id = TApplicationIdentifier::parse(eight.data(), 6, 1, &n, &code);
    ASSERT_NE(id, nullptr);
    EXPECT_EQ(n, 6u);
    EXPECT_EQ(code, ERROR_NONE);
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(id), "0000000A0001");
    delete id;
    EXPECT_EQ(TApplicationIdentifier::parse(five.data(), 5, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts().back(),
              warnLine("TApplicationIdentifier::parse: Item length not valid: 5. Aborting!"));
    log.clear();

    // A descriptor overrunning an application: unlike the table, which shows
    // the loop length left, the application shows the descriptor's length.
    Bytes overrunInApplication = ait({}, application(1, {0x42, 0x09}));
    EXPECT_EQ(parse(overrunInApplication, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TApplication::parse: Item length not valid: 9 > 0. Aborting!"),
                  warnLine("TAITTable::parse: Invalid item. Aborting!")}));
}

TEST(AIT, CommonLoopKeepsEveryKindInSlotOrder) {
    LogCapture log;
    // One descriptor of each kind, on the wire in roughly the reverse of the
    // order in which the table lists and renders them.
    Bytes common = {
        0x04, 0x04, 0x00, 0x00, 'X',  'l',         // Java location, initial class "Xl"
        0x03, 0x00,                                // Java application, no parameters
        0x0D, 0x05, 0x01, 0x00, 0x02, 0x00, 0x03,  // DII location: label 1, DII 2, tag 3
        0x0C, 0x04, 0x01, 0x01, 'a',  0x05,        // prefetch: label 1, "a" priority 5
        0x11, 0x03, 0x00, 0x00, 0x01,              // IP signalling, platform 1
        0x05, 0x00,                                // external authorization, empty
        0x0B, 0x04, 0x01, 'i',  0x00, 0x01,        // icon "i", flags 1
        0x01, 0x05, 'p',  'o',  'r',  0x01, 'N',   // name "N"
        0x00, 0x03, 0x00, 0x40, 0x02,              // application: visibility 2, priority 2
        0x02, 0x05, 0x00, 0x01, 0x03, 0x00, 0x0A   // object carousel, label 3
    };
    Bytes b = ait(common, application(1, {}));
    unsigned short code = 0xFFFF;
    TAITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    const std::list<unsigned char> tags = {0x00, 0x01, 0x0B, 0x05, 0x02,
                                           0x11, 0x0C, 0x0D, 0x03, 0x04};
    EXPECT_EQ(t->getDescriptorTags(), tags);
    // A copy that inherits takes every kind from the table, each one equal.
    TApplication inherited(t->getApplication("0000000A0001"), 1);
    EXPECT_EQ(inherited.getDescriptorTags(), tags);
    EXPECT_EQ(slotsJson(inherited), slotsJson(*t));
    EXPECT_EQ(t->getDescriptor(0x04), t->getGingaApplicationLocationDescriptor());
    EXPECT_EQ(t->getDescriptor(0x07), nullptr);
    EXPECT_EQ(t->getDescriptor(0x06), nullptr);
    for (unsigned char unused : {0x08, 0x09, 0x0A, 0x10, 0x12, 0x42})
        EXPECT_EQ(t->getDescriptor(unused), nullptr) << static_cast<int>(unused);
    const std::string json = t->toJSON();
    EXPECT_EQ(json.substr(json.find(",\"descriptors\"")),
              ",\"descriptors\":["
              "{\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":3,\"profile_loop\":[],"
              "\"service_bound_flag\":0,\"visibility\":2,\"application_priority\":2,"
              "\"transport_protocol_label\":\"\"},"
              "{\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":5,\"name_loop\":["
              "{\"ISO_639_language_code\":\"por\",\"application_name\":\"N\"}]},"
              "{\"errors\":0,\"descriptor_tag\":11,\"descriptor_length\":4,"
              "\"descriptor_content\":\"0x01690001\"},"
              "{\"errors\":0,\"descriptor_tag\":5,\"descriptor_length\":0},"
              "{\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":1,"
              "\"transport_protocol_label\":3},"
              "{\"errors\":0,\"descriptor_tag\":17,\"descriptor_length\":3,"
              "\"descriptor_content\":\"0x000001\"},"
              "{\"errors\":0,\"descriptor_tag\":12,\"descriptor_length\":4,"
              "\"descriptor_content\":\"0x01016105\"},"
              "{\"errors\":0,\"descriptor_tag\":13,\"descriptor_length\":5,"
              "\"descriptor_content\":\"0x0100020003\"},"
              "{\"errors\":0,\"descriptor_tag\":3,\"descriptor_length\":0,\"parameter_loop\":[]},"
              "{\"errors\":0,\"descriptor_tag\":4,\"descriptor_length\":4,\"base_directory\":\"\","
              "\"entitypath_extension\":\"\",\"initial_entity\":\"Xl\"}],"
              "\"application_loop\":[{\"application_identifier\":{\"organization_id\":10,"
              "\"application_id\":1},\"application_control_code\":1,"
              "\"recommended_resolution\":0,\"descriptors\":[]}]}");
    delete t;

    // The NCL location in the common loop is announced the same way, and an
    // inheriting copy keeps it as an NCL location.
    Bytes ncl = ait({0x07, 0x04, 0x00, 0x00, 'm', 'n'}, application(1, {}));
    t = parse(ncl, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getDescriptor(0x07), t->getGingaApplicationLocationDescriptor());
    EXPECT_EQ(t->getDescriptor(0x04), nullptr);
    TApplication nclCopy(t->getApplication("0000000A0001"), 1);
    EXPECT_EQ(nclCopy.getDescriptorTags(), (std::list<unsigned char>{0x07}));
    EXPECT_NE(dynamic_cast<TGingaNCLApplicationLocationDescriptor*>(
                  nclCopy.getGingaApplicationLocationDescriptor()),
              nullptr);
    EXPECT_EQ(slotsJson(nclCopy), slotsJson(*t));
    delete t;
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TAITTable::parse: Ginga Java Application Location Descriptor... WHAT "
                           "TO DO????"),
                  warnLine("TAITTable::parse: Ginga Java Application Descriptor... WHAT TO DO????"),
                  warnLine("TAITTable::parse: Ginga NCL Application Location Descriptor... WHAT "
                           "TO DO????")}));
}

TEST(AIT, ApplicationCopiesKeepEveryKindOfEachGingaVariant) {
    LogCapture log;
    struct Variant {
        unsigned char application, location;
        unsigned short type;
    };
    for (const Variant& v :
         {Variant{0x03, 0x04, 1}, Variant{0x06, 0x07, 9}, Variant{0x0E, 0x0F, 11}}) {
        SCOPED_TRACE(static_cast<int>(v.application));
        Bytes own = {
            0x04, 0x04, 0x00, 0x00, 'X',  'l',         // Ginga location, initial class "Xl"
            0x03, 0x02, 0x01, 'p',                     // Ginga application, parameter "p"
            0x0D, 0x05, 0x01, 0x00, 0x02, 0x00, 0x03,  // DII location: label 1, DII 2, tag 3
            0x0C, 0x04, 0x01, 0x01, 'a',  0x05,        // prefetch: label 1, "a" priority 5
            0x11, 0x03, 0x00, 0x00, 0x01,              // IP signalling, platform 1
            0x05, 0x07, 0x00, 0x00, 0x00, 0x01, 0x00, 0x02, 0x03,  // authorizes 1/2, priority 3
            0x0B, 0x04, 0x01, 'i',  0x00, 0x01,                    // icon "i", flags 1
            0x01, 0x05, 'p',  'o',  'r',  0x01, 'N',               // name "N"
            0x00, 0x03, 0x00, 0x40, 0x02,             // application: visibility 2, priority 2
            0x02, 0x05, 0x00, 0x01, 0x03, 0x00, 0x0A  // object carousel, label 3
        };
        own[0] = v.location;
        own[6] = v.application;
        Bytes app = application(7, own);

        // Parsed on its own, the application takes its type from its Ginga descriptors.
        unsigned int consumed = 0;
        unsigned short code = 0xFFFF;
        TApplication* alone = TApplication::parse(app.data(), static_cast<unsigned int>(app.size()),
                                                  1, &consumed, &code);
        ASSERT_NE(alone, nullptr);
        EXPECT_EQ(code, 0);
        EXPECT_EQ(consumed, app.size());
        EXPECT_EQ(alone->getApplicationType(), v.type);
        delete alone;

        Bytes b = ait({}, app);
        TAITTable* t = parse(b, &code);
        ASSERT_NE(t, nullptr);
        TApplication* original = t->getApplication("0000000A0007");
        ASSERT_NE(original, nullptr);
        const std::list<unsigned char> tags = {0x00, 0x01, 0x0B, 0x05,          0x02,
                                               0x11, 0x0C, 0x0D, v.application, v.location};
        EXPECT_EQ(original->getDescriptorTags(), tags);
        std::vector<std::string> before;
        for (unsigned char tag : tags)
            before.push_back(original->getDescriptor(tag) == nullptr
                                 ? std::string("-")
                                 : original->getDescriptor(tag)->toJSON());
        TApplication* copy = new TApplication(original, 0);
        delete t;
        EXPECT_EQ(copy->getDescriptorTags(), tags);
        std::vector<std::string> after;
        for (unsigned char tag : tags)
            after.push_back(copy->getDescriptor(tag) == nullptr
                                ? std::string("-")
                                : copy->getDescriptor(tag)->toJSON());
        EXPECT_EQ(after, before);
        EXPECT_EQ(copy->getApplicationType(), 9);  // the table's, copied
        delete copy;
    }
    EXPECT_TRUE(log.texts().empty());
}
