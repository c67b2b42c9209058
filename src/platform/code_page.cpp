#include "platform/code_page.h"

#include <bit>
#include <cstdint>

#include "platform/utf8.h"
#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace platform {

bool IsDoubleByte(int code_page) {
  return code_page == 932 || code_page == 936 || code_page == 949 || code_page == 950;
}

#ifdef _WIN32

namespace {

std::string FromWide(const wchar_t* wide, int length) {
  std::string text(static_cast<std::size_t>(length) * 3, '\0');
  text.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide, length, text.data(),
                                                           static_cast<int>(text.size()), nullptr, nullptr)));
  return text;
}

}  // namespace

bool IsKnownCodePage(int code_page) {
  CPINFO info;
  if (code_page <= 3 || code_page == 1200 || code_page == 1201 || code_page >= 65000) return false;
  if (!GetCPInfo(static_cast<UINT>(code_page), &info)) return false;
  return info.MaxCharSize == 1 || IsDoubleByte(code_page);
}

char32_t DecodeByte(unsigned char byte, int code_page) {
  const char in = static_cast<char>(byte);
  wchar_t out[4];
  const int length = MultiByteToWideChar(static_cast<UINT>(code_page), MB_ERR_INVALID_CHARS, &in, 1, out, 4);
  if (length != 1) return kReplacement;
  // The system passes undefined bytes of the 125x pages through as control characters.
  if (byte >= 0x80 && out[0] >= 0x80 && out[0] < 0xA0) return kReplacement;
  if (out[0] >= 0xE000 && out[0] < 0xF900) return kReplacement;
  return out[0];
}

std::string DecodeDoubleByte(std::string_view bytes, int code_page) {
  std::wstring wide(bytes.size() + 1, L'\0');
  const int length =
      MultiByteToWideChar(static_cast<UINT>(code_page), 0, bytes.data(), static_cast<int>(bytes.size()),
                          wide.data(), static_cast<int>(wide.size()));
  return FromWide(wide.data(), length);
}

std::string EncodeDoubleByte(std::string_view utf8, int code_page) {
  std::wstring wide(utf8.size() + 1, L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                         static_cast<int>(wide.size()));
  std::string bytes(static_cast<std::size_t>(length) * 2, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(static_cast<UINT>(code_page), WC_NO_BEST_FIT_CHARS, wide.data(), length,
                          bytes.data(), static_cast<int>(bytes.size()), "?", nullptr)));
  return bytes;
}

#else

namespace {

std::string IconvName(int code_page) {
  switch (code_page) {
    case 10000:
      return "MACINTOSH";
    case 10007:
      return "MAC-CYRILLIC";
    case 10017:
      return "MAC-UK";
    case 10029:
      return "MAC-CENTRALEUROPE";
    case 10079:
      return "MAC-IS";
    case 932:
      return "CP932";
    case 936:
      return "GBK";
    case 20127:
      return "ASCII";
    case 20866:
      return "KOI8-R";
    default:
      break;
  }
  if (code_page >= 28591 && code_page <= 28605) return "ISO-8859-" + std::to_string(code_page - 28590);
  if (code_page < 100 || code_page > 1258 || code_page == 1200 || code_page == 1201) return {};
  return "CP" + std::to_string(code_page);
}

/// One direction of iconv.
class Converter {
 public:
  Converter(const std::string& to, const std::string& from)
      : handle_(from.empty() || to.empty() ? Bad() : iconv_open(to.c_str(), from.c_str())) {}
  ~Converter() {
    if (ok()) iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  bool ok() const { return handle_ != Bad(); }

  /// Adds the conversion of `in` to `out`; false where `in` as a whole does not convert.
  bool Convert(std::string_view in, std::string& out) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    char buffer[64];
    std::string copy(in);  // iconv takes no const
    char* from = copy.data();
    std::size_t left = copy.size();
    char* to = buffer;
    std::size_t room = sizeof buffer;
    constexpr auto kFailed = static_cast<std::size_t>(-1);
    if (iconv(handle_, &from, &left, &to, &room) == kFailed || left != 0) return false;
    // Pages with combining marks (1258) hold a letter back until they know what follows.
    if (iconv(handle_, nullptr, nullptr, &to, &room) == kFailed) return false;
    out.append(buffer, sizeof buffer - room);
    return true;
  }

 private:
  /// What iconv_open answers on failure.
  static iconv_t Bad() { return std::bit_cast<iconv_t>(std::intptr_t{-1}); }
  iconv_t handle_;
};

}  // namespace

bool IsKnownCodePage(int code_page) { return Converter("UTF-8", IconvName(code_page)).ok(); }

char32_t DecodeByte(unsigned char byte, int code_page) {
  Converter converter("UTF-8", IconvName(code_page));
  const char in = static_cast<char>(byte);
  std::string out;
  if (!converter.ok() || !converter.Convert({&in, 1}, out) || out.empty()) return kReplacement;
  std::size_t i = 0;
  return NextCodePoint(out, i);
}

std::string DecodeDoubleByte(std::string_view bytes, int code_page) {
  Converter converter("UTF-8", IconvName(code_page));
  std::string text;
  for (std::size_t i = 0; i < bytes.size();) {
    if (converter.Convert(bytes.substr(i, 1), text)) {
      i += 1;
    } else if (i + 1 < bytes.size() && converter.Convert(bytes.substr(i, 2), text)) {
      i += 2;
    } else {
      AppendUtf8(text, kReplacement);
      i += 1;
    }
  }
  return text;
}

std::string EncodeDoubleByte(std::string_view utf8, int code_page) {
  Converter converter(IconvName(code_page), "UTF-8");
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size();) {
    const std::size_t at = i;
    NextCodePoint(utf8, i);
    if (!converter.Convert(utf8.substr(at, i - at), bytes)) bytes += '?';
  }
  return bytes;
}

#endif

}  // namespace platform
