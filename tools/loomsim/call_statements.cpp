// Calls into the library, and the expectations on what the last call returned and on the
// library's objects and references.
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "refhost/accounting.h"
#include "refhost/args.h"
#include "tools/loomsim/call_watch.h"
#include "tools/loomsim/element_ref.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/integer_range.h"
#include "tools/loomsim/library_call.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

struct CallArgument {
  enum class Kind {
    kDocument,  // `document` or a document's name
    kElement,   // #id or NAME#id
    kText,
    kInteger,  // int(N): inline
    kIntegerRef,
    kFloatRef,
    kDouble,
    kNullDocument,
    kNullElement,
    kRaw,  // kind(K)
  };
  Kind kind;
  std::string echo{};
  std::string name{};  // the document's name
  ElementRef element{};
  std::string text{};
  std::int64_t integer = 0;
  double number = 0;
};

constexpr std::string_view kArgument =
    "an argument: document, a document name, #id, NAME#id, \"text\", int(N), intref(N), "
    "floatref(X), double(X), nulldoc, nullelem or kind(K)";

// The number inside NAME( ... ), with the text as written for the echo.
CallArgument Wrapped(Cursor& cursor, const std::string& wrapper, CallArgument::Kind kind) {
  CallArgument argument{kind, {}};
  const std::string_view before = cursor.Rest();
  if (kind == CallArgument::Kind::kFloatRef || kind == CallArgument::Kind::kDouble) {
    argument.number = cursor.Number("a number");
  } else if (kind == CallArgument::Kind::kRaw) {
    argument.integer =
        IntegerInRange(cursor, 0, std::numeric_limits<std::uint32_t>::max(), "an argument kind");
  } else {
    argument.integer = IntegerInRange(cursor, std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max(), "an integer");
  }
  const std::string_view written = before.substr(0, before.size() - cursor.Rest().size());
  cursor.Expect(")", "')'");
  argument.echo = wrapper + "(" + std::string(written) + ")";
  return argument;
}

struct Wrapper {
  std::string_view name;
  CallArgument::Kind kind;
};
constexpr Wrapper kWrappers[] = {
    {"int", CallArgument::Kind::kInteger},       {"intref", CallArgument::Kind::kIntegerRef},
    {"floatref", CallArgument::Kind::kFloatRef}, {"double", CallArgument::Kind::kDouble},
    {"kind", CallArgument::Kind::kRaw},
};

CallArgument ParseArgument(Cursor& cursor) {
  if (cursor.AtText()) {
    std::string text = cursor.Text("a quoted text");
    return {CallArgument::Kind::kText, Quote(text), {}, {}, std::move(text)};
  }
  if (cursor.Rest().starts_with('#')) {
    ElementRef element = ParseElementRef(cursor);
    return {CallArgument::Kind::kElement, ElementRefText(element), {}, element};
  }
  const std::string name = cursor.Name(kArgument);
  if (cursor.Accept("(")) {
    for (const Wrapper& wrapper : kWrappers) {
      if (wrapper.name == name) return Wrapped(cursor, name, wrapper.kind);
    }
    throw ParseError(std::string(kArgument), name + "(");
  }
  if (name == "nulldoc") return {CallArgument::Kind::kNullDocument, name};
  if (name == "nullelem") return {CallArgument::Kind::kNullElement, name};
  if (cursor.Rest().starts_with('#')) {
    cursor.Accept("#");
    ElementRef element{ElementRef::Kind::kById, name, cursor.Name("an element id", ":")};
    return {CallArgument::Kind::kElement, ElementRefText(element), {}, element};
  }
  return {CallArgument::Kind::kDocument, name, name};
}

