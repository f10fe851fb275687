// Proves at compile time that the records and constants that we declare ourselves are the SDK's.

#include <windows.h>
#include <winsock2.h>

#include <lm.h>
#include <mstask.h>
#include <ntsecapi.h>
#include <sddl.h>
#include <winnetwk.h>
#include <winspool.h>

#include <cstddef>

#include "platform/operations/AccountManagement.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/EventLog.h"
#include "platform/operations/LocalSecurityAuthority.h"
#include "platform/operations/Messages.h"
#include "platform/operations/NetworkManagement.h"
#include "platform/operations/Printing.h"
#include "platform/operations/ServiceControl.h"
#include "platform/operations/Sockets.h"
#include "platform/operations/TaskScheduler.h"
#include "platform/operations/VersionInformation.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

static_assert(sizeof(BYTE) == sizeof(::BYTE));
static_assert(sizeof(WORD) == sizeof(::WORD));
static_assert(sizeof(DWORD) == sizeof(::DWORD));
static_assert(sizeof(LONG) == sizeof(::LONG));
static_assert(sizeof(UINT) == sizeof(::UINT));
static_assert(sizeof(INT) == sizeof(::INT));
static_assert(sizeof(BOOL) == sizeof(::BOOL));
static_assert(sizeof(LARGE_INTEGER) == sizeof(::LARGE_INTEGER));
static_assert(sizeof(UINT_PTR) == sizeof(::UINT_PTR));
static_assert(sizeof(HANDLE) == sizeof(::HANDLE));
static_assert(sizeof(HKEY) == sizeof(::HKEY));
static_assert(sizeof(HMODULE) == sizeof(::HMODULE));
static_assert(sizeof(LSTATUS) == sizeof(::LSTATUS));
static_assert(sizeof(WCHAR) == sizeof(wchar_t));

static_assert(sizeof(FILETIME) == sizeof(::FILETIME) && alignof(FILETIME) == alignof(::FILETIME));
static_assert(offsetof(FILETIME, dwLowDateTime) == offsetof(::FILETIME, dwLowDateTime));
static_assert(offsetof(FILETIME, dwHighDateTime) == offsetof(::FILETIME, dwHighDateTime));

static_assert(sizeof(WIN32_FIND_DATAW) == sizeof(::WIN32_FIND_DATAW) &&
              alignof(WIN32_FIND_DATAW) == alignof(::WIN32_FIND_DATAW));
static_assert(offsetof(WIN32_FIND_DATAW, dwFileAttributes) ==
              offsetof(::WIN32_FIND_DATAW, dwFileAttributes));
static_assert(offsetof(WIN32_FIND_DATAW, ftCreationTime) ==
              offsetof(::WIN32_FIND_DATAW, ftCreationTime));
static_assert(offsetof(WIN32_FIND_DATAW, ftLastAccessTime) ==
              offsetof(::WIN32_FIND_DATAW, ftLastAccessTime));
static_assert(offsetof(WIN32_FIND_DATAW, ftLastWriteTime) ==
              offsetof(::WIN32_FIND_DATAW, ftLastWriteTime));
static_assert(offsetof(WIN32_FIND_DATAW, nFileSizeHigh) ==
              offsetof(::WIN32_FIND_DATAW, nFileSizeHigh));
static_assert(offsetof(WIN32_FIND_DATAW, nFileSizeLow) ==
              offsetof(::WIN32_FIND_DATAW, nFileSizeLow));
static_assert(offsetof(WIN32_FIND_DATAW, dwReserved0) == offsetof(::WIN32_FIND_DATAW, dwReserved0));
static_assert(offsetof(WIN32_FIND_DATAW, dwReserved1) == offsetof(::WIN32_FIND_DATAW, dwReserved1));
static_assert(offsetof(WIN32_FIND_DATAW, cFileName) == offsetof(::WIN32_FIND_DATAW, cFileName));
static_assert(offsetof(WIN32_FIND_DATAW, cAlternateFileName) ==
              offsetof(::WIN32_FIND_DATAW, cAlternateFileName));

static_assert(sizeof(WIN32_FILE_ATTRIBUTE_DATA) == sizeof(::WIN32_FILE_ATTRIBUTE_DATA) &&
              alignof(WIN32_FILE_ATTRIBUTE_DATA) == alignof(::WIN32_FILE_ATTRIBUTE_DATA));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, dwFileAttributes) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, dwFileAttributes));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, ftCreationTime) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, ftCreationTime));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, ftLastAccessTime) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, ftLastAccessTime));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, ftLastWriteTime) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, ftLastWriteTime));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, nFileSizeHigh) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, nFileSizeHigh));
static_assert(offsetof(WIN32_FILE_ATTRIBUTE_DATA, nFileSizeLow) ==
              offsetof(::WIN32_FILE_ATTRIBUTE_DATA, nFileSizeLow));

static_assert(sizeof(SECURITY_ATTRIBUTES) == sizeof(::SECURITY_ATTRIBUTES) &&
              alignof(SECURITY_ATTRIBUTES) == alignof(::SECURITY_ATTRIBUTES));
static_assert(offsetof(SECURITY_ATTRIBUTES, nLength) == offsetof(::SECURITY_ATTRIBUTES, nLength));
static_assert(offsetof(SECURITY_ATTRIBUTES, lpSecurityDescriptor) ==
              offsetof(::SECURITY_ATTRIBUTES, lpSecurityDescriptor));
static_assert(offsetof(SECURITY_ATTRIBUTES, bInheritHandle) ==
              offsetof(::SECURITY_ATTRIBUTES, bInheritHandle));

static_assert(sizeof(SYSTEMTIME) == sizeof(::SYSTEMTIME) &&
              alignof(SYSTEMTIME) == alignof(::SYSTEMTIME));
static_assert(offsetof(SYSTEMTIME, wYear) == offsetof(::SYSTEMTIME, wYear));
static_assert(offsetof(SYSTEMTIME, wMonth) == offsetof(::SYSTEMTIME, wMonth));
static_assert(offsetof(SYSTEMTIME, wDayOfWeek) == offsetof(::SYSTEMTIME, wDayOfWeek));
static_assert(offsetof(SYSTEMTIME, wDay) == offsetof(::SYSTEMTIME, wDay));
static_assert(offsetof(SYSTEMTIME, wHour) == offsetof(::SYSTEMTIME, wHour));
static_assert(offsetof(SYSTEMTIME, wMinute) == offsetof(::SYSTEMTIME, wMinute));
static_assert(offsetof(SYSTEMTIME, wSecond) == offsetof(::SYSTEMTIME, wSecond));
static_assert(offsetof(SYSTEMTIME, wMilliseconds) == offsetof(::SYSTEMTIME, wMilliseconds));

static_assert(sizeof(NETRESOURCEW) == sizeof(::NETRESOURCEW) &&
              alignof(NETRESOURCEW) == alignof(::NETRESOURCEW));
static_assert(offsetof(NETRESOURCEW, dwScope) == offsetof(::NETRESOURCEW, dwScope));
static_assert(offsetof(NETRESOURCEW, dwType) == offsetof(::NETRESOURCEW, dwType));
static_assert(offsetof(NETRESOURCEW, dwDisplayType) == offsetof(::NETRESOURCEW, dwDisplayType));
static_assert(offsetof(NETRESOURCEW, dwUsage) == offsetof(::NETRESOURCEW, dwUsage));
static_assert(offsetof(NETRESOURCEW, lpLocalName) == offsetof(::NETRESOURCEW, lpLocalName));
static_assert(offsetof(NETRESOURCEW, lpRemoteName) == offsetof(::NETRESOURCEW, lpRemoteName));
static_assert(offsetof(NETRESOURCEW, lpComment) == offsetof(::NETRESOURCEW, lpComment));
static_assert(offsetof(NETRESOURCEW, lpProvider) == offsetof(::NETRESOURCEW, lpProvider));

static_assert(sizeof(SERVER_INFO_100) == sizeof(::SERVER_INFO_100) &&
              alignof(SERVER_INFO_100) == alignof(::SERVER_INFO_100));
static_assert(offsetof(SERVER_INFO_100, sv100_platform_id) ==
              offsetof(::SERVER_INFO_100, sv100_platform_id));
static_assert(offsetof(SERVER_INFO_100, sv100_name) == offsetof(::SERVER_INFO_100, sv100_name));

static_assert(sizeof(SERVER_INFO_101) == sizeof(::SERVER_INFO_101) &&
              alignof(SERVER_INFO_101) == alignof(::SERVER_INFO_101));
static_assert(offsetof(SERVER_INFO_101, sv101_platform_id) ==
              offsetof(::SERVER_INFO_101, sv101_platform_id));
static_assert(offsetof(SERVER_INFO_101, sv101_name) == offsetof(::SERVER_INFO_101, sv101_name));
static_assert(offsetof(SERVER_INFO_101, sv101_version_major) ==
              offsetof(::SERVER_INFO_101, sv101_version_major));
static_assert(offsetof(SERVER_INFO_101, sv101_version_minor) ==
              offsetof(::SERVER_INFO_101, sv101_version_minor));
static_assert(offsetof(SERVER_INFO_101, sv101_type) == offsetof(::SERVER_INFO_101, sv101_type));
static_assert(offsetof(SERVER_INFO_101, sv101_comment) ==
              offsetof(::SERVER_INFO_101, sv101_comment));

