#include <set>
#include <string>
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
  RegistryKeys() : key_(registry_) {
    DWORD disposition = 0;
    EXPECT_EQ(
        registry_.RegCreateKeyExW(kHkeyCurrentUser, (world_->scratch_key() + u"\\Key").c_str(), 0,
                                  nullptr, 0, kKeyAllAccess, nullptr, key_.Receive(), &disposition),
        0);
    EXPECT_EQ(disposition, kRegCreatedNewKey);
  }

  LSTATUS Set(LPCWSTR name, DWORD type, const void* data, DWORD size) {
    return registry_.RegSetValueExW(key_.Get(), name, 0, type, static_cast<const BYTE*>(data),
                                    size);
  }
  LSTATUS Query(LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) {
    return registry_.RegQueryValueExW(key_.Get(), name, nullptr, type, data, size);
  }
  LSTATUS Open(HKEY parent, LPCWSTR path, DWORD access, RegistryKey& result) {
    return registry_.RegOpenKeyExW(parent, path, 0, access, result.Receive());
  }
  LSTATUS Create(HKEY parent, LPCWSTR path, RegistryKey& result, DWORD& disposition) {
    return registry_.RegCreateKeyExW(parent, path, 0, nullptr, 0, kKeyAllAccess, nullptr,
                                     result.Receive(), &disposition);
  }

  RegistryKey key_;
};

TEST_F(RegistryKeys, HoldValuesOfAnyTypeUnderNamesWithoutCase) {
  // The NUL behind a text counts, although the size given leaves it out.
  EXPECT_EQ(Set(u"Text", kRegSz, u"abc", 6), 0);
  EXPECT_EQ(Set(u"Number", kRegDword, "\x2a\0\0", 4), 0);
  EXPECT_EQ(Set(nullptr, kRegExpandSz, u"%x%", 8), 0);
  EXPECT_EQ(Set(u"Nothing", kRegSz, nullptr, 0), 0);
  EXPECT_EQ(Set(u"NUMBER", kRegBinary, "123", 3), 0) << "replaced, under the old name";
  const std::tuple<LPCWSTR, DWORD, DWORD, DWORD, LSTATUS> rows[] = {
      {u"text", 64, kRegSz, 8, 0},        {u"TEXT", 8, kRegSz, 8, 0},
      {u"text", 7, kRegSz, 8, kMoreData}, {u"number", 64, kRegBinary, 3, 0},
      {u"", 64, kRegExpandSz, 8, 0},      {nullptr, 64, kRegExpandSz, 8, 0},
      {u"nothing", 64, kRegSz, 0, 0},     {u"none", 64, 0, 64, kMissing}};
  for (const auto& [name, room, kind, length, status] : rows) {
    BYTE data[64];
    DWORD type = 0;
    DWORD size = room;
    EXPECT_EQ(Query(name, &type, data, &size), status);
    if (status == kMissing) continue;
    EXPECT_EQ(size, length) << ToUtf8(name == nullptr ? u"" : name);
    EXPECT_EQ(type, kind);
    DWORD needed = 0;
    EXPECT_EQ(Query(name, nullptr, nullptr, &needed), 0) << "the size alone";
    EXPECT_EQ(needed, length);
  }
  BYTE data[8];
  EXPECT_EQ(Query(u"text", nullptr, data, nullptr), kBadParameter);
}

TEST_F(RegistryKeys, EnumerateEachValueOnceAndTellTheGreatestLengths) {
  DWORD values = 0;
  DWORD longest_name = 0;
  DWORD largest = 0;
  Set(u"a", kRegSz, u"12345", 12);
  Set(u"long name", kRegDword, "\1\0\0", 4);
  Set(u"", kRegSz, u"", 2);
  ASSERT_EQ(registry_.RegQueryInfoKeyW(key_.Get(), nullptr, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, &values, &longest_name, &largest, nullptr, nullptr),
            0);
  EXPECT_EQ(values, 3u);
  EXPECT_EQ(longest_name, 9u);
  EXPECT_EQ(largest, 12u);
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
    ASSERT_EQ(enumerate(index, longest_name + 1, largest), 0);
    EXPECT_EQ(Text(name), Text(name, length));
    EXPECT_EQ(type, length == 9 ? kRegDword : kRegSz);
    names.emplace(name, length);
    const DWORD whole = size;
    EXPECT_EQ(enumerate(index, length, largest), kMoreData) << "no room for the NUL";
    EXPECT_EQ(enumerate(index, longest_name + 1, 1), kMoreData);
    EXPECT_EQ(size, whole);
  }
  EXPECT_EQ(enumerate(3, longest_name + 1, largest), kNoMore);
  EXPECT_EQ(names, (std::set<Text>{u"", u"a", u"long name"}));
}

