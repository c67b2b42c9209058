#include "store/statement_cache.h"

namespace store {

namespace {

bool Serves(const Prepared& prepared, const dialect::Normalized& normalized) {
  for (const auto& [index, raw] : prepared.translation.structural) {
    const auto at = static_cast<std::size_t>(index);
    if (at >= normalized.literals.size() || normalized.literals[at].raw != raw) return false;
  }
  return true;
}

}  // namespace

Prepared* StatementCache::Find(const dialect::Normalized& normalized) {
  if (entries_.empty()) return nullptr;
  Entry& last = entries_.front();  // loops run the same statement again
  if (last.key == normalized.key && Serves(*last.prepared, normalized)) return last.prepared.get();
  const auto [begin, end] = index_.equal_range(normalized.key);
  for (auto it = begin; it != end; ++it) {
    if (!Serves(*it->second->prepared, normalized)) continue;
    entries_.splice(entries_.begin(), entries_, it->second);
    return it->second->prepared.get();
  }
  return nullptr;
}

Prepared& StatementCache::Add(const dialect::Normalized& normalized, std::unique_ptr<Prepared> prepared) {
  if (entries_.size() >= capacity_) {
    const auto oldest = std::prev(entries_.end());
    const auto [begin, end] = index_.equal_range(oldest->key);
    for (auto it = begin; it != end; ++it) {
      if (it->second != oldest) continue;
      index_.erase(it);
      break;
    }
    entries_.pop_back();
  }
  entries_.push_front({normalized.key, std::move(prepared)});
  index_.emplace(entries_.front().key, entries_.begin());
  return *entries_.front().prepared;
}

void StatementCache::Clear() {
  index_.clear();
  entries_.clear();
}

}  // namespace store
