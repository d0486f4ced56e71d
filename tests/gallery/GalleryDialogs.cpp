#include "tests/gallery/GalleryDialogs.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "platform/ApplicationStyle.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>

namespace {

using Dialog = std::shared_ptr<RQAlertView>;

constexpr auto alert = RQAlertViewStyle::Alert;
constexpr auto sheet = RQAlertViewStyle::ActionSheet;

QString in(GalleryLanguage language, const char* english, const char* arabic) {
  return QString::fromUtf8(language == GalleryLanguage::English ? english : arabic);
}

Dialog dark(Dialog dialog) {
  dialog->setBackgroundColor(grey(40));
  dialog->setSeparatorsColor(grey(51));
  dialog->setTitleTextColor(dialog->style() == sheet ? grey(153) : QColor(Qt::white));
  dialog->setMessageTextColor(dialog->style() == sheet ? grey(153) : QColor(Qt::white));
  dialog->setCancelButtonTitleColor(Qt::red);
  dialog->setCancelButtonBackgroundColorHighlighted(Qt::red);
  dialog->setProgressLabelTextColor(Qt::white);
  dialog->setActivityIndicatorViewColor(Qt::white);
  dialog->setTextFieldsTextColor(Qt::white);
  dialog->setTextFieldsBackgroundColor(grey(69));
  return dialog;
}

QString cancel(GalleryLanguage language) {
  return in(language, "Cancel", "إلغاء");
}

Dialog notice(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(
      in(language, "Done", "تم"),
      in(language, "Your package is ready in /var/mobile/Documents/Packages/Sunrise",
         "الملف جاهز في /var/mobile/Documents/Packages/Sunrise"),
      alert, {in(language, "Go to Folder", "الانتقال الى المجلد")}, cancel(language), QString()));
}

Dialog single(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(in(language, "No data", "لا توجد بيانات"), QString(), alert,
                                              {in(language, "OK", "حسنًا")}, QString(), QString()));
}

Dialog three(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(in(language, "Save changes?", "حفظ التغييرات؟"),
                                              in(language, "Tweak.x was changed.", "تم تغيير Tweak.x."),
                                              alert, {in(language, "Save", "حفظ")}, cancel(language),
                                              in(language, "Discard", "تجاهل")));
}

Dialog stacked(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(
      in(language, "Delete All Projects", "حذف جميع المشاريع"),
      in(language, "This feature will remove all of your projects \n Are you sure ?",
         "سـ يتم حذف جميع المشاريع لديك ، هل انت متأكد ؟"),
      alert,
      {in(language, "Keep a copy of each of them first", "الاحتفاظ بنسخة من كل مشروع أولا"),
       in(language, "Show them", "عرضها")},
      cancel(language), in(language, "Delete", "حذف")));
}

Dialog field(GalleryLanguage language) {
  Dialog dialog = dark(RQAlertView::alertViewWithTextFieldsAndTitle(
      in(language, "Create X.h file", "إنشاء ملف X.h"), QStringLiteral("~ root$"), 1,
      [](RQAlertViewTextField& textField, std::size_t) {
        textField.setClearButtonMode(UITextFieldViewMode::WhileEditing);
      },
      {in(language, "Confirm", "تأكيد")}, cancel(language), QString()));
  dialog->setButtonsTitleColor(Qt::white);
  return dialog;
}

Dialog fields(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTextFieldsAndTitle(
      in(language, "Sign in", "تسجيل الدخول"), QString(), 3,
      [language](RQAlertViewTextField& textField, std::size_t index) {
        const QString places[] = {in(language, "Name", "الاسم"), in(language, "Address", "العنوان"),
                                  in(language, "Password", "كلمة السر")};
        textField.setPlaceholder(places[index]);
        textField.setSecureTextEntry(index == 2);
        if (index == 1) textField.setText(in(language, "somebody", "شخص ما"));
      },
      {in(language, "Sign in", "دخول")}, cancel(language), QString()));
}

