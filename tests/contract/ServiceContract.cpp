#include <algorithm>
#include <vector>

#include "automation/CaseMapping.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr LPCWSTR kOne = u"VeldmarkContractOne";
constexpr LPCWSTR kTwo = u"VeldmarkContractTwo";
constexpr LPCWSTR kNobody = u"VeldmarkNobody";

// Two services of a program that only knows to start and to stop; the second depends on the first.
class ServiceContract : public Contract {
 protected:
  ServiceContract() {
    for (const LPCWSTR name : {kTwo, kOne, kNobody}) Remove(name);
    one_ = Make(kOne, nullptr);
    two_ = Make(kTwo, u"VeldmarkContractOne\0");
  }
  ~ServiceContract() override {
    one_.Reset();
    two_.Reset();
    for (const LPCWSTR name : {kTwo, kOne, kNobody}) Remove(name);
  }

  void SetUp() override { ASSERT_TRUE(one_ && two_) << LastPlatformError(); }

  ServiceHandle Make(LPCWSTR name, LPCWSTR dependencies) {
    const Text command = u"\"" + world_->service_program() + u"\" " + name;
    return ServiceHandle(
        services_,
        services_.CreateServiceW(manager_.Get(), name, nullptr, kServiceAllAccess,
                                 kServiceOwnProcess, kServiceDemandStart, kServiceErrorNormal,
                                 command.c_str(), nullptr, nullptr, dependencies, u"", u""));
  }
  ServiceHandle Open(LPCWSTR name, DWORD access) {
    return ServiceHandle(services_, services_.OpenServiceW(manager_.Get(), name, access));
  }
  void Remove(LPCWSTR name) {
    const ServiceHandle service = Open(name, kServiceAllAccess);
    if (!service) return;
    SERVICE_STATUS status{};
    services_.ControlService(service.Get(), kServiceControlStop, &status);
    ReachesState(service, kServiceStopped);
    services_.DeleteService(service.Get());
  }
  bool ReachesState(const ServiceHandle& service, DWORD state) {
    SERVICE_STATUS status{};
    for (int tries = 0; tries < 200; ++tries) {
      if (!services_.QueryServiceStatus(service.Get(), &status)) return false;
      if (status.dwCurrentState == state) return true;
      world_->LetPass(25);
    }
    return false;
  }
  DWORD Control(const ServiceHandle& service, DWORD control) {
    return Code(services_.ControlService(service.Get(), control, &status_));
  }
  DWORD Change(const ServiceHandle& service, DWORD type, DWORD start, LPCWSTR dependencies,
               LPCWSTR account, LPCWSTR display) {
    return Code(services_.ChangeServiceConfigW(service.Get(), type, start, kServiceNoChange,
                                               nullptr, nullptr, nullptr, dependencies, account,
                                               nullptr, display));
  }
  DWORD Start(const ServiceHandle& service) {
    return Code(services_.StartServiceW(service.Get(), 0, nullptr));
  }
  template <class Record>
  const Record* Records() const {
    return reinterpret_cast<const Record*>(buffer_.data());
  }
  DWORD QueryConfig(DWORD size) {
    buffer_.assign(size + 1, 0);
    return Code(services_.QueryServiceConfigW(
        two_.Get(), reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer_.data()), size, &needed_));
  }
  // All services, told in buffers of this size.
  std::vector<Text> Walk(DWORD size) {
    std::vector<Text> names;
    for (resume_ = 0;;) {
      const DWORD code = Enumerate(size);
      EXPECT_TRUE(code == 0 || code == kErrorMoreData) << code;
      for (DWORD index = 0; index < returned_; ++index) {
        names.emplace_back(Records<ENUM_SERVICE_STATUSW>()[index].lpServiceName);
      }
      EXPECT_EQ(code == 0, resume_ == 0);
      if (resume_ == 0 || returned_ == 0) return names;
    }
  }
  DWORD Enumerate(DWORD size) {
    buffer_.assign(size + 1, 0);
    return Code(
        services_.EnumServicesStatusW(manager_.Get(), kServiceTypeAll, kServiceStateAll,
                                      reinterpret_cast<ENUM_SERVICE_STATUSW*>(buffer_.data()), size,
                                      &needed_, &returned_, &resume_));
  }

  ServiceControl& services_ = platform_.services;
  ServiceHandle manager_{services_, services_.OpenSCManagerW(nullptr, nullptr, kManagerAllAccess)};
  ServiceHandle one_{services_};
  ServiceHandle two_{services_};
  SERVICE_STATUS status_{};
  std::vector<BYTE> buffer_;
  DWORD needed_ = 0;
  DWORD returned_ = 0;
  DWORD resume_ = 0;
};

using ServiceManagers = ServiceContract;

