#include "security/ObjectType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(SE_OBJECT_TYPE) {
  static const Enumeration table =
      DeclareEnumeration<SE_OBJECT_TYPE>(u"SE_OBJECT_TYPE",
                                         u"The kinds of object that have a security descriptor.")
          .Value(u"SE_UNKNOWN_OBJECT_TYPE", SE_UNKNOWN_OBJECT_TYPE, u"Not known.")
          .Value(u"SE_FILE_OBJECT", SE_FILE_OBJECT, u"A file or folder.")
          .Value(u"SE_SERVICE", SE_SERVICE, u"A service.")
          .Value(u"SE_PRINTER", SE_PRINTER, u"A printer.")
          .Value(u"SE_REGISTRY_KEY", SE_REGISTRY_KEY, u"A registry key.")
          .Value(u"SE_LMSHARE", SE_LMSHARE, u"A share.")
          .Value(u"SE_KERNEL_OBJECT", SE_KERNEL_OBJECT, u"A kernel object.")
          .Value(u"SE_WINDOW_OBJECT", SE_WINDOW_OBJECT, u"A window station or desktop.")
          .Value(u"SE_DS_OBJECT", SE_DS_OBJECT, u"A directory object, or a property of it.")
          .Value(u"SE_DS_OBJECT_ALL", SE_DS_OBJECT_ALL,
                 u"A directory object with all its properties.")
          .Value(u"SE_PROVIDER_DEFINED_OBJECT", SE_PROVIDER_DEFINED_OBJECT,
                 u"An object of a provider's own.")
          .Value(u"SE_WMIGUID_OBJECT", SE_WMIGUID_OBJECT, u"A management instrumentation object.");
  return table;
}

}  // namespace veldmark
