#ifndef SARN_PARSESECTION_H
#define SARN_PARSESECTION_H

#include "ISDBTUtils.h"
#include "TISDBTTable.h"

namespace Sarn {

/**
 * Parses one complete section (the bytes from table_id to the CRC32) with
 * the table class that its table_id selects, and returns the new table (the
 * caller deletes it) or null with an error code, as that class's own parse
 * would:
 *
 * | table_id    | class                | table_id    | class                |
 * |-------------|----------------------|-------------|----------------------|
 * | 0x00        | TPATTable            | 0x42        | TSDTTable            |
 * | 0x02        | TPMTTable            | 0x4E - 0x6F | TEITTable            |
 * | 0x3B        | TDsiDiiTable         | 0x73        | TTOTTable            |
 * | 0x3C        | TDDBTable            | 0x74        | TAITTable            |
 * | 0x3D        | TDSMCCSectionTable   | 0x99        | TDCTTable            |
 * | 0x40        | TNITTable            | 0xC3        | TSDTTTable           |
 *
 * checkCrc is handed to the class's CRC switch: the CRC32 is checked only
 * when it is exactly 1. pid is the PID the section came on; it only picks
 * the EIT variant (0x0012 full-segment, any other one-segment). The TOT is
 * read with its descriptors. previous is the table last parsed from the same
 * PID and table_id, or null: a section that repeats it comes back as
 * ERROR_TABLE_UNCHANGED.
 *
 * Without a table, nothing logged: ERROR_INVALID_DATA for null data,
 * ERROR_DATA_TOO_SHORT for a length of 0, ERROR_UNEXPECTED_TABLE_ID for a
 * table_id that no class of the library takes, ERROR_PREVIOUS_TABLE_TYPE for
 * a previous table of another class than the one selected.
 */
TISDBTTable* parseSection(unsigned char* data, unsigned int length, int checkCrc,
                          unsigned short* error, unsigned int pid, TISDBTTable* previous = nullptr);

}  // namespace Sarn

#endif
