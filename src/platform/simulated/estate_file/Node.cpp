#include "platform/simulated/estate_file/Node.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "platform/simulated/estate_file/EstateFile.h"

namespace veldmark::simulated {
namespace {

std::string Listed(std::initializer_list<std::string_view> words) {
  std::string list;
  for (const std::string_view word : words) {
    if (!list.empty()) list += ", ";
    list += word;
  }
  return list;
}

}  // namespace

void Node::Complain(const std::string& problem) const {
  throw EstateFileError(place_.empty() ? "/" : place_, problem);
}

bool Node::IsText() const { return json_.is_string(); }
bool Node::IsNumber() const { return json_.is_number(); }
bool Node::IsArray() const { return json_.is_array(); }
bool Node::IsObject() const { return json_.is_object(); }
bool Node::IsNull() const { return json_.is_null(); }

void Node::OnlyFields(std::initializer_list<std::string_view> fields) const {
  for (const auto& [name, node] : Members()) {
    const bool known = std::find(fields.begin(), fields.end(), name) != fields.end();
    if (!known) node.Complain("unknown field; there are " + Listed(fields));
  }
}

std::optional<Node> Node::Field(const char* name) const {
  const auto found = json_.find(name);
  if (found == json_.end()) return std::nullopt;
  return At(*found, name);
}

Node Node::Required(const char* name) const {
  const auto field = Field(name);
  if (!field) Complain(std::string("lacks the field \"") + name + "\"");
  return *field;
}

std::vector<std::pair<std::string, Node>> Node::Members() const {
  if (!json_.is_object()) ComplainOfType("an object");
  std::vector<std::pair<std::string, Node>> members;
  for (const auto& [name, value] : json_.items()) members.emplace_back(name, At(value, name));
  return members;
}

std::vector<Node> Node::Elements() const {
  if (!json_.is_array()) ComplainOfType("an array");
  std::vector<Node> elements;
  for (std::size_t index = 0; index < json_.size(); ++index) {
    elements.push_back(At(json_[index], std::to_string(index)));
  }
  return elements;
}

std::string Node::Utf8() const {
  if (!json_.is_string()) ComplainOfType("a text");
  return json_.get<std::string>();
}

bool Node::Boolean() const {
  if (!json_.is_boolean()) ComplainOfType("true or false");
  return json_.get<bool>();
}

std::int64_t Node::Integer(std::int64_t least, std::int64_t most) const {
  if (!json_.is_number_integer()) ComplainOfType("a whole number");
  const bool too_large =
      json_.is_number_unsigned() && json_.get<std::uint64_t>() > static_cast<std::uint64_t>(most);
  if (too_large || json_.get<std::int64_t>() < least || json_.get<std::int64_t>() > most) {
    Complain("must lie between " + std::to_string(least) + " and " + std::to_string(most));
  }
  return json_.get<std::int64_t>();
}

std::size_t Node::OneOf(std::initializer_list<std::string_view> words) const {
  const auto* const found = std::find(words.begin(), words.end(), Utf8());
  if (found == words.end()) Complain("must be one of " + Listed(words));
  return static_cast<std::size_t>(found - words.begin());
}

std::string Node::FileContent() const {
  if (folder_ == nullptr) Complain("needs an estate that is read from a file");
  const std::filesystem::path path = *folder_ / std::filesystem::path(String());
  std::error_code error;
  std::ifstream file(path, std::ios::binary);
  if (!file || !std::filesystem::is_regular_file(path, error)) Complain("cannot be read");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Node Node::At(const nlohmann::json& json, std::string_view name) const {
  std::string place = place_ + "/";
  for (const char unit : name) {
    if (unit == '~') {
      place += "~0";
    } else if (unit == '/') {
      place += "~1";
    } else {
      place += unit;
    }
  }
  return Node(json, std::move(place), folder_);
}

void Node::ComplainOfType(const std::string& expected) const {
  Complain("must be " + expected + ", not " + json_.type_name());
}

}  // namespace veldmark::simulated
