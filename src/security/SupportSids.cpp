#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "security/CSid.h"

namespace veldmark {

Ref<CSid> CSupport::GetSidFromText(TextView sid_text, const Text& server_name) {
  return ReRaising([&] {
    const auto sid = Make<CSid>();
    sid->PutSidBuffer(GetSidBufferFromText(sid_text));
    sid->SetResidesOnServer(server_name);
    return sid;
  });
}

Ref<CSid> CSupport::GetSidObjectFromSid(const Variant& object_sid, const Text& resides_on_server) {
  return ReRaising([&] {
    const auto* const bytes = object_sid.If<ByteArray>();
    if (!bytes) Raise(runtime_error::kTypeMismatch);
    const auto sid = Make<CSid>();
    sid->SetResidesOnServer(resides_on_server);
    sid->PutSidBuffer(CopySid(bytes->elements));
    sid->ComputeSidText();
    return sid;
  });
}

}  // namespace veldmark
