#ifndef SARN_TAPPLICATIONNAMEDESCRIPTORITEM_H
#define SARN_TAPPLICATIONNAMEDESCRIPTORITEM_H

#include <string>

namespace Sarn {

/** One language of the application name descriptor: ISO 639 code and name. */
class TApplicationNameDescriptorItem {
  public:
    static TApplicationNameDescriptorItem* parse(unsigned char* data, unsigned int len,
                                                 unsigned int* bytesRead, unsigned short* err);

    TApplicationNameDescriptorItem();
    explicit TApplicationNameDescriptorItem(const TApplicationNameDescriptorItem* src);
    virtual ~TApplicationNameDescriptorItem();

    const std::string& getLanguageCode() const { return languageCode; }
    const std::string& getName() const { return name; }

  private:
    std::string languageCode;
    std::string name;
};

}  // namespace Sarn

#endif
