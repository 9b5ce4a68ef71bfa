// The public headers as a user's code sees them, compiled with the warnings
// a careful user switches on, as errors (tests/CMakeLists.txt).
#include <SarnISDBTUtils.h>

static_assert(SARN_ISDBT_UTILS_VERSION_MAJOR >= 0 && SARN_ISDBT_UTILS_VERSION_MINOR >= 0 &&
                  SARN_ISDBT_UTILS_VERSION_PATCH >= 0,
              "version macros");

int main() {
    unsigned short error = 0;
    Sarn::TPATTable* pat = Sarn::TPATTable::parse(nullptr, 0, 0, 1, &error, nullptr);
    delete pat;
    return error == Sarn::ERROR_INVALID_DATA ? 0 : 1;
}