static_assert(sizeof(SERVER_INFO_102) == sizeof(::SERVER_INFO_102) &&
              alignof(SERVER_INFO_102) == alignof(::SERVER_INFO_102));
static_assert(offsetof(SERVER_INFO_102, sv102_platform_id) ==
              offsetof(::SERVER_INFO_102, sv102_platform_id));
static_assert(offsetof(SERVER_INFO_102, sv102_name) == offsetof(::SERVER_INFO_102, sv102_name));
static_assert(offsetof(SERVER_INFO_102, sv102_version_major) ==
              offsetof(::SERVER_INFO_102, sv102_version_major));
static_assert(offsetof(SERVER_INFO_102, sv102_version_minor) ==
              offsetof(::SERVER_INFO_102, sv102_version_minor));
static_assert(offsetof(SERVER_INFO_102, sv102_type) == offsetof(::SERVER_INFO_102, sv102_type));
static_assert(offsetof(SERVER_INFO_102, sv102_comment) ==
              offsetof(::SERVER_INFO_102, sv102_comment));
static_assert(offsetof(SERVER_INFO_102, sv102_users) == offsetof(::SERVER_INFO_102, sv102_users));
static_assert(offsetof(SERVER_INFO_102, sv102_disc) == offsetof(::SERVER_INFO_102, sv102_disc));
static_assert(offsetof(SERVER_INFO_102, sv102_hidden) == offsetof(::SERVER_INFO_102, sv102_hidden));
static_assert(offsetof(SERVER_INFO_102, sv102_announce) ==
              offsetof(::SERVER_INFO_102, sv102_announce));
static_assert(offsetof(SERVER_INFO_102, sv102_anndelta) ==
              offsetof(::SERVER_INFO_102, sv102_anndelta));
static_assert(offsetof(SERVER_INFO_102, sv102_licenses) ==
              offsetof(::SERVER_INFO_102, sv102_licenses));
static_assert(offsetof(SERVER_INFO_102, sv102_userpath) ==
              offsetof(::SERVER_INFO_102, sv102_userpath));

static_assert(sizeof(WKSTA_INFO_100) == sizeof(::WKSTA_INFO_100) &&
              alignof(WKSTA_INFO_100) == alignof(::WKSTA_INFO_100));
static_assert(offsetof(WKSTA_INFO_100, wki100_platform_id) ==
              offsetof(::WKSTA_INFO_100, wki100_platform_id));
static_assert(offsetof(WKSTA_INFO_100, wki100_computername) ==
              offsetof(::WKSTA_INFO_100, wki100_computername));
static_assert(offsetof(WKSTA_INFO_100, wki100_langroup) ==
              offsetof(::WKSTA_INFO_100, wki100_langroup));
static_assert(offsetof(WKSTA_INFO_100, wki100_ver_major) ==
              offsetof(::WKSTA_INFO_100, wki100_ver_major));
static_assert(offsetof(WKSTA_INFO_100, wki100_ver_minor) ==
              offsetof(::WKSTA_INFO_100, wki100_ver_minor));

static_assert(sizeof(SHARE_INFO_1) == sizeof(::SHARE_INFO_1) &&
              alignof(SHARE_INFO_1) == alignof(::SHARE_INFO_1));
static_assert(offsetof(SHARE_INFO_1, shi1_netname) == offsetof(::SHARE_INFO_1, shi1_netname));
static_assert(offsetof(SHARE_INFO_1, shi1_type) == offsetof(::SHARE_INFO_1, shi1_type));
static_assert(offsetof(SHARE_INFO_1, shi1_remark) == offsetof(::SHARE_INFO_1, shi1_remark));

static_assert(sizeof(SHARE_INFO_2) == sizeof(::SHARE_INFO_2) &&
              alignof(SHARE_INFO_2) == alignof(::SHARE_INFO_2));
static_assert(offsetof(SHARE_INFO_2, shi2_netname) == offsetof(::SHARE_INFO_2, shi2_netname));
static_assert(offsetof(SHARE_INFO_2, shi2_type) == offsetof(::SHARE_INFO_2, shi2_type));
static_assert(offsetof(SHARE_INFO_2, shi2_remark) == offsetof(::SHARE_INFO_2, shi2_remark));
static_assert(offsetof(SHARE_INFO_2, shi2_permissions) ==
              offsetof(::SHARE_INFO_2, shi2_permissions));
static_assert(offsetof(SHARE_INFO_2, shi2_max_uses) == offsetof(::SHARE_INFO_2, shi2_max_uses));
static_assert(offsetof(SHARE_INFO_2, shi2_current_uses) ==
              offsetof(::SHARE_INFO_2, shi2_current_uses));
static_assert(offsetof(SHARE_INFO_2, shi2_path) == offsetof(::SHARE_INFO_2, shi2_path));
static_assert(offsetof(SHARE_INFO_2, shi2_passwd) == offsetof(::SHARE_INFO_2, shi2_passwd));

static_assert(sizeof(USER_INFO_0) == sizeof(::USER_INFO_0) &&
              alignof(USER_INFO_0) == alignof(::USER_INFO_0));
static_assert(offsetof(USER_INFO_0, usri0_name) == offsetof(::USER_INFO_0, usri0_name));

static_assert(sizeof(USER_INFO_1) == sizeof(::USER_INFO_1) &&
              alignof(USER_INFO_1) == alignof(::USER_INFO_1));
static_assert(offsetof(USER_INFO_1, usri1_name) == offsetof(::USER_INFO_1, usri1_name));
static_assert(offsetof(USER_INFO_1, usri1_password) == offsetof(::USER_INFO_1, usri1_password));
static_assert(offsetof(USER_INFO_1, usri1_password_age) ==
              offsetof(::USER_INFO_1, usri1_password_age));
static_assert(offsetof(USER_INFO_1, usri1_priv) == offsetof(::USER_INFO_1, usri1_priv));
static_assert(offsetof(USER_INFO_1, usri1_home_dir) == offsetof(::USER_INFO_1, usri1_home_dir));
static_assert(offsetof(USER_INFO_1, usri1_comment) == offsetof(::USER_INFO_1, usri1_comment));
static_assert(offsetof(USER_INFO_1, usri1_flags) == offsetof(::USER_INFO_1, usri1_flags));
static_assert(offsetof(USER_INFO_1, usri1_script_path) ==
              offsetof(::USER_INFO_1, usri1_script_path));

static_assert(sizeof(USER_INFO_3) == sizeof(::USER_INFO_3) &&
              alignof(USER_INFO_3) == alignof(::USER_INFO_3));
static_assert(offsetof(USER_INFO_3, usri3_name) == offsetof(::USER_INFO_3, usri3_name));
static_assert(offsetof(USER_INFO_3, usri3_password) == offsetof(::USER_INFO_3, usri3_password));
static_assert(offsetof(USER_INFO_3, usri3_password_age) ==
              offsetof(::USER_INFO_3, usri3_password_age));
static_assert(offsetof(USER_INFO_3, usri3_priv) == offsetof(::USER_INFO_3, usri3_priv));
static_assert(offsetof(USER_INFO_3, usri3_home_dir) == offsetof(::USER_INFO_3, usri3_home_dir));
static_assert(offsetof(USER_INFO_3, usri3_comment) == offsetof(::USER_INFO_3, usri3_comment));
static_assert(offsetof(USER_INFO_3, usri3_flags) == offsetof(::USER_INFO_3, usri3_flags));
static_assert(offsetof(USER_INFO_3, usri3_script_path) ==
              offsetof(::USER_INFO_3, usri3_script_path));
static_assert(offsetof(USER_INFO_3, usri3_auth_flags) == offsetof(::USER_INFO_3, usri3_auth_flags));
static_assert(offsetof(USER_INFO_3, usri3_full_name) == offsetof(::USER_INFO_3, usri3_full_name));
static_assert(offsetof(USER_INFO_3, usri3_usr_comment) ==
              offsetof(::USER_INFO_3, usri3_usr_comment));
static_assert(offsetof(USER_INFO_3, usri3_parms) == offsetof(::USER_INFO_3, usri3_parms));
static_assert(offsetof(USER_INFO_3, usri3_workstations) ==
              offsetof(::USER_INFO_3, usri3_workstations));
static_assert(offsetof(USER_INFO_3, usri3_last_logon) == offsetof(::USER_INFO_3, usri3_last_logon));
static_assert(offsetof(USER_INFO_3, usri3_last_logoff) ==
              offsetof(::USER_INFO_3, usri3_last_logoff));
static_assert(offsetof(USER_INFO_3, usri3_acct_expires) ==
              offsetof(::USER_INFO_3, usri3_acct_expires));
static_assert(offsetof(USER_INFO_3, usri3_max_storage) ==
              offsetof(::USER_INFO_3, usri3_max_storage));
static_assert(offsetof(USER_INFO_3, usri3_units_per_week) ==
              offsetof(::USER_INFO_3, usri3_units_per_week));
static_assert(offsetof(USER_INFO_3, usri3_logon_hours) ==
              offsetof(::USER_INFO_3, usri3_logon_hours));
static_assert(offsetof(USER_INFO_3, usri3_bad_pw_count) ==
              offsetof(::USER_INFO_3, usri3_bad_pw_count));
static_assert(offsetof(USER_INFO_3, usri3_num_logons) == offsetof(::USER_INFO_3, usri3_num_logons));
static_assert(offsetof(USER_INFO_3, usri3_logon_server) ==
              offsetof(::USER_INFO_3, usri3_logon_server));
