#include "ui/progress.h"

#include <QCloseEvent>
#include <QProgressBar>

#include "ui/text.h"

namespace ui {
namespace {

constexpr qint64 kShowAfter = 300;  // ms; shorter runs show nothing
constexpr qint64 kPumpEvery = 40;   // ms between looks at the window's events

/// Closing the box by the window's frame or Esc is the wish to stop, never the end of the box.
class RunBox : public QDialog {
 public:
  RunBox(QWidget* parent, std::function<void()> on_stop) : QDialog(parent), on_stop_(std::move(on_stop)) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  }
  void reject() override { on_stop_(); }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    on_stop_();
  }

 private:
  std::function<void()> on_stop_;
};

}  // namespace

QtProgress::QtProgress() = default;
QtProgress::~QtProgress() = default;

void QtProgress::Begin(const QString& title, const QString& text, bool can_cancel) {
  if (++depth_ > 1) return;
  title_ = title;
  text_ = text;
  status_.clear();
  percent_ = -1;
  can_cancel_ = can_cancel;
  cancelled_ = false;
  since_start_.start();
  since_pump_.start();
  QApplication::setOverrideCursor(Qt::BusyCursor);
}

void QtProgress::End() {
  if (--depth_ > 0) return;
  QApplication::restoreOverrideCursor();
  box_.reset();
}

void QtProgress::Update(std::string_view caption, int percent) {
  if (depth_ == 0) return;
  if (!caption.empty()) text_ = Q(caption);
  percent_ = percent;
  Pump();
}

void QtProgress::Status(std::string_view text) {
  if (depth_ == 0) return;
  status_ = Q(text);
  Pump();
}

void QtProgress::Show() {
  QWidget* over = QApplication::activeModalWidget();
  if (over == nullptr) over = QApplication::activeWindow();
  box_ = std::make_unique<RunBox>(over, [this] {
    if (!can_cancel_ || cancelled_) return;
    cancelled_ = true;
    cancel_->setText(QStringLiteral("Cancelling..."));
    cancel_->setEnabled(false);
  });
  box_->setObjectName(kProgressBox);
  box_->setWindowTitle(title_);
  box_->setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(box_.get());
  layout->setContentsMargins(16, 16, 16, 16);
  layout->setSpacing(8);
  text_label_ = new QLabel(box_.get());
  text_label_->setTextFormat(Qt::PlainText);
  text_label_->setMinimumWidth(text_label_->fontMetrics().averageCharWidth() * 60);
  status_label_ = new QLabel(box_.get());
  status_label_->setTextFormat(Qt::PlainText);
  bar_ = new QProgressBar(box_.get());
  layout->addWidget(text_label_);
  layout->addWidget(bar_);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(status_label_, 1);
  cancel_ = new QPushButton(QStringLiteral("&Renunta"), box_.get());
  cancel_->setObjectName(QStringLiteral("CmdRenunt"));
  cancel_->setVisible(can_cancel_);
  QObject::connect(cancel_, &QPushButton::clicked, box_.get(), &QDialog::reject);
  bottom->addWidget(cancel_);
  layout->addLayout(bottom);
}

void QtProgress::Pump() {
  if (since_pump_.elapsed() < kPumpEvery) return;
  since_pump_.restart();
  if (box_ == nullptr) {
    if (since_start_.elapsed() < kShowAfter) return;
    Show();
  }
  text_label_->setText(text_);
  status_label_->setText(status_);
  if (percent_ < 0) {
    bar_->setRange(0, 0);
  } else {
    bar_->setRange(0, 100);
    bar_->setValue(percent_);
  }
  if (!box_->isVisible()) box_->show();
  // The box is modal: what the user clicks elsewhere meanwhile goes nowhere.
  QApplication::processEvents(QEventLoop::AllEvents, 20);
}

LongRun::LongRun(platform::Progress& progress, const QString& title, Stopping stopping, const QString& text)
    : progress_(dynamic_cast<QtProgress*>(&progress)) {
  if (progress_ != nullptr) progress_->Begin(title, text, stopping == Stopping::kPossible);
}

LongRun::~LongRun() {
  if (progress_ != nullptr) progress_->End();
}

}  // namespace ui
