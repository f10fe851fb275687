#include "platform/operations/NetworkManagement.h"

#include <windows.h>

#include <lm.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(SERVER_INFO_100, sv100_platform_id, sv100_name);
VELDMARK_SAME_LAYOUT(SERVER_INFO_101, sv101_platform_id, sv101_name, sv101_version_major,
                     sv101_version_minor, sv101_type, sv101_comment);
VELDMARK_SAME_LAYOUT(SERVER_INFO_102, sv102_platform_id, sv102_name, sv102_version_major,
                     sv102_version_minor, sv102_type, sv102_comment, sv102_users, sv102_disc,
                     sv102_hidden, sv102_announce, sv102_anndelta, sv102_licenses, sv102_userpath);
VELDMARK_SAME_LAYOUT(WKSTA_INFO_100, wki100_platform_id, wki100_computername, wki100_langroup,
                     wki100_ver_major, wki100_ver_minor);
VELDMARK_SAME_LAYOUT(SHARE_INFO_1, shi1_netname, shi1_type, shi1_remark);
VELDMARK_SAME_LAYOUT(SHARE_INFO_2, shi2_netname, shi2_type, shi2_remark, shi2_permissions,
                     shi2_max_uses, shi2_current_uses, shi2_path, shi2_passwd);
VELDMARK_SAME_LAYOUT(SHARE_INFO_502, shi502_netname, shi502_type, shi502_remark, shi502_permissions,
                     shi502_max_uses, shi502_current_uses, shi502_path, shi502_passwd,
                     shi502_reserved, shi502_security_descriptor);

static_assert(kShareTypeDisk == STYPE_DISKTREE);
static_assert(kShareTypePrintQueue == STYPE_PRINTQ);
static_assert(kShareTypeDevice == STYPE_DEVICE);
static_assert(kShareTypeIpc == STYPE_IPC);
static_assert(kShareTypeSpecial == STYPE_SPECIAL);
static_assert(kMaxPreferredLength == MAX_PREFERRED_LENGTH);
static_assert(kServerTypeWorkstation == SV_TYPE_WORKSTATION);
static_assert(kServerTypeServer == SV_TYPE_SERVER);
static_assert(kServerTypeDomainController == SV_TYPE_DOMAIN_CTRL);
static_assert(kServerTypeBackupController == SV_TYPE_DOMAIN_BAKCTRL);
static_assert(kServerTypeNt == SV_TYPE_NT);
static_assert(kServerTypeServerNt == SV_TYPE_SERVER_NT);
static_assert(kServerTypeAll == SV_TYPE_ALL);
static_assert(kPlatformIdNt == PLATFORM_ID_NT);

}  // namespace veldmark
