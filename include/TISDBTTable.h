#ifndef SARN_TISDBTTABLE_H
#define SARN_TISDBTTABLE_H

#include <string>

#include "TISDBTDataHolder.h"

namespace Sarn {

/**
 * Base of every table: owns a copy of the section and validates the
 * three-byte section header (table_id, section_length) and, on request,
 * the trailing CRC32.
 */
class TISDBTTable : public TISDBTDataHolder {
  public:
    /**
     * Table kind. Tables on a fixed PID carry that PID in the upper 16 bits;
     * the others 0xFFFF and their table_id; the DSM-CC family its table_id.
     */
    enum Type : unsigned int {
        TYPE_PAT = 0x00000000,
        TYPE_PMT = 0xFFFF0002,
        TYPE_NIT = 0x00100000,
        TYPE_SDT = 0x00110000,
        TYPE_EIT_12 = 0x00120000,
        TYPE_EIT_27 = 0x00270000,
        TYPE_TOT = 0x00140000,
        TYPE_SDTT = 0x00230000,
        TYPE_AIT = 0xFFFF0074,
        TYPE_DCT = 0xFFFF0099,
        TYPE_DSI_DII = 0x003B0000,
        TYPE_DDB = 0x003C0000,
        TYPE_DSMCC = 0x003D0000,
    };

    TISDBTTable(Type type, unsigned int minLength, unsigned short expectedTableId,
                unsigned char* data, unsigned int length);
    ~TISDBTTable() override;

    /** Header members without braces: table_id and section_length. */
    virtual std::string toJSON() const;
    /**
     * Checks the header; on success stores the body length (bytes after the
     * three-byte header, less the CRC) in *remaining. Writes no code on success.
     */
    virtual bool parseCommonHeader(unsigned char* data, unsigned int length, int checkCrc,
                                   unsigned short* error, unsigned short* remaining,
                                   TISDBTTable* previous);

    Type getType() const { return type; }
    unsigned char getTableId() const { return tableId; }
    unsigned short getSectionLength() const { return sectionLength; }
    unsigned int getTableCRC32() const { return crc32; }

    /** Kept for source compatibility; there is no debug output to switch. */
    static void setDebug(int, int) {}

  protected:
    /** Appends the header members (no braces) to out. */
    void appendHeaderJSON(std::string& out) const;
    /**
     * Offset where a body walk stops: bodyStart + remaining (the CRC32 offset
     * of a well-formed section), but never beyond the length bytes handed in,
     * even when a section_length below 4 made remaining wrap.
     */
    static unsigned int bodyEnd(unsigned int bodyStart, unsigned short remaining,
                                unsigned int length);

    Type type;
    unsigned int minLength;
    unsigned short expectedTableId;
    unsigned char tableId;
    unsigned short sectionLength;
    unsigned int crc32;
};

}  // namespace Sarn

#endif