// Builds the records; false, with the statement failed, when a document or element named
// is not there.
bool BuildArgs(Scenario& scenario, const std::vector<CallArgument>& arguments,
               refhost::Args& args) {
  refhost::Document* calling = nullptr;
  for (const CallArgument& argument : arguments) {
    switch (argument.kind) {
      case CallArgument::Kind::kDocument: {
        refhost::Document* document = scenario.FindDocument(argument.name);
        if (document == nullptr) {
          scenario.Fail("no document " + argument.name + " to pass");
          return false;
        }
        if (calling == nullptr) calling = document;
        args.document(document);
        break;
      }
      case CallArgument::Kind::kElement: {
        std::string missing;
        refhost::Element* element = ResolveElement(scenario, argument.element, missing);
        if (element == nullptr) {
          scenario.Fail(missing + " to pass");
          return false;
        }
        if (calling == nullptr) calling = element->document();
        args.element(element);
        break;
      }
      case CallArgument::Kind::kText:
        args.text(argument.text);
        break;
      case CallArgument::Kind::kInteger:
        args.integer(static_cast<std::int32_t>(argument.integer));
        break;
      case CallArgument::Kind::kIntegerRef:
        args.integerRef(static_cast<std::int32_t>(argument.integer));
        break;
      case CallArgument::Kind::kFloatRef:
        args.floatRef(static_cast<float>(argument.number));
        break;
      case CallArgument::Kind::kDouble:
        args.real(argument.number);
        break;
      case CallArgument::Kind::kNullDocument:
        args.document(nullptr);
        break;
      case CallArgument::Kind::kNullElement:
        args.element(nullptr);
        break;
      case CallArgument::Kind::kRaw:
        args.raw(static_cast<std::uint32_t>(argument.integer));
        break;
    }
  }
  scenario.setCallingDocument(calling);
  return true;
}

void RunCall(Scenario& scenario, const std::string& object, const std::string& method,
             const std::vector<CallArgument>& arguments) {
  LastCall& last = scenario.lastCall();
  last = LastCall{};
  refhost::Args args;
  if (!BuildArgs(scenario, arguments, args)) return;
  last.made = true;
  const long before = refhost::heldReferences();
  CallOutcome outcome;
  std::vector<std::string> changes;
  {
    CallWatch watch(scenario);
    outcome = CallLibrary(scenario.finder(), object, method, args);
    changes = watch.Finish();
  }
  const long held = refhost::heldReferences() - before;
  scenario.setCallingDocument(nullptr);
  last.result = outcome.result;
  last.exception = outcome.exception;
  last.unmatched = outcome.unmatched;

  Report& report = scenario.report();
  report.Detail("-> " + OutcomeText(outcome, object));
  if (outcome.unmatched) report.Detail("? " + *outcome.unmatched);
  for (const std::string& change : changes) report.Detail(change);
  if (const std::optional<std::string> fault = outcome.fault ? outcome.fault : scenario.crash()) {
    throw SetupError{"the library crashed: " + *fault + "; what follows could not be trusted"};
  }
  if (held == 0) {
    report.PassSilently();
  } else {
    scenario.Fail("expected no reference left held after " + scenario.echo() + ", got " +
                  std::to_string(held) + " held");
  }
}

Parsed ParseCall(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::string object = cursor.Name("an object name");
  if (!cursor.Accept(".")) {
    return {"call " + object, [object](Scenario& scenario) {
              LastCall& last = scenario.lastCall();
              last = LastCall{};
              last.made = true;
              last.result = scenario.finder()(object.c_str()) != nullptr;
              scenario.report().Detail(last.result ? "-> present" : "-> absent");
            }};
  }
  const std::string method = cursor.Name("a method name");
  cursor.Expect("(", "'(' and the arguments");
  std::vector<CallArgument> arguments;
  if (!cursor.Accept(")")) {
    do {
      arguments.push_back(ParseArgument(cursor));
    } while (cursor.Accept(","));
    cursor.Expect(")", "',' or ')'");
  }
  std::string echo = "call " + object + "." + method + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    echo += (i == 0 ? "" : ", ") + arguments[i].echo;
  }
  return {echo + ")", [object, method, arguments](Scenario& scenario) {
            RunCall(scenario, object, method, arguments);
          }};
}

