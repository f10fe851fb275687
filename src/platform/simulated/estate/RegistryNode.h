#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/Registry.h"
#include "platform/simulated/estate/Calendar.h"
#include "platform/simulated/estate/DescriptorText.h"
#include "platform/simulated/estate/NodeSecurity.h"

namespace veldmark::simulated {

// One registry key of an estate. The setters return the key, so that descriptions chain.
class RegistryNode : public SecuredNode {
 public:
  struct Value {
    Text name;  // empty: the default value
    DWORD type;
    std::vector<std::uint8_t> data;
  };

  RegistryNode(Text name, Ticks now) : name_(std::move(name)), written_(now) {}

  // The key below this one at a path; created with what is missing on the way.
  RegistryNode& Key(TextView path);
  RegistryNode& String(TextView name, TextView text, DWORD type = kRegSz);
  RegistryNode& Strings(TextView name, const std::vector<Text>& texts);
  RegistryNode& Dword(TextView name, std::uint32_t number);
  RegistryNode& Qword(TextView name, std::uint64_t number);
  RegistryNode& Data(TextView name, DWORD type, std::vector<std::uint8_t> data);
  RegistryNode& Class(Text key_class);
  RegistryNode& DenyRead(bool denied = true);
  RegistryNode& DenyWrite(bool denied = true);
  // "D:P(A;CI;KA;;;BA)": unless it is protected, the key inherits from its parent besides. Throws
  // std::invalid_argument if it is no descriptor.
  RegistryNode& Security(TextView text) { return Security(DescriptorOf(text)); }
  RegistryNode& Security(SecurityDescriptor descriptor);

  const Text& name() const { return name_; }
  const Text& key_class() const { return key_class_; }
  Ticks written() const { return written_; }
  void Touch(Ticks now) { written_ = now; }
  bool read_denied() const { return read_denied_; }
  bool write_denied() const { return write_denied_; }
  bool is_deleted() const { return deleted_; }
  bool is_volatile() const { return volatile_; }
  void MakeVolatile() { volatile_ = true; }

  // By upper-cased name, which is the order of enumerations.
  const std::map<Text, std::shared_ptr<RegistryNode>>& keys() const { return keys_; }
  // In the order of creation.
  const std::vector<Value>& values() const { return values_; }
  std::shared_ptr<RegistryNode> Find(TextView name) const;
  std::shared_ptr<RegistryNode> Add(TextView name, Ticks now);
  // Removes this key from its parent, which still says that it was deleted to those who hold it.
  void Remove(Ticks now);
  // Null for a root and for what was deleted.
  RegistryNode* parent() const { return parent_; }
  const Value* FindValue(TextView name) const;
  bool RemoveValue(TextView name);

 private:
  const SecuredNode* holder() const override { return parent_; }
  bool is_container() const override { return true; }
  const GENERIC_MAPPING& mapping() const override { return kRegistryMapping; }
  void ForEachHeld(const std::function<void(SecuredNode&)>& action) override;
  SecurityRef RootSecurity() const override;

  Text name_;
  Text key_class_;
  Ticks written_;
  bool read_denied_ = false;
  bool write_denied_ = false;
  bool deleted_ = false;
  bool volatile_ = false;
  RegistryNode* parent_ = nullptr;
  std::map<Text, std::shared_ptr<RegistryNode>> keys_;
  std::vector<Value> values_;
};

}  // namespace veldmark::simulated
