#include "platform/operations/AccountManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(USER_INFO_0, usri0_name);
VELDMARK_SAME_LAYOUT(USER_INFO_1, usri1_name, usri1_password, usri1_password_age, usri1_priv,
                     usri1_home_dir, usri1_comment, usri1_flags, usri1_script_path);
VELDMARK_SAME_LAYOUT(USER_INFO_3, usri3_name, usri3_password, usri3_password_age, usri3_priv,
                     usri3_home_dir, usri3_comment, usri3_flags, usri3_script_path,
                     usri3_auth_flags, usri3_full_name, usri3_usr_comment, usri3_parms,
                     usri3_workstations, usri3_last_logon, usri3_last_logoff, usri3_acct_expires,
                     usri3_max_storage, usri3_units_per_week, usri3_logon_hours, usri3_bad_pw_count,
                     usri3_num_logons, usri3_logon_server, usri3_country_code, usri3_code_page,
                     usri3_user_id, usri3_primary_group_id, usri3_profile, usri3_home_dir_drive,
                     usri3_password_expired);
VELDMARK_SAME_LAYOUT(USER_INFO_10, usri10_name, usri10_comment, usri10_usr_comment,
                     usri10_full_name);
VELDMARK_SAME_LAYOUT(USER_INFO_1003, usri1003_password);
VELDMARK_SAME_LAYOUT(NET_DISPLAY_USER, usri1_name, usri1_comment, usri1_flags, usri1_full_name,
                     usri1_user_id, usri1_next_index);
VELDMARK_SAME_LAYOUT(GROUP_USERS_INFO_0, grui0_name);
VELDMARK_SAME_LAYOUT(GROUP_INFO_0, grpi0_name);
VELDMARK_SAME_LAYOUT(GROUP_INFO_1, grpi1_name, grpi1_comment);
VELDMARK_SAME_LAYOUT(GROUP_INFO_2, grpi2_name, grpi2_comment, grpi2_group_id, grpi2_attributes);
VELDMARK_SAME_LAYOUT(LOCALGROUP_USERS_INFO_0, lgrui0_name);
VELDMARK_SAME_LAYOUT(LOCALGROUP_INFO_1, lgrpi1_name, lgrpi1_comment);
VELDMARK_SAME_LAYOUT(LOCALGROUP_MEMBERS_INFO_0, lgrmi0_sid);
VELDMARK_SAME_LAYOUT(USER_MODALS_INFO_0, usrmod0_min_passwd_len, usrmod0_max_passwd_age,
                     usrmod0_min_passwd_age, usrmod0_force_logoff, usrmod0_password_hist_len);
VELDMARK_SAME_LAYOUT(USER_MODALS_INFO_3, usrmod3_lockout_duration,
                     usrmod3_lockout_observation_window, usrmod3_lockout_threshold);

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

}  // namespace veldmark