Dialog indicator(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithActivityIndicatorAndTitle(
      in(language, "  Making your tweak ...", "جار بناء الاداة"), QString(), alert,
      in(language, "Please wait", "الرجاء الانتظار"), {}, QString(), QString()));
}

Dialog progress(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithProgressViewAndTitle(
      in(language, "Copying", "جار النسخ"), in(language, "12 of 40 files", "12 من 40 ملفا"), alert, 0.3,
      QStringLiteral("/var/mobile/Documents/Packages/Sunrise/com.example.sunrise_1.0.deb"), {},
      cancel(language), QString()));
}

Dialog customView(GalleryLanguage language) {
  auto* view = new QTextEdit;
  view->setPlainText(in(language, "Anything may stand here.", "يمكن وضع أي شيء هنا."));
  view->setFixedHeight(90);
  view->setAccessibleName(QStringLiteral("Notes"));
  return dark(RQAlertView::alertViewWithViewAndTitle(in(language, "Notes", "ملاحظات"), QString(), alert, view,
                                                     {in(language, "Keep", "حفظ")}, cancel(language),
                                                     QString()));
}

Dialog options(GalleryLanguage language) {
  QStringList titles{in(language, "Import from path", "استيراد من مسار"),
                     in(language, "Go to Debs Folder", "الانتقال الى مجلد الـ Debs"),
                     in(language, "Open Project", "فتح المشروع"),
                     in(language, "Back up", "نسخ احتياطي"),
                     in(language, "Restore", "استعادة النسخة الاحتياطية"),
                     in(language, "Change Language", "تغيير اللغة")};
  return dark(RQAlertView::alertViewWithTitle(
      in(language, "Extra options", "خيارات اضافية"), in(language, "Which one ?", "أي واحد ؟"), sheet, titles,
      cancel(language), in(language, "Delete Project", "حذف المشروع")));
}

Dialog files(GalleryLanguage language) {
  QStringList titles{
      QStringLiteral("Makefile"),
      QStringLiteral(".theos"),
      QStringLiteral("Tweak.x"),
      QStringLiteral("a & b <b>not bold</b>"),
      QString::fromUtf8("ملف الترجمة.strings"),
      QStringLiteral("A very long file name that cannot be shown on one line of a phone.plist")};
  for (int index = 0; index < 10000; ++index) titles << QStringLiteral("Source%1.x").arg(index);
  return dark(RQAlertView::alertViewWithTitle(in(language, "Which one ?", "أي واحد ؟"), QString(), sheet,
                                              titles, cancel(language), QString()));
}

QString fortyLines(GalleryLanguage language) {
  QStringList lines;
  for (int index = 1; index <= 40; ++index) {
    lines << in(language, "Line %1 of a message that goes on and on.", "السطر %1 من رسالة طويلة.").arg(index);
  }
  return lines.join(u'\n');
}

Dialog longMessage(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(in(language, "Read this", "اقرأ هذا"), fortyLines(language),
                                              alert, {in(language, "I have", "قرأته")}, cancel(language),
                                              QString()));
}

Dialog longMessageWithThree(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(
      in(language, "Read this", "اقرأ هذا"), fortyLines(language), alert,
      {in(language, "I have read all of it", "قرأت كل شيء"), in(language, "Later", "لاحقا")},
      cancel(language), QString()));
}

Dialog longMessageSheet(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(
      in(language, "Read this", "اقرأ هذا"), fortyLines(language), sheet,
      {in(language, "I have read all of it", "قرأت كل شيء"), in(language, "Later", "لاحقا")},
      cancel(language), in(language, "Never", "أبدا")));
}

Dialog thousands(GalleryLanguage language) {
  QStringList titles;
  for (int index = 0; index < 10000; ++index) titles << QStringLiteral("Source%1.x").arg(index);
  Dialog dialog =
      dark(RQAlertView::alertViewWithTitle(in(language, "Which one ?", "أي واحد ؟"), fortyLines(language),
                                           alert, titles, cancel(language), in(language, "Delete", "حذف")));
  dialog->setShowsVerticalScrollIndicator(true);
  dialog->setIndicatorStyle(UIScrollViewIndicatorStyle::White);
  return dialog;
}

