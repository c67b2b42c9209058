#include "reports/screens/preview.h"

#include "reports/declaration_report.h"
#include "reports/screens/raport.h"
#include "ui/format.h"
#include "ui/text.h"

namespace reports {

namespace {

Format FromUi(ui::Format format) {
  switch (format) {
    case ui::Format::kWhole:
      return Format::kWhole;
    case ui::Format::kAmount:
      return Format::kAmount;
    case ui::Format::kRate:
      return Format::kRate;
    case ui::Format::kDate:
      return Format::kDate;
    case ui::Format::kDateTime:
      return Format::kDateTime;
    case ui::Format::kTick:
      return Format::kTick;
    default:
      return Format::kText;
  }
}

ui::Format ToUi(Format format) {
  switch (format) {
    case Format::kWhole:
      return ui::Format::kWhole;
    case Format::kAmount:
      return ui::Format::kAmount;
    case Format::kRate:
      return ui::Format::kRate;
    case Format::kDate:
      return ui::Format::kDate;
    case Format::kDateTime:
      return ui::Format::kDateTime;
    default:
      return ui::Format::kText;
  }
}

/// A grid's columns in the order shown, then its other ones, which a definition may name too.
class GridTable : public Table {
 public:
  explicit GridTable(const ui::GridContent& content) : model_(content.model), shown_(content.columns) {
    const auto count = static_cast<int>(model_->columns().size());
    for (int i = 0; i < count; ++i) {
      if (std::find(shown_.begin(), shown_.end(), i) == shown_.end()) shown_.push_back(i);
    }
    visible_ = static_cast<int>(content.columns.size());
    for (const int i : shown_) {
      const ui::Column& column = model_->columns()[static_cast<std::size_t>(i)];
      columns_.push_back({column.field, ui::Utf8(column.caption), FromUi(column.format)});
    }
  }

  int visible_columns() const override { return visible_; }
  int rows() const override { return model_->DataRows(); }
  store::Value ValueAt(int row, int column) const override {
    return model_->ValueAt(row, shown_[static_cast<std::size_t>(column)]);
  }

 protected:
  std::string ShownAt(int row, int column, const Formatter&) const override {
    return ui::Utf8(model_->TextAt(row, shown_[static_cast<std::size_t>(column)]));
  }

 private:
  ui::GridModel* model_;
  std::vector<int> shown_;
  int visible_ = 0;
};

/// Runs what may fail for want of a definition or of the database.
void Tell(ui::Context& context, const std::function<void()>& action) {
  ui::Try(context, [&] {
    try {
      action();
    } catch (const ReportError& error) {
      context.session.host.prompter.Error(error.what());
    }
  });
}

std::shared_ptr<Table> ProblemRows(session::Session& session, const declarations::Identity& identity,
                                   const declarations::LineProblems& problems) {
  std::map<std::int64_t, std::pair<std::string, std::string>> lines;  // invoice and code by Record_ID
  store::Recordset rows = session.company.Query("SELECT Record_ID, Factura_Numar, Cod_NC FROM Intrastat" +
                                                declarations::EditorFilter(identity));
  for (; !rows.eof(); rows.MoveNext()) lines[rows[0].ToInteger()] = {rows[1].ToText(), rows[2].ToText()};
  std::vector<std::vector<store::Value>> cells;
  for (const declarations::LineProblem& problem : problems.all()) {
    const auto& [invoice, code] = lines[problem.Record_ID];  // both empty where the line is gone
    cells.push_back({problem.Record_ID, invoice, code, problem.text});
  }
  std::vector<Table::Column> columns = {{"Pozitia", "Pozitia", Format::kText},
                                        {"Factura", "Factura", Format::kText},
                                        {"Cod_NC", "Cod vamal", Format::kText},
                                        {"Problema", "Problema", Format::kText}};
  return std::make_shared<MemoryTable>(std::move(columns), std::move(cells));
}

}  // namespace

Formatter ScreenFormatter() {
  return [](const store::Value& value, Format format) { return ui::Utf8(ui::Shown(value, ToUi(format))); };
}

Subject SubjectOf(session::Session& session, const ui::GridContent& content) {
  Subject subject;
  subject.report = content.report;
  subject.title = content.title;
  subject.placeholders = CommonPlaceholders(session);
  subject.rows = std::make_shared<GridTable>(content);
  return subject;
}

void Preview(ui::Context& context, const Subject& subject, QWidget* parent) {
  Tell(context, [&] { Frm_Raport(context, subject, parent).exec(); });
}

void PreviewList(ui::Context& context, const ui::GridContent& content, QWidget* parent) {
  Preview(context, SubjectOf(context.session, content), parent);
}

void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        QWidget* parent) {
  Tell(context, [&] {
    Subject subject;
    subject.report = detailed ? kDetailed : kAggregated;
    subject.placeholders = DeclarationPlaceholders(context.session, identity);
    Frm_Raport(context, subject, parent).exec();
  });
}

void PreviewProblems(ui::Context& context, const declarations::Identity& identity,
                     const declarations::LineProblems& problems, QWidget* parent) {
  Tell(context, [&] {
    Subject subject;
    subject.report = "Probleme";
    subject.placeholders = DeclarationPlaceholders(context.session, identity);
    subject.rows = ProblemRows(context.session, identity, problems);
    Frm_Raport(context, subject, parent).exec();
  });
}

}  // namespace reports