TEST_F(RegistryKeys, AreCreatedWithTheWayToThemAndDeletedWithoutSubKeys) {
  RegistryKey leaf(registry_);
  RegistryKey same(registry_);
  DWORD disposition = 0;
  EXPECT_EQ(Create(key_.Get(), u"Some\\Deep\\Leaf", leaf, disposition), 0);
  EXPECT_EQ(disposition, kRegCreatedNewKey);
  EXPECT_EQ(Create(key_.Get(), u"SOME\\deep\\Leaf\\", same, disposition), 0);
  EXPECT_EQ(disposition, kRegOpenedExistingKey);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"Some\\Deep"), kDenied) << "it has a sub-key";
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"None"), kMissing);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), nullptr), kBadParameter);
  EXPECT_EQ(registry_.RegDeleteKeyW(key_.Get(), u"Some\\Deep\\Leaf"), 0);
  DWORD size = 0;
  EXPECT_EQ(registry_.RegQueryValueExW(leaf.Get(), u"x", nullptr, nullptr, nullptr, &size), 1018);
  EXPECT_EQ(registry_.RegSetValueExW(leaf.Get(), u"x", 0, kRegDword,
                                     reinterpret_cast<const BYTE*>("123"), 4),
            1018);
  EXPECT_EQ(Open(leaf.Get(), u"x", kKeyRead, same), 1018);
  RegistryKey deep(registry_);
  EXPECT_EQ(Open(key_.Get(), u"Some\\Deep", kKeyAllAccess, deep), 0);
  EXPECT_EQ(registry_.RegDeleteKeyW(deep.Get(), u""), 0) << "an empty name is the key itself";
  EXPECT_EQ(Open(key_.Get(), u"Some\\Deep", kKeyRead, same), kMissing);
}

TEST_F(RegistryKeys, HaveAClassAndLastOrNot) {
  Text kind = u"Kind";
  RegistryKey passing(registry_);
  RegistryKey below(registry_);
  const auto create = [&](HKEY parent, DWORD options, RegistryKey& made) {
    return registry_.RegCreateKeyExW(parent, u"Passing", 0, kind.data(), options, kKeyAllAccess,
                                     nullptr, made.Receive(), nullptr);
  };
  ASSERT_EQ(create(key_.Get(), kRegOptionVolatile, passing), 0);
  EXPECT_EQ(create(passing.Get(), 0, below), 1021);
  EXPECT_EQ(create(passing.Get(), kRegOptionVolatile, below), 0);
  WCHAR text[8];
  DWORD length = 8, longest = 0;
  FILETIME written{};
  EXPECT_EQ(registry_.RegQueryInfoKeyW(passing.Get(), text, &length, nullptr, nullptr, nullptr,
                                       &longest, nullptr, nullptr, nullptr, nullptr, &written),
            0);
  EXPECT_EQ(Text(text, length), kind);
  EXPECT_EQ(longest, kind.size());
  EXPECT_NE(written.dwHighDateTime, 0u);
}

TEST_F(RegistryKeys, GiveWhatTheirHandleWasOpenedFor) {
  const Text path = world_->scratch_key() + u"\\Key";
  RegistryKey reader(registry_);
  RegistryKey writer(registry_);
  DWORD size = 0;
  Set(u"x", kRegDword, "123", 4);
  ASSERT_EQ(Open(kHkeyCurrentUser, path.c_str(), kKeyRead, reader), 0);
  ASSERT_EQ(Open(kHkeyCurrentUser, path.c_str(), kKeySetValue, writer), 0);
  EXPECT_EQ(registry_.RegSetValueExW(reader.Get(), u"y", 0, kRegDword,
                                     reinterpret_cast<const BYTE*>("123"), 4),
            kDenied);
  EXPECT_EQ(registry_.RegDeleteValueW(reader.Get(), u"x"), kDenied);
  EXPECT_EQ(registry_.RegQueryValueExW(writer.Get(), u"x", nullptr, nullptr, nullptr, &size),
            kDenied);
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
  RegistryKey root(registry_);
  RegistryKey software(registry_);
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
  DWORD disposition = 0;
  Create(key_.Get(), u"First", child, disposition);
  Create(key_.Get(), u"Second", child, disposition);
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
  DWORD count = 0, longest = 0;
  EXPECT_EQ(registry_.RegQueryInfoKeyW(key_.Get(), nullptr, nullptr, nullptr, &count, &longest,
                                       nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(count, 2u);
  EXPECT_EQ(longest, 6u);
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
    ASSERT_EQ(Set(u"Odd", kind, with_rest.data(), static_cast<DWORD>(bytes.size())), 0);
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
    EXPECT_EQ(Query(u"odd", &type, data, &size), 0);
    EXPECT_EQ(type, kind);
    EXPECT_EQ(std::string(data, data + size), bytes) << kind;
  }
}

TEST_F(RegistryKeys, TellTheirDescriptorAndOpenForThoseWhoBackUp) {
  const Text path = world_->scratch_key() + u"\\Key";
  const Text name = u"CURRENT_USER\\" + path;
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
  ASSERT_EQ(Open(kHkeyCurrentUser, path.c_str(), kKeySetValue, blind), 0);
  EXPECT_EQ(registry_.RegGetKeySecurity(blind.Get(), information, descriptor.data(), &size),
            kDenied);

  ASSERT_EQ(SetList(name, 4, u"D:P(A;;KA;;;SY)", kProtectedList), 0u);
  RegistryKey opened(registry_);
  const auto back_up = [&] {
    DWORD disposition = 0;
    return registry_.RegCreateKeyExW(kHkeyCurrentUser, path.c_str(), 0, nullptr,
                                     kRegOptionBackupRestore, kKeyRead, nullptr, opened.Receive(),
                                     &disposition);
  };
  const LSTATUS denied = Open(kHkeyCurrentUser, path.c_str(), kKeyRead, opened);
  const LSTATUS without_privilege = back_up();
  EXPECT_EQ(SetList(name, 4, u"D:P(A;;KA;;;WD)", kProtectedList), 0u);
  EXPECT_EQ(Open(kHkeyCurrentUser, path.c_str(), kKeyRead, opened), 0);
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
