#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/Text.h"

namespace veldmark::simulated {

// A value of an estate file together with its place, so that every complaint can name it. What
// isn't of the wanted kind is complained of.
class Node {
 public:
  // `folder` is that of the estate's file, from which the files start that it takes content from;
  // null where there is none.
  Node(const nlohmann::json& json, std::string place, const std::filesystem::path* folder = nullptr)
      : json_(json), place_(std::move(place)), folder_(folder) {}

  // Throws EstateFileError with this place.
  [[noreturn]] void Complain(const std::string& problem) const;

  bool IsText() const;
  bool IsNumber() const;
  bool IsArray() const;
  bool IsObject() const;
  bool IsNull() const;

  // Checks that this is an object of these fields only.
  void OnlyFields(std::initializer_list<std::string_view> fields) const;
  std::optional<Node> Field(const char* name) const;
  Node Required(const char* name) const;
  std::vector<std::pair<std::string, Node>> Members() const;
  std::vector<Node> Elements() const;

  std::string Utf8() const;
  Text String() const { return FromUtf8(Utf8()); }
  bool Boolean() const;
  std::int64_t Integer(std::int64_t least, std::int64_t most) const;
  std::uint32_t Unsigned32() const { return static_cast<std::uint32_t>(Integer(0, 0xFFFFFFFF)); }
  // The index of the text among the words.
  std::size_t OneOf(std::initializer_list<std::string_view> words) const;

  // The content of the file that the text names.
  std::string FileContent() const;

  // Runs what throws std::invalid_argument for values that an estate can't have.
  template <typename Action>
  decltype(auto) Try(Action action) const {
    try {
      return action();
    } catch (const std::invalid_argument& problem) {
      Complain(problem.what());
    }
  }

 private:
  Node At(const nlohmann::json& json, std::string_view name) const;
  [[noreturn]] void ComplainOfType(const std::string& expected) const;

  const nlohmann::json& json_;
  std::string place_;
  const std::filesystem::path* folder_;
};

}  // namespace veldmark::simulated
