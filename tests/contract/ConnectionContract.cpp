#include <vector>

#include "automation/LastError.h"
#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

class Connections : public Contract {
 protected:
  DWORD Add(DWORD type, const Text& local, const Text& remote) {
    NETRESOURCEW resource{};
    resource.dwType = type;
    Text local_name = local, remote_name = remote;
    if (!local.empty()) resource.lpLocalName = local_name.data();
    if (!remote.empty()) resource.lpRemoteName = remote_name.data();
    return provider_.WNetAddConnection3W(nullptr, &resource, u"", u"", 0);
  }

  NetworkProvider& provider_ = platform_.network_provider;
};

TEST_F(Connections, FailWithTheCodeOfWhatIsWrongWithThem) {
  if (const char* why = WhyNot(Trait::Connections)) GTEST_SKIP() << why;
  const Text nobody = u"\\\\nobody-there\\share";
  struct Row {
    DWORD type;
    Text local, remote;
    DWORD error;
  };
  for (const Row& row : std::vector<Row>{
           {kResourceTypeDisk, u"Q:", u"", kErrorInvalidParameter},
           {kResourceTypeDisk, u"Q", nobody, kErrorBadDevice},
           {kResourceTypeDisk, u"4:", nobody, kErrorBadDevice},
           {kResourceTypeAny, u"Q:", nobody, kErrorBadDevType},
           {kResourceTypePrint, u"Q:", nobody, kErrorBadDevType},
           {kResourceTypeDisk, u"LPT3", nobody, kErrorBadDevType},
           {8, u"", nobody, kErrorBadDevType},
           {kResourceTypeDisk, world_->scratch().substr(0, 2), nobody, kErrorAlreadyAssigned},
           {kResourceTypeDisk, u"Q:", u"nobody", kErrorBadNetName},
           {kResourceTypeDisk, u"Q:", nobody, kErrorBadNetPath},
           {kResourceTypeAny, u"", nobody, kErrorBadNetPath}}) {
    EXPECT_EQ(Add(row.type, row.local, row.remote), row.error)
        << row.type << " " << ToUtf8(row.local) << " " << ToUtf8(row.remote);
  }
  for (LPCWSTR const name : {u"Q:", u"\\\\nobody-there\\share", u"nobody"}) {
    EXPECT_EQ(provider_.WNetCancelConnection2W(name, 0, 1), kErrorNotConnected) << ToUtf8(name);
  }
}

TEST_F(Connections, OfMediaCommandsAnswerWithoutWaitingForADevice) {
  char answer[127] = "?";
  const DWORD result =
      platform_.multimedia.mciSendStringA("set CDAudio door open", answer, 127, nullptr);
  EXPECT_NE(result, kErrorNotSupported);
  EXPECT_EQ(std::string(answer), "");
}

}  // namespace
}  // namespace veldmark
