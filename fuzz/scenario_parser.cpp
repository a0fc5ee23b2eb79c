// The scenario runner's reader and parser on arbitrary text: every statement either
// parses or is refused with a StatementError / ParseError, nothing else.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tools/loomsim/grammar.h"
#include "tools/loomsim/statement_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    for (const loomsim::SourceStatement& statement : loomsim::ReadStatements(text)) {
      if (statement.comment) continue;
      try {
        loomsim::ParseStatement(loomsim::Facilities(), statement.text, statement.block);
      } catch (const loomsim::ParseError&) {
      }
    }
  } catch (const loomsim::StatementError&) {
  }
  return 0;
}
