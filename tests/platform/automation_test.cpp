#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "platform/automation/dispatch_driver.h"
#include "platform/automation/process.h"
#include "platform/automation/safe_array.h"

namespace loom {
namespace {

// Counts its living objects.
class Counted : public IDispatch {
 public:
  Counted() { ++alive; }
  VARIANT Invoke(std::string_view, InvokeKind, std::span<const VARIANT> arguments) override {
    return VARIANT::I4(static_cast<std::int32_t>(arguments.size()));
  }
  static inline int alive = 0;

 private:
  ~Counted() override { --alive; }
};

TEST(VariantTest, TextsOfEveryLengthSurviveCopiesAndMoves) {
  for (const std::size_t length : {0u, 1u, 12u, 13u, 14u, 254u, 255u, 256u, 100000u}) {
    const std::string text(length, 'x');
    VARIANT copy;
    {
      const VARIANT value{std::string_view(text)};
      copy = value;
      copy = VARIANT(copy);
    }
    EXPECT_EQ(text, copy.Text());
    const VARIANT moved = std::move(copy);
    EXPECT_EQ(text, moved.Text());
    EXPECT_TRUE(copy.IsEmpty());
  }
}

TEST(VariantTest, AValueIsReadAsItsOwnKindOnly) {
  EXPECT_EQ(-4108, VARIANT::I2(-4108).Integer());
  EXPECT_EQ(1 << 30, VARIANT::I4(1 << 30).Integer());
  EXPECT_EQ(-95.25, VARIANT::R8(-95.25).Real());
  EXPECT_EQ(7.0, VARIANT::I2(7).Real());
  EXPECT_TRUE(VARIANT::Bool(true).Boolean());
  EXPECT_TRUE(VARIANT::Missing().IsMissing());
  EXPECT_THROW(VARIANT("1").Integer(), AutomationError);
  EXPECT_THROW(VARIANT::I2(1).Text(), AutomationError);
  EXPECT_THROW(VARIANT().Real(), AutomationError);
  EXPECT_THROW(VARIANT().Object(), AutomationError);
  EXPECT_THROW(VARIANT("1").Array(), AutomationError);
}

TEST(VariantTest, ObjectsLiveAsLongAsWhatRefersToThem) {
  {
    VARIANT value(new Counted);
    VARIANT copy = value;
    value = VARIANT();
    EXPECT_EQ(1, Counted::alive);
    COleDispatchDriver driver(copy.Object());
    copy = VARIANT();
    EXPECT_EQ(1, Counted::alive);
    COleDispatchDriver other = driver;
    driver.DetachDispatch();
    EXPECT_EQ(1, Counted::alive);
  }
  EXPECT_EQ(0, Counted::alive);
}

TEST(SafeArrayTest, ALargeTableHoldsWhatASmallOneHolds) {
  COleSafeArray table;
  table.Create(VT_VARIANT, std::array{3000u, 300u});
  const std::string longer(100, 'x');
  for (std::int32_t row = 0; row < 3000; ++row) {
    const std::span<VARIANT> cells = table.Row(row);
    cells[0] = VARIANT::I4(row);
    cells[299] = VARIANT(std::string_view(longer));
  }
  const VARIANT others[] = {VARIANT::R8(-0.5), VARIANT::Bool(true), VARIANT::I2(-7), VARIANT("")};
  std::ranges::copy(others, table.Row(7).subspan(10).begin());
  COleSafeArray copy = table;
  copy.Row(8)[1] = VARIANT("b");
  table.Row(8)[1] = VARIANT("a");
  EXPECT_EQ("a", std::as_const(table).Row(8)[1].Text());
  EXPECT_EQ("b", std::as_const(copy).Row(8)[1].Text());
  for (const COleSafeArray* const array : {&table, &copy}) {
    const std::span<const VARIANT> row = array->Row(7);
    EXPECT_EQ(-0.5, row[10].Real());
    EXPECT_TRUE(row[11].Boolean());
    EXPECT_EQ(-7, row[12].Integer());
    EXPECT_EQ("", row[13].Text());
    EXPECT_TRUE(row[14].IsEmpty());
    EXPECT_EQ(2999, array->Row(2999)[0].Integer());
    EXPECT_EQ(longer, array->Row(1500)[299].Text());
  }
  EXPECT_THROW(table.Row(3000), AutomationError);
}

TEST(SafeArrayTest, RowsLieWithinTheBounds) {
  COleSafeArray array;
  array.Create(VT_VARIANT, std::array{2u, 3u});
  EXPECT_EQ(2u, array.GetDim());
  EXPECT_EQ(1, array.GetUBound(1));
  EXPECT_EQ(2, array.GetUBound(2));
  array.Row(1)[2] = VARIANT("last");
  COleSafeArray copy = array;
  copy.Row(1)[2] = VARIANT("other");
  EXPECT_EQ("last", array.Row(1)[2].Text());
  EXPECT_TRUE(array.Row(0)[0].IsEmpty());
  for (const std::int32_t outside : {-1, 2}) EXPECT_THROW(array.Row(outside), AutomationError);
  EXPECT_THROW(array.GetUBound(3), AutomationError);
  EXPECT_THROW(array.Create(VT_I4, std::array{1u}), AutomationError);
  array.Destroy();
  EXPECT_EQ(0u, array.GetDim());
}

TEST(AutomationClassTest, AClassIsKnownWhileItIsRegistered) {
  CLSID found{};
  EXPECT_FALSE(CLSIDFromProgID("Test.Class", found));
  {
    const RegisteredClass first({"Test.Class", {1, 2}, [] { return ComPtr<IUnknown>(new Counted); }, {}});
    EXPECT_TRUE(CLSIDFromProgID("Test.Class", found));
    EXPECT_EQ((CLSID{1, 2}), found);
    EXPECT_FALSE(GetActiveObject(found));
    COleDispatchDriver driver;
    EXPECT_TRUE(driver.CreateDispatch("Test.Class"));
    EXPECT_EQ(1, Counted::alive);
  }
  EXPECT_EQ(0, Counted::alive);
  EXPECT_FALSE(CLSIDFromProgID("Test.Class", found));
  EXPECT_THROW(CreateInstance(found), AutomationError);
  COleDispatchDriver driver;
  EXPECT_FALSE(driver.CreateDispatch("Test.Class"));
}

std::vector<ProcessEntry> Processes() {
  std::vector<ProcessEntry> entries;
  ProcessSnapshot snapshot;
  ProcessEntry entry;
  for (bool more = snapshot.First(entry); more; more = snapshot.Next(entry)) entries.push_back(entry);
  return entries;
}

bool Lists(std::uint32_t id) {
  for (const ProcessEntry& entry : Processes()) {
    if (entry.id == id) return true;
  }
  return false;
}

TEST(ProcessTest, AProcessOfTheSystemIsListedAndEnded) {
  EXPECT_TRUE(Lists(static_cast<std::uint32_t>(getpid())));
  const pid_t child = fork();
  if (child == 0) {
    for (;;) pause();
  }
  const auto id = static_cast<std::uint32_t>(child);
  EXPECT_TRUE(Lists(id));
  ProcessHandle process = ProcessHandle::OpenForTermination(id);
  ASSERT_TRUE(process.IsOpen());
  EXPECT_TRUE(process.Terminate(0));
  int status = 0;
  ASSERT_EQ(child, waitpid(child, &status, 0));
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(Lists(id));
  EXPECT_FALSE(process.Terminate(0));
  EXPECT_FALSE(ProcessHandle::OpenForTermination(id).IsOpen());
}

TEST(ProcessTest, AServerOfThisProcessIsListedAndEnded) {
  int exit_code = -1;
  std::unique_ptr<LocalProcess> server;
  server = std::make_unique<LocalProcess>("SERVER.EXE", [&](int code) {
    exit_code = code;
    server.reset();
  });
  const std::uint32_t id = server->id();
  ASSERT_TRUE(Lists(id));
  ProcessHandle process = ProcessHandle::OpenForTermination(id);
  EXPECT_TRUE(process.Terminate(3));
  EXPECT_EQ(3, exit_code);
  EXPECT_FALSE(Lists(id));
  EXPECT_FALSE(process.Terminate(3));
}

}  // namespace
}  // namespace loom
