#ifndef SARN_TGINGAAPPLICATIONDESCRIPTOR_H
#define SARN_TGINGAAPPLICATIONDESCRIPTOR_H

#include <string>
#include <utility>
#include <vector>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Ginga application descriptor: the parameters handed to a Ginga
 * application, each a length-prefixed string. The Java (0x03), NCL (0x06)
 * and HTML5 (0x0E) descriptors share this layout and differ in their tag.
 */
class TGingaApplicationDescriptor : public TISDBTDescriptor {
  public:
    TGingaApplicationDescriptor(unsigned char tag, unsigned char* data, unsigned int len);
    /** Copy sharing the bytes; the parameters are duplicated. */
    explicit TGingaApplicationDescriptor(const TGingaApplicationDescriptor* src);
    ~TGingaApplicationDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;
    /**
     * Reads the parameters from the len bytes after descriptor_length.
     * Returns 1 on success, 0 on failure (code set through err).
     */
    virtual int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                          unsigned short* err);

    unsigned int size() const { return static_cast<unsigned int>(parameters.size()); }
    void add(std::string parameter) { parameters.push_back(std::move(parameter)); }
    /** The parameter at index, or an empty string beyond the end. */
    std::string get(unsigned int index) const;
    /** Removes the parameter at index; false beyond the end. */
    bool remove(unsigned int index);

  private:
    std::vector<std::string> parameters;
};

}  // namespace Sarn

#endif
