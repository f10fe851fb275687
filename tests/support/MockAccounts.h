#pragma once

#include <gmock/gmock.h>

#include "platform/operations/AccountManagement.h"

namespace veldmark {

/// The account database by a test's own records; without word of a call it answers 0 and nothing.
class MockAccounts : public AccountManagement {
 public:
  MOCK_METHOD(DWORD, NetUserEnum, (LPCWSTR, DWORD, DWORD, BYTE**, DWORD, DWORD*, DWORD*, DWORD*),
              (override));
  MOCK_METHOD(DWORD, NetQueryDisplayInformation,
              (LPCWSTR, DWORD, DWORD, DWORD, DWORD, DWORD*, void**), (override));
  MOCK_METHOD(DWORD, NetUserGetInfo, (LPCWSTR, LPCWSTR, DWORD, BYTE**), (override));
  MOCK_METHOD(DWORD, NetUserSetInfo, (LPCWSTR, LPCWSTR, DWORD, const BYTE*, DWORD*), (override));
  MOCK_METHOD(DWORD, NetUserGetGroups, (LPCWSTR, LPCWSTR, DWORD, BYTE**, DWORD, DWORD*, DWORD*),
              (override));
  MOCK_METHOD(DWORD, NetUserGetLocalGroups,
              (LPCWSTR, LPCWSTR, DWORD, DWORD, BYTE**, DWORD, DWORD*, DWORD*), (override));
  MOCK_METHOD(DWORD, NetGroupEnum, (LPCWSTR, DWORD, BYTE**, DWORD, DWORD*, DWORD*, UINT_PTR*),
              (override));
  MOCK_METHOD(DWORD, NetGroupGetUsers,
              (LPCWSTR, LPCWSTR, DWORD, BYTE**, DWORD, DWORD*, DWORD*, UINT_PTR*), (override));
  MOCK_METHOD(DWORD, NetGroupGetInfo, (LPCWSTR, LPCWSTR, DWORD, BYTE**), (override));
  MOCK_METHOD(DWORD, NetGroupAdd, (LPCWSTR, DWORD, const BYTE*, DWORD*), (override));
  MOCK_METHOD(DWORD, NetGroupSetInfo, (LPCWSTR, LPCWSTR, DWORD, const BYTE*, DWORD*), (override));
  MOCK_METHOD(DWORD, NetLocalGroupEnum, (LPCWSTR, DWORD, BYTE**, DWORD, DWORD*, DWORD*, UINT_PTR*),
              (override));
  MOCK_METHOD(DWORD, NetLocalGroupGetMembers,
              (LPCWSTR, LPCWSTR, DWORD, BYTE**, DWORD, DWORD*, DWORD*, UINT_PTR*), (override));
  MOCK_METHOD(DWORD, NetLocalGroupGetInfo, (LPCWSTR, LPCWSTR, DWORD, BYTE**), (override));
  MOCK_METHOD(DWORD, NetLocalGroupAdd, (LPCWSTR, DWORD, const BYTE*, DWORD*), (override));
  MOCK_METHOD(DWORD, NetLocalGroupSetInfo, (LPCWSTR, LPCWSTR, DWORD, const BYTE*, DWORD*),
              (override));
  MOCK_METHOD(DWORD, NetUserModalsGet, (LPCWSTR, DWORD, BYTE**), (override));
};

}  // namespace veldmark
