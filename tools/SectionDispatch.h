#ifndef SARN_TOOLS_SECTIONDISPATCH_H
#define SARN_TOOLS_SECTIONDISPATCH_H

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <SarnISDBTUtils.h>

namespace sarntool {

/** What became of one section. */
struct SectionResult {
    bool known = false;        // a table class of the library takes it
    unsigned short error = 0;  // the library's code (0 on success)
    std::string json;          // toJSON() of the table when parsed
    unsigned int sectionNumber = 0;
    /**
     * The table when parsed, with the copy of the section it was parsed
     * from: both valid until the next section is handled.
     */
    const Sarn::TISDBTTable* table = nullptr;
    const unsigned char* bytes = nullptr;
};

/**
 * Hands each section to the table class its PID and table_id select, with
 * the CRC check on, and keeps the last table of every (PID, table_id,
 * table_id_extension, section_number) as the previous table of the next one,
 * so that a repeated table comes back as code 2561.
 */
class SectionDispatch {
  public:
    SectionDispatch() = default;
    SectionDispatch(const SectionDispatch&) = delete;
    SectionDispatch& operator=(const SectionDispatch&) = delete;
    ~SectionDispatch();

    SectionResult handle(unsigned int pid, unsigned char* section, unsigned int length);

  private:
    using Key = std::tuple<unsigned int, unsigned int, unsigned int, unsigned int>;
    /** A table and the section bytes that it was parsed from (some tables point into them). */
    struct Kept {
        Sarn::TISDBTTable* table = nullptr;
        std::vector<unsigned char> bytes;
    };
    std::map<Key, Kept> previous;
    std::vector<unsigned char> scratch;
    std::unique_ptr<Sarn::TISDBTTable> lastTot;  // kept until the next section
};

}  // namespace sarntool

#endif