static_assert(offsetof(USER_INFO_3, usri3_country_code) ==
              offsetof(::USER_INFO_3, usri3_country_code));
static_assert(offsetof(USER_INFO_3, usri3_code_page) == offsetof(::USER_INFO_3, usri3_code_page));
static_assert(offsetof(USER_INFO_3, usri3_user_id) == offsetof(::USER_INFO_3, usri3_user_id));
static_assert(offsetof(USER_INFO_3, usri3_primary_group_id) ==
              offsetof(::USER_INFO_3, usri3_primary_group_id));
static_assert(offsetof(USER_INFO_3, usri3_profile) == offsetof(::USER_INFO_3, usri3_profile));
static_assert(offsetof(USER_INFO_3, usri3_home_dir_drive) ==
              offsetof(::USER_INFO_3, usri3_home_dir_drive));
static_assert(offsetof(USER_INFO_3, usri3_password_expired) ==
              offsetof(::USER_INFO_3, usri3_password_expired));

static_assert(sizeof(USER_INFO_10) == sizeof(::USER_INFO_10) &&
              alignof(USER_INFO_10) == alignof(::USER_INFO_10));
static_assert(offsetof(USER_INFO_10, usri10_name) == offsetof(::USER_INFO_10, usri10_name));
static_assert(offsetof(USER_INFO_10, usri10_comment) == offsetof(::USER_INFO_10, usri10_comment));
static_assert(offsetof(USER_INFO_10, usri10_usr_comment) ==
              offsetof(::USER_INFO_10, usri10_usr_comment));
static_assert(offsetof(USER_INFO_10, usri10_full_name) ==
              offsetof(::USER_INFO_10, usri10_full_name));

static_assert(sizeof(USER_INFO_1003) == sizeof(::USER_INFO_1003) &&
              alignof(USER_INFO_1003) == alignof(::USER_INFO_1003));
static_assert(offsetof(USER_INFO_1003, usri1003_password) ==
              offsetof(::USER_INFO_1003, usri1003_password));

static_assert(sizeof(NET_DISPLAY_USER) == sizeof(::NET_DISPLAY_USER) &&
              alignof(NET_DISPLAY_USER) == alignof(::NET_DISPLAY_USER));
static_assert(offsetof(NET_DISPLAY_USER, usri1_name) == offsetof(::NET_DISPLAY_USER, usri1_name));
static_assert(offsetof(NET_DISPLAY_USER, usri1_comment) ==
              offsetof(::NET_DISPLAY_USER, usri1_comment));
static_assert(offsetof(NET_DISPLAY_USER, usri1_flags) == offsetof(::NET_DISPLAY_USER, usri1_flags));
static_assert(offsetof(NET_DISPLAY_USER, usri1_full_name) ==
              offsetof(::NET_DISPLAY_USER, usri1_full_name));
static_assert(offsetof(NET_DISPLAY_USER, usri1_user_id) ==
              offsetof(::NET_DISPLAY_USER, usri1_user_id));
static_assert(offsetof(NET_DISPLAY_USER, usri1_next_index) ==
              offsetof(::NET_DISPLAY_USER, usri1_next_index));

static_assert(sizeof(GROUP_USERS_INFO_0) == sizeof(::GROUP_USERS_INFO_0) &&
              alignof(GROUP_USERS_INFO_0) == alignof(::GROUP_USERS_INFO_0));
static_assert(offsetof(GROUP_USERS_INFO_0, grui0_name) ==
              offsetof(::GROUP_USERS_INFO_0, grui0_name));

static_assert(sizeof(GROUP_INFO_0) == sizeof(::GROUP_INFO_0) &&
              alignof(GROUP_INFO_0) == alignof(::GROUP_INFO_0));
static_assert(offsetof(GROUP_INFO_0, grpi0_name) == offsetof(::GROUP_INFO_0, grpi0_name));

static_assert(sizeof(GROUP_INFO_1) == sizeof(::GROUP_INFO_1) &&
              alignof(GROUP_INFO_1) == alignof(::GROUP_INFO_1));
static_assert(offsetof(GROUP_INFO_1, grpi1_name) == offsetof(::GROUP_INFO_1, grpi1_name));
static_assert(offsetof(GROUP_INFO_1, grpi1_comment) == offsetof(::GROUP_INFO_1, grpi1_comment));

static_assert(sizeof(GROUP_INFO_2) == sizeof(::GROUP_INFO_2) &&
              alignof(GROUP_INFO_2) == alignof(::GROUP_INFO_2));
static_assert(offsetof(GROUP_INFO_2, grpi2_name) == offsetof(::GROUP_INFO_2, grpi2_name));
static_assert(offsetof(GROUP_INFO_2, grpi2_comment) == offsetof(::GROUP_INFO_2, grpi2_comment));
static_assert(offsetof(GROUP_INFO_2, grpi2_group_id) == offsetof(::GROUP_INFO_2, grpi2_group_id));
static_assert(offsetof(GROUP_INFO_2, grpi2_attributes) ==
              offsetof(::GROUP_INFO_2, grpi2_attributes));

static_assert(sizeof(LOCALGROUP_USERS_INFO_0) == sizeof(::LOCALGROUP_USERS_INFO_0) &&
              alignof(LOCALGROUP_USERS_INFO_0) == alignof(::LOCALGROUP_USERS_INFO_0));
static_assert(offsetof(LOCALGROUP_USERS_INFO_0, lgrui0_name) ==
              offsetof(::LOCALGROUP_USERS_INFO_0, lgrui0_name));

static_assert(sizeof(LOCALGROUP_INFO_1) == sizeof(::LOCALGROUP_INFO_1) &&
              alignof(LOCALGROUP_INFO_1) == alignof(::LOCALGROUP_INFO_1));
static_assert(offsetof(LOCALGROUP_INFO_1, lgrpi1_name) ==
              offsetof(::LOCALGROUP_INFO_1, lgrpi1_name));
static_assert(offsetof(LOCALGROUP_INFO_1, lgrpi1_comment) ==
              offsetof(::LOCALGROUP_INFO_1, lgrpi1_comment));

static_assert(sizeof(LOCALGROUP_MEMBERS_INFO_0) == sizeof(::LOCALGROUP_MEMBERS_INFO_0) &&
              alignof(LOCALGROUP_MEMBERS_INFO_0) == alignof(::LOCALGROUP_MEMBERS_INFO_0));
static_assert(offsetof(LOCALGROUP_MEMBERS_INFO_0, lgrmi0_sid) ==
              offsetof(::LOCALGROUP_MEMBERS_INFO_0, lgrmi0_sid));

static_assert(sizeof(USER_MODALS_INFO_0) == sizeof(::USER_MODALS_INFO_0) &&
              alignof(USER_MODALS_INFO_0) == alignof(::USER_MODALS_INFO_0));
static_assert(offsetof(USER_MODALS_INFO_0, usrmod0_min_passwd_len) ==
              offsetof(::USER_MODALS_INFO_0, usrmod0_min_passwd_len));
static_assert(offsetof(USER_MODALS_INFO_0, usrmod0_max_passwd_age) ==
              offsetof(::USER_MODALS_INFO_0, usrmod0_max_passwd_age));
static_assert(offsetof(USER_MODALS_INFO_0, usrmod0_min_passwd_age) ==
              offsetof(::USER_MODALS_INFO_0, usrmod0_min_passwd_age));
static_assert(offsetof(USER_MODALS_INFO_0, usrmod0_force_logoff) ==
              offsetof(::USER_MODALS_INFO_0, usrmod0_force_logoff));
static_assert(offsetof(USER_MODALS_INFO_0, usrmod0_password_hist_len) ==
              offsetof(::USER_MODALS_INFO_0, usrmod0_password_hist_len));

static_assert(sizeof(USER_MODALS_INFO_3) == sizeof(::USER_MODALS_INFO_3) &&
              alignof(USER_MODALS_INFO_3) == alignof(::USER_MODALS_INFO_3));
static_assert(offsetof(USER_MODALS_INFO_3, usrmod3_lockout_duration) ==
              offsetof(::USER_MODALS_INFO_3, usrmod3_lockout_duration));
static_assert(offsetof(USER_MODALS_INFO_3, usrmod3_lockout_observation_window) ==
              offsetof(::USER_MODALS_INFO_3, usrmod3_lockout_observation_window));
static_assert(offsetof(USER_MODALS_INFO_3, usrmod3_lockout_threshold) ==
              offsetof(::USER_MODALS_INFO_3, usrmod3_lockout_threshold));

static_assert(sizeof(NETINFOSTRUCT) == sizeof(::NETINFOSTRUCT) &&
              alignof(NETINFOSTRUCT) == alignof(::NETINFOSTRUCT));
static_assert(offsetof(NETINFOSTRUCT, cbStructure) == offsetof(::NETINFOSTRUCT, cbStructure));
static_assert(offsetof(NETINFOSTRUCT, dwProviderVersion) ==
              offsetof(::NETINFOSTRUCT, dwProviderVersion));
static_assert(offsetof(NETINFOSTRUCT, dwStatus) == offsetof(::NETINFOSTRUCT, dwStatus));
static_assert(offsetof(NETINFOSTRUCT, dwCharacteristics) ==
              offsetof(::NETINFOSTRUCT, dwCharacteristics));
