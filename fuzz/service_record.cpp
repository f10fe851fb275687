// Any bytes as what a query of the service manager left in its buffer: records whose texts begin
// anywhere, in the buffer or not. They are read or are no sound data, and reading ends within the
// buffer.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "FuzzTarget.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/ServiceControl.h"
#include "services/RecordBuffer.h"

namespace {

using namespace veldmark;

/// The text that the field of a record leads to, taken as an offset from the buffer's start.
LPCWSTR Within(const std::vector<std::uint8_t>& bytes, LPWSTR field) {
  const auto offset = reinterpret_cast<std::uintptr_t>(field);
  return reinterpret_cast<LPCWSTR>(reinterpret_cast<std::uintptr_t>(bytes.data()) + offset);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  world.simulated.journal().Clear();
  // A copy of just this size: what is read behind it is noticed.
  const std::vector<std::uint8_t> bytes(data, data + size);
  const RecordBuffer records(bytes);
  const auto read = [&](LPWSTR field) {
    for (const LPCWSTR text : {Within(bytes, field), static_cast<LPCWSTR>(field)}) {
      Try({kErrorInvalidData}, [&] {
        const Text found = records.TextOf(text);
        Require(found.find(u'\0') == Text::npos);
        Require(found.size() * sizeof(WCHAR) < bytes.size() || text == nullptr);
      });
      Try({kErrorInvalidData}, [&] {
        const Text names = records.NamesOf(text);
        Require(names.find(u'\0') == Text::npos && names.size() <= bytes.size());
      });
    }
  };
  for (std::size_t index = 0; index < 4; ++index) {
    Try({kErrorInvalidData}, [&] {
      const auto record = records.RecordAt<ENUM_SERVICE_STATUSW>(index);
      read(record.lpServiceName);
      read(record.lpDisplayName);
    });
  }
  Try({kErrorInvalidData}, [&] {
    const auto record = records.RecordAt<QUERY_SERVICE_CONFIGW>(0);
    for (const LPWSTR field : {record.lpBinaryPathName, record.lpDependencies,
                               record.lpServiceStartName, record.lpDisplayName}) {
      read(field);
    }
  });
  Try({kErrorInvalidData}, [&] { read(records.RecordAt<SERVICE_DESCRIPTIONW>(0).lpDescription); });
  return 0;
}
