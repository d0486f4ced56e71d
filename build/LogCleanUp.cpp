#include "build/LogCleanUp.h"

#include "core/FileManager.h"
#include "core/Text.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace {

constexpr std::size_t installPatterns = 8;
constexpr std::size_t longestPattern = 8;
constexpr std::size_t chunkSize = std::size_t{1} << 17;
constexpr std::string_view missingPackages = "mv: cannot stat 'packages': No such file or directory";

using Word = std::uint64_t;
static_assert(std::endian::native == std::endian::little, "the first character is a word's lowest byte");

constexpr Word everyByte = 0x0101010101010101U;

constexpr Word wordOf(std::string_view text) {
  Word word = 0;
  for (std::size_t at = text.size(); at-- > 0;) word = word << 8 | static_cast<unsigned char>(text[at]);
  return word;
}

// The bytes of a word that hold `size` characters, one to eight.
constexpr Word maskOf(std::size_t size) {
  return ~Word{0} >> (64 - 8 * size);
}

struct Pattern {
  std::string_view text;
  Word word = wordOf(text);
  Word mask = maskOf(text.size());
};
using Patterns = std::span<const Pattern>;

// In order. The install build knows the first eight only.
constexpr Pattern colourPatterns[] = {
    {"[1;31m>"}, {"[1;3;39m"}, {"[1;39m"}, {"[0;31m"},   {"[0;32m"}, {"[0;33m"}, {"[0;34m"},
    {"[m"},      {"[0;1;31m"}, {"[0m"},    {"[0;1;32m"}, {"[1m"},    {"[1;31m"},
};

// The highest bit of each byte of `word` that is a bracket. Bits above the lowest one may be wrong.
constexpr Word brackets(Word word) {
  const Word difference = word ^ everyByte * '[';
  return (difference - everyByte) & ~difference & everyByte << 7;
}

// One pass over the log instead of one for each pattern. Every colour pattern begins with a bracket and holds
// no other, so the log falls into pieces, each from one bracket to before the next, and an occurrence is the
// head of a piece. What a piece loses depends on itself alone, unless the whole piece is the beginning of a
// pattern: then the removal of later heads may complete it ("[" before "[mm"), and those few places are
// cleaned pattern by pattern.
//
// Text is copied a word at a time while it is searched: a word that holds a bracket is copied whole, and what
// follows it is written again.
class Cleaner {
 public:
  // `out` takes as many characters as `log` has.
  Cleaner(std::string_view log, Patterns patterns, char* out)
      : at_(log.data()), end_(log.data() + log.size()), patterns_(patterns), begin_(out), out_(out) {}

  // How many characters are left.
  std::size_t run() {
    while (toNextBracket()) {
      const Word word = wordAt(at_);
      const Word later = brackets(word) & ~Word{0xFF};
      const auto pieceSize = static_cast<std::size_t>(std::countr_zero(later) / 8);
      if (later != 0 && mayBeCompleted(word, pieceSize)) {
        cleanCluster();
        continue;
      }
      const std::size_t removed = headSize(word);
      if (removed == 0) *out_++ = *at_;
      at_ += std::max<std::size_t>(removed, 1);
    }
    return static_cast<std::size_t>(out_ - begin_);
  }