static_assert(offsetof(NETINFOSTRUCT, dwHandle) == offsetof(::NETINFOSTRUCT, dwHandle));
static_assert(offsetof(NETINFOSTRUCT, wNetType) == offsetof(::NETINFOSTRUCT, wNetType));
static_assert(offsetof(NETINFOSTRUCT, dwPrinters) == offsetof(::NETINFOSTRUCT, dwPrinters));
static_assert(offsetof(NETINFOSTRUCT, dwDrives) == offsetof(::NETINFOSTRUCT, dwDrives));

static_assert(sizeof(LSA_UNICODE_STRING) == sizeof(::LSA_UNICODE_STRING) &&
              alignof(LSA_UNICODE_STRING) == alignof(::LSA_UNICODE_STRING));
static_assert(offsetof(LSA_UNICODE_STRING, Length) == offsetof(::LSA_UNICODE_STRING, Length));
static_assert(offsetof(LSA_UNICODE_STRING, MaximumLength) ==
              offsetof(::LSA_UNICODE_STRING, MaximumLength));
static_assert(offsetof(LSA_UNICODE_STRING, Buffer) == offsetof(::LSA_UNICODE_STRING, Buffer));

static_assert(sizeof(LSA_OBJECT_ATTRIBUTES) == sizeof(::LSA_OBJECT_ATTRIBUTES) &&
              alignof(LSA_OBJECT_ATTRIBUTES) == alignof(::LSA_OBJECT_ATTRIBUTES));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, Length) == offsetof(::LSA_OBJECT_ATTRIBUTES, Length));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, RootDirectory) ==
              offsetof(::LSA_OBJECT_ATTRIBUTES, RootDirectory));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, ObjectName) ==
              offsetof(::LSA_OBJECT_ATTRIBUTES, ObjectName));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, Attributes) ==
              offsetof(::LSA_OBJECT_ATTRIBUTES, Attributes));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, SecurityDescriptor) ==
              offsetof(::LSA_OBJECT_ATTRIBUTES, SecurityDescriptor));
static_assert(offsetof(LSA_OBJECT_ATTRIBUTES, SecurityQualityOfService) ==
              offsetof(::LSA_OBJECT_ATTRIBUTES, SecurityQualityOfService));

static_assert(sizeof(LSA_ENUMERATION_INFORMATION) == sizeof(::LSA_ENUMERATION_INFORMATION) &&
              alignof(LSA_ENUMERATION_INFORMATION) == alignof(::LSA_ENUMERATION_INFORMATION));
static_assert(offsetof(LSA_ENUMERATION_INFORMATION, Sid) ==
              offsetof(::LSA_ENUMERATION_INFORMATION, Sid));

static_assert(sizeof(HOSTENT) == sizeof(::HOSTENT) && alignof(HOSTENT) == alignof(::HOSTENT));
static_assert(offsetof(HOSTENT, h_name) == offsetof(::HOSTENT, h_name));
static_assert(offsetof(HOSTENT, h_aliases) == offsetof(::HOSTENT, h_aliases));
static_assert(offsetof(HOSTENT, h_addrtype) == offsetof(::HOSTENT, h_addrtype));
static_assert(offsetof(HOSTENT, h_length) == offsetof(::HOSTENT, h_length));
static_assert(offsetof(HOSTENT, h_addr_list) == offsetof(::HOSTENT, h_addr_list));

static_assert(sizeof(TIME_ZONE_INFORMATION) == sizeof(::TIME_ZONE_INFORMATION) &&
              alignof(TIME_ZONE_INFORMATION) == alignof(::TIME_ZONE_INFORMATION));
static_assert(offsetof(TIME_ZONE_INFORMATION, Bias) == offsetof(::TIME_ZONE_INFORMATION, Bias));
static_assert(offsetof(TIME_ZONE_INFORMATION, StandardName) ==
              offsetof(::TIME_ZONE_INFORMATION, StandardName));
static_assert(offsetof(TIME_ZONE_INFORMATION, StandardDate) ==
              offsetof(::TIME_ZONE_INFORMATION, StandardDate));
static_assert(offsetof(TIME_ZONE_INFORMATION, StandardBias) ==
              offsetof(::TIME_ZONE_INFORMATION, StandardBias));
static_assert(offsetof(TIME_ZONE_INFORMATION, DaylightName) ==
              offsetof(::TIME_ZONE_INFORMATION, DaylightName));
static_assert(offsetof(TIME_ZONE_INFORMATION, DaylightDate) ==
              offsetof(::TIME_ZONE_INFORMATION, DaylightDate));
static_assert(offsetof(TIME_ZONE_INFORMATION, DaylightBias) ==
              offsetof(::TIME_ZONE_INFORMATION, DaylightBias));

static_assert(sizeof(UNIVERSAL_NAME_INFOW) == sizeof(::UNIVERSAL_NAME_INFOW) &&
              alignof(UNIVERSAL_NAME_INFOW) == alignof(::UNIVERSAL_NAME_INFOW));
static_assert(offsetof(UNIVERSAL_NAME_INFOW, lpUniversalName) ==
              offsetof(::UNIVERSAL_NAME_INFOW, lpUniversalName));

static_assert(sizeof(LUID) == sizeof(::LUID) && alignof(LUID) == alignof(::LUID));
static_assert(offsetof(LUID, LowPart) == offsetof(::LUID, LowPart));
static_assert(offsetof(LUID, HighPart) == offsetof(::LUID, HighPart));

static_assert(sizeof(LUID_AND_ATTRIBUTES) == sizeof(::LUID_AND_ATTRIBUTES) &&
              alignof(LUID_AND_ATTRIBUTES) == alignof(::LUID_AND_ATTRIBUTES));
static_assert(offsetof(LUID_AND_ATTRIBUTES, Luid) == offsetof(::LUID_AND_ATTRIBUTES, Luid));
static_assert(offsetof(LUID_AND_ATTRIBUTES, Attributes) ==
              offsetof(::LUID_AND_ATTRIBUTES, Attributes));

static_assert(sizeof(TOKEN_PRIVILEGES) == sizeof(::TOKEN_PRIVILEGES) &&
              alignof(TOKEN_PRIVILEGES) == alignof(::TOKEN_PRIVILEGES));
static_assert(offsetof(TOKEN_PRIVILEGES, PrivilegeCount) ==
              offsetof(::TOKEN_PRIVILEGES, PrivilegeCount));
static_assert(offsetof(TOKEN_PRIVILEGES, Privileges) == offsetof(::TOKEN_PRIVILEGES, Privileges));

static_assert(sizeof(GENERIC_MAPPING) == sizeof(::GENERIC_MAPPING) &&
              alignof(GENERIC_MAPPING) == alignof(::GENERIC_MAPPING));
static_assert(offsetof(GENERIC_MAPPING, GenericRead) == offsetof(::GENERIC_MAPPING, GenericRead));
static_assert(offsetof(GENERIC_MAPPING, GenericWrite) == offsetof(::GENERIC_MAPPING, GenericWrite));
static_assert(offsetof(GENERIC_MAPPING, GenericExecute) ==
              offsetof(::GENERIC_MAPPING, GenericExecute));
static_assert(offsetof(GENERIC_MAPPING, GenericAll) == offsetof(::GENERIC_MAPPING, GenericAll));

static_assert(sizeof(GUID) == sizeof(::GUID) && alignof(GUID) == alignof(::GUID));
static_assert(offsetof(GUID, Data1) == offsetof(::GUID, Data1));
static_assert(offsetof(GUID, Data2) == offsetof(::GUID, Data2));
static_assert(offsetof(GUID, Data3) == offsetof(::GUID, Data3));
static_assert(offsetof(GUID, Data4) == offsetof(::GUID, Data4));

static_assert(sizeof(OBJECT_TYPE_LIST) == sizeof(::OBJECT_TYPE_LIST) &&
              alignof(OBJECT_TYPE_LIST) == alignof(::OBJECT_TYPE_LIST));
static_assert(offsetof(OBJECT_TYPE_LIST, Level) == offsetof(::OBJECT_TYPE_LIST, Level));
static_assert(offsetof(OBJECT_TYPE_LIST, Sbz) == offsetof(::OBJECT_TYPE_LIST, Sbz));
static_assert(offsetof(OBJECT_TYPE_LIST, ObjectType) == offsetof(::OBJECT_TYPE_LIST, ObjectType));

static_assert(sizeof(SHARE_INFO_502) == sizeof(::SHARE_INFO_502) &&
              alignof(SHARE_INFO_502) == alignof(::SHARE_INFO_502));
static_assert(offsetof(SHARE_INFO_502, shi502_netname) ==
              offsetof(::SHARE_INFO_502, shi502_netname));
static_assert(offsetof(SHARE_INFO_502, shi502_type) == offsetof(::SHARE_INFO_502, shi502_type));
static_assert(offsetof(SHARE_INFO_502, shi502_remark) == offsetof(::SHARE_INFO_502, shi502_remark));
static_assert(offsetof(SHARE_INFO_502, shi502_permissions) ==
              offsetof(::SHARE_INFO_502, shi502_permissions));
static_assert(offsetof(SHARE_INFO_502, shi502_max_uses) ==
              offsetof(::SHARE_INFO_502, shi502_max_uses));
static_assert(offsetof(SHARE_INFO_502, shi502_current_uses) ==
              offsetof(::SHARE_INFO_502, shi502_current_uses));
