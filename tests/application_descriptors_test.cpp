// Application, name, icon and Ginga descriptors of the application information table.
#include <gtest/gtest.h>

#include "DescriptorParse.h"
#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TApplicationDescriptor.h"
#include "TApplicationIconDescriptor.h"
#include "TApplicationNameDescriptor.h"
#include "TGingaHtml5ApplicationLocationDescriptor.h"
#include "TGingaJavaApplicationLocationDescriptor.h"
#include "TGingaNCLApplicationDescriptor.h"
#include "TGingaNCLApplicationLocationDescriptor.h"

using namespace Sarn;

namespace {
template <class T>
T* parseWhole(Bytes& b, unsigned short* code, unsigned int* bytesRead = nullptr) {
    return T::parse(b.data(), static_cast<unsigned int>(b.size()), bytesRead, code);
}
}  // namespace

TEST(ApplicationDescriptor, ProfilesFlagsLabelsAndDeepCopy) {
    LogCapture log;
    // Two profiles out of order (0x0002 v1.3.0, 0x0001 v1.0.0), service bound,
    // visibility 3, priority 200, transport protocol labels 0x01 and 0x0A.
    Bytes b = {0x00, 0x0F, 0x0A, 0x00, 0x02, 0x01, 0x03, 0x00, 0x00,
               0x01, 0x01, 0x00, 0x00, 0xFF, 0xC8, 0x01, 0x0A};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TApplicationDescriptor* d = parseWhole<TApplicationDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 15u);
    EXPECT_EQ(d->getProfilesCount(), 2);
    EXPECT_TRUE(d->isServiceBound());
    EXPECT_EQ(d->getVisibility(), 3);
    EXPECT_TRUE(d->isVisibileForUsers());
    EXPECT_TRUE(d->isVisibileForApplications());
    EXPECT_EQ(d->getApplicationPriority(), 200);
    ASSERT_EQ(d->getTransportProtocolsCount(), 2);
    EXPECT_EQ(d->getTransportProtocols()[1], 0x0A);
    const std::string expected =
        "\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":15,\"profile_loop\":["
        "{\"application_profile\":1,\"version.major\":1,\"version.minor\":0,\"version.micro\":0},"
        "{\"application_profile\":2,\"version.major\":1,\"version.minor\":3,\"version.micro\":0}],"
        "\"service_bound_flag\":1,\"visibility\":3,\"application_priority\":200,"
        "\"transport_protocol_label\":\"0x010a\"";
    EXPECT_EQ(d->toJSON(), expected);

    TApplicationDescriptor* copy = new TApplicationDescriptor(d);
    delete d;
    EXPECT_EQ(copy->toJSON(), expected);
    EXPECT_TRUE(copy->removeProfile(2));
    EXPECT_FALSE(copy->removeProfile(2));
    EXPECT_EQ(copy->getProfile(1)->getVersionMajor(), 1);
    delete copy;

    // No profiles, service bound, visible to applications only, priority 5,
    // no labels.
    Bytes bare = {0x00, 0x03, 0x00, 0xA0, 0x05};
    d = parseWhole<TApplicationDescriptor>(bare, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getTransportProtocols(), nullptr);
    EXPECT_FALSE(d->isVisibileForUsers());
    EXPECT_TRUE(d->isVisibileForApplications());
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":0,\"descriptor_length\":3,\"profile_loop\":[],"
              "\"service_bound_flag\":1,\"visibility\":1,\"application_priority\":5,"
              "\"transport_protocol_label\":\"\"");
    delete d;
    EXPECT_TRUE(log.lines().empty());
}

