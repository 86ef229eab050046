// Runs a target over its corpus and over mutations of it, the same ones every time:
//   replay CORPUS-FOLDER MUTATIONS [BYTES]
// With BYTES, what is mutated of a longer input is a piece of that length from any place. An input that takes longer
// than 30 s is a hang and ends the run.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "fuzz/target.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> ReadCorpus(const char* folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<Bytes> corpus;
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return corpus;
}

constexpr unsigned kHang_s = 30;
long g_input = 0;  // its number, the corpus first

extern "C" void TellHang(int) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, "input %ld takes longer than %u s\n", g_input, kHang_s);
  if (write(STDERR_FILENO, text, static_cast<std::size_t>(length)) < 0) _exit(4);
  _exit(3);
}

void Run(const Bytes& bytes) {
  ++g_input;
  alarm(kHang_s);
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

Bytes PieceOf(const Bytes& bytes, std::size_t most, std::mt19937_64& random) {
  if (bytes.size() <= most) return bytes;
  const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(random() % (bytes.size() - most + 1));
  return {from, from + static_cast<std::ptrdiff_t>(most)};
}

// One to four small damages: a flipped bit, a strange number, a cut, a piece of another input.
Bytes Mutate(Bytes bytes, const std::vector<Bytes>& corpus, std::mt19937_64& random) {
  constexpr std::uint32_t kStrange[] = {0, 1, 3, 4, 0x7F, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFC, 0xFFFFFFFF};
  for (auto damages = 1 + random() % 4; damages > 0 && !bytes.empty(); --damages) {
    const std::size_t at = random() % bytes.size();
    switch (random() % 5) {
      case 0:
        bytes[at] ^= static_cast<std::uint8_t>(1U << random() % 8);
        break;
      case 1: {
        const std::uint32_t number = kStrange[random() % std::size(kStrange)];
        for (std::size_t i = 0; i < 4 && at + i < bytes.size(); ++i)
          bytes[at + i] = static_cast<std::uint8_t>(number >> 8 * i);
        break;
      }
      case 2:
        bytes.resize(at);
        break;
      case 3: {
        const Bytes& other = corpus[random() % corpus.size()];
        const std::size_t from = other.empty() ? 0 : random() % other.size();
        const std::size_t count = std::min<std::size_t>(other.size() - from, random() % 64);
        const auto piece = other.begin() + static_cast<std::ptrdiff_t>(from);
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), piece,
                     piece + static_cast<std::ptrdiff_t>(count));
        break;
      }
      default:
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
  }
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) {
    std::fprintf(stderr, "usage: %s CORPUS-FOLDER MUTATIONS [BYTES]\n", argv[0]);
    return 2;
  }
  const auto corpus = ReadCorpus(argv[1]);
  if (corpus.empty()) {
    std::fprintf(stderr, "%s holds no input\n", argv[1]);
    return 1;
  }
  std::signal(SIGALRM, TellHang);
  for (const Bytes& bytes : corpus) Run(bytes);
  std::mt19937_64 random(1);
  const long mutations = std::atol(argv[2]);
  const std::size_t most_bytes = argc == 4 ? std::strtoull(argv[3], nullptr, 10) : SIZE_MAX;
  for (long i = 0; i < mutations; ++i) {
    Run(Mutate(PieceOf(corpus[random() % corpus.size()], most_bytes, random), corpus, random));
  }
  std::printf("%zu inputs, %ld mutations\n", corpus.size(), mutations);
  return 0;
}
