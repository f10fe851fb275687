#include "platform/simulated/estate/RegistryNode.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "automation/CaseMapping.h"

namespace veldmark::simulated {
namespace {

template <typename T>
std::vector<std::uint8_t> BytesOf(const T& number) {
  std::vector<std::uint8_t> bytes(sizeof number);
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}

// The text with its NUL, in the platform's little-endian order.
void Append(std::vector<std::uint8_t>& bytes, TextView text) {
  for (const char16_t unit : Text(text) + u'\0') {
    bytes.push_back(static_cast<std::uint8_t>(unit));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
}

}  // namespace

RegistryNode& RegistryNode::Key(TextView path) {
  RegistryNode* key = this;
  while (!path.empty()) {
    const std::size_t end = path.find(u'\\');
    const TextView name = path.substr(0, end);
    path = end == TextView::npos ? TextView() : path.substr(end + 1);
    if (name.empty()) continue;
    const auto found = key->Find(name);
    key = (found != nullptr ? found : key->Add(name, key->written_)).get();
  }
  return *key;
}

RegistryNode& RegistryNode::String(TextView name, TextView text, DWORD type) {
  std::vector<std::uint8_t> data;
  Append(data, text);
  return Data(name, type, std::move(data));
}

RegistryNode& RegistryNode::Strings(TextView name, const std::vector<Text>& texts) {
  std::vector<std::uint8_t> data;
  for (const Text& text : texts) Append(data, text);
  Append(data, u"");
  return Data(name, kRegMultiSz, std::move(data));
}

RegistryNode& RegistryNode::Dword(TextView name, std::uint32_t number) {
  return Data(name, kRegDword, BytesOf(number));
}

RegistryNode& RegistryNode::Qword(TextView name, std::uint64_t number) {
  return Data(name, kRegQword, BytesOf(number));
}

RegistryNode& RegistryNode::Data(TextView name, DWORD type, std::vector<std::uint8_t> data) {
  const auto found = std::find_if(values_.begin(), values_.end(), [&](const Value& value) {
    return EqualNoCase(value.name, name);
  });
  if (found == values_.end()) {
    values_.push_back({Text(name), type, std::move(data)});
  } else {
    found->type = type;
    found->data = std::move(data);
  }
  return *this;
}

RegistryNode& RegistryNode::Class(Text key_class) {
  key_class_ = std::move(key_class);
  return *this;
}

RegistryNode& RegistryNode::DenyRead(bool denied) {
  read_denied_ = denied;
  return *this;
}

RegistryNode& RegistryNode::DenyWrite(bool denied) {
  write_denied_ = denied;
  return *this;
}

RegistryNode& RegistryNode::Security(SecurityDescriptor descriptor) {
  Describe(std::move(descriptor));
  return *this;
}

std::shared_ptr<RegistryNode> RegistryNode::Find(TextView name) const {
  const auto found = keys_.find(ToUpper(name));
  return found == keys_.end() ? nullptr : found->second;
}

std::shared_ptr<RegistryNode> RegistryNode::Add(TextView name, Ticks now) {
  written_ = now;
  auto child = std::make_shared<RegistryNode>(Text(name), now);
  child->parent_ = this;
  return keys_.emplace(ToUpper(name), std::move(child)).first->second;
}

void RegistryNode::Remove(Ticks now) {
  if (parent_ == nullptr) return;
  KeepSecurity();
  RegistryNode& parent = *std::exchange(parent_, nullptr);
  deleted_ = true;
  parent.written_ = now;
  parent.keys_.erase(ToUpper(name_));
}

const RegistryNode::Value* RegistryNode::FindValue(TextView name) const {
  const auto found = std::find_if(values_.begin(), values_.end(), [&](const Value& value) {
    return EqualNoCase(value.name, name);
  });
  return found == values_.end() ? nullptr : &*found;
}

bool RegistryNode::RemoveValue(TextView name) {
  return std::erase_if(values_, [&](const Value& value) { return EqualNoCase(value.name, name); }) >
         0;
}

void RegistryNode::ForEachHeld(const std::function<void(SecuredNode&)>& action) {
  for (const auto& [name, key] : keys_) action(*key);
}

SecurityRef RegistryNode::RootSecurity() const {
  return SecurityBlock::Make(
      DescriptorOf(u"O:BAG:SYD:PAI(A;CI;KA;;;BA)(A;CI;KA;;;SY)(A;CI;KR;;;BU)(A;CIIO;KA;;;CO)"));
}

}  // namespace veldmark::simulated
