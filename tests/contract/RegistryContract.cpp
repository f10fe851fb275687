#include <array>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "support/SecurityText.h"

namespace veldmark {
namespace {

constexpr LSTATUS kMissing = 2;
constexpr LSTATUS kDenied = 5;
constexpr LSTATUS kBadHandle = 6;
constexpr LSTATUS kBadParameter = 87;
constexpr LSTATUS kMoreData = 234;
constexpr LSTATUS kNoMore = 259;

class RegistryKeys : public Contract {
 protected:
  RegistryKeys() {
    DWORD disposition = 0;
    EXPECT_EQ(Create(kHkeyCurrentUser, path_.c_str(), key_, &disposition), 0);
    EXPECT_EQ(disposition, kRegCreatedNewKey);
  }

  LSTATUS Set(const RegistryKey& key, LPCWSTR name, DWORD type, const void* data, DWORD size) {
    return registry_.RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data), size);
  }
  LSTATUS Query(const RegistryKey& key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) {
    return registry_.RegQueryValueExW(key.Get(), name, nullptr, type, data, size);
  }
  LSTATUS Open(HKEY parent, LPCWSTR path, DWORD access, RegistryKey& result) {
    return registry_.RegOpenKeyExW(parent, path, 0, access, result.Receive());
  }
  LSTATUS Create(HKEY parent, LPCWSTR path, RegistryKey& result, DWORD* disposition = nullptr) {
    return registry_.RegCreateKeyExW(parent, path, 0, nullptr, 0, kKeyAllAccess, nullptr,
                                     result.Receive(), disposition);
  }
  // "Kind{ 1, 7, 4, 2, 9, 12 }": a key's class; its keys, with the greatest lengths of their names
  // and classes; and its values, with those of their names and data.
  std::string Described(const RegistryKey& key) {
    WCHAR kind[8];
    DWORD length = 8;
    std::array<DWORD, 6> n{};
    FILETIME written{};
    EXPECT_EQ(registry_.RegQueryInfoKeyW(key.Get(), kind, &length, nullptr, &n[0], &n[1], &n[2],
                                         &n[3], &n[4], &n[5], nullptr, &written),
              0);
    EXPECT_NE(written.dwHighDateTime, 0u);
    return ToUtf8({kind, length}) + testing::PrintToString(n);
  }

  const Text path_ = world_->scratch_key() + u"\\Key";
  RegistryKey key_{registry_};
};

TEST_F(RegistryKeys, HoldValuesOfAnyTypeUnderNamesWithoutCase) {
  // The NUL behind a text counts, although the size given leaves it out.
  EXPECT_EQ(Set(key_, u"Text", kRegSz, u"abc", 6), 0);
  EXPECT_EQ(Set(key_, u"Number", kRegDword, "\x2a\0\0", 4), 0);
  EXPECT_EQ(Set(key_, nullptr, kRegExpandSz, u"%x%", 8), 0);
  EXPECT_EQ(Set(key_, u"Nothing", kRegSz, nullptr, 0), 0);
  EXPECT_EQ(Set(key_, u"NUMBER", kRegBinary, "123", 3), 0) << "replaced, under the old name";
  const std::tuple<LPCWSTR, DWORD, DWORD, DWORD, LSTATUS> rows[] = {
      {u"text", 64, kRegSz, 8, 0},        {u"TEXT", 8, kRegSz, 8, 0},
      {u"text", 7, kRegSz, 8, kMoreData}, {u"number", 64, kRegBinary, 3, 0},
      {u"", 64, kRegExpandSz, 8, 0},      {nullptr, 64, kRegExpandSz, 8, 0},
      {u"nothing", 64, kRegSz, 0, 0},     {u"none", 64, 0, 64, kMissing}};
  for (const auto& [name, room, kind, length, status] : rows) {
    BYTE data[64];
    DWORD type = 0;
    DWORD size = room;
    EXPECT_EQ(Query(key_, name, &type, data, &size), status);
    if (status == kMissing) continue;
    EXPECT_EQ(size, length) << ToUtf8(name == nullptr ? u"" : name);
    EXPECT_EQ(type, kind);
    DWORD needed = 0;
    EXPECT_EQ(Query(key_, name, nullptr, nullptr, &needed), 0) << "the size alone";
    EXPECT_EQ(needed, length);
  }
  BYTE data[8];
  EXPECT_EQ(Query(key_, u"text", nullptr, data, nullptr), kBadParameter);
}

