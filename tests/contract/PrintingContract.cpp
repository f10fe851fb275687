#include <optional>
#include <vector>

#include "automation/CaseMapping.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr DWORD kNames = kPrinterEnumName;

class PrintingContract : public Contract {
 protected:
  DWORD Ask(LPCWSTR name, BYTE* buffer, DWORD size, DWORD flags = kNames, DWORD level = 2) {
    needed_ = returned_ = 0xDEAD;
    return Code(printers_.EnumPrintersW(flags, name, level, buffer, size, &needed_, &returned_));
  }

  // The list in a buffer of just its size; the records in it are those of `table_`.
  DWORD List(LPCWSTR name) {
    const DWORD code = Ask(name, nullptr, 0);
    EXPECT_EQ(returned_, 0u);
    if (code != kErrorInsufficientBuffer) return code;
    table_.resize(needed_ / sizeof(PRINTER_INFO_2W) + 1);
    return Ask(name, reinterpret_cast<BYTE*>(table_.data()), needed_);
  }

  const PRINTER_INFO_2W* Find(const Text& printer) {
    for (DWORD index = 0; index < returned_; ++index) {
      if (EqualNoCase(table_[index].pPrinterName, printer)) return &table_[index];
    }
    return nullptr;
  }

  bool IsInBlock(const void* place) const {
    const auto address = reinterpret_cast<std::uintptr_t>(place);
    const auto begin = reinterpret_cast<std::uintptr_t>(table_.data());
    return address >= begin + returned_ * sizeof(PRINTER_INFO_2W) && address < begin + needed_;
  }

  Printing& printers_ = platform_.printers;
  std::vector<PRINTER_INFO_2W> table_;
  DWORD needed_ = 0;
  DWORD returned_ = 0;
};

TEST_F(PrintingContract, ListsEachPrinterUnderItsServersNameWhereOneIsNamed) {
  const Text own = u"\\\\" + OwnName();
  for (const char16_t* const name : {u"Contract printer", u"Contract plotter"}) {
    Text printer = name, comment = u"Of the contract, ", location = u"here";
    PRINTER_INFO_2W record{};
    record.pPrinterName = printer.data();
    record.pComment = comment.data();
    record.pLocation = location.data();
    record.Priority = 7;
    record.StartTime = 60;
    record.UntilTime = 1439;
    world_->AddPrinter(record);
  }
  for (const LPCWSTR name : {LPCWSTR{nullptr}, LPCWSTR{u""}, own.c_str()}) {
    const bool is_named = name != nullptr && *name != 0;
    ASSERT_EQ(List(name), 0u);
    ASSERT_GE(returned_, 2u);
    for (const char16_t* const printer : {u"Contract printer", u"Contract plotter"}) {
      const PRINTER_INFO_2W* const record = Find(is_named ? own + u"\\" + printer : Text(printer));
      ASSERT_NE(record, nullptr) << ToUtf8(printer) << " of " << is_named;
      ASSERT_EQ(record->pServerName != nullptr, is_named);
      if (is_named) {
        EXPECT_TRUE(EqualNoCase(record->pServerName, own));
        EXPECT_TRUE(IsInBlock(record->pServerName));
      }
      EXPECT_TRUE(IsInBlock(record->pPrinterName) && IsInBlock(record->pComment));
      EXPECT_EQ(ToUtf8(record->pComment) + ToUtf8(record->pLocation), "Of the contract, here");
      EXPECT_EQ(
          (std::vector{record->Priority, record->StartTime, record->UntilTime, record->cJobs}),
          (std::vector<DWORD>{7, 60, 1439, 0}));
    }
    const DWORD size = needed_ - 1;
    EXPECT_EQ(Ask(name, reinterpret_cast<BYTE*>(table_.data()), size), kErrorInsufficientBuffer);
    EXPECT_EQ(needed_, size + 1);
    EXPECT_EQ(returned_, 0u);
  }
}

TEST_F(PrintingContract, RefusesWhatItCantAnswer) {
  EXPECT_EQ(Ask(nullptr, nullptr, 0, 0), kErrorInvalidFlags);
  EXPECT_EQ(Ask(nullptr, nullptr, 0, kNames, 77), kErrorInvalidLevel);
  EXPECT_EQ(Ask(u"\\\\nobody-there", nullptr, 0), kErrorRpcServerUnavailable);
  EXPECT_EQ(Ask(u"no-server", nullptr, 0), kErrorInvalidName);
  EXPECT_EQ(Ask(u"\\\\", nullptr, 0), kErrorInvalidName);
  EXPECT_EQ(Ask(nullptr, nullptr, 100), kErrorInvalidUserBuffer);
  DWORD count = 0;
  EXPECT_EQ(Code(printers_.EnumPrintersW(kNames, nullptr, 2, nullptr, 0, &count, nullptr)),
            kErrorNullReference);
  EXPECT_EQ(Code(printers_.EnumPrintersW(kNames, nullptr, 2, nullptr, 0, nullptr, &count)),
            kErrorNullReference);
}

}  // namespace
}  // namespace veldmark
