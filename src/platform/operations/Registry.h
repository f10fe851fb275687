#pragma once

#include "platform/operations/FileSystem.h"
#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr HKEY kHkeyPerformanceData = PredefinedKey(0x80000004);
inline constexpr HKEY kHkeyCurrentConfig = PredefinedKey(0x80000005);
inline constexpr HKEY kHkeyDynData = PredefinedKey(0x80000006);

inline constexpr DWORD kKeyQueryValue = 0x0001;
inline constexpr DWORD kKeySetValue = 0x0002;
inline constexpr DWORD kKeyCreateSubKey = 0x0004;
inline constexpr DWORD kKeyEnumerateSubKeys = 0x0008;
inline constexpr DWORD kKeyRead = 0x20019;
inline constexpr DWORD kKeyWrite = 0x20006;
inline constexpr DWORD kKeyAllAccess = 0xF003F;

inline constexpr DWORD kRegNone = 0;
inline constexpr DWORD kRegSz = 1;
inline constexpr DWORD kRegExpandSz = 2;
inline constexpr DWORD kRegBinary = 3;
inline constexpr DWORD kRegDword = 4;
inline constexpr DWORD kRegDwordBigEndian = 5;
inline constexpr DWORD kRegLink = 6;
inline constexpr DWORD kRegMultiSz = 7;
inline constexpr DWORD kRegQword = 11;

inline constexpr DWORD kRegOptionNonVolatile = 0;
inline constexpr DWORD kRegOptionVolatile = 1;
inline constexpr DWORD kRegOptionBackupRestore = 4;

inline constexpr DWORD kRegCreatedNewKey = 1;
inline constexpr DWORD kRegOpenedExistingKey = 2;

// Registry keys and values. Each operation returns 0 or an error code. The codes common to all:
//    2  no such key or value
//    5  denied, or the key was opened without the access that the operation needs
//    6  `key` is no open key
//   87  a pointer that must not be null is
// 1018  the key was deleted meanwhile
// Names are compared without regard to case. Sizes of data are in bytes, of names in characters.
class Registry {
 public:
  virtual ~Registry() = default;

  // Opens kHkeyLocalMachine, kHkeyUsers or kHkeyCurrentConfig of a computer ("\\srv" or "srv"; null
  // or empty: this one, whose other roots it opens too). `*result` is a key that the caller closes
  // with RegCloseKey. 53: no such computer; 5; 6: another root.
  virtual LSTATUS RegConnectRegistryW(LPCWSTR machine_name, HKEY key, HKEY* result) = 0;

  // Opens a key below `key`; null or empty `sub_key` opens `key` anew. The caller closes `*result`
  // with RegCloseKey (a predefined key opened so comes back as itself, and closing it does
  // nothing).
  virtual LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR sub_key, DWORD options, DWORD access,
                                HKEY* result) = 0;

  // Opens a key and creates what is missing on the way. `*disposition` (may be null) tells which of
  // both. The caller closes `*result`. 1021: a stable key below a volatile one.
  // With kRegOptionBackupRestore an existing key is opened against its descriptor, for what reading
  // needs by SeBackupPrivilege and for what writing needs by SeRestorePrivilege, whatever `access`
  // says; 5 for a caller who has enabled neither.
  virtual LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR sub_key, DWORD reserved, LPWSTR key_class,
                                  DWORD options, DWORD access, const SECURITY_ATTRIBUTES* security,
                                  HKEY* result, DWORD* disposition) = 0;

  // Closes a key. Predefined keys may be passed.
  virtual LSTATUS RegCloseKey(HKEY key) = 0;

  // The numbers and the greatest lengths of sub-keys and values; every pointer may be null. Name
  // lengths count characters without the NUL, `max_value_size` bytes. `key_class` receives the
  // class, `*class_length` goes in as its size and comes back as its length (234 if too small).
  // Needs kKeyQueryValue.
  virtual LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR key_class, DWORD* class_length, DWORD* reserved,
                                   DWORD* sub_keys, DWORD* max_sub_key_length,
                                   DWORD* max_class_length, DWORD* values,
                                   DWORD* max_value_name_length, DWORD* max_value_size,
                                   DWORD* security_descriptor_size, FILETIME* last_write) = 0;

  // The name of the sub-key at `index`. `name_length` is the buffer's size in characters, the NUL
  // counted. 259: past the end; 234: the buffer is too small. Needs kKeyEnumerateSubKeys.
  virtual LSTATUS RegEnumKeyW(HKEY key, DWORD index, LPWSTR name, DWORD name_length) = 0;

  // The value at `index`: its name (empty for the default value), type and data. `*name_length`
  // goes in as the buffer's size with the NUL and comes back as the name's length without. `data`
  // and `data_size` may both be null; `*data_size` goes in as the buffer's size and comes back as
  // the data's. 259: past the end; 234: name or data buffer too small, `*data_size` then tells the
  // size needed. Needs kKeyQueryValue.
  virtual LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* name_length,
                                DWORD* reserved, DWORD* type, BYTE* data, DWORD* data_size) = 0;

  // A value's type and data. A null or empty name is the key's default value (2 if it isn't set).
  // With null `data` only the size. 234: the buffer is too small, `*data_size` receives the size
  // needed. Texts come back as stored, with or without their NUL. Needs kKeyQueryValue.
  virtual LSTATUS RegQueryValueExW(HKEY key, LPCWSTR value_name, DWORD* reserved, DWORD* type,
                                   BYTE* data, DWORD* data_size) = 0;

  // Stores a value; creates it if need be. `data_size` may leave out the NUL at the end of a text:
  // the operation looks at the character behind the data, which must be readable, and stores it too
  // if it is the NUL. Needs kKeySetValue.
  virtual LSTATUS RegSetValueExW(HKEY key, LPCWSTR value_name, DWORD reserved, DWORD type,
                                 const BYTE* data, DWORD data_size) = 0;

  // Removes a value; 2 if there is none. Needs kKeySetValue.
  virtual LSTATUS RegDeleteValueW(HKEY key, LPCWSTR value_name) = 0;

  // Removes the key `sub_key` below `key`, with its values; 5 if it has sub-keys. Open handles to
  // it stay open and answer 1018.
  virtual LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR sub_key) = 0;

  // Writes the parts of the key's descriptor that `information` (k...SecurityInformation) names, in
  // the self-relative form. `*size` goes in as the buffer's size and comes back as the
  // descriptor's. 122: too small (nothing is written). Needs kReadControl.
  virtual LSTATUS RegGetKeySecurity(HKEY key, DWORD information, void* descriptor, DWORD* size) = 0;
};

}  // namespace veldmark
