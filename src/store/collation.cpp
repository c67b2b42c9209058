#include "store/collation.h"

#include <array>
#include <cstdint>

#include "store/functions.h"

// The order is by keys of three levels, each looked at only where the earlier ones tie: base letters, then
// accents, then hyphens and apostrophes with their places. Comparing keys is a total order whatever the texts
// hold, which SQLite's indexes rely on.

namespace store {

namespace {

/// Base letters of U+00C0 to U+017F in lower case; a dot where there is none.
constexpr char kLatinBase[] =
    "aaaaaaaceeeeiiii"  // C0
    "dnooooo.ouuuuyts"
    "aaaaaaaceeeeiiii"  // E0
    "dnooooo.ouuuuyty"
    "aaaaaaccccccccdd"  // 100
    "ddeeeeeeeeeegggg"
    "gggghhhhiiiiiiii"  // 120
    "iiiijjkkklllllll"
    "lllnnnnnnnnnoooo"  // 140
    "oooorrrrrrssssss"
    "ssttttttuuuuuuuu"  // 160
    "uuuuwwyyyzzzzzzs";
static_assert(sizeof(kLatinBase) == 0x180 - 0xC0 + 1);

/// ASCII characters in the engine's order: blank, punctuation, signs, digits, letters. Hyphen and apostrophe
/// have no weight (0).
constexpr std::array<std::uint8_t, 128> MakeAsciiWeights() {
  std::array<std::uint8_t, 128> weights{};
  std::uint8_t next = 1;
  for (std::size_t c = 0; c < 32; ++c) weights[c] = next++;
  weights[127] = next++;
  constexpr std::string_view order = " !\"#$%&()*,./:;?@[\\]^_`{|}~+<=>0123456789";
  for (char c : order) weights[static_cast<unsigned char>(c)] = next++;
  for (std::size_t c = 'a'; c <= 'z'; ++c) {
    weights[c] = next;
    weights[c - 32] = next++;
  }
  weights['-'] = weights['\''] = 0;
  return weights;
}
constexpr std::array<std::uint8_t, 128> kAscii = MakeAsciiWeights();

struct Weight {
  std::uint32_t base = 0;    ///< 0: breaks ties only
  std::uint32_t accent = 0;  ///< 0: none
};

Weight WeightOf(char32_t c) {
  if (c < 128) return {kAscii[c], 0};
  c = FoldCase(c);
  if (c < 128) return {kAscii[c], 0};
  char base = '.';
  if (c >= 0xC0 && c < 0x180) base = kLatinBase[c - 0xC0];
  if (base != '.') return {kAscii[static_cast<unsigned char>(base)], c};
  // Combining marks, soft hyphen and the typographic hyphens and apostrophes break ties as "-" and "'" do.
  if ((c >= 0x300 && c < 0x370) || c == 0xAD || c == 0x2010 || c == 0x2011 || c == 0x2019) return {0, 0};
  return {256 + c, 0};
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  if (text.empty() || text.back() != ' ') return text;
  std::size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? text : text.substr(0, last + 1);
}

/// Walks over the characters of one level.
struct Walker {
  std::string_view text;
  std::size_t at = 0;
  std::uint32_t passed = 0;  ///< weighted characters so far

  bool NextWeighted(Weight& weight) {
    while (at < text.size()) {
      weight = WeightOf(NextCodePoint(text, at));
      if (weight.base != 0) {
        ++passed;
        return true;
      }
    }
    return false;
  }
  bool NextTieBreaker(char32_t& c) {
    while (at < text.size()) {
      c = NextCodePoint(text, at);
      if (WeightOf(c).base == 0) return true;
      ++passed;
    }
    return false;
  }
};

int CompareTieBreakers(std::string_view a, std::string_view b) {
  Walker left{a}, right{b};
  for (;;) {
    char32_t x = 0, y = 0;
    bool has_left = left.NextTieBreaker(x), has_right = right.NextTieBreaker(y);
    if (!has_left || !has_right) return has_left ? 1 : has_right ? -1 : 0;
    if (left.passed != right.passed) return left.passed < right.passed ? -1 : 1;
    if (x != y) return x < y ? -1 : 1;
  }
}

int CompareLevels(std::string_view a, std::string_view b) {
  Walker left{a}, right{b};
  int accents = 0;
  for (;;) {
    Weight x, y;
    bool has_left = left.NextWeighted(x), has_right = right.NextWeighted(y);
    if (!has_left || !has_right) {
      if (has_left != has_right) return has_left ? 1 : -1;
      return accents != 0 ? accents : CompareTieBreakers(a, b);
    }
    if (x.base != y.base) return x.base < y.base ? -1 : 1;
    if (accents == 0 && x.accent != y.accent) accents = x.accent < y.accent ? -1 : 1;
  }
}

}  // namespace

char32_t NextCodePoint(std::string_view text, std::size_t& at) {
  auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  std::uint8_t lead = byte(at++);
  if (lead < 0x80) return lead;
  int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || at + static_cast<std::size_t>(more) > text.size()) return 0x110000 + lead;
  char32_t c = lead & (0x3F >> more);
  for (int i = 0; i < more; ++i) {
    std::uint8_t next = byte(at + static_cast<std::size_t>(i));
    if ((next & 0xC0) != 0x80) return 0x110000 + lead;
    c = (c << 6) | (next & 0x3F);
  }
  at += static_cast<std::size_t>(more);
  return c;
}

