#include "desk.h"

#include <QFile>
#include <QTimer>

#include "companies/open_company.h"

namespace screenshots {

void Desk::AddCompanies() {
  on.at.AddCompany("RO2233445", "EXEMPLU COMERT INTERNATIONAL SRL");
  on.at.AddCompany("RO998877", "ATELIERE MODEL SA");
  companies::OpenRegisteredCompany(session(), test_support::Installation::kCompany);
}

void Desk::Settle() {
  QElapsedTimer since;
  since.start();
  while (since.elapsed() < 80) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void Desk::Grab(QWidget& window, const QString& state) {
  window.show();
  window.activateWindow();
  Settle();
  QString name = window.objectName();
  if (!state.isEmpty()) name += '_' + state;
  const QString path = folder_.filePath(name + QStringLiteral(".png"));
  if (!window.grab().save(path)) throw std::runtime_error("cannot write " + path.toStdString());
  std::puts(path.toUtf8().constData());
}

void Desk::Keep(const std::string& name, const std::function<void(const std::string& path)>& write) {
  const std::string path = "C:\\Declarix\\" + name;
  write(path);
  const QByteArray bytes = QByteArray::fromStdString(on.at.files().Read(path));
  QFile file(folder_.filePath(QString::fromStdString(name)));
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
    throw std::runtime_error("cannot write " + name);
  }
  std::puts(file.fileName().toUtf8().constData());
}

void Desk::GrabModal(const std::function<void()>& action, const QString& state) {
  QTimer::singleShot(100, [this, state] {
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr) throw std::runtime_error("no window opened");
    Grab(*window, state);
    window->close();
  });
  action();
}

}  // namespace screenshots
