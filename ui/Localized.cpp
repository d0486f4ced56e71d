#include "ui/Localized.h"

#include <algorithm>
#include <cstring>

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

namespace {

constexpr TextPair ownTexts[] = {
    {"حول", "About"},
    {"العنوان", "Address"},
    {"رجوع", "Back"},
    {"بناء", "Build"},
    {"سجل البناء", "Build log"},
    {text::cancel.arabic, "Cancel"},
    {"الخيارات", "Choices"},
    {"اختيار مشروع", "Choose Project"},
    {"مسح السجل", "Clear Log"},
    {"إغلاق", "Close"},
    {"إغلاق البحث", "Close find"},
    {text::delete_.arabic, "Delete"},
    {"مربع حوار", "Dialog"},
    {"تبرّع", "Donate"},
    {"نص الملف", "File text"},
    {"الملفات", "Files"},
    {"بحث", "Find"},
    {"البحث عن التالي", "Find next"},
    {"البحث عن السابق", "Find previous"},
    {"نص البحث", "Find text"},
    {"قيد التنفيذ", "In progress"},
    {"معلومات", "Info"},
    {"بناء الحزمة", "Make Package"},
    {"بناء الحزمة وتثبيتها", "Make Package Install"},
    {"الرسالة", "Message"},
    {"مشروع جديد", "New Project"},
    {"لا توجد نتائج", "No match"},
    {"الملف الشخصي", "Profile"},
    {"التقدّم", "Progress"},
    {text::projectOptions.arabic, "Project Options"},
    {"تحديث", "Reload"},
    {"إعادة تشغيل الواجهة", "Respring"},
    {text::save.arabic, "Save"},
    {text::showSuccessAlert.arabic, text::showSuccessAlert.english},
};

class OwnTexts : public QTranslator {
 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }

  QString translate(const char*, const char* english, const char*, int) const override {
    const auto* const pair =
        std::find_if(std::begin(ownTexts), std::end(ownTexts),
                     [&](const TextPair& each) { return std::strcmp(each.english, english) == 0; });
    return pair != std::end(ownTexts) && languageIsArabic() ? QString::fromUtf8(pair->arabic) : QString();
  }
};

}  // namespace

void translateOwnTexts() {
  static QPointer<OwnTexts> installed;
  if (installed) return;
  installed = new OwnTexts(QCoreApplication::instance());
  QCoreApplication::installTranslator(installed);
}