char32_t FoldCase(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  if (c < 0x100) return c >= 0xC0 && c <= 0xDE && c != 0xD7 ? c + 32 : c;
  if (c < 0x180) {
    if (c == 0x130) return 'i';
    if (c == 0x131 || c == 0x138 || c == 0x149) return c;
    if (c == 0x178) return 0xFF;
    if (c == 0x17F) return 's';
    bool odd_upper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    return ((c & 1) == 1) == odd_upper ? c + 1 : c;
  }
  if (c >= 0x200 && c < 0x234) {
    c |= 1;
    if (c == 0x219) return 0x15F;  // comma below weighs the same as cedilla
    if (c == 0x21B) return 0x163;
    return c;
  }
  if (c >= 0x386 && c < 0x400) {
    if (c >= 0x391 && c <= 0x3AB) return c + 32;
    if (c == 0x386) return 0x3AC;
    if (c >= 0x388 && c <= 0x38A) return c + 37;
    if (c == 0x38C) return 0x3CC;
    if (c == 0x38E || c == 0x38F) return c + 63;
    if (c == 0x3C2) return 0x3C3;
    return c;
  }
  if (c >= 0x400 && c < 0x482) {
    if (c < 0x410) return c + 80;
    if (c < 0x430) return c + 32;
    return c >= 0x460 ? (c | 1) : c;
  }
  if ((c >= 0x48A && c < 0x4C0) || (c >= 0x1E00 && c < 0x1E96) || (c >= 0x1EA0 && c < 0x1F00)) return c | 1;
  return c;
}

FoldedMatch FindFolded(std::string_view text, std::string_view what, std::size_t from) {
  while (from <= text.size()) {
    std::size_t i = from, j = 0;
    while (j < what.size() && i < text.size() &&
           FoldCase(NextCodePoint(text, i)) == FoldCase(NextCodePoint(what, j))) {
      if (j == what.size()) return {from, i - from};
    }
    if (what.empty()) return {from, 0};
    if (from == text.size()) break;
    NextCodePoint(text, from);
  }
  return {};
}

int CompareText(std::string_view a, std::string_view b) {
  a = WithoutTrailingBlanks(a);
  b = WithoutTrailingBlanks(b);
  if (a == b) return 0;
  std::size_t shorter = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < shorter; ++i) {
    auto x = static_cast<std::uint8_t>(a[i]), y = static_cast<std::uint8_t>(b[i]);
    // Anything but plain characters: every level from here on; what lies before is the same on all of them.
    if ((x | y) >= 0x80 || kAscii[x] == 0 || kAscii[y] == 0) return CompareLevels(a.substr(i), b.substr(i));
    if (kAscii[x] != kAscii[y]) return kAscii[x] < kAscii[y] ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  // What the longer one has left puts it behind, also where it only breaks ties.
  return a.size() < b.size() ? -1 : 1;
}

namespace {

/// Whether [lo-hi] holds c: by the order of texts, so that [a-f] takes Â too.
bool InRange(char32_t c, char32_t lo, char32_t hi) {
  Weight x = WeightOf(c), l = WeightOf(lo), h = WeightOf(hi);
  auto below = [](Weight p, Weight q) {
    return p.base < q.base || (p.base == q.base && p.accent <= q.accent);
  };
  return x.base != 0 && below(l, x) && below(x, h);
}

/// One element of a pattern other than "%", read at `at`, held against `c`.
bool MatchElement(std::string_view pattern, std::size_t& at, char32_t c) {
  char32_t p = NextCodePoint(pattern, at);
  if (p == '_') return true;
  std::size_t close = p == '[' ? pattern.find(']', at) : std::string_view::npos;
  if (close == std::string_view::npos) return FoldCase(p) == FoldCase(c);
  std::string_view members = pattern.substr(at, close - at);
  at = close + 1;
  bool negated = members.size() > 1 && members.front() == '!';
  std::size_t i = negated ? 1 : 0;
  bool found = false;
  while (i < members.size()) {
    char32_t lo = NextCodePoint(members, i);
    if (i + 1 < members.size() && members[i] == '-') {
      ++i;
      char32_t hi = NextCodePoint(members, i);
      found = found || InRange(c, lo, hi);
    } else {
      found = found || FoldCase(lo) == FoldCase(c);
    }
  }
  return found != negated;
}

}  // namespace

bool Like(std::string_view text, std::string_view pattern, bool star_too) {
  // Only the last "%" passed can need another try, so the work is at most text times pattern.
  std::size_t t = 0, p = 0, retry_text = 0, retry_pattern = std::string_view::npos;
  for (;;) {
    if (p < pattern.size() && (pattern[p] == '%' || (star_too && pattern[p] == '*'))) {
      retry_pattern = ++p;
      retry_text = t;
      continue;
    }
    if (t == text.size()) {
      if (p == pattern.size()) return true;
      return false;
    }
    if (p < pattern.size()) {
      std::size_t next_text = t, next_pattern = p;
      if (MatchElement(pattern, next_pattern, NextCodePoint(text, next_text))) {
        t = next_text;
        p = next_pattern;
        continue;
      }
    }
    if (retry_pattern == std::string_view::npos) return false;
    NextCodePoint(text, retry_text);
    t = retry_text;
    p = retry_pattern;
  }
}

}  // namespace store