std::string ResultText(const LastCall& last) {
  std::string text = last.result ? "true" : "false";
  if (last.exception) text += " (exception: " + *last.exception + ")";
  return text;
}

Parsed ParseResultExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const bool expected = cursor.Accept("true");
  if (!expected && !cursor.Accept("false")) cursor.Fail("true or false");
  return {std::string("expect result ") + (expected ? "true" : "false"),
          [expected](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              scenario.Check(last->result == expected, ResultText(*last));
            }
          }};
}

Parsed ParseObjectExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::string name = cursor.Text("the quoted name of an object");
  const bool present = cursor.Accept("present");
  if (!present && !cursor.Accept("absent")) cursor.Fail("absent or present");
  return {"expect object " + Quote(name) + (present ? " present" : " absent"),
          [name, present](Scenario& scenario) {
            const bool found = scenario.finder()(name.c_str()) != nullptr;
            scenario.Check(found == present, found ? "present" : "absent");
          }};
}

Parsed ParseRefsExpectation(StatementInput& input) {
  input.cursor().Expect("balanced", "balanced");
  return {"expect refs balanced", [](Scenario& scenario) {
            const long held = refhost::heldReferences() - scenario.referenceBaseline();
            scenario.Check(held == 0, std::to_string(held) + " held");
          }};
}

// A text the last call may have left (its exception's message, the reason it matched
// nothing), and how a check names its absence.
struct CallText {
  std::optional<std::string> LastCall::*text;
  std::string_view word;    // "exception", "reason"
  std::string_view quoted;  // what the statement's quoted text is
};
constexpr CallText kException{&LastCall::exception, "exception",
                              "the quoted message of the exception"};
constexpr CallText kReason{&LastCall::unmatched, "reason",
                           "the quoted reason the call matched nothing"};

// expect exception "message", expect reason "text": the last call left exactly that.
Parsed TextExpectation(StatementInput& input, const CallText& kind) {
  const std::string expected = input.cursor().Text(kind.quoted);
  return {"expect " + std::string(kind.word) + " " + Quote(expected),
          [expected, kind](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              const std::optional<std::string>& got = last->*kind.text;
              scenario.Check(got == expected, got ? Quote(*got) : "no " + std::string(kind.word));
            }
          }};
}

// expect no exception, expect no reason: the last call left none.
Parsed NoTextExpectation(const CallText& kind) {
  return {"expect no " + std::string(kind.word), [kind](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              const std::optional<std::string>& got = last->*kind.text;
              scenario.Check(!got, got ? Quote(*got) : "");
            }
          }};
}

Parsed ParseExceptionExpectation(StatementInput& input) {
  return TextExpectation(input, kException);
}
Parsed ParseReasonExpectation(StatementInput& input) { return TextExpectation(input, kReason); }
Parsed ParseNoExceptionExpectation(StatementInput&) { return NoTextExpectation(kException); }
Parsed ParseNoReasonExpectation(StatementInput&) { return NoTextExpectation(kReason); }

constexpr StatementForm kForms[] = {
    {"call", "call OBJECT.METHOD(ARG, ...)\ncall OBJECT", ParseCall},
    {"expect result", "expect result true|false", ParseResultExpectation},
    {"expect object", "expect object \"NAME\" absent|present", ParseObjectExpectation},
    {"expect refs", "expect refs balanced", ParseRefsExpectation},
    {"expect exception", "expect exception \"message\"", ParseExceptionExpectation},
    {"expect no exception", "expect no exception", ParseNoExceptionExpectation},
    {"expect reason", "expect reason \"text\"", ParseReasonExpectation},
    {"expect no reason", "expect no reason", ParseNoReasonExpectation},
};

}  // namespace

extern const Facility kCallFacility{"calls", kForms, nullptr};

}  // namespace loomsim
