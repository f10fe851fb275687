#include "contract/World.h"
#include "platform/simulated/estate/VersionDescription.h"
#include "platform/simulated/families/SimulatedPlatform.h"

namespace veldmark {
namespace {

class SimulatedWorld final : public World {
 public:
  SimulatedWorld() : simulated_(simulated::Estate(u"HARBOUR")) {
    simulated::Computer& local = simulated_.estate().local();
    local.AddFolder(scratch_);
    local.AddFile(u"C:\\Windows\\System32\\kernel32.dll")
        .Version(simulated::VersionDescription{.file = {6, 1, 7601, 0}}.Build());
    local.AddFile(event_texts())
        .Messages({{1, u"Nobody but %1 knows %2.\r\n"},
                   {2, u"[%99!*.*s!][%100][%5]%0"},
                   {3, u"Network\r\n"}})
        .Messages({{1, u"Niemand kennt %2, nur %1.\r\n"}, {2, u"[%5]%0"}, {3, u"Netzwerk\r\n"}},
                  0x407);
    simulated::AccountDatabase& accounts = local.own_accounts();
    accounts.AddUser(user_, 1001);
    accounts.local_group(u"Administrators").members.push_back(accounts.SidOf(user_));
    simulated_.estate().current_user().Key(scratch_key_);
    simulated::RecordedLog& log = local.AddEventLog(u"Contract");
    log.StartAt(3);
    for (DWORD id = 3; id < 7; ++id) log.Add({.source = u"Contract", .id = id});
  }
  ~SimulatedWorld() override {
    EXPECT_TRUE(simulated_.ledger().still_open().empty()) << simulated_.ledger().Report();
  }

  Platform platform() override { return simulated_.platform(); }
  const std::u16string& scratch() const override { return scratch_; }
  const std::u16string& scratch_key() const override { return scratch_key_; }
  const std::u16string& user() const override { return user_; }
  std::u16string event_texts() const override { return u"C:\\Texts\\event_texts.dll"; }
  std::u16string service_program() const override { return u"C:\\service.exe"; }
  void LetPass(unsigned milliseconds) override { simulated_.estate().Advance(milliseconds); }
  HANDLE OpenImpersonationToken() override {
    return simulated_.security().OpenClientToken(u"S-1-5-21-1-2-3-1005", {u"S-1-5-32-545"});
  }
  void AddPrinter(const PRINTER_INFO_2W& record) override {
    simulated::Printer& printer = simulated_.estate().local().AddPrinter(record.pPrinterName);
    printer.comment = record.pComment;
    printer.location = record.pLocation;
    printer.priority = record.Priority;
    printer.start = record.StartTime;
    printer.until = record.UntilTime;
  }
  const char* WhyNot(Trait) const override { return nullptr; }

 private:
  const std::u16string scratch_ = u"C:\\Scratch\\Contract";
  const std::u16string user_ = u"user";
  const std::u16string scratch_key_ = u"Software\\Contract";
  simulated::SimulatedPlatform simulated_;
};

}  // namespace

std::unique_ptr<World> MakeWorld() { return std::make_unique<SimulatedWorld>(); }

}  // namespace veldmark
