#include "ui/romanian.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTabWidget>
#include <set>

namespace {

constexpr int kNames = 30;  // longer lists are those of paper formats, which have names of their own

/// Everything that can be read on a window: captions, menus, tooltips, headings, choices.
std::set<std::string> TextsOf(QWidget& window) {
  std::set<std::string> texts;
  const auto note = [&](QString text) {
    text = text.trimmed();
    const bool has_letters = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
    if (has_letters && !text.startsWith('/') && !text.front().isDigit()) texts.insert(text.toStdString());
  };
  note(window.windowTitle());
  QList<QWidget*> widgets = window.findChildren<QWidget*>();
  widgets.append(&window);
  for (const QWidget* widget : widgets) {
    note(widget->toolTip());
    for (const QAction* action : widget->actions()) note(action->text());
    if (const auto* label = qobject_cast<const QLabel*>(widget)) note(label->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) note(button->text());
    if (const auto* group = qobject_cast<const QGroupBox*>(widget)) note(group->title());
    if (const auto* tabs = qobject_cast<const QTabWidget*>(widget)) {
      for (int i = 0; i < tabs->count(); ++i) note(tabs->tabText(i));
    }
    if (const auto* box = qobject_cast<const QComboBox*>(widget);
        box != nullptr && !box->isEditable() && box->count() < kNames) {
      for (int i = 0; i < box->count(); ++i) note(box->itemText(i));
    }
    if (const auto* header = qobject_cast<const QHeaderView*>(widget); header != nullptr && header->model()) {
      for (int i = 0; i < header->count(); ++i) {
        note(header->model()->headerData(i, header->orientation()).toString());
      }
    }
  }
  return texts;
}

using Make = std::function<std::unique_ptr<QWidget>()>;

std::unique_ptr<QWidget> MessageBox() {
  auto box = std::make_unique<QMessageBox>();
  box->setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel | QMessageBox::Yes | QMessageBox::No |
                          QMessageBox::Save | QMessageBox::Open | QMessageBox::Close | QMessageBox::Discard |
                          QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore |
                          QMessageBox::YesToAll | QMessageBox::NoToAll | QMessageBox::Apply |
                          QMessageBox::Reset | QMessageBox::Help | QMessageBox::RestoreDefaults);
  box->setDetailedText("1");
  return box;
}

std::unique_ptr<QWidget> ContextMenu() {
  static QLineEdit field("text");
  return std::unique_ptr<QWidget>(field.createStandardContextMenu());
}

std::unique_ptr<QWidget> FileDialog(QFileDialog::AcceptMode accept, QFileDialog::FileMode files) {
  auto dialog = std::make_unique<QFileDialog>();
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setAcceptMode(accept);
  dialog->setFileMode(files);
  return dialog;
}

const std::map<std::string, Make>& Dialogs() {
  static const std::map<std::string, Make> dialogs{
      {"message box", MessageBox},
      {"context menu", ContextMenu},
      {"open", [] { return FileDialog(QFileDialog::AcceptOpen, QFileDialog::ExistingFile); }},
      {"save", [] { return FileDialog(QFileDialog::AcceptSave, QFileDialog::AnyFile); }},
      {"folder", [] { return FileDialog(QFileDialog::AcceptOpen, QFileDialog::Directory); }},
      {"colour", [] { return std::make_unique<QColorDialog>(); }},
      {"print",
       [] {
         static QPrinter printer;
         printer.setOutputFormat(QPrinter::PdfFormat);
         return std::make_unique<QPrintDialog>(&printer);
       }},
      {"page", [] { return std::make_unique<QPageSetupDialog>(); }},
      {"preview", [] { return std::make_unique<QPrintPreviewDialog>(); }},
  };
  return dialogs;
}

TEST(RomanianTexts, LeavesNoEnglishInTheDialogsOfTheToolkit) {
  // What reads the same in both languages, and what is no text of the toolkit's.
  const std::set<std::string> same{"OK",  "&OK",         "&HTML:",     "Color",
                                   "PDF", "Cicero (CC)", "Didot (DD)", "Pica (P\u0338)"};
  for (const auto& [name, make] : Dialogs()) {
    const std::set<std::string> english = TextsOf(*make());
    ui::RomanianTexts romanian;
    QCoreApplication::installTranslator(&romanian);
    const std::set<std::string> shown = TextsOf(*make());
    QCoreApplication::removeTranslator(&romanian);
    EXPECT_THAT(english, testing::Not(testing::IsEmpty())) << name;
    for (const std::string& text : shown) {
      if (same.contains(text)) continue;
      EXPECT_FALSE(english.contains(text)) << name << ": " << text;
      EXPECT_TRUE(
          std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
          << name << ": " << text;
    }
  }
}

}  // namespace
