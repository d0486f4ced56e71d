#include "ui/screens/Dev.h"

#include "core/FileManager.h"
#include "core/LauncherContract.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"
#include "ui/controls/UIButton.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"

#include <algorithm>

#include <QEvent>
#include <QIcon>
#include <QLabel>

namespace {

// The user's own Theos is known by its path on the host.
std::string shownTheos() {
  const std::string inDevice = theosPath().value_or("-");
  const MaybeText onHost = stringWithContentsOfFile(theosOnHostFile);
  return onHost && inDevice == theosMount ? *onHost : inDevice;
}

}  // namespace

void Dev::loadView() {
  auto* const view = new QWidget;
  outlets_.setupUi(view);
  outlets_.creditLabel->setFont(boldSystemFontOfSize(metrics::titleTextSize));
  outlets_.thanksLabel->setFont(systemFontOfSize(metrics::bodyTextSize));
  outlets_.versionLabel->setFont(systemFontOfSize(metrics::smallTextSize));
  nameShortcut(*outlets_.backButton, Qt::Key_Escape);
  view->installEventFilter(this);
  setView(view);
  outlets_.profileButton->onClick(this, [] { openAddress(links::authorProfile); });
  outlets_.donateButton->onClick(this, [] { openAddress(links::donation); });
  outlets_.thankedButton->onClick(this, [] { openAddress(links::thankedProfile); });
  outlets_.backButton->onClick(this, [this] { cancelOperation(); });
}

void Dev::viewDidLoad() {
  UIViewController::viewDidLoad();
  outlets_.creditLabel->setText(localized(text::developedBy));
  outlets_.thanksLabel->setText(localized(text::thanksForTheIdea));
  theos_ = shownName(shownTheos());
  outlets_.versionLabel->setToolTip(theos_);
  outlets_.creditLabel->setLayer({.cornerRadius = 20, .backgroundColor = colours::labelGround});
  outlets_.thanksLabel->setLayer({.cornerRadius = 17, .backgroundColor = colours::labelGround});
  for (UIButton* const button : {outlets_.profileButton, outlets_.donateButton, outlets_.thankedButton}) {
    button->setLayer({.cornerRadius = 20, .backgroundColor = colours::linkGround});
  }
}

bool Dev::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Resize) {
    const auto& view = *static_cast<QWidget*>(object);
    // Low screens have room for the texts and links first.
    const int side = view.height() < metrics::lowScreen ? metrics::smallEmblemSize : metrics::emblemSize;
    const QIcon emblem(QStringLiteral(":/pictures/application.png"));
    outlets_.picture->setPixmap(emblem.pixmap(QSize(side, side), view.devicePixelRatioF()));
    QLabel& version = *outlets_.versionLabel;
    const int width = outlets_.panel->maximumWidth();
    version.setText(QStringLiteral("Tweakbench " TWEAKBENCH_VERSION "\n") +
                    version.fontMetrics().elidedText(QStringLiteral("Theos: ") + theos_, Qt::ElideMiddle,
                                                     std::min(view.width() - metrics::touchSize, width)));
  }
  return UIViewController::eventFilter(object, event);
}
