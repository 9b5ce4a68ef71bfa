// Application information table: common loop, applications, inheritance, copies.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "SectionParse.h"
#include "TAITTable.h"

using namespace Sarn;

namespace {

TAITTable* parse(Bytes& b, unsigned short* code, TAITTable* previous = nullptr) {
    return TAITTable::parse(b.data(), length(b), 0, 1, code, previous);
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

/** The JSON of every slot of the holder, "-" for an empty one. */
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

/** The table's JSON from its common descriptors on. */
std::string loops(const TAITTable& t) {
    const std::string json = t.toJSON();
    return json.substr(json.find(",\"descriptors\""));
}

// One descriptor of each kind, on the wire in roughly the reverse of the
// order in which the table lists and renders them; bytes 0 and 6 are the
// tags of the Ginga location and application (Java here).
const Bytes kEveryKind = {
    0x04, 0x04, 0x00, 0x00, 'X',  'l',                     // location, initial class "Xl"
    0x03, 0x02, 0x01, 'p',                                 // application, parameter "p"
    0x0D, 0x05, 0x01, 0x00, 0x02, 0x00, 0x03,              // DII location: label 1, DII 2, tag 3
    0x0C, 0x04, 0x01, 0x01, 'a',  0x05,                    // prefetch: label 1, "a" priority 5
    0x11, 0x03, 0x00, 0x00, 0x01,                          // IP signalling, platform 1
    0x05, 0x07, 0x00, 0x00, 0x00, 0x01, 0x00, 0x02, 0x03,  // authorizes 1/2, priority 3
    0x0B, 0x04, 0x01, 'i',  0x00, 0x01,                    // icon "i", flags 1
    0x01, 0x05, 'p',  'o',  'r',  0x01, 'N',               // name "N"
    0x00, 0x03, 0x00, 0x40, 0x02,                          // application: visibility 2, priority 2
    0x02, 0x05, 0x00, 0x01, 0x03, 0x00, 0x0A               // object carousel, label 3
};

// kEveryKind but its Ginga pair, as rendered.
const std::string kEveryKindJson =
    "{\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":3,\"profile_loop\":[],"
    "\"service_bound_flag\":0,\"visibility\":2,\"application_priority\":2,"
    "\"transport_protocol_label\":\"\"},"
    "{\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":5,\"name_loop\":["
    "{\"ISO_639_language_code\":\"por\",\"application_name\":\"N\"}]},"
    "{\"errors\":0,\"descriptor_tag\":11,\"descriptor_length\":4,"
    "\"descriptor_content\":\"0x01690001\"},"
    "{\"errors\":0,\"descriptor_tag\":5,\"descriptor_length\":7,"
    "\"descriptor_content\":\"0x00000001000203\"},"
    "{\"errors\":0,\"descriptor_tag\":2,\"descriptor_length\":5,\"protocol_id\":1,"
    "\"transport_protocol_label\":3},"
    "{\"errors\":0,\"descriptor_tag\":17,\"descriptor_length\":3,"
    "\"descriptor_content\":\"0x000001\"},"
    "{\"errors\":0,\"descriptor_tag\":12,\"descriptor_length\":4,"
    "\"descriptor_content\":\"0x01016105\"},"
    "{\"errors\":0,\"descriptor_tag\":13,\"descriptor_length\":5,"
    "\"descriptor_content\":\"0x0100020003\"},";

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
    EXPECT_EQ(
        sectionOutcome(b),
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
        "\"entitypath_extension\":\"\",\"initial_entity\":\"a.ht\"}]}]}" +
            kWarn + "TAITTable::parse: Ginga NCL Application Descriptor... WHAT TO DO????" + kWarn +
            "TAITTable::parse: Unknown descriptor: 0x10. Ignored!" + kWarn +
            "TApplication::parse: Unknown descriptor: 0x43. Ignored!");

    unsigned short code = 0xFFFF;
    TAITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{0x02, 0x06}));
    // The HTML5 application took the table's type, not its own (11).
    TApplication* html5 = t->getApplication("0000000A0002");
    ASSERT_NE(html5, nullptr);
    EXPECT_EQ(html5->getApplicationType(), 9);

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
    EXPECT_EQ(ncl->getIPSignalingDescriptor(1, &fromTable), nullptr);
    EXPECT_EQ(fromTable, 0);

    // Copies: with inherit the common kinds come along; without, only its own
    // (and without a parent, nothing more to inherit).
    TApplication inherited(html5, 1);
    TApplication own(html5, 0);
    // A copy points into the same bytes as its original.
    EXPECT_EQ(own.getData(), html5->getData());
    delete t;
    EXPECT_EQ(inherited.getDescriptorTags(), (std::list<unsigned char>{0x02, 0x06, 0x0F}));
    EXPECT_EQ(own.getDescriptorTags(), (std::list<unsigned char>{0x0F}));
    EXPECT_EQ(own.getTransportProtocolDescriptor(1, nullptr), nullptr);
    EXPECT_EQ(own.getHashID() + " " + std::to_string(own.getControlCode()) + " " +
                  std::to_string(own.getRecommendedResolution()) + " " +
                  std::to_string(own.getApplicationType()),
              "0000000A0002 2 3 9");
}

