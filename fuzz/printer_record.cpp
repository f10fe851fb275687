// Any bytes as a block of printer records: they are read or are no sound data, and reading them
// ends within the block. The input's pointers count from a little before the block, unless their
// upper half says otherwise.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "FuzzTarget.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Printing.h"
#include "services/RecordBuffer.h"

namespace {

using namespace veldmark;

using TextField = LPWSTR PRINTER_INFO_2W::*;
constexpr TextField kTexts[] = {
    &PRINTER_INFO_2W::pPrinterName, &PRINTER_INFO_2W::pShareName,      &PRINTER_INFO_2W::pPortName,
    &PRINTER_INFO_2W::pDriverName,  &PRINTER_INFO_2W::pComment,        &PRINTER_INFO_2W::pLocation,
    &PRINTER_INFO_2W::pSepFile,     &PRINTER_INFO_2W::pPrintProcessor, &PRINTER_INFO_2W::pDatatype,
    &PRINTER_INFO_2W::pParameters,
};
constexpr std::uintptr_t kBefore = 8;

void Relocate(std::vector<std::uint8_t>& block) {
  const auto begin = reinterpret_cast<std::uintptr_t>(block.data());
  for (std::size_t at = 0; at + sizeof(PRINTER_INFO_2W) <= block.size();
       at += sizeof(PRINTER_INFO_2W)) {
    PRINTER_INFO_2W record;
    std::memcpy(&record, block.data() + at, sizeof record);
    for (const TextField text : kTexts) {
      const auto value = reinterpret_cast<std::uintptr_t>(record.*text);
      if (value == 0 || value > 0xFFFF) continue;
      record.*text = reinterpret_cast<LPWSTR>(begin - kBefore + value);
    }
    std::memcpy(block.data() + at, &record, sizeof record);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  world.simulated.journal().Clear();
  if (size == 0) return 0;
  const std::size_t count = data[0];
  std::vector<std::uint8_t> block(data + 1, data + size);
  Relocate(block);
  Try({kErrorInvalidData}, [&] {
    const RecordBuffer records(block);
    records.RequireRecords<PRINTER_INFO_2W>(count);
    Require(count * sizeof(PRINTER_INFO_2W) <= block.size());
    for (std::size_t index = 0; index < count; ++index) {
      const auto record = records.RecordAt<PRINTER_INFO_2W>(index);
      for (const TextField field : kTexts) {
        Try({kErrorInvalidData}, [&] {
          const Text text = records.TextOf(record.*field);
          Require(text.find(u'\0') == Text::npos);
          Require(text.empty() || (text.size() + 1) * sizeof(WCHAR) <= block.size());
        });
      }
    }
  });
  return 0;
}
