// Runs a fuzz harness over saved inputs without libFuzzer, for the test
// suite and coverage builds (built with any compiler):
//   replay_<harness> FILE|DIR...
// Each file is one input; a directory gives every file in it, in name order.
// A crash or a sanitizer report fails the run; otherwise it prints how many
// inputs it replayed.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

namespace {

void collect(const std::string& path, std::vector<std::string>& files) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0)
        return;
    if (!S_ISDIR(st.st_mode)) {
        files.push_back(path);
        return;
    }
    std::vector<std::string> names;
    if (DIR* dir = opendir(path.c_str())) {
        while (const dirent* e = readdir(dir))
            if (e->d_name[0] != '.')
                names.push_back(path + "/" + e->d_name);
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    for (const std::string& n : names)
        collect(n, files);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i)
        collect(argv[i], files);
    for (const std::string& f : files) {
        std::ifstream in(f, std::ios::binary);
        const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                                         std::istreambuf_iterator<char>());
        // Each input in a buffer of exactly its size, as libFuzzer gives it.
        static const uint8_t kNone = 0;
        std::vector<uint8_t> exact(bytes);
        LLVMFuzzerTestOneInput(exact.empty() ? &kNone : exact.data(), exact.size());
    }
    std::printf("replayed %zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
