// Shows a sentence in a window: why the application could not be started from a menu, where nobody reads
// standard error. Runs outside the device, since that may be what is missing.
//
// usage: notice SENTENCE
#include <QApplication>
#include <QLabel>
#include <QMessageBox>

namespace {

// In characters, which still fit on a small screen; more scrolls.
constexpr qsizetype longest = 500;

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("org.example.Tweakbench"));
  if (argc != 2) return 2;
  QMessageBox box(QMessageBox::Warning, QStringLiteral("Tweakbench"),
                  QStringLiteral("Tweakbench could not be opened."), QMessageBox::Close);
  const QString sentence = QString::fromLocal8Bit(argv[1]);
  box.setInformativeText(sentence.size() > longest ? sentence.left(longest) + QStringLiteral(" …")
                                                   : sentence);
  if (sentence.size() > longest) box.setDetailedText(sentence);
  box.setDefaultButton(QMessageBox::Close);
  // The box's own settings are for its first line only.
  if (auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
    label->setTextFormat(Qt::PlainText);
    // Commands to type are in it.
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(Qt::StrongFocus);
  }
  box.exec();
  return 0;
}
