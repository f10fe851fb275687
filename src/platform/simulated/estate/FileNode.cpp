#include "platform/simulated/estate/FileNode.h"

#include <algorithm>
#include <cstring>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate/FileNames.h"

namespace veldmark::simulated {

FileNode::FileNode(Text name, bool is_folder, Ticks now)
    : name_(std::move(name)), is_folder_(is_folder), created_(now), accessed_(now), written_(now) {}

FileNode& FileNode::Attributes(DWORD attributes) {
  attributes_ = attributes & ~(kFileAttributeDirectory | kFileAttributeNormal);
  return *this;
}

FileNode& FileNode::ShortName(Text short_name) {
  if (parent_ != nullptr) {
    parent_->by_short_name_.erase(ToUpper(short_name_));
    if (!short_name.empty()) parent_->by_short_name_[ToUpper(short_name)] = this;
  }
  short_name_ = std::move(short_name);
  return *this;
}

FileNode& FileNode::Times(Ticks created, Ticks accessed, Ticks written) {
  created_ = created;
  accessed_ = accessed;
  written_ = written;
  return *this;
}

FileNode& FileNode::Content(std::string_view bytes) {
  content_.assign(bytes.begin(), bytes.end());
  size_ = content_.size();
  return *this;
}

FileNode& FileNode::Size(std::uint64_t size) {
  size_ = size;
  if (content_.size() > size_) content_.resize(static_cast<std::size_t>(size_));
  return *this;
}

FileNode& FileNode::Locked(bool locked) {
  locked_ = locked;
  return *this;
}

FileNode& FileNode::DenyList(bool denied) {
  list_denied_ = denied;
  return *this;
}

FileNode& FileNode::DenyRead(bool denied) {
  read_denied_ = denied;
  return *this;
}

FileNode& FileNode::DenyWrite(bool denied) {
  write_denied_ = denied;
  return *this;
}

FileNode& FileNode::DenyDelete(bool denied) {
  delete_denied_ = denied;
  return *this;
}

FileNode& FileNode::DenySecurity(bool denied) {
  security_denied_ = denied;
  return *this;
}

FileNode& FileNode::LockSecurity(bool locked) {
  security_locked_ = locked;
  return *this;
}

FileNode& FileNode::Security(SecurityDescriptor descriptor) {
  Describe(std::move(descriptor));
  return *this;
}

FileNode& FileNode::Messages(MessageTable messages, WORD language) {
  MessageTables tables = messages_ ? *messages_ : MessageTables();
  tables[language] = std::move(messages);
  messages_ = std::make_shared<const MessageTables>(std::move(tables));
  return *this;
}

FileNode& FileNode::Version(std::vector<std::uint8_t> resource) {
  version_ = std::make_shared<const std::vector<std::uint8_t>>(std::move(resource));
  return *this;
}

DWORD FileNode::attributes() const {
  if (is_folder_) return attributes_ | kFileAttributeDirectory;
  return attributes_ == 0 ? kFileAttributeNormal : attributes_;
}

std::shared_ptr<FileNode> FileNode::Child(TextView name) const {
  const Text upper = ToUpper(name);
  if (const auto found = children_.find(upper); found != children_.end()) return found->second;
  const auto found = by_short_name_.find(upper);
  return found == by_short_name_.end() ? nullptr : found->second->shared_from_this();
}

std::shared_ptr<FileNode> FileNode::AddChild(Text name, bool is_folder, Ticks now) {
  if (Child(name) != nullptr) return nullptr;
  auto child = std::make_shared<FileNode>(name, is_folder, now);
  child->parent_ = this;
  child->ShortName(
      MakeShortName(name, [this](TextView candidate) { return Child(candidate) != nullptr; }));
  children_[ToUpper(name)] = child;
  written_ = now;
  return child;
}

void FileNode::Remove(Ticks now) {
  if (parent_ == nullptr) return;
  KeepSecurity();
  FileNode& folder = *parent_;
  folder.written_ = now;
  folder.by_short_name_.erase(ToUpper(short_name_));
  parent_ = nullptr;
  folder.children_.erase(ToUpper(name_));
}

std::size_t FileNode::Read(std::uint64_t offset, void* buffer, std::size_t count) const {
  if (offset >= size_) return 0;
  const auto available = static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset));
  const std::size_t stored =
      offset >= content_.size()
          ? 0
          : std::min(available, content_.size() - static_cast<std::size_t>(offset));
  auto* bytes = static_cast<std::uint8_t*>(buffer);
  if (stored > 0) std::memcpy(bytes, content_.data() + offset, stored);
  std::fill(bytes + stored, bytes + available, std::uint8_t{0});
  return available;
}

void FileNode::Write(std::uint64_t offset, const void* bytes, std::size_t count, Ticks now) {
  if (count == 0) return;
  const auto end = static_cast<std::size_t>(offset + count);
  if (content_.size() < end) content_.resize(end);
  std::memcpy(content_.data() + offset, bytes, count);
  size_ = std::max<std::uint64_t>(size_, end);
  written_ = now;
  attributes_ |= kFileAttributeArchive;
}

void FileNode::Truncate(Ticks now) {
  content_.clear();
  size_ = 0;
  written_ = now;
}

void FileNode::CopyDataFrom(const FileNode& source) {
  content_ = source.content_;
  size_ = source.size_;
  messages_ = source.messages_;
  version_ = source.version_;
  attributes_ = source.attributes_ | kFileAttributeArchive;
  written_ = source.written_;
}

bool FileNode::CanOpen(const Sharing& wanted) const {
  if (!wanted.reads && !wanted.writes && !wanted.deletes) return true;
  if (locked_) return false;
  return std::all_of(opens_.begin(), opens_.end(), [&](const Sharing* other) {
    if (!other->reads && !other->writes && !other->deletes) return true;
    return (!wanted.reads || other->lets_read) && (!wanted.writes || other->lets_write) &&
           (!wanted.deletes || other->lets_delete) && (!other->reads || wanted.lets_read) &&
           (!other->writes || wanted.lets_write) && (!other->deletes || wanted.lets_delete);
  });
}

void FileNode::RemoveOpen(const Sharing* sharing, Ticks now) {
  opens_.erase(std::find(opens_.begin(), opens_.end(), sharing));
  if (opens_.empty() && delete_pending_) Remove(now);
}

void FileNode::Delete(Ticks now) {
  delete_pending_ = true;
  if (opens_.empty()) Remove(now);
}

void FileNode::ForEachHeld(const std::function<void(SecuredNode&)>& action) {
  for (const auto& [name, child] : children_) action(*child);
}

SecurityRef FileNode::RootSecurity() const {
  return SecurityBlock::Make(
      DescriptorOf(u"O:BAG:SYD:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)"));
}

}  // namespace veldmark::simulated
