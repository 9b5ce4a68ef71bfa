#ifndef SARN_FUZZ_TABLEKINDS_H
#define SARN_FUZZ_TABLEKINDS_H

// The table classes the harness drives, and which captured sections seed
// each of them. The index in kTableKinds is the selector byte of an input.

#include <SarnISDBTUtils.h>

namespace sarnfuzz {

using Parser = Sarn::TISDBTTable* (*)(unsigned char*, unsigned int, unsigned short*,
                                      Sarn::TISDBTTable*);

template <typename T>
Sarn::TISDBTTable* parseWithCrcSecond(unsigned char* d, unsigned int n, unsigned short* e,
                                      Sarn::TISDBTTable* p) {
    // PAT, PMT, SDT, AIT: the CRC switch is the second integer (off here).
    return T::parse(d, n, 0, 0, e, static_cast<T*>(p));
}

struct TableKind {
    const char* name;
    Parser parse;
    bool (*matches)(unsigned int pid, unsigned int tableId);
};

template <int FullSegment>
Sarn::TISDBTTable* parseEit(unsigned char* d, unsigned int n, unsigned short* e,
                            Sarn::TISDBTTable* p) {
    return Sarn::TEITTable::parse(d, n, FullSegment, 0, 0, e, static_cast<Sarn::TEITTable*>(p));
}

template <typename T>
Sarn::TISDBTTable* parseWithCrcFirst(unsigned char* d, unsigned int n, unsigned short* e,
                                     Sarn::TISDBTTable* p) {
    // NIT, SDTT, DCT, DSM-CC: the CRC switch is the first integer (off here).
    return T::parse(d, n, 0, 0, e, static_cast<T*>(p));
}

inline Sarn::TISDBTTable* parseTot(unsigned char* d, unsigned int n, unsigned short* e,
                                   Sarn::TISDBTTable* p) {
    return Sarn::TTOTTable::parse(d, n, 0, 1, e, static_cast<Sarn::TTOTTable*>(p));
}

inline bool isEit(unsigned int tid) {
    return tid >= 0x4E && tid <= 0x6F;
}

inline const TableKind kTableKinds[] = {
    {"pat", parseWithCrcSecond<Sarn::TPATTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x00; }},
    {"pmt", parseWithCrcSecond<Sarn::TPMTTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x02; }},
    {"nit", parseWithCrcFirst<Sarn::TNITTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x40 || tid == 0x41; }},
    {"sdt", parseWithCrcSecond<Sarn::TSDTTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x42 || tid == 0x46; }},
    {"tot", parseTot, [](unsigned int, unsigned int tid) { return tid == 0x73 || tid == 0x70; }},
    {"ait", parseWithCrcSecond<Sarn::TAITTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x74; }},
    {"sdtt", parseWithCrcFirst<Sarn::TSDTTTable>,
     [](unsigned int, unsigned int tid) { return tid == 0xC3; }},
    {"dct", parseWithCrcFirst<Sarn::TDCTTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x99; }},
    {"dsmcc", parseWithCrcFirst<Sarn::TDSMCCSectionTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x3D; }},
    {"dsi-dii", parseWithCrcFirst<Sarn::TDsiDiiTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x3B; }},
    {"ddb", parseWithCrcFirst<Sarn::TDDBTable>,
     [](unsigned int, unsigned int tid) { return tid == 0x3C; }},
    {"eit-full-segment", parseEit<1>,
     [](unsigned int pid, unsigned int tid) { return pid == 0x12 && isEit(tid); }},
    {"eit-one-segment", parseEit<0>,
     [](unsigned int pid, unsigned int tid) { return pid != 0x12 && isEit(tid); }},
};
constexpr unsigned int kTableKindCount = sizeof kTableKinds / sizeof kTableKinds[0];

}  // namespace sarnfuzz

#endif
