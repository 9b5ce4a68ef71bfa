// Program map table: streams, their descriptor loops, lookups and failures.
#include <gtest/gtest.h>

#include "ISDBTUtils.h"
#include "LogCapture.h"
#include "Sections.h"
#include "TDataComponentDescriptor.h"
#include "TISO639LanguageDescriptor.h"
#include "TPMTTable.h"
#include "TStreamIdentifierDescriptor.h"

using namespace Sarn;

namespace {

TPMTTable* parse(Bytes& b, unsigned short* code, int checkCrc = 1, TPMTTable* previous = nullptr) {
    return TPMTTable::parse(b.data(), static_cast<unsigned int>(b.size()), 0, checkCrc, code,
                            previous);
}

// One stream entry: stream_type, PID, ES_info_length and its descriptors.
Bytes stream(unsigned char type, unsigned short pid, const Bytes& descriptors) {
    return Bytes{type} + be16(0xE000 | pid) + loop12(descriptors);
}

// Program 0x5C20 of an ISDB-Tb service: PCR on 0x0111, a program info loop
// with a copy control-like descriptor that no class decodes (0x53 accepted,
// 0x09 not accepted), then video, audio, captions, AIT, carousel and a
// data stream.
Bytes serviceBody() {
    return Bytes{0xE1, 0x11, 0xF0, 0x07, 0x09, 0x02, 0x00, 0x05, 0x53, 0x01, 0xFF} +
           stream(0x1B, 0x0111, {0x52, 0x01, 0x00}) +
           stream(0x0F, 0x0112, {0x0A, 0x04, 'p', 'o', 'r', 0x00, 0x52, 0x01, 0x10}) +
           stream(0x06, 0x0113, {0x52, 0x01, 0x30, 0xFD, 0x03, 0x00, 0x08, 0x3D}) +
           stream(0x05, 0x01F4, {0xFD, 0x02, 0x00, 0xA3}) +
           stream(0x0B, 0x0384,
                  {0x13, 0x04, 0x00, 0x00, 0x00, 0x01, 0x52, 0x01, 0x40, 0xFD, 0x02, 0x01, 0x00}) +
           stream(0x06, 0x0115, {});
}
}  // namespace

TEST(PMT, StreamsDescriptorsAndJson) {
    LogCapture log;
    Bytes b = longSection(0x02, 0x5C20, 1, serviceBody());
    unsigned short code = 0xFFFF;
    TPMTTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(t->getProgramNumber(), 0x5C20);
    EXPECT_EQ(t->getVersion(), 1);
    EXPECT_EQ(t->getCurrentIndicator(), 1);
    EXPECT_EQ(t->getPCRPID(), 0x0111);
    EXPECT_EQ(t->size(), 6);
    EXPECT_TRUE(t->getDescriptorList().empty());
    EXPECT_EQ(t->toJSON(),
              "{\"programNumber\":23584,\"pcrPid\":273,\"programInfoDescriptors\":[],"
              "\"elementaryStreams\":["
              "{\"streamType\":27,\"elementaryPid\":273,\"esInfoDescriptors\":["
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":0}]},"
              "{\"streamType\":15,\"elementaryPid\":274,\"esInfoDescriptors\":["
              "{\"errors\":0,\"descriptor_tag\":10,\"descriptor_length\":4,\"language_loop\":["
              "{\"language_code\":\"por\",\"audio_type\":0}]},"
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":16}]},"
              "{\"streamType\":6,\"elementaryPid\":275,\"esInfoDescriptors\":["
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":48},"
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":8,"
              "\"additionalDataComponentInfo\":\"=\"}]},"
              "{\"streamType\":5,\"elementaryPid\":500,\"esInfoDescriptors\":["
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":163,"
              "\"additionalDataComponentInfo\":\"\"}]},"
              "{\"streamType\":11,\"elementaryPid\":900,\"esInfoDescriptors\":["
              "{\"name\":\"carouselIdentifierDescriptor\",\"carouselId\":1},"
              "{\"name\":\"streamIdentifierDescriptor\",\"component_tag\":64},"
              "{\"name\":\"dataComponentDescriptor\",\"dataComponentId\":256,"
              "\"additionalDataComponentInfo\":\"\"}]},"
              "{\"streamType\":6,\"elementaryPid\":277,\"esInfoDescriptors\":[]}]}");

    // The descriptors point into the caller's bytes, not into a copy.
    TProgramMap* audio = t->getProgramMap(1);
    ASSERT_NE(audio, nullptr);
    EXPECT_EQ(audio->getDescriptor(0x0A)->getData(), b.data() + 32);
    EXPECT_EQ(static_cast<TISO639LanguageDescriptor*>(audio->getDescriptor(0x0A))
                  ->getLoopItems()[0]
                  .languageCode,
              "por");
    EXPECT_EQ(t->getProgramMap(6), nullptr);
    EXPECT_EQ(t->getProgramMap(255), nullptr);
    delete t;
}

