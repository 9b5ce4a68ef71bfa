#ifndef SARN_TGINGAAPPLICATIONLOCATIONDESCRIPTOR_H
#define SARN_TGINGAAPPLICATIONLOCATIONDESCRIPTOR_H

#include <string>

#include "TISDBTDescriptor.h"

namespace Sarn {

/**
 * Ginga application location descriptor: base directory, class path
 * extension and initial class (or initial document) of a Ginga application.
 * The Java (0x04), NCL (0x07) and HTML5 (0x0F) descriptors share this layout
 * and differ in their tag.
 */
class TGingaApplicationLocationDescriptor : public TISDBTDescriptor {
  public:
    TGingaApplicationLocationDescriptor(unsigned char tag, unsigned char* data, unsigned int len);
    explicit TGingaApplicationLocationDescriptor(const TGingaApplicationLocationDescriptor* src);
    ~TGingaApplicationLocationDescriptor() override;

    std::string toJSON() const override;
    void appendJSON(std::string& out) const override;
    /**
     * Reads the three fields from the len bytes after descriptor_length.
     * Returns 1 on success, 0 on failure (code set through err).
     */
    virtual int parseData(unsigned char* data, unsigned int len, unsigned int* bytesRead,
                          unsigned short* err);

    const std::string& getBaseDirectory() const { return baseDirectory; }
    const std::string& getClasspathExtension() const { return classpathExtension; }
    const std::string& getInitialClass() const { return initialClass; }

  private:
    std::string baseDirectory;
    std::string classpathExtension;
    std::string initialClass;
};

}  // namespace Sarn

#endif
