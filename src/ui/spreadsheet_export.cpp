#include <xlsxwriter.h>

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>

#include "ui/grid_export.h"
#include "ui/progress.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr int kLongestText = 32767;   // characters in a cell, by the file format
constexpr int kMostRows = 1'048'576;  // of a sheet, headings included
constexpr double kFirstSafeDay = 61;  // 1 March 1900: before it, spreadsheets count one day wrongly

/// Sheet names have at most 31 characters and none of []:*?/\ .
std::string SheetName(const QString& title) {
  QString name;
  for (const QChar c : title) {
    if (!QStringLiteral("[]:*?/\\'").contains(c)) name += c;
  }
  while (name.endsWith('-') || name.endsWith(' ')) name.chop(1);
  name = name.trimmed().left(31);
  return name.isEmpty() ? "Lista" : Utf8(name);
}

class Workbook {
 public:
  Workbook(const std::string& host_path, const std::string& folder) {
    temporary_ = folder;
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = temporary_.data();
    book_ = workbook_new_opt(host_path.c_str(), &options);
  }
  ~Workbook() {
    if (book_ != nullptr) lxw_workbook_free(book_);  // given up: nothing is packed
  }
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;

  lxw_workbook* get() { return book_; }
  lxw_error Close() { return workbook_close(std::exchange(book_, nullptr)); }

  lxw_format* FormatOf(const char* number_format) {
    lxw_format* format = workbook_add_format(book_);
    if (number_format != nullptr) format_set_num_format(format, number_format);
    return format;
  }

 private:
  std::string temporary_;
  lxw_workbook* book_;
};

class Writer {
 public:
  Writer(Workbook& book, const GridContent& content)
      : content_(content), sheet_(workbook_add_worksheet(book.get(), SheetName(content.title).c_str())) {
    bold_ = book.FormatOf(nullptr);
    format_set_bold(bold_);
    whole_ = book.FormatOf("#,##0");
    amount_ = book.FormatOf("#,##0.00");
    rate_ = book.FormatOf("#,##0.0000");
    date_ = book.FormatOf("dd.mm.yyyy");
    date_time_ = book.FormatOf("dd.mm.yyyy hh:mm");
  }

  bool Usable() const { return sheet_ != nullptr; }

  void WriteHead() {
    const int rows = content_.model->DataRows();
    lxw_col_t at = 0;
    for (const int column : content_.columns) {
      const Column& each = content_.model->columns()[static_cast<std::size_t>(column)];
      qsizetype widest = each.caption.size() + 3;  // the filter's arrow
      for (int row = 0; row < std::min(rows, 300); ++row) {
        widest = std::max(widest, content_.model->TextAt(row, column).size() + 1);
      }
      worksheet_set_column(sheet_, at, at, static_cast<double>(std::clamp<qsizetype>(widest, 6, 70)),
                           nullptr);
      ++at;
    }
    at = 0;
    for (const int column : content_.columns) {
      const Column& each = content_.model->columns()[static_cast<std::size_t>(column)];
      worksheet_write_string(sheet_, 0, at++, Utf8(each.caption).c_str(), bold_);
    }
    worksheet_freeze_panes(sheet_, 1, 0);
    worksheet_autofilter(sheet_, 0, 0, static_cast<lxw_row_t>(rows), static_cast<lxw_col_t>(at - 1));
  }

  void WriteRow(int row) {
    lxw_col_t at = 0;
    for (const int column : content_.columns) WriteCell(row, column, at++);
  }

 private:
  void WriteCell(int row, int column, lxw_col_t at) {
    const auto line = static_cast<lxw_row_t>(row + 1);
    const store::Value value = content_.model->ValueAt(row, column);
    const Format format = content_.model->columns()[static_cast<std::size_t>(column)].format;
    if (format == Format::kTick) {
      worksheet_write_string(sheet_, line, at, value.ToBoolean() ? "Da" : "Nu", nullptr);
      return;
    }
    const QString text = content_.model->TextAt(row, column);
    if (value.is_date() && value.ToDate().days >= kFirstSafeDay) {
      worksheet_write_number(sheet_, line, at, value.ToDate().days,
                             format == Format::kDateTime ? date_time_ : date_);
    } else if (value.is_number() && !value.is_boolean() && text == Shown(value, format)) {
      // Not where the screen has words for the number.
      worksheet_write_number(sheet_, line, at, value.ToDouble(), NumberFormat(format));
    } else if (!text.isEmpty()) {
      worksheet_write_string(sheet_, line, at, Utf8(text.left(kLongestText)).c_str(), nullptr);
    }
  }

  lxw_format* NumberFormat(Format format) const {
    switch (format) {
      case Format::kWhole:
        return whole_;
      case Format::kAmount:
        return amount_;
      case Format::kRate:
        return rate_;
      default:
        return nullptr;
    }
  }

  const GridContent& content_;
  lxw_worksheet* sheet_;
  lxw_format *bold_, *whole_, *amount_, *rate_, *date_, *date_time_;
};

}  // namespace

bool WriteSpreadsheet(session::Session& session, const GridContent& content,
                      const std::string& windows_path) {
  platform::Host& host = session.host;
  const int rows = content.model->DataRows();
  if (content.columns.empty()) return false;
  if (rows >= kMostRows) {
    host.prompter.Error("Lista are prea multe inregistrari pentru un fisier Excel (cel mult 1.048.575)");
    return false;
  }
  const LongRun run(host.progress, QStringLiteral("Export in Excel"), Stopping::kPossible);
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("lista.xlsx"));
  const auto failed = [&](const std::string& reason) {
    host.prompter.Error(fmt::format("Fisierul {} nu s-a putut scrie: {}", windows_path, reason));
    return false;
  };
  if (!folder.isValid()) return failed(Utf8(folder.errorString()));

  lxw_error error = LXW_NO_ERROR;
  {
    Workbook book(QFile::encodeName(file).toStdString(), QFile::encodeName(folder.path()).toStdString());
    if (book.get() == nullptr) return failed("memorie insuficienta");
    Writer writer(book, content);
    if (!writer.Usable()) return failed("nume de foaie nevalid");
    writer.WriteHead();
    for (int row = 0; row < rows; ++row) {
      if (row % 256 == 0) {
        host.progress.Update("Export in Excel", static_cast<int>(std::int64_t{row} * 95 / std::max(rows, 1)));
        if (host.progress.Cancelled()) {
          host.prompter.Info("Exportul a fost oprit; fisierul nu a fost scris");
          return false;
        }
      }
      writer.WriteRow(row);
    }
    error = book.Close();
  }
  if (error != LXW_NO_ERROR) return failed(lxw_strerror(error));
  QFile written(file);
  if (!written.open(QIODevice::ReadOnly)) return failed(Utf8(written.errorString()));
  const QByteArray bytes = written.readAll();
  try {
    host.files.Replace(windows_path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
  } catch (const platform::FileError& failure) {
    host.prompter.Error(failure.what());
    return false;
  }
  host.progress.Update("Export in Excel", 100);
  return true;
}

}  // namespace ui
