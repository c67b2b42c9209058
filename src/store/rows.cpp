#include "store/rows.h"

namespace store {

Cell Cell::Boolean(bool value) {
  Cell cell;
  cell.kind = Kind::kBoolean;
  cell.integer = value ? -1 : 0;
  return cell;
}

Cell Cell::Integer(std::int64_t value) {
  Cell cell;
  cell.kind = Kind::kInteger;
  cell.integer = value;
  return cell;
}

Cell Cell::Double(double value) {
  Cell cell;
  cell.kind = Kind::kDouble;
  cell.number = value;
  return cell;
}

Cell Cell::DateOf(double days) {
  Cell cell;
  cell.kind = Kind::kDate;
  cell.number = days;
  return cell;
}

Cell Cell::TextRef(std::string_view text) {
  Cell cell;
  cell.length = static_cast<std::uint32_t>(text.size());
  if (text.size() <= sizeof(cell.chars)) {
    cell.kind = Kind::kShortText;
    if (!text.empty()) std::memcpy(cell.chars, text.data(), text.size());
  } else {
    cell.kind = Kind::kText;
    cell.text = text.data();
  }
  return cell;
}

double Cell::AsNumber() const {
  switch (kind) {
    case Kind::kBoolean:
    case Kind::kInteger:
      return static_cast<double>(integer);
    case Kind::kDouble:
    case Kind::kDate:
      return number;
    default:
      return 0;
  }
}

Value Cell::ToValue() const {
  switch (kind) {
    case Kind::kNull:
      return {};
    case Kind::kBoolean:
      return Value(integer != 0);
    case Kind::kInteger:
      return Value(integer);
    case Kind::kDouble:
      return Value(number);
    case Kind::kDate:
      return Value(Date{number});
    default:
      return Value(AsText());
  }
}

const char* TextArena::Store(std::string_view text) {
  if (capacity_ - used_ < text.size()) {
    const std::size_t next = std::clamp<std::size_t>(capacity_ * 2, 512, 1 << 16);
    capacity_ = std::max(next, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(capacity_));
    used_ = 0;
    total_ += capacity_;
  }
  char* place = blocks_.back().get() + used_;
  std::memcpy(place, text.data(), text.size());
  used_ += text.size();
  return place;
}

Cell* RowBlock::Add() {
  const auto chunk = static_cast<std::size_t>(size_ >> kShift);
  if (chunk == 0 && size_ == first_capacity_) {
    const std::int64_t grown = std::min(kRows, std::max<std::int64_t>(4, first_capacity_ * 4));
    auto cells = std::make_unique<Cell[]>(static_cast<std::size_t>(grown * columns_));
    if (size_ > 0) std::copy_n(chunks_[0].get(), size_ * columns_, cells.get());
    if (chunks_.empty()) chunks_.emplace_back();
    chunks_[0] = std::move(cells);
    first_capacity_ = grown;
  } else if (chunk == chunks_.size()) {
    chunks_.push_back(std::make_unique<Cell[]>(static_cast<std::size_t>(kRows * columns_)));
  }
  Cell* added = row(size_++);
  std::fill_n(added, columns_, Cell());
  return added;
}

void RowBlock::StoreText(Cell* cell, int column, std::string_view text) {
  *cell = Cell::TextRef(text);
  if (cell->kind == Cell::Kind::kShortText) return;
  // Long texts repeat from row to row (descriptions, file paths): keep one copy.
  if (size_ > 1) {
    const Cell& above = row(size_ - 2)[column];
    if (above.kind == Cell::Kind::kText && above.AsText() == text) {
      cell->text = above.text;
      return;
    }
  }
  cell->text = arena_.Store(text);
}

Cell RowBlock::Keep(const Cell& cell) {
  Cell kept = cell;
  if (cell.kind == Cell::Kind::kText) kept.text = arena_.Store(cell.AsText());
  return kept;
}

}  // namespace store