Dialog nothing(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(in(language, "No data", "لا توجد بيانات"), QString(), alert, {},
                                              QString(), QString()));
}

Dialog nothingSheet(GalleryLanguage language) {
  return dark(RQAlertView::alertViewWithTitle(in(language, "No data", "لا توجد بيانات"), QString(), sheet, {},
                                              cancel(language), QString()));
}

Dialog bare(GalleryLanguage language) {
  return RQAlertView::alertViewWithTitle(
      in(language, "As it comes", "كما هو"), in(language, "No colour was set.", "لم يتم تعيين أي لون."),
      alert, {in(language, "Fine", "حسنًا")}, cancel(language), in(language, "Remove", "إزالة"));
}

Dialog bareSheet(GalleryLanguage language) {
  return RQAlertView::alertViewWithTitle(in(language, "As it comes", "كما هو"),
                                         in(language, "No colour was set.", "لم يتم تعيين أي لون."), sheet,
                                         {in(language, "First", "الأول"), in(language, "Second", "الثاني")},
                                         cancel(language), in(language, "Remove", "إزالة"));
}

Dialog dressed(GalleryLanguage language) {
  Dialog dialog = notice(language);
  dialog->setLayerBorderColor(QColor(80, 140, 255));
  dialog->setLayerBorderWidth(2);
  dialog->setLayerShadowColor(Qt::black);
  dialog->setLayerShadowRadius(16);
  dialog->setLayerShadowOffset({0, 6});
  dialog->setCoverBlurEffect(UIBlurEffectStyle::Dark);
  return dialog;
}

Dialog icons(GalleryLanguage language) {
  QPixmap icon(20, 20);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(QColor(90, 200, 90));
  painter.setPen(Qt::NoPen);
  painter.drawEllipse(1, 1, 18, 18);
  painter.end();
  Dialog dialog = options(language);
  for (std::size_t index = 0; index < 3; ++index) {
    dialog->setButtonPropertiesAtIndex(index, [&](RQAlertViewButtonProperties& properties) {
      properties.iconImage = icon;
      properties.iconPosition =
          index == 1 ? RQAlertViewButtonIconPosition::Right : RQAlertViewButtonIconPosition::Left;
      if (index == 2) properties.textAlignment = NSTextAlignment::Left;
    });
  }
  dialog->setButtonEnabled(false, 3);
  return dialog;
}

Dialog glass(GalleryLanguage language) {
  Dialog dialog = options(language);
  dialog->setBackgroundColor(QColor(40, 40, 40, 120));
  dialog->setBackgroundBlurEffect(UIBlurEffectStyle::Dark);
  return dialog;
}

Dialog large(Dialog dialog) {
  QFont font = dialog->messageFont();
  font.setPointSizeF(24);
  dialog->setTitleFont(font);
  dialog->setMessageFont(font);
  dialog->setButtonsFont(font);
  dialog->setCancelButtonFont(font);
  dialog->setDestructiveButtonFont(font);
  dialog->setTextFieldsFont(font);
  dialog->setProgressLabelFont(font);
  return dialog;
}

template <Dialog (*make)(GalleryLanguage)>
Dialog large(GalleryLanguage language) {
  return large(make(language));
}

RQAlertViewButton* cancelButtonOf(RQAlertView& dialog) {
  for (auto* button : dialog.view()->findChildren<RQAlertViewButton*>()) {
    if (button->title() == dialog.cancelButtonTitle()) return button;
  }
  return nullptr;
}

void press(RQAlertView& dialog) {
  if (auto* button = cancelButtonOf(dialog)) button->setDown(true);
}

// What the Tab key shows: a ring around the button that Return would press.
void reachByKey(RQAlertView& dialog) {
  QWidget* window = dialog.view()->window();
  window->setAttribute(Qt::WA_KeyboardFocusChange);
  window->activateWindow();
  if (auto* button = cancelButtonOf(dialog)) button->setFocus(Qt::TabFocusReason);
}

