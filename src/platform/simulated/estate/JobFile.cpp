#include "platform/simulated/estate/JobFile.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace veldmark::simulated {
namespace {

constexpr WORD kFileVersion = 1;
constexpr std::size_t kReservedSize = 8;
constexpr std::size_t kSignatureSize = 2 + 2 + 64;
constexpr std::size_t kLongestField = 0xFFFF;

// The part of fixed length.
struct FixedPart {
  WORD product_version;
  WORD file_version;
  std::array<std::uint8_t, 16> uuid;
  WORD application_offset;  // of the variable part's texts
  WORD triggers_offset;
  WORD error_retry_count;
  WORD error_retry_interval;
  WORD idle_deadline;
  WORD idle_wait;
  DWORD priority;
  DWORD max_run_time;
  DWORD exit_code;
  HRESULT status;
  DWORD flags;
  SYSTEMTIME last_run;
};
static_assert(sizeof(FixedPart) == 68 && std::is_trivially_copyable_v<FixedPart>);
static_assert(sizeof(TASK_TRIGGER) == kTriggerSize);

// Takes values off the bytes, one after the other. Past their end it has failed, and gives zeros.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool has_failed() const { return failed_; }
  std::span<const std::uint8_t> Bytes(std::size_t count) {
    failed_ = failed_ || count > bytes_.size() - position_;
    if (failed_) return {};
    const auto taken = bytes_.subspan(position_, count);
    position_ += count;
    return taken;
  }
  template <typename Value>
  Value Take() {
    Value value{};
    const auto taken = Bytes(sizeof value);
    if (!taken.empty()) std::memcpy(&value, taken.data(), sizeof value);
    return value;
  }
  // The count of its characters with the NUL, then those; nothing but the count for an empty one.
  Text String() {
    const auto units = Bytes(Take<WORD>() * sizeof(char16_t));
    Text text(units.size() / sizeof(char16_t), u'\0');
    if (!text.empty()) std::memcpy(text.data(), units.data(), units.size());
    return text.substr(0, std::min(text.find(u'\0'), text.size()));
  }
  std::span<const std::uint8_t> Sized() { return Bytes(Take<WORD>()); }

  void MoveTo(std::size_t position) {
    failed_ = failed_ || position > bytes_.size();
    if (!failed_) position_ = position;
  }
  std::size_t left() const { return bytes_.size() - position_; }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t position_ = 0;
  bool failed_ = false;
};

class Writer {
 public:
  template <typename Value>
  void Put(const Value& value) {
    Bytes({reinterpret_cast<const std::uint8_t*>(&value), sizeof value});
  }
  void String(const Text& text) {
    const std::size_t length = text.empty() ? 0 : text.size() + 1;
    fits_ = fits_ && length <= kLongestField;
    Put(static_cast<WORD>(length));
    Bytes({reinterpret_cast<const std::uint8_t*>(text.c_str()), length * sizeof(char16_t)});
  }
  void Sized(std::span<const std::uint8_t> bytes) {
    fits_ = fits_ && bytes.size() <= kLongestField;
    Put(static_cast<WORD>(bytes.size()));
    Bytes(bytes);
  }
  void Bytes(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  // The next position as one of the file's offsets.
  WORD Offset() {
    fits_ = fits_ && bytes_.size() <= kLongestField;
    return static_cast<WORD>(bytes_.size());
  }
  bool fits() const { return fits_; }
  std::vector<std::uint8_t>& bytes() { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
  bool fits_ = true;
};

std::optional<JobFile> Parse(Reader& reader, const FixedPart& fixed) {
  JobFile job;
  job.product_version = fixed.product_version;
  job.uuid = fixed.uuid;
  job.error_retry_count = fixed.error_retry_count;
  job.error_retry_interval = fixed.error_retry_interval;
  job.idle_deadline = fixed.idle_deadline;
  job.idle_wait = fixed.idle_wait;
  job.priority = fixed.priority;
  job.max_run_time = fixed.max_run_time;
  job.exit_code = fixed.exit_code;
  job.status = fixed.status;
  job.flags = fixed.flags;
  job.last_run = fixed.last_run;
  job.running_instances = reader.Take<WORD>();

  reader.MoveTo(fixed.application_offset);
  for (Text* const text :
       {&job.application, &job.parameters, &job.working_directory, &job.author, &job.comment}) {
    *text = reader.String();
  }
  const auto user_data = reader.Sized();
  job.user_data.assign(user_data.begin(), user_data.end());
  const auto reserved = reader.Sized();
  if (reserved.size() >= kReservedSize) {
    Reader fields(reserved);
    job.start_error = fields.Take<HRESULT>();
    job.reserved_flags = fields.Take<DWORD>();
  }

  reader.MoveTo(fixed.triggers_offset);
  const std::size_t triggers = reader.Take<WORD>();
  while (job.triggers.size() < triggers && !reader.has_failed()) {
    job.triggers.push_back(reader.Take<TASK_TRIGGER>());
    if (job.triggers.back().cbTriggerSize != kTriggerSize) return std::nullopt;
  }
  if (reader.left() >= kSignatureSize) {
    const auto signature = reader.Bytes(kSignatureSize);
    job.signature.assign(signature.begin(), signature.end());
  }
  if (reader.has_failed()) return std::nullopt;
  return job;
}

}  // namespace

std::variant<JobFile, HRESULT> JobFile::Read(std::span<const std::uint8_t> bytes) {
  Reader reader(bytes);
  const auto fixed = reader.Take<FixedPart>();
  if (reader.has_failed()) return kInvalidTask;
  if (fixed.file_version != kFileVersion) return kUnknownObjectVersion;
  // Nothing may reach back into the part of fixed length.
  const std::size_t least = sizeof(FixedPart) + sizeof(WORD);
  if (fixed.application_offset < least || fixed.triggers_offset < least) return kInvalidTask;
  auto job = Parse(reader, fixed);
  if (!job) return kInvalidTask;
  return std::move(*job);
}

std::optional<std::vector<std::uint8_t>> JobFile::Write() const {
  FixedPart fixed{.product_version = product_version,
                  .file_version = kFileVersion,
                  .uuid = uuid,
                  .application_offset = 0,
                  .triggers_offset = 0,
                  .error_retry_count = error_retry_count,
                  .error_retry_interval = error_retry_interval,
                  .idle_deadline = idle_deadline,
                  .idle_wait = idle_wait,
                  .priority = priority,
                  .max_run_time = max_run_time,
                  .exit_code = exit_code,
                  .status = status,
                  .flags = flags,
                  .last_run = last_run};
  Writer writer;
  writer.Put(fixed);
  writer.Put(running_instances);
  fixed.application_offset = writer.Offset();
  for (const Text* const text :
       {&application, &parameters, &working_directory, &author, &comment}) {
    writer.String(*text);
  }
  writer.Sized(user_data);
  writer.Put(static_cast<WORD>(kReservedSize));
  writer.Put(start_error);
  writer.Put(reserved_flags);
  fixed.triggers_offset = writer.Offset();
  if (triggers.size() > kLongestField || !writer.fits()) return std::nullopt;
  writer.Put(static_cast<WORD>(triggers.size()));
  for (TASK_TRIGGER trigger : triggers) {
    trigger.cbTriggerSize = kTriggerSize;
    writer.Put(trigger);
  }
  writer.Bytes(signature);
  std::memcpy(writer.bytes().data(), &fixed, sizeof fixed);
  return std::move(writer.bytes());
}

}  // namespace veldmark::simulated
