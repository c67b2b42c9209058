#include "import/screens/rejected_rows.h"

#include "declarations/lines/lines.h"
#include "ui/text.h"

namespace importer {

using ui::Q;

namespace {

class RejectedModel : public ui::GridModel {
 public:
  RejectedModel(std::vector<importer::Rejected> rejected, bool arrivals, QObject* parent)
      : GridModel({{.field = "rand",
                    .caption = QStringLiteral("Rand in foaie"),
                    .format = ui::Format::kWhole,
                    .width = 8},
                   {.field = "coloana", .caption = QStringLiteral("Informatia"), .width = 24},
                   {.field = "motiv", .caption = QStringLiteral("Motivul"), .width = 50}},
                  parent),
        rejected_(std::move(rejected)),
        arrivals_(arrivals) {}

  int Rows() const override { return static_cast<int>(rejected_.size()); }
  store::Value ValueAt(int row, int index) const override {
    const Rejected& at = rejected_[static_cast<std::size_t>(row)];
    if (index == 0) return at.row;
    return index == 1 ? Caption(at.column) : at.reason;
  }
  void SortBy(int index, Qt::SortOrder order) override {
    const auto less = [this, index](const Rejected& a, const Rejected& b) {
      if (index == 1) return Caption(a.column) < Caption(b.column);
      return index == 2 ? a.reason < b.reason : a.row < b.row;
    };
    std::stable_sort(rejected_.begin(), rejected_.end(), [&](const Rejected& a, const Rejected& b) {
      return index >= 0 && order == Qt::DescendingOrder ? less(b, a) : less(a, b);
    });
  }

 private:
  std::string Caption(const std::string& column) const {
    const std::string caption = declarations::GridCaption(column, arrivals_);
    return caption.empty() ? column : caption;
  }

  std::vector<importer::Rejected> rejected_;
  bool arrivals_;
};

}  // namespace

Frm_Preluare_Respinse::Frm_Preluare_Respinse(ui::Context& screen_context, const Inputs& inputs,
                                             const Result& result, QWidget* parent)
    : ListScreen(screen_context, QStringLiteral("Frm_Preluare_Respinse"), parent) {
  setWindowTitle(QStringLiteral("Randuri care nu s-au preluat - ") + Q(platform::FileNameOf(inputs.path)));
  SetFirstSize({900, 480});
  AddListCommands(QStringLiteral("Randuri care nu s-au preluat: %1, foaia %2")
                      .arg(Q(platform::FileNameOf(inputs.path)), Q(inputs.sheet)));
  SetReport("PRELUARE_RESPINSE");
  SetModel(new RejectedModel(result.rejected, inputs.tip_operatiune.starts_with('I'), this));
  ShowStatus(
      result.saved > 0
          ? QStringLiteral("Celelalte randuri s-au preluat. Dupa corectare preluati numai randurile acestea.")
          : QStringLiteral("Niciun rand nu s-a preluat. Verificati macheta si preluati fisierul din nou."));
}

}  // namespace importer
