#include "tools/loomsim/file_snapshot.h"

#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <system_error>
#include <tuple>
#include <unordered_map>

#include "tools/loomsim/place_ref.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

std::uint64_t HashOf(const std::filesystem::path& file) {
  constexpr std::uint64_t kOffsetBasis = 14695981039346656037ull;
  constexpr std::uint64_t kPrime = 1099511628211ull;
  std::uint64_t hash = kOffsetBasis;
  std::ifstream in(file, std::ios::binary);
  char buffer[4096];
  while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
    for (std::streamsize i = 0; i < in.gcount(); ++i) {
      hash = (hash ^ static_cast<unsigned char>(buffer[i])) * kPrime;
    }
  }
  return hash;
}

// user/a/b.xml -> user:"a/b.xml"
std::string FileText(const std::string& relative) {
  const std::size_t slash = relative.find('/');
  if (slash == std::string::npos) return Quote(relative);
  return PlaceRefText({relative.substr(0, slash), relative.substr(slash + 1)});
}

std::string Bytes(std::uintmax_t size) { return " (" + std::to_string(size) + " bytes)"; }

// What tells one version of a file from the next without reading it. Every write gives a
// file a new modification and change time (the host's atomic writes a new inode too).
using Signature = std::tuple<dev_t, ino_t, off_t, long, long, long, long>;

Signature SignatureOf(const struct stat& status) {
  return {status.st_dev,          status.st_ino,          status.st_size,
          status.st_mtim.tv_sec,  status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
          status.st_ctim.tv_nsec};
}

struct Known {
  Signature signature;
  std::uint64_t hash;
};

// The content hash of every file seen in the last walk, by path: a file whose signature
// has not changed since is not read again.
std::unordered_map<std::string, Known>& KnownFiles() {
  static std::unordered_map<std::string, Known> known;
  return known;
}

}  // namespace

FileSnapshot TakeFileSnapshot(const std::filesystem::path& root,
                              const std::vector<std::filesystem::path>& written) {
  std::vector<std::string> rehash;
  for (const std::filesystem::path& path : written) {
    rehash.push_back(path.lexically_normal().native());
  }
  std::sort(rehash.begin(), rehash.end());
  std::unordered_map<std::string, Known>& known = KnownFiles();
  std::unordered_map<std::string, Known> seen;
  FileSnapshot snapshot;
  // A file that vanishes while the tree is walked is simply not in the snapshot.
  std::error_code error;
  for (auto it = std::filesystem::recursive_directory_iterator(root, error);
       !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
    struct stat status;
    if (::stat(it->path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    const std::string path = it->path().lexically_normal().native();
    Known state{SignatureOf(status), 0};
    const auto before = known.find(path);
    if (before != known.end() && before->second.signature == state.signature &&
        !std::binary_search(rehash.begin(), rehash.end(), path)) {
      state.hash = before->second.hash;
    } else {
      state.hash = HashOf(it->path());
    }
    const std::string relative = it->path().lexically_relative(root).generic_string();
    snapshot[relative] = FileState{static_cast<std::uintmax_t>(status.st_size), state.hash};
    seen.emplace(path, state);
  }
  known = std::move(seen);
  return snapshot;
}

void DiffFiles(const FileSnapshot& before, const FileSnapshot& after,
               std::vector<std::string>& lines) {
  for (const auto& [path, state] : after) {
    const auto old = before.find(path);
    if (old == before.end()) {
      lines.push_back("+ file " + FileText(path) + Bytes(state.size));
    } else if (old->second.size != state.size || old->second.hash != state.hash) {
      lines.push_back("~ file " + FileText(path) + Bytes(state.size));
    }
  }
  for (const auto& [path, state] : before) {
    if (!after.contains(path)) lines.push_back("- file " + FileText(path));
  }
}

}  // namespace loomsim
