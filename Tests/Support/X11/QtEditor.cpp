// A plain editor made with Qt. usage: qt-editor FILE: what stands in it is written to the file at every
// change.

#include <QApplication>
#include <QFile>
#include <QPlainTextEdit>

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  if (count < 2) return 2;
  const QString path = QString::fromLocal8Bit(arguments[1]);
  QPlainTextEdit editor;
  QObject::connect(&editor, &QPlainTextEdit::textChanged, [&] {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(editor.toPlainText().toUtf8());
  });
  editor.show();
  return QApplication::exec();
}
