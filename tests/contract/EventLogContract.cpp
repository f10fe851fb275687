#include <cstring>
#include <string>
#include <vector>

#include "automation/LastError.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

class EventLogContract : public Contract {
 protected:
  EventLog& logs_ = platform_.event_logs;
  EventLogHandle log_{logs_};
  DWORD read_ = 7;
  DWORD needed_ = 7;
};

constexpr DWORD kGoOn = kEventlogSequentialRead | kEventlogForwardsRead;

TEST_F(EventLogContract, OpensLogsOfThisComputerByName) {
  const Text own = OwnName();
  const Text server = u"\\\\" + own;
  std::vector<std::uint8_t> buffer(64);
  for (const LPCWSTR name : {LPCWSTR{nullptr}, LPCWSTR{u""}, own.c_str(), server.c_str()}) {
    log_.Reset(logs_.OpenEventLogW(name, u"Application"));
    EXPECT_TRUE(log_) << ToUtf8(name == nullptr ? u"null" : name) << " " << LastPlatformError();
    DWORD count = 0xFFFFFFFF, oldest = 0xFFFFFFFF;
    EXPECT_EQ(Code(logs_.GetNumberOfEventLogRecords(log_.Get(), &count)), 0u);
    EXPECT_EQ(Code(logs_.GetOldestEventLogRecord(log_.Get(), &oldest)), 0u);
    EXPECT_TRUE(count != 0xFFFFFFFF && oldest != 0xFFFFFFFF);
    EXPECT_EQ(Code(logs_.ReadEventLogW(log_.Get(), kGoOn, 0, buffer.data(), 64, &read_, &needed_)),
              count == 0 ? kErrorHandleEof : kErrorInsufficientBuffer);
    EXPECT_EQ(Code(logs_.GetNumberOfEventLogRecords(log_.Get(), nullptr)), kErrorInvalidParameter);
    EXPECT_EQ(Code(logs_.GetOldestEventLogRecord(log_.Get(), nullptr)), kErrorInvalidParameter);
    EXPECT_EQ(Code(logs_.CloseEventLog(log_.Release())), 0u);
  }
  EXPECT_EQ(Code(logs_.OpenEventLogW(nullptr, nullptr)), kErrorInvalidParameter);
  EXPECT_EQ(Code(logs_.OpenEventLogW(u"\\\\nobody-there", u"System")), kErrorRpcServerUnavailable);
  EXPECT_EQ(Code(logs_.OpenBackupEventLogW(nullptr, nullptr)), kErrorInvalidParameter);
  EXPECT_EQ(Code(logs_.OpenBackupEventLogW(nullptr, In(u"\\none.evt").c_str())),
            kErrorFileNotFound);
}

TEST_F(EventLogContract, GivesRecordsOutInBothDirections) {
  if (const char* reason = WhyNot(Trait::EventRecords)) GTEST_SKIP() << reason;
  log_.Reset(logs_.OpenEventLogW(nullptr, u"Contract"));
  ASSERT_TRUE(log_) << "the world has a log of this name, with the records 3 to 6";
  std::vector<std::uint8_t> buffer(4096);
  const auto read = [&](DWORD flags, DWORD offset, std::size_t size) {
    if (!logs_.ReadEventLogW(log_.Get(), flags, offset, buffer.data(), static_cast<DWORD>(size),
                             &read_, &needed_)) {
      return "error " + std::to_string(LastPlatformError());
    }
    std::string numbers;
    for (std::size_t at = 0; at < read_;) {
      EVENTLOGRECORD head;
      std::memcpy(&head, buffer.data() + at, sizeof head);
      EXPECT_EQ(head.Reserved, kEventRecordSignature);
      EXPECT_EQ(std::memcmp(buffer.data() + at + head.Length - 4, &head.Length, 4), 0);
      numbers += std::to_string(head.RecordNumber) + " ";
      at += head.Length;
    }
    return numbers;
  };
  constexpr DWORD kForwards = kEventlogForwardsRead, kBackwards = kEventlogBackwardsRead;
  constexpr DWORD kSeek = kEventlogSeekRead, kSequential = kEventlogSequentialRead;
  EXPECT_EQ(read(kGoOn, 99, 0), "error 122");
  const std::size_t each = needed_;
  EXPECT_EQ(read_, 0u);
  EXPECT_GT(each, sizeof(EVENTLOGRECORD));
  EXPECT_EQ(read(kGoOn, 0, each - 1), "error 122");
  EXPECT_EQ(read(kGoOn, 0, each), "3 ");
  EXPECT_EQ(read(kGoOn, 0, 2 * each + 1), "4 5 ");
  EXPECT_EQ(read(kSequential | kBackwards, 0, each), "5 ");
  EXPECT_EQ(read(kGoOn, 0, 4096), "5 6 ");
  EXPECT_EQ(read(kGoOn, 0, 4096), "error 38");
  EXPECT_EQ(read(kSeek | kForwards, 4, each), "4 ");
  EXPECT_EQ(read(kSeek | kForwards, 5, 0), "error 122");
  EXPECT_EQ(read(kGoOn, 0, each), "5 ");
  EXPECT_EQ(read(kSeek | kBackwards, 5, 4096), "5 4 3 ");
  EXPECT_EQ(read(kSequential | kBackwards, 0, 4096), "error 38");
  EXPECT_EQ(read(kSeek | kForwards, 2, 4096), "error 87");
  EXPECT_EQ(read(kSeek | kForwards, 7, 4096), "error 87");
  EXPECT_EQ(read(kSeek | kSequential | kForwards, 4, 4096), "error 87");
  EXPECT_EQ(read(kSequential | kForwards | kBackwards, 0, 4096), "error 87");
  EXPECT_EQ(read(kSequential, 0, 4096), "error 87");
  EXPECT_EQ(read(kForwards, 0, 4096), "error 87");
  EXPECT_EQ(Code(logs_.ReadEventLogW(log_.Get(), kGoOn, 0, nullptr, 0, &read_, &needed_)),
            kErrorInvalidParameter);
  log_.Reset(logs_.OpenEventLogW(nullptr, u"Contract"));
  EXPECT_EQ(read(kSequential | kBackwards, 0, 4096), "6 5 4 3 ");

  const Text file = In(u"\\saved.evt");
  ASSERT_EQ(Code(logs_.BackupEventLogW(log_.Get(), file.c_str())), 0u);
  EXPECT_EQ(Code(logs_.BackupEventLogW(log_.Get(), file.c_str())), kErrorAlreadyExists);
  EXPECT_EQ(Code(logs_.BackupEventLogW(log_.Get(), In(u"\\no\\saved.evt").c_str())),
            kErrorPathNotFound);
  log_.Reset(logs_.OpenBackupEventLogW(nullptr, file.c_str()));
  ASSERT_TRUE(log_) << LastPlatformError();
  EXPECT_EQ(read(kGoOn, 0, 4096), "3 4 5 6 ");
  Touch(u"\\text.evt", "no log at all, and long enough for the header of one, which has 48 bytes");
  EXPECT_EQ(Code(logs_.OpenBackupEventLogW(nullptr, In(u"\\text.evt").c_str())),
            kErrorEventlogFileCorrupt);
}

}  // namespace
}  // namespace veldmark
