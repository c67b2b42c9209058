#include "reports/screens/preview.h"

#include "reports/declaration_report.h"
#include "reports/screens/raport.h"
#include "ui/file_options.h"
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
    case ui::Format::kNumber:
      return Format::kNumber;
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
    case Format::kNumber:
      return ui::Format::kNumber;
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
    const auto* rows = dynamic_cast<const ui::RecordsetModel*>(model_);
    for (const int i : shown_) {
      const ui::Column& column = model_->columns()[static_cast<std::size_t>(i)];
      std::string field = column.field;
      // A column without a name of its own is the recordset's at its position.
      if (field.empty() && rows != nullptr && i < rows->rows().field_count())
        field = rows->rows().field(i).name;
      columns_.push_back({std::move(field), ui::Utf8(column.caption), FromUi(column.format), i + 1});
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

/// The report's screen, used while it is there. A wrong definition of rows that are at hand gives way to a
/// plain one, after it has been told.
void WithReport(ui::Context& context, const Subject& subject, QWidget* parent,
                const std::function<void(Frm_Raport& screen)>& use) {
  Tell(context, [&] {
    std::unique_ptr<Frm_Raport> screen;
    try {
      screen = std::make_unique<Frm_Raport>(context, subject, parent);
    } catch (const ReportError& error) {
      if (subject.rows == nullptr) throw;
      context.session.host.prompter.Error(std::string(error.what()) +
                                          "\r\n\r\nRandurile se arata in asezarea simpla.");
      Subject plain = subject;
      plain.plain = true;
      screen = std::make_unique<Frm_Raport>(context, plain, parent);
    }
    use(*screen);
  });
}

Subject Declaration(session::Session& session, const declarations::Identity& identity, bool detailed) {
  Subject subject;
  subject.report = detailed ? kDetailed : kAggregated;
  subject.placeholders = DeclarationPlaceholders(session, identity);
  return subject;
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

Subject Problems(session::Session& session, const declarations::Identity& identity,
                 const declarations::LineProblems& problems) {
  Subject subject;
  subject.report = "Probleme";
  subject.placeholders = DeclarationPlaceholders(session, identity);
  subject.title = QStringLiteral("Probleme - %1 %2 / %3")
                      .arg(ui::Q(subject.placeholders["Sens"]))
                      .arg(identity.Anul)
                      .arg(identity.Luna);
  subject.rows = ProblemRows(session, identity, problems);
  return subject;
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
  WithReport(context, subject, parent, [](Frm_Raport& screen) { screen.exec(); });
}

void PreviewList(ui::Context& context, const ui::GridContent& content, QWidget* parent) {
  Preview(context, SubjectOf(context.session, content), parent);
}

void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        QWidget* parent) {
  Tell(context, [&] { Preview(context, Declaration(context.session, identity, detailed), parent); });
}

void PreviewDeclaration(ui::Context& context, const declarations::Identity& identity, bool detailed,
                        const ui::GridContent& lines, bool lines_first, QWidget* parent) {
  Tell(context, [&] {
    Subject subject = Declaration(context.session, identity, detailed);
    if (lines_first) subject.report = lines.report;
    subject.title = lines.title;
    subject.rows = std::make_shared<GridTable>(lines);
    Preview(context, subject, parent);
  });
}

void PreviewProblems(ui::Context& context, const declarations::Identity& identity,
                     const declarations::LineProblems& problems, QWidget* parent) {
  Tell(context, [&] { Preview(context, Problems(context.session, identity, problems), parent); });
}

void ExportProblems(ui::Context& context, const declarations::Identity& identity,
                    const declarations::LineProblems& problems, ui::Screen* screen) {
  Tell(context, [&] {
    WithReport(context, Problems(context.session, identity, problems), screen, [&](Frm_Raport& report) {
      const std::string path = ui::AskForFile(screen, report.windowTitle(), QStringLiteral("Salvare raport"),
                                              QStringLiteral("PDF (*.pdf)"), QStringLiteral(".pdf"));
      if (!path.empty() && report.WritePdf(path)) ui::Frm_Fisier_Optiuni(context, path, screen).exec();
    });
  });
}

}  // namespace reports
