#include "ParseSection.h"

#include "ISDBTUtils.h"
#include "TAITTable.h"
#include "TDCTTable.h"
#include "TDDBTable.h"
#include "TDSMCCSectionTable.h"
#include "TDsiDiiTable.h"
#include "TEITTable.h"
#include "TNITTable.h"
#include "TPATTable.h"
#include "TPMTTable.h"
#include "TSDTTTable.h"
#include "TSDTTable.h"
#include "TTOTTable.h"

namespace Sarn {

namespace {

// The registry of table kinds. The classes' parse functions take the CRC
// switch in different places (and the EIT its variant, the TOT whether to
// read its descriptors); each kind wraps its class into one shape, in which
// previous is null or already of the class's own type (sameClass below).
using TableParser = TISDBTTable* (*)(unsigned char* data, unsigned int length, int checkCrc,
                                     unsigned short* error, unsigned int pid, void* previous);

/** PAT, PMT, SDT, AIT: parse(data, length, 0, checkCrc, error, previous). */
template <typename T>
TISDBTTable* crcSecond(unsigned char* data, unsigned int length, int checkCrc,
                       unsigned short* error, unsigned int, void* previous) {
    return T::parse(data, length, 0, checkCrc, error, static_cast<T*>(previous));
}

/** NIT, SDTT, DCT and the DSM-CC family: parse(data, length, checkCrc, 0, error, previous). */
template <typename T>
TISDBTTable* crcFirst(unsigned char* data, unsigned int length, int checkCrc, unsigned short* error,
                      unsigned int, void* previous) {
    return T::parse(data, length, checkCrc, 0, error, static_cast<T*>(previous));
}

/** The EIT: full-segment on PID 0x0012, one-segment on any other. */
TISDBTTable* eit(unsigned char* data, unsigned int length, int checkCrc, unsigned short* error,
                 unsigned int pid, void* previous) {
    return TEITTable::parse(data, length, pid == 0x0012 ? 1 : 0, checkCrc, 0, error,
                            static_cast<TEITTable*>(previous));
}

/** The TOT, with its descriptors. */
TISDBTTable* tot(unsigned char* data, unsigned int length, int checkCrc, unsigned short* error,
                 unsigned int, void* previous) {
    return TTOTTable::parse(data, length, checkCrc, 1, error, static_cast<TTOTTable*>(previous));
}

/** The previous table as the class's own type, or null when it is of another class. */
template <typename T>
void* sameClass(TISDBTTable* previous) {
    return dynamic_cast<T*>(previous);
}

struct TableKind {
    unsigned char firstTableId;
    unsigned char lastTableId;
    TableParser parse;
    void* (*previousAs)(TISDBTTable*);
};

constexpr TableKind kTableKinds[] = {
    {0x00, 0x00, crcSecond<TPATTable>, sameClass<TPATTable>},
    {0x02, 0x02, crcSecond<TPMTTable>, sameClass<TPMTTable>},
    {0x3B, 0x3B, crcFirst<TDsiDiiTable>, sameClass<TDsiDiiTable>},
    {0x3C, 0x3C, crcFirst<TDDBTable>, sameClass<TDDBTable>},
    {0x3D, 0x3D, crcFirst<TDSMCCSectionTable>, sameClass<TDSMCCSectionTable>},
    {0x40, 0x40, crcFirst<TNITTable>, sameClass<TNITTable>},
    {0x42, 0x42, crcSecond<TSDTTable>, sameClass<TSDTTable>},
    {0x4E, 0x6F, eit, sameClass<TEITTable>},
    {0x73, 0x73, tot, sameClass<TTOTTable>},
    {0x74, 0x74, crcSecond<TAITTable>, sameClass<TAITTable>},
    {0x99, 0x99, crcFirst<TDCTTable>, sameClass<TDCTTable>},
    {0xC3, 0xC3, crcFirst<TSDTTTable>, sameClass<TSDTTTable>},
};

/** The kind of each table_id, made from the list at compile time; null: not modelled. */
struct ByTableId {
    const TableKind* at[256];
    constexpr ByTableId() : at{} {
        for (const TableKind& k : kTableKinds)
            for (unsigned int id = k.firstTableId; id <= k.lastTableId; ++id)
                at[id] = &k;
    }
};

constexpr ByTableId kByTableId;

}  // namespace

TISDBTTable* parseSection(unsigned char* data, unsigned int length, int checkCrc,
                          unsigned short* error, unsigned int pid, TISDBTTable* previous) {
    if (data == nullptr) {
        ISDBTUtils::setErrorCode(error, ERROR_INVALID_DATA);
        return nullptr;
    }
    if (length == 0) {
        ISDBTUtils::setErrorCode(error, ERROR_DATA_TOO_SHORT);
        return nullptr;
    }
    const TableKind* kind = kByTableId.at[data[0]];
    if (kind == nullptr) {
        ISDBTUtils::setErrorCode(error, ERROR_UNEXPECTED_TABLE_ID);
        return nullptr;
    }
    void* before = nullptr;
    if (previous != nullptr) {
        before = kind->previousAs(previous);
        if (before == nullptr) {
            ISDBTUtils::setErrorCode(error, ERROR_PREVIOUS_TABLE_TYPE);
            return nullptr;
        }
    }
    return kind->parse(data, length, checkCrc, error, pid, before);
}

}  // namespace Sarn
