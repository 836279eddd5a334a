// A plain editor made with Qt. usage: qt-editor FILE: what stands in it is written to the file at every
// change. qt-editor --field password|entry|button: a window with one part that has the keyboard.

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  if (count < 2) return 2;
  const QString path = QString::fromLocal8Bit(arguments[1]);
  QPlainTextEdit editor;
  QWidget form;
  if (count == 3) {
    const QString kind = QString::fromLocal8Bit(arguments[2]);
    QWidget* part = kind == "button" ? static_cast<QWidget*>(new QPushButton("button")) : new QLineEdit;
    if (kind == "password") static_cast<QLineEdit*>(part)->setEchoMode(QLineEdit::Password);
    (new QVBoxLayout(&form))->addWidget(part);
    part->setFocus();
    form.show();
    return QApplication::exec();
  }
  QObject::connect(&editor, &QPlainTextEdit::textChanged, [&] {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(editor.toPlainText().toUtf8());
  });
  editor.show();
  return QApplication::exec();
}