TEST(PMT, Lookups) {
    Bytes b = longSection(0x02, 0x5C20, 1, serviceBody());
    unsigned short code = 0;
    TPMTTable* t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    auto pids = [](const std::list<TProgramMap*>& maps) {
        std::vector<unsigned short> v;
        for (TProgramMap* m : maps)
            v.push_back(m->getElementaryPID());
        return v;
    };
    using Pids = std::vector<unsigned short>;
    EXPECT_EQ(pids(t->getProgramMapByStreamType(0x06)), (Pids{0x0113, 0x0115}));
    EXPECT_EQ(pids(t->getProgramMapsByStreamType(0x06)), (Pids{0x0113, 0x0115}));
    EXPECT_TRUE(t->getProgramMapByStreamType(0x02).empty());
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x30)), (Pids{0x0113}));
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x00)), (Pids{0x0111}));
    EXPECT_TRUE(t->getProgramMapByComponentTag(0x31).empty());
    EXPECT_EQ(pids(t->getProgramMap(0x05, 0xA3)), (Pids{0x01F4}));
    EXPECT_TRUE(t->getProgramMap(0x06, 0xA3).empty());
    // Data component id 0x0100 cannot be asked for with an 8-bit argument.
    EXPECT_TRUE(t->getProgramMap(0x0B, 0x00).empty());

    const std::list<ProgramData> all = t->getAllPrograms();
    ASSERT_EQ(all.size(), 4u);  // the AIT and the last stream carry no component tag
    std::vector<std::vector<int>> rows;
    for (const ProgramData& d : all)
        rows.push_back({d.elementaryPid, d.streamType, d.componentTag});
    EXPECT_EQ(rows, (std::vector<std::vector<int>>{{0x0111, 0x1B, 0x00},
                                                   {0x0112, 0x0F, 0x10},
                                                   {0x0113, 0x06, 0x30},
                                                   {0x0384, 0x0B, 0x40}}));

    EXPECT_FALSE(t->removeProgramMap(6));
    EXPECT_TRUE(t->removeProgramMap(0));
    EXPECT_EQ(t->size(), 5);
    EXPECT_EQ(t->getProgramMap(0)->getElementaryPID(), 0x0112);
    unsigned int read = 0;
    Bytes entry = stream(0x02, 0x0200, {0x52, 0x01, 0x77});
    TProgramMap* extra = TProgramMap::parse(entry.data(), 8, 1, &read, &code);
    ASSERT_NE(extra, nullptr);
    EXPECT_EQ(read, 8u);
    t->addProgramMap(extra);
    EXPECT_EQ(pids(t->getProgramMapByComponentTag(0x77)), (Pids{0x0200}));
    delete t;
}

