// What the profile validator removes from a stored copy, node by node, and the in-memory
// store that stages settings documents.
#include <gtest/gtest.h>

#include "refhost/dom.h"
#include "settings/profile_validator.h"
#include "settings/temp_backing_store.h"

namespace {

using Loom::SmartPtr;

struct Case {
  const char* what;
  bool strict;
  const char* stored;
  const char* cleaned;
};

constexpr Case kCases[] = {
    {"live-only attributes of a childless node, exact names only", false,
     R"x(<box id="b" tabindex="2" xmlns="urn:x" onbeforeaccept="a()" oncommand="c()"
             onpopupshowing="p()" onwizardnext="n()" onCommand="k()" ontabindex="t" value="v"/>)x",
     R"x(<box id="b" onCommand="k()" ontabindex="t" value="v"/>)x"},
    {"the walk reaches grandchildren", false,
     R"x(<window onload="l()"><vbox><textbox id="t" oninput="i()" onfocus="f()" value="1"/></vbox></window>)x",
     R"x(<window><vbox><textbox id="t" value="1"/></vbox></window>)x"},
    {"adjacent separators and spacers go; other spellings stay", false,
     R"x(<vbox><separator/><separator/><spacer/><Separator/><spacerx/><label id="l"/></vbox>)x",
     R"x(<vbox><Separator/><spacerx/><label id="l"/></vbox>)x"},
    {"page, sheet and overlay attributes; the template tab by id", false,
     R"x(<w><propertypage id="p" selected="true" value="1"/>
          <propertysheet id="pro_tab_template" value="x" title="T"><tab id="in"/></propertysheet>
          <overlay id="o" overlaypath="a.xul"/><tabpanel id="pro_tab_template"><x/></tabpanel>
          <tabpanel id="pro_tab_templateX"/></w>)x",
     R"x(<w><propertypage id="p" value="1"/><propertysheet id="pro_tab_template"><tab id="in"/></propertysheet>
          <overlay id="o"/><tabpanel id="pro_tab_templateX"/></w>)x"},
    {"lax: only the nick name is blanked, by whole id", false,
     R"x(<w><textbox id="ePTKWJobAuthentication_NickName" value="ann"/>
          <textbox id="ePTKWJobAuthentication_NickNameX" value="keep"/>
          <textbox id="ePTKWJobPrintType_Private_True_PrivatePassword" value="1234"/>
          <textbox value="no id"/></w>)x",
     R"x(<w><textbox id="ePTKWJobAuthentication_NickName"/>
          <textbox id="ePTKWJobAuthentication_NickNameX" value="keep"/>
          <textbox id="ePTKWJobPrintType_Private_True_PrivatePassword" value="1234"/>
          <textbox value="no id"/></w>)x"},
    {"strict: the private fields too", true,
     R"x(<w><textbox id="ePTKWJobAuthentication_NickName" value="ann"/>
          <textbox id="ePTKWJobPrintType_Private_True_PrivatePassword" value="1234"/>
          <textbox id="tbx_DptCode" value="77"/>
          <textbox id="ePTKWJobOutputQualityType_Advanced_DestinationProfile" value="sRGB"/>
          <textbox id="tbx_DptCodes" value="keep"/></w>)x",
     R"x(<w><textbox id="ePTKWJobAuthentication_NickName"/>
          <textbox id="ePTKWJobPrintType_Private_True_PrivatePassword"/>
          <textbox id="tbx_DptCode"/>
          <textbox id="ePTKWJobOutputQualityType_Advanced_DestinationProfile"/>
          <textbox id="tbx_DptCodes" value="keep"/></w>)x"},
};

TEST(ProfileValidatorTest, CleansStoredCopies) {
  for (const Case& c : kCases) {
    const SmartPtr<Loom::Dom::Node> tree = refhost::ParseXml(c.stored);
    ASSERT_TRUE(tree) << c.what;
    SmartPtr<ProfileValidator> validator(new ProfileValidator(c.strict));
    validator->validateTree(tree.get());
    EXPECT_EQ(refhost::WriteXml(*tree), refhost::WriteXml(*refhost::ParseXml(c.cleaned))) << c.what;
  }
}

TEST(TempBackingStoreTest, HoldsTheLastDocumentWritten) {
  SmartPtr<TempBackingStoreIO> store(new TempBackingStoreIO());
  const SmartPtr<Loom::Dom::Document> empty = store->read();
  ASSERT_TRUE(empty);
  EXPECT_FALSE(empty->getRoot()) << "the document made with the store is empty";
  EXPECT_EQ(store->read(), empty);
  const auto first = Loom::Dom::Document::create(Loom::FileStore::inMemory());
  const auto second = Loom::Dom::Document::create(Loom::FileStore::inMemory());
  EXPECT_TRUE(store->write(first.get()));
  EXPECT_TRUE(store->write(second.get()));
  EXPECT_FALSE(store->write(nullptr));
  EXPECT_EQ(store->read(), second);
}

}  // namespace