TEST_F(RegistryKeys, EnumerateEachValueOnceAndTellTheGreatestLengths) {
  Set(key_, u"a", kRegSz, u"12345", 12);
  Set(key_, u"long name", kRegDword, "\1\0\0", 4);
  Set(key_, u"", kRegSz, u"", 2);
  EXPECT_EQ(Described(key_), "{ 0, 0, 0, 3, 9, 12 }");
  std::set<Text> names;
  WCHAR name[10];
  BYTE data[12];
  DWORD length, size, type = 0;
  const auto enumerate = [&](DWORD index, DWORD name_room, DWORD room) {
    length = name_room;
    size = room;
    return registry_.RegEnumValueW(key_.Get(), index, name, &length, nullptr, &type, data, &size);
  };
  for (const DWORD index : {0u, 1u, 2u}) {
    ASSERT_EQ(enumerate(index, 10, 12), 0);
    EXPECT_EQ(Text(name), Text(name, length));
    EXPECT_EQ(type, length == 9 ? kRegDword : kRegSz);
    names.emplace(name, length);
    const DWORD whole = size;
    EXPECT_EQ(enumerate(index, length, 12), kMoreData) << "no room for the NUL";
    EXPECT_EQ(enumerate(index, 10, 1), kMoreData);
    EXPECT_EQ(size, whole);
  }
  EXPECT_EQ(enumerate(3, 10, 12), kNoMore);
  EXPECT_EQ(names, (std::set<Text>{u"", u"a", u"long name"}));
}

TEST_F(RegistryKeys, AreCreatedWithTheWayToThemAndDeletedWithoutSubKeys) {
  RegistryKey leaf(registry_), same(registry_);
  DWORD disposition = 0;
  EXPECT_EQ(Create(key_.Get(), u"Some\\Deep\\Leaf", leaf, &disposition), 0);
  EXPECT_EQ(disposition, kRegCreatedNewKey);
  EXPECT_EQ(Create(key_.Get(), u"SOME\\deep\\Leaf\\", same, &disposition), 0);
  EXPECT_EQ(disposition, kRegOpenedExistingKey);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"Some\\Deep"), kDenied) << "it has a sub-key";
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"None"), kMissing);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), nullptr), kBadParameter);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"Some\\Deep\\Leaf"), 0);
  DWORD size = 0;
  EXPECT_EQ(Query(leaf, u"x", nullptr, nullptr, &size), 1018);
  EXPECT_EQ(Set(leaf, u"x", kRegDword, "123", 4), 1018);
  EXPECT_EQ(Open(leaf.Get(), u"x", kKeyRead, same), 1018);
  RegistryKey deep(registry_);
  EXPECT_EQ(Open(key_.Get(), u"Some\\Deep", kKeyAllAccess, deep), 0);
  EXPECT_EQ(registry_.RegDeleteKeyW(deep.Get(), u""), 0) << "an empty name is the key itself";
  EXPECT_EQ(Open(key_.Get(), u"Some\\Deep", kKeyRead, same), kMissing);
}

TEST_F(RegistryKeys, HaveAClassAndLastOrNot) {
  Text kind = u"Kind";
  RegistryKey passing(registry_), below(registry_);
  const auto create = [&](HKEY parent, DWORD options, RegistryKey& made) {
    return registry_.RegCreateKeyExW(parent, u"Passing", 0, kind.data(), options, kKeyAllAccess,
                                     nullptr, made.Receive(), nullptr);
  };
  ASSERT_EQ(create(key_.Get(), kRegOptionVolatile, passing), 0);
  EXPECT_EQ(create(passing.Get(), 0, below), 1021);
  EXPECT_EQ(create(passing.Get(), kRegOptionVolatile, below), 0);
  EXPECT_EQ(Described(passing), "Kind{ 1, 7, 4, 0, 0, 0 }");
}

TEST_F(RegistryKeys, GiveWhatTheirHandleWasOpenedFor) {
  RegistryKey reader(registry_), writer(registry_);
  DWORD size = 0;
  Set(key_, u"x", kRegDword, "123", 4);
  ASSERT_EQ(Open(kHkeyCurrentUser, path_.c_str(), kKeyRead, reader), 0);
  ASSERT_EQ(Open(kHkeyCurrentUser, path_.c_str(), kKeySetValue, writer), 0);
  EXPECT_EQ(Set(reader, u"y", kRegDword, "123", 4), kDenied);
  EXPECT_EQ(registry_.RegDeleteValueW(reader.Get(), u"x"), kDenied);
  EXPECT_EQ(Query(writer, u"x", nullptr, nullptr, &size), kDenied);
  EXPECT_EQ(registry_.RegDeleteValueW(writer.Get(), u"X"), 0);
  EXPECT_EQ(registry_.RegDeleteValueW(writer.Get(), u"x"), kMissing);
}

