#include "platform/simulated/estate/LogFile.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>

namespace veldmark::simulated {
namespace {

struct Header {
  DWORD header_size;
  DWORD signature;
  DWORD major_version;
  DWORD minor_version;
  DWORD start;  // where the oldest record lies
  DWORD end;    // where the end record lies
  DWORD next_number;
  DWORD oldest_number;
  DWORD maximum_size;
  DWORD flags;
  DWORD retention;
  DWORD header_size_again;
};
constexpr std::size_t kHeaderSize = sizeof(Header);
static_assert(kHeaderSize == 48);

constexpr DWORD kDirty = 1;

struct EndRecord {
  DWORD size;
  DWORD ones;
  DWORD twos;
  DWORD threes;
  DWORD fours;
  DWORD start;
  DWORD end;
  DWORD next_number;
  DWORD oldest_number;
  DWORD size_again;
};
constexpr std::size_t kEndRecordSize = sizeof(EndRecord);
static_assert(kEndRecordSize == 40);
constexpr DWORD kDigits = 0x11111111;

// What fills the file's end where a record's fixed part doesn't fit.
constexpr DWORD kFill = 0x27;

constexpr std::size_t kSmallestRecord = sizeof(EVENTLOGRECORD) + sizeof(DWORD);

// The room behind the header, which is read around its end. Offsets are the file's.
class Ring {
 public:
  explicit Ring(std::span<const std::uint8_t> bytes)
      : bytes_(bytes.first(bytes.size() / sizeof(DWORD) * sizeof(DWORD))) {}

  std::size_t size() const { return bytes_.size() - kHeaderSize; }
  std::size_t file_end() const { return bytes_.size(); }
  bool IsOffset(std::size_t offset) const {
    return offset >= kHeaderSize && offset <= bytes_.size() && offset % sizeof(DWORD) == 0;
  }
  // The same place as an offset that something can lie at.
  std::size_t Normal(std::size_t offset) const {
    return offset == bytes_.size() ? kHeaderSize : offset;
  }
  // `distance` may not exceed the size.
  std::size_t Behind(std::size_t offset, std::size_t distance) const {
    offset += distance;
    return offset >= bytes_.size() ? offset - size() : offset;
  }
  void Copy(std::size_t offset, void* target, std::size_t count) const {
    const std::size_t first = std::min(count, bytes_.size() - offset);
    std::memcpy(target, bytes_.data() + offset, first);
    std::memcpy(static_cast<std::uint8_t*>(target) + first, bytes_.data() + kHeaderSize,
                count - first);
  }
  DWORD At(std::size_t offset) const {
    DWORD value;
    Copy(offset, &value, sizeof value);
    return value;
  }

