#include "storage/PathForms.h"

namespace veldmark {

Text PlainPath(Text path) {
  constexpr TextView kLongPrefix = u"\\\\?\\";
  constexpr TextView kNetworkPrefix = u"UNC";
  if (path.starts_with(kLongPrefix)) path.erase(0, kLongPrefix.size());
  if (path.starts_with(kNetworkPrefix)) path.replace(0, kNetworkPrefix.size(), 1, u'\\');
  return path;
}

}  // namespace veldmark
