#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kUniversalNameInfoLevel = 1;
inline constexpr DWORD kRemoteNameInfoLevel = 2;

// The text that the pointer names lies behind the record, in the same buffer.
struct UNIVERSAL_NAME_INFOW {
  LPWSTR lpUniversalName;
};

inline constexpr DWORD kResourceTypeAny = 0;
inline constexpr DWORD kResourceTypeDisk = 1;
inline constexpr DWORD kResourceTypePrint = 2;
inline constexpr DWORD kResourceGlobalNet = 2;
inline constexpr DWORD kDisplayTypeDomain = 1;
inline constexpr DWORD kDisplayTypeNetwork = 6;
inline constexpr DWORD kConnectUpdateProfile = 0x1;

struct NETRESOURCEW {
  DWORD dwScope;
  DWORD dwType;  // 0 any, 1 disk, 2 printer
  DWORD dwDisplayType;
  DWORD dwUsage;
  LPWSTR lpLocalName;   // "Z:" or "LPT1"; null for a connection without a local name
  LPWSTR lpRemoteName;  // "\\srv\share"
  LPWSTR lpComment;
  LPWSTR lpProvider;
};

struct NETINFOSTRUCT {
  DWORD cbStructure;  // set by the caller to the record's size
  DWORD dwProviderVersion;
  DWORD dwStatus;
  DWORD dwCharacteristics;
  UINT_PTR dwHandle;
  WORD wNetType;
  DWORD dwPrinters;
  DWORD dwDrives;
};

// Network connections and names. Each operation returns 0 or an error code.
class NetworkProvider {
 public:
  virtual ~NetworkProvider() = default;

  // Fills the caller's `buffer` of `*buffer_size` bytes with a UNIVERSAL_NAME_INFOW (level
  // kUniversalNameInfoLevel) that holds the network form of a path on a redirected drive: "Z:\a"
  // gives "\\srv\share\a". 234: the buffer is too small (a null buffer of size 0 included),
  // `*buffer_size` receives the size needed. 2250: the drive isn't redirected. 1200: the path
  // doesn't begin with a drive. 124: a level that there is none of. 1222: no network.
  virtual DWORD WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level, void* buffer,
                                      DWORD* buffer_size) = 0;

  // Connects to a resource. An empty `password` or `user_name` is taken as it stands, null as the
  // caller's own. `flags` with kConnectUpdateProfile keeps the connection over restarts. 85: the
  // local name is in use; 66: the resource isn't of `dwType`, or the local name isn't; 67: no such
  // resource; 53 or 1203: no such server; 86: wrong password; 1326: no such user; 5; 87: no remote
  // name; 1200: an ill-formed local name; 1208: the provider's own failure; 1222: no network.
  virtual DWORD WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource, LPCWSTR password,
                                    LPCWSTR user_name, DWORD flags) = 0;

  // Ends a connection by its local name, or the one without a local name by its remote name; with
  // kConnectUpdateProfile for good. 2250: there is none; 2401: files are open and `force` is 0;
  // 1208; 1222.
  virtual DWORD WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force) = 0;

  // Begins an enumeration of what lies below `parent`, by its remote name and provider; null: of
  // all networks (kResourceGlobalNet). `*enumeration` is closed with WNetCloseEnum. 1222: no
  // network; 1207: nothing can lie below it; 1204: no such provider.
  virtual DWORD WNetOpenEnumW(DWORD scope, DWORD type, DWORD usage, const NETRESOURCEW* parent,
                              HANDLE* enumeration) = 0;

  // Fills `buffer` of `*buffer_size` bytes with up to `*count` records (all bits set: as many as
  // fit), whose texts lie behind them in the buffer; `*count` receives how many. 259: there is
  // nothing more, and `*count` is as it was; 234: not even one fits, `*buffer_size` receives the
  // size needed; 6; 1222.
  virtual DWORD WNetEnumResourceW(HANDLE enumeration, DWORD* count, void* buffer,
                                  DWORD* buffer_size) = 0;

  // 6 for an enumeration that isn't open.
  virtual DWORD WNetCloseEnum(HANDLE enumeration) = 0;

  // Tells about a network by its provider's name; the number of its type is in `wNetType`. 1204: no
  // such provider; 87: another size.
  virtual DWORD WNetGetNetworkInformationW(LPCWSTR provider, NETINFOSTRUCT* information) = 0;
};

}  // namespace veldmark