void reachListByKey(RQAlertView& dialog) {
  dialog.view()->window()->setAttribute(Qt::WA_KeyboardFocusChange);
  if (auto* list = dialog.view()->findChild<RQAlertViewButtonList*>()) list->setFocus(Qt::TabFocusReason);
}

void holdFirstRow(RQAlertView& dialog) {
  auto* list = dialog.view()->findChild<RQAlertViewButtonList*>();
  if (!list) return;
  const QPointF place = list->visualRect(list->model()->index(1, 0)).center();
  QMouseEvent held(QEvent::MouseButtonPress, place, list->viewport()->mapToGlobal(place), Qt::LeftButton,
                   Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(list->viewport(), &held);
}

void readOn(RQAlertView& dialog) {
  auto* message = dialog.view()->findChild<QScrollArea*>();
  dialog.view()->window()->setAttribute(Qt::WA_KeyboardFocusChange);
  message->setFocus(Qt::TabFocusReason);
  message->verticalScrollBar()->setValue(60);
}

void disableAll(RQAlertView& dialog) {
  dialog.setButtonsEnabled(false);
  dialog.setCancelButtonEnabled(false);
}

}  // namespace

std::vector<GalleryDialog> galleryDialogs() {
  return {
      {QStringLiteral("notice"), notice, {}},
      {QStringLiteral("single"), single, {}},
      {QStringLiteral("three-buttons"), three, {}},
      {QStringLiteral("stacked-buttons"), stacked, {}},
      {QStringLiteral("text-field"), field, {}},
      {QStringLiteral("text-fields"), fields, {}},
      {QStringLiteral("activity-indicator"), indicator, {}},
      {QStringLiteral("progress-view"), progress, [](RQAlertView& dialog) { dialog.setProgress(0.62); }},
      {QStringLiteral("custom-view"), customView, {}},
      {QStringLiteral("sheet"), options, {}},
      {QStringLiteral("sheet-10000"), files, {}},
      {QStringLiteral("sheet-icons"), icons, {}},
      {QStringLiteral("sheet-glass"), glass, {}},
      {QStringLiteral("long-message"), longMessage, {}},
      {QStringLiteral("bare-alert"), bare, {}},
      {QStringLiteral("bare-sheet"), bareSheet, {}},
      {QStringLiteral("dressed"), dressed, {}},
      {QStringLiteral("pressed"), notice, press},
      {QStringLiteral("focused"), notice, reachByKey},
      {QStringLiteral("focused-row"), options, reachListByKey},
      {QStringLiteral("disabled"), notice, disableAll},
      {QStringLiteral("large-notice"), large<notice>, {}},
      {QStringLiteral("large-three-buttons"), large<three>, {}},
      {QStringLiteral("large-text-fields"), large<fields>, {}},
      {QStringLiteral("large-progress-view"), large<progress>, {}},
      {QStringLiteral("large-sheet"), large<options>, {}},
      {QStringLiteral("large-sheet-10000"), large<files>, {}},
      {QStringLiteral("no-buttons"), nothing, {}},
      {QStringLiteral("no-buttons-sheet"), nothingSheet, {}},
      {QStringLiteral("alert-10000"), thousands, {}},
      {QStringLiteral("long-message-read"), longMessage, readOn},
      {QStringLiteral("long-message-three"), longMessageWithThree, {}},
      {QStringLiteral("long-message-sheet"), longMessageSheet, {}},
      {QStringLiteral("pressed-row"), options, holdFirstRow},
      {QStringLiteral("coming"), notice, {}, GalleryMoment::Coming},
      {QStringLiteral("coming-sheet"), options, {}, GalleryMoment::Coming},
      {QStringLiteral("going"), notice, {}, GalleryMoment::Going},
      {QStringLiteral("going-sheet"), options, {}, GalleryMoment::Going},
      {QStringLiteral("changing"), options, {}, GalleryMoment::ChangingIntoNotice},
  };
}

std::shared_ptr<RQAlertView> galleryNotice(GalleryLanguage language) {
  return notice(language);
}
