#include "tools/loomsim/scenario.h"

#include <algorithm>

#include "refhost/accounting.h"
#include "refhost/file_io.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kFirstDocument = "document";

// Properties that name the sandbox's places, unless the scenario sets them.
struct PlaceProperty {
  const char* key;
  std::string_view place;
};
constexpr PlaceProperty kPlaceProperties[] = {
    {"loom.user.path", "user"},
    {"loom.driver.path", "driver"},
    {"loom.allusers.path", "allusers"},
};

}  // namespace

std::u16string HostPath(const std::filesystem::path& path) {
  const std::string utf8 = refhost::Utf8Path(path);
  std::optional<std::u16string> wide = WideText(utf8);
  if (!wide) throw SetupError{"the path " + Quote(utf8) + " is not UTF-8"};
  return *wide;
}

Scenario::Scenario(ObjectFinder finder, std::filesystem::path file, Report& report)
    : finder_(finder), file_(std::move(file)), report_(report), executor_(*this) {
  for (const PlaceProperty& property : kPlaceProperties) {
    sheet_.properties().set(property.key, sandbox_.Place(property.place)->string());
  }
  sheet_.setDirectories(HostPath(*sandbox_.Place("root")), HostPath(*sandbox_.Place("user")),
                        HostPath(*sandbox_.Place("allusers")));
  sheet_.scriptEnv().setExecutor([this](const refhost::ScriptEnvironment::Statement& statement) {
    return executor_.Run(statement);
  });
  referenceBaseline_ = refhost::heldReferences();
}

Scenario::~Scenario() { sheet_.scriptEnv().setExecutor(nullptr); }

void Scenario::BeginStatement(int line, std::string echo) {
  line_ = line;
  echo_ = std::move(echo);
}

void Scenario::Check(bool passed, std::string_view got) {
  if (passed) {
    report_.Pass(line_, echo_);
    return;
  }
  std::string_view expected = echo_;
  if (expected.starts_with(kExpectPrefix)) expected.remove_prefix(kExpectPrefix.size());
  report_.Fail(line_, "expected " + std::string(expected) + ", got " + std::string(got));
}

void Scenario::AddDocument(const std::string& name, refhost::Document& document) {
  if (name == kFirstDocument || FindDocument(name) != nullptr) {
    throw SetupError{"a document named " + name + " exists already"};
  }
  documents_.emplace_back(name, &document);
  if (uiArchive_) document.setArchive(uiArchive_.share());
}

void Scenario::SetUiArchive(Loom::SmartPtr<Loom::Services::Archive> archive) {
  uiArchive_ = refhost::HostRef(archive.get());
  for (const auto& [name, document] : documents_) document->setArchive(archive);
}

refhost::Document* Scenario::FindDocument(std::string_view name) const {
  if (name == kFirstDocument) return documents_.empty() ? nullptr : documents_.front().second;
  const auto found = std::find_if(documents_.begin(), documents_.end(),
                                  [name](const auto& entry) { return entry.first == name; });
  return found == documents_.end() ? nullptr : found->second;
}

std::string Scenario::NameOf(const refhost::Document* document) const {
  const auto found =
      std::find_if(documents_.begin(), documents_.end(),
                   [document](const auto& entry) { return entry.second == document; });
  return found == documents_.end() ? "?" : found->first;
}

const std::string* Scenario::Rule(std::string_view name) const {
  const auto found = rules_.find(name);
  return found == rules_.end() ? nullptr : &found->second;
}

const LastCall* Scenario::LastCallForCheck() {
  if (lastCall_.made) return &lastCall_;
  Check(false, "no call has been made yet");
  return nullptr;
}

refhost::Document* Scenario::callingDocument() const {
  return callingDocument_ != nullptr ? callingDocument_ : FindDocument(kFirstDocument);
}

std::size_t Scenario::NoteChange(std::string line) {
  if (!noting_) return notes_.size();
  notes_.push_back(std::move(line));
  return notes_.size() - 1;
}

void Scenario::AmendNote(std::size_t position, std::string_view text) {
  if (position < notes_.size()) notes_[position] += text;
}

std::vector<std::string> Scenario::StopNoting() {
  noting_ = false;
  return std::exchange(notes_, {});
}

}  // namespace loomsim