static_assert(offsetof(SHARE_INFO_502, shi502_path) == offsetof(::SHARE_INFO_502, shi502_path));
static_assert(offsetof(SHARE_INFO_502, shi502_passwd) == offsetof(::SHARE_INFO_502, shi502_passwd));
static_assert(offsetof(SHARE_INFO_502, shi502_reserved) ==
              offsetof(::SHARE_INFO_502, shi502_reserved));
static_assert(offsetof(SHARE_INFO_502, shi502_security_descriptor) ==
              offsetof(::SHARE_INFO_502, shi502_security_descriptor));

// ErrorCodes.h
static_assert(kErrorSuccess == ERROR_SUCCESS);
static_assert(kErrorInvalidFunction == ERROR_INVALID_FUNCTION);
static_assert(kErrorFileNotFound == ERROR_FILE_NOT_FOUND);
static_assert(kErrorPathNotFound == ERROR_PATH_NOT_FOUND);
static_assert(kErrorAccessDenied == ERROR_ACCESS_DENIED);
static_assert(kErrorInvalidHandle == ERROR_INVALID_HANDLE);
static_assert(kErrorNotEnoughMemory == ERROR_NOT_ENOUGH_MEMORY);
static_assert(kErrorInvalidAccess == ERROR_INVALID_ACCESS);
static_assert(kErrorInvalidData == ERROR_INVALID_DATA);
static_assert(kErrorInvalidDrive == ERROR_INVALID_DRIVE);
static_assert(kErrorCurrentDirectory == ERROR_CURRENT_DIRECTORY);
static_assert(kErrorNoMoreFiles == ERROR_NO_MORE_FILES);
static_assert(kErrorWriteProtect == ERROR_WRITE_PROTECT);
static_assert(kErrorSharingViolation == ERROR_SHARING_VIOLATION);
static_assert(kErrorHandleEof == ERROR_HANDLE_EOF);
static_assert(kErrorNotSupported == ERROR_NOT_SUPPORTED);
static_assert(kErrorBadNetPath == ERROR_BAD_NETPATH);
static_assert(kErrorNetworkBusy == ERROR_NETWORK_BUSY);
static_assert(kErrorNetworkAccessDenied == ERROR_NETWORK_ACCESS_DENIED);
static_assert(kErrorBadNetName == ERROR_BAD_NET_NAME);
static_assert(kErrorFileExists == ERROR_FILE_EXISTS);
static_assert(kErrorInvalidParameter == ERROR_INVALID_PARAMETER);
static_assert(kErrorDiskFull == ERROR_DISK_FULL);
static_assert(kErrorInsufficientBuffer == ERROR_INSUFFICIENT_BUFFER);
static_assert(kErrorInvalidName == ERROR_INVALID_NAME);
static_assert(kErrorInvalidLevel == ERROR_INVALID_LEVEL);
static_assert(kErrorModNotFound == ERROR_MOD_NOT_FOUND);
static_assert(kErrorDirNotEmpty == ERROR_DIR_NOT_EMPTY);
static_assert(kErrorBadPathname == ERROR_BAD_PATHNAME);
static_assert(kErrorAlreadyExists == ERROR_ALREADY_EXISTS);
static_assert(kErrorEnvvarNotFound == ERROR_ENVVAR_NOT_FOUND);
static_assert(kErrorFilenameExcedRange == ERROR_FILENAME_EXCED_RANGE);
static_assert(kErrorMoreData == ERROR_MORE_DATA);
static_assert(kErrorNoMoreItems == ERROR_NO_MORE_ITEMS);
static_assert(kErrorDirectory == ERROR_DIRECTORY);
static_assert(kErrorNoUnicodeTranslation == ERROR_NO_UNICODE_TRANSLATION);
static_assert(kErrorMrMidNotFound == ERROR_MR_MID_NOT_FOUND);
static_assert(kErrorInvalidAddress == ERROR_INVALID_ADDRESS);
static_assert(kErrorUserMappedFile == ERROR_USER_MAPPED_FILE);
static_assert(kErrorBadKey == ERROR_BADKEY);
static_assert(kErrorKeyDeleted == ERROR_KEY_DELETED);
static_assert(kErrorKeyHasChildren == ERROR_KEY_HAS_CHILDREN);
static_assert(kErrorBadDevice == ERROR_BAD_DEVICE);
static_assert(kErrorExtendedError == ERROR_EXTENDED_ERROR);
static_assert(kErrorNoNetwork == ERROR_NO_NETWORK);
static_assert(kErrorConnectionUnavail == ERROR_CONNECTION_UNAVAIL);
static_assert(kErrorInvalidFlags == ERROR_INVALID_FLAGS);
static_assert(kErrorResourceDataNotFound == ERROR_RESOURCE_DATA_NOT_FOUND);
static_assert(kErrorResourceTypeNotFound == ERROR_RESOURCE_TYPE_NOT_FOUND);
static_assert(kErrorResourceLangNotFound == ERROR_RESOURCE_LANG_NOT_FOUND);
static_assert(kErrorNotConnected == ERROR_NOT_CONNECTED);
static_assert(kErrorServiceDoesNotExist == ERROR_SERVICE_DOES_NOT_EXIST);
static_assert(kErrorNotAllAssigned == ERROR_NOT_ALL_ASSIGNED);
static_assert(kErrorUnknownRevision == ERROR_UNKNOWN_REVISION);
static_assert(kErrorRevisionMismatch == ERROR_REVISION_MISMATCH);
static_assert(kErrorInvalidOwner == ERROR_INVALID_OWNER);
static_assert(kErrorNoImpersonationToken == ERROR_NO_IMPERSONATION_TOKEN);
static_assert(kErrorNoSuchPrivilege == ERROR_NO_SUCH_PRIVILEGE);
static_assert(kErrorPrivilegeNotHeld == ERROR_PRIVILEGE_NOT_HELD);
static_assert(kErrorInvalidAcl == ERROR_INVALID_ACL);
static_assert(kErrorInvalidSid == ERROR_INVALID_SID);
static_assert(kErrorInvalidSecurityDescriptor == ERROR_INVALID_SECURITY_DESCR);
static_assert(kErrorAllottedSpaceExceeded == ERROR_ALLOTTED_SPACE_EXCEEDED);
static_assert(kErrorGenericNotMapped == ERROR_GENERIC_NOT_MAPPED);
static_assert(kErrorRpcServerUnavailable == RPC_S_SERVER_UNAVAILABLE);
static_assert(kErrorNullReference == RPC_X_NULL_REF_POINTER);
static_assert(kErrorInvalidUserBuffer == ERROR_INVALID_USER_BUFFER);
static_assert(kErrorInvalidPrinterName == ERROR_INVALID_PRINTER_NAME);
static_assert(kErrorNetNameNotFound == NERR_NetNameNotFound);
static_assert(kErrorTooManyOpenFiles == ERROR_TOO_MANY_OPEN_FILES);
static_assert(kErrorOutOfMemory == ERROR_OUTOFMEMORY);
static_assert(kErrorNotReady == ERROR_NOT_READY);
static_assert(kErrorLockViolation == ERROR_LOCK_VIOLATION);
static_assert(kErrorHandleDiskFull == ERROR_HANDLE_DISK_FULL);
static_assert(kErrorBadDevType == ERROR_BAD_DEV_TYPE);
static_assert(kErrorAlreadyAssigned == ERROR_ALREADY_ASSIGNED);
static_assert(kErrorInvalidPassword == ERROR_INVALID_PASSWORD);
static_assert(kErrorDirNotRoot == ERROR_DIR_NOT_ROOT);
static_assert(kErrorBusy == ERROR_BUSY);
static_assert(kErrorLogonFailure == ERROR_LOGON_FAILURE);
static_assert(kErrorOpenFiles == ERROR_OPEN_FILES);

