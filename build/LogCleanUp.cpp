#include "build/LogCleanUp.h"

#include "core/FileManager.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>

namespace {

// In order. The install build knows the first eight only.
constexpr std::array<std::string_view, 13> colourPatterns{
    "[1;31m>", "[1;3;39m", "[1;39m", "[0;31m",   "[0;32m", "[0;33m", "[0;34m",
    "[m",      "[0;1;31m", "[0m",    "[0;1;32m", "[1m",    "[1;31m",
};
constexpr std::size_t installPatterns = 8;
constexpr std::size_t longestPattern = 8;
constexpr std::size_t chunkSize = std::size_t{1} << 18;
constexpr std::string_view missingPackages = "mv: cannot stat 'packages': No such file or directory";

using Patterns = std::span<const std::string_view>;

// One pass over the log instead of one for each pattern. Every colour pattern begins with a bracket and holds
// no other, so the log falls into pieces, each from one bracket to before the next, and an occurrence is the
// head of a piece. What a piece loses depends on itself alone, unless the whole piece is the beginning of a
// pattern: then the removal of later heads may complete it ("[" before "[mm"), and those few places are
// cleaned pattern by pattern.
class Cleaner {
 public:
  Cleaner(std::string_view log, Patterns patterns) : log_(log), patterns_(patterns) {
    cleaned_.reserve(log.size());
  }

  std::string run() {
    std::size_t piece = nextBracket(0);
    while (piece != log_.size()) {
      const std::size_t next = nextBracket(piece + 1);
      if (next != log_.size() && mayBeCompleted(log_.substr(piece, next - piece))) {
        piece = cleanCluster(piece);
        continue;
      }
      const std::size_t removed = headLength(log_.substr(piece, next - piece));
      if (removed != 0) {
        copyUpTo(piece);
        copiedTo_ = piece + removed;
      }
      piece = next;
    }
    copyUpTo(log_.size());
    return std::move(cleaned_);
  }

 private:
  std::size_t nextBracket(std::size_t from) const { return std::min(log_.find('[', from), log_.size()); }

  void copyUpTo(std::size_t end) {
    cleaned_.append(log_, copiedTo_, end - copiedTo_);
    copiedTo_ = end;
  }

  std::size_t headLength(std::string_view piece) const {
    if (piece.size() < 2) return 0;
    for (const std::string_view pattern : patterns_) {
      if (pattern[1] == piece[1] && piece.starts_with(pattern)) return pattern.size();
    }
    return 0;
  }

  bool mayBeCompleted(std::string_view piece) const {
    if (piece.size() >= longestPattern) return false;
    // The last letter tells most pieces apart, without a call for each pattern.
    const auto isBegunBy = [piece](std::string_view pattern) {
      return pattern.size() > piece.size() && pattern[piece.size() - 1] == piece.back() &&
             pattern.starts_with(piece);
    };
    return std::any_of(patterns_.begin(), patterns_.end(), isBegunBy);
  }

  // Cleans from `first` to where no removal can matter any more, and returns the bracket that follows. Each
  // piece can take at most the longest pattern out of what comes after it, so a last piece that is longer
  // than all of them together ends the cluster.
  std::size_t cleanCluster(std::size_t first) {
    std::size_t reach = longestPattern;
    std::size_t last = first;
    std::size_t next = nextBracket(first + 1);
    while (next != log_.size() && next - last < reach) {
      last = next;
      next = nextBracket(next + 1);
      reach += longestPattern;
    }
    const std::size_t end = std::min(next, last + reach);
    std::string cluster(log_.substr(first, end - first));
    for (const std::string_view pattern : patterns_) {
      if (cluster.find(pattern) != std::string::npos) cluster = replaceAll(cluster, pattern, "");
    }
    copyUpTo(first);
    cleaned_ += cluster;
    copiedTo_ = end;
    return next;
  }

  std::string_view log_;
  Patterns patterns_;
  std::string cleaned_;
  std::size_t copiedTo_ = 0;
};

}  // namespace

std::string cleanedLog(std::string_view log, BuildVariant variant) {
  const Patterns all(colourPatterns);
  std::string cleaned =
      Cleaner(log, variant == BuildVariant::Install ? all.first(installPatterns) : all).run();
  // A chunk of a huge log rarely holds it, and this is the quicker search: it looks at more than a first
  // letter.
  if (memmem(cleaned.data(), cleaned.size(), missingPackages.data(), missingPackages.size()) == nullptr) {
    return cleaned;
  }
  return replaceAll(cleaned, missingPackages, "");
}

void cleanLog(const std::string& path, BuildVariant variant) {
  const Descriptor log = openRegularFile(path);
  if (!log) return;
  // No pattern holds a line feed, so lines are cleaned apart, and a huge log passes through a small buffer.
  AtomicFile cleaned(path);
  std::string lines;
  std::size_t held = 0;
  for (bool atEnd = false; !atEnd;) {
    if (lines.size() < held + chunkSize) lines.resize(held + chunkSize);
    const auto got = readSome(log, lines.data() + held, lines.size() - held);
    if (!got) return;
    atEnd = *got == 0;
    const std::string_view read(lines.data() + held, *got);
    const std::size_t lastEnd = read.rfind('\n');
    const std::size_t ready = lastEnd == std::string_view::npos ? 0 : held + lastEnd + 1;
    held += *got;
    const std::string_view whole(lines.data(), atEnd ? held : ready);
    if (!isValidUTF8(whole)) return;
    cleaned.write(cleanedLog(whole, variant));
    held -= whole.size();
    // The buffer stays as large as it is, since growing it again would fill it with zeros first.
    std::memmove(lines.data(), lines.data() + whole.size(), held);
  }
  // Deferred: a log that a power cut takes is made anew by the next build.
  cleaned.commit(Durability::Deferred);
}