TEST(ApplicationDescriptor, LengthFailures) {
    LogCapture log;
    unsigned short code = 0;
    // Profiles length 9 in a body of 5.
    Bytes tooLong = {0x00, 0x05, 0x09, 0x00, 0x01, 0x80, 0x05};
    EXPECT_EQ(parseWhole<TApplicationDescriptor>(tooLong, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    // Profiles length 7: the second profile has only two bytes.
    Bytes seven = {0x00, 0x0A, 0x07, 0x00, 0x01, 0x01, 0x00, 0x00, 0x00, 0x02, 0x80, 0x05};
    EXPECT_EQ(parseWhole<TApplicationDescriptor>(seven, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    // Profiles filling the whole body: no room for flags and priority.
    Bytes onlyProfiles = {0x00, 0x06, 0x05, 0x00, 0x01, 0x01, 0x00, 0x00};
    EXPECT_EQ(parseWhole<TApplicationDescriptor>(onlyProfiles, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    // A profile but only one byte left for flags and priority.
    Bytes noPriority = {0x00, 0x07, 0x05, 0x00, 0x01, 0x01, 0x00, 0x00, 0x80};
    EXPECT_EQ(parseWhole<TApplicationDescriptor>(noPriority, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TApplicationDescriptor:: parse: Application Profiles Length exceeds "
                           "Descriptor Length: 9 > 4. Aborting!"),
                  warnLine("TApplicationDescriptorProfile::parse: Item length not valid: 2. "
                           "Aborting!"),
                  warnLine("TApplicationDescriptor:: parse: Section length exceeded. Aborting!"),
                  warnLine("TApplicationDescriptor:: parse: Section length exceeded. Aborting!")}));
}

TEST(ApplicationNameDescriptor, ItemsByLanguageAndFailures) {
    LogCapture log;
    // "por" twice (the later wins) and "eng"; rendered in code order.
    Bytes b = {0x01, 0x18, 'p', 'o', 'r', 0x03, 'A', 'p',  'p', 'e', 'n', 'g',  0x04,
               'N',  'e',  'w', 's', 'p', 'o',  'r', 0x05, 'N', 'o', 't', 0x0E, 'x'};
    unsigned short code = 0xFFFF;
    TApplicationNameDescriptor* d = parseWhole<TApplicationNameDescriptor>(b, &code);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(d->size(), 2);
    EXPECT_EQ(d->getLanguageCodes(), (std::list<std::string>{"eng", "por"}));
    const std::string expected =
        "\"errors\":0,\"descriptor_tag\":1,\"descriptor_length\":24,\"name_loop\":["
        "{\"ISO_639_language_code\":\"eng\",\"application_name\":\"News\"},"
        "{\"ISO_639_language_code\":\"por\",\"application_name\":\"Notx\"}]";
    EXPECT_EQ(d->toJSON(), expected);
    TApplicationNameDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.toJSON(), expected);
    EXPECT_EQ(copy.get("eng")->getName(), "News");
    EXPECT_TRUE(log.lines().empty());

    // A name running past the descriptor fails the item, then the descriptor.
    Bytes bad = {0x01, 0x06, 'p', 'o', 'r', 0x09, 'A', 'B'};
    EXPECT_EQ(parseWhole<TApplicationNameDescriptor>(bad, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    // Five bytes after a complete item cannot hold another.
    Bytes tail = {0x01, 0x07, 'p', 'o', 'r', 0x01, 'A', 'e', 'n'};
    EXPECT_EQ(parseWhole<TApplicationNameDescriptor>(tail, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine(
                "ParserUtils::parseStr: ERROR: String length exceeds available data length: 9 > "
                "2. Aborting!"),
            warnLine("TApplicationNameDescriptorItem:: parse: ERROR: parsing Name. Aborting!"),
            warnLine("TApplicationNameDescriptor::parse: Invalid item. Aborting!"),
            warnLine("TApplicationNameDescriptorItem::parse: Item length not valid: 2. Aborting!"),
            warnLine("TApplicationNameDescriptor::parse: Invalid item. Aborting!")}));
}

TEST(ApplicationIconDescriptor, LocatorFlagsAndRawRendering) {
    LogCapture log;
    Bytes b = {0x0B, 0x07, 0x04, 'i', 'c', 'o', '/', 0x00, 0x06};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TApplicationIconDescriptor* d = parseWhole<TApplicationIconDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(n, 9u);
    EXPECT_EQ(d->getIconLocator(), "ico/");
    EXPECT_EQ(d->getIconFlags(), 0x0006);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":11,\"descriptor_length\":7,"
              "\"descriptor_content\":\"0x0469636f2f0006\"");
    delete d;

    // The locator leaves no room for the flags.
    Bytes noFlags = {0x0B, 0x03, 0x02, 'a', 'b'};
    EXPECT_EQ(parseWhole<TApplicationIconDescriptor>(noFlags, &code), nullptr);
    EXPECT_EQ(code, ERROR_DATA_TOO_SHORT);
    Bytes badLocator = {0x0B, 0x02, 0x05, 'a'};
    EXPECT_EQ(parseWhole<TApplicationIconDescriptor>(badLocator, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    ASSERT_EQ(log.texts().size(), 3u);
    EXPECT_EQ(log.texts()[0],
              warnLine("TApplicationIconDescriptor:: parse: Item length not valid: 0. Aborting!"));
    EXPECT_EQ(
        log.texts()[2],
        warnLine("TApplicationIconDescriptor:: parse: ERROR: parsing Icon Locator. Aborting!"));
}

TEST(GingaApplicationDescriptor, ParametersAndFailures) {
    LogCapture log;
    Bytes b = {0x06, 0x08, 0x03, 'a', '=', '1', 0x00, 0x02, 'x', 0x1B};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TGingaNCLApplicationDescriptor* d = parseWhole<TGingaNCLApplicationDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(n, 8u);
    EXPECT_EQ(d->size(), 3u);
    EXPECT_EQ(d->get(2), "x");  // ESC is a control code and is dropped
    EXPECT_EQ(d->get(3), "");
    const std::string expected =
        "\"errors\":0,\"descriptor_tag\":6,\"descriptor_length\":8,"
        "\"parameter_loop\":[\"a=1\",\"\",\"x\"]";
    EXPECT_EQ(d->toJSON(), expected);
    TGingaNCLApplicationDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.toJSON(), expected);
    EXPECT_TRUE(copy.remove(0));
    EXPECT_FALSE(copy.remove(2));

    Bytes empty = {0x06, 0x00};
    d = parseWhole<TGingaNCLApplicationDescriptor>(empty, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(d->toJSON(),
              "\"errors\":0,\"descriptor_tag\":6,\"descriptor_length\":0,\"parameter_loop\":[]");
    delete d;
    EXPECT_TRUE(log.lines().empty());

    Bytes bad = {0x06, 0x03, 0x01, 'a', 0x04};
    EXPECT_EQ(parseWhole<TGingaNCLApplicationDescriptor>(bad, &code), nullptr);
    EXPECT_EQ(code, ERROR_FIELD_PARSE);
    EXPECT_EQ(log.texts().back(),
              warnLine("TGingaApplicationDescriptor:: parse: ERROR: parsing Parameter. Aborting!"));
    // A Java tag is not an NCL descriptor.
    Bytes java = {0x03, 0x00};
    EXPECT_EQ(parseWhole<TGingaNCLApplicationDescriptor>(java, &code), nullptr);
    EXPECT_EQ(code, ERROR_UNEXPECTED_DESCRIPTOR_TAG);
}

TEST(GingaApplicationLocationDescriptor, FieldsCountAndFailures) {
    LogCapture log;
    Bytes b = {0x07, 0x0B, 0x01, '/', 0x00, 'm', 'a', 'i', 'n', '.', 'n', 'c', 'l'};
    unsigned short code = 0xFFFF;
    unsigned int n = 0;
    TGingaNCLApplicationLocationDescriptor* d =
        parseWhole<TGingaNCLApplicationLocationDescriptor>(b, &code, &n);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(code, 0);
    // Base directory 1, class path 0, and the class path length again.
    EXPECT_EQ(n, 1u);
    const std::string expected =
        "\"errors\":0,\"descriptor_tag\":7,\"descriptor_length\":11,\"base_directory\":\"/\","
        "\"entitypath_extension\":\"\",\"initial_entity\":\"main.ncl\"";
    EXPECT_EQ(d->toJSON(), expected);
    TGingaNCLApplicationLocationDescriptor copy(d);
    delete d;
    EXPECT_EQ(copy.toJSON(), expected);

    Bytes java = {0x04, 0x0A, 0x02, 'a', 'b', 0x02, 'c', 'p', 'X', 'l', 'e', 't'};
    TGingaJavaApplicationLocationDescriptor* j =
        parseWhole<TGingaJavaApplicationLocationDescriptor>(java, &code, &n);
    ASSERT_NE(j, nullptr);
    EXPECT_EQ(j->getBaseDirectory(), "ab");
    EXPECT_EQ(j->getClasspathExtension(), "cp");
    EXPECT_EQ(j->getInitialClass(), "Xlet");
    EXPECT_EQ(n, 6u);
    delete j;

    Bytes onlyClass = {0x0F, 0x05, 0x00, 0x00, 'a', '.', 'h'};
    TGingaHtml5ApplicationLocationDescriptor* h =
        parseWhole<TGingaHtml5ApplicationLocationDescriptor>(onlyClass, &code, &n);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(h->getBaseDirectory(), "");
    EXPECT_EQ(h->getInitialClass(), "a.h");
    EXPECT_EQ(h->getDescriptorTag(), 0x0F);
    delete h;
    EXPECT_TRUE(log.lines().empty());

    // Base directory longer than the body; base directory filling the body
    // (no class path length byte); class path longer than what is left.
    Bytes base = {0x07, 0x04, 0x05, 'a', 'b', 'c'};
    Bytes noClasspathLength = {0x07, 0x04, 0x03, 'a', 'b', 'c'};
    Bytes classpath = {0x07, 0x04, 0x01, 'a', 0x03, 'b'};
    for (Bytes* bad : {&base, &noClasspathLength, &classpath}) {
        EXPECT_EQ(parseWhole<TGingaNCLApplicationLocationDescriptor>(*bad, &code), nullptr);
        EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);
    }
    const char* prefix =
        "TGingaApplicationLocationDescriptor::parse: Longer data length is required: ";
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{warnLine(std::string(prefix) + "3 < 5. Aborting!"),
                                        warnLine(std::string(prefix) + "0 < 1. Aborting!"),
                                        warnLine(std::string(prefix) + "1 < 3. Aborting!")}));
}
