#include "platform/locale.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <langinfo.h>
#include <locale.h>
#endif

namespace platform {

std::string DecimalSeparator() {
  std::string separator;
#ifdef _WIN32
  char buffer[99];
  if (GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buffer, sizeof buffer) > 0) separator = buffer;
#else
  if (const locale_t user = newlocale(LC_NUMERIC_MASK, "", locale_t{}); user != locale_t{}) {
    separator = nl_langinfo_l(RADIXCHAR, user);
    freelocale(user);
  }
#endif
  return separator.empty() ? "." : separator;
}

}  // namespace platform
