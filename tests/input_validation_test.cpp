// What a scenario cannot see of the nick-name check's message box (its owner, caption and
// style), and the host's clock on its own.
#include <gtest/gtest.h>

#include <ctime>

#include "host/xul.h"
#include "refhost/local_clock.h"
#include "refhost/os_simulation.h"
#include "support/sheet_test.h"

namespace {

class NicknameMessageTest : public testing_support::SheetTest {
 protected:
  NicknameMessageTest() : SheetTest(R"xul(<window><textbox id="nick" value="a:b"/></window>)xul") {
    refhost::resetOsSimulation();
  }
  ~NicknameMessageTest() override { refhost::resetOsSimulation(); }
};

TEST_F(NicknameMessageTest, IsOwnedByTheSheetWithCaptionErrorAndTheExclamationIcon) {
  sheet_.window().setString(u"$IDS_ERRORMES_NICKNAME_SPECIALCHAR;", u"No special characters");
  EXPECT_TRUE(Call("inputValidation", "VerifyNickname", Doc().element(Elem(u"nick").get())));
  ASSERT_EQ(refhost::messageBoxesShown().size(), 1u);
  const refhost::MessageBoxRecord& box = refhost::messageBoxesShown().front();
  EXPECT_EQ(box.owner, Loom::XUL::getXULRootHWND(page_.get()));
  EXPECT_NE(box.owner, nullptr);
  EXPECT_EQ(box.text, u"No special characters");
  EXPECT_EQ(box.caption, u"Error");
  EXPECT_EQ(box.style, 48u);
  EXPECT_EQ(Value(u"nick"), "ab");
}

TEST(HostClockTest, ReadsTheRealLocalTimeUntilFixed) {
  refhost::resetOsSimulation();
  const std::tm local = refhost::LocalCalendarTime(std::time(nullptr));
  EXPECT_EQ(Loom::OS::localTime().year, local.tm_year + 1900);
  refhost::fixClock({2011, 5, 3, 17, 30, 45});
  EXPECT_EQ(Loom::OS::localTime().second, 45);
  refhost::useRealClock();
  EXPECT_EQ(Loom::OS::localTime().year, local.tm_year + 1900);
}

}  // namespace