TEST_F(ServiceManagers, ListServicesInSlicesAndAllAtOnce) {
  const std::vector<Text> all = Walk(60'000);
  EXPECT_EQ(Walk(512), all);
  for (const LPCWSTR name : {kOne, kTwo}) {
    EXPECT_EQ(std::ranges::count(all, Text(name)), 1);
  }
  // Where nothing fits there is no way on.
  resume_ = 0;
  EXPECT_EQ(Enumerate(8), kErrorMoreData);
  EXPECT_EQ(returned_ + resume_, 0u);
  EXPECT_GT(needed_, 8u);
  const auto dependents = [&](DWORD states, DWORD size) {
    buffer_.assign(size + 1, 0);
    return Code(services_.EnumDependentServicesW(
        one_.Get(), states, reinterpret_cast<ENUM_SERVICE_STATUSW*>(buffer_.data()), size, &needed_,
        &returned_));
  };
  EXPECT_EQ(dependents(kServiceStateAll, 0), kErrorMoreData);
  EXPECT_EQ(dependents(kServiceStateAll, needed_), 0u);
  ASSERT_EQ(returned_, 1u);
  EXPECT_EQ(Text(Records<ENUM_SERVICE_STATUSW>()->lpServiceName), kTwo);
  EXPECT_EQ(dependents(kServiceActive, 1000), 0u);
  EXPECT_EQ(returned_, 0u);
}

TEST_F(ServiceManagers, KeepConfigurations) {
  EXPECT_EQ(QueryConfig(0), kErrorInsufficientBuffer);
  ASSERT_EQ(QueryConfig(needed_), 0u);
  const auto* const config = Records<QUERY_SERVICE_CONFIGW>();
  EXPECT_EQ(config->dwServiceType, kServiceOwnProcess);
  EXPECT_EQ(config->dwStartType, kServiceDemandStart);
  EXPECT_EQ(config->dwErrorControl, kServiceErrorNormal);
  EXPECT_EQ(Text(config->lpDisplayName), kTwo);
  EXPECT_EQ(Text(config->lpServiceStartName), u"LocalSystem");
  EXPECT_EQ(Text(config->lpDependencies, 21), Text(kOne) + Text(2, u'\0'));
  EXPECT_NE(Text(config->lpBinaryPathName).find(world_->service_program()), Text::npos);
  EXPECT_EQ(Change(two_, kServiceNoChange, kServiceDisabled, u"\0", nullptr, u"Two of them"), 0u);
  EXPECT_EQ(QueryConfig(2000), 0u);
  EXPECT_EQ(Records<QUERY_SERVICE_CONFIGW>()->dwStartType, kServiceDisabled);
  EXPECT_EQ(Text(Records<QUERY_SERVICE_CONFIGW>()->lpDisplayName), u"Two of them");
  EXPECT_EQ(*Records<QUERY_SERVICE_CONFIGW>()->lpDependencies, u'\0');
  EXPECT_EQ(Start(two_), kErrorServiceDisabled);
  const auto describe = [&](DWORD level, DWORD size) {
    buffer_.assign(size + 1, 0);
    return Code(services_.QueryServiceConfig2W(two_.Get(), level, buffer_.data(), size, &needed_));
  };
  EXPECT_EQ(describe(kServiceConfigDescription, 0), kErrorInsufficientBuffer);
  EXPECT_EQ(describe(kServiceConfigDescription, needed_), 0u);
  EXPECT_EQ(Records<SERVICE_DESCRIPTIONW>()->lpDescription, nullptr);
  EXPECT_EQ(describe(99, 0), kErrorInvalidLevel);
}

TEST_F(ServiceManagers, StartStopAndRemoveServices) {
  EXPECT_EQ(Control(one_, kServiceControlStop), kErrorServiceNotActive);
  ASSERT_EQ(Start(one_), 0u);
  EXPECT_TRUE(ReachesState(one_, kServiceRunning));
  EXPECT_EQ(Start(one_), kErrorServiceAlreadyRunning);
  EXPECT_EQ(Control(one_, kServiceControlInterrogate), 0u);
  EXPECT_EQ(status_.dwCurrentState, kServiceRunning);
  EXPECT_NE(status_.dwControlsAccepted & kServiceAcceptStop, 0u);
  EXPECT_EQ(Control(one_, kServiceControlPause), kErrorInvalidServiceControl);
  if (const char* why = WhyNot(Trait::ServiceDependencies)) {
    GTEST_LOG_(INFO) << why;
  } else {
    ASSERT_EQ(Start(two_), 0u);
    EXPECT_TRUE(ReachesState(two_, kServiceRunning));
    EXPECT_EQ(Control(one_, kServiceControlStop), kErrorDependentServicesRunning);
    EXPECT_EQ(Control(two_, kServiceControlStop), 0u);
    EXPECT_TRUE(ReachesState(two_, kServiceStopped));
  }
  EXPECT_EQ(Control(one_, kServiceControlStop), 0u);
  EXPECT_TRUE(ReachesState(one_, kServiceStopped));
  EXPECT_EQ(Code(services_.DeleteService(one_.Get())), 0u);
  EXPECT_EQ(Code(services_.DeleteService(one_.Get())), kErrorServiceMarkedForDelete);
  one_.Reset();
  // The manager lets go of it when the program has ended.
  for (int tries = 0; tries < 200 && Open(kOne, kServiceQueryStatus); ++tries) world_->LetPass(25);
  EXPECT_EQ(Code(Open(kOne, kServiceQueryStatus)), kErrorServiceDoesNotExist);
  const ServiceDatabaseLock lock(services_, services_.LockServiceDatabase(manager_.Get()));
  EXPECT_TRUE(lock);
}

TEST_F(ServiceManagers, RefuseWithTheirNumbers) {
  const ServiceHandle weak = Open(kOne, kServiceQueryConfig);
  const ServiceHandle visitor(services_,
                              services_.OpenSCManagerW(u"", u"ServicesActive", kManagerConnect));
  ASSERT_TRUE(weak && visitor);
  const auto open_manager = [&](LPCWSTR machine, LPCWSTR database) {
    return Code(
        ServiceHandle(services_, services_.OpenSCManagerW(machine, database, kManagerConnect)));
  };
  const auto open = [&](const ServiceHandle& by, LPCWSTR name) {
    return Code(
        ServiceHandle(services_, services_.OpenServiceW(by.Get(), name, kServiceQueryStatus)));
  };
  const auto create = [&](const ServiceHandle& by, LPCWSTR name, DWORD type, LPCWSTR display) {
    return Code(ServiceHandle(
        services_, services_.CreateServiceW(by.Get(), name, display, kServiceAllAccess, type,
                                            kServiceDemandStart, 1, u"x.exe", nullptr, nullptr,
                                            nullptr, nullptr, nullptr)));
  };
  EXPECT_EQ(open_manager(u"\\\\nobody-there", nullptr), kErrorRpcServerUnavailable);
  EXPECT_EQ(open_manager(nullptr, u"ServicesFailed"), 1065u);
  EXPECT_EQ(open_manager(nullptr, u"Other"), kErrorInvalidName);
  EXPECT_EQ(open(manager_, kNobody), kErrorServiceDoesNotExist);
  EXPECT_EQ(open(one_, kOne), kErrorInvalidHandle) << "a service for a manager";
  EXPECT_EQ(open(ServiceHandle(services_), kOne), kErrorInvalidHandle);
  EXPECT_EQ(Start(weak), kErrorAccessDenied);
  EXPECT_EQ(Control(weak, kServiceControlStop), kErrorAccessDenied);
  EXPECT_EQ(Code(services_.QueryServiceStatus(weak.Get(), &status_)), kErrorAccessDenied);
  EXPECT_EQ(Change(weak, 16, 3, nullptr, nullptr, nullptr), kErrorAccessDenied);
  EXPECT_EQ(Code(services_.DeleteService(weak.Get())), kErrorAccessDenied);
  EXPECT_EQ(create(visitor, kNobody, 16, nullptr), kErrorAccessDenied);
  EXPECT_EQ(Code(services_.EnumServicesStatusW(visitor.Get(), 48, 3, nullptr, 0, &needed_,
                                               &returned_, &resume_)),
            kErrorAccessDenied);
  EXPECT_EQ(create(manager_, kOne, 16, nullptr), 1073u);
  EXPECT_EQ(create(manager_, kNobody, 48, nullptr), kErrorInvalidParameter);
  if (const char* why = WhyNot(Trait::ServiceChecks)) GTEST_SKIP() << why;
  EXPECT_EQ(open(manager_, u"a\\b"), kErrorInvalidName);
  EXPECT_EQ(Code(services_.LockServiceDatabase(visitor.Get()) != SC_LOCK{0}), kErrorAccessDenied);
  EXPECT_EQ(Code(services_.UnlockServiceDatabase(SC_LOCK{0})), 1071u);
  EXPECT_EQ(create(manager_, kNobody, 16, kOne), 1078u) << "the name shown";
  EXPECT_EQ(Change(one_, 16, 3, u"VeldmarkContractTwo\0", nullptr, nullptr), 1059u) << "a circle";
  EXPECT_EQ(Change(one_, 16, 3, nullptr, u".\\VeldmarkNobody", nullptr), 1057u);
  EXPECT_EQ(Control(one_, kServiceControlShutdown), kErrorInvalidParameter);
}

}  // namespace
}  // namespace veldmark
