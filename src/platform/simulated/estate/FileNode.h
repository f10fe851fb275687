#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/FileSystem.h"
#include "platform/simulated/estate/Calendar.h"
#include "platform/simulated/estate/DescriptorText.h"
#include "platform/simulated/estate/NodeSecurity.h"

namespace veldmark::simulated {

// Message texts by number.
using MessageTable = std::map<DWORD, Text>;
// The tables of a module by language.
using MessageTables = std::map<WORD, MessageTable>;
inline constexpr WORD kEnglish = 0x409;

// What an open handle may do with a file, and what it lets others do.
struct Sharing {
  bool reads = false;
  bool writes = false;
  bool deletes = false;
  bool lets_read = false;
  bool lets_write = false;
  bool lets_delete = false;
};

// One file or folder of an estate. The setters return the node, so that descriptions chain.
class FileNode : public std::enable_shared_from_this<FileNode>, public SecuredNode {
 public:
  FileNode(Text name, bool is_folder, Ticks now);

  FileNode& Attributes(DWORD attributes);
  FileNode& ShortName(Text short_name);
  FileNode& Times(Ticks created, Ticks accessed, Ticks written);
  FileNode& Content(std::string_view bytes);
  // Declares a size beyond the content; what lies between reads as zeros.
  FileNode& Size(std::uint64_t size);
  // Held open by somebody who shares nothing.
  FileNode& Locked(bool locked = true);
  FileNode& DenyList(bool denied = true);
  FileNode& DenyRead(bool denied = true);
  FileNode& DenyWrite(bool denied = true);
  FileNode& DenyDelete(bool denied = true);
  // Keeps the descriptor from being read, whatever it says itself.
  FileNode& DenySecurity(bool denied = true);
  // Lets GetFileSecurityW find the descriptor in use.
  FileNode& LockSecurity(bool locked = true);
  // "D:P(A;;FA;;;BA)": unless it is protected, the node inherits from its folder besides. Throws
  // std::invalid_argument if it is no descriptor.
  FileNode& Security(TextView text) { return Security(DescriptorOf(text)); }
  FileNode& Security(SecurityDescriptor descriptor);
  // Makes the file a module with this message table beside those of other languages.
  FileNode& Messages(MessageTable messages, WORD language = kEnglish);
  // Gives the file a version resource, as its bytes.
  FileNode& Version(std::vector<std::uint8_t> resource);

  const Text& name() const { return name_; }
  const Text& short_name() const { return short_name_; }
  bool is_folder() const { return is_folder_; }
  // As the platform reports them: never 0.
  DWORD attributes() const;
  Ticks created() const { return created_; }
  Ticks accessed() const { return accessed_; }
  Ticks written() const { return written_; }
  std::uint64_t size() const { return size_; }
  bool list_denied() const { return list_denied_; }
  bool read_denied() const { return read_denied_; }
  bool write_denied() const { return write_denied_; }
  bool delete_denied() const { return delete_denied_; }
  bool security_denied() const { return security_denied_; }
  bool security_locked() const { return security_locked_; }
  // Null where the file is no module.
  std::shared_ptr<const MessageTables> messages() const { return messages_; }
  // Null where the file has none.
  const std::vector<std::uint8_t>* version() const { return version_.get(); }

  // Null for a drive's root, and for what was deleted.
  FileNode* parent() const { return parent_; }
  // By upper-cased name, which is the order of listings.
  const std::map<Text, std::shared_ptr<FileNode>>& children() const { return children_; }
  // By long or short name, without regard to case; null if there is none.
  std::shared_ptr<FileNode> Child(TextView name) const;
  // Adds a new node and gives it a short name where it needs one. Null if the name is taken.
  std::shared_ptr<FileNode> AddChild(Text name, bool is_folder, Ticks now);
  void Remove(Ticks now);

  // Copies bytes from `offset` on, at most `count`, and returns their number.
  std::size_t Read(std::uint64_t offset, void* buffer, std::size_t count) const;
  void Write(std::uint64_t offset, const void* bytes, std::size_t count, Ticks now);
  void Truncate(Ticks now);
  void CopyDataFrom(const FileNode& source);

  bool CanOpen(const Sharing& wanted) const;
  void AddOpen(const Sharing* sharing) { opens_.push_back(sharing); }
  // Removes the node too if its deletion waited for this.
  void RemoveOpen(const Sharing* sharing, Ticks now);
  // Removes the node now, or when its last handle is closed.
  void Delete(Ticks now);
  bool is_delete_pending() const { return delete_pending_; }

 private:
  const SecuredNode* holder() const override { return parent_; }
  bool is_container() const override { return is_folder_; }
  const GENERIC_MAPPING& mapping() const override { return kFileMapping; }
  void ForEachHeld(const std::function<void(SecuredNode&)>& action) override;
  SecurityRef RootSecurity() const override;

  Text name_;
  Text short_name_;
  bool is_folder_;
  DWORD attributes_ = 0;
  Ticks created_;
  Ticks accessed_;
  Ticks written_;
  std::uint64_t size_ = 0;
  std::vector<std::uint8_t> content_;
  bool locked_ = false;
  bool list_denied_ = false;
  bool read_denied_ = false;
  bool write_denied_ = false;
  bool delete_denied_ = false;
  bool security_denied_ = false;
  bool security_locked_ = false;
  bool delete_pending_ = false;
  std::shared_ptr<const MessageTables> messages_;
  std::shared_ptr<const std::vector<std::uint8_t>> version_;
  FileNode* parent_ = nullptr;
  std::map<Text, std::shared_ptr<FileNode>> children_;
  std::map<Text, FileNode*> by_short_name_;
  std::vector<const Sharing*> opens_;
};

}  // namespace veldmark::simulated
