// How the host's element and document calls scale with the page: a page whose menu list
// and radio group each hold N items. Calls that touch one element should not grow with
// N; calls that walk a list, load or save the page grow linearly. Each reports its
// fitted order. Between 10,000 and 100,000 items the page (tens of megabytes) outgrows
// the processor's caches: a walk's time per item then grows a few times over, although
// its work per item does not, and the fit of the four sizes may report more than N.
#include <benchmark/benchmark.h>

#include <string>

#include "core/spindleui.h"
#include "host/codes.h"
#include "host/settings.h"
#include "refhost/args.h"
#include "refhost/document.h"
#include "refhost/sheet.h"

namespace {

using Loom::XUL::xXULElem;

constexpr std::int64_t kSmallest = 100;
constexpr std::int64_t kLargest = 100'000;

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(kSmallest, kLargest)->Complexity();
}

Loom::wstring Wide(const std::string& text) { return Loom::wstring(text.begin(), text.end()); }

// <menulist id="list"><menupopup id="popup"> of N menuitems (id "i<k>", value "v<k>"),
// then <radiogroup id="group"> of N radios (value "v<k>"), nothing selected.
std::string PageXml(std::size_t items) {
  std::string xml =
      "<window id=\"w\"><vbox id=\"vars\"/><menulist id=\"list\"><menupopup id=\"popup\">";
  for (std::size_t k = 0; k < items; ++k) {
    const std::string n = std::to_string(k);
    xml += "<menuitem id=\"i" + n + "\" value=\"v" + n + "\" label=\"Item " + n + "\"/>";
  }
  xml += "</menupopup></menulist><radiogroup id=\"group\">";
  for (std::size_t k = 0; k < items; ++k) xml += "<radio value=\"v" + std::to_string(k) + "\"/>";
  return xml + "</radiogroup></window>";
}

class Page {
 public:
  explicit Page(benchmark::State& state)
      : items_(static_cast<std::size_t>(state.range(0))),
        doc_(sheet_.loadDocument(PageXml(items_), "bench.xul")),
        middle_(Wide(std::to_string(items_ / 2))) {
    state.SetComplexityN(state.range(0));
  }
  refhost::Document& doc() { return *doc_; }
  refhost::Sheet& sheet() { return sheet_; }
  xXULElem& byId(const char16_t* id) { return *doc_->elementById(id); }
  xXULElem& list() { return byId(u"list"); }
  xXULElem& popup() { return byId(u"popup"); }
  xXULElem& group() { return byId(u"group"); }
  xXULElem& middleItem() { return *doc_->elementById(middleId()); }
  Loom::wstring middleId() const { return u"i" + middle_; }
  Loom::wstring middleValue() const { return u"v" + middle_; }
  int middleIndex() const { return static_cast<int>(items_ / 2); }

 private:
  std::size_t items_;
  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_;
  Loom::wstring middle_;
};

void BM_GetElementById(benchmark::State& state) {
  Page page(state);
  const Loom::wstring id = page.middleId();
  for (auto _ : state) benchmark::DoNotOptimize(page.doc().getElementById(id));
}
BENCHMARK(BM_GetElementById)->Apply(Sizes);

void BM_FindAndTakeElement(benchmark::State& state) {
  Page page(state);
  const Loom::wstring id = page.middleId();
  for (auto _ : state) {
    page.doc().findElement(id, Loom::kSearchWholeDocument);
    benchmark::DoNotOptimize(page.doc().takeFoundElement(Loom::kSearchWholeDocument));
  }
}
BENCHMARK(BM_FindAndTakeElement)->Apply(Sizes);

void BM_GetAttr(benchmark::State& state) {
  Page page(state);
  xXULElem& item = page.middleItem();
  for (auto _ : state) benchmark::DoNotOptimize(item.getAttr(Loom::kAttrValue));
}
BENCHMARK(BM_GetAttr)->Apply(Sizes);

// Two values in turn, so that every call changes the attribute.
void BM_SetAttr(benchmark::State& state) {
  Page page(state);
  xXULElem& item = page.middleItem();
  const Loom::wstring values[] = {u"a", u"b"};
  std::size_t turn = 0;
  for (auto _ : state) item.setAttr(Loom::kAttrValue, values[++turn % 2]);
}
BENCHMARK(BM_SetAttr)->Apply(Sizes);

void BM_GetAttribute(benchmark::State& state) {
  Page page(state);
  xXULElem& item = page.middleItem();
  const Loom::wstring name = u"label";
  for (auto _ : state) benchmark::DoNotOptimize(item.getAttribute(name));
}
BENCHMARK(BM_GetAttribute)->Apply(Sizes);

// Changing an id also moves the element in the document's id index.
void BM_SetAttributeId(benchmark::State& state) {
  Page page(state);
  xXULElem& item = page.middleItem();
  const Loom::wstring name = u"id";
  const Loom::wstring values[] = {u"a", u"b"};
  std::size_t turn = 0;
  for (auto _ : state) item.setAttribute(name, values[++turn % 2]);
}
BENCHMARK(BM_SetAttributeId)->Apply(Sizes);

void BM_GetChildAt(benchmark::State& state) {
  Page page(state);
  xXULElem& popup = page.popup();
  const int index = page.middleIndex();
  for (auto _ : state) benchmark::DoNotOptimize(popup.getChildAt(index));
}
BENCHMARK(BM_GetChildAt)->Apply(Sizes);

void BM_GetNumChildren(benchmark::State& state) {
  Page page(state);
  xXULElem& popup = page.popup();
  for (auto _ : state) benchmark::DoNotOptimize(popup.getNumChildren());
}
BENCHMARK(BM_GetNumChildren)->Apply(Sizes);