TEST_F(RegistryKeys, FailWithTheCodeOfWhatIsWrongWithTheKey) {
  const Text long_name(300, u'k');
  const std::tuple<HKEY, Text, LSTATUS> rows[] = {{kHkeyCurrentUser, u"No such\\key", kMissing},
                                                  {kHkeyCurrentUser, u"\\Software", 161},
                                                  {kHkeyCurrentUser, u"Software\\", 0},
                                                  {kHkeyCurrentUser, u"", 0},
                                                  {kHkeyLocalMachine, u"SOFTWARE", 0},
                                                  {kHkeyCurrentUser, long_name, kBadParameter},
                                                  {HKEY{0}, u"Software", kBadHandle},
                                                  {HKEY{0x7770}, u"Software", kBadHandle}};
  for (const auto& [parent, path, code] : rows) {
    // What is handed out for a predefined key is that key, which needs no closing.
    HKEY result{0};
    const LSTATUS status = registry_.RegOpenKeyExW(parent, path.c_str(), 0, kKeyRead, &result);
    EXPECT_EQ(status, code) << ToUtf8(path);
    if (status == 0) {
      EXPECT_EQ(result == parent, path.empty());
      EXPECT_EQ(registry_.RegCloseKey(result), 0);
    }
  }
  EXPECT_EQ(registry_.RegOpenKeyExW(kHkeyCurrentUser, u"Software", 0, kKeyRead, nullptr),
            kBadParameter);
  EXPECT_EQ(registry_.RegCloseKey(HKEY{0}), kBadHandle);
  EXPECT_EQ(registry_.RegCloseKey(kHkeyCurrentUser), 0);
}

TEST_F(RegistryKeys, OfComputersAreReachedByNameAndByTheirRoots) {
  const Text name = u"\\\\" + OwnName();
  RegistryKey root(registry_), software(registry_);
  for (const LPCWSTR form : {LPCWSTR{nullptr}, name.c_str(), name.c_str() + 2}) {
    EXPECT_EQ(registry_.RegConnectRegistryW(form, kHkeyLocalMachine, root.Receive()), 0);
    EXPECT_EQ(Open(root.Get(), u"SOFTWARE", kKeyRead, software), 0);
  }
  EXPECT_EQ(registry_.RegConnectRegistryW(u"\\\\no-such-srv", kHkeyLocalMachine, root.Receive()),
            53);
  HKEY key{0};
  for (const HKEY root : {kHkeyClassesRoot, kHkeyUsers, kHkeyCurrentConfig}) {
    EXPECT_EQ(registry_.RegOpenKeyExW(root, u"", 0, kKeyRead, &key), 0);
    EXPECT_EQ(key, root);
  }
  EXPECT_NE(registry_.RegOpenKeyExW(kHkeyDynData, u"x", 0, kKeyRead, &key), 0);
}

TEST_F(RegistryKeys, TellTheNamesBelowThem) {
  RegistryKey child(registry_);
  for (const LPCWSTR name : {u"First", u"Second"}) {
    EXPECT_EQ(Create(key_.Get(), name, child), 0);
  }
  WCHAR name[1025];
  std::set<Text> names;
  for (const DWORD index : {0u, 1u}) {
    EXPECT_EQ(registry_.RegEnumKeyW(key_.Get(), index, name, 1024), 0);
    names.emplace(name);
    const auto length = static_cast<DWORD>(Text(name).size());
    EXPECT_EQ(registry_.RegEnumKeyW(key_.Get(), index, name, length), kMoreData);
    EXPECT_EQ(registry_.RegEnumKeyW(key_.Get(), index, name, length + 1), 0);
  }
  EXPECT_EQ(names, (std::set<Text>{u"First", u"Second"}));
  EXPECT_EQ(registry_.RegEnumKeyW(key_.Get(), 2, name, 1024), kNoMore);
  EXPECT_EQ(Described(key_), "{ 2, 6, 0, 0, 0, 0 }");
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"Second"), 0);
  EXPECT_EQ(registry_.RegEnumKeyW(child.Get(), 0, name, 1024), 1018);
  DWORD room = 1024;
  EXPECT_EQ(
      registry_.RegEnumValueW(child.Get(), 0, name, &room, nullptr, nullptr, nullptr, nullptr),
      1018);
  EXPECT_EQ(registry_.RegEnumKeyW(HKEY{0}, 0, name, 1024), kBadHandle);
}

