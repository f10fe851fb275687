#pragma once

// What the samples share: owners of interface pointers and texts, and how errors are told.

#include <windows.h>

#include <oleauto.h>

#include <cstdio>

#include "Veldmark2_h.h"

// Sole owner of an interface pointer.
template <class Interface>
class Pointer {
 public:
  Pointer() = default;
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;
  ~Pointer() {
    if (pointer_) pointer_->Release();
  }
  Interface** operator&() { return &pointer_; }
  Interface* operator->() const { return pointer_; }
  Interface* Get() const { return pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

// Sole owner of an automation text.
class Bstr {
 public:
  explicit Bstr(const wchar_t* text = nullptr) : text_(SysAllocString(text)) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }
  BSTR* operator&() { return &text_; }
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

inline void Print(const wchar_t* text) {
  char bytes[4096];
  if (WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr) > 0) {
    std::fputs(bytes, stdout);
  }
}

// Prints the error that the latest failed call left behind.
inline int Fail(HRESULT result) {
  Pointer<IErrorInfo> error;
  Bstr description;
  if (GetErrorInfo(0, &error) == S_OK) error->GetDescription(&description);
  std::printf("error 0x%08lX: ", static_cast<unsigned long>(result));
  Print(description ? static_cast<const wchar_t*>(description) : L"no description");
  std::puts("");
  return 1;
}
