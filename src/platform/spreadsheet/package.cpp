#include "platform/spreadsheet/package.h"

#include <zip.h>

#include <vector>

#include "platform/spreadsheet/sheet.h"

namespace platform::spreadsheet {
namespace {

using Reason = SheetError::Reason;

constexpr std::size_t kPiece = 64 * 1024;

struct CloseEntry {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
struct DiscardArchive {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};

class ZipPackage : public Package {
 public:
  ZipPackage(std::string content, const ZipLimits& limits) : content_(std::move(content)), limits_(limits) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(content_.data(), content_.size(), 0, &error);
    if (source != nullptr) archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    const bool opened = archive_ != nullptr;
    if (!opened && source != nullptr) zip_source_free(source);
    zip_error_fini(&error);
    if (!opened)
      throw SheetError(Reason::kDamaged, "arhiva zip a registrului este trunchiata sau deteriorata");
  }

  bool Has(std::string_view part) const override { return Locate(part) >= 0; }

  void Read(std::string_view part, const std::function<bool(std::string_view)>& take) override {
    const zip_int64_t index = Locate(part);
    if (index < 0) Fail(part, "lipseste din arhiva");
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(archive_.get(), static_cast<zip_uint64_t>(index), 0, &stat) != 0) {
      Fail(part, "nu poate fi citita");
    }
    if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE) {
      throw SheetError(Reason::kEncrypted,
                       "arhiva este criptata; salvati fisierul fara parola la deschidere");
    }
    const std::unique_ptr<zip_file_t, CloseEntry> entry(
        zip_fopen_index(archive_.get(), static_cast<zip_uint64_t>(index), 0));
    if (!entry) Fail(part, "nu poate fi citita");
    buffer_.resize(kPiece);
    for (std::uint64_t size = 0;;) {
      const zip_int64_t got = zip_fread(entry.get(), buffer_.data(), buffer_.size());
      if (got < 0) Fail(part, "este deteriorata");
      if (got == 0) return;
      size += static_cast<std::uint64_t>(got);
      unpacked_ += static_cast<std::uint64_t>(got);
      Check(part, size, stat.comp_size);
      if (!take({buffer_.data(), static_cast<std::size_t>(got)})) return;
    }
  }

 private:
  zip_int64_t Locate(std::string_view part) const {
    return zip_name_locate(archive_.get(), std::string(part).c_str(), ZIP_FL_NOCASE | ZIP_FL_ENC_GUESS);
  }

  // Counts what really comes out: the sizes that an archive declares may be false.
  void Check(std::string_view part, std::uint64_t size, std::uint64_t packed) const {
    const bool swollen = size > limits_.ratio_from && size / limits_.ratio > packed;
    if (!swollen && unpacked_ <= limits_.total) return;
    throw SheetError(
        Reason::kUnsupported,
        fmt::format("arhiva se despacheteaza la mai mult decat poate avea o foaie de calcul (bomba zip): "
                    "partea {} are {} octeti impachetati si trece de {} despachetati",
                    part, packed, size));
  }

  [[noreturn]] static void Fail(std::string_view part, const char* what) {
    throw SheetError(Reason::kDamaged,
                     fmt::format("registrul este trunchiat sau deteriorat: partea {} {}", part, what));
  }

  std::string content_;
  ZipLimits limits_;
  std::unique_ptr<zip_t, DiscardArchive> archive_;
  std::vector<char> buffer_;
  std::uint64_t unpacked_ = 0;
};

}  // namespace

std::string Package::ReadWhole(std::string_view part) {
  std::string whole;
  Read(part, [&](std::string_view piece) {
    whole += piece;
    return true;
  });
  return whole;
}

std::unique_ptr<Package> OpenZip(std::string content, const ZipLimits& limits) {
  return std::make_unique<ZipPackage>(std::move(content), limits);
}

}  // namespace platform::spreadsheet