// A new item appended to the list and removed again: the last child.
void BM_AppendRemoveLastChild(benchmark::State& state) {
  Page page(state);
  xXULElem& popup = page.popup();
  Loom::SmartPtr<xXULElem> item = page.doc().createElement(Loom::kElemMenuItem);
  item->setAttribute(u"id", u"extra");
  for (auto _ : state) {
    popup.appendChild(item.get());
    popup.removeChild(item.get());
  }
}
BENCHMARK(BM_AppendRemoveLastChild)->Apply(Sizes);

// The first item taken out and appended again, so the list turns round.
void BM_RemoveFirstChildAppend(benchmark::State& state) {
  Page page(state);
  xXULElem& popup = page.popup();
  for (auto _ : state) {
    Loom::SmartPtr<xXULElem> first = popup.getChildAt(0);
    popup.removeChild(first.get());
    popup.appendChild(first.get());
  }
}
BENCHMARK(BM_RemoveFirstChildAppend)->Apply(Sizes);

void BM_GetChildrenOfType(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  Loom::XUL::ElemList items;
  for (auto _ : state) benchmark::DoNotOptimize(list.getChildrenOfType(Loom::kElemMenuItem, items));
}
BENCHMARK(BM_GetChildrenOfType)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_GetValfromMenulist(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  list.selMenulistWithVal(page.middleValue());
  for (auto _ : state) benchmark::DoNotOptimize(list.getValfromMenulist());
}
BENCHMARK(BM_GetValfromMenulist)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_SelMenulistWithVal(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  const Loom::wstring value = page.middleValue();
  for (auto _ : state) benchmark::DoNotOptimize(list.selMenulistWithVal(value));
}
BENCHMARK(BM_SelMenulistWithVal)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_HideMenuItemByVal(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  const Loom::wstring value = page.middleValue();
  for (auto _ : state) benchmark::DoNotOptimize(list.hideMenuItemByVal(value));
}
BENCHMARK(BM_HideMenuItemByVal)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_GetSelectedIndex(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  list.setSelectedIndex(page.middleIndex());
  for (auto _ : state) benchmark::DoNotOptimize(list.getSelectedIndex());
}
BENCHMARK(BM_GetSelectedIndex)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_SetSelectedIndex(benchmark::State& state) {
  Page page(state);
  xXULElem& list = page.list();
  const int index = page.middleIndex();
  for (auto _ : state) benchmark::DoNotOptimize(list.setSelectedIndex(index));
}
BENCHMARK(BM_SetSelectedIndex)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_GetValFromRadioGroup(benchmark::State& state) {
  Page page(state);
  xXULElem& group = page.group();
  group.setRadioGroupWithVal(page.middleValue());
  for (auto _ : state) benchmark::DoNotOptimize(group.getValFromRadioGroup());
}
BENCHMARK(BM_GetValFromRadioGroup)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_SetRadioGroupWithVal(benchmark::State& state) {
  Page page(state);
  xXULElem& group = page.group();
  const Loom::wstring value = page.middleValue();
  for (auto _ : state) benchmark::DoNotOptimize(group.setRadioGroupWithVal(value));
}
BENCHMARK(BM_SetRadioGroupWithVal)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// One item changed, then the whole page put back.
void BM_ReinitialiseDefaults(benchmark::State& state) {
  Page page(state);
  xXULElem& item = page.middleItem();
  for (auto _ : state) {
    item.setAttr(Loom::kAttrValue, u"changed");
    page.doc().reinitialiseDefaults();
  }
}
BENCHMARK(BM_ReinitialiseDefaults)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void BM_LoadPage(benchmark::State& state) {
  const std::string xml = PageXml(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(refhost::Document::FromXml(xml, u"bench.xul", {}));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LoadPage)->Apply(Sizes)->Unit(benchmark::kMillisecond);

void BM_SavePage(benchmark::State& state) {
  Page page(state);
  for (auto _ : state) benchmark::DoNotOptimize(page.doc().toXml());
}
BENCHMARK(BM_SavePage)->Apply(Sizes)->Unit(benchmark::kMillisecond);

// The list's N items replaced by the N entries of a settings branch.
void BM_GenMenuListFromPersistentItem(benchmark::State& state) {
  Page page(state);
  Loom::Services::PersistentSettings branch;
  for (std::int64_t k = 0; k < state.range(0); ++k) {
    branch[Loom::string("k" + std::to_string(k))]["label"] = "Entry";
  }
  xXULElem& list = page.list();
  for (auto _ : state) {
    benchmark::DoNotOptimize(page.doc().genMenuListFromPersistentItem(&list, branch));
  }
}
BENCHMARK(BM_GenMenuListFromPersistentItem)->Apply(Sizes)->Unit(benchmark::kMillisecond);

// Through the library: profiles.selectProfile reads the list's selected value (none is
// selected, so it answers false without touching any file).
void BM_SelectProfileThroughDispatch(benchmark::State& state) {
  Page page(state);
  refhost::Args args;
  args.document(&page.doc()).element(&page.list());
  xClass* profiles = findObject("profiles");
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        profiles->call("selectProfile", args.count(), args.records(), nullptr));
  }
}
BENCHMARK(BM_SelectProfileThroughDispatch)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// The library's exported copyMenulistItems: the target's items all taken out (last
// first), then the source's items copied in.
void BM_CopyMenulistItems(benchmark::State& state) {
  Page target(state);
  Page source(state);
  for (auto _ : state) {
    copyMenulistItems(u"popup", u"popup", Loom::SmartPtr<Loom::XUL::xXULDoc>(&target.doc()),
                      Loom::SmartPtr<Loom::XUL::xXULDoc>(&source.doc()));
  }
}
BENCHMARK(BM_CopyMenulistItems)->Apply(Sizes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