TEST(AIT, EveryKindInSlotOrderAndCopiesOfEachGingaVariant) {
    struct Variant {
        unsigned char application, location;
        unsigned short type;
        const char* note;  // what the table logs for the pair in its common loop
    };
    for (const Variant& v :
         {Variant{0x03, 0x04, 1, "Ginga Java Application"},
          Variant{0x06, 0x07, 9, "Ginga NCL Application"}, Variant{0x0E, 0x0F, 11, nullptr}}) {
        SCOPED_TRACE(static_cast<int>(v.application));
        LogCapture log;
        Bytes every = kEveryKind;
        every[0] = v.location;
        every[6] = v.application;
        const std::string gingaJson =
            "{\"errors\":0,\"descriptor_tag\":" + std::to_string(v.application) +
            ",\"descriptor_length\":2,\"parameter_loop\":[\"p\"]}";
        const std::string locationJson =
            "{\"errors\":0,\"descriptor_tag\":" + std::to_string(v.location) +
            ",\"descriptor_length\":4,\"base_directory\":\"\",\"entitypath_extension\":\"\","
            "\"initial_entity\":\"Xl\"}";
        // An HTML5 pair renders as its application descriptor alone in the
        // common loop and as its location twice in an application.
        const bool html5 = v.type == 11;
        const std::string common = kEveryKindJson + gingaJson + (html5 ? "" : "," + locationJson);
        const std::string own =
            kEveryKindJson + (html5 ? locationJson : gingaJson) + "," + locationJson;
        const std::list<unsigned char> tags = {0x00, 0x01, 0x0B, 0x05,          0x02,
                                               0x11, 0x0C, 0x0D, v.application, v.location};

        // Parsed on its own, an application takes its type from its Ginga descriptors.
        Bytes app = application(7, every);
        unsigned int consumed = 0;
        unsigned short code = 0xFFFF;
        TApplication* alone = TApplication::parse(app.data(), length(app), 1, &consumed, &code);
        ASSERT_NE(alone, nullptr);
        EXPECT_EQ(code, 0);
        EXPECT_EQ(consumed, app.size());
        EXPECT_EQ(alone->getApplicationType(), v.type);
        delete alone;

        // Every kind in the common loop and in an application: each rendered
        // in slot order, and an application without descriptors of its own
        // inherits each of them.
        Bytes b = ait(every, application(7, every) + application(8, {}));
        TAITTable* t = parse(b, &code);
        ASSERT_NE(t, nullptr);
        EXPECT_EQ(t->getDescriptorTags(), tags);
        const std::string idAndCode =
            "\"application_control_code\":1,\"recommended_resolution\":0,";
        EXPECT_EQ(loops(*t),
                  ",\"descriptors\":[" + common +
                      "],\"application_loop\":[{\"application_identifier\":{\"organization_id\":"
                      "10,\"application_id\":7}," +
                      idAndCode + "\"descriptors\":[" + own +
                      "]},{\"application_identifier\":{\"organization_id\":10,"
                      "\"application_id\":8}," +
                      idAndCode + "\"descriptors\":[]}]}");
        TApplication inherited(t->getApplication("0000000A0008"), 1);
        EXPECT_EQ(inherited.getDescriptorTags(), tags);
        EXPECT_EQ(slotsJson(inherited), slotsJson(*t));
        // The table finds its Java and NCL location by tag, an HTML5 one not.
        EXPECT_EQ(t->getDescriptor(v.location),
                  v.type == 11 ? nullptr : t->getGingaApplicationLocationDescriptor());
        for (unsigned char unused : {0x08, 0x09, 0x0A, 0x10, 0x12, 0x42})
            EXPECT_EQ(t->getDescriptor(unused), nullptr) << static_cast<int>(unused);

        // Copies of the applications, in a table of their own, render as the
        // originals and outlive them.
        TAITTable copies(nullptr, 0);
        for (const std::string& id : t->getApplicationsIDs())
            copies.addApplication(new TApplication(t->getApplication(id), 0));
        const std::string before = loops(*t);
        EXPECT_EQ(copies.getApplication("0000000A0007")->getApplicationType(), 9);
        delete t;
        EXPECT_EQ(loops(copies),
                  ",\"descriptors\":[]" + before.substr(before.find(",\"application_loop\"")));
        std::vector<std::string> lines;
        if (v.note != nullptr)
            lines = {warnLine("TAITTable::parse: " + std::string(v.note) +
                              " Location Descriptor... WHAT TO DO????"),
                     warnLine("TAITTable::parse: " + std::string(v.note) +
                              " Descriptor... WHAT TO DO????")};
        EXPECT_EQ(log.texts(), lines);
    }
}