 private:
  std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }

  // With zeros, which no pattern holds, for what is past the end.
  Word wordAt(const char* place) const {
    Word word = 0;
    const auto left = static_cast<std::size_t>(end_ - place);
    // A copy of constant size is a single load.
    if (left >= sizeof word) {
      std::memcpy(&word, place, sizeof word);
    } else {
      std::memcpy(&word, place, left);
    }
    return word;
  }

  // Copies up to the next bracket; false at the end of the log.
  bool toNextBracket() {
    const char* at = at_;
    char* out = out_;
    Word found = 0;
    while (static_cast<std::size_t>(end_ - at) >= sizeof found) {
      Word word;
      std::memcpy(&word, at, sizeof word);
      std::memcpy(out, &word, sizeof word);
      found = brackets(word);
      if (found != 0) {
        const auto before = std::countr_zero(found) / 8;
        at_ = at + before;
        out_ = out + before;
        return true;
      }
      at += sizeof word;
      out += sizeof word;
    }
    while (at != end_ && *at != '[') *out++ = *at++;
    at_ = at;
    out_ = out;
    return at != end_;
  }

  std::size_t headSize(Word word) const {
    for (const Pattern& pattern : patterns_) {
      if ((word & pattern.mask) == pattern.word) return pattern.text.size();
    }
    return 0;
  }

  // Whether `piece`, which is shorter than a word, is the beginning of a pattern.
  bool mayBeCompleted(Word piece, std::size_t size) const {
    const Word mask = maskOf(size);
    return std::any_of(patterns_.begin(), patterns_.end(), [&](const Pattern& pattern) {
      return pattern.text.size() > size && (pattern.word & mask) == (piece & mask);
    });
  }

  // Cleans from the bracket here to where no removal can matter any more. Each piece can take at most the
  // longest pattern out of what comes after it, so a last piece that is longer than all of them together ends
  // the cluster.
  void cleanCluster() {
    const std::string_view log(at_, left());
    const auto nextBracket = [log](std::size_t from) { return std::min(log.find('[', from), log.size()); };
    std::size_t reach = longestPattern;
    std::size_t last = 0;
    std::size_t next = nextBracket(1);
    while (next != log.size() && next - last < reach) {
      last = next;
      next = nextBracket(next + 1);
      reach += longestPattern;
    }
    const std::size_t size = std::min(next, last + reach);
    std::string cluster(log.substr(0, size));
    for (const Pattern& pattern : patterns_) cluster = replaceAll(cluster, pattern.text, "");
    out_ = std::copy(cluster.begin(), cluster.end(), out_);
    at_ += size;
  }

  const char* at_;
  const char* end_;
  Patterns patterns_;
  char* begin_;
  char* out_;
};

Patterns patternsOf(BuildVariant variant) {
  const Patterns all(colourPatterns);
  return variant == BuildVariant::Install ? all.first(installPatterns) : all;
}

// A chunk of a huge log rarely holds it, and this search looks at more than a first letter.
bool holdsMissingPackages(std::string_view text) {
  return memmem(text.data(), text.size(), missingPackages.data(), missingPackages.size()) != nullptr;
}

}  // namespace

std::string cleanedLog(std::string_view log, BuildVariant variant) {
  std::string cleaned(log.size(), '\0');
  cleaned.resize(Cleaner(log, patternsOf(variant), cleaned.data()).run());
  return holdsMissingPackages(cleaned) ? replaceAll(cleaned, missingPackages, "") : cleaned;
}

void cleanLog(const std::string& path, BuildVariant variant) {
  const Descriptor log = openRegularFile(path);
  if (!log) return;
  // No pattern holds a line feed, so lines are cleaned apart, and a huge log passes through small buffers.
  AtomicFile cleaned(path);
  std::string lines(chunkSize, '\0');
  std::string left(chunkSize, '\0');
  std::size_t held = 0;
  for (bool atEnd = false; !atEnd;) {
    if (held > lines.size() / 2) {
      lines.resize(2 * lines.size());
      left.resize(lines.size());
    }
    const auto got = readSome(log, lines.data() + held, lines.size() - held);
    if (!got) return;
    atEnd = *got == 0;
    const std::size_t lastEnd = std::string_view(lines.data() + held, *got).rfind('\n');
    const std::size_t ready = lastEnd == std::string_view::npos ? 0 : held + lastEnd + 1;
    held += *got;
    const std::string_view whole(lines.data(), atEnd ? held : ready);
    if (!isValidUTF8(whole)) return;
    const std::string_view text(left.data(), Cleaner(whole, patternsOf(variant), left.data()).run());
    cleaned.write(holdsMissingPackages(text) ? std::string_view(replaceAll(text, missingPackages, ""))
                                             : text);
    held -= whole.size();
    std::memmove(lines.data(), lines.data() + whole.size(), held);
  }
  // Deferred: a log that a power cut takes is made anew by the next build.
  cleaned.commit(Durability::Deferred);
}
