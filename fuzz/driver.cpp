// Runs a fuzz target (LLVMFuzzerTestOneInput, as libFuzzer calls it) where there is no libFuzzer: first every
// file of a corpus folder, then a number of mutations of them. The mutations come from a fixed seed, so a run
// that fails fails again; with --trace the number of every run is printed before it, and the last one printed
// is the culprit. Usage: fuzz_<input> <corpus folder> <number of mutations> [--trace]

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kMaxInput = 65'536;

class Mutator
{
public:
    explicit Mutator(const std::vector<std::string>& corpus)
        : m_corpus(corpus)
    {}

    std::string next()
    {
        std::string input = anyEntry();
        for (std::size_t i = below(6) + 1; i > 0; --i)
            mutate(input);
        input.resize(std::min(input.size(), kMaxInput));
        return input;
    }

private:
    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : std::size_t(m_random() % bound); }
    const std::string& anyEntry() { return m_corpus[below(m_corpus.size())]; }

    std::string anyPiece()
    {
        const std::string& entry = anyEntry();
        const std::size_t begin = below(entry.size());
        return entry.substr(begin, below(64) + 1);
    }

    void mutate(std::string& input)
    {
        const std::size_t at = below(input.size() + 1);
        switch (below(6)) {
        case 0: // any byte
            input.insert(at, 1, char(below(256)));
            break;
        case 1: // one bit
            if (at < input.size())
                input[at] = char(input[at] ^ (1 << below(8)));
            break;
        case 2:
            input.erase(at, below(32) + 1);
            break;
        case 3: // a piece of the corpus
            input.insert(at, anyPiece());
            break;
        case 4: { // itself
            const std::string piece = input.substr(at, below(64) + 1);
            input.insert(below(input.size() + 1), piece);
            break;
        }
        case 5: // one byte many times
            input.insert(at, below(300), at < input.size() ? input[at] : '9');
            break;
        }
    }

    const std::vector<std::string>& m_corpus;
    std::mt19937_64 m_random{20'000'101};
};

std::vector<std::string> readCorpus(const char* folder)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file())
            paths.push_back(entry.path());
    }
    std::ranges::sort(paths); // the order in a folder is not fixed
    std::vector<std::string> corpus;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return corpus;
}

void run(const std::string& input)
{
    // A copy of exactly this size, so that a sanitizer sees a read beyond it.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <corpus folder> <number of mutations> [--trace]\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> corpus = readCorpus(argv[1]);
    const long mutations = std::atol(argv[2]);
    const bool trace = argc > 3 && std::strcmp(argv[3], "--trace") == 0;
    if (corpus.empty()) {
        std::fprintf(stderr, "%s holds no files\n", argv[1]);
        return 2;
    }

    for (const std::string& input : corpus)
        run(input);
    Mutator mutator(corpus);
    for (long i = 0; i < mutations; ++i) {
        const std::string input = mutator.next();
        if (trace)
            std::fprintf(stderr, "run %ld, %zu bytes\n", i, input.size());
        run(input);
    }
    std::printf("%zu corpus files and %ld mutations\n", corpus.size(), mutations);
    return 0;
}
