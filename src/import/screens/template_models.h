#pragma once

#include "import/preview.h"
#include "import/template_draft.h"
#include "ui/grid_model.h"

namespace importer {

/// The column rows of a template under work.
class TemplateRowModel : public ui::GridModel {
  Q_OBJECT
 public:
  enum Columns { kDescription, kPresent, kNumber, kDefault, kSize, kFormat };

  /// `formats` is the list that "Formatul datelor" is chosen from.
  TemplateRowModel(TemplateDraft& draft, std::vector<std::string> formats, QObject* parent);

  void Reset();
  void Assign(int row, int number);
  bool Delete(int row);
  /// The sample's columns, which numbers and tooltips are held against; none: no sample.
  void SetSample(const std::vector<SampleColumn>& columns);

  int Rows() const override { return static_cast<int>(draft_->rows().size()); }
  store::Value ValueAt(int row, int column) const override;
  bool SetTextAt(int row, int column, const QString& text) override;
  QString ProblemAt(int row, int column) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TemplateRow& RowAt(int row) const { return draft_->rows()[static_cast<std::size_t>(row)]; }

  TemplateDraft* draft_;
  std::vector<std::string> formats_;
  std::vector<SampleColumn> sample_;
};

/// The columns of the sample; a tick stands at those that the template uses. Rows can be dragged.
class SampleModel : public ui::GridModel {
  Q_OBJECT
 public:
  static constexpr char kMime[] = "application/x-declarix-coloana";  ///< the column's number as text

  SampleModel(const TemplateDraft& draft, QObject* parent);

  void SetColumns(std::vector<SampleColumn> columns);
  const std::vector<SampleColumn>& sample() const { return sample_; }
  void ShowUses();

  int Rows() const override { return static_cast<int>(sample_.size()); }
  store::Value ValueAt(int row, int column) const override;
  QString PictureAt(int row, int column) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  QStringList mimeTypes() const override { return {QString::fromLatin1(kMime)}; }

 private:
  const TemplateDraft* draft_;
  std::vector<SampleColumn> sample_;
};

/// The first lines that a template makes of its sample. Columns that stay empty and need no value are left
/// out, so a model stands for one set of columns.
class PreviewModel : public ui::GridModel {
  Q_OBJECT
 public:
  PreviewModel(PreviewLines lines, const std::vector<TemplateRow>& rows, QObject* parent);

  /// Takes over lines that show the same columns; false where they show others.
  bool Replace(PreviewLines lines);
  QString ProblemSummary() const;  ///< "Mod transp (20), Cod vamal (2)"; empty where all is well

  int Rows() const override { return static_cast<int>(read_.lines.size()); }
  store::Value ValueAt(int row, int column) const override;
  QString ProblemAt(int row, int column) const override;

 private:
  static std::vector<int> Shown(const PreviewLines& lines);
  static std::vector<ui::Column> GridColumns(const PreviewLines& lines, const std::vector<TemplateRow>& rows);
  const PreviewLine& LineAt(int row) const { return read_.lines[static_cast<std::size_t>(row)]; }

  PreviewLines read_;
  std::vector<int> shown_;  ///< positions in a line's values
};

}  // namespace importer
