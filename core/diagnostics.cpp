#include "core/diagnostics.h"

#include <optional>
#include <string_view>

#include "core/arg_record.h"
#include "core/dispatch.h"
#include "core/letter_difference.h"

namespace spindle {

SpindleDiagnosticsHook g_diagnosticsHook = nullptr;

namespace {

struct KindNameRow {
  std::uint32_t kind;
  const char* name;
};
constexpr KindNameRow kKindNames[] = {
    {kAnyKind, "any"},
    {kAnyNumber, "number"},
    {Loom::kArgInteger, "integer"},
    {Loom::kArgString, "string"},
    {Loom::kArgFloat, "float"},
    {Loom::kArgDouble, "double"},
    {Loom::kArgDocument, "document"},
    {Loom::kArgElement, "element"},
};

std::string KindName(std::uint32_t kind) {
  for (const KindNameRow& row : kKindNames) {
    if (row.kind == kind) return row.name;
  }
  return "kind " + std::to_string(kind);
}

// A record as the call gave it; a string record without a string is no string.
std::string RecordName(const xarg_entry& record) {
  if (record.kind == Loom::kArgString && StringIn(record) == nullptr) return "null string";
  return KindName(record.kind);
}

std::string CallText(const char* object, const char* method, int argc, const xarg_entry* args) {
  std::string text = std::string(object) + "." + (method != nullptr ? method : "(no name)") + "(";
  for (int i = 0; i < argc; ++i) {
    text += (i == 0 ? "" : ", ") + (args != nullptr ? RecordName(args[i]) : std::string("?"));
  }
  return text + ")";
}

std::string RowText(const Signature& row) {
  std::string text = std::string(row.name) + "(";
  for (int i = 0; i < row.argc; ++i) {
    text += (i == 0 ? "" : ", ") + KindName(i < kMaxTypedArgs ? row.kinds[i] : kAnyKind);
  }
  if (row.count == Count::kAtLeast) text += row.argc == 0 ? "..." : ", ...";
  return text + ")";
}

bool CountFits(const Signature& row, int argc) {
  return row.count == Count::kExactly ? argc == row.argc : argc >= row.argc;
}

// The nearest row: the same name first, then names by how far they are; at equal
// distance a row whose count fits, then the earlier row.
std::optional<std::size_t> NearestRow(const SignatureRows& rows, std::string_view method,
                                      int argc) {
  std::optional<std::size_t> nearest;
  std::size_t bestScore = 0;
  for (std::size_t i = 0; i < rows.count; ++i) {
    const Signature& row = rows.at(rows.table, i);
    // Exact names rank before names that differ only in case (distance 0 either way).
    const std::size_t distance = method == row.name ? 0 : LetterDifference(method, row.name) + 1;
    if (distance > kMaxLetterDifference + 1) continue;
    const std::size_t score = distance * 2 + (CountFits(row, argc) ? 0 : 1);
    if (!nearest || score < bestScore) {
      nearest = i;
      bestScore = score;
    }
  }
  return nearest;
}

// The first argument whose kind `row` does not take; -1 for none.
int FirstDifferingArgument(const Signature& row, int argc, const xarg_entry* args) {
  if (args == nullptr) return -1;
  for (int i = 0; i < argc && i < kMaxTypedArgs; ++i) {
    if (!KindMatches(row.kinds[i], args[i])) return i;
  }
  return -1;
}

std::string ArgumentsWanted(const Signature& row) {
  return std::string(row.count == Count::kAtLeast ? "at least " : "") + std::to_string(row.argc) +
         (row.argc == 1 ? " argument" : " arguments");
}

}  // namespace

void ReportUnmatched(const char* objectName, const SignatureRows& rows, const char* method,
                     int argc, const xarg_entry* args) {
  SpindleUnmatchedCall call{objectName, method, argc, args, nullptr, -1, nullptr};
  std::string reason = "no method matched " + CallText(objectName, method, argc, args);
  const std::optional<std::size_t> nearestIndex =
      method != nullptr ? NearestRow(rows, method, argc) : std::nullopt;
  if (nearestIndex) {
    const Signature& nearest = rows.at(rows.table, *nearestIndex);
    call.nearest = nearest.name;
    if (!CountFits(nearest, argc) && std::string_view(method) == nearest.name) {
      reason = std::string(method) + " needs " + ArgumentsWanted(nearest) + ", got " +
               std::to_string(argc);
    } else {
      reason += ": did you mean " + RowText(nearest) + "?";
      if (CountFits(nearest, argc)) {
        call.differingArgument = FirstDifferingArgument(nearest, argc, args);
      }
      if (call.differingArgument >= 0) {
        const int i = call.differingArgument;
        reason += " argument " + std::to_string(i + 1) + " is " + RecordName(args[i]) + ", not " +
                  KindName(nearest.kinds[i]);
      }
    }
  }
  call.reason = reason.c_str();
  g_diagnosticsHook(&call);
}

}  // namespace spindle

extern "C" SpindleDiagnosticsHook setDiagnosticsHook(SpindleDiagnosticsHook hook) {
  SpindleDiagnosticsHook previous = spindle::g_diagnosticsHook;
  spindle::g_diagnosticsHook = hook;
  return previous;
}