  // The record that lies here whole, at most this long; nothing where there is none.
  std::optional<RawRecord> RecordAt(std::size_t offset, std::size_t most) const {
    if (most < kSmallestRecord || At(Behind(offset, 4)) != kEventRecordSignature) return {};
    const DWORD length = At(offset);
    if (length < kSmallestRecord || length > most || length % sizeof(DWORD) != 0) return {};
    if (At(Behind(offset, length - sizeof(DWORD))) != length) return {};
    RawRecord record(length);
    Copy(offset, record.data(), length);
    return record;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

using Records = std::vector<RawRecord>;

std::optional<Records> Walk(const Ring& ring, std::size_t start, std::size_t end) {
  if (!ring.IsOffset(start) || !ring.IsOffset(end)) return {};
  std::size_t offset = ring.Normal(start);
  end = ring.Normal(end);
  Records records;
  for (std::size_t left = ring.size(); offset != end;) {
    const std::size_t before_end = ring.file_end() - offset;
    if (before_end < sizeof(EVENTLOGRECORD) || ring.At(offset) == kFill) {
      if (before_end > left) return {};
      left -= before_end;
      offset = kHeaderSize;
      continue;
    }
    auto record = ring.RecordAt(offset, left);
    if (!record) return {};
    offset = ring.Behind(offset, record->size());
    left -= record->size();
    records.push_back(std::move(*record));
  }
  return records;
}

// The end record that was written last.
std::optional<EndRecord> FindEndRecord(const Ring& ring) {
  std::optional<EndRecord> found;
  if (ring.size() < kEndRecordSize) return found;
  for (std::size_t offset = kHeaderSize; offset < ring.file_end(); offset += sizeof(DWORD)) {
    EndRecord record;
    ring.Copy(offset, &record, sizeof record);
    const bool is_one = record.size == kEndRecordSize && record.size_again == kEndRecordSize &&
                        record.ones == kDigits && record.twos == 2 * kDigits &&
                        record.threes == 3 * kDigits && record.fours == 4 * kDigits &&
                        record.end == offset;
    if (is_one && (!found || record.next_number > found->next_number)) found = record;
  }
  return found;
}

// All whole records that lead up to the latest without a gap.
Records Salvage(const Ring& ring) {
  std::map<DWORD, RawRecord> found;
  for (std::size_t offset = kHeaderSize; offset < ring.file_end();) {
    auto record = ring.RecordAt(offset, ring.size());
    offset += record ? record->size() : sizeof(DWORD);
    if (!record) continue;
    DWORD number;
    std::memcpy(&number, record->data() + offsetof(EVENTLOGRECORD, RecordNumber), sizeof number);
    found.emplace(number, std::move(*record));
  }
  Records records;
  DWORD expected = found.empty() ? 0 : found.rbegin()->first;
  for (auto latest = found.rbegin(); latest != found.rend() && latest->first == expected;
       ++latest, --expected) {
    records.push_back(std::move(latest->second));
  }
  std::ranges::reverse(records);
  return records;
}

}  // namespace

std::optional<Records> ReadLogFile(std::span<const std::uint8_t> bytes) {
  Header header;
  if (bytes.size() < sizeof header) return {};
  std::memcpy(&header, bytes.data(), sizeof header);
  if (header.header_size != sizeof header || header.header_size_again != sizeof header ||
      header.signature != kEventRecordSignature) {
    return {};
  }
  const Ring ring(bytes);
  if ((header.flags & kDirty) == 0) return Walk(ring, header.start, header.end);
  if (const auto end = FindEndRecord(ring)) {
    if (auto records = Walk(ring, end->start, end->end)) return records;
  }
  return Salvage(ring);
}

std::vector<std::uint8_t> WriteLogFile(const RecordedLog& log) {
  std::vector<std::uint8_t> bytes(kHeaderSize);
  for (const RawRecord& record : log.records()) {
    bytes.insert(bytes.end(), record.begin(), record.end());
  }
  const auto end = static_cast<DWORD>(bytes.size());
  const EndRecord last{.size = kEndRecordSize,
                       .ones = kDigits,
                       .twos = 2 * kDigits,
                       .threes = 3 * kDigits,
                       .fours = 4 * kDigits,
                       .start = kHeaderSize,
                       .end = end,
                       .next_number = log.next(),
                       .oldest_number = log.oldest(),
                       .size_again = kEndRecordSize};
  bytes.resize(bytes.size() + sizeof last);
  std::memcpy(bytes.data() + end, &last, sizeof last);
  const Header header{.header_size = kHeaderSize,
                      .signature = kEventRecordSignature,
                      .major_version = 1,
                      .minor_version = 1,
                      .start = kHeaderSize,
                      .end = end,
                      .next_number = last.next_number,
                      .oldest_number = last.oldest_number,
                      .maximum_size = static_cast<DWORD>(bytes.size()),
                      .flags = 0,
                      .retention = 0,
                      .header_size_again = kHeaderSize};
  std::memcpy(bytes.data(), &header, sizeof header);
  return bytes;
}

}  // namespace veldmark::simulated
