#include "tools/loomsim/script_executor.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "refhost/args.h"
#include "tools/loomsim/cursor.h"
#include "tools/loomsim/library_call.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {

struct ScriptArgument {
  enum class Kind { kDocument, kElement, kText, kInteger, kDouble } kind;
  std::string text{};  // the element id, or the string
  double number = 0;
};

struct ScriptCall {
  std::string object;
  std::string method;
  std::vector<ScriptArgument> arguments;
};

namespace {

// Rules that run rules that run rules...: a page that loops would never come back; the
// runner stops there instead.
constexpr int kMaxDepth = 16;

std::string QuotedScriptString(Cursor& cursor) {
  const std::string_view rest = cursor.Rest();
  const char quote = rest[0];
  std::string value;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == quote) {
      cursor.Advance(i + 1);
      return value;
    }
    if (rest[i] == '\\' && i + 1 < rest.size()) ++i;
    value += rest[i];
  }
  cursor.Fail("a closing quote");
}

ScriptArgument ParseArgument(Cursor& cursor) {
  const std::string_view rest = cursor.Rest();
  if (rest.starts_with('\'') || rest.starts_with('"')) {
    return {ScriptArgument::Kind::kText, QuotedScriptString(cursor)};
  }
  if (!rest.empty() && std::string_view("0123456789+-.").find(rest[0]) != std::string_view::npos) {
    const double number = cursor.Number("a number");
    const std::string_view token = rest.substr(0, rest.size() - cursor.Rest().size());
    const bool integral = token.find_first_of(".eE") == std::string_view::npos &&
                          number >= std::numeric_limits<std::int32_t>::min() &&
                          number <= std::numeric_limits<std::int32_t>::max();
    return {integral ? ScriptArgument::Kind::kInteger : ScriptArgument::Kind::kDouble, {}, number};
  }
  std::string name = cursor.Name("an argument: document, an element name, a string or a number");
  if (name == "document") return {ScriptArgument::Kind::kDocument, {}};
  return {ScriptArgument::Kind::kElement, std::move(name)};
}

ScriptCall ParseCall(Cursor& cursor) {
  ScriptCall call;
  call.object = cursor.Name("an object name");
  cursor.Expect(".", "'.' and a method name");
  call.method = cursor.Name("a method name");
  cursor.Expect("(", "'('");
  if (!cursor.Accept(")")) {
    do {
      call.arguments.push_back(ParseArgument(cursor));
    } while (cursor.Accept(","));
    cursor.Expect(")", "',' or ')'");
  }
  return call;
}

// `rule NAME` with a blank after "rule": an object named "rule" is still called.
bool IsRule(std::string_view statement) {
  Cursor probe(statement);
  return probe.Accept("rule") && probe.AtName();
}

void ExpectStatementEnd(Cursor& cursor) {
  cursor.Accept(";");
  cursor.ExpectEnd("the end of the statement");
}

}  // namespace

bool ScriptExecutor::Run(const refhost::ScriptEnvironment::Statement& statement) {
  return RunStatement(statement.text);
}

std::size_t ScriptExecutor::Note(std::string_view statement, std::string_view outcome) {
  // Statements of rules stand indented under the statement that ran the rule.
  const std::string indent(2 * (depth_ - 1), ' ');
  return scenario_.NoteChange("> " + indent + (depth_ == 1 ? "script " : "") + Quote(statement) +
                              " -> " + std::string(outcome));
}

bool ScriptExecutor::RunStatement(std::string_view statement) {
  ++depth_;
  struct Leave {
    int& depth;
    ~Leave() { --depth; }
  } leave{depth_};
  if (depth_ > kMaxDepth) {
    Note(statement, "not run: scripts nested more than " + std::to_string(kMaxDepth) + " deep");
    return false;
  }
  try {
    Cursor cursor(statement);
    if (IsRule(statement)) {
      cursor.Accept("rule");
      const std::string name = cursor.Name("a rule name");
      ExpectStatementEnd(cursor);
      return RunRule(name, statement);
    }
    cursor.Accept("call");
    const ScriptCall call = ParseCall(cursor);
    ExpectStatementEnd(cursor);
    return RunCall(call, statement);
  } catch (const ParseError& error) {
    Note(statement, "not run: expected " + error.expected() + ", found " +
                        (error.found().empty() ? "the end" : Quote(error.found())));
    return true;
  }
}

bool ScriptExecutor::RunRule(const std::string& name, std::string_view statement) {
  const std::string* body = scenario_.Rule(name);
  if (body == nullptr) {
    Note(statement, "not run: the scenario defines no rule " + name);
    return true;
  }
  const std::vector<std::string> statements = refhost::SplitStatements(*body);
  Note(statement, "rule " + name + ", " + std::to_string(statements.size()) + " statement(s)");
  bool allRan = true;
  for (const std::string& inner : statements) allRan = RunStatement(inner) && allRan;
  return allRan;
}

bool ScriptExecutor::RunCall(const ScriptCall& call, std::string_view statement) {
  refhost::Document* document = scenario_.callingDocument();
  refhost::Args args;
  for (const ScriptArgument& argument : call.arguments) {
    switch (argument.kind) {
      case ScriptArgument::Kind::kDocument:
        args.document(document);
        break;
      case ScriptArgument::Kind::kElement: {
        const std::optional<std::u16string> id = WideText(argument.text);
        refhost::Element* element =
            document != nullptr && id ? document->elementById(*id) : nullptr;
        if (element == nullptr) {
          Note(statement,
               "not run: no element " + argument.text + " in " + scenario_.NameOf(document));
          return false;
        }
        args.element(element);
        break;
      }
      case ScriptArgument::Kind::kText:
        args.text(argument.text);
        break;
      case ScriptArgument::Kind::kInteger:
        args.integer(static_cast<std::int32_t>(argument.number));
        break;
      case ScriptArgument::Kind::kDouble:
        args.real(argument.number);
        break;
    }
  }
  // Noted before the call, so the changes it makes stand under it.
  const std::size_t note = Note(statement, "");
  const CallOutcome outcome = CallLibrary(scenario_.finder(), call.object, call.method, args);
  scenario_.AmendNote(note, OutcomeText(outcome, call.object));
  if (outcome.fault) scenario_.NoteCrash(*outcome.fault);
  return outcome.objectFound && !outcome.exception && !outcome.fault;
}

}  // namespace loomsim
