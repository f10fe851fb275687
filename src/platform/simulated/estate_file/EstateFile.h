#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/simulated/estate/Estate.h"

namespace veldmark::simulated {

// What is wrong with a described estate, and where: `place` is a JSON pointer such as
// "/computers/0/drives/C:/children/2/size", "/" for the whole, or a line and column where the text
// is no JSON; behind a file's name where one was read.
class EstateFileError : public std::runtime_error {
 public:
  EstateFileError(const std::string& place, std::string problem)
      : std::runtime_error(place + ": " + problem), place_(place), problem_(std::move(problem)) {}

  const std::string& place() const { return place_; }
  const std::string& problem() const { return problem_; }

 private:
  std::string place_;
  std::string problem_;
};

// The estate that a JSON text describes (docs/estate.md). Throws EstateFileError. `real_time` moves
// its clock where the text says that it runs; without one it stands there too. Files that content
// is taken from are sought from `folder` on; without one there are none.
Estate ReadEstate(std::string_view json, Estate::Clock real_time = {},
                  const std::filesystem::path* folder = nullptr);

// The same from a file, whose name the errors' texts begin with, and beside which files are sought.
Estate ReadEstateFile(const std::filesystem::path& file, Estate::Clock real_time = {});

}  // namespace veldmark::simulated
