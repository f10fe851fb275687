#include <cstddef>
#include <cstdint>

#include "platform/simulated/estate_file/EstateFile.h"

// Whatever the text, it is an estate or an error that names its place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::simulated;
  try {
    Estate estate = ReadEstate({reinterpret_cast<const char*>(data), size});
    estate.FindComputer(u"HARBOUR");
  } catch (const EstateFileError&) {
  }
  return 0;
}