TEST(PMT, EmptyLoopsRepeatsAndDescriptorLoopOverruns) {
    LogCapture log;
    Bytes empty = longSection(0x02, 0x0001, 3, {0xFF, 0xFF, 0xF0, 0x00});
    unsigned short code = 0xFFFF;
    TPMTTable* t = parse(empty, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->getPCRPID(), 0x1FFF);
    EXPECT_EQ(t->toJSON(),
              "{\"programNumber\":1,\"pcrPid\":8191,\"programInfoDescriptors\":[],"
              "\"elementaryStreams\":[]}");
    // The same version and CRC again: unchanged, no table.
    EXPECT_EQ(parse(empty, &code, 1, t), nullptr);
    EXPECT_EQ(code, ERROR_TABLE_UNCHANGED);
    delete t;

    // A program info descriptor overrunning its loop and an ES descriptor
    // overrunning its ES info only warn; what came before is kept.
    Bytes b = longSection(0x02, 0x0001, 3,
                          Bytes{0xE1, 0x00, 0xF0, 0x05, 0x13, 0x04, 0x00, 0x00, 0x00} +
                              stream(0x06, 0x0120, {0x52, 0x01, 0x05, 0x52, 0x02, 0x06}));
    t = parse(b, &code);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(t->getDescriptorList().empty());
    EXPECT_EQ(t->getProgramMap(0)->getDescriptors(0x52).size(), 1u);
    EXPECT_EQ(
        log.texts(),
        (std::vector<std::string>{
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 0 + 6 > 5. "
                     "Aborting!"),
            warnLine("TPMTTable::parse: readBytes != l_iProgramInfoLength! (0 != 5)"),
            warnLine("DescriptorLoop::parseDescriptorsLoop: Item length not valid: 3 + 4 > 6. "
                     "Aborting!"),
            warnLine("TProgramMap:parse: read bytes different than network descriptors length "
                     "(3 != 6)")}));
    delete t;
}

TEST(PMT, BadLoopLengthsFailTheTable) {
    LogCapture log;
    unsigned short code = 0;
    // program_info_length one byte past the CRC offset.
    Bytes info = longSection(0x02, 0x0001, 0, {0xE1, 0x00, 0xF0, 0x03, 0x52, 0x01, 0x00});
    info[11] = 0x04;
    info = withCrc(Bytes(info.begin(), info.end() - 4));
    EXPECT_EQ(parse(info, &code), nullptr);
    EXPECT_EQ(code, ERROR_DESCRIPTOR_LENGTH);

    // ES_info_length running into the CRC.
    Bytes es = longSection(
        0x02, 0x0001, 0,
        Bytes{0xE1, 0x00, 0xF0, 0x00} + Bytes{0x06, 0xE1, 0x20, 0xF0, 0x04, 0x52, 0x01, 0x05});
    EXPECT_EQ(parse(es, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);

    // Four bytes before the CRC: less than one stream entry.
    Bytes partial = longSection(
        0x02, 0x0001, 0,
        Bytes{0xE1, 0x00, 0xF0, 0x00} + stream(0x1B, 0x0111, {}) + Bytes{0x0F, 0xE1, 0x12, 0xF0});
    EXPECT_EQ(parse(partial, &code), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);

    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  warnLine("TPMTTable::parse: Longer data length is required: (12 + 4) >(7). "
                           "Aborting!"),
                  warnLine("TProgramMap::parse: ESInfoLength not valid: 5 + 4 > 8. Aborting!"),
                  warnLine("TPMTTable::parse: Invalid item. Aborting!"),
                  warnLine("TProgramMap::parse: Item length not valid: 4. Aborting!"),
                  warnLine("TPMTTable::parse: Invalid item. Aborting!")}));

    // A section_length below 4 wraps the body counter: the walk stays inside
    // the 16 bytes handed in (the CRC bytes make a short entry).
    Bytes wrapped = {0x02, 0xB0, 0x00, 0x00, 0x01, 0xC1, 0x00, 0x00,
                     0xE1, 0x00, 0xF0, 0x00, 0x1B, 0xE1, 0x00, 0xF0};
    EXPECT_EQ(parse(wrapped, &code, 0), nullptr);
    EXPECT_EQ(code, ERROR_INVALID_ITEM);
}
