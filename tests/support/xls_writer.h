#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace test_support {

/// Bytes of BIFF records, one behind another.
class BiffStream {
 public:
  BiffStream& U8(unsigned value);
  BiffStream& U16(unsigned value);
  BiffStream& U32(std::uint32_t value);
  BiffStream& F64(double value);
  BiffStream& Bytes(std::string_view bytes);
  /// Begins a record; its length is set by the next Begin or End.
  BiffStream& Begin(unsigned id);
  void End();
  std::size_t size() const { return bytes_.size(); }
  /// The whole stream, the last record closed.
  std::string Take();

 private:
  std::string bytes_;
  std::size_t open_ = 0;  ///< offset of the open record's payload; 0 for none
};

/// A stream in an OLE2 compound file, as the only child of its root; under 4096 bytes in the mini stream.
std::string CompoundFileOf(const std::string& stream, std::string_view name);

/// Writes small or large BIFF8 workbooks. Cells are stored in the order of the calls.
class XlsWriter {
 public:
  class Sheet {
   public:
    void Text(unsigned row, unsigned column, std::string_view utf8);
    void Number(unsigned row, unsigned column, double number, std::string_view format = "General");
    void Date(unsigned row, unsigned column, double days, std::string_view format = "dd\\.mm\\.yyyy");
    void Boolean(unsigned row, unsigned column, bool value);
    void Error(unsigned row, unsigned column, unsigned code);
    /// Formula cells hold "=0" and the given cached result.
    void FormulaNumber(unsigned row, unsigned column, double result, std::string_view format = "General");
    void FormulaText(unsigned row, unsigned column, std::string_view result);
    void FormulaBoolean(unsigned row, unsigned column, bool result);
    void FormulaError(unsigned row, unsigned column, unsigned code);
    /// A row of cells separated by "|", the first character of each telling its kind: 'text, =number,
    /// ~formula's number, "formula's text, 0number of eight digits, @day, ?boolean, !error; an empty one is
    /// left out.
    void Row(unsigned row, std::string_view cells);
    /// For records that the writer does not know.
    BiffStream& raw() { return cells_; }

   private:
    friend class XlsWriter;
    Sheet(XlsWriter& book, std::string name, bool hidden)
        : book_(&book), name_(std::move(name)), hidden_(hidden) {}
    BiffStream& Cell(unsigned id, unsigned row, unsigned column, std::string_view format = "General");
    void Formula(unsigned row, unsigned column, std::uint64_t result, std::string_view format = "General");

    XlsWriter* book_;
    std::string name_;
    bool hidden_;
    BiffStream cells_;
  };

  XlsWriter() = default;
  XlsWriter(const XlsWriter&) = delete;
  XlsWriter& operator=(const XlsWriter&) = delete;

  /// The sheet stays valid while the writer lives.
  Sheet& AddSheet(std::string_view name, bool hidden = false);
  /// Dates then count from 1904-01-01; Sheet::Date still takes the file's own number.
  void Use1904() { base_1904_ = true; }

  std::string Stream();   ///< the workbook stream
  std::string Content();  ///< the .xls file
  void Save(const std::string& host_path);

 private:
  unsigned FormatIndex(std::string_view format);
  std::uint32_t TextIndex(std::string_view text);
  void WriteGlobals(BiffStream& out, std::vector<std::size_t>& offset_slots);
  void WriteTexts(BiffStream& out);

  std::vector<std::unique_ptr<Sheet>> sheets_;
  bool base_1904_ = false;
  std::vector<std::string> formats_;
  std::vector<std::string> texts_;
  std::unordered_map<std::string, std::uint32_t> text_index_;
  std::uint32_t text_uses_ = 0;
};

}  // namespace test_support