TEST(AIT, FailuresWithTheirCodesAndLines) {
    const std::string invalid = kWarn + "TAITTable::parse: Invalid item. Aborting!";
    Bytes corrupt = ait({}, {});
    corrupt[9] ^= 0x01;
    const std::vector<std::pair<Bytes, std::string>> cases = {
        // Common loop length 9 with 2 bytes of descriptors after it.
        {withCrc(
             {0x74, 0xF0, 0x0F, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x09, 0x42, 0x00, 0xF0, 0x00}),
         "null code=2563" + kWarn + "TAITTable::parse: Item length not valid: 9 > 4. Aborting!"},
        // A descriptor running past the common loop and the section.
        {ait({0x42, 0x09}, {}),
         "null code=2563" + kWarn + "TAITTable::parse: Item length not valid: 2 > 2. Aborting!"},
        // A failing descriptor keeps its own code; protocol 3 leaves 0.
        {ait({0x00, 0x07, 0x05, 0x00, 0x01, 0x01, 0x00, 0x00, 0x80}, {}),
         "null code=2563" + kWarn +
             "TApplicationDescriptor:: parse: Section length exceeded. Aborting!"},
        {ait({0x02, 0x03, 0x00, 0x03, 0x01}, {}), "null code=0"},
        // An application whose descriptor fails: the table reports the item.
        {ait({}, application(1, {0x01, 0x04, 'p', 'o', 'r', 0x05})),
         "null code=2570" + kWarn +
             "ParserUtils::parseStr: ERROR: String length exceeds available data length: 5 > 0. "
             "Aborting!" +
             kWarn + "TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!" +
             kWarn + "TApplicationNameDescriptor::parse: Invalid item. Aborting!" + invalid},
        // Application loop longer than the section; an application's loop too.
        {withCrc({0x74, 0xF0, 0x10, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x00, 0xF0, 0x20, 0x00,
                  0x00, 0x00}),
         "null code=2563" + kWarn + "TAITTable::parse: Item length not valid: 32 > 3. Aborting!"},
        {ait({}, {0x00, 0x00, 0x00, 0x0A, 0x00, 0x01, 0x01, 0x00, 0x05, 0x42}),
         "null code=2570" + kWarn + "TApplication::parse: Item length not valid: 5 > 1. Aborting!" +
             invalid},
        // A descriptor overrunning an application: unlike the table, which
        // shows the loop length left, the application shows the descriptor's.
        {ait({}, application(1, {0x42, 0x09})),
         "null code=2570" + kWarn + "TApplication::parse: Item length not valid: 9 > 0. Aborting!" +
             invalid},
        // An application loop one byte longer than the section.
        {withCrc({0x74, 0xF0, 0x10, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x00, 0xF0, 0x04, 0x00,
                  0x00, 0x00}),
         "null code=2563" + kWarn + "TAITTable::parse: Item length not valid: 4 > 3. Aborting!"},
        // No room for the application loop length.
        {withCrc({0x74, 0xF0, 0x0B, 0x00, 0x09, 0xC1, 0x00, 0x00, 0xF0, 0x00}),
         "null code=2563" + kWarn + "TAITTable::parse: Item length not valid: 2 > 0. Aborting!"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sectionOutcome(c.first), c.second);
    // Unchecked, a damaged common loop length is caught by the walk.
    EXPECT_EQ(sectionOutcome(corrupt, nullptr, 0, 0),
              "null code=2563" + kWarn + "TAITTable::parse: Unknown descriptor: 0xF0. Ignored!" +
                  kWarn + "TAITTable::parse: Item length not valid: 65535 > 4294967294. Aborting!");

    // Too short for an application: fewer than the identifier's six bytes,
    // then no room for the control code and loop length.
    LogCapture log;
    unsigned short code = 0;
    Bytes eight = {0, 0, 0, 10, 0, 1, 1, 0};
    EXPECT_EQ(TApplication::parse(eight.data(), 5, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TApplication::parse(eight.data(), 8, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(TApplicationIdentifier::parse(eight.data(), 5, 1, nullptr, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TApplication::parse: Item length not valid: 5. Aborting!"),
                  warnLine("TApplication::parse: Item length not valid: 8. Aborting!"),
                  warnLine("TApplicationIdentifier::parse: Item length not valid: 5. Aborting!")}));
    // Six bytes are a whole identifier.
    unsigned int n = 0;
    TApplicationIdentifier* id = TApplicationIdentifier::parse(eight.data(), 6, 1, &n, &code);
    ASSERT_NE(id, nullptr);
    EXPECT_EQ(n, 6u);
    EXPECT_EQ(code, ERROR_NONE);
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(id), "0000000A0001");
    delete id;
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(0xFFFFFFFFu, 0xABCD), "FFFFFFFFABCD");
    EXPECT_EQ(TApplicationIdentifier::calculateHashID(nullptr), "000000000000");
    // Without a Ginga descriptor an application has no type of its own.
    Bytes plain = application(3, {0x42, 0x00});
    TApplication* a = TApplication::parse(plain.data(), length(plain), 1, nullptr, &code);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->getApplicationType(), 0);
    delete a;
}

