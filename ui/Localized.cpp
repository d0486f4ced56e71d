#include "ui/Localized.h"

#include <algorithm>
#include <cstring>

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

namespace {

class OwnTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }

  QString translate(const char*, const char* english, const char*, int) const override {
    const auto* const pair =
        std::find_if(std::begin(text::all), std::end(text::all),
                     [&](const TextPair& each) { return std::strcmp(each.english, english) == 0; });
    return pair != std::end(text::all) && languageIsArabic() ? QString::fromUtf8(pair->arabic) : QString();
  }
};

}  // namespace

void translateOwnTexts() {
  static QPointer<OwnTexts> installed;
  if (installed) return;
  installed = new OwnTexts(QCoreApplication::instance());
  QCoreApplication::installTranslator(installed);
}
