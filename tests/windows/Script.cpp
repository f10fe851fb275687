#include "windows/Script.h"

#include <activscp.h>

#include "automation/com/ComObject.h"

namespace veldmark {
namespace {

class Site final : public com::ComObject<IActiveScriptSite> {
 public:
  explicit Site(IDispatch& object) : object_(&object) {}

  STDMETHODIMP GetLCID(LCID* locale) override {
    *locale = 0x0409;
    return S_OK;
  }
  STDMETHODIMP GetItemInfo(LPCOLESTR, DWORD mask, IUnknown** item, ITypeInfo** info) override {
    if (info) *info = nullptr;
    if ((mask & SCRIPTINFO_IUNKNOWN) != 0) *item = com::ComRef<IUnknown>(object_).Detach();
    return S_OK;
  }
  STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError*) override { return S_OK; }
  STDMETHODIMP OnEnterScript() override { return S_OK; }
  STDMETHODIMP OnLeaveScript() override { return S_OK; }

 private:
  IDispatch* object_;
};

}  // namespace

HRESULT RunScript(const wchar_t* language, IDispatch& object, const wchar_t* script) {
  CLSID engine_class;
  HRESULT result = CLSIDFromProgID(language, &engine_class);
  if (FAILED(result)) return result;
  com::ComRef<IActiveScript> engine;
  com::ComRef<IActiveScriptParse> parser;
  result = CoCreateInstance(engine_class, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                            reinterpret_cast<void**>(engine.Receive()));
  if (FAILED(result)) return result;
  result = engine->QueryInterface(__uuidof(IActiveScriptParse),
                                  reinterpret_cast<void**>(parser.Receive()));
  if (FAILED(result)) return result;
  com::ComRef<Site> site;
  *site.Receive() = new Site(object);
  engine->SetScriptSite(site.Get());
  parser->InitNew();
  engine->AddNamedItem(L"o", SCRIPTITEM_ISVISIBLE);
  engine->SetScriptState(SCRIPTSTATE_STARTED);
  result = parser->ParseScriptText(script, nullptr, nullptr, nullptr, 0, 0, 0, nullptr, nullptr);
  engine->Close();
  return result;
}

}  // namespace veldmark