TEST(AIT, Html5LocationsAndApplicationsAddedAndRemoved) {
    LogCapture log;
    unsigned short code = 0xFFFF;
    // HTML5: the table keeps its location but does not find it by tag; an
    // application answers 0x0E (and 0x0F) with its location, if any. Then
    // removing and adding applications.
    const Bytes html5 = {0x0E, 0x02, 0x01, 'p'};
    const Bytes location = {0x0F, 0x06, 0x00, 0x00, 'a', '.', 'h', 't'};
    Bytes b = ait(location, application(1, html5) + application(2, html5 + location));
    TAITTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getDescriptorTags(), (std::list<unsigned char>{0x0F}));
    EXPECT_EQ(t->getDescriptor(0x0F), nullptr);
    TApplication* onlyApp = t->getApplication("0000000A0001");
    EXPECT_EQ(onlyApp->getDescriptorTags(), (std::list<unsigned char>{0x0E}));
    EXPECT_EQ(onlyApp->getDescriptor(0x0E), nullptr);
    TApplication* withLocation = t->getApplication("0000000A0002");
    EXPECT_EQ(withLocation->getDescriptor(0x0E),
              withLocation->getGingaApplicationLocationDescriptor());
    EXPECT_EQ(withLocation->getDescriptor(0x0F),
              withLocation->getGingaApplicationLocationDescriptor());
    EXPECT_EQ(t->getApplication("0000000A0003"), nullptr);
    EXPECT_FALSE(t->removeApplication("0000000A0003"));
    EXPECT_TRUE(t->removeApplication("0000000A0001"));
    EXPECT_EQ(t->getApplicationsIDs(), std::list<std::string>{"0000000A0002"});
    TApplication* added = new TApplication(withLocation, 0);
    t->removeApplication("0000000A0002");
    t->addApplication(added);
    t->addApplication(nullptr);
    EXPECT_EQ(t->getApplication("0000000A0002"), added);
    delete t;
    EXPECT_TRUE(log.lines().empty());
}