// FileSystem.h
static_assert(kMaxPath == MAX_PATH);
static_assert(kFileAttributeReadOnly == FILE_ATTRIBUTE_READONLY);
static_assert(kFileAttributeHidden == FILE_ATTRIBUTE_HIDDEN);
static_assert(kFileAttributeSystem == FILE_ATTRIBUTE_SYSTEM);
static_assert(kFileAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY);
static_assert(kFileAttributeArchive == FILE_ATTRIBUTE_ARCHIVE);
static_assert(kFileAttributeNormal == FILE_ATTRIBUTE_NORMAL);
static_assert(kFileAttributeTemporary == FILE_ATTRIBUTE_TEMPORARY);
static_assert(kFileAttributeSparseFile == FILE_ATTRIBUTE_SPARSE_FILE);
static_assert(kFileAttributeReparsePoint == FILE_ATTRIBUTE_REPARSE_POINT);
static_assert(kFileAttributeCompressed == FILE_ATTRIBUTE_COMPRESSED);
static_assert(kFileAttributeOffline == FILE_ATTRIBUTE_OFFLINE);
static_assert(kFileAttributeNotContentIndexed == FILE_ATTRIBUTE_NOT_CONTENT_INDEXED);
static_assert(kFileAttributeEncrypted == FILE_ATTRIBUTE_ENCRYPTED);
static_assert(kGenericRead == GENERIC_READ);
static_assert(kGenericWrite == GENERIC_WRITE);
static_assert(kGenericAll == GENERIC_ALL);
static_assert(kDelete == DELETE);
static_assert(kReadControl == READ_CONTROL);
static_assert(kFileReadData == FILE_READ_DATA);
static_assert(kFileWriteData == FILE_WRITE_DATA);
static_assert(kFileAppendData == FILE_APPEND_DATA);
static_assert(kFileWriteAttributes == FILE_WRITE_ATTRIBUTES);
static_assert(kFileShareRead == FILE_SHARE_READ);
static_assert(kFileShareWrite == FILE_SHARE_WRITE);
static_assert(kFileShareDelete == FILE_SHARE_DELETE);
static_assert(kCreateNew == CREATE_NEW);
static_assert(kCreateAlways == CREATE_ALWAYS);
static_assert(kOpenExisting == OPEN_EXISTING);
static_assert(kOpenAlways == OPEN_ALWAYS);
static_assert(kTruncateExisting == TRUNCATE_EXISTING);
static_assert(kFileFlagBackupSemantics == FILE_FLAG_BACKUP_SEMANTICS);
static_assert(kFileFlagDeleteOnClose == FILE_FLAG_DELETE_ON_CLOSE);
static_assert(kFileFlagSequentialScan == FILE_FLAG_SEQUENTIAL_SCAN);
static_assert(kInvalidFileSize == INVALID_FILE_SIZE);
static_assert(kGetFileExInfoStandard == ::GetFileExInfoStandard);
static_assert(kDriveUnknown == DRIVE_UNKNOWN);
static_assert(kDriveNoRootDir == DRIVE_NO_ROOT_DIR);
static_assert(kDriveRemovable == DRIVE_REMOVABLE);
static_assert(kDriveFixed == DRIVE_FIXED);
static_assert(kDriveRemote == DRIVE_REMOTE);
static_assert(kDriveCdrom == DRIVE_CDROM);
static_assert(kDriveRamdisk == DRIVE_RAMDISK);

// NetworkProvider.h
static_assert(kUniversalNameInfoLevel == UNIVERSAL_NAME_INFO_LEVEL);
static_assert(kRemoteNameInfoLevel == REMOTE_NAME_INFO_LEVEL);
static_assert(kResourceTypeAny == RESOURCETYPE_ANY);
static_assert(kResourceTypeDisk == RESOURCETYPE_DISK);
static_assert(kResourceTypePrint == RESOURCETYPE_PRINT);
static_assert(kResourceGlobalNet == RESOURCE_GLOBALNET);
static_assert(kDisplayTypeDomain == RESOURCEDISPLAYTYPE_DOMAIN);
static_assert(kDisplayTypeNetwork == RESOURCEDISPLAYTYPE_NETWORK);
static_assert(kConnectUpdateProfile == CONNECT_UPDATE_PROFILE);

// Messages.h
static_assert(kLoadLibraryAsDatafile == LOAD_LIBRARY_AS_DATAFILE);
static_assert(kFormatMessageMaxWidthMask == FORMAT_MESSAGE_MAX_WIDTH_MASK);
static_assert(kFormatMessageAllocateBuffer == FORMAT_MESSAGE_ALLOCATE_BUFFER);
static_assert(kFormatMessageIgnoreInserts == FORMAT_MESSAGE_IGNORE_INSERTS);
static_assert(kFormatMessageFromString == FORMAT_MESSAGE_FROM_STRING);
static_assert(kFormatMessageFromHmodule == FORMAT_MESSAGE_FROM_HMODULE);
static_assert(kFormatMessageFromSystem == FORMAT_MESSAGE_FROM_SYSTEM);
static_assert(kFormatMessageArgumentArray == FORMAT_MESSAGE_ARGUMENT_ARRAY);

// Registry.h
static_assert(kKeyQueryValue == KEY_QUERY_VALUE);
static_assert(kKeySetValue == KEY_SET_VALUE);
static_assert(kKeyCreateSubKey == KEY_CREATE_SUB_KEY);
static_assert(kKeyEnumerateSubKeys == KEY_ENUMERATE_SUB_KEYS);
static_assert(kKeyNotify == KEY_NOTIFY);
static_assert(kKeyRead == KEY_READ);
static_assert(kKeyWrite == KEY_WRITE);
static_assert(kKeyAllAccess == KEY_ALL_ACCESS);
static_assert(kRegNone == REG_NONE);
static_assert(kRegSz == REG_SZ);
static_assert(kRegExpandSz == REG_EXPAND_SZ);
static_assert(kRegBinary == REG_BINARY);
static_assert(kRegDword == REG_DWORD);
static_assert(kRegDwordBigEndian == REG_DWORD_BIG_ENDIAN);
static_assert(kRegLink == REG_LINK);
static_assert(kRegMultiSz == REG_MULTI_SZ);
static_assert(kRegQword == REG_QWORD);
static_assert(kRegOptionNonVolatile == REG_OPTION_NON_VOLATILE);
static_assert(kRegOptionVolatile == REG_OPTION_VOLATILE);
static_assert(kRegOptionBackupRestore == REG_OPTION_BACKUP_RESTORE);
static_assert(kRegCreatedNewKey == REG_CREATED_NEW_KEY);
static_assert(kRegOpenedExistingKey == REG_OPENED_EXISTING_KEY);

// System.h
static_assert(kTimeZoneIdUnknown == TIME_ZONE_ID_UNKNOWN);
static_assert(kTimeZoneIdStandard == TIME_ZONE_ID_STANDARD);
static_assert(kTimeZoneIdDaylight == TIME_ZONE_ID_DAYLIGHT);
static_assert(kTimeZoneIdInvalid == TIME_ZONE_ID_INVALID);
static_assert(kCodePageAnsi == CP_ACP);
static_assert(kCodePageUtf8 == CP_UTF8);
static_assert(kMultiBytePrecomposed == MB_PRECOMPOSED);
static_assert(kMultiByteErrInvalidChars == MB_ERR_INVALID_CHARS);
static_assert(kWideErrInvalidChars == WC_ERR_INVALID_CHARS);

static_assert(kLocaleInvariant == LOCALE_INVARIANT);
static_assert(kLcmapSortKey == LCMAP_SORTKEY);
static_assert(kNormIgnoreCase == NORM_IGNORECASE);
static_assert(kLocalZeroInitialised == LMEM_ZEROINIT);

// Security.h
static_assert(kOwnerSecurityInformation == OWNER_SECURITY_INFORMATION);
static_assert(kGroupSecurityInformation == GROUP_SECURITY_INFORMATION);
static_assert(kDaclSecurityInformation == DACL_SECURITY_INFORMATION);
static_assert(kSaclSecurityInformation == SACL_SECURITY_INFORMATION);
static_assert(kProtectedDaclSecurityInformation == PROTECTED_DACL_SECURITY_INFORMATION);
static_assert(kUnprotectedDaclSecurityInformation == UNPROTECTED_DACL_SECURITY_INFORMATION);
static_assert(kTokenQuery == TOKEN_QUERY);
static_assert(kTokenAdjustPrivileges == TOKEN_ADJUST_PRIVILEGES);
static_assert(kSePrivilegeEnabled == SE_PRIVILEGE_ENABLED);
static_assert(kSddlRevision1 == SDDL_REVISION_1);

// NetworkManagement.h
static_assert(kShareTypeDisk == STYPE_DISKTREE);
static_assert(kShareTypePrintQueue == STYPE_PRINTQ);
static_assert(kShareTypeDevice == STYPE_DEVICE);
static_assert(kShareTypeIpc == STYPE_IPC);
static_assert(kShareTypeSpecial == STYPE_SPECIAL);

// Timers.h
static_assert(kMessageTimer == WM_TIMER);

// VersionInformation.h
static_assert(kFixedFileInfoSignature == VS_FFI_SIGNATURE);
static_assert(sizeof(VS_FIXEDFILEINFO) == sizeof(::VS_FIXEDFILEINFO) &&
              alignof(VS_FIXEDFILEINFO) == alignof(::VS_FIXEDFILEINFO));
static_assert(offsetof(VS_FIXEDFILEINFO, dwSignature) == offsetof(::VS_FIXEDFILEINFO, dwSignature));
static_assert(offsetof(VS_FIXEDFILEINFO, dwStrucVersion) ==
              offsetof(::VS_FIXEDFILEINFO, dwStrucVersion));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileVersionMS) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileVersionMS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileVersionLS) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileVersionLS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwProductVersionMS) ==
              offsetof(::VS_FIXEDFILEINFO, dwProductVersionMS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwProductVersionLS) ==
              offsetof(::VS_FIXEDFILEINFO, dwProductVersionLS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileFlagsMask) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileFlagsMask));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileFlags) == offsetof(::VS_FIXEDFILEINFO, dwFileFlags));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileOS) == offsetof(::VS_FIXEDFILEINFO, dwFileOS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileType) == offsetof(::VS_FIXEDFILEINFO, dwFileType));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileSubtype) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileSubtype));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileDateMS) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileDateMS));
static_assert(offsetof(VS_FIXEDFILEINFO, dwFileDateLS) ==
              offsetof(::VS_FIXEDFILEINFO, dwFileDateLS));

