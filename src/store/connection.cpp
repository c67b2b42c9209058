#include "store/connection.h"

#include "platform/encoding.h"
#include "store/connection_impl.h"
#include "store/recordset_data.h"
#include "store/shape.h"
#include "store/sources.h"

namespace store {

namespace {

void RequireSelect(const Prepared& prepared, std::string_view text) {
  if (prepared.translation.kind == dialect::StatementKind::kSelect) return;
  throw Error(kSyntaxError, StatementHead(text), "Instructiunea nu este o interogare SELECT");
}

Recordset OpenShape(const std::shared_ptr<Engine>& engine, std::string_view text,
                    const OpenOptions& options) {
  const ShapeCommand command = ParseShape(text);
  const auto open = [&](const std::string& statement) {
    Prepared& prepared = engine->Prepare(statement);
    RequireSelect(prepared, statement);
    return RecordsetFactory::Load(engine, prepared, statement, options);
  };
  Recordset parent = open(command.statement);
  for (const ShapeChild& child : command.children) {
    const Recordset rows = open(child.statement);
    Chapter chapter{.alias = child.alias, .rows = RecordsetFactory::Rows(rows), .relation = {}};
    for (const auto& [parent_column, child_column] : child.relation) {
      chapter.relation.emplace_back(parent.FieldIndex(parent_column), rows.FieldIndex(child_column));
    }
    RecordsetFactory::Rows(parent)->chapters.push_back(std::move(chapter));
  }
  return parent;
}

// Names declared by "PARAMETERS [x] Text, y Long;", in their order.
std::vector<std::string> DeclaredParameters(std::string_view text) {
  constexpr std::string_view kWord = "PARAMETERS";
  std::vector<std::string> names;
  text = platform::Trim(text);
  if (text.size() <= kWord.size() || !platform::EqualsNoCase(text.substr(0, kWord.size()), kWord)) {
    return names;
  }
  text.remove_prefix(kWord.size());
  bool wanted = true;  // a name begins each item
  for (std::size_t at = 0; at < text.size() && text[at] != ';'; ++at) {
    const char c = text[at];
    if (c == ',') {
      wanted = true;
    } else if (wanted && c == '[') {
      const std::size_t end = std::min(text.find(']', at), text.size());
      names.emplace_back(text.substr(at + 1, end - at - 1));
      wanted = false;
      at = end;
    } else if (wanted && c != ' ' && c != '\r' && c != '\n' && c != '\t') {
      const std::size_t end = std::min(text.find_first_of(" ,;\r\n\t", at), text.size());
      names.emplace_back(text.substr(at, end - at));
      wanted = false;
      at = end - 1;
    } else if (c == '(') {
      at = std::min(text.find(')', at), text.size() - 1);
    }
  }
  return names;
}

}  // namespace

Connection::Connection(Environment environment) : impl_(std::make_unique<Impl>(std::move(environment))) {}

Connection::~Connection() { Close(); }

void Connection::Open(std::string_view connection_string) {
  impl_->connection_string = connection_string;
  impl_->engine->Open(ParseConnectionString(connection_string));
}

void Connection::Close() { impl_->engine->Close(); }
bool Connection::is_open() const { return impl_->engine->is_open(); }
const std::string& Connection::connection_string() const { return impl_->connection_string; }
const std::string& Connection::path() const { return impl_->engine->path(); }

Recordset Connection::Open(std::string_view select, const OpenOptions& options) {
  const std::shared_ptr<Engine>& engine = impl_->engine;
  engine->RequireOpen(select);
  if (IsShape(select)) return OpenShape(engine, select, options);
  Prepared& prepared = engine->Prepare(select);
  RequireSelect(prepared, select);
  return RecordsetFactory::Load(engine, prepared, select, options, &engine->normalized());
}

Recordset Connection::QueryStored(std::string_view name, const std::vector<Value>& arguments) {
  const std::shared_ptr<Engine>& engine = impl_->engine;
  engine->RequireOpen(name);
  engine->RequireTransaction();
  engine->RefreshChangedFiles();
  const dialect::Relation* query = engine->schema().Find(name);
  if (query == nullptr || !query->is_query) {
    throw Error(kNoSuchTable, std::string(name), fmt::format("Nu exista interogarea '{}'", name));
  }
  const std::vector<std::string> names = DeclaredParameters(query->query_text);
  if (arguments.size() > names.size()) {
    throw Error(
        kMissingParameter, std::string(name),
        fmt::format("Interogarea '{}' are {} parametri, s-au dat {}", name, names.size(), arguments.size()));
  }
  std::vector<std::pair<std::string, Value>> bound;
  for (std::size_t i = 0; i < arguments.size(); ++i) bound.emplace_back(names[i], arguments[i]);
  const std::string text = query->query_text;
  const std::unique_ptr<Prepared> prepared = engine->PrepareUncached(text, *query->home, bound);
  RequireSelect(*prepared, text);
  return RecordsetFactory::Load(engine, *prepared, name, {});
}

std::optional<Value> Connection::Scalar(std::string_view select) {
  Engine& engine = *impl_->engine;
  Prepared& prepared = engine.Prepare(select);
  RequireSelect(prepared, select);
  const ResetGuard guard(prepared.statement.get());
  if (!engine.Step(prepared, select)) return std::nullopt;
  std::string padded;
  return ReadCell(prepared.statement.get(), 0, prepared.translation.columns.front(), engine.is_source(),
                  padded)
      .ToValue();
}

bool Connection::Any(std::string_view select) {
  Engine& engine = *impl_->engine;
  Prepared& prepared = engine.Prepare(select);
  RequireSelect(prepared, select);
  const ResetGuard guard(prepared.statement.get());
  return engine.Step(prepared, select);
}

std::int64_t Connection::Execute(std::string_view statement) {
  Engine& engine = *impl_->engine;
  Prepared& prepared = engine.Prepare(statement);
  if (!prepared.statement) {
    // The catalog drops all cached statements, this one among them.
    const dialect::Translation translation = prepared.translation;
    if (engine.is_source())
      throw Error(kNotUpdatable, StatementHead(statement), "Sursa poate fi doar citita");
    impl_->catalog.Carry(translation);
    return 0;
  }
  std::optional<std::int64_t> matched;
  if (prepared.matched) {
    const ResetGuard guard(prepared.matched.get());
    if (engine.Step(prepared.matched)) matched = prepared.matched.Integer(0);
  }
  const ResetGuard guard(prepared.statement.get());
  while (engine.Step(prepared, statement)) {
  }
  if (matched) return *matched;
  if (prepared.translation.kind == dialect::StatementKind::kSelect) return 0;
  return sqlite3_changes64(engine.db());
}

void Connection::Begin() { impl_->engine->Begin(); }
void Connection::Commit() { impl_->engine->Commit(); }
void Connection::Rollback() { impl_->engine->Rollback(); }
bool Connection::in_transaction() const { return impl_->engine->in_transaction(); }

void Connection::SetWatch(std::function<bool()> go_on) {
  constexpr int kEvery = 10'000;  // steps of SQLite's machine, well below a millisecond
  impl_->watch = std::move(go_on);
  if (!impl_->engine->is_open()) return;
  const auto ask = [](void* impl) { return static_cast<Impl*>(impl)->watch() ? 0 : 1; };
  sqlite3_progress_handler(impl_->engine->db(), kEvery, impl_->watch ? +ask : nullptr, impl_.get());
}

Catalog& Connection::catalog() {
  impl_->engine->RequireOpen("");
  if (impl_->engine->is_source()) {
    throw Error(kNotUpdatable, path(), fmt::format("{} nu este o baza de date", path()));
  }
  impl_->engine->RefreshChangedFiles();
  return impl_->catalog;
}

void Connection::BindLink(std::string_view name, std::string_view windows_path, std::string_view remote) {
  Engine& engine = *impl_->engine;
  catalog();
  auto& bindings = engine.main_file().bindings();
  const auto bound = bindings.find(name);
  if (bound != bindings.end() && bound->second.file == windows_path && bound->second.remote_name == remote) {
    return;
  }
  engine.Attach(std::string(windows_path));
  engine.DropStatements();
  bindings.insert_or_assign(std::string(name), LinkDefinition{.name = std::string(name),
                                                              .file = std::string(windows_path),
                                                              .remote_name = std::string(remote)});
  engine.DetachUnused();
}

void Connection::UnbindLink(std::string_view name) {
  Engine& engine = *impl_->engine;
  catalog();
  auto& bindings = engine.main_file().bindings();
  const auto bound = bindings.find(name);
  if (bound == bindings.end()) return;
  engine.DropStatements();
  bindings.erase(bound);
  engine.DetachUnused();
}

bool PassOver(platform::ErrorLog& log, std::string_view where, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const Error& error) {
    log.Write(where, fmt::format("{}: {} [{}]", error.number(), error.what(), error.source()));
    return false;
  }
}

}  // namespace store
