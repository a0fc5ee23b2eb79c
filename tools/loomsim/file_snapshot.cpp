#include "tools/loomsim/file_snapshot.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <unordered_map>

#include "refhost/file_io.h"
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

struct Known {
  refhost::FileVersion version;
  std::uint64_t hash;
};

// The content hash of every file seen in the last walk, by path: a file whose version
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
    rehash.push_back(refhost::Utf8Path(path.lexically_normal()));
  }
  std::sort(rehash.begin(), rehash.end());
  std::unordered_map<std::string, Known>& known = KnownFiles();
  std::unordered_map<std::string, Known> seen;
  FileSnapshot snapshot;
  // A file that vanishes while the tree is walked is simply not in the snapshot.
  std::error_code error;
  for (auto it = std::filesystem::recursive_directory_iterator(root, error);
       !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
    if (!it->is_regular_file(error)) continue;
    const auto version = refhost::VersionOf(it->path());
    if (!version) continue;
    const std::string path = refhost::Utf8Path(it->path().lexically_normal());
    Known state{*version, 0};
    const auto before = known.find(path);
    if (before != known.end() && before->second.version == state.version &&
        !std::binary_search(rehash.begin(), rehash.end(), path)) {
      state.hash = before->second.hash;
    } else {
      state.hash = HashOf(it->path());
    }
    const std::u8string generic = it->path().lexically_relative(root).generic_u8string();
    const std::string relative(generic.begin(), generic.end());
    const auto size = static_cast<std::uintmax_t>(std::get<2>(*version));
    snapshot[relative] = FileState{size, state.hash};
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