// NetworkManagement.h
static_assert(kMaxPreferredLength == MAX_PREFERRED_LENGTH);
static_assert(kServerTypeWorkstation == SV_TYPE_WORKSTATION);
static_assert(kServerTypeServer == SV_TYPE_SERVER);
static_assert(kServerTypeDomainController == SV_TYPE_DOMAIN_CTRL);
static_assert(kServerTypeBackupController == SV_TYPE_DOMAIN_BAKCTRL);
static_assert(kServerTypeDomainMember == SV_TYPE_DOMAIN_MEMBER);
static_assert(kServerTypeNt == SV_TYPE_NT);
static_assert(kServerTypeServerNt == SV_TYPE_SERVER_NT);
static_assert(kServerTypeAll == SV_TYPE_ALL);
static_assert(kPlatformIdNt == PLATFORM_ID_NT);

// AccountManagement.h
static_assert(kFilterNormalAccount == FILTER_NORMAL_ACCOUNT);
static_assert(kFilterWorkstationTrustAccount == FILTER_WORKSTATION_TRUST_ACCOUNT);
static_assert(kFilterServerTrustAccount == FILTER_SERVER_TRUST_ACCOUNT);
static_assert(kAccountDisabled == UF_ACCOUNTDISABLE);
static_assert(kAccountLockout == UF_LOCKOUT);
static_assert(kAccountPasswordCantChange == UF_PASSWD_CANT_CHANGE);
static_assert(kAccountNormal == UF_NORMAL_ACCOUNT);
static_assert(kAccountWorkstationTrust == UF_WORKSTATION_TRUST_ACCOUNT);
static_assert(kAccountServerTrust == UF_SERVER_TRUST_ACCOUNT);
static_assert(kAccountDontExpirePassword == UF_DONT_EXPIRE_PASSWD);
static_assert(kTimeForever == TIMEQ_FOREVER);
static_assert(kIncludeIndirectGroups == LG_INCLUDE_INDIRECT);

// LocalSecurityAuthority.h
static_assert(kPolicyViewLocalInformation == POLICY_VIEW_LOCAL_INFORMATION);
static_assert(kPolicyLookupNames == POLICY_LOOKUP_NAMES);

// ServiceControl.h
static_assert(sizeof(SERVICE_STATUS) == sizeof(::SERVICE_STATUS) &&
              alignof(SERVICE_STATUS) == alignof(::SERVICE_STATUS));
static_assert(offsetof(SERVICE_STATUS, dwServiceType) == offsetof(::SERVICE_STATUS, dwServiceType));
static_assert(offsetof(SERVICE_STATUS, dwCurrentState) ==
              offsetof(::SERVICE_STATUS, dwCurrentState));
static_assert(offsetof(SERVICE_STATUS, dwControlsAccepted) ==
              offsetof(::SERVICE_STATUS, dwControlsAccepted));
static_assert(offsetof(SERVICE_STATUS, dwWin32ExitCode) ==
              offsetof(::SERVICE_STATUS, dwWin32ExitCode));
static_assert(offsetof(SERVICE_STATUS, dwServiceSpecificExitCode) ==
              offsetof(::SERVICE_STATUS, dwServiceSpecificExitCode));
static_assert(offsetof(SERVICE_STATUS, dwCheckPoint) == offsetof(::SERVICE_STATUS, dwCheckPoint));
static_assert(offsetof(SERVICE_STATUS, dwWaitHint) == offsetof(::SERVICE_STATUS, dwWaitHint));
static_assert(sizeof(ENUM_SERVICE_STATUSW) == sizeof(::ENUM_SERVICE_STATUSW) &&
              alignof(ENUM_SERVICE_STATUSW) == alignof(::ENUM_SERVICE_STATUSW));
static_assert(offsetof(ENUM_SERVICE_STATUSW, lpServiceName) ==
              offsetof(::ENUM_SERVICE_STATUSW, lpServiceName));
static_assert(offsetof(ENUM_SERVICE_STATUSW, lpDisplayName) ==
              offsetof(::ENUM_SERVICE_STATUSW, lpDisplayName));
static_assert(offsetof(ENUM_SERVICE_STATUSW, ServiceStatus) ==
              offsetof(::ENUM_SERVICE_STATUSW, ServiceStatus));
static_assert(sizeof(QUERY_SERVICE_CONFIGW) == sizeof(::QUERY_SERVICE_CONFIGW) &&
              alignof(QUERY_SERVICE_CONFIGW) == alignof(::QUERY_SERVICE_CONFIGW));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, dwServiceType) ==
              offsetof(::QUERY_SERVICE_CONFIGW, dwServiceType));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, dwStartType) ==
              offsetof(::QUERY_SERVICE_CONFIGW, dwStartType));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, dwErrorControl) ==
              offsetof(::QUERY_SERVICE_CONFIGW, dwErrorControl));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, lpBinaryPathName) ==
              offsetof(::QUERY_SERVICE_CONFIGW, lpBinaryPathName));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, lpLoadOrderGroup) ==
              offsetof(::QUERY_SERVICE_CONFIGW, lpLoadOrderGroup));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, dwTagId) ==
              offsetof(::QUERY_SERVICE_CONFIGW, dwTagId));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, lpDependencies) ==
              offsetof(::QUERY_SERVICE_CONFIGW, lpDependencies));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, lpServiceStartName) ==
              offsetof(::QUERY_SERVICE_CONFIGW, lpServiceStartName));
static_assert(offsetof(QUERY_SERVICE_CONFIGW, lpDisplayName) ==
              offsetof(::QUERY_SERVICE_CONFIGW, lpDisplayName));
static_assert(sizeof(SERVICE_DESCRIPTIONW) == sizeof(::SERVICE_DESCRIPTIONW) &&
              alignof(SERVICE_DESCRIPTIONW) == alignof(::SERVICE_DESCRIPTIONW));
static_assert(offsetof(SERVICE_DESCRIPTIONW, lpDescription) ==
              offsetof(::SERVICE_DESCRIPTIONW, lpDescription));
static_assert(kManagerConnect == SC_MANAGER_CONNECT);
static_assert(kManagerCreateService == SC_MANAGER_CREATE_SERVICE);
static_assert(kManagerEnumerateService == SC_MANAGER_ENUMERATE_SERVICE);
static_assert(kManagerLock == SC_MANAGER_LOCK);
static_assert(kManagerAllAccess == SC_MANAGER_ALL_ACCESS);
static_assert(kServiceQueryConfig == SERVICE_QUERY_CONFIG);
static_assert(kServiceChangeConfig == SERVICE_CHANGE_CONFIG);
static_assert(kServiceQueryStatus == SERVICE_QUERY_STATUS);
static_assert(kServiceEnumerateDependents == SERVICE_ENUMERATE_DEPENDENTS);
static_assert(kServiceStart == SERVICE_START);
static_assert(kServiceStop == SERVICE_STOP);
static_assert(kServicePauseContinue == SERVICE_PAUSE_CONTINUE);
static_assert(kServiceInterrogate == SERVICE_INTERROGATE);
static_assert(kServiceUserDefinedControl == SERVICE_USER_DEFINED_CONTROL);
static_assert(kServiceAllAccess == SERVICE_ALL_ACCESS);
static_assert(kServiceWin32 == SERVICE_WIN32);
static_assert(kServiceTypeAll == SERVICE_TYPE_ALL);
static_assert(kServiceDisabled == SERVICE_DISABLED);
static_assert(kServiceErrorCritical == SERVICE_ERROR_CRITICAL);
static_assert(kServiceStopped == SERVICE_STOPPED);
static_assert(kServicePaused == SERVICE_PAUSED);
static_assert(kServiceAcceptNetBindChange == SERVICE_ACCEPT_NETBINDCHANGE);
static_assert(kServiceControlStop == SERVICE_CONTROL_STOP);
static_assert(kServiceControlInterrogate == SERVICE_CONTROL_INTERROGATE);
static_assert(kServiceControlNetBindDisable == SERVICE_CONTROL_NETBINDDISABLE);
static_assert(kServiceStateAll == SERVICE_STATE_ALL);
static_assert(kServiceNoChange == SERVICE_NO_CHANGE);
static_assert(kServiceConfigDescription == SERVICE_CONFIG_DESCRIPTION);
static_assert(kErrorServiceMarkedForDelete == ERROR_SERVICE_MARKED_FOR_DELETE);
static_assert(kErrorDuplicateServiceName == ERROR_DUPLICATE_SERVICE_NAME);

// Printing.h
static_assert(kPrinterEnumName == PRINTER_ENUM_NAME);
static_assert(kPrinterAttributeShared == PRINTER_ATTRIBUTE_SHARED);
static_assert(kPrinterAttributeLocal == PRINTER_ATTRIBUTE_LOCAL);
static_assert(sizeof(PRINTER_INFO_2W) == sizeof(::PRINTER_INFO_2W) &&
              alignof(PRINTER_INFO_2W) == alignof(::PRINTER_INFO_2W));
static_assert(offsetof(PRINTER_INFO_2W, pServerName) == offsetof(::PRINTER_INFO_2W, pServerName));
static_assert(offsetof(PRINTER_INFO_2W, pPrinterName) == offsetof(::PRINTER_INFO_2W, pPrinterName));
static_assert(offsetof(PRINTER_INFO_2W, pShareName) == offsetof(::PRINTER_INFO_2W, pShareName));
static_assert(offsetof(PRINTER_INFO_2W, pPortName) == offsetof(::PRINTER_INFO_2W, pPortName));
static_assert(offsetof(PRINTER_INFO_2W, pDriverName) == offsetof(::PRINTER_INFO_2W, pDriverName));
static_assert(offsetof(PRINTER_INFO_2W, pComment) == offsetof(::PRINTER_INFO_2W, pComment));
static_assert(offsetof(PRINTER_INFO_2W, pLocation) == offsetof(::PRINTER_INFO_2W, pLocation));
static_assert(offsetof(PRINTER_INFO_2W, pDevMode) == offsetof(::PRINTER_INFO_2W, pDevMode));
static_assert(offsetof(PRINTER_INFO_2W, pSepFile) == offsetof(::PRINTER_INFO_2W, pSepFile));
static_assert(offsetof(PRINTER_INFO_2W, pPrintProcessor) ==
              offsetof(::PRINTER_INFO_2W, pPrintProcessor));
