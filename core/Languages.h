// Every text that the interface shows in two languages, and the choice between them.
#pragma once

// Both texts are UTF-8 literals.
struct TextPair {
  const char* arabic;
  const char* english;
};

namespace text {

inline constexpr TextPair couldNotFindTheos{"لم يتم العثور على THEOS في مسار /var/ او /opt/ او مسار الRoot",
                                            "Couldn't find Theos in /var/ or /opt/ or Root directory"};
inline constexpr TextPair mustInstallTheos{"يجب تثبيت الـTheos", "You must install Theos"};
inline constexpr TextPair ok{"حسنًا", "OK"};
inline constexpr TextPair loadProject{"تحميل مشروع", "Load Project"};
inline constexpr TextPair cancel{"إلغاء", "Cancel"};
inline constexpr TextPair createNewProject{"انشاء مشروع جديد", "Create New Project"};
inline constexpr TextPair createHeaderFile{"إانشاء ملف X.h", "Create X.h file"};
inline constexpr TextPair changeFileName{"تغيير اسم ملف", "Change File Name"};
inline constexpr TextPair addFlexPatch{"اضافة كود من Flex", "Add Flex Patch"};
inline constexpr TextPair projectOptions{"خيارات المشروع", "Project Options"};
inline constexpr TextPair whichOne{"أي واحد ؟", "Which one ?"};
inline constexpr TextPair confirm{"تأكيد", "Confirm"};
inline constexpr TextPair deleteCurrentProject{"حذف المشروع الحالي", "Delete Current Project"};
inline constexpr TextPair deleteOptions{"خيارات الحذف", "Delete Options"};
inline constexpr TextPair deleteFilesOrProjects{"حذف ملف/مشروع", "Delete Files/Projects"};
inline constexpr TextPair deleteAllProjects{"حذف جميع المشاريع", "Delete All Projects"};
inline constexpr TextPair deleteAllProjectsQuestion{
    "سـ يتم حذف جميع المشاريع لديك ، هل انت متأكد ؟",
    "This feature will remove all of your projects \n Are you sure ?"};
inline constexpr TextPair imSure{"انا متأكد", "I'm sure"};
inline constexpr TextPair openInFilza{"فتح في Filza", "Open in Filza"};
inline constexpr TextPair goToDebsFolder{"الذهاب الى مجلد الـ Debs", "Go to Debs Folder"};
inline constexpr TextPair importFromPath{"استيراد من مسار", "Import from path"};
inline constexpr TextPair exportProjectToPath{"استخراج الى مسار", "Export Project to path .."};
inline constexpr TextPair backUp{"نسخ احتياطي", "Back up"};
inline constexpr TextPair restore{"استعادة النسخة الاحتياطية", "Restore"};
inline constexpr TextPair deleteAllBackups{"حذف جميع النسخ الاحتياطية !", "Delete All Backups !"};
inline constexpr TextPair deleteDebsFolder{"حذف مجلد الـ Debs", "Delete Debs Folder"};
inline constexpr TextPair changeProjectName{"تغيير اسم المشروع", "Change Project name"};
inline constexpr TextPair changeLanguage{"تغيير اللغة", "Change Language"};
inline constexpr TextPair extraOptions{"خيارات اضافية", "Extra options"};
inline constexpr TextPair pathExample{"على سبيل المثال \" mobile/Documents/ \"",
                                      "For example \" mobile/Documents/ \""};
inline constexpr TextPair import_{"إستيراد", "Import"};
inline constexpr TextPair export_{"استخراج", "Export"};
inline constexpr TextPair arabic{"العربية", "Arabic"};
inline constexpr TextPair english{"English", "English"};
inline constexpr TextPair done{"تم", "Done"};
inline constexpr TextPair error{"خطأ", "Error"};
inline constexpr TextPair noData{"لا يوجد بيانات", "No data"};
inline constexpr TextPair deleteAllBackupsQuestion{
    "سـ يتم حذف جميع النسخ الاحتياطية \n هل انت متأكد ؟",
    "This feature will remove all your backups \n Are you sure ?"};
inline constexpr TextPair showSuccessAlert{"اظهار رسالة تم البناء", "Show success alert"};
inline constexpr TextPair makingYourTweak{"جار بناء الاداة", "  Making your tweak ..."};
inline constexpr TextPair pleaseWait{"الرجاء الانتظار", "Please wait"};
inline constexpr TextPair debIsReady{"ملف الـ deb جاهز في /var/mobile/Documents/Tweakbench/%@",
                                     "Your .Deb is ready in /var/mobile/Documents/Tweakbench/%@"};
inline constexpr TextPair goToDebFolder{"الانتقال الى مجلد الـ deb", "Go to Deb Folder"};
inline constexpr TextPair nextLogAppearsHere{"سيظهر هنا سجل البناء التالي",
                                             "The next build's log appears here"};
inline constexpr TextPair tapAgainToBuild{"تم تشغيل محدّث Theos؛ اضغط مرة أخرى للبناء",
                                          "Theos's updater has run; tap again to build"};
inline constexpr TextPair deviceSupportHint{
    "لـ دعم اجهزة A12 - A13 ، ثبّت اداة\"Theos Installer 2\"",
    "To support A12 - A13 devices you should install \"Theos Installer 2\" from Corwin's source"};
inline constexpr TextPair addTheSource{"اضافة السورس", "Add the source"};
inline constexpr TextPair developedBy{"تم التطوير بواسطة", "Developed By"};
inline constexpr TextPair saveChanges{"هل تريد حفظ التغييرات؟", "Save changes?"};
inline constexpr TextPair changesWouldBeLost{
    "لم تُحفظ التغييرات في الملف %@ وستُفقد إن لم تحفظها.",
    "Your changes to %@ are not saved. Without saving they are lost."};
inline constexpr TextPair save{"حفظ", "Save"};
inline constexpr TextPair discard{"تجاهل", "Discard"};
inline constexpr TextPair thanksForTheIdea{"شكرا لـ Pelbo على الفكرة 🌹", "Thanks to Pelbo for the idea 🌹"};
inline constexpr TextPair addressToOpen{"العنوان", "The address"};
inline constexpr TextPair folderOnComputer{"المجلد على هذا الحاسوب", "The folder on this computer"};
inline constexpr TextPair noProgramOpensIt{"لا يوجد هنا برنامج يفتحه.", "No program here opens it."};
inline constexpr TextPair undo{"تراجع", "Undo"};
inline constexpr TextPair redo{"إعادة", "Redo"};
inline constexpr TextPair cut{"قص", "Cut"};
inline constexpr TextPair copy{"نسخ", "Copy"};
inline constexpr TextPair paste{"لصق", "Paste"};
inline constexpr TextPair delete_{"حذف", "Delete"};
inline constexpr TextPair selectAll{"تحديد الكل", "Select All"};
inline constexpr TextPair longLinesNotWrapped{"النص طويل: لا تُلفّ الأسطر", "Long text: lines are not wrapped"};
inline constexpr TextPair find{"بحث", "Find"};
inline constexpr TextPair replaceBy{"استبدال بـ", "Replace with"};
inline constexpr TextPair replace{"استبدال", "Replace"};
inline constexpr TextPair replaceAll{"استبدال الكل", "Replace All"};
inline constexpr TextPair replacedCount{"الاستبدالات: %@", "Replaced: %@"};
inline constexpr TextPair goToLine{"الانتقال الى سطر", "Go to Line"};
inline constexpr TextPair lineNumber{"رقم السطر، او السطر:العمود", "A line, or line:column"};
inline constexpr TextPair goToFile{"الانتقال الى ملف", "Go to File"};
inline constexpr TextPair fileName{"اسم الملف", "File name"};
inline constexpr TextPair projectFiles{"ملفات المشروع", "Project files"};
inline constexpr TextPair createFile{"انشاء الملف %@", "Create %@"};
inline constexpr TextPair fileNotCreated{"تعذر انشاء الملف %@", "%@ could not be created"};
inline constexpr TextPair onlyFirstFiles{"تظهر أول %@ ملف فقط", "Only the first %@ files are listed"};
inline constexpr TextPair searchInProject{"بحث في المشروع", "Search in Project"};
inline constexpr TextPair searchedText{"النص المطلوب", "Text to find"};
inline constexpr TextPair searchResults{"نتائج البحث", "Search results"};
inline constexpr TextPair searching{"جار البحث ...", "Searching ..."};
inline constexpr TextPair noMatch{"لا توجد نتائج", "No match"};
inline constexpr TextPair linesFound{"عدد الأسطر: %@", "Lines: %@"};
inline constexpr TextPair onlyFirstLines{"تظهر أول %@ سطر فقط", "Only the first %@ lines are listed"};
inline constexpr TextPair problems{"المشكلات", "Problems"};
inline constexpr TextPair nextProblem{"المشكلة التالية", "Next problem"};
inline constexpr TextPair previousProblem{"المشكلة السابقة", "Previous problem"};
// The Arabic ones say "errors: 3", which is right for every number.
inline constexpr TextPair oneError{"الأخطاء: %@", "%@ error"};
inline constexpr TextPair someErrors{"الأخطاء: %@", "%@ errors"};
inline constexpr TextPair oneWarning{"التحذيرات: %@", "%@ warning"};
inline constexpr TextPair someWarnings{"التحذيرات: %@", "%@ warnings"};
inline constexpr TextPair listComma{"، ", ", "};

// For finding the Arabic of an English text: what controls are called in the layouts and in tr(), and all of
// the above.
// clang-format off
inline constexpr TextPair all[] = {
    {"حول", "About"},
    {addressToOpen.arabic, "Address"},
    {"رجوع", "Back"},
    {"بناء", "Build"},
    {"سجل البناء", "Build log"},
    {"الخيارات", "Choices"},
    {"اختيار مشروع", "Choose Project"},
    {"مسح السجل", "Clear Log"},
    {"مسح النص", "Clear text"},
    {"إغلاق البحث", "Close find"},
    {"مربع حوار", "Dialog"},
    {"تبرّع", "Donate"},
    {"نص الملف", "File text"},
    {"الملفات", "Files"},
    {"البحث عن التالي", "Find next"},
    {"البحث عن السابق", "Find previous"},
    {"نص البحث", "Find text"},
    {"قيد التنفيذ", "In progress"},
    {"معلومات", "Info"},
    {"بناء الحزمة", "Make Package"},
    {"بناء الحزمة وتثبيتها", "Make Package Install"},
    {"الرسالة", "Message"},
    {"مشروع جديد", "New Project"},
    {"الملف الشخصي", "Profile"},
    {"التقدّم", "Progress"},
    {"تحديث", "Reload"},
    {"إعادة تشغيل الواجهة", "Respring"},
    couldNotFindTheos, mustInstallTheos, ok, loadProject, cancel, createNewProject, createHeaderFile,
    changeFileName, addFlexPatch, projectOptions, whichOne, confirm, deleteCurrentProject,
    deleteOptions, deleteFilesOrProjects, deleteAllProjects, deleteAllProjectsQuestion, imSure,
    openInFilza, goToDebsFolder, importFromPath, exportProjectToPath, backUp, restore, deleteAllBackups,
    deleteDebsFolder, changeProjectName, changeLanguage, extraOptions, pathExample, import_, export_,
    arabic, english, done, error, noData, deleteAllBackupsQuestion, showSuccessAlert, makingYourTweak,
    pleaseWait, debIsReady, goToDebFolder, nextLogAppearsHere, tapAgainToBuild, deviceSupportHint,
    addTheSource, developedBy, saveChanges, changesWouldBeLost, save, discard, thanksForTheIdea,
    addressToOpen, folderOnComputer, noProgramOpensIt, undo, redo, cut, copy, paste, delete_, selectAll,
    longLinesNotWrapped, find, replaceBy, replace, replaceAll, replacedCount, goToLine, lineNumber,
    goToFile, fileName, projectFiles, createFile, fileNotCreated, onlyFirstFiles, searchInProject,
    searchedText, searchResults, searching, noMatch, linesFound, onlyFirstLines, problems, nextProblem,
    previousProblem, oneError, someErrors, oneWarning, someWarnings, listComma};
// clang-format on

// The same in both languages.
inline constexpr const char* notSupportedYet = "Not supported yet";
inline constexpr const char* autoLanguage = "Auto - تلقائي";

}  // namespace text

// Returns one of the two texts, unchanged. The setting is read from the application folder afresh on every
// call, so a change takes effect with the next text that is drawn: "AR" is Arabic, "Auto" follows the
// device's locale (Arabic when its identifier holds "ar" anywhere), everything else and a missing setting is
// English.
const char* Languages(const char* arabic, const char* english);

inline const char* Languages(const TextPair& pair) {
  return Languages(pair.arabic, pair.english);
}

// Whether Languages() now answers with the Arabic texts; for what must follow the texts, such as their
// direction.
bool languageIsArabic();

enum class Language { Arabic, English, Automatic };

// Takes effect with the next text that is shown. Nothing is written where the settings file is missing.
void setLanguage(Language language);
