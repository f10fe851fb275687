// Security descriptors, their strings and SIDs beside the bare platform calls, in one run:
//
//   bench_security.exe SERVER.dll FOLDER
//
// The files whose descriptors are read lie in a folder of its own, beside FOLDER.

#include <windows.h>

#include <oleauto.h>
#include <sddl.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "Measure.h"
#include "Veldmark2_h.h"
#include "apartment/Apartment.h"
#include "platform/windows/WindowsPlatform.h"
#include "security/BinarySid.h"

namespace {

using namespace bench;

constexpr int kFiles = 2000;
constexpr int kSids = 20000;
constexpr int kEntries = 40;
constexpr int kStrings = 500;

struct Sum {
  long long masks = 0;
  long long letters = 0;
  long long entries = 0;
  bool operator==(const Sum&) const = default;
};

// What a careful C++ program would do: owner, and mask and account of each entry, the account with
// its name if asked for.
Sum BareDescriptors(const std::vector<std::wstring>& paths, bool with_names) {
  Sum sum;
  std::vector<BYTE> buffer;
  for (const std::wstring& path : paths) {
    DWORD needed = 0;
    constexpr SECURITY_INFORMATION kParts = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    GetFileSecurityW(path.c_str(), kParts, nullptr, 0, &needed);
    buffer.resize(needed);
    if (!GetFileSecurityW(path.c_str(), kParts, buffer.data(), needed, &needed)) std::exit(1);
    BOOL present = FALSE;
    BOOL defaulted = FALSE;
    PACL list = nullptr;
    GetSecurityDescriptorDacl(buffer.data(), &present, &list, &defaulted);
    for (DWORD index = 0; present && list && index < list->AceCount; ++index) {
      void* entry = nullptr;
      GetAce(list, index, &entry);
      auto* const ace = static_cast<ACCESS_ALLOWED_ACE*>(entry);
      std::vector<BYTE> sid(GetLengthSid(&ace->SidStart));
      CopySid(static_cast<DWORD>(sid.size()), sid.data(), &ace->SidStart);
      sum.masks += static_cast<LONG>(ace->Mask);
      ++sum.entries;
      if (!with_names) continue;
      WCHAR name[256];
      WCHAR domain[256];
      DWORD name_size = 256;
      DWORD domain_size = 256;
      SID_NAME_USE use;
      if (LookupAccountSidW(nullptr, sid.data(), name, &name_size, domain, &domain_size, &use)) {
        sum.letters += name_size;
      }
    }
  }
  return sum;
}

Sum OurDescriptors(const std::vector<_CFile*>& files, bool with_names) {
  Sum sum;
  for (_CFile* file : files) {
    _CSecurityDescriptor* descriptor = nullptr;
    Check(file->GetSecurityDescriptor(&descriptor), "GetSecurityDescriptor");
    _CAcl* list = nullptr;
    _CAces* aces = nullptr;
    descriptor->GetDACL(&list);
    list->GetAces(&aces);
    long count = 0;
    aces->get_Count(&count);
    for (long index = 1; index <= count; ++index) {
      VARIANT position;
      V_VT(&position) = VT_I4;
      V_I4(&position) = index;
      _CAce* ace = nullptr;
      _CSid* sid = nullptr;
      aces->get_Item(&position, &ace);
      ace->GetSid(&sid);
      long mask = 0;
      ace->get_AccessMask(&mask);
      sum.masks += mask;
      ++sum.entries;
      if (with_names) {
        BSTR name = nullptr;
        sid->get_AccountName(&name);
        sum.letters += SysStringLen(name);
        SysFreeString(name);
      }
      sid->Release();
      ace->Release();
    }
    aces->Release();
    list->Release();
    descriptor->Release();
  }
  return sum;
}

void MeasureDescriptors(_SystemRoot* root, const std::wstring& folder) {
  std::vector<std::wstring> paths;
  std::vector<_CFile*> files;
  for (int i = 0; i < kFiles; ++i) {
    paths.push_back(folder + L"\\measured file " + std::to_wstring(i) + L".dat");
    const BSTR path = SysAllocString(paths.back().c_str());
    files.emplace_back();
    Check(root->GetFile(path, &files.back()), "GetFile");
    SysFreeString(path);
  }
  for (const bool with_names : {false, true}) {
    if (BareDescriptors(paths, with_names) != OurDescriptors(files, with_names)) {
      std::printf("the two walks of descriptors disagree\n");
      std::exit(1);
    }
    const double bare = Best([&] { BareDescriptors(paths, with_names); });
    const double ours = Best([&] { OurDescriptors(files, with_names); });
    Row(with_names ? "the same with names, against LookupAccountSidW too"
                   : "descriptors of 2,000 files, against GetFileSecurityW",
        ours * 1000, bare * 1000, "ms", 1.5);
  }
  for (_CFile* file : files) file->Release();
}

// Our own conversions against the platform's, with SIDs of a domain's accounts.
void MeasureSids() {
  veldmark::Apartment::Start(veldmark::WindowsPlatform());
  std::vector<std::wstring> texts;
  for (int i = 0; i < kSids; ++i) {
    texts.push_back(L"S-1-5-21-1085031214-1563985344-725345543-" + std::to_wstring(1000 + i));
  }
  std::vector<veldmark::SidWords> ours(kSids);
  std::vector<PSID> theirs(kSids);
  const double our_parse = Best([&] {
    for (int i = 0; i < kSids; ++i) {
      ours[i] = veldmark::GetSidBufferFromText(
          {reinterpret_cast<const char16_t*>(texts[i].data()), texts[i].size()});
    }
  });
  const double bare_parse = Best([&] {
    for (int i = 0; i < kSids; ++i) {
      LocalFree(theirs[i]);
      ConvertStringSidToSidW(texts[i].c_str(), &theirs[i]);
    }
  });
  Row("SID of a text, against ConvertStringSidToSidW", our_parse / kSids * 1e9,
      bare_parse / kSids * 1e9, "ns", 1);
  std::size_t our_length = 0;
  std::size_t bare_length = 0;
  const double our_print = Best([&] {
    for (int i = 0; i < kSids; ++i) {
      our_length += veldmark::SidToText(veldmark::AsBytes(ours[i])).size();
    }
  });
  const double bare_print = Best([&] {
    for (int i = 0; i < kSids; ++i) {
      LPWSTR text = nullptr;
      ConvertSidToStringSidW(theirs[i], &text);
      bare_length += wcslen(text);
      LocalFree(text);
    }
  });
  if (our_length != bare_length) {
    std::printf("the two texts of SIDs disagree\n");
    std::exit(1);
  }
  Row("text of a SID, against ConvertSidToStringSidW", our_print / kSids * 1e9,
      bare_print / kSids * 1e9, "ns", 1);
  for (PSID sid : theirs) LocalFree(sid);
  veldmark::Apartment::End();
}

// A descriptor string of 40 entries, with the platform's own converter beside ours.
void MeasureStrings(_SystemRoot* root) {
  std::wstring string = L"D:P";
  for (int i = 0; i < kEntries; ++i) {
    string += L"(A;OICI;FRFX;;;S-1-5-21-1085031214-1563985344-725345543-" +
              std::to_wstring(1000 + i) + L")";
  }
  const BSTR text = SysAllocString(string.c_str());
  const BSTR server = SysAllocString(L"");
  const double ours = Best([&] {
    for (int i = 0; i < kStrings; ++i) {
      _CSecurityDescriptor* descriptor = nullptr;
      Check(root->CreateSDFromStringSD(text, server, &descriptor), "CreateSDFromStringSD");
      descriptor->Release();
    }
  });
  const double bare = Best([&] {
    for (int i = 0; i < kStrings; ++i) {
      PSECURITY_DESCRIPTOR descriptor = nullptr;
      if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor,
                                                                nullptr)) {
        std::exit(1);
      }
      LocalFree(descriptor);
    }
  });
  Row("descriptor of a string of 40 entries, against the platform", ours / kStrings * 1e6,
      bare / kStrings * 1e6, "us", 1);
  SysFreeString(server);
  SysFreeString(text);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  const std::wstring folder = MakeFolder((std::wstring(argv[2]) + L" security").c_str(), kFiles);
  _SystemRoot* root = CreateRoot(argv[1]);
  Head();
  MeasureDescriptors(root, folder);
  MeasureSids();
  MeasureStrings(root);
  root->Release();
  CoUninitialize();
  return 0;
}