static_assert(offsetof(PRINTER_INFO_2W, pDatatype) == offsetof(::PRINTER_INFO_2W, pDatatype));
static_assert(offsetof(PRINTER_INFO_2W, pParameters) == offsetof(::PRINTER_INFO_2W, pParameters));
static_assert(offsetof(PRINTER_INFO_2W, pSecurityDescriptor) ==
              offsetof(::PRINTER_INFO_2W, pSecurityDescriptor));
static_assert(offsetof(PRINTER_INFO_2W, Attributes) == offsetof(::PRINTER_INFO_2W, Attributes));
static_assert(offsetof(PRINTER_INFO_2W, Priority) == offsetof(::PRINTER_INFO_2W, Priority));
static_assert(offsetof(PRINTER_INFO_2W, DefaultPriority) ==
              offsetof(::PRINTER_INFO_2W, DefaultPriority));
static_assert(offsetof(PRINTER_INFO_2W, StartTime) == offsetof(::PRINTER_INFO_2W, StartTime));
static_assert(offsetof(PRINTER_INFO_2W, UntilTime) == offsetof(::PRINTER_INFO_2W, UntilTime));
static_assert(offsetof(PRINTER_INFO_2W, Status) == offsetof(::PRINTER_INFO_2W, Status));
static_assert(offsetof(PRINTER_INFO_2W, cJobs) == offsetof(::PRINTER_INFO_2W, cJobs));
static_assert(offsetof(PRINTER_INFO_2W, AveragePPM) == offsetof(::PRINTER_INFO_2W, AveragePPM));

// TaskScheduler.h
static_assert(sizeof(TASK_TRIGGER) == sizeof(::TASK_TRIGGER) &&
              alignof(TASK_TRIGGER) == alignof(::TASK_TRIGGER));
static_assert(offsetof(TASK_TRIGGER, cbTriggerSize) == offsetof(::TASK_TRIGGER, cbTriggerSize));
static_assert(offsetof(TASK_TRIGGER, Reserved1) == offsetof(::TASK_TRIGGER, Reserved1));
static_assert(offsetof(TASK_TRIGGER, wBeginYear) == offsetof(::TASK_TRIGGER, wBeginYear));
static_assert(offsetof(TASK_TRIGGER, wBeginMonth) == offsetof(::TASK_TRIGGER, wBeginMonth));
static_assert(offsetof(TASK_TRIGGER, wBeginDay) == offsetof(::TASK_TRIGGER, wBeginDay));
static_assert(offsetof(TASK_TRIGGER, wEndYear) == offsetof(::TASK_TRIGGER, wEndYear));
static_assert(offsetof(TASK_TRIGGER, wEndMonth) == offsetof(::TASK_TRIGGER, wEndMonth));
static_assert(offsetof(TASK_TRIGGER, wEndDay) == offsetof(::TASK_TRIGGER, wEndDay));
static_assert(offsetof(TASK_TRIGGER, wStartHour) == offsetof(::TASK_TRIGGER, wStartHour));
static_assert(offsetof(TASK_TRIGGER, wStartMinute) == offsetof(::TASK_TRIGGER, wStartMinute));
static_assert(offsetof(TASK_TRIGGER, MinutesDuration) == offsetof(::TASK_TRIGGER, MinutesDuration));
static_assert(offsetof(TASK_TRIGGER, MinutesInterval) == offsetof(::TASK_TRIGGER, MinutesInterval));
static_assert(offsetof(TASK_TRIGGER, rgFlags) == offsetof(::TASK_TRIGGER, rgFlags));
static_assert(offsetof(TASK_TRIGGER, TriggerType) == offsetof(::TASK_TRIGGER, TriggerType));
static_assert(offsetof(TASK_TRIGGER, Type) == offsetof(::TASK_TRIGGER, Type));
static_assert(offsetof(TASK_TRIGGER, Reserved2) == offsetof(::TASK_TRIGGER, Reserved2));
static_assert(offsetof(TASK_TRIGGER, wRandomMinutesInterval) ==
              offsetof(::TASK_TRIGGER, wRandomMinutesInterval));
static_assert(offsetof(::WEEKLY, rgfDaysOfTheWeek) == 2 &&
              offsetof(::MONTHLYDATE, rgfMonths) == 4 &&
              offsetof(::MONTHLYDOW, rgfDaysOfTheWeek) == 2 &&
              offsetof(::MONTHLYDOW, rgfMonths) == 4);
static_assert(kTaskFlagDeleteWhenDone == TASK_FLAG_DELETE_WHEN_DONE);
static_assert(kTaskFlagDisabled == TASK_FLAG_DISABLED);
static_assert(kTaskFlagHidden == TASK_FLAG_HIDDEN);
static_assert(kTriggerHasEndDate == TASK_TRIGGER_FLAG_HAS_END_DATE);
static_assert(kTriggerKillAtDurationEnd == TASK_TRIGGER_FLAG_KILL_AT_DURATION_END);
static_assert(kTriggerDisabled == TASK_TRIGGER_FLAG_DISABLED);
static_assert(static_cast<int>(kTriggerAtLogon) == ::TASK_EVENT_TRIGGER_AT_LOGON);
static_assert(kTaskReady == SCHED_S_TASK_READY && kTaskEventTrigger == SCHED_S_EVENT_TRIGGER);
static_assert(kTriggerNotFound == SCHED_E_TRIGGER_NOT_FOUND);
static_assert(kTaskNotReady == SCHED_E_TASK_NOT_READY);
static_assert(kTaskNotRunning == SCHED_E_TASK_NOT_RUNNING);
static_assert(kInvalidTask == SCHED_E_INVALID_TASK);
static_assert(kAccountNameNotFound == SCHED_E_ACCOUNT_NAME_NOT_FOUND);
static_assert(kUnknownObjectVersion == SCHED_E_UNKNOWN_OBJECT_VERSION);
static_assert(kNormalPriorityClass == NORMAL_PRIORITY_CLASS);

// EventLog.h
static_assert(kEventlogSequentialRead == EVENTLOG_SEQUENTIAL_READ);
static_assert(kEventlogSeekRead == EVENTLOG_SEEK_READ);
static_assert(kEventlogForwardsRead == EVENTLOG_FORWARDS_READ);
static_assert(kEventlogBackwardsRead == EVENTLOG_BACKWARDS_READ);
static_assert(sizeof(EVENTLOGRECORD) == sizeof(::EVENTLOGRECORD) &&
              alignof(EVENTLOGRECORD) == alignof(::EVENTLOGRECORD));
static_assert(offsetof(EVENTLOGRECORD, Length) == offsetof(::EVENTLOGRECORD, Length));
static_assert(offsetof(EVENTLOGRECORD, Reserved) == offsetof(::EVENTLOGRECORD, Reserved));
static_assert(offsetof(EVENTLOGRECORD, RecordNumber) == offsetof(::EVENTLOGRECORD, RecordNumber));
static_assert(offsetof(EVENTLOGRECORD, TimeGenerated) == offsetof(::EVENTLOGRECORD, TimeGenerated));
static_assert(offsetof(EVENTLOGRECORD, TimeWritten) == offsetof(::EVENTLOGRECORD, TimeWritten));
static_assert(offsetof(EVENTLOGRECORD, EventID) == offsetof(::EVENTLOGRECORD, EventID));
static_assert(offsetof(EVENTLOGRECORD, EventType) == offsetof(::EVENTLOGRECORD, EventType));
static_assert(offsetof(EVENTLOGRECORD, NumStrings) == offsetof(::EVENTLOGRECORD, NumStrings));
static_assert(offsetof(EVENTLOGRECORD, EventCategory) == offsetof(::EVENTLOGRECORD, EventCategory));
static_assert(offsetof(EVENTLOGRECORD, ReservedFlags) == offsetof(::EVENTLOGRECORD, ReservedFlags));
static_assert(offsetof(EVENTLOGRECORD, ClosingRecordNumber) ==
              offsetof(::EVENTLOGRECORD, ClosingRecordNumber));
static_assert(offsetof(EVENTLOGRECORD, StringOffset) == offsetof(::EVENTLOGRECORD, StringOffset));
static_assert(offsetof(EVENTLOGRECORD, UserSidLength) == offsetof(::EVENTLOGRECORD, UserSidLength));
static_assert(offsetof(EVENTLOGRECORD, UserSidOffset) == offsetof(::EVENTLOGRECORD, UserSidOffset));
static_assert(offsetof(EVENTLOGRECORD, DataLength) == offsetof(::EVENTLOGRECORD, DataLength));
static_assert(offsetof(EVENTLOGRECORD, DataOffset) == offsetof(::EVENTLOGRECORD, DataOffset));

}  // namespace veldmark
