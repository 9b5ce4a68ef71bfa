// Parses a PAT, prints its JSON and deletes it: the README's example. With
// --version, prints the version macros of the installed headers.
#include <SarnISDBTUtils.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("%s %d.%d.%d\n", SARN_ISDBT_UTILS_VERSION, SARN_ISDBT_UTILS_VERSION_MAJOR,
                    SARN_ISDBT_UTILS_VERSION_MINOR, SARN_ISDBT_UTILS_VERSION_PATCH);
        return 0;
    }
    unsigned char pat[] = {0x00, 0xB0, 0x11, 0x02, 0xE1, 0xC1, 0x00, 0x00, 0x00, 0x00,
                           0xE0, 0x10, 0x5C, 0x20, 0xE1, 0x01, 0x27, 0xAC, 0x84, 0x2C};
    unsigned short error = 0;
    Sarn::TPATTable* table = Sarn::TPATTable::parse(pat, sizeof pat, 0, 1, &error, nullptr);
    if (table == nullptr) {
        std::printf("error %u\n", error);
        return 1;
    }
    std::printf("%s\n", table->toJSON().c_str());
    delete table;
    return 0;
}