TEST_F(RegistryKeys, HandOutDataAsItIsStoredHoweverOdd) {
  const std::pair<DWORD, std::string> rows[] = {
      {kRegSz, "abc"},      {kRegExpandSz, "a"},  {kRegMultiSz, std::string("a\0b\0", 4)},
      {kRegDword, "123"},   {kRegDword, "12345"}, {kRegDwordBigEndian, ""},
      {kRegLink, "ab"},     {kRegNone, "x"},      {8, "list"},
      {0x12345, "whatever"}};
  for (const auto& [kind, bytes] : rows) {
    // What stands behind isn't taken for the end of a text.
    const std::string with_rest = bytes + "more";
    ASSERT_EQ(Set(key_, u"Odd", kind, with_rest.data(), static_cast<DWORD>(bytes.size())), 0);
    WCHAR name[8];
    DWORD length = 8;
    DWORD listed = 0;
    DWORD needed = 0;
    EXPECT_EQ(
        registry_.RegEnumValueW(key_.Get(), 0, name, &length, nullptr, &listed, nullptr, &needed),
        0);
    EXPECT_EQ(listed, kind);
    EXPECT_EQ(needed, bytes.size()) << kind;
    BYTE data[32];
    DWORD size = 2 * needed + 1;
    DWORD type = 0;
    EXPECT_EQ(Query(key_, u"odd", &type, data, &size), 0);
    EXPECT_EQ(type, kind);
    EXPECT_EQ(std::string(data, data + size), bytes) << kind;
  }
}

TEST_F(RegistryKeys, TellTheirDescriptorAndOpenForThoseWhoBackUp) {
  const Text name = u"CURRENT_USER\\" + path_;
  const DWORD information = kOwnerSecurityInformation | kDaclSecurityInformation;
  std::vector<std::uint8_t> descriptor(1);
  DWORD size = 1;
  EXPECT_EQ(registry_.RegGetKeySecurity(key_.Get(), information, descriptor.data(), &size), 122);
  descriptor.resize(size);
  ASSERT_EQ(registry_.RegGetKeySecurity(key_.Get(), information, descriptor.data(), &size), 0);
  EXPECT_EQ(size, descriptor.size());
  EXPECT_TRUE(SecurityText::OfDescriptor(descriptor.data()).starts_with("O:"));
  EXPECT_EQ(registry_.RegGetKeySecurity(HKEY{0x7770}, information, descriptor.data(), &size),
            kBadHandle);
  RegistryKey blind(registry_);
  ASSERT_EQ(Open(kHkeyCurrentUser, path_.c_str(), kKeySetValue, blind), 0);
  EXPECT_EQ(registry_.RegGetKeySecurity(blind.Get(), information, descriptor.data(), &size),
            kDenied);

  ASSERT_EQ(SetList(name, 4, u"D:P(A;;KA;;;SY)", kProtectedList), 0u);
  RegistryKey opened(registry_);
  const auto back_up = [&] {
    return registry_.RegCreateKeyExW(kHkeyCurrentUser, path_.c_str(), 0, nullptr,
                                     kRegOptionBackupRestore, kKeyRead, nullptr, opened.Receive(),
                                     nullptr);
  };
  const LSTATUS denied = Open(kHkeyCurrentUser, path_.c_str(), kKeyRead, opened);
  const LSTATUS without_privilege = back_up();
  EXPECT_EQ(SetList(name, 4, u"D:P(A;;KA;;;WD)", kProtectedList), 0u);
  EXPECT_EQ(Open(kHkeyCurrentUser, path_.c_str(), kKeyRead, opened), 0);
  EXPECT_EQ(denied, kDenied);
  EXPECT_EQ(without_privilege, kDenied);
}

TEST_F(RegistryKeys, AndTextsAreExpandedByTheEnvironment) {
  const auto expand = [&](LPCWSTR text) {
    WCHAR buffer[256] = {};
    const DWORD needed = platform_.system.ExpandEnvironmentStringsW(text, nullptr, 0);
    EXPECT_LE(needed, 256u);
    EXPECT_EQ(platform_.system.ExpandEnvironmentStringsW(text, buffer, 256), needed);
    EXPECT_EQ(Text(buffer).size() + 1, needed);
    WCHAR narrow[1] = {};
    EXPECT_GE(platform_.system.ExpandEnvironmentStringsW(text, narrow, 1), needed);
    return Text(buffer);
  };
  const Text root = expand(u"%SystemRoot%");
  EXPECT_EQ(root.substr(1, 2), u":\\");
  EXPECT_EQ(expand(u"%systemroot%\\x;%SYSTEMROOT%"), root + u"\\x;" + root);
  EXPECT_EQ(expand(u"%no such%%systemroot%"), u"%no such%" + root);
  for (const LPCWSTR same : {u"", u"plain", u"100 %", u"%%", u"%no such%systemroot%"}) {
    EXPECT_EQ(expand(same), same);
  }
}

}  // namespace
}  // namespace veldmark
